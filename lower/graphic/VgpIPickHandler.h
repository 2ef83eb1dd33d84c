#pragma once
// Something that takes over the mouse and keys of a 3D view while it is on top of the
// view's pick-handler stack (a point picker, a fence digitiser, a help overlay). Each
// handler answers whether it used the event; an unused event goes on to the camera.
// getHelpTitle() and getHelpText() are what the view shows while the handler is active.

#include <QString>

class SoHandleEventAction;
class SoKeyboardEvent;
class SoLocation2Event;
class SoMouseButtonEvent;

class VgpIPickHandler
{
public:
    virtual ~VgpIPickHandler() = default;

    virtual bool mousePressed(const SoMouseButtonEvent* event, SoHandleEventAction* action) = 0;
    virtual bool mouseMoved(const SoLocation2Event* event, SoHandleEventAction* action) = 0;
    virtual bool mouseReleased(const SoMouseButtonEvent* event, SoHandleEventAction* action) = 0;
    virtual bool keyPressed(const SoKeyboardEvent* event, SoHandleEventAction* action) = 0;
    virtual bool keyReleased(const SoKeyboardEvent* event, SoHandleEventAction* action) = 0;

    virtual QString getHelpTitle() const = 0;
    virtual QString getHelpText() const = 0;
};
