#include "VwvBasemapRendererSupport.h"

#include <KbcValueRange.h>
#include <VsdGeometry.h>

#include <algorithm>
#include <cmath>

namespace VwvBasemapRendererSupport {

namespace {

bool isUsable(const QwtScaleMap& map)
{
    return std::isfinite(map.s1()) && std::isfinite(map.s2()) && std::isfinite(map.p1()) && std::isfinite(map.p2())
        && map.s1() != map.s2() && map.p1() != map.p2();
}

// The grid's own frame: u along the rows, v along the columns, both from the origin, in
// map units (a turn keeps lengths).
struct GridFrame
{
    QPointF origin;
    double c = 1.0;
    double s = 0.0;

    explicit GridFrame(const VsdGrid& grid)
        : origin(grid.origin())
    {
        const double radians = grid.angle() * (3.14159265358979323846 / 180.0);
        c = std::cos(radians);
        s = std::sin(radians);
    }
    QPointF toGrid(const QPointF& p) const
    {
        const QPointF d = p - origin;
        return QPointF(d.x() * c + d.y() * s, -d.x() * s + d.y() * c);
    }
};

// The ranks of the nodes passing the test among those whose (u, v) fall in the box, one
// interval per run of a row.
template <class Test>
KbiIntervalIntSmallDisjoint nodesIn(const VsdGrid& grid, const QRectF& box, Test&& test)
{
    KbiIntervalIntSmallDisjoint ranks;
    if (grid.isEmpty() || box.isNull() || !VsdGeometry::isFinite(box.topLeft()) || !VsdGeometry::isFinite(box.bottomRight()))
        return ranks;
    const GridFrame frame(grid);
    QPolygonF corners;
    for (const QPointF& p : {box.topLeft(), box.topRight(), box.bottomLeft(), box.bottomRight()})
        corners << frame.toGrid(p);
    const QRectF uv = corners.boundingRect();
    const auto range = [](double lo, double hi, double step, int count) {
        const double first = std::max(0.0, std::ceil(lo / step - 1e-9));
        const double last = std::min(double(count - 1), std::floor(hi / step + 1e-9));
        return qMakePair(int(first), first <= last ? int(last) : int(first) - 1);
    };
    const auto is = range(uv.left(), uv.right(), grid.dx(), grid.nx());
    const auto js = range(uv.top(), uv.bottom(), grid.dy(), grid.ny());
    for (int j = js.first; j <= js.second; ++j) {
        int runStart = -1;
        for (int i = is.first; i <= is.second + 1; ++i) {
            const bool in = i <= is.second && test(grid.nodePosition(i, j));
            if (in && runStart < 0)
                runStart = i;
            else if (!in && runStart >= 0) {
                ranks.add(j * grid.nx() + runStart, j * grid.nx() + i - 1);
                runStart = -1;
            }
        }
    }
    return ranks;
}

} // namespace

bool canDraw(const QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap)
{
    return !image.isNull() && isUsable(xMap) && isUsable(yMap);
}

QRectF visibleRect(const QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap)
{
    const QPointF a(xMap.invTransform(0.0), yMap.invTransform(0.0));
    const QPointF b(xMap.invTransform(image.width()), yMap.invTransform(image.height()));
    return QRectF(a, b).normalized();
}

QPolygonF toPixels(const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QPolygonF& points)
{
    QPolygonF pixels(points.size());
    for (int k = 0; k < points.size(); ++k)
        pixels[k] = QPointF(xMap.transform(points.at(k).x()), yMap.transform(points.at(k).y()));
    return pixels;
}

QRectF framingRect(const QVector<QPolygonF>& lines)
{
    QVector<double> xs;
    QVector<double> ys;
    VsdGeometry::coordinates(lines, xs, ys);
    return KbcValueRange::framingRect(xs, ys);
}

bool isWidth(double width, double minimum)
{
    return std::isfinite(width) && width >= minimum && width <= MAX_WIDTH;
}

int gridPointToRank(const VsdGrid& grid, const QPointF& point, double tolerance)
{
    if (!(tolerance >= 0.0)) {
        qWarning("VwvBasemapRendererSupport::gridPointToRank: tolerance %g refused", tolerance);
        return -1;
    }
    const int rank = grid.rankAt(point);
    if (rank >= 0 || grid.isEmpty() || !VsdGeometry::isFinite(point))
        return rank;
    // Outside: the nearest point of the grid's area, then the cell holding it.
    const QPointF uv = GridFrame(grid).toGrid(point);
    const double u = std::clamp(uv.x(), -0.5 * grid.dx(), (grid.nx() - 0.5) * grid.dx());
    const double v = std::clamp(uv.y(), -0.5 * grid.dy(), (grid.ny() - 0.5) * grid.dy());
    if (std::hypot(uv.x() - u, uv.y() - v) > tolerance)
        return -1;
    const int i = std::clamp(int(std::floor(u / grid.dx() + 0.5)), 0, grid.nx() - 1);
    const int j = std::clamp(int(std::floor(v / grid.dy() + 0.5)), 0, grid.ny() - 1);
    return j * grid.nx() + i;
}

KbiIntervalIntSmallDisjoint gridRectangleToRanks(const VsdGrid& grid, const QRectF& rect)
{
    const QRectF r = rect.normalized();
    if (!VsdGeometry::isFinite(r.topLeft()) || !VsdGeometry::isFinite(r.bottomRight())) {
        qWarning("VwvBasemapRendererSupport::gridRectangleToRanks: a rectangle with a non-finite corner refused");
        return {};
    }
    return nodesIn(grid, r, [&r](const QPointF& p) {
        return p.x() >= r.left() && p.x() <= r.right() && p.y() >= r.top() && p.y() <= r.bottom();
    });
}

KbiIntervalIntSmallDisjoint gridPolygonToRanks(const VsdGrid& grid, const QPolygonF& polygon)
{
    if (!VsdGeometry::isDefined(polygon)) {
        qWarning("VwvBasemapRendererSupport::gridPolygonToRanks: a polygon with a non-finite or undefined vertex refused");
        return {};
    }
    if (polygon.size() < 3)
        return {};
    return nodesIn(grid, polygon.boundingRect(),
                   [&polygon](const QPointF& p) { return VsdGeometry::ringContains(polygon, p); });
}

} // namespace VwvBasemapRendererSupport
