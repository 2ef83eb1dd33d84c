#pragma once
// The animated camera move of a 3D view toward a box: the camera keeps its orientation and
// slides, along an eased curve, to where the box (a centre and a half size) fills the view.
// A timer sensor drives the frames, so the move runs from the event loop through the
// Inventor system timer. A zero duration jumps at once. The target node is a marker of the
// target point, hidden except while a move runs; views put it last under their root.

#include <velmora_widget_export.h>

#include <KbgVector3D.h>
#include <SoRef.h>

#include <Inventor/SbViewportRegion.h>

#include <functional>

class SbBox3f;
class SoCamera;
class SoPerspectiveCamera;
class SoSensor;
class SoSeparator;
class SoSwitch;
class SoTimerSensor;
class SoTranslation;

class VELMORA_WIDGET_EXPORT Vw3SeekInfo
{
public:
    Vw3SeekInfo();
    ~Vw3SeekInfo();

    const KbgVector3D& target() const { return _target; }
    void setTarget(const KbgVector3D& target);
    const KbgVector3D& viewBoxSize() const { return _viewBoxSize; }
    // Half the size of the box to frame; negative or non-finite sizes are refused.
    void setViewBoxSize(const KbgVector3D& halfSize);
    // Centre and half size of the box; an empty box is refused.
    void setTargetBox(const SbBox3f& box);
    float duration() const { return _duration; }
    // Seconds; negative or non-finite durations are refused.
    void setDuration(float seconds);

    // The camera moved (referenced while held); perspective or orthographic.
    void setCamera(SoCamera* camera);
    void setCamera(SoPerspectiveCamera* camera);
    SoCamera* getCamera() const { return _camera; }
    // Its aspect decides how far the camera stands so that the box fits both ways.
    void setViewportRegion(const SbViewportRegion& region) { _region = region; }

    // The marker of the target point (referenced by this object).
    SoSeparator* getTargetNode() const { return _targetNode; }

    bool running() const { return _running; }
    // A camera to move.
    bool isReady() const { return _camera != nullptr; }
    // False when not ready.
    bool start();
    bool start(SoPerspectiveCamera* camera, const SbBox3f& box, float duration);
    void stop();
    // Called after each step of the move and once when it ends (finished true).
    void setStepCallback(const std::function<void(bool finished)>& callback) { _stepCallback = callback; }

    static void cameraSeekAnimationCB(void* data, SoSensor* sensor);

private:
    Vw3SeekInfo(const Vw3SeekInfo&) = delete;
    Vw3SeekInfo& operator=(const Vw3SeekInfo&) = delete;
    void _computeEnd();
    void _applyStep(double t);

    KbgVector3D _target;
    KbgVector3D _viewBoxSize{1.0, 1.0, 1.0};
    float _duration = 1.0f;
    SoRef<SoCamera> _camera;
    SbViewportRegion _region;
    SoRef<SoSeparator> _targetNode;
    SoSwitch* _markerSwitch = nullptr;
    SoTranslation* _markerPosition = nullptr;
    SoTimerSensor* _sensor = nullptr;
    bool _running = false;
    double _startTime = 0.0;
    // Camera state at the start and at the end of the move.
    float _fromPosition[3] = {0, 0, 0};
    float _toPosition[3] = {0, 0, 0};
    float _fromFocal = 1.0f;
    float _toFocal = 1.0f;
    float _fromHeight = 1.0f;
    float _toHeight = 1.0f;
    std::function<void(bool)> _stepCallback;
};
