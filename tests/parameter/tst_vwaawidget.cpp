// The frame every value editor shares, through the smallest real editor: an integer spin
// box with the base's buttons on its right, driven by clicks, Space and calls from code.

#include "DataRow.h"
#include "EditorInput.h"

#include <VuaResourceProvider.h>
#include <VwaAWidget.h>
#include <VwcAutomaticButton.h>
#include <VwcLockValueButton.h>

#include <QHBoxLayout>
#include <QSpinBox>
#include <QtTest>

namespace {

class IntEditor : public VwaAWidget
{
    Q_OBJECT
public:
    IntEditor(bool withAutomatic, bool withLock)
        : VwaAWidget(nullptr, withAutomatic, withLock)
    {
        auto* layout = new QHBoxLayout(this);
        layout->setContentsMargins(4, 4, 4, 4);
        layout->addWidget(spin);
        for (QWidget* button : {_getAutomaticButton(), _getLockValueButton()})
            if (button)
                layout->addWidget(button);
    }

    QSpinBox* const spin = new QSpinBox(this);
    int resets = 0;
    int styleUpdates = 0;

protected:
    void _resetToAutoValue() override { ++resets; }
    void _updateWidgetStyle() override { ++styleUpdates; }
};

using Mode = VwaAWidget::AutoMode;

// What a user or a form does to an editor. A press on a hidden button clicks it from code,
// which shows whether any wiring is left behind it.
enum Step { State, Value, NoMode, BadMode, Click, Space, CodeOn, CodeOff, Disable,
            Offer, Withdraw, LockClick, LockSpace, LockOn, LockOff, Normal, Embedded, BadStyle };

void press(QAbstractButton* button, bool keyboard)
{
    if (!button->isVisible())
        button->click();
    else if (keyboard)
        QTest::keyClick(button, Qt::Key_Space);
    else
        QTest::mouseClick(button, Qt::LeftButton);
}

} // namespace

Q_DECLARE_METATYPE(QList<Step>)

// The column types of the tables below.
using ButtonsDrivenByUserAndCodeRow = Row<bool, bool, QList<Step>, QList<bool>, int, bool, bool, QList<bool>, bool, int>;

class TestVwaAWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VuaResourceProvider::setUseThemeIcons(false); }

    void buttonsDrivenByUserAndCode_data()
    {
        ButtonsDrivenByUserAndCodeRow::addColumns(); // withAutomatic, withLock, steps, automaticToggles, resets, automatic, automaticShown, lockToggles, lockShown, styleUpdates

        using L = QList<Step>;
        using B = QList<bool>;
        auto row = [](const char* name, bool withAutomatic, bool withLock, const L& steps, const B& automaticToggles,
                      int resets, bool automatic, bool automaticShown, const B& lockToggles = {},
                      bool lockShown = false, int styleUpdates = 0) {
            QTest::newRow(name) << withAutomatic << withLock << steps << automaticToggles << resets << automatic
                                << automaticShown << lockToggles << lockShown << styleUpdates;
        };
        auto styleRow = [row](const char* name, const L& steps, int updates) {
            row(name, false, false, steps, {}, 0, false, false, {}, false, updates);
        };
        row("state, click: automatic and reset", true, true, {State, Click}, {true}, 1, true, true);
        row("state, second click: value stays", true, true, {State, Click, Click}, {true, false}, 1, false, true);
        row("state, third click: reset", true, true, {State, Click, Click, Click}, {true, false, true}, 2, true, true);
        row("state, Space toggles like a click", true, true, {State, Space, Space}, {true, false}, 1, false, true);
        row("value, click resets without a toggle", true, true, {Value, Click}, {}, 1, false, true);
        row("value, every click resets", true, true, {Value, Click, Click, Click}, {}, 3, false, true);
        row("value, Space resets like a click", true, true, {Value, Space, Space}, {}, 2, false, true);
        row("state twice keeps one connection", true, true, {State, State, Click}, {true}, 1, true, true);
        row("value twice keeps one connection", true, true, {Value, Value, Click}, {}, 1, false, true);
        row("state then value drops the toggle wiring", true, true, {State, Value, Click}, {}, 1, false, true);
        row("value then state drops the click wiring", true, true, {Value, State, Click}, {true}, 1, true, true);
        row("state then none: hidden and silent", true, true, {State, NoMode, Click}, {}, 0, false, false);
        row("value then none: hidden and silent", true, true, {Value, NoMode, Click}, {}, 0, false, false);
        row("none, state, none, state", true, true, {NoMode, State, NoMode, State, Click}, {true}, 1, true, true);
        row("checked state to value: silent", true, true, {State, Click, Value}, {true}, 1, false, true);
        row("checked state to none: silent", true, true, {State, Click, NoMode}, {true}, 1, false, false);
        row("back to state starts unchecked", true, true, {State, Click, Value, State}, {true}, 1, false, true);
        row("invalid mode refused", true, true, {State, BadMode}, {}, 0, false, true);
        row("code: automatic in state mode, once", true, true, {State, CodeOn, CodeOn}, {true}, 1, true, true);
        row("code: leaving the automatic state", true, true, {State, Click, CodeOff}, {true, false}, 1, false, true);
        row("code: ignored in value mode", true, true, {Value, CodeOn}, {}, 0, false, true);
        row("code: ignored without a mode", true, true, {CodeOn}, {}, 0, false, false);
        row("disabled: a click does nothing", true, true, {State, Disable, Click}, {}, 0, false, true);
        row("lock: click locks, the automatic state stays", true, true, {State, Offer, LockClick}, {}, 0, false, true,
            {true}, true);
        row("lock: second click unlocks", true, true, {Offer, LockClick, LockClick}, {}, 0, false, false, {true, false},
            true);
        row("lock: Space locks", true, true, {Offer, LockSpace}, {}, 0, false, false, {true}, true);
        row("lock from code, twice: one signal", true, true, {LockOn, LockOn}, {}, 0, false, false, {true});
        row("unlock from code", true, true, {LockOn, LockOff}, {}, 0, false, false, {true, false});
        row("unlocking an unlocked value says nothing", true, true, {LockOff}, {}, 0, false, false);
        row("lock withdrawn: hidden", true, true, {Offer, Withdraw}, {}, 0, false, false);
        row("no buttons: all ignored", false, false, {State, Click, CodeOn, Offer, LockOn}, {}, 0, false, false);
        row("lock only: automatic ignored", false, true, {State, CodeOn, Offer, LockClick}, {}, 0, false, false,
            {true}, true);
        row("automatic only: lock ignored", true, false, {State, Click, Offer, LockOn}, {true}, 1, true, true);
        styleRow("style: the initial one again", {Normal}, 0);
        styleRow("style: embedded twice", {Embedded, Embedded}, 1);
        styleRow("style: embedded and back", {Embedded, Normal}, 2);
        styleRow("style: out of range refused", {BadStyle}, 0);
    }
    void buttonsDrivenByUserAndCode()
    {
        const auto [withAutomatic, withLock, steps, automaticToggles, resets, automatic, automaticShown, lockToggles, lockShown, styleUpdates] = ButtonsDrivenByUserAndCodeRow::fetch();

        // Before it is ever shown, an editor has the buttons it asked for, hidden and
        // unchecked (the number editors' suite finds them by name through style sheets), and
        // says whether the lock is offered.
        IntEditor editor(withAutomatic, withLock);
        auto* button = editor.findChild<VwcAutomaticButton*>(QStringLiteral("automaticButton"));
        auto* lock = editor.findChild<VwcLockValueButton*>(QStringLiteral("lockValueButton"));
        QCOMPARE(button != nullptr, withAutomatic);
        QCOMPARE(lock != nullptr, withLock);
        QCOMPARE(editor.getAutomaticMode(), VwaAWidget::AUTO_SET_NONE);
        if (button)
            QVERIFY(button->isHidden() && !button->isChecked() && button->autoRaise());
        if (lock)
            QVERIFY(lock->isHidden() && lock->isCheckable() && !lock->isChecked() && !lock->icon().pixmap(24).isNull());
        editor.setLockValueAvailable(true);
        QCOMPARE(editor.isLockValueAvailable(), withLock);
        editor.setLockValueAvailable(false);

        editor.show();
        QSignalSpy automaticSpy(&editor, &VwaAWidget::automaticToggled);
        QSignalSpy lockSpy(&editor, &VwaAWidget::lockValueToggled);
        Mode mode = VwaAWidget::AUTO_SET_NONE;
        VwaAWidget::WidgetStyle style = VwaAWidget::NORMAL;
        for (Step step : steps) {
            switch (step) {
            case State: editor.setAutomaticMode(mode = VwaAWidget::AUTO_SET_STATE); break;
            case Value: editor.setAutomaticMode(mode = VwaAWidget::AUTO_SET_VALUE); break;
            case NoMode: editor.setAutomaticMode(mode = VwaAWidget::AUTO_SET_NONE); break;
            case BadMode:
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwcAutomaticButton::setAutomaticMode: "));
                editor.setAutomaticMode(static_cast<Mode>(9));
                break;
            case Click: case Space: if (button) press(button, step == Space); break;
            case CodeOn: case CodeOff: editor.setAutomatic(step == CodeOn); break;
            case Disable: editor.setAutomaticEnabled(false); break;
            case Offer: case Withdraw: editor.setLockValueAvailable(step == Offer); break;
            case LockClick: case LockSpace: if (lock) press(lock, step == LockSpace); break;
            case LockOn: case LockOff: editor.setValueLocked(step == LockOn); break;
            case Normal: editor.setWidgetStyle(style = VwaAWidget::NORMAL); break;
            case Embedded: editor.setWidgetStyle(style = VwaAWidget::EMBEDDED); break;
            case BadStyle:
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwaAWidget::setWidgetStyle: "));
                editor.setWidgetStyle(static_cast<VwaAWidget::WidgetStyle>(5));
                break;
            }
        }
        QCOMPARE(editor.styleUpdates, styleUpdates);
        QCOMPARE(editor.getWidgetStyle(), style);

        QCOMPARE(EditorInput::firstArguments<bool>(automaticSpy), automaticToggles);
        QCOMPARE(editor.resets, resets);
        QCOMPARE(editor.isAutomatic(), automatic);
        QCOMPARE(editor.getAutomaticMode(), withAutomatic ? mode : VwaAWidget::AUTO_SET_NONE);
        QCOMPARE(editor.isAutomaticEnabled(), withAutomatic && !steps.contains(Disable));
        QCOMPARE(EditorInput::firstArguments<bool>(lockSpy), lockToggles);
        QCOMPARE(editor.isValueLocked(), !lockToggles.isEmpty() && lockToggles.last());
        QCOMPARE(editor.isLockValueAvailable(), lockShown);
        if (button) {
            QCOMPARE(button->isVisible(), automaticShown);
            // In no mode the button keeps whatever it was; it is hidden and unwired.
            if (mode != VwaAWidget::AUTO_SET_NONE) {
                QCOMPARE(button->isChecked(), automatic);
                QCOMPARE(button->isCheckable(), mode == VwaAWidget::AUTO_SET_STATE);
                const auto icon = mode == VwaAWidget::AUTO_SET_STATE ? Vua::Resource::iconAutomaticState()
                                                                      : Vua::Resource::iconAutomaticSetValue();
                QVERIFY(!button->icon().pixmap(24).isNull());
                QCOMPARE(button->icon().cacheKey(), VuaResourceProvider::getIcon(icon).cacheKey());
            }
        }
        if (lock)
            QCOMPARE(lock->isVisible(), lockShown);
    }

    // A style sheet background must reach the editor's own area, around its children, also
    // where the editor is not a window (a window is filled with its palette anyway).
    void styleSheetPaintsBackground()
    {
        QWidget host;
        auto* editor = new IntEditor(false, false);
        editor->setParent(&host);
        editor->setStyleSheet(QStringLiteral("IntEditor { background-color: rgb(10, 200, 30); }"));
        host.resize(editor->sizeHint());
        QCOMPARE(host.grab().toImage().pixelColor(1, 1), QColor(10, 200, 30));
    }
};

QTEST_MAIN(TestVwaAWidget)
#include "tst_vwaawidget.moc"
