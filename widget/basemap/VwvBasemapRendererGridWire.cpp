#include "VwvBasemapRendererGridWire.h"

#include "VwvBasemapRendererSupport.h"

#include <QLineF>
#include <QPainter>
#include <QVector>

#include <algorithm>
#include <cmath>

namespace {

VwvBasemapRendererGridWire::Style checked(const VwvBasemapRendererGridWire::Style& style)
{
    if (VwvBasemapRendererGridWire::isValid(style))
        return style;
    qWarning("VwvBasemapRendererGridWire: style refused (invalid colour or width), the default style is used");
    return VwvBasemapRendererGridWire::Style();
}

} // namespace

bool VwvBasemapRendererGridWire::isValid(const Style& style)
{
    return style.color.isValid() && VwvBasemapRendererSupport::isWidth(style.width, 1.0);
}

VwvBasemapRendererGridWire::VwvBasemapRendererGridWire(const VsdGrid& grid, const Style& style)
    : _grid(grid)
    , _style(checked(style))
    , _bounds(grid.boundingRect())
{
}

VwvBasemapRendererGridWire::VwvBasemapRendererGridWire(const VsdGrid& grid)
    : VwvBasemapRendererGridWire(grid, Style())
{
}

VwvBasemapRendererGridWire::~VwvBasemapRendererGridWire() = default;

const VsdGrid& VwvBasemapRendererGridWire::getGrid() const
{
    return _grid;
}

const VwvBasemapRendererGridWire::Style& VwvBasemapRendererGridWire::getStyle() const
{
    return _style;
}

QRectF VwvBasemapRendererGridWire::boundingRect() const
{
    return _bounds;
}

void VwvBasemapRendererGridWire::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    if (_grid.isEmpty() || !VwvBasemapRendererSupport::canDraw(image, xMap, yMap))
        return;
    const double radians = _grid.angle() * (3.14159265358979323846 / 180.0);
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    const QPointF origin = _grid.origin();
    const auto toPixels = [&](double u, double v) {
        const QPointF p = origin + QPointF(u * c - v * s, u * s + v * c);
        return QPointF(xMap.transform(p.x()), yMap.transform(p.y()));
    };
    const double dx = _grid.dx();
    const double dy = _grid.dy();
    const double u0 = -0.5 * dx;
    const double v0 = -0.5 * dy;
    const double u1 = (_grid.nx() - 0.5) * dx;
    const double v1 = (_grid.ny() - 0.5) * dy;

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(_style.color, _style.width));
    painter.setBrush(Qt::NoBrush);

    const QPointF corner = toPixels(0.0, 0.0);
    const double cellWidth = QLineF(corner, toPixels(dx, 0.0)).length();
    const double cellHeight = QLineF(corner, toPixels(0.0, dy)).length();
    if (!(std::min(cellWidth, cellHeight) >= MIN_CELL_PIXELS)) {
        painter.drawPolygon(QPolygonF({toPixels(u0, v0), toPixels(u1, v0), toPixels(u1, v1), toPixels(u0, v1)}));
        return;
    }

    // Only the lines crossing the view: its corners in grid units bound the ranges.
    const QRectF visible = VwvBasemapRendererSupport::visibleRect(image, xMap, yMap);
    double uLow = HUGE_VAL, uHigh = -HUGE_VAL, vLow = HUGE_VAL, vHigh = -HUGE_VAL;
    for (const QPointF& p : {visible.topLeft(), visible.topRight(), visible.bottomLeft(), visible.bottomRight()}) {
        const QPointF d = p - origin;
        const double u = d.x() * c + d.y() * s;
        const double v = -d.x() * s + d.y() * c;
        uLow = std::min(uLow, u);
        uHigh = std::max(uHigh, u);
        vLow = std::min(vLow, v);
        vHigh = std::max(vHigh, v);
    }
    // Line k lies at (k - 0.5) cells; k runs over 0..n.
    const auto lineRange = [](double low, double high, double step, int n) {
        const double first = std::max(0.0, std::floor(low / step + 0.5));
        const double last = std::min(double(n), std::ceil(high / step + 0.5));
        return qMakePair(int(first), first <= last ? int(last) : int(first) - 1);
    };
    const auto is = lineRange(uLow, uHigh, dx, _grid.nx());
    const auto js = lineRange(vLow, vHigh, dy, _grid.ny());
    QVector<QLineF> lines;
    lines.reserve(std::max(0, is.second - is.first + 1) + std::max(0, js.second - js.first + 1));
    for (int i = is.first; i <= is.second; ++i)
        lines.append(QLineF(toPixels((i - 0.5) * dx, v0), toPixels((i - 0.5) * dx, v1)));
    for (int j = js.first; j <= js.second; ++j)
        lines.append(QLineF(toPixels(u0, (j - 0.5) * dy), toPixels(u1, (j - 0.5) * dy)));
    painter.drawLines(lines);
}

qint64 VwvBasemapRendererGridWire::renderCost() const
{
    return _grid.isEmpty() ? 0 : qint64(_grid.nx()) + _grid.ny() + 2;
}

int VwvBasemapRendererGridWire::pointToRank(const QPointF& point, double tolerance) const
{
    return VwvBasemapRendererSupport::gridPointToRank(_grid, point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererGridWire::rectangleToRank(const QRectF& rect) const
{
    return VwvBasemapRendererSupport::gridRectangleToRanks(_grid, rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererGridWire::polygonToRanks(const QPolygonF& polygon) const
{
    return VwvBasemapRendererSupport::gridPolygonToRanks(_grid, polygon);
}
