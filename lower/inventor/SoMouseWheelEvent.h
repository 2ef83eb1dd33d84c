#pragma once
// A turn of the mouse wheel, with Qt's delta (120 per notch). Coin 4.0 has no wheel event;
// a Coin that brings its own class is used instead.

#if __has_include(<Inventor/events/SoMouseWheelEvent.h>)
#include <Inventor/events/SoMouseWheelEvent.h>
#else
#include <velmora_graphic_export.h>

#include <Inventor/events/SoEvent.h>
#include <Inventor/events/SoSubEvent.h>

class VELMORA_GRAPHIC_EXPORT SoMouseWheelEvent : public SoEvent
{
    SO_EVENT_HEADER();

public:
    // Called by Vg3OpenInventor::init(), after SoDB::init().
    static void initClass();

    SoMouseWheelEvent();
    ~SoMouseWheelEvent() override;

    void setDelta(int delta) { _delta = delta; }
    int getDelta() const { return _delta; }

private:
    int _delta = 0;
};
#endif
