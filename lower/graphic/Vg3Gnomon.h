#pragma once
// A small x/y/z triad (red, green, blue arrows with their letters) drawn in a corner of the
// window over the scene, turning with the main camera so that it shows how the world axes
// are seen. It has its own camera and square viewport, recomputed from the window size at
// every traversal, and clears the depth buffer of its square so the scene never hides it.
// Put getRoot() after the scene in the rendered graph. Never pickable.
//
// With the automatic orientation helper on, the triad shows only while the camera turns
// and disappears a moment after it stops.

#include <velmora_graphic_export.h>

#include <Inventor/SbLinear.h>
#include <Inventor/SbViewportRegion.h>

#include <memory>

class SoCamera;
class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3Gnomon
{
public:
    Vg3Gnomon();
    ~Vg3Gnomon();

    // Referenced for the life of the object; the same node whatever is shown.
    SoSeparator* getRoot() const;

    // Follows this camera's orientation from now on (nullptr stops following). The camera
    // is not referenced: when it is deleted the gnomon keeps its last orientation.
    void connectCamera(SoCamera* camera);
    SoCamera* getCamera() const;
    // For callers without a camera node; a later camera change overrides it.
    void setCameraOrientation(const SbRotation& orientation);
    SbRotation getCameraOrientation() const;

    // Vu::Position flags, one horizontal and one vertical (default LEFT | BOTTOM); anything
    // else is refused with a warning.
    void setPosition(int position);
    int getPosition() const;
    // Side of the square in pixels (default 100), at least 16.
    void setSize(int pixels);
    int getSize() const;

    void setVisible(bool visible);
    bool isVisible() const;

    // Automatic orientation helper: while on, the triad (if visible) shows only while the
    // camera orientation changes, until `delaySeconds` after the last change.
    void setAutomatic(bool automatic);
    bool isAutomatic() const;
    void setAutomaticDelay(double delaySeconds);
    // True when the triad is drawn now.
    bool isShown() const;

    // The square of `size` pixels in the corner `position` (Vu::Position flags) of `window`;
    // the size is reduced to fit a smaller window. Shared by the corner overlays.
    static SbViewportRegion cornerViewport(const SbViewportRegion& window, int position,
                                           int size);

    // Called from an SoCallback placed before an overlay's camera: sets the corner
    // viewport on the traversal state and, when rendering, clears the depth buffer inside
    // it so the overlay draws over the scene. The viewport is restored when the enclosing
    // separator is left.
    static void enterCornerViewport(class SoAction* action, int position, int size);

private:
    Vg3Gnomon(const Vg3Gnomon&) = delete;
    Vg3Gnomon& operator=(const Vg3Gnomon&) = delete;
    std::unique_ptr<class Vg3GnomonPrivate> const _d;
};
