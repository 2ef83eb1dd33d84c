#include "VwoCompass.h"

#include <qwt_scale_map.h>

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

const double PI = 3.14159265358979323846;
// About 100 m on the ground: far above PROJ's rounding, close enough for the
// convergence not to change along it.
const double STEP_DEGREES = 1.0e-3;
const double HALF_LENGTH = 12.0;
const double HALF_WIDTH = 5.0;
const double LETTER_DISTANCE = 19.0; // from the arrow's centre to the letter's
const int LETTER_PIXELS = 12;

bool isFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

const VuuCoordSystem& geographic()
{
    static const VuuCoordSystem wgs84(QStringLiteral("EPSG:4326"));
    return wgs84;
}

} // namespace

class VwoCompassPrivate
{
public:
    VuuCoordSystem system;
    KbuUnit unit;
};

VwoCompass::VwoCompass(const VuuCoordSystem& system, const KbuUnit& unit)
    : VwoADecoration(tr("Compass"))
    , _d(new VwoCompassPrivate)
{
    _d->system = system;
    _d->unit = unit;
}

VwoCompass::~VwoCompass() = default;

int VwoCompass::rtti() const
{
    return RTTI_COMPASS;
}

void VwoCompass::setCoordSystem(const VuuCoordSystem& system)
{
    if (_d->system == system)
        return;
    _d->system = system;
    itemChanged();
}

const VuuCoordSystem& VwoCompass::getCoordSystem() const
{
    return _d->system;
}

void VwoCompass::setUnit(const KbuUnit& unit)
{
    if (_d->unit == unit)
        return;
    _d->unit = unit;
    itemChanged();
}

const KbuUnit& VwoCompass::getUnit() const
{
    return _d->unit;
}

bool VwoCompass::_pointNorthOf(const QPointF& mapPoint, QPointF& north) const
{
    const VuuCoordSystem& system = _d->system;
    if (!system.isValid() || system.isLocal() || !isFinite(mapPoint))
        return false;
    // PROJ takes the system's own unit; the map may be drawn in another length unit.
    double toSystem = 1.0;
    const KbuUnit& systemUnit = system.getUnit();
    if (!_d->unit.isNone() && !systemUnit.isNone() && _d->unit != systemUnit && _d->unit.isConvertibleTo(systemUnit))
        toSystem = _d->unit.convert(1.0, systemUnit);
    const QPointF point = mapPoint * toSystem;

    QPointF lonLat = point;
    if (!VuuCoordSystem::convert(system, geographic(), lonLat) || !isFinite(lonLat))
        return false;
    // Near the pole the step goes south, and the difference is turned round.
    const double step = lonLat.y() + STEP_DEGREES <= 90.0 ? STEP_DEGREES : -STEP_DEGREES;
    QPointF ahead(lonLat.x(), lonLat.y() + step);
    if (!VuuCoordSystem::convert(geographic(), system, ahead) || !isFinite(ahead))
        return false;
    const QPointF towardNorth = (ahead - point) * (step > 0.0 ? 1.0 : -1.0) / toSystem;
    north = mapPoint + towardNorth;
    return isFinite(north) && north != mapPoint;
}

double VwoCompass::northAngleAt(const QPointF& mapPoint) const
{
    QPointF north;
    if (!_pointNorthOf(mapPoint, north))
        return 0.0;
    const double angle = std::atan2(north.x() - mapPoint.x(), north.y() - mapPoint.y()) * 180.0 / PI;
    return std::isfinite(angle) ? angle : 0.0;
}

void VwoCompass::render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                        const QRectF& canvasRect) const
{
    // Measured on screen rather than on the map, so that the maps' directions count.
    double angle = 0.0;
    const QPointF centre(xMap.invTransform(canvasRect.center().x()), yMap.invTransform(canvasRect.center().y()));
    QPointF north;
    if (_pointNorthOf(centre, north)) {
        const QPointF from(xMap.transform(centre.x()), yMap.transform(centre.y()));
        const QPointF to(xMap.transform(north.x()), yMap.transform(north.y()));
        angle = std::atan2(to.x() - from.x(), from.y() - to.y()) * 180.0 / PI;
        if (!std::isfinite(angle))
            angle = 0.0;
    }

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, testRenderHint(QwtPlotItem::RenderAntialiased));
    const double discRadius = HALF_LENGTH + 2.0;
    // The letter on top, the disc behind the arrow at the bottom: HEIGHT in all.
    const QPointF pivot(canvasRect.right() - MARGIN - discRadius, canvasRect.top() + MARGIN + HEIGHT - discRadius);

    painter->save();
    painter->translate(pivot);
    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(255, 255, 255, 150));
    painter->drawEllipse(QPointF(), discRadius, discRadius);
    painter->rotate(angle);
    // A kite, dark on its west half and light on its east half.
    const QPointF tip(0.0, -HALF_LENGTH), tail(0.0, HALF_LENGTH);
    const QPointF west(-HALF_WIDTH, HALF_LENGTH * 0.3), east(HALF_WIDTH, HALF_LENGTH * 0.3);
    painter->setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::black);
    painter->drawPolygon(QPolygonF({tip, west, tail}));
    painter->setBrush(Qt::white);
    painter->drawPolygon(QPolygonF({tip, east, tail}));
    painter->restore();

    // The letter stays upright beyond the tip, with a light halo to read over any layer.
    QFont font = painter->font();
    font.setPixelSize(LETTER_PIXELS);
    font.setBold(true);
    const double radians = angle * PI / 180.0;
    const QPointF letterCentre = pivot + QPointF(std::sin(radians), -std::cos(radians)) * LETTER_DISTANCE;
    QPainterPath letter;
    letter.addText(QPointF(), font, tr("N", "north"));
    letter.translate(letterCentre - letter.boundingRect().center());
    painter->strokePath(letter, QPen(QColor(255, 255, 255, 190), 3.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->fillPath(letter, Qt::black);
    painter->restore();
}
