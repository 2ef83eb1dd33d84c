#pragma once
// What the corner overlays (the gnomon, the compass) have in common: a root with a hiding
// switch, never pickable, drawn in a square viewport in a corner of the window with its own
// orthographic camera, unlit, and the following of the main camera's orientation. The owner
// adds its shapes under getContent() and hears of every orientation the main camera takes.

#include <SoRef.h>

#include <Inventor/SbLinear.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/sensors/SoFieldSensor.h>

#include <functional>

class SoAction;
class SoCamera;
class SoSeparator;
class SoSwitch;

class Vg3CornerOverlay
{
public:
    // `turning` is false for the orientation a camera already has when it is connected.
    using OrientationChanged = std::function<void(const SbRotation& orientation, bool turning)>;

    // `owner` names the class in warnings and prefixes the node names ("<prefix>_root",
    // "<prefix>_visibility"); `cameraHeight` is the height, in the content's units, that the
    // square shows.
    Vg3CornerOverlay(const char* owner, const char* prefix, int position, int size, float cameraHeight,
                     OrientationChanged changed);
    ~Vg3CornerOverlay();

    // Referenced for the life of the object.
    SoSeparator* getRoot() const;
    SoSeparator* getContent() const;

    // The camera is not referenced: when it is deleted the last orientation stays.
    void connectCamera(SoCamera* camera);
    SoCamera* getCamera() const;

    // Vu::Position flags; anything else is refused with a warning.
    void setPosition(int position);
    int getPosition() const;
    // At least 16 pixels.
    void setSize(int pixels);
    int getSize() const;

    void setVisible(bool visible);
    bool isVisible() const;
    // Hides a visible overlay for a while without changing isVisible().
    void setSuppressed(bool suppressed);
    bool isShown() const;

    static SbViewportRegion cornerViewport(const SbViewportRegion& window, int position, int size);
    static void enterCornerViewport(SoAction* action, int position, int size);

private:
    Vg3CornerOverlay(const Vg3CornerOverlay&) = delete;
    Vg3CornerOverlay& operator=(const Vg3CornerOverlay&) = delete;
    static void _cornerCallback(void* data, SoAction* action);
    static void _cameraChanged(void* data, SoSensor*);
    static void _cameraDeleted(void* data, SoSensor*);
    void _updateSwitch();

    const char* const _owner;
    OrientationChanged const _changed;
    SoRef<SoSeparator> _root;
    SoSwitch* _visibility = nullptr;
    SoSeparator* _content = nullptr;
    SoCamera* _camera = nullptr;
    SoFieldSensor _sensor{&Vg3CornerOverlay::_cameraChanged, this};
    int _position;
    int _size;
    bool _visible = true;
    bool _suppressed = false;
};
