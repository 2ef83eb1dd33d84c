#include "VsdPolygonSet.h"

#include <KbgGeometry.h>
#include <VsdGeometry.h>

#include <algorithm>

namespace {

// The vertices a ring really has: a last point repeating the first closes nothing more.
int distinctVertexCount(const QPolygonF& ring)
{
    return ring.size() > 1 && ring.first() == ring.last() ? ring.size() - 1 : ring.size();
}

} // namespace

bool VsdPolygonSet::_isValid(const QPolygonF& outer, const QVector<QPolygonF>& holes, const char* operation)
{
    for (int r = -1; r < holes.size(); ++r) {
        const QPolygonF& ring = r < 0 ? outer : holes[r];
        const QByteArray which = r < 0 ? QByteArray("the outer ring") : "hole " + QByteArray::number(r);
        if (distinctVertexCount(ring) < 3) {
            qWarning("VsdPolygonSet::%s: %s has %d vertices, refused", operation, which.constData(), ring.size());
            return false;
        }
        if (!VsdGeometry::isDefined(ring)) {
            qWarning("VsdPolygonSet::%s: %s has a non-finite or undefined vertex, refused", operation,
                     which.constData());
            return false;
        }
    }
    return true;
}

bool VsdPolygonSet::append(const QPolygonF& outer, const QVector<QPolygonF>& holes)
{
    if (!_isValid(outer, holes, "append"))
        return false;
    _polygons.append(VsdPolygon{outer, holes});
    _bounds.append(VsdGeometry::finiteBounds(outer));
    return true;
}

bool VsdPolygonSet::replace(int rank, const QPolygonF& outer, const QVector<QPolygonF>& holes)
{
    if (rank < 0 || rank >= size()) {
        qWarning("VsdPolygonSet::replace: rank %d refused, the set has %d polygons", rank, size());
        return false;
    }
    if (!_isValid(outer, holes, "replace"))
        return false;
    _polygons[rank] = VsdPolygon{outer, holes};
    _bounds[rank] = VsdGeometry::finiteBounds(outer);
    return true;
}

bool VsdPolygonSet::remove(int rank)
{
    if (rank < 0 || rank >= size()) {
        qWarning("VsdPolygonSet::remove: rank %d refused, the set has %d polygons", rank, size());
        return false;
    }
    _polygons.remove(rank);
    _bounds.remove(rank);
    return true;
}

void VsdPolygonSet::clear()
{
    _polygons.clear();
    _bounds.clear();
}

double VsdPolygonSet::area(int rank) const
{
    if (rank < 0 || rank >= size())
        return 0.0;
    const VsdPolygon& polygon = _polygons[rank];
    double area = KbgGeometry::contourArea(polygon.outer);
    for (const QPolygonF& hole : polygon.holes)
        area -= KbgGeometry::contourArea(hole);
    return std::max(area, 0.0);
}

bool VsdPolygonSet::contains(int rank, const QPointF& p) const
{
    if (rank < 0 || rank >= size() || !VsdGeometry::isFinite(p))
        return false;
    const VsdPolygon& polygon = _polygons[rank];
    if (!VsdGeometry::ringContains(polygon.outer, p))
        return false;
    return std::none_of(polygon.holes.cbegin(), polygon.holes.cend(),
                        [&p](const QPolygonF& hole) { return VsdGeometry::ringContains(hole, p, false); });
}

QRectF VsdPolygonSet::boundingRect() const
{
    return VsdGeometry::unitedBounds(_bounds);
}

int VsdPolygonSet::nearestRank(const QPointF& p, double tolerance) const
{
    if (!(tolerance >= 0.0)) {
        qWarning("VsdPolygonSet::nearestRank: tolerance %g refused", tolerance);
        return -1;
    }
    return VsdGeometry::nearestShape(_bounds, p, tolerance, [this, &p](int i) {
        // Inside the area is no distance at all: a click on a polygon picks it.
        if (contains(i, p))
            return 0.0;
        const VsdPolygon& polygon = _polygons[i];
        double d2 = VsdGeometry::squaredDistanceToRing(p, polygon.outer);
        for (const QPolygonF& hole : polygon.holes)
            d2 = std::min(d2, VsdGeometry::squaredDistanceToRing(p, hole));
        return d2;
    });
}

KbiIntervalIntSmallDisjoint VsdPolygonSet::ranksInRect(const QRectF& rect) const
{
    return ranksInPolygon(QPolygonF(rect.normalized()));
}

bool VsdPolygonSet::_meets(int rank, const QPolygonF& region, const QRectF& regionBox) const
{
    if (!VsdGeometry::boxesTouch(regionBox, _bounds[rank]))
        return false;
    const VsdPolygon& polygon = _polygons[rank];
    // When no edges cross, either the region lies in the polygon's area (then its first
    // vertex does), or the polygon lies in the region (then its first vertex does), or they
    // are apart, a region within a hole included.
    if (contains(rank, region.first()) || VsdGeometry::ringContains(region, polygon.outer.first()))
        return true;
    if (VsdGeometry::edgesCross(polygon.outer, true, region))
        return true;
    return std::any_of(polygon.holes.cbegin(), polygon.holes.cend(),
                       [&region](const QPolygonF& hole) { return VsdGeometry::edgesCross(hole, true, region); });
}

KbiIntervalIntSmallDisjoint VsdPolygonSet::ranksInPolygon(const QPolygonF& polygon) const
{
    KbiIntervalIntSmallDisjoint ranks;
    if (polygon.isEmpty())
        return ranks;
    if (!VsdGeometry::isDefined(polygon)) {
        qWarning("VsdPolygonSet::ranksInPolygon: a polygon with a non-finite or undefined vertex refused");
        return ranks;
    }
    const QRectF box = VsdGeometry::finiteBounds(polygon);
    for (int i = 0; i < size(); ++i)
        if (_meets(i, polygon, box))
            ranks.add(i);
    return ranks;
}
