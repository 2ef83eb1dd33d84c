#include "KbgGeometry.h"

#include <cmath>

double KbgGeometry::contourArea(const QVector<QPointF>& points)
{
    const int n = points.size();
    if (n < 3)
        return 0.0;
    // Shoelace about the first point, so that large map coordinates do not swallow the
    // small differences that make up the area.
    const QPointF origin = points.first();
    double twice = 0.0;
    for (int i = 1; i + 1 < n; ++i) {
        const QPointF a = points[i] - origin;
        const QPointF b = points[i + 1] - origin;
        twice += a.x() * b.y() - b.x() * a.y();
    }
    const double area = std::fabs(twice) / 2.0;
    return std::isfinite(area) ? area : 0.0;
}

double KbgGeometry::pathLength(const QVector<QPointF>& points)
{
    double length = 0.0;
    for (int i = 1; i < points.size(); ++i)
        length += std::hypot(points[i].x() - points[i - 1].x(), points[i].y() - points[i - 1].y());
    return length;
}
