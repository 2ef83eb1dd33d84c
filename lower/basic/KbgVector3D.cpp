#include "KbgVector3D.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>

double KbgVector3D::operator[](int index) const
{
    switch (index) {
    case 0:
        return _x;
    case 1:
        return _y;
    case 2:
        return _z;
    default:
        qWarning("KbgVector3D::operator[]: index %d out of range 0 to 2", index);
        return 0.0;
    }
}

double KbgVector3D::length() const
{
    // hypot avoids the overflow of squaring very large coordinates.
    return std::hypot(_x, _y, _z);
}

KbgVector3D KbgVector3D::normalized() const
{
    const double len = length();
    if (!isFinite() || len == 0.0 || !std::isfinite(len)) {
        qWarning("KbgVector3D::normalized: the vector (%g, %g, %g) has no direction", _x, _y, _z);
        return *this;
    }
    return *this / len;
}

bool KbgVector3D::isFinite() const
{
    return std::isfinite(_x) && std::isfinite(_y) && std::isfinite(_z);
}

bool KbgVector3D::fuzzyEquals(const KbgVector3D& o, double tolerance) const
{
    const auto close = [tolerance](double a, double b) {
        const double scale = std::max({1.0, std::fabs(a), std::fabs(b)});
        return std::fabs(a - b) <= tolerance * scale;
    };
    return close(_x, o._x) && close(_y, o._y) && close(_z, o._z);
}
