#pragma once
// Plane tests the datasets pick with. A point on a ring or a segment counts as inside or
// touching, so that a pick drawn through a sample or along an edge takes it.

#include <velmora_study_export.h>

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QVector>

#include <functional>

class VELMORA_STUDY_EXPORT VsdGeometry
{
public:
    // The ring is closed by itself (a repeated last point is harmless); odd-even rule. A
    // point on the ring is inside unless boundaryInside is false (the inside of a hole).
    static bool ringContains(const QPolygonF& ring, const QPointF& p, bool boundaryInside = true);
    static double squaredDistanceToSegment(const QPointF& p, const QPointF& a, const QPointF& b);
    // The smallest squared distance from p to the edges of the ring (closed) or path (open).
    static double squaredDistanceToRing(const QPointF& p, const QPolygonF& ring);
    static double squaredDistanceToPath(const QPointF& p, const QPolygonF& path);
    // Closed segments, touching included.
    static bool segmentsIntersect(const QPointF& a, const QPointF& b, const QPointF& c, const QPointF& d);
    // Whether an edge of the path (closed into a ring when asked) touches an edge of the ring;
    // a path of one vertex has no edge.
    static bool edgesCross(const QPolygonF& path, bool closed, const QPolygonF& ring);
    // Whether the open path shares a point with the area of the ring (odd-even rule).
    static bool pathMeetsRegion(const QPolygonF& path, const QPolygonF& region);
    // The smallest rectangle holding the finite points; an empty QRectF when there is none.
    static QRectF finiteBounds(const QPolygonF& points);
    // The x and the y of every vertex of the lines, in order: what a range over the
    // coordinates (KbcValueRange) takes.
    static void coordinates(const QVector<QPolygonF>& lines, QVector<double>& x, QVector<double>& y);
    static bool isFinite(const QPointF& p);
    // Every vertex finite and none undefined (KbbGlobal::D_FFFF).
    static bool isDefined(const QPolygonF& points);
    // Closed boxes, so that a box of zero width (a vertical line) still touches; QRectF's
    // own intersects() says no for those.
    static bool boxesTouch(const QRectF& a, const QRectF& b);
    static double squaredDistanceToBox(const QPointF& p, const QRectF& box);
    // The smallest rectangle holding every box; an empty QRectF when there is none.
    static QRectF unitedBounds(const QVector<QRectF>& boxes);
    // The rank of the shape nearest p within the tolerance (inclusive), the lowest rank
    // among equals, -1 when none. The boxes let far shapes be passed over unmeasured.
    static int nearestShape(const QVector<QRectF>& boxes, const QPointF& p, double tolerance,
                            const std::function<double(int)>& squaredDistance);

    VsdGeometry() = delete;
};
