#pragma once
// Turns Qt input into Inventor events, one static operation per event kind. Positions are
// converted to Inventor's convention in one place: device pixels (the widget's device
// pixel ratio applied), origin at the bottom-left corner. The returned events belong to
// one shared SoEventBuilder and stay valid until the next call for the same kind.
//
// Keys go through two tables: Qt codes below 0x01000000 index one of 256 entries, codes
// from 0x01000000 one of 97 entries; anything else becomes key 0 (ANY).

#include <velmora_widget_export.h>

#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>

#include <vector>

class QEvent;
class QKeyEvent;
class QMouseEvent;
class QPointF;
class QTouchEvent;
class QWheelEvent;
class QWidget;
class SbVec2s;
class SoMouseWheelEvent;

class VELMORA_WIDGET_EXPORT Vw3QtEventToOivEvent
{
public:
    // Fills the key tables; safe to call again, and called by the first translation.
    static void initClass();

    // The Inventor key of a Qt key code; 0 for codes outside the tables.
    static SoKeyboardEvent::Key getKey(int qtKey);

    // Each returns nullptr, with a warning, for a null event or widget.
    static SoKeyboardEvent* getKeyPressEvent(QKeyEvent* event, QWidget* widget);
    static SoKeyboardEvent* getKeyReleaseEvent(QKeyEvent* event, QWidget* widget);
    static SoMouseButtonEvent* getMousePressEvent(QMouseEvent* event, QWidget* widget);
    static SoMouseButtonEvent* getMouseReleaseEvent(QMouseEvent* event, QWidget* widget);
    static SoMouseButtonEvent* getMouseDoubleClickEvent(QMouseEvent* event, QWidget* widget);
    static SoLocation2Event* getMouseMoveEvent(QMouseEvent* event, QWidget* widget);
    // Enter and leave sit at (0, 0) with no modifier.
    static SoLocation2Event* getMouseEnterEvent(QEvent* event, QWidget* widget);
    static SoLocation2Event* getMouseLeaveEvent(QEvent* event, QWidget* widget);
    static SoMouseWheelEvent* getMouseWheelEvent(QWheelEvent* event, QWidget* widget);
    // One event per touch point that changed: a press or release of button 1, or a move.
    // The events are owned here and valid until the next call.
    static std::vector<const SoEvent*> getTouchEvents(QTouchEvent* event, QWidget* widget);

    // A position of `widget` (logical pixels, origin top left) in Inventor's convention.
    static SbVec2s toInventorPosition(const QPointF& position, const QWidget* widget);

    Vw3QtEventToOivEvent() = delete;
};
