// Inventor events as the render areas build them from Qt's: position (clamped to Inventor's
// range), time, and whose event it is. Kinds, buttons, modifiers and wheel deltas are
// checked through the Qt translation, which builds every event here.

#include <SoEventBuilder.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SbTime.h>

#include <QtTest>

class TestEventBuilder : public QObject
{
    Q_OBJECT

    enum Kind { Button, Move, Enter, Leave, Wheel };

    static SoEvent* build(SoEventBuilder& builder, Kind kind, int x, int y)
    {
        switch (kind) {
        case Button:
            return builder.getMouseButtonEvent(SoMouseButtonEvent::BUTTON2, SoButtonEvent::UP, x, y, false, false, false);
        case Move: return builder.getMouseMoveEvent(x, y, false, false, false);
        case Enter: return builder.getMouseEnterEvent(x, y, false, false, false);
        case Leave: return builder.getMouseLeaveEvent(x, y, false, false, false);
        case Wheel: return builder.getMouseWheelEvent(120, x, y, false, false, false);
        }
        return nullptr;
    }

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void builtEvent_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("source");
        const int other = SoEventBuilder::OTHER;
        QTest::newRow("button") << int(Button) << QPoint(10, 20) << other;
        QTest::newRow("move") << int(Move) << QPoint(300, 5) << int(SoEventBuilder::MOUSE_MOVE);
        QTest::newRow("enter") << int(Enter) << QPoint(0, 0) << int(SoEventBuilder::MOUSE_ENTER);
        QTest::newRow("leave") << int(Leave) << QPoint(-4, 99) << int(SoEventBuilder::MOUSE_LEAVE);
        QTest::newRow("wheel") << int(Wheel) << QPoint(7, 8) << other;
        QTest::newRow("position beyond the short range is clamped")
            << int(Move) << QPoint(100000, -100000) << int(SoEventBuilder::MOUSE_MOVE);
    }

    void builtEvent()
    {
        QFETCH(int, kind);
        QFETCH(QPoint, at);
        QFETCH(int, source);
        SoEventBuilder builder;
        const SbTime before = SbTime::getTimeOfDay();
        SoEvent* event = build(builder, Kind(kind), at.x(), at.y());
        QVERIFY(event);
        QVERIFY(event->getTime() >= before && event->getTime() <= SbTime::getTimeOfDay());
        QCOMPARE(int(builder.getEventSource(event)), source);
        QCOMPARE(event->getPosition(), SbVec2s(short(qBound(-32768, at.x(), 32767)), short(qBound(-32768, at.y(), 32767))));
    }

    void keyEventTakesTheLastPointerPosition()
    {
        SoEventBuilder builder;
        builder.getMouseMoveEvent(42, 17, false, false, false);
        SoKeyboardEvent* key = builder.getKeyEvent(SoKeyboardEvent::ESCAPE, SoButtonEvent::DOWN, false, true, false);
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
