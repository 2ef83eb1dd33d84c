#include "KbgClipPlaneDefinition.h"

#include <QtGlobal>
#include <cmath>

bool KbgClipPlaneDefinition::setPosition(const KbgVector3D& position)
{
    if (!position.isFinite()) {
        qWarning("KbgClipPlaneDefinition::setPosition: non-finite position refused");
        return false;
    }
    _position = position;
    return true;
}

bool KbgClipPlaneDefinition::setNormal(const KbgVector3D& normal)
{
    const double len = normal.length();
    if (!normal.isFinite() || len == 0.0 || !std::isfinite(len)) {
        qWarning("KbgClipPlaneDefinition::setNormal: the normal (%g, %g, %g) has no direction",
                 normal.x(), normal.y(), normal.z());
        return false;
    }
    _normal = normal / len;
    return true;
}

bool KbgClipPlaneDefinition::setSliceWidth(double width)
{
    if (!std::isfinite(width) || width <= 0.0) {
        qWarning("KbgClipPlaneDefinition::setSliceWidth: %g is not a positive width", width);
        return false;
    }
    _sliceWidth = width;
    return true;
}

bool KbgClipPlaneDefinition::setStepSize(double step)
{
    if (!std::isfinite(step) || step <= 0.0) {
        qWarning("KbgClipPlaneDefinition::setStepSize: %g is not a positive step", step);
        return false;
    }
    _stepSize = step;
    return true;
}

KbgRotation KbgClipPlaneDefinition::getOrientation() const
{
    return KbgRotation::fromTwoVectors(KbgVector3D(0.0, 1.0, 0.0), _normal);
}

void KbgClipPlaneDefinition::setOrientation(const KbgRotation& rotation)
{
    setNormal(rotation.apply(KbgVector3D(0.0, 1.0, 0.0)));
}

KbgPlane KbgClipPlaneDefinition::getPlane() const
{
    return KbgPlane(_position, _normal);
}

QPair<KbgPlane, KbgPlane> KbgClipPlaneDefinition::getSlicePlanes() const
{
    const KbgVector3D half = _normal * (_sliceWidth / 2.0);
    return {KbgPlane(_position - half, _normal), KbgPlane(_position + half, -_normal)};
}

bool KbgClipPlaneDefinition::isKept(const KbgVector3D& point) const
{
    if (_mode == HALF_SPACE)
        return getPlane().isInHalfSpace(point);
    const QPair<KbgPlane, KbgPlane> faces = getSlicePlanes();
    return faces.first.isInHalfSpace(point) && faces.second.isInHalfSpace(point);
}

bool KbgClipPlaneDefinition::operator==(const KbgClipPlaneDefinition& o) const
{
    return _position == o._position && _normal == o._normal && _sliceWidth == o._sliceWidth
           && _stepSize == o._stepSize && _mode == o._mode;
}
