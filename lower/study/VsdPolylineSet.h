#pragma once
// Lines drawn on a map (faults, contours, wells' traces), each an open QPolygonF of at least
// two finite vertices, picked by their distance to the segments. Copies share the lines.

#include <velmora_study_export.h>

#include <KbiIntervalIntSmallDisjoint.h>

#include <QPolygonF>
#include <QRectF>
#include <QVector>

class VELMORA_STUDY_EXPORT VsdPolylineSet
{
public:
    int size() const { return _lines.size(); }
    bool isEmpty() const { return _lines.isEmpty(); }
    const QVector<QPolygonF>& polylines() const { return _lines; }
    // An empty polygon for a rank out of range.
    QPolygonF at(int rank) const { return _lines.value(rank); }

    // A line with fewer than two vertices or a non-finite or undefined coordinate, and a rank
    // out of range, are refused with a qWarning and change nothing.
    bool append(const QPolygonF& line);
    bool replace(int rank, const QPolygonF& line);
    bool remove(int rank);
    void clear();

    // QRectF() for an empty set.
    QRectF boundingRect() const;
    // The line with the nearest segment within tolerance (inclusive), the lowest rank among
    // equals; -1 when none. A negative or NaN tolerance is refused with a qWarning.
    int nearestRank(const QPointF& p, double tolerance) const;
    // The lines that touch the rectangle or the polygon's area (odd-even rule, edges
    // included), not only those wholly inside, as a pick through a bundle of lines expects.
    KbiIntervalIntSmallDisjoint ranksInRect(const QRectF& rect) const;
    KbiIntervalIntSmallDisjoint ranksInPolygon(const QPolygonF& polygon) const;

private:
    static bool _isValid(const QPolygonF& line, const char* operation);

    QVector<QPolygonF> _lines;
    // One box per line: picks skip the lines far away without looking at their vertices.
    QVector<QRectF> _bounds;
};
