#include "VwoGpsPosition.h"

#include <qwt_scale_map.h>

#include <QPainter>

#include <cmath>

namespace {

const double RING_WIDTH = 3.0;
const double OUTLINE_WIDTH = 1.5;
const double DOT_RADIUS = 3.5;

bool isFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

} // namespace

class VwoGpsPositionPrivate
{
public:
    QPointF position;
    bool hasPosition = false;
    bool valid = false;
};

VwoGpsPosition::VwoGpsPosition()
    : VwoADecoration(tr("GPS position"))
    , _d(new VwoGpsPositionPrivate)
{
    setVisible(false);
}

VwoGpsPosition::~VwoGpsPosition() = default;

int VwoGpsPosition::rtti() const
{
    return RTTI_GPS_POSITION;
}

void VwoGpsPosition::setPosition(const QPointF& mapPoint, bool valid)
{
    if (valid && !isFinite(mapPoint)) {
        qWarning("VwoGpsPosition::setPosition: a fix at (%g, %g) is not on the map, it is taken as lost",
                 mapPoint.x(), mapPoint.y());
        valid = false;
    }
    if (valid) {
        if (_d->valid && _d->position == mapPoint)
            return;
        _d->position = mapPoint;
        _d->hasPosition = true;
    } else if (!_d->valid) {
        return;
    }
    _d->valid = valid;
    itemChanged();
}

QPointF VwoGpsPosition::getPosition() const
{
    return _d->position;
}

bool VwoGpsPosition::hasPosition() const
{
    return _d->hasPosition;
}

bool VwoGpsPosition::isFixValid() const
{
    return _d->valid;
}

void VwoGpsPosition::render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                            const QRectF& canvasRect) const
{
    if (!_d->hasPosition)
        return;
    const QPointF centre(xMap.transform(_d->position.x()), yMap.transform(_d->position.y()));
    if (!isFinite(centre) || !canvasRect.adjusted(-RADIUS, -RADIUS, RADIUS, RADIUS).contains(centre))
        return;
    const QColor colour = _d->valid ? QColor(0, 110, 255) : QColor(150, 150, 150);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, testRenderHint(QwtPlotItem::RenderAntialiased));
    const double ringRadius = RADIUS - OUTLINE_WIDTH - RING_WIDTH / 2.0;
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(Qt::white, RING_WIDTH + 2.0 * OUTLINE_WIDTH));
    painter->drawEllipse(centre, ringRadius, ringRadius);
    painter->setPen(QPen(colour, RING_WIDTH));
    painter->drawEllipse(centre, ringRadius, ringRadius);
    painter->setPen(QPen(Qt::white, OUTLINE_WIDTH));
    painter->setBrush(colour);
    painter->drawEllipse(centre, DOT_RADIUS, DOT_RADIUS);
    painter->restore();
}
