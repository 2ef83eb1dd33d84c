#include "VsdGeometry.h"

#include <KbbGlobal.h>

#include <algorithm>
#include <cmath>

namespace {

double cross(const QPointF& o, const QPointF& a, const QPointF& b)
{
    return (a.x() - o.x()) * (b.y() - o.y()) - (a.y() - o.y()) * (b.x() - o.x());
}

// Collinearity with a relative tolerance: exact zero is rare once a diagonal edge has been
// through a division, and a pick along an edge must not depend on rounding.
bool nearlyCollinear(const QPointF& a, const QPointF& b, const QPointF& p)
{
    const double scale = std::max(std::hypot(b.x() - a.x(), b.y() - a.y()), std::hypot(p.x() - a.x(), p.y() - a.y()));
    return std::fabs(cross(a, b, p)) <= 1e-12 * scale * scale;
}

bool withinBox(const QPointF& a, const QPointF& b, const QPointF& p)
{
    return p.x() >= std::min(a.x(), b.x()) && p.x() <= std::max(a.x(), b.x()) && p.y() >= std::min(a.y(), b.y())
           && p.y() <= std::max(a.y(), b.y());
}

bool onSegment(const QPointF& a, const QPointF& b, const QPointF& p)
{
    return withinBox(a, b, p) && nearlyCollinear(a, b, p);
}

int sign(double v)
{
    return v > 0.0 ? 1 : (v < 0.0 ? -1 : 0);
}

} // namespace

bool VsdGeometry::isFinite(const QPointF& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

bool VsdGeometry::ringContains(const QPolygonF& ring, const QPointF& p, bool boundaryInside)
{
    const int n = ring.size();
    if (n == 0)
        return false;
    bool inside = false;
    for (int i = 0, j = n - 1; i < n; j = i++) {
        const QPointF& a = ring[j];
        const QPointF& b = ring[i];
        if (onSegment(a, b, p))
            return boundaryInside;
        if ((a.y() > p.y()) != (b.y() > p.y())) {
            const double xCross = a.x() + (p.y() - a.y()) * (b.x() - a.x()) / (b.y() - a.y());
            if (p.x() < xCross)
                inside = !inside;
        }
    }
    return inside;
}

double VsdGeometry::squaredDistanceToSegment(const QPointF& p, const QPointF& a, const QPointF& b)
{
    const double dx = b.x() - a.x();
    const double dy = b.y() - a.y();
    const double length2 = dx * dx + dy * dy;
    double t = 0.0;
    if (length2 > 0.0)
        t = std::clamp(((p.x() - a.x()) * dx + (p.y() - a.y()) * dy) / length2, 0.0, 1.0);
    const double ex = a.x() + t * dx - p.x();
    const double ey = a.y() + t * dy - p.y();
    return ex * ex + ey * ey;
}

double VsdGeometry::squaredDistanceToPath(const QPointF& p, const QPolygonF& path)
{
    if (path.isEmpty())
        return HUGE_VAL;
    if (path.size() == 1)
        return squaredDistanceToSegment(p, path[0], path[0]);
    double best = HUGE_VAL;
    for (int i = 1; i < path.size(); ++i)
        best = std::min(best, squaredDistanceToSegment(p, path[i - 1], path[i]));
    return best;
}

double VsdGeometry::squaredDistanceToRing(const QPointF& p, const QPolygonF& ring)
{
    double best = squaredDistanceToPath(p, ring);
    if (ring.size() > 2)
        best = std::min(best, squaredDistanceToSegment(p, ring.last(), ring.first()));
    return best;
}

bool VsdGeometry::segmentsIntersect(const QPointF& a, const QPointF& b, const QPointF& c, const QPointF& d)
{
    const int d1 = sign(cross(c, d, a));
    const int d2 = sign(cross(c, d, b));
    const int d3 = sign(cross(a, b, c));
    const int d4 = sign(cross(a, b, d));
    if (d1 * d2 < 0 && d3 * d4 < 0)
        return true;
    return onSegment(c, d, a) || onSegment(c, d, b) || onSegment(a, b, c) || onSegment(a, b, d);
}

bool VsdGeometry::edgesCross(const QPolygonF& path, bool closed, const QPolygonF& ring)
{
    const int n = path.size();
    const int m = ring.size();
    if (n < 2 || m == 0)
        return false;
    const int segments = closed && n > 2 ? n : n - 1;
    for (int i = 0; i < segments; ++i) {
        const QPointF& a = path[i];
        const QPointF& b = path[(i + 1) % n];
        for (int k = 0, l = m - 1; k < m; l = k++)
            if (segmentsIntersect(a, b, ring[l], ring[k]))
                return true;
    }
    return false;
}

bool VsdGeometry::pathMeetsRegion(const QPolygonF& path, const QPolygonF& region)
{
    // A vertex inside settles it; otherwise the two meet only where their edges cross.
    for (const QPointF& p : path)
        if (ringContains(region, p))
            return true;
    return edgesCross(path, false, region);
}

void VsdGeometry::coordinates(const QVector<QPolygonF>& lines, QVector<double>& x, QVector<double>& y)
{
    x.clear();
    y.clear();
    for (const QPolygonF& line : lines)
        for (const QPointF& p : line) {
            x.append(p.x());
            y.append(p.y());
        }
}

QRectF VsdGeometry::finiteBounds(const QPolygonF& points)
{
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
    for (const QPointF& p : points) {
        if (!isFinite(p))
            continue;
        minX = std::min(minX, p.x());
        maxX = std::max(maxX, p.x());
        minY = std::min(minY, p.y());
        maxY = std::max(maxY, p.y());
    }
    if (minX > maxX)
        return QRectF();
    return QRectF(QPointF(minX, minY), QPointF(maxX, maxY));
}

bool VsdGeometry::isDefined(const QPolygonF& points)
{
    return std::all_of(points.cbegin(), points.cend(), [](const QPointF& p) {
        return isFinite(p) && p.x() != KbbGlobal::D_FFFF && p.y() != KbbGlobal::D_FFFF;
    });
}

bool VsdGeometry::boxesTouch(const QRectF& a, const QRectF& b)
{
    const QRectF p = a.normalized();
    const QRectF q = b.normalized();
    return p.left() <= q.right() && q.left() <= p.right() && p.top() <= q.bottom() && q.top() <= p.bottom();
}

double VsdGeometry::squaredDistanceToBox(const QPointF& p, const QRectF& box)
{
    const QRectF b = box.normalized();
    const double dx = std::max({b.left() - p.x(), 0.0, p.x() - b.right()});
    const double dy = std::max({b.top() - p.y(), 0.0, p.y() - b.bottom()});
    return dx * dx + dy * dy;
}

QRectF VsdGeometry::unitedBounds(const QVector<QRectF>& boxes)
{
    QPolygonF corners;
    corners.reserve(2 * boxes.size());
    for (const QRectF& box : boxes)
        corners << box.topLeft() << box.bottomRight();
    return finiteBounds(corners);
}

int VsdGeometry::nearestShape(const QVector<QRectF>& boxes, const QPointF& p, double tolerance,
                              const std::function<double(int)>& squaredDistance)
{
    if (!isFinite(p) || !(tolerance >= 0.0))
        return -1;
    double best = tolerance * tolerance;
    int rank = -1;
    for (int i = 0; i < boxes.size(); ++i) {
        // The lowest rank wins a tie: later shapes must come strictly nearer.
        const double bound = squaredDistanceToBox(p, boxes[i]);
        if (bound > best || (rank >= 0 && bound == best))
            continue;
        const double d2 = squaredDistance(i);
        if (d2 < best || (rank < 0 && d2 == best)) {
            best = d2;
            rank = i;
        }
    }
    return rank;
}
