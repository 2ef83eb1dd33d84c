// Inventor events as the render areas build them from Qt's: kind, position (clamped to
// Inventor's range), modifiers that do not stick, time, and whose event it is.

#include <SoEventBuilder.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SbTime.h>

#include <QtTest>

class TestEventBuilder : public QObject
{
    Q_OBJECT

    enum Kind { Key, Button, Move, Enter, Leave, Wheel };

    enum Modifiers { ALT = 1, CTRL = 2, SHIFT = 4 };

    static SoEvent* build(SoEventBuilder& builder, Kind kind, int x, int y, int mods, int delta)
    {
        const bool alt = mods & ALT, ctrl = mods & CTRL, shift = mods & SHIFT;
        switch (kind) {
        case Key: return builder.getKeyEvent(SoKeyboardEvent::A, SoButtonEvent::DOWN, alt, ctrl, shift);
        case Button:
            return builder.getMouseButtonEvent(SoMouseButtonEvent::BUTTON2, SoButtonEvent::UP, x, y, alt, ctrl, shift);
        case Move: return builder.getMouseMoveEvent(x, y, alt, ctrl, shift);
        case Enter: return builder.getMouseEnterEvent(x, y, alt, ctrl, shift);
        case Leave: return builder.getMouseLeaveEvent(x, y, alt, ctrl, shift);
        case Wheel: return builder.getMouseWheelEvent(delta, x, y, alt, ctrl, shift);
        }
        return nullptr;
    }

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void builtEvent_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("mods");
        QTest::addColumn<int>("delta");
        QTest::addColumn<int>("source");
        const int other = SoEventBuilder::OTHER;
        QTest::newRow("button released with ctrl") << int(Button) << QPoint(10, 20) << int(CTRL) << 0 << other;
        QTest::newRow("move with shift") << int(Move) << QPoint(300, 5) << int(SHIFT) << 0 << int(SoEventBuilder::MOUSE_MOVE);
        QTest::newRow("enter with alt") << int(Enter) << QPoint(0, 0) << int(ALT) << 0 << int(SoEventBuilder::MOUSE_ENTER);
        QTest::newRow("leave with all modifiers") << int(Leave) << QPoint(-4, 99) << int(ALT | CTRL | SHIFT) << 0
                                                  << int(SoEventBuilder::MOUSE_LEAVE);
        QTest::newRow("wheel forward") << int(Wheel) << QPoint(7, 8) << 0 << 120 << other;
        QTest::newRow("wheel backward with ctrl") << int(Wheel) << QPoint(7, 8) << int(CTRL) << -240 << other;
        QTest::newRow("position beyond the short range is clamped")
            << int(Move) << QPoint(100000, -100000) << 0 << 0 << int(SoEventBuilder::MOUSE_MOVE);
    }

    void builtEvent()
    {
        QFETCH(int, kind);
        QFETCH(QPoint, at);
        QFETCH(int, mods);
        QFETCH(int, delta);
        QFETCH(int, source);
        SoEventBuilder builder;
        // Modifiers left over from an earlier event must not stick.
        build(builder, Kind(kind), 1, 1, ~mods, 1);
        const SbTime before = SbTime::getTimeOfDay();
        SoEvent* event = build(builder, Kind(kind), at.x(), at.y(), mods, delta);
        const SbTime after = SbTime::getTimeOfDay();
        QVERIFY(event);

        QVERIFY(event->getTime() >= before && event->getTime() <= after);
        QCOMPARE(bool(event->wasAltDown()), bool(mods & ALT));
        QCOMPARE(bool(event->wasCtrlDown()), bool(mods & CTRL));
        QCOMPARE(bool(event->wasShiftDown()), bool(mods & SHIFT));
        QCOMPARE(int(builder.getEventSource(event)), source);
        QCOMPARE(event->getPosition(), SbVec2s(short(qBound(-32768, at.x(), 32767)), short(qBound(-32768, at.y(), 32767))));

        switch (Kind(kind)) {
        case Button: {
            QVERIFY(event->isOfType(SoMouseButtonEvent::getClassTypeId()));
            auto button = static_cast<SoMouseButtonEvent*>(event);
            QCOMPARE(button->getButton(), SoMouseButtonEvent::BUTTON2);
            QCOMPARE(button->getState(), SoButtonEvent::UP);
            break;
        }
        case Wheel:
            QVERIFY(event->isOfType(SoMouseWheelEvent::getClassTypeId()));
            QCOMPARE(static_cast<SoMouseWheelEvent*>(event)->getDelta(), delta);
            break;
        default:
            QVERIFY(event->isOfType(SoLocation2Event::getClassTypeId()));
            break;
        }
    }

    void keyEventTakesTheLastPointerPosition()
    {
        SoEventBuilder builder;
        builder.getMouseMoveEvent(42, 17, false, false, false);
        SoKeyboardEvent* key = builder.getKeyEvent(SoKeyboardEvent::ESCAPE, SoButtonEvent::DOWN, false, true, false);
        QCOMPARE(key->getKey(), SoKeyboardEvent::ESCAPE);
        QCOMPARE(key->getState(), SoButtonEvent::DOWN);
        QVERIFY(key->wasCtrlDown());
        QCOMPARE(key->getPosition(), SbVec2s(42, 17));
        QCOMPARE(int(builder.getEventSource(key)), int(SoEventBuilder::OTHER));
    }

    void eventsOfAnotherBuilderAreOther()
    {
        SoEventBuilder first;
        SoEventBuilder second;
        QCOMPARE(int(second.getEventSource(first.getMouseMoveEvent(1, 2, false, false, false))), int(SoEventBuilder::OTHER));
        QCOMPARE(int(first.getEventSource(nullptr)), int(SoEventBuilder::OTHER));
    }
};

QTEST_MAIN(TestEventBuilder)
#include "tst_eventbuilder.moc"
