#pragma once
// The attribution of the map's sources ("© contributors"), in small print in the canvas's
// bottom-right corner on a translucent light box, so that it reads over any layer. No
// text, no box.

#include <VwoADecoration.h>

#include <QCoreApplication>

#include <memory>

class VELMORA_WIDGET_EXPORT VwoCopyright : public VwoADecoration
{
    Q_DECLARE_TR_FUNCTIONS(VwoCopyright)

public:
    explicit VwoCopyright(const QString& text = QString());
    ~VwoCopyright() override;

    int rtti() const override;

    // Lines break at '\n'.
    void setText(const QString& text);
    const QString& getText() const;

    void render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                const QRectF& canvasRect) const override;

private:
    std::unique_ptr<class VwoCopyrightPrivate> const _d;
};
