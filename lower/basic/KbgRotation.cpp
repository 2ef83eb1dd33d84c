#include "KbgRotation.h"

#include <QtGlobal>
#include <cmath>

KbgRotation::KbgRotation(const KbgVector3D& axis, double angle)
{
    const double len = axis.length();
    if (!axis.isFinite() || len == 0.0 || !std::isfinite(len) || !std::isfinite(angle)) {
        qWarning("KbgRotation::KbgRotation: axis (%g, %g, %g) and angle %g make no rotation, "
                 "using the identity",
                 axis.x(), axis.y(), axis.z(), angle);
        return;
    }
    const KbgVector3D a = axis / len * std::sin(angle / 2.0);
    _x = a.x();
    _y = a.y();
    _z = a.z();
    _w = std::cos(angle / 2.0);
}

KbgRotation KbgRotation::fromTwoVectors(const KbgVector3D& from, const KbgVector3D& to)
{
    const double lf = from.length();
    const double lt = to.length();
    if (!from.isFinite() || !to.isFinite() || lf == 0.0 || lt == 0.0 || !std::isfinite(lf)
        || !std::isfinite(lt)) {
        qWarning("KbgRotation::fromTwoVectors: zero or non-finite direction, using the identity");
        return KbgRotation();
    }
    const KbgVector3D f = from / lf;
    const KbgVector3D t = to / lt;
    const double d = f.dot(t);
    if (d < -1.0 + 1e-12) {
        // Opposite: half a turn about a perpendicular, found by crossing with the coordinate
        // axis the direction is least aligned with.
        const double ax = std::fabs(f.x()), ay = std::fabs(f.y()), az = std::fabs(f.z());
        const KbgVector3D other = ax <= ay && ax <= az ? KbgVector3D(1.0, 0.0, 0.0)
                                  : ay <= az           ? KbgVector3D(0.0, 1.0, 0.0)
                                                       : KbgVector3D(0.0, 0.0, 1.0);
        const KbgVector3D axis = f.cross(other).normalized();
        return fromQuaternion(axis.x(), axis.y(), axis.z(), 0.0);
    }
    // Half-way quaternion: (f x t, 1 + f.t), normalised, is the turn by the angle between.
    const KbgVector3D c = f.cross(t);
    return fromQuaternion(c.x(), c.y(), c.z(), 1.0 + d);
}

KbgRotation KbgRotation::fromQuaternion(double x, double y, double z, double w)
{
    KbgRotation r;
    const double n = std::sqrt(x * x + y * y + z * z + w * w);
    if (!std::isfinite(n) || n == 0.0) {
        qWarning("KbgRotation::fromQuaternion: zero or non-finite quaternion, using the identity");
        return r;
    }
    r._x = x / n;
    r._y = y / n;
    r._z = z / n;
    r._w = w / n;
    return r;
}

KbgVector3D KbgRotation::apply(const KbgVector3D& v) const
{
    // v' = v + 2w (q x v) + 2 q x (q x v), q the vector part.
    const KbgVector3D q(_x, _y, _z);
    const KbgVector3D t = q.cross(v) * 2.0;
    return v + t * _w + q.cross(t);
}

KbgRotation KbgRotation::inverse() const
{
    KbgRotation r;
    r._x = -_x;
    r._y = -_y;
    r._z = -_z;
    r._w = _w;
    return r;
}

KbgRotation KbgRotation::operator*(const KbgRotation& o) const
{
    // Hamilton product this * o: o acts first.
    return fromQuaternion(_w * o._x + _x * o._w + _y * o._z - _z * o._y,
                          _w * o._y - _x * o._z + _y * o._w + _z * o._x,
                          _w * o._z + _x * o._y - _y * o._x + _z * o._w,
                          _w * o._w - _x * o._x - _y * o._y - _z * o._z);
}

void KbgRotation::getAxisAngle(KbgVector3D& axis, double& angle) const
{
    // Keep w >= 0 so that the angle stays within [0, pi].
    const double s = _w < 0.0 ? -1.0 : 1.0;
    const KbgVector3D v(s * _x, s * _y, s * _z);
    const double sinHalf = v.length();
    if (sinHalf == 0.0) {
        axis = KbgVector3D(0.0, 0.0, 1.0);
        angle = 0.0;
        return;
    }
    axis = v / sinHalf;
    angle = 2.0 * std::atan2(sinHalf, s * _w);
}

bool KbgRotation::fuzzyEquals(const KbgRotation& o, double tolerance) const
{
    // q and -q are the same turn: compare with the sign that brings them together.
    const double s = _x * o._x + _y * o._y + _z * o._z + _w * o._w < 0.0 ? -1.0 : 1.0;
    return std::fabs(_x - s * o._x) <= tolerance && std::fabs(_y - s * o._y) <= tolerance
           && std::fabs(_z - s * o._z) <= tolerance && std::fabs(_w - s * o._w) <= tolerance;
}

bool KbgRotation::operator==(const KbgRotation& o) const
{
    return (_x == o._x && _y == o._y && _z == o._z && _w == o._w)
           || (_x == -o._x && _y == -o._y && _z == -o._z && _w == -o._w);
}
