#pragma once
// Plane geometry the map tools measure with.

#include <velmora_basic_export.h>

#include <QPointF>
#include <QVector>

class VELMORA_BASIC_EXPORT KbgGeometry
{
public:
    // The absolute area of the simple polygon through the points in order (closed by
    // itself); 0 for fewer than three points or any non-finite coordinate.
    static double contourArea(const QVector<QPointF>& points);
    // The length of the path through the points in order, not closed.
    static double pathLength(const QVector<QPointF>& points);

    KbgGeometry() = delete;
};
