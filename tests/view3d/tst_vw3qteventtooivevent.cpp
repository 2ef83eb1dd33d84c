// Qt's input events as Inventor events: the key tables and their edges, buttons, modifiers,
// wheel deltas and positions, touch points, refused input; and the builder below them:
// positions clamped to Inventor's range, time, and whose event it is. Rows flipped to count
// from the bottom are checked where a user clicks, in the render areas' suite.

#include <Vw3QtEventToOivEvent.h>

#include <SoEventBuilder.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SbTime.h>
#include <Inventor/SbVec2s.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTest>
#include <QTouchDevice>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>
#include <functional>

Q_DECLARE_METATYPE(Qt::MouseButton) Q_DECLARE_METATYPE(Qt::KeyboardModifiers)

class TestVw3QtEventToOivEvent : public QObject
{
    Q_OBJECT

    // Positions are flipped within its 200 x 100 pixels.
    QWidget _widget;

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        _widget.resize(200, 100);
    }

    void keyTables_data()
    {
        QTest::addColumn<int>("qtKey");
        QTest::addColumn<int>("inventorKey");
        QTest::newRow("space") << int(Qt::Key_Space) << 0x20;
        for (int letter = Qt::Key_A; letter <= Qt::Key_Z; ++letter)
            QTest::addRow("letter %c", char(letter)) << letter << letter - Qt::Key_A + 0x61;
        const int keypad[10] = {0xFF9E, 0xFF9C, 0xFF99, 0xFF9B, 0xFF96, 0xFF9D, 0xFF98, 0xFF95, 0xFF97, 0xFF9A};
        for (int digit = 0; digit < 10; ++digit)
            QTest::addRow("digit %d gives keypad digit", digit) << Qt::Key_0 + digit << keypad[digit];
        for (int code : {0x2C, 0x2D, 0x2E, 0x2F, 0x27, 0x3B, 0x3D, 0x5B, 0x5C, 0x5D})
            QTest::addRow("punctuation 0x%x is itself", code) << code << code;
        QTest::newRow("asterisk is keypad multiply") << int(Qt::Key_Asterisk) << 0xFFAA;
        QTest::newRow("plus is keypad add") << int(Qt::Key_Plus) << 0xFFAB;
        QTest::newRow("tilde is grave") << int(Qt::Key_AsciiTilde) << 0x60;
        // The first and last entries of the special table, the keys the views use, and the
        // ones that do not map in order.
        const QList<QPair<int, int>> special = {
            {Qt::Key_Escape, 0xFF1B}, {Qt::Key_Return, 0xFF0D}, {Qt::Key_Enter, 0xFF8D}, {Qt::Key_Delete, 0xFFFF},
            {Qt::Key_Home, 0xFF50}, {Qt::Key_Left, 0xFF51}, {Qt::Key_Down, 0xFF54}, {Qt::Key_End, 0xFF57},
            {Qt::Key_Shift, 0xFFE1}, {Qt::Key_Control, 0xFFE3}, {Qt::Key_Meta, 0xFFEB}, {Qt::Key_Alt, 0xFFE9},
            {Qt::Key_Menu, 0xFFE9}, {Qt::Key_ScrollLock, 0xFF14}};
        for (const auto& entry : special) QTest::addRow("special 0x%x", entry.first) << entry.first << entry.second;
        for (int f = 0; f < 12; ++f) QTest::addRow("F%d", f + 1) << Qt::Key_F1 + f << 0xFFBE + f;

        QTest::newRow("unlisted latin: exclamation") << int(Qt::Key_Exclam) << 0;
        QTest::newRow("unlisted latin: last entry 0xff") << 0xFF << 0;
        QTest::newRow("unlisted special: Clear") << int(Qt::Key_Clear) << 0;
        QTest::newRow("F13 and above") << int(Qt::Key_F13) << 0;
        QTest::newRow("last special entry 0x01000060") << 0x01000060 << 0;
        QTest::newRow("just past the latin table") << 0x100 << 0;
        QTest::newRow("top of the latin range") << 0x00FFFFFF << 0;
        QTest::newRow("just past the special table") << 0x01000061 << 0;
        QTest::newRow("far past the special table") << 0x01FFFFFF << 0;
        QTest::newRow("unknown key") << int(Qt::Key_unknown) << 0;
    }

    void keyTables()
    {
        QFETCH(int, qtKey);
        QFETCH(int, inventorKey);
        QKeyEvent press(QEvent::KeyPress, qtKey, Qt::NoModifier);
        const SoKeyboardEvent* event = Vw3QtEventToOivEvent::getKeyPressEvent(&press, &_widget);
        QVERIFY(event);
        QCOMPARE(int(event->getKey()), inventorKey);
        QCOMPARE(event->getState(), SoButtonEvent::DOWN);

        QKeyEvent release(QEvent::KeyRelease, qtKey, Qt::NoModifier);
        event = Vw3QtEventToOivEvent::getKeyReleaseEvent(&release, &_widget);
        QCOMPARE(int(event->getKey()), inventorKey);
        QCOMPARE(event->getState(), SoButtonEvent::UP);
    }

    void buttons_data()
    {
        QTest::addColumn<Qt::MouseButton>("qtButton");
        QTest::addColumn<int>("inventorButton");
        QTest::newRow("left") << Qt::LeftButton << 1;
        QTest::newRow("middle") << Qt::MiddleButton << 2;
        QTest::newRow("right") << Qt::RightButton << 3;
        QTest::newRow("back is any") << Qt::BackButton << 0;
        QTest::newRow("forward is any") << Qt::ForwardButton << 0;
    }

    void buttons()
    {
        QFETCH(Qt::MouseButton, qtButton);
        QFETCH(int, inventorButton);
        const QPoint at(3, 4);
        for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
            const bool down = type != QEvent::MouseButtonRelease;
            QMouseEvent event(type, at, qtButton, down ? qtButton : Qt::NoButton, Qt::NoModifier);
            const SoMouseButtonEvent* converted =
                type == QEvent::MouseButtonPress ? Vw3QtEventToOivEvent::getMousePressEvent(&event, &_widget)
                : down ? Vw3QtEventToOivEvent::getMouseDoubleClickEvent(&event, &_widget)
                       : Vw3QtEventToOivEvent::getMouseReleaseEvent(&event, &_widget);
            QCOMPARE(int(converted->getButton()), inventorButton);
            QCOMPARE(converted->getState(), down ? SoButtonEvent::DOWN : SoButtonEvent::UP);
        }
    }

    void modifiers_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("qtModifiers");
        QTest::addColumn<bool>("alt");
        QTest::addColumn<bool>("ctrl");
        QTest::addColumn<bool>("shift");
        QTest::newRow("none") << Qt::KeyboardModifiers() << false << false << false;
        QTest::newRow("alt") << Qt::KeyboardModifiers(Qt::AltModifier) << true << false << false;
        QTest::newRow("control") << Qt::KeyboardModifiers(Qt::ControlModifier) << false << true << false;
        QTest::newRow("shift") << Qt::KeyboardModifiers(Qt::ShiftModifier) << false << false << true;
        QTest::newRow("alt+control+shift") << (Qt::AltModifier | Qt::ControlModifier | Qt::ShiftModifier) << true
                                           << true << true;
        QTest::newRow("meta and keypad carry nothing")
            << (Qt::MetaModifier | Qt::KeypadModifier) << false << false << false;
    }

    void modifiers()
    {
        QFETCH(Qt::KeyboardModifiers, qtModifiers);
        QFETCH(bool, alt);
        QFETCH(bool, ctrl);
        QFETCH(bool, shift);
        const auto check = [&](const SoEvent* event, const char* kind) {
            QVERIFY2(event, kind);
            QVERIFY2(bool(event->wasAltDown()) == alt, kind);
            QVERIFY2(bool(event->wasCtrlDown()) == ctrl, kind);
            QVERIFY2(bool(event->wasShiftDown()) == shift, kind);
        };
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, qtModifiers);
        check(Vw3QtEventToOivEvent::getKeyPressEvent(&key, &_widget), "key");
        QMouseEvent press(QEvent::MouseButtonPress, QPoint(1, 1), Qt::LeftButton, Qt::LeftButton, qtModifiers);
        check(Vw3QtEventToOivEvent::getMousePressEvent(&press, &_widget), "press");
        QMouseEvent move(QEvent::MouseMove, QPoint(1, 1), Qt::NoButton, Qt::NoButton, qtModifiers);
        check(Vw3QtEventToOivEvent::getMouseMoveEvent(&move, &_widget), "move");
        QWheelEvent wheel(QPointF(1, 1), QPointF(1, 1), QPoint(), QPoint(0, 120), Qt::NoButton, qtModifiers,
                          Qt::NoScrollPhase, false);
        check(Vw3QtEventToOivEvent::getMouseWheelEvent(&wheel, &_widget), "wheel");
    }

    void wheel_data()
    {
        QTest::addColumn<QPointF>("qtPosition");
        QTest::addColumn<QPoint>("angleDelta");
        QTest::addColumn<QPoint>("inventorPosition");
        QTest::addColumn<int>("delta");
        // The widget is 200 x 100.
        QTest::newRow("one notch away") << QPointF(10, 20) << QPoint(0, 120) << QPoint(10, 79) << 120;
        QTest::newRow("two notches toward") << QPointF(0, 0) << QPoint(0, -240) << QPoint(0, 99) << -240;
        QTest::newRow("fractions are truncated") << QPointF(10.7, 20.9) << QPoint(0, 15) << QPoint(10, 79) << 15;
        QTest::newRow("horizontal wheel") << QPointF(199, 99) << QPoint(120, 0) << QPoint(199, 0) << 120;
        QTest::newRow("vertical wins over horizontal") << QPointF(5, 5) << QPoint(-120, 60) << QPoint(5, 94) << 60;
    }

    void wheel()
    {
        QFETCH(QPointF, qtPosition);
        QFETCH(QPoint, angleDelta);
        QFETCH(QPoint, inventorPosition);
        QFETCH(int, delta);
        QWheelEvent event(qtPosition, qtPosition, QPoint(), angleDelta, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        const SoMouseWheelEvent* wheel = Vw3QtEventToOivEvent::getMouseWheelEvent(&event, &_widget);
        QVERIFY(wheel);
        QCOMPARE(wheel->getDelta(), delta);
        QCOMPARE(wheel->getPosition(), SbVec2s(short(inventorPosition.x()), short(inventorPosition.y())));
    }

    void enterAndLeaveSitAtTheOrigin()
    {
        // Move somewhere first: enter and leave must not reuse the last position.
        QMouseEvent move(QEvent::MouseMove, QPoint(50, 50), Qt::NoButton, Qt::NoButton, Qt::ShiftModifier);
        Vw3QtEventToOivEvent::getMouseMoveEvent(&move, &_widget);
        for (QEvent::Type type : {QEvent::Enter, QEvent::Leave}) {
            QEvent event(type);
            const SoLocation2Event* location = type == QEvent::Enter
                                                   ? Vw3QtEventToOivEvent::getMouseEnterEvent(&event, &_widget)
                                                   : Vw3QtEventToOivEvent::getMouseLeaveEvent(&event, &_widget);
            QVERIFY(location);
            QCOMPARE(location->getPosition(), SbVec2s(0, 0));
            QVERIFY(!location->wasShiftDown() && !location->wasCtrlDown() && !location->wasAltDown());
        }
    }

    void touchPoints()
    {
        QTouchDevice device;
        device.setType(QTouchDevice::TouchScreen);
        QList<QTouchEvent::TouchPoint> points;
        const auto point = [](int id, Qt::TouchPointState state, QPointF pos) {
            QTouchEvent::TouchPoint p(id);
            p.setState(state);
            p.setPos(pos);
            return p;
        };
        points << point(0, Qt::TouchPointPressed, QPointF(10, 0)) << point(1, Qt::TouchPointMoved, QPointF(20, 99))
               << point(2, Qt::TouchPointStationary, QPointF(30, 30))
               << point(3, Qt::TouchPointReleased, QPointF(40, 49));
        QTouchEvent event(QEvent::TouchUpdate, &device, Qt::NoModifier, Qt::TouchPointPressed | Qt::TouchPointMoved,
                          points);
        const std::vector<const SoEvent*> events = Vw3QtEventToOivEvent::getTouchEvents(&event, &_widget);
        QCOMPARE(int(events.size()), 3);
        QVERIFY(SoMouseButtonEvent::isButtonPressEvent(events[0], SoMouseButtonEvent::BUTTON1));
        QCOMPARE(events[0]->getPosition(), SbVec2s(10, 99));
        QVERIFY(events[1]->isOfType(SoLocation2Event::getClassTypeId()));
        QCOMPARE(events[1]->getPosition(), SbVec2s(20, 0));
        QVERIFY(SoMouseButtonEvent::isButtonReleaseEvent(events[2], SoMouseButtonEvent::BUTTON1));
        QCOMPARE(events[2]->getPosition(), SbVec2s(40, 50));
    }

    // Each kind of event the builder makes, and the source it tells for it.
    void builtEvent_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("source");
        const int other = SoEventBuilder::OTHER;
        QTest::newRow("button") << 0 << QPoint(10, 20) << other;
        QTest::newRow("move") << 1 << QPoint(300, 5) << int(SoEventBuilder::MOUSE_MOVE);
        QTest::newRow("enter") << 2 << QPoint(0, 0) << int(SoEventBuilder::MOUSE_ENTER);
        QTest::newRow("leave") << 3 << QPoint(-4, 99) << int(SoEventBuilder::MOUSE_LEAVE);
        QTest::newRow("wheel") << 4 << QPoint(7, 8) << other;
        QTest::newRow("position beyond the short range is clamped")
            << 1 << QPoint(100000, -100000) << int(SoEventBuilder::MOUSE_MOVE);
    }

    void builtEvent()
    {
        QFETCH(int, kind);
        QFETCH(QPoint, at);
        QFETCH(int, source);
        SoEventBuilder b;
        const int x = at.x(), y = at.y();
        const SbTime before = SbTime::getTimeOfDay();
        const std::function<SoEvent*()> make[] = {
            [&] { return b.getMouseButtonEvent(SoMouseButtonEvent::BUTTON2, SoButtonEvent::UP, x, y, false, false, false); },
            [&] { return b.getMouseMoveEvent(x, y, false, false, false); },
            [&] { return b.getMouseEnterEvent(x, y, false, false, false); },
            [&] { return b.getMouseLeaveEvent(x, y, false, false, false); },
            [&] { return b.getMouseWheelEvent(120, x, y, false, false, false); }};
        const SoEvent* event = make[kind]();
        QVERIFY(event->getTime() >= before && event->getTime() <= SbTime::getTimeOfDay());
        QCOMPARE(int(b.getEventSource(event)), source);
        QCOMPARE(event->getPosition(), SbVec2s(short(qBound(-32768, x, 32767)), short(qBound(-32768, y, 32767))));
        // A key has no position of its own: it takes the last one.
        SoKeyboardEvent* key = b.getKeyEvent(SoKeyboardEvent::ESCAPE, SoButtonEvent::DOWN, false, true, false);
        QCOMPARE(key->getPosition(), event->getPosition());
        QCOMPARE(int(b.getEventSource(key)), int(SoEventBuilder::OTHER));
        // Another builder's events, and none, are someone else's.
        QCOMPARE(int(SoEventBuilder().getEventSource(event)), int(SoEventBuilder::OTHER));
        QCOMPARE(int(b.getEventSource(nullptr)), int(SoEventBuilder::OTHER));
    }

    void missingArgumentsAreRefused()
    {
        QMouseEvent press(QEvent::MouseButtonPress, QPoint(1, 1), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QTest::ignoreMessage(QtWarningMsg, "Vw3QtEventToOivEvent::getMousePressEvent: no widget given");
        QVERIFY(!Vw3QtEventToOivEvent::getMousePressEvent(&press, nullptr));
        QTest::ignoreMessage(QtWarningMsg, "Vw3QtEventToOivEvent::getKeyPressEvent: no event given");
        QVERIFY(!Vw3QtEventToOivEvent::getKeyPressEvent(nullptr, &_widget));
        QTest::ignoreMessage(QtWarningMsg, "Vw3QtEventToOivEvent::getMouseWheelEvent: no event given");
        QVERIFY(!Vw3QtEventToOivEvent::getMouseWheelEvent(nullptr, &_widget));
    }
};

QTEST_MAIN(TestVw3QtEventToOivEvent)
#include "tst_vw3qteventtooivevent.moc"
