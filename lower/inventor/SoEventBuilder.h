#pragma once
// Builds the Inventor events that translated window-system input becomes. It owns one event
// of each kind and refills it on every call, as window-system glue does, so an event stays
// valid until the next call for the same kind. Each event carries the time of the call.
// Coin has no mouse enter or leave event: they are location events that getEventSource()
// tells apart.

#include <velmora_graphic_export.h>

#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>

#include <memory>

class SoMouseWheelEvent;

class VELMORA_GRAPHIC_EXPORT SoEventBuilder
{
public:
    enum EventSource { MOUSE_MOVE, MOUSE_ENTER, MOUSE_LEAVE, OTHER };

    SoEventBuilder();
    ~SoEventBuilder();

    SoKeyboardEvent* getKeyEvent(SoKeyboardEvent::Key key, SoButtonEvent::State state, bool alt, bool ctrl,
                                 bool shift);
    SoMouseButtonEvent* getMouseButtonEvent(SoMouseButtonEvent::Button button, SoButtonEvent::State state, int x,
                                            int y, bool alt, bool ctrl, bool shift);
    SoLocation2Event* getMouseMoveEvent(int x, int y, bool alt, bool ctrl, bool shift);
    SoLocation2Event* getMouseEnterEvent(int x, int y, bool alt, bool ctrl, bool shift);
    SoLocation2Event* getMouseLeaveEvent(int x, int y, bool alt, bool ctrl, bool shift);
    SoMouseWheelEvent* getMouseWheelEvent(int delta, int x, int y, bool alt, bool ctrl, bool shift);

    // Which call built `event`; OTHER for an event this builder did not make.
    EventSource getEventSource(const SoEvent* event) const;

private:
    SoEventBuilder(const SoEventBuilder&) = delete;
    SoEventBuilder& operator=(const SoEventBuilder&) = delete;
    std::unique_ptr<class SoEventBuilderPrivate> const _d;
};
