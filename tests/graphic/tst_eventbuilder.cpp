#include <SoEventBuilder.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SbTime.h>

#include <QtTest>

class TestEventBuilder : public QObject
{
    Q_OBJECT

    enum Kind { Key, Button, Move, Enter, Leave, Wheel };

    static SoEvent* build(SoEventBuilder& builder, Kind kind, int x, int y, bool alt, bool ctrl, bool shift,
                          int delta)
    {
        switch (kind) {
        case Key:
            return builder.getKeyEvent(SoKeyboardEvent::A, SoButtonEvent::DOWN, alt, ctrl, shift);
        case Button:
            return builder.getMouseButtonEvent(SoMouseButtonEvent::BUTTON2, SoButtonEvent::UP, x, y, alt, ctrl,
                                               shift);
        case Move:
            return builder.getMouseMoveEvent(x, y, alt, ctrl, shift);
        case Enter:
            return builder.getMouseEnterEvent(x, y, alt, ctrl, shift);
        case Leave:
            return builder.getMouseLeaveEvent(x, y, alt, ctrl, shift);
        case Wheel:
            return builder.getMouseWheelEvent(delta, x, y, alt, ctrl, shift);
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
    }

    void builtEvent_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        QTest::addColumn<bool>("alt");
        QTest::addColumn<bool>("ctrl");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<int>("delta");
        QTest::addColumn<int>("source");

        QTest::newRow("button released with ctrl") << int(Button) << 10 << 20 << false << true << false << 0
                                                   << int(SoEventBuilder::OTHER);
        QTest::newRow("move with shift") << int(Move) << 300 << 5 << false << false << true << 0
                                         << int(SoEventBuilder::MOUSE_MOVE);
        QTest::newRow("enter with alt") << int(Enter) << 0 << 0 << true << false << false << 0
                                        << int(SoEventBuilder::MOUSE_ENTER);
        QTest::newRow("leave with all modifiers") << int(Leave) << -4 << 99 << true << true << true << 0
                                                  << int(SoEventBuilder::MOUSE_LEAVE);
        QTest::newRow("wheel forward") << int(Wheel) << 7 << 8 << false << false << false << 120
                                       << int(SoEventBuilder::OTHER);
        QTest::newRow("wheel backward with ctrl") << int(Wheel) << 7 << 8 << false << true << false << -240
                                                  << int(SoEventBuilder::OTHER);
        QTest::newRow("position beyond the short range is clamped")
            << int(Move) << 100000 << -100000 << false << false << false << 0 << int(SoEventBuilder::MOUSE_MOVE);
    }

    void builtEvent()
    {
        QFETCH(int, kind);
        QFETCH(int, x);
        QFETCH(int, y);
        QFETCH(bool, alt);
        QFETCH(bool, ctrl);
        QFETCH(bool, shift);
        QFETCH(int, delta);
        QFETCH(int, source);

        SoEventBuilder builder;
        // Modifiers left over from an earlier event must not stick.
        build(builder, Kind(kind), 1, 1, !alt, !ctrl, !shift, 1);
        const SbTime before = SbTime::getTimeOfDay();
        SoEvent* event = build(builder, Kind(kind), x, y, alt, ctrl, shift, delta);
        const SbTime after = SbTime::getTimeOfDay();
        QVERIFY(event);

        QVERIFY(event->getTime() >= before && event->getTime() <= after);
        QCOMPARE(bool(event->wasAltDown()), alt);
        QCOMPARE(bool(event->wasCtrlDown()), ctrl);
        QCOMPARE(bool(event->wasShiftDown()), shift);
        QCOMPARE(int(builder.getEventSource(event)), source);
        const SbVec2s position = event->getPosition();
        QCOMPARE(int(position[0]), qBound(-32768, x, 32767));
        QCOMPARE(int(position[1]), qBound(-32768, y, 32767));

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
        SoLocation2Event* move = first.getMouseMoveEvent(1, 2, false, false, false);
        QCOMPARE(int(second.getEventSource(move)), int(SoEventBuilder::OTHER));
        QCOMPARE(int(first.getEventSource(nullptr)), int(SoEventBuilder::OTHER));
    }
};

QTEST_MAIN(TestEventBuilder)
#include "tst_eventbuilder.moc"
