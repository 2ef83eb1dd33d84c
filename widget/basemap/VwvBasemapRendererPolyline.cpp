#include "VwvBasemapRendererPolyline.h"

#include "VwvBasemapRendererSupport.h"

#include <VsdGeometry.h>

#include <QPainter>

namespace {

VwvBasemapRendererPolyline::Style checked(const VwvBasemapRendererPolyline::Style& style)
{
    if (VwvBasemapRendererPolyline::isValid(style))
        return style;
    qWarning("VwvBasemapRendererPolyline: style refused (invalid colour or width), the default style is used");
    return VwvBasemapRendererPolyline::Style();
}

QVector<QRectF> boxesOf(const VsdPolylineSet& polylines)
{
    QVector<QRectF> boxes;
    boxes.reserve(polylines.size());
    for (const QPolygonF& line : polylines.polylines())
        boxes.append(VsdGeometry::finiteBounds(line));
    return boxes;
}

qint64 vertexCountOf(const VsdPolylineSet& polylines)
{
    qint64 n = 0;
    for (const QPolygonF& line : polylines.polylines())
        n += line.size();
    return n;
}

} // namespace

bool VwvBasemapRendererPolyline::isValid(const Style& style)
{
    return style.color.isValid() && style.selectionColor.isValid() && VwvBasemapRendererSupport::isWidth(style.width, 1.0)
        && VwvBasemapRendererSupport::isWidth(style.selectionWidth, 1.0);
}

VwvBasemapRendererPolyline::VwvBasemapRendererPolyline(const VsdPolylineSet& polylines,
                                                       const KbiIntervalIntSmallDisjoint& selection, const Style& style)
    : _polylines(polylines)
    , _selection(selection)
    , _style(checked(style))
    , _boxes(boxesOf(polylines))
    , _bounds(VwvBasemapRendererSupport::framingRect(polylines.polylines()))
    , _vertexCount(vertexCountOf(polylines))
{
}

VwvBasemapRendererPolyline::VwvBasemapRendererPolyline(const VsdPolylineSet& polylines,
                                                       const KbiIntervalIntSmallDisjoint& selection)
    : VwvBasemapRendererPolyline(polylines, selection, Style())
{
}

VwvBasemapRendererPolyline::~VwvBasemapRendererPolyline() = default;

const VsdPolylineSet& VwvBasemapRendererPolyline::getPolylines() const
{
    return _polylines;
}

const KbiIntervalIntSmallDisjoint& VwvBasemapRendererPolyline::getSelection() const
{
    return _selection;
}

const VwvBasemapRendererPolyline::Style& VwvBasemapRendererPolyline::getStyle() const
{
    return _style;
}

QRectF VwvBasemapRendererPolyline::boundingRect() const
{
    return _bounds;
}

void VwvBasemapRendererPolyline::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    if (_polylines.isEmpty() || !VwvBasemapRendererSupport::canDraw(image, xMap, yMap))
        return;
    const QRectF visible = VwvBasemapRendererSupport::visibleRect(image, xMap, yMap);
    const QVector<QPolygonF>& lines = _polylines.polylines();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, _style.antialiased);
    painter.setBrush(Qt::NoBrush);
    const auto drawLine = [&](int rank) {
        if (VsdGeometry::boxesTouch(_boxes.at(rank), visible))
            painter.drawPolyline(VwvBasemapRendererSupport::toPixels(xMap, yMap, lines.at(rank)));
    };
    painter.setPen(QPen(_style.color, _style.width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (int rank = 0; rank < lines.size(); ++rank)
        drawLine(rank);

    painter.setPen(QPen(_style.selectionColor, _style.selectionWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    for (const KbiIntervalIntSmallDisjoint::Interval& interval : _selection.intervals())
        for (int rank = interval.first; rank <= interval.second && rank < lines.size(); ++rank)
            drawLine(rank);
}

qint64 VwvBasemapRendererPolyline::renderCost() const
{
    return _vertexCount;
}

int VwvBasemapRendererPolyline::pointToRank(const QPointF& point, double tolerance) const
{
    return _polylines.nearestRank(point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererPolyline::rectangleToRank(const QRectF& rect) const
{
    return _polylines.ranksInRect(rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererPolyline::polygonToRanks(const QPolygonF& polygon) const
{
    return _polylines.ranksInPolygon(polygon);
}
