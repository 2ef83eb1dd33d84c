#pragma once
// An oriented plane: the points p with normal . p == distance, the normal of unit length.
// Points on the side the normal points to have a positive signed distance.

#include <velmora_basic_export.h>

#include <KbgVector3D.h>

class VELMORA_BASIC_EXPORT KbgPlane
{
public:
    // The horizontal plane through the origin, facing up.
    KbgPlane() = default;
    // The plane `distance` from the origin along the normal, which need not be of unit
    // length. A zero or non-finite normal, or a non-finite distance, gives the default plane
    // with a qWarning.
    KbgPlane(const KbgVector3D& normal, double distance);
    KbgPlane(const KbgVector3D& point, const KbgVector3D& normal);
    // The plane through three points, its normal (b - a) x (c - a). Collinear or non-finite
    // points are refused with a qWarning and false, `plane` unchanged.
    static bool fromPoints(const KbgVector3D& a, const KbgVector3D& b, const KbgVector3D& c,
                           KbgPlane& plane);

    KbgVector3D getNormal() const { return _normal; }
    double getDistance() const { return _distance; }
    // The point of the plane nearest the origin.
    KbgVector3D getPoint() const { return _normal * _distance; }

    double signedDistance(const KbgVector3D& point) const { return _normal.dot(point) - _distance; }
    // On the side the normal points to, or on the plane.
    bool isInHalfSpace(const KbgVector3D& point) const { return signedDistance(point) >= 0.0; }
    KbgVector3D project(const KbgVector3D& point) const;
    // The same plane facing the other way.
    KbgPlane flipped() const;

    bool fuzzyEquals(const KbgPlane& o, double tolerance = 1e-9) const;
    bool operator==(const KbgPlane& o) const { return _normal == o._normal && _distance == o._distance; }
    bool operator!=(const KbgPlane& o) const { return !(*this == o); }

private:
    KbgVector3D _normal{0.0, 0.0, 1.0};
    double _distance = 0.0;
};

Q_DECLARE_METATYPE(KbgPlane)
