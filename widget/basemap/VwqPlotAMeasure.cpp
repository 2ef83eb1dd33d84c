#include "VwqPlotAMeasure.h"

#include <KbbUserStringFormats.h>
#include <KbgGeometry.h>
#include <KbuUnit.h>
#include <VuaResourceProvider.h>

#include <qwt_picker_machine.h>
#include <qwt_plot.h>
#include <qwt_scale_map.h>
#include <qwt_text.h>

#include <QFontMetrics>
#include <QPainter>
#include <QRadialGradient>
#include <cmath>

namespace {

const QColor LABEL_BACKGROUND(255, 255, 255, 200);
const QColor ARC_CENTRE(255, 255, 0, 150);
const QColor ARC_RIM(255, 255, 255, 150);
const QSize LABEL_PADDING(10, 2);
const double ARC_SHARE_OF_SEGMENT = 0.75;
const double ARC_MAX_RADIUS = 50.0;
const double ANGLE_LABEL_DISTANCE = 30.0;
const double PI = 3.14159265358979323846;

const KbuUnit& meter()
{
    return KbuUnit::fromKey(QStringLiteral("m"));
}

double toDegrees(double radians)
{
    return radians * 180.0 / PI;
}

// Into -180..180, so that an angle reads the short way round.
double normalizedDegrees(double degrees)
{
    double d = std::fmod(degrees, 360.0);
    if (d > 180.0)
        d -= 360.0;
    else if (d < -180.0)
        d += 360.0;
    return d;
}

bool isFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

// A value in the user's format of its class, converted from `from` (a base unit).
QString formatValue(double value, const KbuEUnitClass& unitClass, const KbuUnit& from)
{
    KbbStringFormat format = KbbUserStringFormats::getStringFormat(unitClass);
    if (!from.isConvertibleTo(format.getUnit()))
        format.setUnit(from);
    return format.valueToString(from.convert(value, format.getUnit())) + QLatin1Char(' ')
        + format.getDisplayUnitSymbol();
}

QString formatLength(double meters)
{
    return formatValue(meters, KbuEUnitClass::LENGTH, meter());
}

QString formatAngle(double degrees)
{
    return formatValue(degrees, KbuEUnitClass::ANGLE, KbuUnit::fromKey(QStringLiteral("deg")));
}

struct Label
{
    QRect box;
    QString text;
};

struct Arc
{
    QPointF centre;
    double radius;
    double startDegrees; // on screen, counter-clockwise from 3 o'clock
    double sweepDegrees;

    QRectF circle() const { return QRectF(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius); }
};

// What the rubber band draws, computed once for the drawing and its mask.
struct Layout
{
    QPolygon pixels;
    bool closed = false;
    QVector<Arc> arcs;
    QVector<Label> labels;
};

Label makeLabel(const QFontMetrics& metrics, const QString& text, const QPointF& centre)
{
    QRect box = metrics.boundingRect(text);
    box.setSize(box.size() + LABEL_PADDING);
    box.moveCenter(centre.toPoint());
    return {box, text};
}

// The angle at `v` between its segments to `previous` and `next`, counter-clockwise from the
// next segment to the previous one, so that a polygon picked counter-clockwise shows its
// inner angles as positive.
Arc angleArc(const QPoint& previous, const QPoint& v, const QPoint& next)
{
    const QLineF toPrevious(v, previous);
    const QLineF toNext(v, next);
    const double radius = std::min(ARC_SHARE_OF_SEGMENT * std::min(toPrevious.length(), toNext.length()),
                                   ARC_MAX_RADIUS);
    return {QPointF(v), radius, toNext.angle(), normalizedDegrees(toPrevious.angle() - toNext.angle())};
}

Layout makeLayout(QPolygon pixels, QVector<QPointF> meters, bool closed, bool lengths, bool angles,
                  const QFont& font)
{
    // A polygon closed by clicking its first vertex again has no closing edge of its own.
    if (closed && pixels.size() > 3 && pixels.first() == pixels.last()) {
        pixels.removeLast();
        meters.removeLast();
    }
    Layout layout;
    layout.pixels = pixels;
    const int n = pixels.size();
    layout.closed = closed && n >= 3;
    const QFontMetrics metrics(font);

    if (lengths) {
        const int segments = layout.closed ? n : n - 1;
        for (int i = 0; i < segments; ++i) {
            const int j = (i + 1) % n;
            const QPointF d = meters[j] - meters[i];
            const QPointF middle = (QPointF(pixels[i]) + QPointF(pixels[j])) / 2.0;
            layout.labels.append(makeLabel(metrics, formatLength(std::hypot(d.x(), d.y())), middle));
        }
    }
    if (angles) {
        const int first = layout.closed ? 0 : 1;
        const int last = layout.closed ? n - 1 : n - 2;
        for (int i = first; i <= last; ++i) {
            const int previous = (i - 1 + n) % n;
            const int next = (i + 1) % n;
            const Arc arc = angleArc(pixels[previous], pixels[i], pixels[next]);
            layout.arcs.append(arc);

            // The value comes from the plot coordinates, which need not have the screen's
            // aspect; the arc shows the angle as it looks.
            const QPointF toPrevious = meters[previous] - meters[i];
            const QPointF toNext = meters[next] - meters[i];
            const double degrees = normalizedDegrees(
                toDegrees(std::atan2(toPrevious.y(), toPrevious.x()) - std::atan2(toNext.y(), toNext.x())));
            const double bisector = (arc.startDegrees + arc.sweepDegrees / 2.0) * PI / 180.0;
            const QPointF at = arc.centre
                + ANGLE_LABEL_DISTANCE * QPointF(std::cos(bisector), -std::sin(bisector));
            layout.labels.append(makeLabel(metrics, formatAngle(degrees), at));
        }
    }
    return layout;
}

} // namespace

class VwqPlotAMeasurePrivate
{
public:
    VwqPlotAMeasurePrivate(Vw::ViewMode ownMode, bool closed)
        : ownMode(ownMode)
        , closed(closed)
        , unit(meter())
    {
    }

    // The canvas maps of the picker's axes; false when there is no plot or when its
    // scales or canvas are empty or not finite, so that no pixel has a place on the map.
    static bool canvasMaps(const QwtPlotPicker& picker, QwtScaleMap* xMap, QwtScaleMap* yMap);
    // The picked pixels without repeats and without pixels the plot cannot place, each
    // with its vertex in metres.
    void pickedPath(const QwtPlotPicker& picker, const QPolygon& picked, QPolygon* pixels,
                    QVector<QPointF>* meters) const;
    // What the rubber band shows of the picked pixels.
    Layout layout(const QwtPlotPicker& picker, const QPolygon& picked, bool lengths, bool angles) const;

    const Vw::ViewMode ownMode;
    const bool closed;
    Vw::ViewMode mode = Vw::NO_MODE;
    KbuUnit unit;
};

bool VwqPlotAMeasurePrivate::canvasMaps(const QwtPlotPicker& picker, QwtScaleMap* xMap, QwtScaleMap* yMap)
{
    const QwtPlot* plot = picker.plot();
    if (!plot)
        return false;
    *xMap = plot->canvasMap(picker.xAxis());
    *yMap = plot->canvasMap(picker.yAxis());
    for (const QwtScaleMap* map : {xMap, yMap}) {
        const double range = map->s2() - map->s1();
        if (!std::isfinite(range) || range == 0.0 || map->p1() == map->p2())
            return false;
    }
    return true;
}

void VwqPlotAMeasurePrivate::pickedPath(const QwtPlotPicker& picker, const QPolygon& picked, QPolygon* pixels,
                                        QVector<QPointF>* meters) const
{
    QwtScaleMap xMap;
    QwtScaleMap yMap;
    if (!canvasMaps(picker, &xMap, &yMap))
        return;
    const KbuUnit& to = meter();
    bool hasLast = false;
    QPoint last;
    for (const QPoint& pixel : picked) {
        if (hasLast && pixel == last)
            continue;
        const QPointF vertex(unit.convert(xMap.invTransform(pixel.x()), to),
                             unit.convert(yMap.invTransform(pixel.y()), to));
        if (!isFinite(vertex))
            continue;
        hasLast = true;
        last = pixel;
        if (pixels)
            pixels->append(pixel);
        if (meters)
            meters->append(vertex);
    }
}

Layout VwqPlotAMeasurePrivate::layout(const QwtPlotPicker& picker, const QPolygon& picked, bool lengths,
                                      bool angles) const
{
    QPolygon pixels;
    QVector<QPointF> meters;
    pickedPath(picker, picked, &pixels, &meters);
    const QFont font = picker.canvas() ? picker.canvas()->font() : QFont();
    return makeLayout(pixels, meters, closed, lengths, angles, font);
}

VwqPlotAMeasure::VwqPlotAMeasure(Vw::ViewMode ownMode, bool closed, QWidget* canvas)
    : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, PolygonRubberBand, AlwaysOn, canvas)
    , _d(std::make_unique<VwqPlotAMeasurePrivate>(ownMode, closed))
{
    // Off until the plot switches to the ruler's mode.
    setEnabled(false);
}

VwqPlotAMeasure::~VwqPlotAMeasure() = default;

const KbuUnit& VwqPlotAMeasure::getViewCoordinateUnit() const
{
    return _d->unit;
}

void VwqPlotAMeasure::setViewCoordinateUnit(const KbuUnit& unit)
{
    if (!unit.belongsTo(KbuEUnitClass::LENGTH)) {
        qWarning("VwqPlotAMeasure::setViewCoordinateUnit: '%s' is not a length unit, '%s' is kept",
                 qPrintable(unit.getKey()), qPrintable(_d->unit.getKey()));
        return;
    }
    if (unit == _d->unit)
        return;
    _d->unit = unit;
    updateDisplay();
}

bool VwqPlotAMeasure::isClosed() const
{
    return _d->closed;
}

Vw::ViewMode VwqPlotAMeasure::getMode() const
{
    return _d->mode;
}

void VwqPlotAMeasure::setMode(Vw::ViewMode mode)
{
    if (mode == _d->mode)
        return;
    _d->mode = mode;
    reset();

    bool own = mode == _d->ownMode;
    if (own && !plot()) {
        qWarning("VwqPlotAMeasure::setMode: the ruler is not on a plot canvas, it stays off");
        own = false;
    }
    if (own) {
        setStateMachine(new QwtPickerPolygonMachine);
        setRubberBand(PolygonRubberBand);
        canvas()->setCursor(VuaResourceProvider::getCursor(Vua::Resource::cursorDefault()));
    }
    setEnabled(own);
}

QVector<QPointF> VwqPlotAMeasure::_getVerticesInMeter() const
{
    QVector<QPointF> meters;
    _d->pickedPath(*this, pickedPoints(), nullptr, &meters);
    return meters;
}

double VwqPlotAMeasure::_calculateTotalLengthInMeter() const
{
    return KbgGeometry::pathLength(_getVerticesInMeter());
}

QString VwqPlotAMeasure::_formatLength(double meters)
{
    return formatLength(meters);
}

QString VwqPlotAMeasure::_formatArea(double squareMeters)
{
    return formatValue(squareMeters, KbuEUnitClass::AREA, KbuUnit::fromKey(QStringLiteral("m2")));
}

QwtText VwqPlotAMeasure::_makeTrackerText(const QString& text)
{
    if (text.isEmpty())
        return QwtText();
    QwtText trackerText(text);
    trackerText.setBackgroundBrush(LABEL_BACKGROUND);
    return trackerText;
}

void VwqPlotAMeasure::begin()
{
    const bool wasActive = isActive();
    QwtPlotPicker::begin();
    if (!wasActive && isActive())
        Q_EMIT startPicking();
}

bool VwqPlotAMeasure::end(bool ok)
{
    const bool wasActive = isActive();
    const bool accepted = QwtPlotPicker::end(ok);
    if (wasActive)
        Q_EMIT stopPicking();
    return accepted;
}

void VwqPlotAMeasure::append(const QPoint& pos)
{
    // The polygon machine appends the first pixel twice (the vertex and the dragged end);
    // one message per vertex is enough.
    const bool draggedEnd = pickedPoints().size() == 1 && pickedPoints().first() == pos;
    QwtScaleMap xMap;
    QwtScaleMap yMap;
    if (!draggedEnd
        && (!VwqPlotAMeasurePrivate::canvasMaps(*this, &xMap, &yMap)
            || !isFinite(QPointF(xMap.invTransform(pos.x()), yMap.invTransform(pos.y())))))
        qWarning("VwqPlotAMeasure::append: the pixel (%d, %d) has no plot coordinates (empty or undefined scales),"
                 " it is left out of the measure",
                 pos.x(), pos.y());
    QwtPlotPicker::append(pos);
}

bool VwqPlotAMeasure::accept(QPolygon& selection) const
{
    QPolygon pixels;
    _d->pickedPath(*this, selection, &pixels, nullptr);
    selection = pixels;
    return pixels.size() >= _getMinimumVertexCount();
}

void VwqPlotAMeasure::drawRubberBand(QPainter* painter) const
{
    if (!painter || !isActive() || rubberBand() == NoRubberBand || !canvas())
        return;
    const Layout layout = _d->layout(*this, pickedPoints(), _isSegmentLengthShown(), _isAngleShown());
    if (layout.pixels.isEmpty())
        return;

    painter->save();
    painter->setFont(canvas()->font());
    const QPen linePen = painter->pen();

    painter->setPen(Qt::NoPen);
    painter->setRenderHint(QPainter::Antialiasing, true);
    for (const Arc& arc : layout.arcs) {
        if (arc.radius <= 0.0)
            continue;
        QRadialGradient gradient(arc.centre, arc.radius);
        gradient.setColorAt(0.0, ARC_CENTRE);
        gradient.setColorAt(1.0, ARC_RIM);
        painter->setBrush(gradient);
        painter->drawPie(arc.circle(), qRound(arc.startDegrees * 16), qRound(arc.sweepDegrees * 16));
    }
    painter->setRenderHint(QPainter::Antialiasing, false);

    painter->setPen(linePen);
    painter->setBrush(Qt::NoBrush);
    if (layout.closed)
        painter->drawPolygon(layout.pixels);
    else
        painter->drawPolyline(layout.pixels);

    for (const Label& label : layout.labels) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(LABEL_BACKGROUND);
        painter->drawRect(label.box);
        painter->setPen(Qt::black);
        painter->drawText(label.box, Qt::AlignCenter, label.text);
    }
    painter->restore();
}

QRegion VwqPlotAMeasure::rubberBandMask() const
{
    QRegion mask;
    if (!isActive() || rubberBand() == NoRubberBand || !canvas())
        return mask;
    const Layout layout = _d->layout(*this, pickedPoints(), _isSegmentLengthShown(), _isAngleShown());
    if (layout.pixels.isEmpty())
        return mask;

    const int margin = std::max(rubberBandPen().width(), 1) + 1;
    mask += layout.pixels.boundingRect().adjusted(-margin, -margin, margin, margin);
    for (const Arc& arc : layout.arcs)
        mask += arc.circle().toAlignedRect().adjusted(-1, -1, 1, 1);
    for (const Label& label : layout.labels)
        mask += label.box;
    return mask;
}
