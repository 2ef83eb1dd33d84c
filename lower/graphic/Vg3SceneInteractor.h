#pragma once
// Turns Inventor events into camera motion for one 3D view and holds what the view renders:
// a root with the camera (perspective or orthographic), a headlight that follows it, and
// the scene graph. The world is z up, x east, y north.
//
// processEvent() first lets the scene handle the event (event callbacks, draggers); what
// the scene leaves is navigation, in the VIEWING interaction mode:
//   left drag            orbit about the rotation centre (camera modes EXAMINER, ORBITER)
//   Ctrl/Shift + left,
//   right or middle drag pan
//   left drag in PLANE   pan
//   wheel                dolly toward the point under the cursor, 2^(steps·π/180) a step,
//                        one step per 120 of delta, negated by the 3D-view preference;
//                        smaller deltas (trackpads) add up to a step, a turn back drops them
//   Ctrl + wheel         ten steps a notch
// In SEEKING mode a left press seeks to the point under it. Cursor shapes are asked for
// with cursorChangeRequested; the window decides whether to follow.

#include <velmora_graphic_export.h>

#include <VugCameraState.h>

#include <Inventor/SbVec2i32.h>
#include <Inventor/SbViewportRegion.h>

#include <QObject>
#include <memory>

class SbVec3f;
class SoCamera;
class SoCameraInteractor;
class SoEvent;
class SoNode;
class SoPickedPoint;
class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3SceneInteractor : public QObject
{
    Q_OBJECT
public:
    enum InteractionMode { VIEWING = 0, PICKING = 1, SEEKING = 2, RULER = 3 };
    // EXAMINER orbits freely, ORBITER keeps z up, PLANE pans with the left button.
    enum CameraMode { EXAMINER = 0, ORBITER = 1, PLANE = 2 };
    enum ProjectionType { PERSPECTIVE, ORTHOGRAPHIC };

    explicit Vg3SceneInteractor(QObject* parent = nullptr);
    ~Vg3SceneInteractor() override;

    // What render areas render and pick: camera, headlight, then the scene graph.
    SoSeparator* getSceneRoot() const;
    // The graph under the camera (referenced while held); nullptr removes it.
    void setSceneGraph(SoNode* sceneGraph);
    SoNode* getSceneGraph() const;

    SoCamera* getCamera() const;
    SoCameraInteractor* getCameraInteractor() const;
    // Switching keeps the position, orientation and the visible height at the focal point.
    void setProjectionType(ProjectionType type);
    ProjectionType getProjectionType() const;
    Vug::CameraState getCameraState() const;
    // An invalid state is refused with a warning.
    void setCameraState(const Vug::CameraState& state);

    InteractionMode getInteractionMode() const;
    void setInteractionMode(InteractionMode mode);
    CameraMode getCameraMode() const;
    void setCameraMode(CameraMode mode);

    // The render area's viewport in device pixels; events are read against it.
    void setViewportRegion(const SbViewportRegion& region);
    const SbViewportRegion& getViewportRegion() const;

    // True when the event was used (by the scene or by navigation): the window should not
    // pass it on.
    bool processEvent(const SoEvent* event);
    // One touch point's event; true when used. Touch pans with one finger.
    bool processTouchEvent(const SoEvent* event);

    // Near and far planes around the scene; render areas call it before each frame.
    void updateCameraClippingPlanes();

    void viewAll();
    void viewFromTop();
    void viewFromBottom();
    void viewFromEast();
    void viewFromWest();
    void viewFromNorth();
    void viewFromSouth();
    // Ray-picks at a pixel of the viewport; on a hit, the rotation centre goes there and
    // the camera turns to it and moves halfway toward it. False when nothing is hit.
    bool seekToPoint(const SbVec2i32& pixel);
    // The first point the ray through `pixel` hits, with `radius` pixels of tolerance;
    // nullptr when nothing is hit. Valid until the next pick.
    const SoPickedPoint* pick(const SbVec2i32& pixel, int radius = 5);

Q_SIGNALS:
    void cameraChanged();
    void interactionModeChanged(int mode);
    void cursorChangeRequested(Qt::CursorShape shape);

private:
    std::unique_ptr<class Vg3SceneInteractorPrivate> const _d;
};
