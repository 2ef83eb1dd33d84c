#include <VuaResourceProvider.h>
#include <VwaAWidget.h>
#include <VwcAutomaticButton.h>
#include <VwcLockValueButton.h>

#include <QHBoxLayout>
#include <QSpinBox>
#include <QtTest>
#include <memory>

namespace {

// The smallest real editor: an integer in a spin box, with the base's buttons on its right.
class IntEditor : public VwaAWidget
{
    Q_OBJECT
public:
    IntEditor(bool withAutomatic, bool withLock)
        : VwaAWidget(nullptr, withAutomatic, withLock)
        , spin(new QSpinBox(this))
    {
        spin->setRange(-1000, 1000);
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins(4, 4, 4, 4);
        layout->addWidget(spin);
        if (_getAutomaticButton())
            layout->addWidget(_getAutomaticButton());
        if (_getLockValueButton())
            layout->addWidget(_getLockValueButton());
        connect(spin, qOverload<int>(&QSpinBox::valueChanged), this, &IntEditor::valueChanged);
    }

    int getValue() const { return spin->value(); }
    void setValue(int value) { spin->setValue(value); }

    QSpinBox* const spin;
    int autoValue = 42;
    int resets = 0;
    int styleUpdates = 0;

Q_SIGNALS:
    void valueChanged(int value);

protected:
    void _resetToAutoValue() override
    {
        ++resets;
        setValue(autoValue);
    }
    void _updateWidgetStyle() override { ++styleUpdates; }
};

using Mode = VwaAWidget::AutoMode;

std::unique_ptr<IntEditor> makeEditor(bool withAutomatic, bool withLock, Mode mode = VwaAWidget::AUTO_SET_NONE)
{
    auto editor = std::make_unique<IntEditor>(withAutomatic, withLock);
    editor->setAutomaticMode(mode);
    editor->setValue(7);
    editor->show();
    return editor;
}

VwcAutomaticButton* automaticButton(const IntEditor& editor)
{
    return editor.findChild<VwcAutomaticButton*>(QStringLiteral("automaticButton"));
}

VwcLockValueButton* lockButton(const IntEditor& editor)
{
    return editor.findChild<VwcLockValueButton*>(QStringLiteral("lockValueButton"));
}

// What a user can do to a button; a hidden one can only be clicked from code, which is how
// the tests check that no wiring is left behind it.
void press(QAbstractButton* button, bool keyboard)
{
    if (!button->isVisible())
        button->click();
    else if (keyboard)
        QTest::keyClick(button, Qt::Key_Space);
    else
        QTest::mouseClick(button, Qt::LeftButton);
}

QList<bool> toggles(const QSignalSpy& spy)
{
    QList<bool> result;
    for (const auto& args : spy)
        result << args.at(0).toBool();
    return result;
}

} // namespace

class TestVwaAWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VuaResourceProvider::setUseThemeIcons(false); }

    // The user presses the automatic button several times and edits the value in between.
    void userPressesAutomaticButton_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<bool>("keyboard");
        QTest::addColumn<int>("presses");
        QTest::addColumn<QList<bool>>("expectedToggles");
        QTest::addColumn<int>("expectedResets");
        QTest::addColumn<int>("expectedValue");
        QTest::addColumn<bool>("expectedAutomatic");

        const Mode state = VwaAWidget::AUTO_SET_STATE;
        const Mode value = VwaAWidget::AUTO_SET_VALUE;
        QTest::newRow("state, one click: automatic and reset") << state << false << 1 << QList<bool>{true} << 1 << 42 << true;
        QTest::newRow("state, second click: back to user, value kept")
            << state << false << 2 << QList<bool>{true, false} << 1 << 7 << false;
        QTest::newRow("state, third click: automatic again, reset again")
            << state << false << 3 << QList<bool>{true, false, true} << 2 << 42 << true;
        QTest::newRow("state, Space toggles like a click") << state << true << 2 << QList<bool>{true, false} << 1 << 7 << false;
        QTest::newRow("value, one click: reset, no toggle") << value << false << 1 << QList<bool>{} << 1 << 42 << false;
        QTest::newRow("value, every click resets") << value << false << 3 << QList<bool>{} << 3 << 42 << false;
        QTest::newRow("value, Space resets like a click") << value << true << 2 << QList<bool>{} << 2 << 42 << false;
    }
    void userPressesAutomaticButton()
    {
        QFETCH(Mode, mode);
        QFETCH(bool, keyboard);
        QFETCH(int, presses);
        QFETCH(QList<bool>, expectedToggles);
        QFETCH(int, expectedResets);
        QFETCH(int, expectedValue);
        QFETCH(bool, expectedAutomatic);

        auto editor = makeEditor(true, false, mode);
        auto* button = automaticButton(*editor);
        QVERIFY(button);
        QVERIFY(button->isVisible());
        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        QSignalSpy locked(editor.get(), &VwaAWidget::lockValueToggled);

        for (int i = 0; i < presses; ++i) {
            editor->setValue(7); // the user's own value before each press
            press(button, keyboard);
        }

        QCOMPARE(toggles(toggled), expectedToggles);
        QCOMPARE(editor->resets, expectedResets);
        QCOMPARE(editor->getValue(), expectedValue);
        QCOMPARE(editor->spin->text(), QString::number(expectedValue));
        QCOMPARE(editor->isAutomatic(), expectedAutomatic);
        QCOMPARE(button->isChecked(), expectedAutomatic);
        QCOMPARE(locked.count(), 0);
    }

    // Modes are set in order, then the user clicks once.
    void modeSequence_data()
    {
        QTest::addColumn<QList<Mode>>("modes");
        QTest::addColumn<bool>("expectedVisible");
        QTest::addColumn<int>("expectedToggles");
        QTest::addColumn<int>("expectedResets");

        const Mode s = VwaAWidget::AUTO_SET_STATE;
        const Mode v = VwaAWidget::AUTO_SET_VALUE;
        const Mode n = VwaAWidget::AUTO_SET_NONE;
        QTest::newRow("state twice keeps one connection") << QList<Mode>{s, s} << true << 1 << 1;
        QTest::newRow("value twice keeps one connection") << QList<Mode>{v, v} << true << 0 << 1;
        QTest::newRow("state then value drops the toggle wiring") << QList<Mode>{s, v} << true << 0 << 1;
        QTest::newRow("value then state drops the click wiring") << QList<Mode>{v, s} << true << 1 << 1;
        QTest::newRow("state then none: hidden and silent") << QList<Mode>{s, n} << false << 0 << 0;
        QTest::newRow("value then none: hidden and silent") << QList<Mode>{v, n} << false << 0 << 0;
        QTest::newRow("none, state, none, state") << QList<Mode>{n, s, n, s} << true << 1 << 1;
    }
    void modeSequence()
    {
        QFETCH(QList<Mode>, modes);
        QFETCH(bool, expectedVisible);
        QFETCH(int, expectedToggles);
        QFETCH(int, expectedResets);

        auto editor = makeEditor(true, false);
        for (Mode mode : modes)
            editor->setAutomaticMode(mode);
        QCOMPARE(editor->getAutomaticMode(), modes.last());
        auto* button = automaticButton(*editor);
        QCOMPARE(button->isVisible(), expectedVisible);
        // In no mode the button keeps whatever it was; it is hidden and unwired.
        if (modes.last() != VwaAWidget::AUTO_SET_NONE)
            QCOMPARE(button->isCheckable(), modes.last() == VwaAWidget::AUTO_SET_STATE);

        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        press(button, false);
        QCOMPARE(toggled.count(), expectedToggles);
        QCOMPARE(editor->resets, expectedResets);
    }

    void leavingCheckedStateModeIsSilent_data()
    {
        QTest::addColumn<Mode>("newMode");
        QTest::newRow("to set value") << VwaAWidget::AUTO_SET_VALUE;
        QTest::newRow("to none") << VwaAWidget::AUTO_SET_NONE;
    }
    void leavingCheckedStateModeIsSilent()
    {
        QFETCH(Mode, newMode);
        auto editor = makeEditor(true, false, VwaAWidget::AUTO_SET_STATE);
        QTest::mouseClick(automaticButton(*editor), Qt::LeftButton);
        QVERIFY(editor->isAutomatic());

        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        QSignalSpy buttonToggled(automaticButton(*editor), &VwcAutomaticButton::automaticToggled);
        editor->setAutomaticMode(newMode);
        QCOMPARE(toggled.count(), 0);
        QCOMPARE(buttonToggled.count(), 0);
        QVERIFY(!editor->isAutomatic());

        // Coming back starts unchecked, still without a signal.
        editor->setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
        QVERIFY(!automaticButton(*editor)->isChecked());
        QCOMPARE(toggled.count(), 0);
    }

    // setAutomatic from code goes through the same wiring as a click, but only in state mode.
    void setAutomaticFromCode_data()
    {
        QTest::addColumn<bool>("withButton");
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<bool>("expectedAutomatic");
        QTest::addColumn<int>("expectedToggles");

        QTest::newRow("state mode") << true << VwaAWidget::AUTO_SET_STATE << true << 1;
        QTest::newRow("set value mode ignores it") << true << VwaAWidget::AUTO_SET_VALUE << false << 0;
        QTest::newRow("none mode ignores it") << true << VwaAWidget::AUTO_SET_NONE << false << 0;
        QTest::newRow("no button ignores it") << false << VwaAWidget::AUTO_SET_STATE << false << 0;
    }
    void setAutomaticFromCode()
    {
        QFETCH(bool, withButton);
        QFETCH(Mode, mode);
        QFETCH(bool, expectedAutomatic);
        QFETCH(int, expectedToggles);

        auto editor = makeEditor(withButton, false, mode);
        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        editor->setAutomatic(true);
        editor->setAutomatic(true); // the same state again says nothing
        QCOMPARE(editor->isAutomatic(), expectedAutomatic);
        QCOMPARE(toggled.count(), expectedToggles);
        QCOMPARE(editor->getValue(), expectedAutomatic ? 42 : 7);
    }

    void automaticEnabled()
    {
        auto editor = makeEditor(true, false, VwaAWidget::AUTO_SET_STATE);
        QVERIFY(editor->isAutomaticEnabled());
        editor->setAutomaticEnabled(false);
        QVERIFY(!editor->isAutomaticEnabled());
        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        QTest::mouseClick(automaticButton(*editor), Qt::LeftButton);
        QCOMPARE(toggled.count(), 0);
        QCOMPARE(editor->getValue(), 7);
    }

    void userLocksValue_data()
    {
        QTest::addColumn<bool>("keyboard");
        QTest::addColumn<int>("presses");
        QTest::addColumn<QList<bool>>("expectedToggles");

        QTest::newRow("click locks") << false << 1 << QList<bool>{true};
        QTest::newRow("second click unlocks") << false << 2 << QList<bool>{true, false};
        QTest::newRow("Space locks") << true << 1 << QList<bool>{true};
    }
    void userLocksValue()
    {
        QFETCH(bool, keyboard);
        QFETCH(int, presses);
        QFETCH(QList<bool>, expectedToggles);

        auto editor = makeEditor(true, true, VwaAWidget::AUTO_SET_STATE);
        editor->setLockValueAvailable(true);
        auto* button = lockButton(*editor);
        QVERIFY(button->isVisible());
        QSignalSpy locked(editor.get(), &VwaAWidget::lockValueToggled);
        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        for (int i = 0; i < presses; ++i)
            press(button, keyboard);
        QCOMPARE(toggles(locked), expectedToggles);
        QCOMPARE(editor->isValueLocked(), expectedToggles.last());
        // The lock is the listener's business: the value and the automatic state stay.
        QCOMPARE(editor->getValue(), 7);
        QCOMPARE(toggled.count(), 0);
        QVERIFY(!editor->isAutomatic());
    }

    void setValueLockedFromCode()
    {
        auto editor = makeEditor(false, true);
        QSignalSpy locked(editor.get(), &VwaAWidget::lockValueToggled);
        editor->setValueLocked(false);
        QCOMPARE(locked.count(), 0);
        editor->setValueLocked(true);
        editor->setValueLocked(true);
        QCOMPARE(toggles(locked), QList<bool>{true});
        QVERIFY(lockButton(*editor)->isChecked());
    }

    // The answer must not depend on whether the editor itself is on screen yet.
    void lockAvailableBeforeShow()
    {
        IntEditor editor(false, true);
        QVERIFY(!editor.isLockValueAvailable());
        editor.setLockValueAvailable(true);
        QVERIFY(editor.isLockValueAvailable());
        editor.setLockValueAvailable(false);
        QVERIFY(!editor.isLockValueAvailable());
    }

    void missingButtons_data()
    {
        QTest::addColumn<bool>("withAutomatic");
        QTest::addColumn<bool>("withLock");
        QTest::newRow("no buttons") << false << false;
        QTest::newRow("lock only") << false << true;
        QTest::newRow("automatic only") << true << false;
    }
    void missingButtons()
    {
        QFETCH(bool, withAutomatic);
        QFETCH(bool, withLock);

        auto editor = makeEditor(withAutomatic, withLock);
        QCOMPARE(automaticButton(*editor) != nullptr, withAutomatic);
        QCOMPARE(lockButton(*editor) != nullptr, withLock);
        QSignalSpy toggled(editor.get(), &VwaAWidget::automaticToggled);
        QSignalSpy locked(editor.get(), &VwaAWidget::lockValueToggled);

        if (!withAutomatic) {
            editor->setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
            editor->setAutomaticEnabled(true);
            editor->setAutomatic(true);
            QCOMPARE(editor->getAutomaticMode(), VwaAWidget::AUTO_SET_NONE);
            QVERIFY(!editor->isAutomatic());
            QVERIFY(!editor->isAutomaticEnabled());
        }
        if (!withLock) {
            editor->setLockValueAvailable(true);
            editor->setValueLocked(true);
            QVERIFY(!editor->isLockValueAvailable());
            QVERIFY(!editor->isValueLocked());
        }
        QCOMPARE(toggled.count(), 0);
        QCOMPARE(locked.count(), 0);
        QCOMPARE(editor->resets, 0);
    }

    void newEditorState()
    {
        IntEditor editor(true, true);
        QCOMPARE(editor.getWidgetStyle(), VwaAWidget::NORMAL);
        QCOMPARE(editor.getAutomaticMode(), VwaAWidget::AUTO_SET_NONE);
        QVERIFY(automaticButton(editor)->isHidden());
        QVERIFY(lockButton(editor)->isHidden());
        QVERIFY(!editor.isAutomatic());
        QVERIFY(!editor.isValueLocked());
        QVERIFY(lockButton(editor)->isCheckable());
        QVERIFY(automaticButton(editor)->text().isEmpty());
        QVERIFY(automaticButton(editor)->autoRaise());
        QVERIFY(!lockButton(editor)->icon().isNull());
    }

    void widgetStyleUpdates_data()
    {
        QTest::addColumn<QList<int>>("styles");
        QTest::addColumn<int>("expectedUpdates");
        QTest::addColumn<int>("expectedStyle");

        QTest::newRow("the initial style again") << QList<int>{VwaAWidget::NORMAL} << 0 << int(VwaAWidget::NORMAL);
        QTest::newRow("embedded") << QList<int>{VwaAWidget::EMBEDDED} << 1 << int(VwaAWidget::EMBEDDED);
        QTest::newRow("embedded twice") << QList<int>{VwaAWidget::EMBEDDED, VwaAWidget::EMBEDDED} << 1
                                        << int(VwaAWidget::EMBEDDED);
        QTest::newRow("embedded and back")
            << QList<int>{VwaAWidget::EMBEDDED, VwaAWidget::NORMAL} << 2 << int(VwaAWidget::NORMAL);
        QTest::newRow("out of range refused") << QList<int>{5} << 0 << int(VwaAWidget::NORMAL);
    }
    void widgetStyleUpdates()
    {
        QFETCH(QList<int>, styles);
        QFETCH(int, expectedUpdates);
        QFETCH(int, expectedStyle);

        auto editor = makeEditor(false, false);
        for (int style : styles) {
            if (style != VwaAWidget::NORMAL && style != VwaAWidget::EMBEDDED)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwaAWidget::setWidgetStyle: "));
            editor->setWidgetStyle(static_cast<VwaAWidget::WidgetStyle>(style));
        }
        QCOMPARE(editor->styleUpdates, expectedUpdates);
        QCOMPARE(int(editor->getWidgetStyle()), expectedStyle);
    }

    void invalidAutomaticModeRefused()
    {
        auto editor = makeEditor(true, false, VwaAWidget::AUTO_SET_STATE);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwcAutomaticButton::setAutomaticMode: "));
        editor->setAutomaticMode(static_cast<Mode>(9));
        QCOMPARE(editor->getAutomaticMode(), VwaAWidget::AUTO_SET_STATE);
        QVERIFY(automaticButton(*editor)->isVisible());
    }

    void buttonsShowTheirIcons_data()
    {
        QTest::addColumn<Mode>("mode");
        QTest::addColumn<QString>("iconName");
        QTest::newRow("automatic state") << VwaAWidget::AUTO_SET_STATE << Vua::Resource::iconAutomaticState().getName();
        QTest::newRow("automatic set value")
            << VwaAWidget::AUTO_SET_VALUE << Vua::Resource::iconAutomaticSetValue().getName();
    }
    void buttonsShowTheirIcons()
    {
        QFETCH(Mode, mode);
        QFETCH(QString, iconName);
        QVERIFY(QFile::exists(QStringLiteral(":/velmora/icons/%1.svg").arg(iconName)));
        QVERIFY(QFile::exists(QStringLiteral(":/velmora/icons/%1.svg").arg(Vua::Resource::iconLockState().getName())));

        auto editor = makeEditor(true, true, mode);
        const QIcon icon = automaticButton(*editor)->icon();
        QVERIFY(!icon.pixmap(24).isNull());
        QVERIFY(icon.cacheKey() != lockButton(*editor)->icon().cacheKey());
        QVERIFY(!lockButton(*editor)->icon().pixmap(24).isNull());
    }

    // A style sheet background must reach the editor's own area, around its children.
    void styleSheetPaintsBackground()
    {
        auto editor = makeEditor(false, false);
        editor->setStyleSheet(QStringLiteral("IntEditor { background-color: rgb(10, 200, 30); }"));
        const QImage image = editor->grab().toImage();
        QCOMPARE(image.pixelColor(1, 1), QColor(10, 200, 30));
    }
};

QTEST_MAIN(TestVwaAWidget)
#include "tst_vwaawidget.moc"
