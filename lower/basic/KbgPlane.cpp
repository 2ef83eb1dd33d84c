#include "KbgPlane.h"

#include <QtGlobal>
#include <cmath>

namespace {

bool isDirection(const KbgVector3D& v)
{
    const double len = v.length();
    return v.isFinite() && len > 0.0 && std::isfinite(len);
}

} // namespace

KbgPlane::KbgPlane(const KbgVector3D& normal, double distance)
{
    if (!isDirection(normal) || !std::isfinite(distance)) {
        qWarning("KbgPlane::KbgPlane: normal (%g, %g, %g) and distance %g make no plane, using "
                 "the plane z = 0",
                 normal.x(), normal.y(), normal.z(), distance);
        return;
    }
    _normal = normal.normalized();
    _distance = distance;
}

KbgPlane::KbgPlane(const KbgVector3D& point, const KbgVector3D& normal)
{
    if (!isDirection(normal) || !point.isFinite()) {
        qWarning("KbgPlane::KbgPlane: point (%g, %g, %g) and normal (%g, %g, %g) make no plane, "
                 "using the plane z = 0",
                 point.x(), point.y(), point.z(), normal.x(), normal.y(), normal.z());
        return;
    }
    _normal = normal.normalized();
    _distance = _normal.dot(point);
}

bool KbgPlane::fromPoints(const KbgVector3D& a, const KbgVector3D& b, const KbgVector3D& c,
                          KbgPlane& plane)
{
    if (!a.isFinite() || !b.isFinite() || !c.isFinite()) {
        qWarning("KbgPlane::fromPoints: non-finite point");
        return false;
    }
    const KbgVector3D u = b - a;
    const KbgVector3D v = c - a;
    const KbgVector3D n = u.cross(v);
    // Collinear within rounding: the normal is tiny next to the sides that made it.
    if (!isDirection(n) || n.length() <= 1e-12 * u.length() * v.length()) {
        qWarning("KbgPlane::fromPoints: the three points are on one line");
        return false;
    }
    plane = KbgPlane(a, n);
    return true;
}

KbgVector3D KbgPlane::project(const KbgVector3D& point) const
{
    return point - _normal * signedDistance(point);
}

KbgPlane KbgPlane::flipped() const
{
    KbgPlane p;
    p._normal = -_normal;
    p._distance = -_distance;
    return p;
}

bool KbgPlane::fuzzyEquals(const KbgPlane& o, double tolerance) const
{
    const double scale = std::fmax(1.0, std::fmax(std::fabs(_distance), std::fabs(o._distance)));
    return _normal.fuzzyEquals(o._normal, tolerance)
           && std::fabs(_distance - o._distance) <= tolerance * scale;
}
