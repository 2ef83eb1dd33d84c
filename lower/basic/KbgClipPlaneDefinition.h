#pragma once
// Where a view cuts its scene: a plane through `position` facing `normal`, keeping either
// the half-space the normal points to (HALF_SPACE) or a slab `sliceWidth` thick centred on
// the plane (SLICE). `stepSize` is how far one step moves the plane along its normal.
// Defaults: the plane y = 0 facing north, width 1, step 1, half-space.

#include <velmora_basic_export.h>

#include <KbgPlane.h>
#include <KbgRotation.h>
#include <KbgVector3D.h>

#include <QPair>

class VELMORA_BASIC_EXPORT KbgClipPlaneDefinition
{
public:
    enum Mode { HALF_SPACE, SLICE };

    KbgClipPlaneDefinition() = default;

    // Each setter refuses bad values with a qWarning and false, leaving the definition
    // unchanged: non-finite positions, zero or non-finite normals, and widths or steps that
    // are not finite and positive.
    KbgVector3D getPosition() const { return _position; }
    bool setPosition(const KbgVector3D& position);
    // Unit length; setNormal normalises.
    KbgVector3D getNormal() const { return _normal; }
    bool setNormal(const KbgVector3D& normal);
    double getSliceWidth() const { return _sliceWidth; }
    bool setSliceWidth(double width);
    double getStepSize() const { return _stepSize; }
    bool setStepSize(double step);
    Mode getMode() const { return _mode; }
    void setMode(Mode mode) { _mode = mode; }

    // The normal as a turn of the local vector (0, 1, 0); setOrientation sets the normal to
    // that turn of (0, 1, 0).
    KbgRotation getOrientation() const;
    void setOrientation(const KbgRotation& rotation);
    void flip() { _normal = -_normal; }

    // The plane through the position facing the normal.
    KbgPlane getPlane() const;
    // The two faces of the slab, both facing inwards: a point is inside the slab when it is
    // in the half-space of both.
    QPair<KbgPlane, KbgPlane> getSlicePlanes() const;
    // Whether a point is kept by the current mode (borders included).
    bool isKept(const KbgVector3D& point) const;

    bool operator==(const KbgClipPlaneDefinition& o) const;
    bool operator!=(const KbgClipPlaneDefinition& o) const { return !(*this == o); }

private:
    KbgVector3D _position;
    KbgVector3D _normal{0.0, 1.0, 0.0};
    double _sliceWidth = 1.0;
    double _stepSize = 1.0;
    Mode _mode = HALF_SPACE;
};

Q_DECLARE_METATYPE(KbgClipPlaneDefinition)
