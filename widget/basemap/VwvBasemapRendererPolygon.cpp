#include "VwvBasemapRendererPolygon.h"

#include "VwvBasemapRendererSupport.h"

#include <VsdGeometry.h>

#include <QPainter>
#include <QPainterPath>

namespace {

VwvBasemapRendererPolygon::Style checked(const VwvBasemapRendererPolygon::Style& style)
{
    if (VwvBasemapRendererPolygon::isValid(style))
        return style;
    qWarning("VwvBasemapRendererPolygon: style refused (invalid colour or width), the default style is used");
    return VwvBasemapRendererPolygon::Style();
}

// Holes lie inside their outer ring: the outer rings bound the set.
QVector<QPolygonF> outerRings(const VsdPolygonSet& polygons)
{
    QVector<QPolygonF> rings;
    rings.reserve(polygons.size());
    for (const VsdPolygon& polygon : polygons.polygons())
        rings.append(polygon.outer);
    return rings;
}

QVector<QRectF> boxesOf(const VsdPolygonSet& polygons)
{
    QVector<QRectF> boxes;
    boxes.reserve(polygons.size());
    for (const VsdPolygon& polygon : polygons.polygons())
        boxes.append(VsdGeometry::finiteBounds(polygon.outer));
    return boxes;
}

qint64 vertexCountOf(const VsdPolygonSet& polygons)
{
    qint64 n = 0;
    for (const VsdPolygon& polygon : polygons.polygons()) {
        n += polygon.outer.size();
        for (const QPolygonF& hole : polygon.holes)
            n += hole.size();
    }
    return n;
}

QPainterPath pathOf(const VsdPolygon& polygon, const QwtScaleMap& xMap, const QwtScaleMap& yMap)
{
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);
    const auto addRing = [&](const QPolygonF& ring) {
        QPolygonF pixels = VwvBasemapRendererSupport::toPixels(xMap, yMap, ring);
        if (!pixels.isClosed())
            pixels.append(pixels.first());
        path.addPolygon(pixels);
    };
    addRing(polygon.outer);
    for (const QPolygonF& hole : polygon.holes)
        addRing(hole);
    return path;
}

} // namespace

bool VwvBasemapRendererPolygon::isValid(const Style& style)
{
    return style.fillColor.isValid() && style.outlineColor.isValid() && style.selectionColor.isValid()
        && VwvBasemapRendererSupport::isWidth(style.outlineWidth, 0.0)
        && VwvBasemapRendererSupport::isWidth(style.selectionWidth, 1.0);
}

VwvBasemapRendererPolygon::VwvBasemapRendererPolygon(const VsdPolygonSet& polygons,
                                                     const KbiIntervalIntSmallDisjoint& selection, const Style& style)
    : _polygons(polygons)
    , _selection(selection)
    , _style(checked(style))
    , _boxes(boxesOf(polygons))
    , _bounds(VwvBasemapRendererSupport::framingRect(outerRings(polygons)))
    , _vertexCount(vertexCountOf(polygons))
{
}

VwvBasemapRendererPolygon::VwvBasemapRendererPolygon(const VsdPolygonSet& polygons,
                                                     const KbiIntervalIntSmallDisjoint& selection)
    : VwvBasemapRendererPolygon(polygons, selection, Style())
{
}

VwvBasemapRendererPolygon::~VwvBasemapRendererPolygon() = default;

const VsdPolygonSet& VwvBasemapRendererPolygon::getPolygons() const
{
    return _polygons;
}

const KbiIntervalIntSmallDisjoint& VwvBasemapRendererPolygon::getSelection() const
{
    return _selection;
}

const VwvBasemapRendererPolygon::Style& VwvBasemapRendererPolygon::getStyle() const
{
    return _style;
}

QRectF VwvBasemapRendererPolygon::boundingRect() const
{
    return _bounds;
}

void VwvBasemapRendererPolygon::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    if (_polygons.isEmpty() || !VwvBasemapRendererSupport::canDraw(image, xMap, yMap))
        return;
    const QRectF visible = VwvBasemapRendererSupport::visibleRect(image, xMap, yMap);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(_style.fillColor);
    if (_style.outlineWidth > 0.0)
        painter.setPen(QPen(_style.outlineColor, _style.outlineWidth));
    else
        painter.setPen(Qt::NoPen);
    const QVector<VsdPolygon>& polygons = _polygons.polygons();
    for (int rank = 0; rank < polygons.size(); ++rank)
        if (VsdGeometry::boxesTouch(_boxes.at(rank), visible))
            painter.drawPath(pathOf(polygons.at(rank), xMap, yMap));

    // On top of every fill, so that a neighbour drawn later does not hide the selection.
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(_style.selectionColor, _style.selectionWidth));
    for (const KbiIntervalIntSmallDisjoint::Interval& interval : _selection.intervals())
        for (int rank = interval.first; rank <= interval.second && rank < polygons.size(); ++rank)
            if (VsdGeometry::boxesTouch(_boxes.at(rank), visible))
                painter.drawPath(pathOf(polygons.at(rank), xMap, yMap));
}

qint64 VwvBasemapRendererPolygon::renderCost() const
{
    return _vertexCount;
}

int VwvBasemapRendererPolygon::pointToRank(const QPointF& point, double tolerance) const
{
    return _polygons.nearestRank(point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererPolygon::rectangleToRank(const QRectF& rect) const
{
    return _polygons.ranksInRect(rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererPolygon::polygonToRanks(const QPolygonF& polygon) const
{
    return _polygons.ranksInPolygon(polygon);
}
