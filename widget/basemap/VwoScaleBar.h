#pragma once
// The scale of the map in the canvas's bottom-left corner: a bar of a round map length
// (1, 2 or 5 times a power of ten) drawn as alternating black and white segments, under
// its length ("200 m", "2 km", "500 ft"). The bar is the longest round length not above a
// fifth of the canvas's width, and never aims below 40 pixels.

#include <VwoADecoration.h>

#include <KbuUnit.h>

#include <QCoreApplication>

#include <memory>

class VELMORA_WIDGET_EXPORT VwoScaleBar : public VwoADecoration
{
    Q_DECLARE_TR_FUNCTIONS(VwoScaleBar)

public:
    // The shortest bar aimed at, in logical pixels.
    static constexpr double MIN_PIXELS = 40.0;

    // `unit` is the unit of the map's coordinates.
    explicit VwoScaleBar(const KbuUnit& unit = KbuUnit::fromKey(QStringLiteral("m")));
    ~VwoScaleBar() override;

    int rtti() const override;

    void setUnit(const KbuUnit& unit);
    const KbuUnit& getUnit() const;

    // The bar's length in map units for a view of `mapUnitsPerPixel` on a canvas
    // `canvasWidth` pixels wide; 0 when no bar can be drawn (a scale or a width that is
    // zero, negative or not finite, or a canvas too narrow for a bar).
    static double getLength(double mapUnitsPerPixel, double canvasWidth);
    // "200 m", "2 km" (metres read as kilometres from 1000 m), otherwise the length and
    // the unit's symbol; empty for a length that is not positive and finite.
    QString getLabel(double length) const;

    void render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                const QRectF& canvasRect) const override;

private:
    std::unique_ptr<class VwoScaleBarPrivate> const _d;
};
