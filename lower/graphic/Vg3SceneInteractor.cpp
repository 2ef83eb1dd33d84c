#include "Vg3SceneInteractor.h"

#include <SoCameraInteractor.h>
#include <SoMouseWheelEvent.h>
#include <SoRef.h>
#include <VupPreferences3DViews.h>

#include <Inventor/SbViewVolume.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoHandleEventAction.h>
#include <Inventor/actions/SoRayPickAction.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoTransformSeparator.h>

#include <algorithm>
#include <cmath>

namespace {

const double kPi = 3.141592653589793;
const int kWheelNotch = 120;

// The orientation of a camera looking along `dir` with `up` upward on screen.
SbRotation orientationFor(const SbVec3f& dir, const SbVec3f& up)
{
    SbVec3f z = -dir;
    z.normalize();
    SbVec3f x = up.cross(z);
    x.normalize();
    const SbVec3f y = z.cross(x);
    // Rows are the images of the camera's own axes (Inventor multiplies row vectors).
    const SbMatrix m(x[0], x[1], x[2], 0.0f, y[0], y[1], y[2], 0.0f, z[0], z[1], z[2], 0.0f, 0.0f, 0.0f, 0.0f,
        1.0f);
    return SbRotation(m);
}

SbVec3f cameraDirection(const SoCamera* camera)
{
    SbVec3f dir;
    camera->orientation.getValue().multVec(SbVec3f(0.0f, 0.0f, -1.0f), dir);
    return dir;
}

} // namespace

class Vg3SceneInteractorPrivate
{
public:
    enum Gesture { NONE, ORBIT, PAN };

    SoRef<SoSeparator> root;
    SoSwitch* cameraSwitch = nullptr;
    SoPerspectiveCamera* perspective = nullptr;
    SoOrthographicCamera* orthographic = nullptr;
    SoRotation* headlightRotation = nullptr;
    SoRef<SoNode> sceneGraph;
    SoCameraInteractor interactor;
    SbViewportRegion region;
    SoRayPickAction* pickAction = nullptr;
    // One action for all events, so that a dragger that grabs on press keeps the events
    // until it lets go.
    SoHandleEventAction* eventAction = nullptr;

    Vg3SceneInteractor::InteractionMode interactionMode = Vg3SceneInteractor::VIEWING;
    Vg3SceneInteractor::CameraMode cameraMode = Vg3SceneInteractor::EXAMINER;
    Gesture gesture = NONE;
    int buttonsDown = 0;
    // What a trackpad's small wheel deltas add up to until they make a notch; dropped
    // when the wheel turns the other way.
    int wheelRest = 0;
    SbVec2f lastPosition{0.0f, 0.0f};

    SoCamera* camera() const
    {
        return cameraSwitch->whichChild.getValue() == 1 ? static_cast<SoCamera*>(orthographic)
                                                         : static_cast<SoCamera*>(perspective);
    }
    SbViewVolume viewVolume() const
    {
        return SoCameraInteractor::getViewVolume(camera(), region);
    }
    bool handleScene(const SoEvent* event)
    {
        eventAction->setViewportRegion(region);
        eventAction->setEvent(event);
        eventAction->apply(root);
        return eventAction->isHandled();
    }
    Qt::CursorShape idleCursor() const
    {
        switch (interactionMode) {
        case Vg3SceneInteractor::PICKING:
            return Qt::PointingHandCursor;
        case Vg3SceneInteractor::SEEKING:
        case Vg3SceneInteractor::RULER:
            return Qt::CrossCursor;
        case Vg3SceneInteractor::VIEWING:
            break;
        }
        return Qt::ArrowCursor;
    }
};

Vg3SceneInteractor::Vg3SceneInteractor(QObject* parent)
    : QObject(parent)
    , _d(new Vg3SceneInteractorPrivate)
{
    _d->root = new SoSeparator;
    _d->root->setName("vg3_scene_interactor_root");

    _d->cameraSwitch = new SoSwitch;
    _d->perspective = new SoPerspectiveCamera;
    _d->orthographic = new SoOrthographicCamera;
    _d->cameraSwitch->addChild(_d->perspective);
    _d->cameraSwitch->addChild(_d->orthographic);
    _d->cameraSwitch->whichChild.setValue(0);
    _d->root->addChild(_d->cameraSwitch);

    // The headlight turns with the camera: a rotation fed by the camera's orientation, kept
    // to itself by the transform separator, while the light stays on for the scene.
    SoTransformSeparator* headlight = new SoTransformSeparator;
    _d->headlightRotation = new SoRotation;
    _d->headlightRotation->rotation.connectFrom(&_d->perspective->orientation);
    SoDirectionalLight* light = new SoDirectionalLight;
    light->direction.setValue(0.0f, 0.0f, -1.0f);
    headlight->addChild(_d->headlightRotation);
    headlight->addChild(light);
    _d->root->addChild(headlight);

    _d->interactor.setCamera(_d->perspective);
    _d->pickAction = new SoRayPickAction(_d->region);
    _d->eventAction = new SoHandleEventAction(_d->region);
}

Vg3SceneInteractor::~Vg3SceneInteractor()
{
    delete _d->pickAction;
    delete _d->eventAction;
    _d->interactor.setCamera(nullptr);
    _d->headlightRotation->rotation.disconnect();
}

SoSeparator* Vg3SceneInteractor::getSceneRoot() const
{
    return _d->root;
}

void Vg3SceneInteractor::setSceneGraph(SoNode* sceneGraph)
{
    if (sceneGraph == _d->sceneGraph)
        return;
    const SoRef<SoNode> old = std::exchange(_d->sceneGraph, sceneGraph);
    if (old)
        _d->root->removeChild(old);
    if (sceneGraph)
        _d->root->addChild(sceneGraph);
}

SoNode* Vg3SceneInteractor::getSceneGraph() const
{
    return _d->sceneGraph;
}

SoCamera* Vg3SceneInteractor::getCamera() const
{
    return _d->camera();
}

SoCameraInteractor* Vg3SceneInteractor::getCameraInteractor() const
{
    return &_d->interactor;
}

void Vg3SceneInteractor::setProjectionType(ProjectionType type)
{
    if (type == getProjectionType())
        return;
    const double halfTan = std::tan(_d->perspective->heightAngle.getValue() / 2.0);
    SoCamera* from = _d->camera();
    SoCamera* to = nullptr;
    const SbVec3f focalPoint = from->position.getValue() + cameraDirection(from) * from->focalDistance.getValue();
    to = type == ORTHOGRAPHIC ? static_cast<SoCamera*>(_d->orthographic) : static_cast<SoCamera*>(_d->perspective);
    to->orientation.setValue(from->orientation.getValue());
    to->nearDistance.setValue(from->nearDistance.getValue());
    to->farDistance.setValue(from->farDistance.getValue());
    if (type == ORTHOGRAPHIC) {
        // Same position; the height the perspective camera sees at its focal distance.
        to->position.setValue(from->position.getValue());
        to->focalDistance.setValue(from->focalDistance.getValue());
        _d->orthographic->height.setValue(float(2.0 * from->focalDistance.getValue() * halfTan));
    } else {
        // Same focal point; the distance at which the perspective angle sees that height.
        const float distance = float(_d->orthographic->height.getValue() / (2.0 * halfTan));
        to->focalDistance.setValue(distance);
        to->position.setValue(focalPoint - cameraDirection(from) * distance);
        to->nearDistance.setValue(std::max(from->nearDistance.getValue(), distance * 0.001f));
    }
    _d->cameraSwitch->whichChild.setValue(type == ORTHOGRAPHIC ? 1 : 0);
    _d->headlightRotation->rotation.connectFrom(&to->orientation);
    _d->interactor.setCamera(to);
    updateCameraClippingPlanes();
    Q_EMIT cameraChanged();
}

Vg3SceneInteractor::ProjectionType Vg3SceneInteractor::getProjectionType() const
{
    return _d->cameraSwitch->whichChild.getValue() == 1 ? ORTHOGRAPHIC : PERSPECTIVE;
}

Vug::CameraState Vg3SceneInteractor::getCameraState() const
{
    const SoCamera* camera = _d->camera();
    Vug::CameraState state;
    const SbVec3f position = camera->position.getValue();
    SbVec3f axis;
    float angle = 0.0f;
    camera->orientation.getValue().getValue(axis, angle);
    for (int i = 0; i < 3; ++i) {
        state.position[i] = position[i];
        state.axis[i] = axis[i];
    }
    if (axis.length() == 0.0f)
        state.axis[2] = 1.0;
    state.angle = angle;
    state.focalDistance = camera->focalDistance.getValue();
    state.orthographic = getProjectionType() == ORTHOGRAPHIC;
    state.height = state.orthographic ? _d->orthographic->height.getValue() : _d->perspective->heightAngle.getValue();
    return state;
}

void Vg3SceneInteractor::setCameraState(const Vug::CameraState& state)
{
    if (!state.isValid()) {
        qWarning("Vg3SceneInteractor::setCameraState: the camera state \"%s\" is not usable, ignored",
            qPrintable(state.toString()));
        return;
    }
    setProjectionType(state.orthographic ? ORTHOGRAPHIC : PERSPECTIVE);
    SoCamera* camera = _d->camera();
    camera->position.setValue(float(state.position[0]), float(state.position[1]), float(state.position[2]));
    camera->orientation.setValue(
        SbRotation(SbVec3f(float(state.axis[0]), float(state.axis[1]), float(state.axis[2])), float(state.angle)));
    camera->focalDistance.setValue(float(state.focalDistance));
    if (state.orthographic)
        _d->orthographic->height.setValue(float(state.height));
    else
        _d->perspective->heightAngle.setValue(float(state.height));
    updateCameraClippingPlanes();
    Q_EMIT cameraChanged();
}

Vg3SceneInteractor::InteractionMode Vg3SceneInteractor::getInteractionMode() const
{
    return _d->interactionMode;
}

void Vg3SceneInteractor::setInteractionMode(InteractionMode mode)
{
    if (mode < VIEWING || mode > RULER) {
        qWarning("Vg3SceneInteractor::setInteractionMode: unknown mode %d, ignored", int(mode));
        return;
    }
    if (mode == _d->interactionMode)
        return;
    _d->interactionMode = mode;
    if (_d->gesture == Vg3SceneInteractorPrivate::NONE)
        Q_EMIT cursorChangeRequested(_d->idleCursor());
    Q_EMIT interactionModeChanged(int(mode));
}

Vg3SceneInteractor::CameraMode Vg3SceneInteractor::getCameraMode() const
{
    return _d->cameraMode;
}

void Vg3SceneInteractor::setCameraMode(CameraMode mode)
{
    if (mode < EXAMINER || mode > PLANE) {
        qWarning("Vg3SceneInteractor::setCameraMode: unknown mode %d, ignored", int(mode));
        return;
    }
    _d->cameraMode = mode;
}

void Vg3SceneInteractor::setViewportRegion(const SbViewportRegion& region)
{
    const SbVec2s size = region.getViewportSizePixels();
    if (size[0] <= 0 || size[1] <= 0) {
        qWarning("Vg3SceneInteractor::setViewportRegion: the viewport %d x %d is empty, ignored", int(size[0]),
            int(size[1]));
        return;
    }
    _d->region = region;
    _d->pickAction->setViewportRegion(region);
}

const SbViewportRegion& Vg3SceneInteractor::getViewportRegion() const
{
    return _d->region;
}

bool Vg3SceneInteractor::processEvent(const SoEvent* event)
{
    if (!event) {
        qWarning("Vg3SceneInteractor::processEvent: no event");
        return false;
    }
    if (_d->handleScene(event))
        return true;

    using P = Vg3SceneInteractorPrivate;
    const SbVec2f position = event->getNormalizedPosition(_d->region);

    if (event->isOfType(SoMouseWheelEvent::getClassTypeId())) {
        const int delta = static_cast<const SoMouseWheelEvent*>(event)->getDelta();
        if ((delta < 0) != (_d->wheelRest < 0))
            _d->wheelRest = 0;
        const long long total = (long long)_d->wheelRest + delta;
        _d->wheelRest = int(total % kWheelNotch);
        // A hundred notches at once already move the camera a factor of three; more is a
        // device gone wrong, not a user.
        int steps = int(-std::clamp(total / kWheelNotch, -100LL, 100LL));
        // Ctrl makes a notch ten: about 13 % instead of 1.2 %, for long dollies.
        if (event->wasCtrlDown())
            steps *= 10;
        if (VupPreferences3DViews::getMouseWheelZoomDirection())
            steps = -steps;
        if (steps == 0)
            return false;
        const float factor = float(std::pow(2.0, steps * kPi / 180.0));
        _d->interactor.dollyWithZoomCenter(position, factor, _d->region);
        Q_EMIT cameraChanged();
        return true;
    }

    if (event->isOfType(SoMouseButtonEvent::getClassTypeId())) {
        const SoMouseButtonEvent* button = static_cast<const SoMouseButtonEvent*>(event);
        const SoMouseButtonEvent::Button which = button->getButton();
        if (which != SoMouseButtonEvent::BUTTON1 && which != SoMouseButtonEvent::BUTTON2
            && which != SoMouseButtonEvent::BUTTON3)
            return false;
        const int bit = 1 << int(which);
        if (button->getState() == SoButtonEvent::UP) {
            _d->buttonsDown &= ~bit;
            if (_d->gesture == P::NONE || _d->buttonsDown != 0)
                return _d->gesture != P::NONE;
            _d->gesture = P::NONE;
            Q_EMIT cursorChangeRequested(_d->idleCursor());
            return true;
        }
        if (button->getState() != SoButtonEvent::DOWN)
            return false;
        _d->buttonsDown |= bit;
        if (_d->gesture != P::NONE)
            return true; // a second button while dragging changes nothing
        const bool left = which == SoMouseButtonEvent::BUTTON1;
        if (left && _d->interactionMode == SEEKING) {
            const SbVec2s pixel = event->getPosition(_d->region);
            seekToPoint(SbVec2i32(pixel[0], pixel[1]));
            return true;
        }
        // Picking and measuring own the left button; the scene's handlers see it first.
        if (left && _d->interactionMode != VIEWING)
            return false;
        const bool modified = event->wasCtrlDown() || event->wasShiftDown();
        if (left && !modified && _d->cameraMode != PLANE) {
            _d->gesture = P::ORBIT;
            _d->interactor.setRotationCenter(_d->interactor.getFocalPoint());
            _d->interactor.activateOrbiting(position);
            _d->lastPosition = position;
            Q_EMIT cursorChangeRequested(Qt::ClosedHandCursor);
            return true;
        }
        _d->gesture = P::PAN;
        _d->interactor.activatePanning(position, _d->viewVolume());
        Q_EMIT cursorChangeRequested(Qt::SizeAllCursor);
        return true;
    }

    if (event->isOfType(SoLocation2Event::getClassTypeId())) {
        if (_d->gesture == P::PAN) {
            _d->interactor.pan(position, _d->viewVolume());
        } else if (_d->gesture == P::ORBIT) {
            if (_d->cameraMode == ORBITER) {
                // Turntable: sideways motion turns about the vertical through the centre,
                // upward motion tilts, never past the vertical so that z stays up.
                const SbVec2f delta = position - _d->lastPosition;
                _d->interactor.rotate(SbRotation(SbVec3f(0.0f, 0.0f, 1.0f), float(-delta[0] * 2.0 * kPi)));
                SoCamera* camera = _d->camera();
                SbVec3f right;
                camera->orientation.getValue().multVec(SbVec3f(1.0f, 0.0f, 0.0f), right);
                const SbRotation tilt(right, float(-delta[1] * kPi));
                SbVec3f up;
                (camera->orientation.getValue() * tilt).multVec(SbVec3f(0.0f, 1.0f, 0.0f), up);
                if (up[2] >= 0.0f)
                    _d->interactor.rotate(tilt);
            } else {
                _d->interactor.orbit(position);
            }
            _d->lastPosition = position;
        } else {
            return false;
        }
        Q_EMIT cameraChanged();
        return true;
    }
    return false;
}

bool Vg3SceneInteractor::processTouchEvent(const SoEvent* event)
{
    if (!event) {
        qWarning("Vg3SceneInteractor::processTouchEvent: no event");
        return false;
    }
    if (_d->handleScene(event))
        return true;

    using P = Vg3SceneInteractorPrivate;
    const SbVec2f position = event->getNormalizedPosition(_d->region);
    if (event->isOfType(SoButtonEvent::getClassTypeId())) {
        const SoButtonEvent* button = static_cast<const SoButtonEvent*>(event);
        if (button->getState() == SoButtonEvent::DOWN) {
            _d->gesture = P::PAN;
            _d->interactor.activatePanning(position, _d->viewVolume());
            return true;
        }
        if (button->getState() == SoButtonEvent::UP && _d->gesture != P::NONE) {
            _d->gesture = P::NONE;
            _d->buttonsDown = 0;
            return true;
        }
        return false;
    }
    if (event->isOfType(SoLocation2Event::getClassTypeId()) && _d->gesture == P::PAN) {
        _d->interactor.pan(position, _d->viewVolume());
        Q_EMIT cameraChanged();
        return true;
    }
    return false;
}

void Vg3SceneInteractor::updateCameraClippingPlanes()
{
    _d->interactor.adjustClippingPlanes(_d->sceneGraph, _d->region);
}

void Vg3SceneInteractor::viewAll()
{
    _d->interactor.viewAll(_d->sceneGraph, _d->region);
    updateCameraClippingPlanes();
    Q_EMIT cameraChanged();
}

namespace {

struct Preset
{
    SbVec3f direction;
    SbVec3f up;
};

} // namespace

static void applyPreset(Vg3SceneInteractor* self, SoCameraInteractor* interactor, const Preset& preset)
{
    interactor->setOrientation(orientationFor(preset.direction, preset.up));
    self->viewAll();
}

void Vg3SceneInteractor::viewFromTop()
{
    applyPreset(this, &_d->interactor, {SbVec3f(0, 0, -1), SbVec3f(0, 1, 0)});
}

void Vg3SceneInteractor::viewFromBottom()
{
    applyPreset(this, &_d->interactor, {SbVec3f(0, 0, 1), SbVec3f(0, 1, 0)});
}

void Vg3SceneInteractor::viewFromEast()
{
    applyPreset(this, &_d->interactor, {SbVec3f(-1, 0, 0), SbVec3f(0, 0, 1)});
}

void Vg3SceneInteractor::viewFromWest()
{
    applyPreset(this, &_d->interactor, {SbVec3f(1, 0, 0), SbVec3f(0, 0, 1)});
}

void Vg3SceneInteractor::viewFromNorth()
{
    applyPreset(this, &_d->interactor, {SbVec3f(0, -1, 0), SbVec3f(0, 0, 1)});
}

void Vg3SceneInteractor::viewFromSouth()
{
    applyPreset(this, &_d->interactor, {SbVec3f(0, 1, 0), SbVec3f(0, 0, 1)});
}

bool Vg3SceneInteractor::seekToPoint(const SbVec2i32& pixel)
{
    const SoPickedPoint* picked = pick(pixel);
    if (!picked)
        return false;
    const SbVec3f target = picked->getPoint();
    SoCamera* camera = _d->camera();
    SbVec3f toTarget = target - camera->position.getValue();
    const float distance = toTarget.length();
    if (!(distance > 0.0f) || !std::isfinite(distance))
        return false;
    toTarget /= distance;
    // Turn by the smallest rotation that points the camera at the target, so that the
    // picture does not roll.
    camera->orientation.setValue(camera->orientation.getValue() * SbRotation(cameraDirection(camera), toTarget));
    const float half = distance / 2.0f;
    camera->position.setValue(target - toTarget * half);
    if (camera == _d->orthographic) {
        // The height the perspective camera would see from there, as a projection switch keeps.
        const double halfTan = std::tan(_d->perspective->heightAngle.getValue() / 2.0);
        _d->orthographic->height.setValue(float(2.0 * half * halfTan));
    }
    camera->focalDistance.setValue(half);
    _d->interactor.setRotationCenter(target);
    updateCameraClippingPlanes();
    Q_EMIT cameraChanged();
    return true;
}

const SoPickedPoint* Vg3SceneInteractor::pick(const SbVec2i32& pixel, int radius)
{
    const SbVec2s size = _d->region.getViewportSizePixels();
    if (pixel[0] < 0 || pixel[1] < 0 || pixel[0] >= size[0] || pixel[1] >= size[1]) {
        qWarning("Vg3SceneInteractor::pick: pixel (%d, %d) is outside the %d x %d viewport", int(pixel[0]),
            int(pixel[1]), int(size[0]), int(size[1]));
        return nullptr;
    }
    _d->pickAction->setViewportRegion(_d->region);
    _d->pickAction->setPoint(SbVec2s(short(pixel[0]), short(pixel[1])));
    _d->pickAction->setRadius(float(std::max(radius, 0)));
    _d->pickAction->setPickAll(FALSE);
    _d->pickAction->apply(_d->root);
    return _d->pickAction->getPickedPoint();
}
