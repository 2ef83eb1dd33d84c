#include <Vw3QtEventToOivEvent.h>

#include <SoEventBuilder.h>
#include <SoMouseWheelEvent.h>

#include <Inventor/SbTime.h>
#include <Inventor/SbVec2s.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>

#include <array>
#include <cmath>
#include <limits>
#include <memory>

namespace {

constexpr int SPECIAL_KEY_BASE = 0x01000000;
constexpr int LATIN_TABLE_SIZE = 256;
constexpr int SPECIAL_TABLE_SIZE = 97;

struct Translator
{
    SoEventBuilder builder;
    std::array<SoKeyboardEvent::Key, LATIN_TABLE_SIZE> latinKeys{};
    std::array<SoKeyboardEvent::Key, SPECIAL_TABLE_SIZE> specialKeys{};
    bool tablesFilled = false;
    // Touch points need one event each, which the builder's one-per-kind cannot give.
    std::vector<std::unique_ptr<SoEvent>> touchEvents;
};

Translator& translator()
{
    static Translator instance;
    return instance;
}

SoKeyboardEvent::Key key(int value)
{
    return static_cast<SoKeyboardEvent::Key>(value);
}

void fillLatinTable(std::array<SoKeyboardEvent::Key, LATIN_TABLE_SIZE>& table)
{
    table[Qt::Key_Space] = key(0x20);
    for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter)
        table[letter] = key(0x61 + (letter - Qt::Key_A));
    // The digit row gives the keypad digits, whose codes are not in order.
    const int keypadDigits[10] = {0xFF9E, 0xFF9C, 0xFF99, 0xFF9B, 0xFF96, 0xFF9D, 0xFF98, 0xFF95, 0xFF97, 0xFF9A};
    for (int digit = 0; digit < 10; ++digit)
        table[Qt::Key_0 + digit] = key(keypadDigits[digit]);
    for (int code : {Qt::Key_Comma, Qt::Key_Minus, Qt::Key_Period, Qt::Key_Slash, Qt::Key_Apostrophe,
                     Qt::Key_Semicolon, Qt::Key_Equal, Qt::Key_BracketLeft, Qt::Key_Backslash, Qt::Key_BracketRight})
        table[code] = key(code);
    table[Qt::Key_Asterisk] = SoKeyboardEvent::PAD_MULTIPLY;
    table[Qt::Key_Plus] = SoKeyboardEvent::PAD_ADD;
    table[Qt::Key_AsciiTilde] = SoKeyboardEvent::GRAVE;
}

void fillSpecialTable(std::array<SoKeyboardEvent::Key, SPECIAL_TABLE_SIZE>& table)
{
    const auto set = [&table](int qtKey, int value) { table[qtKey - SPECIAL_KEY_BASE] = key(value); };
    set(Qt::Key_Escape, 0xFF1B);
    set(Qt::Key_Tab, 0xFF09);
    set(Qt::Key_Backspace, 0xFF08);
    set(Qt::Key_Return, 0xFF0D);
    set(Qt::Key_Enter, 0xFF8D);
    set(Qt::Key_Insert, 0xFF63);
    set(Qt::Key_Delete, 0xFFFF);
    set(Qt::Key_Pause, 0xFF13);
    set(Qt::Key_Print, 0xFF61);
    set(Qt::Key_Home, 0xFF50);
    set(Qt::Key_Left, 0xFF51);
    set(Qt::Key_Up, 0xFF52);
    set(Qt::Key_Right, 0xFF53);
    set(Qt::Key_Down, 0xFF54);
    set(Qt::Key_PageUp, 0xFF55);
    set(Qt::Key_PageDown, 0xFF56);
    set(Qt::Key_End, 0xFF57);
    set(Qt::Key_Shift, 0xFFE1);
    set(Qt::Key_Control, 0xFFE3);
    set(Qt::Key_Meta, 0xFFEB);
    set(Qt::Key_Alt, 0xFFE9);
    set(Qt::Key_Menu, 0xFFE9);
    set(Qt::Key_CapsLock, 0xFFE5);
    set(Qt::Key_NumLock, 0xFF7F);
    set(Qt::Key_ScrollLock, 0xFF14);
    for (int f = 0; f < 12; ++f)
        set(Qt::Key_F1 + f, 0xFFBE + f);
}

Translator& initializedTranslator()
{
    Vw3QtEventToOivEvent::initClass();
    return translator();
}

bool hasArguments(const void* event, const QWidget* widget, const char* operation)
{
    if (event && widget)
        return true;
    qWarning("Vw3QtEventToOivEvent::%s: no %s given", operation, event ? "widget" : "event");
    return false;
}

SoMouseButtonEvent::Button inventorButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return SoMouseButtonEvent::BUTTON1;
    case Qt::MiddleButton:
        return SoMouseButtonEvent::BUTTON2;
    case Qt::RightButton:
        return SoMouseButtonEvent::BUTTON3;
    default:
        return SoMouseButtonEvent::ANY;
    }
}

struct Modifiers
{
    bool alt, ctrl, shift;
};

Modifiers inventorModifiers(Qt::KeyboardModifiers modifiers)
{
    return {modifiers.testFlag(Qt::AltModifier), modifiers.testFlag(Qt::ControlModifier),
            modifiers.testFlag(Qt::ShiftModifier)};
}

SoKeyboardEvent* keyEvent(QKeyEvent* event, QWidget* widget, SoButtonEvent::State state, const char* operation)
{
    if (!hasArguments(event, widget, operation))
        return nullptr;
    const Modifiers m = inventorModifiers(event->modifiers());
    return initializedTranslator().builder.getKeyEvent(Vw3QtEventToOivEvent::getKey(event->key()), state, m.alt,
                                                        m.ctrl, m.shift);
}

SoMouseButtonEvent* buttonEvent(QMouseEvent* event, QWidget* widget, SoButtonEvent::State state,
                                const char* operation)
{
    if (!hasArguments(event, widget, operation))
        return nullptr;
    const SbVec2s p = Vw3QtEventToOivEvent::toInventorPosition(event->localPos(), widget);
    const Modifiers m = inventorModifiers(event->modifiers());
    return initializedTranslator().builder.getMouseButtonEvent(inventorButton(event->button()), state, p[0], p[1],
                                                                m.alt, m.ctrl, m.shift);
}

} // namespace

void Vw3QtEventToOivEvent::initClass()
{
    Translator& t = translator();
    if (t.tablesFilled)
        return;
    fillLatinTable(t.latinKeys);
    fillSpecialTable(t.specialKeys);
    t.tablesFilled = true;
}

SoKeyboardEvent::Key Vw3QtEventToOivEvent::getKey(int qtKey)
{
    const Translator& t = initializedTranslator();
    if (qtKey >= 0 && qtKey < LATIN_TABLE_SIZE)
        return t.latinKeys[qtKey];
    if (qtKey >= SPECIAL_KEY_BASE && qtKey - SPECIAL_KEY_BASE < SPECIAL_TABLE_SIZE)
        return t.specialKeys[qtKey - SPECIAL_KEY_BASE];
    return SoKeyboardEvent::ANY;
}

SbVec2s Vw3QtEventToOivEvent::toInventorPosition(const QPointF& position, const QWidget* widget)
{
    // Inventor counts device pixels from the bottom-left corner.
    const qreal ratio = widget->devicePixelRatioF();
    const int deviceHeight = static_cast<int>(widget->height() * ratio);
    const auto clamp16 = [](double v) {
        return static_cast<short>(qBound<double>(std::numeric_limits<short>::min(), std::trunc(v),
                                                 std::numeric_limits<short>::max()));
    };
    return SbVec2s(clamp16(position.x() * ratio), clamp16(deviceHeight - std::trunc(position.y() * ratio) - 1));
}

SoKeyboardEvent* Vw3QtEventToOivEvent::getKeyPressEvent(QKeyEvent* event, QWidget* widget)
{
    return keyEvent(event, widget, SoButtonEvent::DOWN, "getKeyPressEvent");
}

SoKeyboardEvent* Vw3QtEventToOivEvent::getKeyReleaseEvent(QKeyEvent* event, QWidget* widget)
{
    return keyEvent(event, widget, SoButtonEvent::UP, "getKeyReleaseEvent");
}

SoMouseButtonEvent* Vw3QtEventToOivEvent::getMousePressEvent(QMouseEvent* event, QWidget* widget)
{
    return buttonEvent(event, widget, SoButtonEvent::DOWN, "getMousePressEvent");
}

SoMouseButtonEvent* Vw3QtEventToOivEvent::getMouseReleaseEvent(QMouseEvent* event, QWidget* widget)
{
    return buttonEvent(event, widget, SoButtonEvent::UP, "getMouseReleaseEvent");
}

SoMouseButtonEvent* Vw3QtEventToOivEvent::getMouseDoubleClickEvent(QMouseEvent* event, QWidget* widget)
{
    // Inventor has no double-click state; the second press of a double click is a press.
    return buttonEvent(event, widget, SoButtonEvent::DOWN, "getMouseDoubleClickEvent");
}

SoLocation2Event* Vw3QtEventToOivEvent::getMouseMoveEvent(QMouseEvent* event, QWidget* widget)
{
    if (!hasArguments(event, widget, "getMouseMoveEvent"))
        return nullptr;
    const SbVec2s p = toInventorPosition(event->localPos(), widget);
    const Modifiers m = inventorModifiers(event->modifiers());
    return initializedTranslator().builder.getMouseMoveEvent(p[0], p[1], m.alt, m.ctrl, m.shift);
}

SoLocation2Event* Vw3QtEventToOivEvent::getMouseEnterEvent(QEvent* event, QWidget* widget)
{
    if (!hasArguments(event, widget, "getMouseEnterEvent"))
        return nullptr;
    return initializedTranslator().builder.getMouseEnterEvent(0, 0, false, false, false);
}

SoLocation2Event* Vw3QtEventToOivEvent::getMouseLeaveEvent(QEvent* event, QWidget* widget)
{
    if (!hasArguments(event, widget, "getMouseLeaveEvent"))
        return nullptr;
    return initializedTranslator().builder.getMouseLeaveEvent(0, 0, false, false, false);
}

SoMouseWheelEvent* Vw3QtEventToOivEvent::getMouseWheelEvent(QWheelEvent* event, QWidget* widget)
{
    if (!hasArguments(event, widget, "getMouseWheelEvent"))
        return nullptr;
    const SbVec2s p = toInventorPosition(event->position(), widget);
    const Modifiers m = inventorModifiers(event->modifiers());
    const QPoint angle = event->angleDelta();
    const int delta = angle.y() != 0 ? angle.y() : angle.x();
    return initializedTranslator().builder.getMouseWheelEvent(delta, p[0], p[1], m.alt, m.ctrl, m.shift);
}

std::vector<const SoEvent*> Vw3QtEventToOivEvent::getTouchEvents(QTouchEvent* event, QWidget* widget)
{
    std::vector<const SoEvent*> events;
    if (!hasArguments(event, widget, "getTouchEvents"))
        return events;
    Translator& t = initializedTranslator();
    const Modifiers m = inventorModifiers(event->modifiers());
    const SbTime now = SbTime::getTimeOfDay();
    t.touchEvents.clear();
    for (const QTouchEvent::TouchPoint& point : event->touchPoints()) {
        std::unique_ptr<SoEvent> soEvent;
        if (point.state() == Qt::TouchPointPressed || point.state() == Qt::TouchPointReleased) {
            auto button = std::make_unique<SoMouseButtonEvent>();
            button->setButton(SoMouseButtonEvent::BUTTON1);
            button->setState(point.state() == Qt::TouchPointPressed ? SoButtonEvent::DOWN : SoButtonEvent::UP);
            soEvent = std::move(button);
        } else if (point.state() == Qt::TouchPointMoved) {
            soEvent = std::make_unique<SoLocation2Event>();
        } else {
            continue;
        }
        soEvent->setPosition(toInventorPosition(point.pos(), widget));
        soEvent->setTime(now);
        soEvent->setAltDown(m.alt);
        soEvent->setCtrlDown(m.ctrl);
        soEvent->setShiftDown(m.shift);
        events.push_back(soEvent.get());
        t.touchEvents.push_back(std::move(soEvent));
    }
    return events;
}
