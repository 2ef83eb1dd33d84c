#include "SoCameraInteractor.h"
#include "SoRef.h"

#include <Inventor/SbBox3f.h>
#include <Inventor/SbLine.h>
#include <Inventor/SbPlane.h>
#include <Inventor/SbSphere.h>
#include <Inventor/SbViewVolume.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/nodes/SoCamera.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/projectors/SbSphereSheetProjector.h>

#include <QtGlobal>

#include <algorithm>
#include <limits>
#include <cmath>

namespace {

// An orthographic camera keeps the distance a perspective camera of the default height
// angle would have for the same visible height, so that switching projection keeps the
// camera where it is.
const double kOrthoHalfAngleTan = std::tan(0.785398163397448 / 2.0);

SbLine rayThrough(const SbViewVolume& volume, const SbVec2f& position)
{
    SbLine line;
    volume.projectPointToLine(position, line);
    return line;
}

bool isFinite(const SbVec3f& v)
{
    return std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]);
}

SbVec3f viewDirection(const SoCamera* camera)
{
    SbVec3f dir;
    camera->orientation.getValue().multVec(SbVec3f(0.0f, 0.0f, -1.0f), dir);
    return dir;
}

SbBox3f sceneBox(SoNode* scene, const SbViewportRegion& region)
{
    if (!scene)
        return SbBox3f();
    SoGetBoundingBoxAction action(region);
    action.apply(scene);
    return action.getXfBoundingBox().project();
}

} // namespace

class SoCameraInteractorPrivate
{
public:
    SoRef<SoCamera> camera;
    SbVec3f rotationCenter{0.0f, 0.0f, 0.0f};
    SbSphereSheetProjector projector{SbSphere(SbVec3f(0.0f, 0.0f, 0.0f), 0.8f)};
    SbPlane panPlane;
    SbVec3f panGrab{0.0f, 0.0f, 0.0f};
    bool panActive = false;

    SoOrthographicCamera* ortho() const
    {
        return camera && camera->isOfType(SoOrthographicCamera::getClassTypeId())
            ? static_cast<SoOrthographicCamera*>(camera.get())
            : nullptr;
    }
    SoPerspectiveCamera* perspective() const
    {
        return camera && camera->isOfType(SoPerspectiveCamera::getClassTypeId())
            ? static_cast<SoPerspectiveCamera*>(camera.get())
            : nullptr;
    }
};

SoCameraInteractor::SoCameraInteractor(SoCamera* camera)
    : _d(new SoCameraInteractorPrivate)
{
    SbViewVolume unit;
    unit.ortho(-1.0f, 1.0f, -1.0f, 1.0f, -1.0f, 1.0f);
    _d->projector.setViewVolume(unit);
    setCamera(camera);
}

SoCameraInteractor::~SoCameraInteractor() = default;

void SoCameraInteractor::setCamera(SoCamera* camera)
{
    if (camera == _d->camera)
        return;
    _d->camera = camera;
    _d->panActive = false;
}

SoCamera* SoCameraInteractor::getCamera() const
{
    return _d->camera;
}

void SoCameraInteractor::setRotationCenter(const SbVec3f& center)
{
    if (!isFinite(center)) {
        qWarning("SoCameraInteractor::setRotationCenter: the centre is not a finite point, ignored");
        return;
    }
    _d->rotationCenter = center;
}

const SbVec3f& SoCameraInteractor::getRotationCenter() const
{
    return _d->rotationCenter;
}

SbVec3f SoCameraInteractor::getFocalPoint() const
{
    if (!_d->camera)
        return SbVec3f(0.0f, 0.0f, 0.0f);
    return _d->camera->position.getValue() + viewDirection(_d->camera) * _d->camera->focalDistance.getValue();
}

void SoCameraInteractor::activateOrbiting(const SbVec2f& position)
{
    _d->projector.project(position);
}

void SoCameraInteractor::orbit(const SbVec2f& position)
{
    if (!_d->camera)
        return;
    SbRotation trackball;
    _d->projector.projectAndGetRotation(position, trackball);
    // The trackball turns the scene in the camera's frame; the camera turns the other way.
    trackball.invert();
    const SbRotation current = _d->camera->orientation.getValue();
    const SbRotation turned = trackball * current;
    rotate(current.inverse() * turned);
}

void SoCameraInteractor::rotate(const SbRotation& rotation)
{
    if (!_d->camera)
        return;
    SbVec3f offset;
    rotation.multVec(_d->camera->position.getValue() - _d->rotationCenter, offset);
    const SbVec3f position = _d->rotationCenter + offset;
    if (!isFinite(position))
        return;
    _d->camera->orientation.setValue(_d->camera->orientation.getValue() * rotation);
    _d->camera->position.setValue(position);
}

void SoCameraInteractor::activatePanning(const SbVec2f& position, const SbViewVolume& viewVolume)
{
    if (!_d->camera)
        return;
    const SbVec3f dir = viewDirection(_d->camera);
    _d->panPlane = SbPlane(dir, getFocalPoint());
    const SbLine line = rayThrough(viewVolume, position);
    SbVec3f grab;
    _d->panActive = _d->panPlane.intersect(line, grab) && isFinite(grab);
    _d->panGrab = grab;
}

void SoCameraInteractor::pan(const SbVec2f& position, const SbViewVolume& viewVolume)
{
    if (!_d->camera || !_d->panActive)
        return;
    SbVec3f current;
    if (!_d->panPlane.intersect(rayThrough(viewVolume, position), current) || !isFinite(current))
        return;
    _d->camera->position.setValue(_d->camera->position.getValue() + (_d->panGrab - current));
}

void SoCameraInteractor::dolly(float factor)
{
    if (!_d->camera)
        return;
    if (!(factor > 0.0f) || !std::isfinite(factor)) {
        qWarning("SoCameraInteractor::dolly: the factor %g is not a positive number, ignored", double(factor));
        return;
    }
    const SbVec3f focal = getFocalPoint();
    const float distance = _d->camera->focalDistance.getValue() * factor;
    _d->camera->position.setValue(focal - viewDirection(_d->camera) * distance);
    _d->camera->focalDistance.setValue(distance);
    if (SoOrthographicCamera* ortho = _d->ortho())
        ortho->height.setValue(ortho->height.getValue() * factor);
}

void SoCameraInteractor::dollyWithZoomCenter(const SbVec2f& position, float factor, const SbViewportRegion& region)
{
    if (!_d->camera)
        return;
    if (!(factor > 0.0f) || !std::isfinite(factor)) {
        qWarning("SoCameraInteractor::dollyWithZoomCenter: the factor %g is not a positive number, ignored",
            double(factor));
        return;
    }
    const SbViewVolume volume = getViewVolume(_d->camera, region);
    const SbPlane focalPlane(viewDirection(_d->camera), getFocalPoint());
    SbVec3f center;
    if (!focalPlane.intersect(rayThrough(volume, position), center) || !isFinite(center)) {
        dolly(factor);
        return;
    }
    // Scaling the camera's place about the point under the cursor keeps that point on the
    // same ray, hence at the same place on screen.
    _d->camera->position.setValue(center + (_d->camera->position.getValue() - center) * factor);
    _d->camera->focalDistance.setValue(_d->camera->focalDistance.getValue() * factor);
    if (SoOrthographicCamera* ortho = _d->ortho())
        ortho->height.setValue(ortho->height.getValue() * factor);
}

void SoCameraInteractor::setOrientation(const SbRotation& orientation)
{
    if (!_d->camera)
        return;
    const SbVec3f focal = getFocalPoint();
    _d->camera->orientation.setValue(orientation);
    _d->camera->position.setValue(focal - viewDirection(_d->camera) * _d->camera->focalDistance.getValue());
}

void SoCameraInteractor::viewAll(SoNode* scene, const SbViewportRegion& region)
{
    if (!_d->camera)
        return;
    const SbBox3f box = sceneBox(scene, region);
    if (box.isEmpty())
        return;
    float dx, dy, dz;
    box.getSize(dx, dy, dz);
    lookAt(box.getCenter(), SbVec3f(dx, dy, dz) * 0.5f, region);
    _d->rotationCenter = box.getCenter();
}

void SoCameraInteractor::lookAt(const SbVec3f& center, const SbVec3f& halfSize, const SbViewportRegion& region)
{
    if (!_d->camera)
        return;
    if (!isFinite(center) || !isFinite(halfSize)) {
        qWarning("SoCameraInteractor::lookAt: the box is not finite, ignored");
        return;
    }
    // The length squares each half size in single precision: beyond 1e19 it overflows.
    float radius = halfSize.length();
    if (!std::isfinite(radius)) {
        qWarning("SoCameraInteractor::lookAt: the box is too large to frame, ignored");
        return;
    }
    if (radius <= 0.0f)
        radius = 1.0f;
    const float aspect = region.getViewportAspectRatio();
    const SbVec3f dir = viewDirection(_d->camera);
    float distance = radius;
    if (SoPerspectiveCamera* persp = _d->perspective()) {
        // The narrower of the two view angles must hold the bounding sphere.
        double half = persp->heightAngle.getValue() / 2.0;
        if (aspect < 1.0f && aspect > 0.0f)
            half = std::atan(std::tan(half) * aspect);
        distance = float(radius / std::sin(half));
    } else if (SoOrthographicCamera* ortho = _d->ortho()) {
        float height = 2.0f * radius;
        if (aspect < 1.0f && aspect > 0.0f)
            height /= aspect;
        ortho->height.setValue(height);
        distance = std::max(float(height / (2.0 * kOrthoHalfAngleTan)), 2.0f * radius);
    }
    _d->camera->position.setValue(center - dir * distance);
    _d->camera->focalDistance.setValue(distance);
    const float nearDistance = std::max(distance - radius, distance * 0.001f);
    _d->camera->nearDistance.setValue(_d->ortho() ? distance - radius : nearDistance);
    _d->camera->farDistance.setValue(distance + radius);
}

void SoCameraInteractor::adjustClippingPlanes(SoNode* scene, const SbViewportRegion& region)
{
    if (!_d->camera)
        return;
    const SbBox3f box = sceneBox(scene, region);
    if (box.isEmpty())
        return;
    const SbVec3f position = _d->camera->position.getValue();
    const SbVec3f dir = viewDirection(_d->camera);
    const SbVec3f& lo = box.getMin();
    const SbVec3f& hi = box.getMax();
    float nearest = std::numeric_limits<float>::max();
    float farthest = -std::numeric_limits<float>::max();
    for (int i = 0; i < 8; ++i) {
        const SbVec3f corner(i & 1 ? hi[0] : lo[0], i & 2 ? hi[1] : lo[1], i & 4 ? hi[2] : lo[2]);
        const float depth = dir.dot(corner - position);
        nearest = std::min(nearest, depth);
        farthest = std::max(farthest, depth);
    }
    if (!std::isfinite(nearest) || !std::isfinite(farthest))
        return;
    // A small margin keeps faces lying on the box from flickering at the planes.
    const float margin = std::max((farthest - nearest) * 0.01f, 1e-4f * std::max(1.0f, std::fabs(farthest)));
    float nearDistance = nearest - margin;
    float farDistance = farthest + margin;
    if (_d->perspective()) {
        // Perspective depth needs a positive near plane; too close a one wastes precision.
        if (farDistance <= 0.0f) {
            farDistance = 1.0f;
            nearDistance = 0.001f;
        } else {
            nearDistance = std::max(nearDistance, farDistance * 0.0005f);
        }
    }
    if (_d->camera->nearDistance.getValue() != nearDistance)
        _d->camera->nearDistance.setValue(nearDistance);
    if (_d->camera->farDistance.getValue() != farDistance)
        _d->camera->farDistance.setValue(farDistance);
}

SbViewVolume SoCameraInteractor::getViewVolume(const SoCamera* camera, const SbViewportRegion& region)
{
    if (!camera)
        return SbViewVolume();
    SbViewportRegion used(region);
    return camera->getViewVolume(region, used);
}
