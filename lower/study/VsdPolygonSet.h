#pragma once
// Areas drawn on a map (boundaries, zones): each an outer ring with zero or more holes. Rings
// close by themselves and need three finite vertices. A hole's edge belongs to the polygon,
// its inside does not. Copies share the polygons.

#include <velmora_study_export.h>

#include <KbiIntervalIntSmallDisjoint.h>

#include <QPolygonF>
#include <QRectF>
#include <QVector>

struct VsdPolygon
{
    QPolygonF outer;
    QVector<QPolygonF> holes;
};

class VELMORA_STUDY_EXPORT VsdPolygonSet
{
public:
    int size() const { return _polygons.size(); }
    bool isEmpty() const { return _polygons.isEmpty(); }
    const QVector<VsdPolygon>& polygons() const { return _polygons; }
    // An empty polygon for a rank out of range.
    VsdPolygon at(int rank) const { return _polygons.value(rank); }

    // A ring with fewer than three distinct vertices or a non-finite or undefined coordinate,
    // and a rank out of range, are refused with a qWarning and change nothing.
    bool append(const QPolygonF& outer, const QVector<QPolygonF>& holes = {});
    bool replace(int rank, const QPolygonF& outer, const QVector<QPolygonF>& holes = {});
    bool remove(int rank);
    void clear();

    // The outer ring's area less its holes', never below 0; 0 for a rank out of range.
    double area(int rank) const;
    // Inside the outer ring and not inside a hole; false for a rank out of range.
    bool contains(int rank, const QPointF& p) const;

    // QRectF() for an empty set.
    QRectF boundingRect() const;
    // A point inside a polygon is at distance 0 from it, elsewhere the distance is to the
    // nearest ring edge. The nearest within tolerance (inclusive), the lowest rank among
    // equals; -1 when none. A negative or NaN tolerance is refused with a qWarning.
    int nearestRank(const QPointF& p, double tolerance) const;
    // The polygons whose area touches the rectangle or the polygon's area (odd-even rule,
    // edges included); a pick inside a hole does not touch.
    KbiIntervalIntSmallDisjoint ranksInRect(const QRectF& rect) const;
    KbiIntervalIntSmallDisjoint ranksInPolygon(const QPolygonF& polygon) const;

private:
    static bool _isValid(const QPolygonF& outer, const QVector<QPolygonF>& holes, const char* operation);
    bool _meets(int rank, const QPolygonF& region, const QRectF& regionBox) const;

    QVector<VsdPolygon> _polygons;
    // One box per polygon (its outer ring): picks skip the polygons far away.
    QVector<QRectF> _bounds;
};
