#include "Vw3SeekInfo.h"

#include <Inventor/SbBox3f.h>
#include <Inventor/SbTime.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoPointSet.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoTranslation.h>
#include <Inventor/sensors/SoTimerSensor.h>

#include <QtGlobal>
#include <cmath>

namespace {

bool isFinite(const KbgVector3D& v) { return std::isfinite(v.x()) && std::isfinite(v.y()) && std::isfinite(v.z()); }

} // namespace

Vw3SeekInfo::Vw3SeekInfo()
{
    _targetNode = new SoSeparator;
    _targetNode->setName("vw3seekinfo_target");
    _markerSwitch = new SoSwitch;
    _markerSwitch->whichChild = SO_SWITCH_NONE;
    _targetNode->addChild(_markerSwitch);
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    _markerSwitch->addChild(pickStyle);
    auto color = new SoBaseColor;
    color->rgb.setValue(1.0f, 0.5f, 0.0f);
    _markerSwitch->addChild(color);
    auto style = new SoDrawStyle;
    style->pointSize = 5.0f;
    _markerSwitch->addChild(style);
    _markerPosition = new SoTranslation;
    _markerSwitch->addChild(_markerPosition);
    _markerSwitch->addChild(new SoPointSet);

    _sensor = new SoTimerSensor(&Vw3SeekInfo::cameraSeekAnimationCB, this);
    _sensor->setInterval(SbTime(1.0 / 60.0));
}

Vw3SeekInfo::~Vw3SeekInfo()
{
    _sensor->unschedule();
    delete _sensor;
}

void Vw3SeekInfo::setTarget(const KbgVector3D& target)
{
    if (!isFinite(target)) {
        qWarning("Vw3SeekInfo::setTarget: the target is not finite");
        return;
    }
    _target = target;
    _markerPosition->translation.setValue(float(target.x()), float(target.y()), float(target.z()));
}

void Vw3SeekInfo::setViewBoxSize(const KbgVector3D& halfSize)
{
    if (!isFinite(halfSize) || halfSize.x() < 0 || halfSize.y() < 0 || halfSize.z() < 0) {
        qWarning("Vw3SeekInfo::setViewBoxSize: the size must be finite and not negative");
        return;
    }
    _viewBoxSize = halfSize;
}

void Vw3SeekInfo::setTargetBox(const SbBox3f& box)
{
    if (box.isEmpty()) {
        qWarning("Vw3SeekInfo::setTargetBox: the box is empty");
        return;
    }
    const SbVec3f c = box.getCenter();
    float dx, dy, dz;
    box.getSize(dx, dy, dz);
    setTarget(KbgVector3D(c[0], c[1], c[2]));
    setViewBoxSize(KbgVector3D(dx / 2.0, dy / 2.0, dz / 2.0));
}

void Vw3SeekInfo::setDuration(float seconds)
{
    if (!std::isfinite(seconds) || seconds < 0.0f) {
        qWarning("Vw3SeekInfo::setDuration: the duration must be finite and not negative");
        return;
    }
    _duration = seconds;
}

void Vw3SeekInfo::setCamera(SoCamera* camera)
{
    if (camera == _camera)
        return;
    stop();
    _camera = camera;
}

void Vw3SeekInfo::setCamera(SoPerspectiveCamera* camera) { setCamera(static_cast<SoCamera*>(camera)); }

bool Vw3SeekInfo::start(SoPerspectiveCamera* camera, const SbBox3f& box, float duration)
{
    setCamera(camera);
    setTargetBox(box);
    setDuration(duration);
    return start();
}

bool Vw3SeekInfo::start()
{
    if (!isReady()) {
        qWarning("Vw3SeekInfo::start: no camera to move");
        return false;
    }
    stop();
    const SbVec3f p = _camera->position.getValue();
    for (int i = 0; i < 3; ++i)
        _fromPosition[i] = p[i];
    _fromFocal = _camera->focalDistance.getValue();
    if (_camera->isOfType(SoOrthographicCamera::getClassTypeId()))
        _fromHeight = static_cast<SoOrthographicCamera*>(_camera.get())->height.getValue();
    _computeEnd();
    if (_duration <= 0.0f) {
        _applyStep(1.0);
        if (_stepCallback)
            _stepCallback(true);
        return true;
    }
    _running = true;
    _markerSwitch->whichChild = SO_SWITCH_ALL;
    _startTime = SbTime::getTimeOfDay().getValue();
    _sensor->schedule();
    return true;
}

void Vw3SeekInfo::stop()
{
    if (_sensor->isScheduled())
        _sensor->unschedule();
    if (!_running)
        return;
    _running = false;
    _markerSwitch->whichChild = SO_SWITCH_NONE;
}

void Vw3SeekInfo::_computeEnd()
{
    // The camera keeps its orientation and looks at the target from the distance at which a
    // sphere around the box fits the narrower side of the view.
    SbVec3f direction;
    _camera->orientation.getValue().multVec(SbVec3f(0.0f, 0.0f, -1.0f), direction);
    const double radius = std::max(_viewBoxSize.length(), 1e-6);
    const float aspect = _region.getViewportAspectRatio();
    double distance = radius * 2.0;
    _toHeight = _fromHeight;
    if (_camera->isOfType(SoPerspectiveCamera::getClassTypeId())) {
        double angle = static_cast<SoPerspectiveCamera*>(_camera.get())->heightAngle.getValue();
        if (aspect > 0.0f && aspect < 1.0f)
            angle = 2.0 * std::atan(std::tan(angle / 2.0) * aspect);
        distance = radius / std::sin(std::max(angle, 1e-3) / 2.0);
    } else if (_camera->isOfType(SoOrthographicCamera::getClassTypeId())) {
        _toHeight = float(2.0 * radius / ((aspect > 0.0f && aspect < 1.0f) ? aspect : 1.0f));
    }
    const SbVec3f target(float(_target.x()), float(_target.y()), float(_target.z()));
    const SbVec3f end = target - direction * float(distance);
    for (int i = 0; i < 3; ++i)
        _toPosition[i] = end[i];
    _toFocal = float(distance);
}

void Vw3SeekInfo::_applyStep(double t)
{
    // Smooth start and end of the move.
    const float s = float(t * t * (3.0 - 2.0 * t));
    SbVec3f position;
    for (int i = 0; i < 3; ++i)
        position[i] = _fromPosition[i] + (_toPosition[i] - _fromPosition[i]) * s;
    _camera->position = position;
    _camera->focalDistance = _fromFocal + (_toFocal - _fromFocal) * s;
    if (_camera->isOfType(SoOrthographicCamera::getClassTypeId()))
        static_cast<SoOrthographicCamera*>(_camera.get())->height = _fromHeight + (_toHeight - _fromHeight) * s;
}

void Vw3SeekInfo::cameraSeekAnimationCB(void* data, SoSensor* /*sensor*/)
{
    auto self = static_cast<Vw3SeekInfo*>(data);
    if (!self || !self->_running || !self->_camera)
        return;
    const double elapsed = SbTime::getTimeOfDay().getValue() - self->_startTime;
    const double t = self->_duration > 0.0f ? qBound(0.0, elapsed / self->_duration, 1.0) : 1.0;
    self->_applyStep(t);
    const bool finished = t >= 1.0;
    if (finished)
        self->stop();
    if (self->_stepCallback)
        self->_stepCallback(finished);
}
