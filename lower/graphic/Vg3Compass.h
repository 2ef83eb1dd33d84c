#pragma once
// A north arrow with its "N", flat on the screen in a corner of the window, turning with
// the main camera's heading so that it points where north is seen. Drawn over the scene
// in its own square viewport like the gnomon; put getRoot() after the scene. Never
// pickable.

#include <velmora_graphic_export.h>

#include <Inventor/SbLinear.h>

#include <QColor>

#include <memory>

class SoCamera;
class SoSeparator;

class VELMORA_GRAPHIC_EXPORT Vg3Compass
{
public:
    Vg3Compass();
    ~Vg3Compass();

    // Referenced for the life of the object; the same node whatever is shown.
    SoSeparator* getRoot() const;

    // Follows this camera's orientation from now on (nullptr stops following); the camera
    // is not referenced.
    void connectCamera(SoCamera* camera);
    SoCamera* getCamera() const;
    void setCameraOrientation(const SbRotation& orientation);

    // The angle in radians, counter-clockwise on screen, from the screen's up direction to
    // the arrow: 0 when north is up, pi/2 when the camera faces east.
    float getArrowAngle() const;
    // The heading of a camera orientation: the compass bearing, in radians clockwise from
    // north, of the direction the camera looks toward (its up direction when it looks
    // straight down or up).
    static float heading(const SbRotation& orientation);

    // Vu::Position flags (default RIGHT | TOP); anything else is refused with a warning.
    void setPosition(int position);
    int getPosition() const;
    // Side of the square in pixels (default 80), at least 16.
    void setSize(int pixels);
    int getSize() const;

    void setVisible(bool visible);
    bool isVisible() const;

    // The arrow and letter; typically the view's foreground colour.
    void setColor(const QColor& color);
    QColor getColor() const;

private:
    Vg3Compass(const Vg3Compass&) = delete;
    Vg3Compass& operator=(const Vg3Compass&) = delete;
    std::unique_ptr<class Vg3CompassPrivate> const _d;
};
