#pragma once
// A point or direction in 3D scene space (x east, y north, z up), in doubles so that
// projected map coordinates keep their metres. A plain copyable value.

#include <velmora_basic_export.h>

#include <QMetaType>

class VELMORA_BASIC_EXPORT KbgVector3D
{
public:
    constexpr KbgVector3D() = default;
    constexpr KbgVector3D(double x, double y, double z) : _x(x), _y(y), _z(z) {}

    constexpr double x() const { return _x; }
    constexpr double y() const { return _y; }
    constexpr double z() const { return _z; }
    void setX(double x) { _x = x; }
    void setY(double y) { _y = y; }
    void setZ(double z) { _z = z; }
    // 0, 1, 2 for x, y, z; any other index answers with a qWarning and 0.
    double operator[](int index) const;

    double dot(const KbgVector3D& o) const { return _x * o._x + _y * o._y + _z * o._z; }
    KbgVector3D cross(const KbgVector3D& o) const
    {
        return {_y * o._z - _z * o._y, _z * o._x - _x * o._z, _x * o._y - _y * o._x};
    }
    double length() const;
    double lengthSquared() const { return dot(*this); }
    double distanceTo(const KbgVector3D& o) const { return (*this - o).length(); }
    // The unit vector of the same direction. A zero or non-finite vector has none: it is
    // returned unchanged, with a qWarning.
    KbgVector3D normalized() const;

    bool isNull() const { return _x == 0.0 && _y == 0.0 && _z == 0.0; }
    bool isFinite() const;
    // Equal within `tolerance` on each coordinate, scaled by the larger magnitude when that
    // exceeds 1 so that map coordinates compare by their relative precision.
    bool fuzzyEquals(const KbgVector3D& o, double tolerance = 1e-9) const;

    KbgVector3D operator-() const { return {-_x, -_y, -_z}; }
    KbgVector3D operator+(const KbgVector3D& o) const { return {_x + o._x, _y + o._y, _z + o._z}; }
    KbgVector3D operator-(const KbgVector3D& o) const { return {_x - o._x, _y - o._y, _z - o._z}; }
    KbgVector3D operator*(double f) const { return {_x * f, _y * f, _z * f}; }
    KbgVector3D operator/(double f) const { return {_x / f, _y / f, _z / f}; }
    KbgVector3D& operator+=(const KbgVector3D& o) { return *this = *this + o; }
    KbgVector3D& operator-=(const KbgVector3D& o) { return *this = *this - o; }
    KbgVector3D& operator*=(double f) { return *this = *this * f; }
    KbgVector3D& operator/=(double f) { return *this = *this / f; }
    bool operator==(const KbgVector3D& o) const { return _x == o._x && _y == o._y && _z == o._z; }
    bool operator!=(const KbgVector3D& o) const { return !(*this == o); }

private:
    double _x = 0.0;
    double _y = 0.0;
    double _z = 0.0;
};

inline KbgVector3D operator*(double f, const KbgVector3D& v) { return v * f; }

Q_DECLARE_METATYPE(KbgVector3D)
