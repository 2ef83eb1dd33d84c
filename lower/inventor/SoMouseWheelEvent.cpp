#include <SoMouseWheelEvent.h>

#if !__has_include(<Inventor/events/SoMouseWheelEvent.h>)

SO_EVENT_SOURCE(SoMouseWheelEvent);

void SoMouseWheelEvent::initClass()
{
    // Vg3OpenInventor calls this once, but a second call must not trip Coin's assertion.
    if (classTypeId != SoType::badType())
        return;
    SO_EVENT_INIT_CLASS(SoMouseWheelEvent, SoEvent);
}

SoMouseWheelEvent::SoMouseWheelEvent() = default;

SoMouseWheelEvent::~SoMouseWheelEvent() = default;

#endif
