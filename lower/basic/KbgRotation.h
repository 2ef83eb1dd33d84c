#pragma once
// A rotation in 3D, kept as a unit quaternion. Built from an axis and an angle (radians,
// counter-clockwise looking down the axis) or as the shortest turn from one direction to
// another. (a * b).apply(v) turns v by b first, then by a.

#include <velmora_basic_export.h>

#include <KbgVector3D.h>

class VELMORA_BASIC_EXPORT KbgRotation
{
public:
    // The identity.
    KbgRotation() = default;
    // A zero or non-finite axis, or a non-finite angle, gives the identity with a qWarning.
    KbgRotation(const KbgVector3D& axis, double angle);
    // The shortest rotation taking the direction `from` onto `to`; opposite directions turn
    // by half a turn about some axis perpendicular to both. Zero or non-finite vectors give
    // the identity with a qWarning.
    static KbgRotation fromTwoVectors(const KbgVector3D& from, const KbgVector3D& to);
    // Normalised; a zero or non-finite quaternion gives the identity with a qWarning.
    static KbgRotation fromQuaternion(double x, double y, double z, double w);

    KbgVector3D apply(const KbgVector3D& v) const;
    KbgRotation inverse() const;
    KbgRotation operator*(const KbgRotation& o) const;

    // The axis (unit) and angle in [0, pi]; the identity answers (0, 0, 1) and 0.
    void getAxisAngle(KbgVector3D& axis, double& angle) const;
    double x() const { return _x; }
    double y() const { return _y; }
    double z() const { return _z; }
    double w() const { return _w; }

    bool isIdentity() const { return _x == 0.0 && _y == 0.0 && _z == 0.0; }
    // Compares the turns, so q and -q (the same rotation) are equal.
    bool fuzzyEquals(const KbgRotation& o, double tolerance = 1e-9) const;
    bool operator==(const KbgRotation& o) const;
    bool operator!=(const KbgRotation& o) const { return !(*this == o); }

private:
    double _x = 0.0;
    double _y = 0.0;
    double _z = 0.0;
    double _w = 1.0;
};

Q_DECLARE_METATYPE(KbgRotation)
