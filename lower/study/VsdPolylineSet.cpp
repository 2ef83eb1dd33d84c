#include "VsdPolylineSet.h"

#include <VsdGeometry.h>

bool VsdPolylineSet::_isValid(const QPolygonF& line, const char* operation)
{
    if (line.size() < 2) {
        qWarning("VsdPolylineSet::%s: a line of %d vertices refused", operation, line.size());
        return false;
    }
    if (!VsdGeometry::isDefined(line)) {
        qWarning("VsdPolylineSet::%s: a line with a non-finite or undefined vertex refused", operation);
        return false;
    }
    return true;
}

bool VsdPolylineSet::append(const QPolygonF& line)
{
    if (!_isValid(line, "append"))
        return false;
    _lines.append(line);
    _bounds.append(VsdGeometry::finiteBounds(line));
    return true;
}

bool VsdPolylineSet::replace(int rank, const QPolygonF& line)
{
    if (rank < 0 || rank >= size()) {
        qWarning("VsdPolylineSet::replace: rank %d refused, the set has %d lines", rank, size());
        return false;
    }
    if (!_isValid(line, "replace"))
        return false;
    _lines[rank] = line;
    _bounds[rank] = VsdGeometry::finiteBounds(line);
    return true;
}

bool VsdPolylineSet::remove(int rank)
{
    if (rank < 0 || rank >= size()) {
        qWarning("VsdPolylineSet::remove: rank %d refused, the set has %d lines", rank, size());
        return false;
    }
    _lines.remove(rank);
    _bounds.remove(rank);
    return true;
}

void VsdPolylineSet::clear()
{
    _lines.clear();
    _bounds.clear();
}

QRectF VsdPolylineSet::boundingRect() const
{
    return VsdGeometry::unitedBounds(_bounds);
}

int VsdPolylineSet::nearestRank(const QPointF& p, double tolerance) const
{
    if (!(tolerance >= 0.0)) {
        qWarning("VsdPolylineSet::nearestRank: tolerance %g refused", tolerance);
        return -1;
    }
    return VsdGeometry::nearestShape(_bounds, p, tolerance,
                                     [this, &p](int i) { return VsdGeometry::squaredDistanceToPath(p, _lines[i]); });
}

KbiIntervalIntSmallDisjoint VsdPolylineSet::ranksInRect(const QRectF& rect) const
{
    return ranksInPolygon(QPolygonF(rect.normalized()));
}

KbiIntervalIntSmallDisjoint VsdPolylineSet::ranksInPolygon(const QPolygonF& polygon) const
{
    KbiIntervalIntSmallDisjoint ranks;
    if (polygon.isEmpty())
        return ranks;
    if (!VsdGeometry::isDefined(polygon)) {
        qWarning("VsdPolylineSet::ranksInPolygon: a polygon with a non-finite or undefined vertex refused");
        return ranks;
    }
    const QRectF box = VsdGeometry::finiteBounds(polygon);
    for (int i = 0; i < size(); ++i)
        if (VsdGeometry::boxesTouch(box, _bounds[i]) && VsdGeometry::pathMeetsRegion(_lines[i], polygon))
            ranks.add(i);
    return ranks;
}
