#include <SoEventBuilder.h>

#include <SoMouseWheelEvent.h>

#include <Inventor/SbTime.h>

#include <QtGlobal>

#include <limits>

class SoEventBuilderPrivate
{
public:
    // Stamps the common part of every event. Window coordinates beyond Inventor's short
    // range are clamped to it.
    void fill(SoEvent& event, int x, int y, bool alt, bool ctrl, bool shift)
    {
        const int low = std::numeric_limits<short>::min();
        const int high = std::numeric_limits<short>::max();
        lastPosition.setValue(short(qBound(low, x, high)), short(qBound(low, y, high)));
        fill(event, alt, ctrl, shift);
    }

    // For events without a position of their own (keys): the last one seen.
    void fill(SoEvent& event, bool alt, bool ctrl, bool shift)
    {
        event.setTime(SbTime::getTimeOfDay());
        event.setPosition(lastPosition);
        event.setAltDown(alt);
        event.setCtrlDown(ctrl);
        event.setShiftDown(shift);
    }

    SbVec2s lastPosition{0, 0};
    SoKeyboardEvent key;
    SoMouseButtonEvent button;
    SoLocation2Event move;
    SoLocation2Event enter;
    SoLocation2Event leave;
    SoMouseWheelEvent wheel;
};

SoEventBuilder::SoEventBuilder()
    : _d(std::make_unique<SoEventBuilderPrivate>())
{
}

SoEventBuilder::~SoEventBuilder() = default;

SoKeyboardEvent* SoEventBuilder::getKeyEvent(SoKeyboardEvent::Key key, SoButtonEvent::State state, bool alt,
                                             bool ctrl, bool shift)
{
    _d->fill(_d->key, alt, ctrl, shift);
    _d->key.setKey(key);
    _d->key.setState(state);
    return &_d->key;
}

SoMouseButtonEvent* SoEventBuilder::getMouseButtonEvent(SoMouseButtonEvent::Button button,
                                                        SoButtonEvent::State state, int x, int y, bool alt,
                                                        bool ctrl, bool shift)
{
    _d->fill(_d->button, x, y, alt, ctrl, shift);
    _d->button.setButton(button);
    _d->button.setState(state);
    return &_d->button;
}

SoLocation2Event* SoEventBuilder::getMouseMoveEvent(int x, int y, bool alt, bool ctrl, bool shift)
{
    _d->fill(_d->move, x, y, alt, ctrl, shift);
    return &_d->move;
}

SoLocation2Event* SoEventBuilder::getMouseEnterEvent(int x, int y, bool alt, bool ctrl, bool shift)
{
    _d->fill(_d->enter, x, y, alt, ctrl, shift);
    return &_d->enter;
}

SoLocation2Event* SoEventBuilder::getMouseLeaveEvent(int x, int y, bool alt, bool ctrl, bool shift)
{
    _d->fill(_d->leave, x, y, alt, ctrl, shift);
    return &_d->leave;
}

SoMouseWheelEvent* SoEventBuilder::getMouseWheelEvent(int delta, int x, int y, bool alt, bool ctrl, bool shift)
{
    _d->fill(_d->wheel, x, y, alt, ctrl, shift);
    _d->wheel.setDelta(delta);
    return &_d->wheel;
}

SoEventBuilder::EventSource SoEventBuilder::getEventSource(const SoEvent* event) const
{
    if (event == &_d->move)
        return MOUSE_MOVE;
    if (event == &_d->enter)
        return MOUSE_ENTER;
    if (event == &_d->leave)
        return MOUSE_LEAVE;
    return OTHER;
}
