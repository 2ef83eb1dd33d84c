#pragma once
// Moves a camera the way a user does with the mouse: orbit about a rotation centre (a
// virtual trackball), pan in the view plane, dolly toward the focal point or toward the
// point under the cursor, and frame a scene. Positions are normalised to the viewport
// ((0, 0) bottom left, (1, 1) top right). Works on perspective and orthographic cameras;
// for an orthographic camera dolly scales the height instead of moving the camera.

#include <velmora_graphic_export.h>

#include <Inventor/SbRotation.h>
#include <Inventor/SbVec2f.h>
#include <Inventor/SbVec3f.h>

#include <memory>

class SbViewVolume;
class SbViewportRegion;
class SoCamera;
class SoNode;

class VELMORA_GRAPHIC_EXPORT SoCameraInteractor
{
public:
    // The camera is referenced while held; nullptr makes every motion a no-op.
    explicit SoCameraInteractor(SoCamera* camera = nullptr);
    ~SoCameraInteractor();

    void setCamera(SoCamera* camera);
    SoCamera* getCamera() const;

    void setRotationCenter(const SbVec3f& center);
    const SbVec3f& getRotationCenter() const;
    // The camera position plus its view direction times the focal distance.
    SbVec3f getFocalPoint() const;

    void activateOrbiting(const SbVec2f& position);
    // Rotates about the rotation centre by the trackball motion since the last call.
    void orbit(const SbVec2f& position);
    // Rotates the camera about the rotation centre.
    void rotate(const SbRotation& rotation);

    void activatePanning(const SbVec2f& position, const SbViewVolume& viewVolume);
    // Moves the camera so that the point grabbed at activation stays under the cursor.
    void pan(const SbVec2f& position, const SbViewVolume& viewVolume);

    // factor < 1 moves closer (a smaller orthographic height), > 1 farther; the focal
    // distance follows. Non-positive or non-finite factors are refused with a warning.
    void dolly(float factor);
    // As dolly, keeping the scene point under `position` at the same place on screen.
    void dollyWithZoomCenter(const SbVec2f& position, float factor, const SbViewportRegion& region);

    // Points the camera along `orientation` (the camera looks down its local -z) keeping
    // the focal point.
    void setOrientation(const SbRotation& orientation);
    // Frames `scene`'s bounding box, keeping the orientation, and puts the rotation centre
    // at its centre. An empty scene leaves the camera as it is.
    void viewAll(SoNode* scene, const SbViewportRegion& region);
    // Frames a box given by its centre and half size, keeping the orientation.
    void lookAt(const SbVec3f& center, const SbVec3f& halfSize, const SbViewportRegion& region);
    // Near and far planes just around `scene`'s bounding box, so that nothing is clipped
    // and depth precision is not wasted.
    void adjustClippingPlanes(SoNode* scene, const SbViewportRegion& region);

    // What `camera` sees in `region`, as rendering maps it. Coin reads the aspect ratio
    // from its output region argument, so a fresh one gives a square volume; this does not.
    static SbViewVolume getViewVolume(const SoCamera* camera, const SbViewportRegion& region);

private:
    SoCameraInteractor(const SoCameraInteractor&) = delete;
    SoCameraInteractor& operator=(const SoCameraInteractor&) = delete;
    std::unique_ptr<class SoCameraInteractorPrivate> const _d;
};
