#pragma once
// The pick handlers of a 3D view: a stack whose bottom, never popped, is the overlay that
// shows the help of the handler on top. Mouse presses, releases and moves reach the top
// handler before the camera does; a handler that takes one keeps it from the camera.

#include <QVector>

#include <functional>
#include <memory>

class SoEventCallback;
class SoHandleEventAction;
class SoMouseButtonEvent;
class SoSeparator;
class VgpIPickHandler;
class VwwPickHandlerOverlay;

class Vw3PickStack
{
public:
    // Puts the mouse events and the help overlay into `slot`.
    explicit Vw3PickStack(SoSeparator* slot);
    ~Vw3PickStack();
    Vw3PickStack(const Vw3PickStack&) = delete;
    Vw3PickStack& operator=(const Vw3PickStack&) = delete;

    void push(VgpIPickHandler* handler);
    // Null when only the overlay is left.
    VgpIPickHandler* pop();
    VgpIPickHandler* top() const { return _handlers.last(); }
    // Asked for the presses and releases that the top handler leaves; true takes them
    // from the camera.
    using ButtonFallback = std::function<bool(const SoMouseButtonEvent*, SoHandleEventAction*)>;
    void setFallback(ButtonFallback fallback) { _fallback = std::move(fallback); }

private:
    static void _mouseCallback(void* data, SoEventCallback* node);
    void _showHelp();

    std::unique_ptr<VwwPickHandlerOverlay> const _overlay;
    QVector<VgpIPickHandler*> _handlers;
    ButtonFallback _fallback;
};
