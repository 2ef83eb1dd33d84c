#pragma once
// Where the GPS receiver is on the map: a blue ring with a centre dot, outlined in white.
// When the fix is lost the marker stays at the last good position, greyed, so that the
// user still sees where the receiver was; before any good fix nothing is drawn. Hidden
// until the view turns the GPS on.

#include <VwoADecoration.h>

#include <QCoreApplication>
#include <QPointF>

#include <memory>

class VELMORA_WIDGET_EXPORT VwoGpsPosition : public VwoADecoration
{
    Q_DECLARE_TR_FUNCTIONS(VwoGpsPosition)

public:
    // The ring's outer radius, in logical pixels.
    static constexpr double RADIUS = 10.0;

    VwoGpsPosition();
    ~VwoGpsPosition() override;

    int rtti() const override;

    // A point in map coordinates. An invalid fix, or a point that is not finite, keeps the
    // last good position and shows it as lost.
    void setPosition(const QPointF& mapPoint, bool valid);
    // The last good position; meaningful when hasPosition().
    QPointF getPosition() const;
    bool hasPosition() const;
    // True while the receiver has a fix at getPosition().
    bool isFixValid() const;

    void render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                const QRectF& canvasRect) const override;

private:
    std::unique_ptr<class VwoGpsPositionPrivate> const _d;
};
