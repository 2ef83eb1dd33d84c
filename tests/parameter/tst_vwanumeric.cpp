// The number editors driven as a user drives them: typed text confirmed by Enter, Tab or
// Backtab, the step keys and the wheel, bounds and undefined values switched on and off,
// the automatic state, read-only presentation, the named parts, and hostile text.

#include "DataRow.h"
#include "EditorInput.h"

#include <KbbGlobal.h>
#include <KbbStringFormat.h>
#include <KbbUserStringFormats.h>
#include <VuaResourceProvider.h>
#include <VwaDouble.h>
#include <VwaInteger.h>
#include <VwhStylesheet.h>

#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>
#include <cmath>
#include <functional>
#include <memory>

using Setup = std::function<void(VwaDouble&)>;
using IntSetup = std::function<void(VwaInteger&)>;
Q_DECLARE_METATYPE(Setup)
Q_DECLARE_METATYPE(IntSetup)

namespace {

constexpr double UNDEF = KbbGlobal::D_FFFF;
// Gestures beside the keys: a wheel notch over the field after a click into it, and one
// while another field has the focus.
constexpr int WheelFocused = -1;
constexpr int WheelElsewhere = -2;

KbbStringFormat fixed(int digits, const QString& unit = QString(), int power = 0)
{
    return KbbStringFormat(KbbStringFormat::FIXED, digits, KbuUnit::fromKey(unit), false, power);
}

// A form with a field before and after the editor, so that Tab and Backtab have somewhere
// to go, shown and active so that focus and key events behave as on a desktop.
template <class Editor>
struct Form
{
    QWidget window;
    QLineEdit* before = new QLineEdit(&window);
    Editor* editor = new Editor(&window);
    QLineEdit* after = new QLineEdit(&window);

    Form()
    {
        before->setObjectName(QStringLiteral("before"));
        after->setObjectName(QStringLiteral("after"));
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(before);
        layout->addWidget(editor);
        layout->addWidget(after);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }

    QAbstractSpinBox* spin() const { return editor->template findChild<QAbstractSpinBox*>(QStringLiteral("spinbox")); }
    QLineEdit* field() const { return spin()->template findChild<QLineEdit*>(); }

    // Clicks into the field (when it is shown), replaces its text (a null text leaves it)
    // and gives the key or the wheel gesture.
    void type(const QString& text, int key = Qt::Key_Return)
    {
        if (key == WheelElsewhere) {
            after->setFocus();
            QVERIFY(!EditorInput::wheel(spin(), 120));
            return;
        }
        if (spin()->isVisible()) {
            QTest::mouseClick(field(), Qt::LeftButton);
            QTRY_VERIFY(spin()->hasFocus());
        }
        if (!text.isNull())
            EditorInput::replaceText(field(), text);
        if (key == WheelFocused)
            EditorInput::wheel(spin(), 120);
        else
            QTest::keyClick(spin(), Qt::Key(key), key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    }
};

} // namespace

// The column types of the tables below.
using UserInputRow = Row<Setup, double, QString, int, double, QString, QString>;
using IntegerInputRow = Row<IntSetup, int, QString, int, int, QString>;
using ValuesFromCodeRow = Row<Setup, double, double, int, QList<double>>;

class TestVwaNumeric : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        VuaResourceProvider::setUseThemeIcons(false);
        QLocale::setDefault(QLocale::c());
        // New editors take the user's format for plain numbers.
        KbbUserStringFormats::setStringFormat(KbuEUnitClass::NONE, fixed(2));
    }

    void userInput_data()
    {
        UserInputRow::addColumns(); // setup, start, typed, key, value, shown, focus

        auto row = [](const char* name, const Setup& setup, double start, const QString& typed, int key, double value,
                      const QString& shown, const char* focus = "spinbox") {
            QTest::newRow(name) << setup << start << typed << key << value << shown << QString(focus);
        };
        const Setup none = [](VwaDouble&) {};
        const Setup metres = [](VwaDouble& e) { e.setDisplayFormat(fixed(2, QStringLiteral("m"))); e.setPrefix("h = "); };
        const Setup bounded = [](VwaDouble& e) { e.setMinimumDefined(true); e.setMaximumDefined(true); };
        const Setup wrapped = [bounded](VwaDouble& e) { bounded(e); e.setWrapping(true); };
        const Setup undefinable = [](VwaDouble& e) { e.setUndefineEnabled(true); };
        const QString untouched;
        row("number, Enter", none, 0, "12.5", Qt::Key_Return, 12.5, "12.50");
        row("more digits than shown are kept", none, 0, "1.23456", Qt::Key_Enter, 1.23456, "1.23");
        row("prefix and unit in another case, Tab", metres, 0, "H = 3.25 M", Qt::Key_Tab, 3.25, "h = 3.25 m", "after");
        row("blanks around prefix and unit", metres, 0, "  H = 3  m ", Qt::Key_Return, 3.0, "h = 3.00 m");
        row("number without prefix, Backtab", metres, 0, "7", Qt::Key_Backtab, 7.0, "h = 7.00 m", "before");
        row("degree sign follows the number", [](VwaDouble& e) { e.setDisplayFormat(fixed(1, QStringLiteral("deg"))); },
            0, "45\u00B0", Qt::Key_Return, 45.0, "45.0\u00B0");
        row("square of the unit", [](VwaDouble& e) { e.setDisplayFormat(fixed(1, QStringLiteral("m")), 2); }, 0,
            "4 m\u00B2", Qt::Key_Return, 4.0, "4.0 m\u00B2");
        row("power of ten", [](VwaDouble& e) { e.setDisplayFormat(fixed(1, QString(), 3)); }, 0, "12.5",
            Qt::Key_Return, 12500.0, "12.5 \u00D710\u00B3");
        row("above the maximum", bounded, 0, "150", Qt::Key_Return, 99.0, "99.00");
        row("below the minimum, Tab", bounded, 0, "-1e6", Qt::Key_Tab, -99.0, "-99.00", "after");
        row("bounds off: any size", none, 0, "1e20", Qt::Key_Return, 1e20, "100000000000000000000.00");
        row("empty, undefined allowed", undefinable, 0, "", Qt::Key_Return, UNDEF, "");
        row("empty, undefined refused", none, 0, "", Qt::Key_Return, 0.0, "0.00");
        row("words", none, 0, "twelve", Qt::Key_Tab, 0.0, "0.00", "after");
        row("Enter on the same value: entered, unchanged", none, 5, "5", Qt::Key_Return, 5.0, "5.00");
        row("Escape takes back the typing", none, 5, "77", Qt::Key_Escape, 5.0, "5.00");
        row("leaving untouched keeps the hidden digits", none, 1.23456, untouched, Qt::Key_Tab, 1.23456, "1.23", "after");
        row("up by the default step", none, 1.5, untouched, Qt::Key_Up, 2.5, "2.50");
        row("page down", none, 0, untouched, Qt::Key_PageDown, -10.0, "-10.00");
        row("tenths add up exactly", [](VwaDouble& e) { e.setStep(0.1); }, 0.2, untouched, Qt::Key_Up, 0.3, "0.30");
        row("a negative step is ignored", [](VwaDouble& e) { e.setStep(-1.0); }, 1, untouched, Qt::Key_Up, 2.0, "2.00");
        row("stops at the maximum", bounded, 98.5, untouched, Qt::Key_PageUp, 99.0, "99.00");
        row("no step beyond the maximum", bounded, 99, untouched, Qt::Key_Up, 99.0, "99.00");
        row("wraps past the maximum", wrapped, 99, untouched, Qt::Key_Up, -99.0, "-99.00");
        row("wraps past the minimum", wrapped, -99, untouched, Qt::Key_Down, 99.0, "99.00");
        row("undefined does not step", undefinable, UNDEF, untouched, Qt::Key_Up, UNDEF, "");
        row("read-only does not step", [](VwaDouble& e) { e.setReadOnly(true); }, 3, untouched, Qt::Key_Up, 3.0, "3.00",
            "before");
        row("the wheel steps once clicked into", none, 0, untouched, WheelFocused, 1.0, "1.00");
        row("the wheel over an unfocused field does nothing", none, 0, untouched, WheelElsewhere, 0.0, "0.00", "after");
        row("typing leaves the automatic state", [](VwaDouble& e) {
            e.setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
            e.setAutoValue(4.0);
            QTest::mouseClick(e.findChild<QWidget*>(QStringLiteral("automaticButton")), Qt::LeftButton);
        }, 4, "1", Qt::Key_Return, 1.0, "1.00");
    }
    void userInput()
    {
        const auto [setup, start, typed, key, value, shown, focus] = UserInputRow::fetch();

        Form<VwaDouble> form;
        setup(*form.editor);
        form.editor->setValue(start);
        QSignalSpy changed(form.editor, &VwaDouble::valueChanged);
        QSignalSpy entered(form.editor, &VwaDouble::valueChangedByEnter);
        form.type(typed, key);

        QCOMPARE(form.editor->getValue(), value);
        QCOMPARE(form.field()->text(), shown);
        QCOMPARE(form.editor->text(), shown);
        QCOMPARE(EditorInput::firstArguments<double>(changed), value == start ? QList<double>() : QList<double>{value});
        QCOMPARE(entered.count(), key == Qt::Key_Return || key == Qt::Key_Enter ? 1 : 0);
        QVERIFY(!form.editor->isAutomatic());
        QCOMPARE(QApplication::focusWidget()->objectName(), focus);
    }

    // What forms do to a value that is already there: bounds and undefined values switched
    // on and off, and the automatic value (4 when the editor is made automatic).
    void valuesFromCode_data()
    {
        // 0 not automatic, 1 automatic, -1 the automatic button disabled: the automatic
        // value (0 unless set) no longer fits the bounds.
        ValuesFromCodeRow::addColumns(); // change, start, value, automatic, emitted

        auto row = [](const char* name, const Setup& change, double start, double value, int automatic = 0,
                      QList<double> emitted = {}) {
            if (emitted.isEmpty() && value != start)
                emitted = {value};
            QTest::newRow(name) << change << start << value << automatic << emitted;
        };
        const Setup automatic = [](VwaDouble& e) {
            e.setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
            e.setAutoValue(4.0);
            e.setAutomatic(true);
        };
        row("no bounds keep a huge value", [](VwaDouble&) {}, 1e300, 1e300);
        row("defining the maximum lowers it", [](VwaDouble& e) { e.setMaximumDefined(true); }, 1e300, 99.0);
        row("a new minimum while off changes nothing", [](VwaDouble& e) { e.setMinimum(50.0); }, 10.0, 10.0);
        row("a new minimum while on raises it", [](VwaDouble& e) { e.setMinimumDefined(true); e.setMinimum(50.0); },
            10.0, 50.0, -1);
        row("switching the maximum off keeps the value",
            [](VwaDouble& e) { e.setMaximumDefined(true); e.setMaximumDefined(false); e.setValue(500.0); }, 0.0, 500.0);
        row("undefined refused becomes the clamped zero",
            [](VwaDouble& e) { e.setMinimum(5.0); e.setMinimumDefined(true); e.setValue(UNDEF); }, 7.0, 5.0, -1);
        row("switching undefined off turns it into zero", [](VwaDouble& e) { e.setUndefineEnabled(false); }, UNDEF, 0.0);
        row("NaN from code is no value", [](VwaDouble& e) { e.setValue(std::nan("")); }, 3.0, 0.0);
        row("automatic: takes the automatic value", automatic, 0.0, 4.0, 1);
        row("automatic: a new automatic value is followed", [=](VwaDouble& e) { automatic(e); e.setAutoValue(6.0); },
            0.0, 6.0, 1, {4.0, 6.0});
        row("not automatic: a new automatic value is only kept", [](VwaDouble& e) { e.setAutoValue(6.0); }, 1.0, 1.0);
        row("a bound that moves the automatic value ends the automatic state",
            [=](VwaDouble& e) { automatic(e); e.setMaximum(3.0); e.setMaximumDefined(true); }, 0.0, 3.0, -1, {4.0, 3.0});
    }
    void valuesFromCode()
    {
        const auto [change, start, value, automatic, emitted] = ValuesFromCodeRow::fetch();

        VwaDouble editor;
        editor.setUndefineEnabled(true);
        editor.setValue(start);
        if (start != UNDEF)
            editor.setUndefineEnabled(false);
        QSignalSpy changed(&editor, &VwaDouble::valueChanged);
        change(editor);
        QCOMPARE(editor.getValue(), value);
        QCOMPARE(EditorInput::firstArguments<double>(changed), emitted);
        QCOMPARE(editor.isAutomatic(), automatic == 1);
        QCOMPARE(editor.isAutomaticEnabled(), automatic != -1);
    }

    // Every named part is there on a new editor before it is shown, in its place, and style
    // sheets reach each by name. Made read-only, the editor shows its value as flat text on
    // the library's read-only background, in the spin box's place.
    void freshEditorParts_data()
    {
        QTest::addColumn<bool>("integer");
        QTest::newRow("VwaDouble") << false;
        QTest::newRow("VwaInteger") << true;
    }
    void freshEditorParts()
    {
        QFETCH(bool, integer);
        std::unique_ptr<VwaANumeric> editor(integer ? static_cast<VwaANumeric*>(new VwaInteger) : new VwaDouble);
        const QStringList names{"stackWidget", "rwWidget", "spinbox", "automaticButton", "lockValueButton", "lineEdit"};
        QString sheet;
        for (int i = 0; i < names.size(); ++i)
            sheet += QStringLiteral("#%1 { color: rgb(%2, 0, 0); }").arg(names[i]).arg(i + 1);
        editor->setStyleSheet(sheet);
        QList<QWidget*> parts;
        for (int i = 0; i < names.size(); ++i) {
            parts << editor->findChild<QWidget*>(names[i]);
            QVERIFY2(parts.last(), qPrintable(names[i]));
            parts.last()->ensurePolished(); // as it is when it is first shown
            QCOMPARE(parts.last()->palette().color(QPalette::Text), QColor(i + 1, 0, 0));
        }
        auto* row = editor->findChild<QHBoxLayout*>(QStringLiteral("rwLayout"));
        QVERIFY(row && row->parentWidget() == parts[1]);
        QCOMPARE(row->contentsMargins(), QMargins());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(row->itemAt(i)->widget(), parts[2 + i]);
        QVERIFY(parts[3]->isHidden() && parts[4]->isHidden());
        auto* lineEdit = qobject_cast<QLineEdit*>(parts[5]);
        QVERIFY(lineEdit && lineEdit->isReadOnly() && !lineEdit->hasFrame());
        QCOMPARE(lineEdit->sizePolicy().horizontalPolicy(), QSizePolicy::Ignored);
        QCOMPARE(lineEdit->sizePolicy().verticalPolicy(), QSizePolicy::Ignored);
        // The editor takes the spin box's policy: as wide as it needs, never taller.
        QCOMPARE(editor->sizePolicy().verticalPolicy(), QSizePolicy::Fixed);
        QCOMPARE(editor->focusPolicy(), Qt::StrongFocus);

        editor->show();
        editor->setProperty("value", 2);
        editor->setLockValueAvailable(true);
        const QSize editableSize = editor->sizeHint();
        editor->setReadOnly(true);
        QVERIFY(lineEdit->isVisible() && !parts[2]->isVisible() && !parts[4]->isVisible());
        QCOMPARE(lineEdit->text(), integer ? QStringLiteral("2") : QStringLiteral("2.00"));
        QCOMPARE(lineEdit->palette().color(lineEdit->backgroundRole()), QColor(Vwh::Stylesheet::readOnlyBackground));
        QCOMPARE(editor->sizeHint(), editableSize); // a form does not move
        editor->setProperty("value", 3);
        QCOMPARE(lineEdit->text(), editor->text());
        QVERIFY(lineEdit->text().startsWith(QLatin1Char('3')));
        editor->setReadOnly(false);
        QVERIFY(!lineEdit->isVisible() && parts[2]->isVisible() && parts[4]->isVisible());
    }

    // Whatever is typed or pasted, the value stays a finite number within the bounds and
    // the field shows it.
    void hostileText_data()
    {
        QTest::addColumn<QString>("typed");
        for (const char* text : {"", "    ", "nan", "inf", "-inf", "1e309", "1.234,5", "1.2.3", "$%&*()", "0x1F"})
            QTest::newRow(*text ? text : "empty") << QString::fromLatin1(text);
        QTest::newRow("4 KB of digits") << QString(4096, QLatin1Char('9'));
        QTest::newRow("control characters") << QStringLiteral("\t\x01\x7f");
        QTest::newRow("Arabic digits") << QStringLiteral("\u0661\u0662");
    }
    void hostileText()
    {
        QFETCH(QString, typed);
        Form<VwaDouble> form;
        form.editor->setMinimum(-10.0);
        form.editor->setMaximum(10.0);
        form.editor->setMinimumDefined(true);
        form.editor->setMaximumDefined(true);
        form.editor->setValue(3.0);
        form.type(typed, Qt::Key_Return);
        form.type(typed, Qt::Key_Tab);
        const double v = form.editor->getValue();
        QVERIFY2(std::isfinite(v) && v >= -10.0 && v <= 10.0, qPrintable(QString::number(v)));
        QCOMPARE(form.field()->text(), form.editor->text());
    }

    // The same with integers, in an editor with a prefix, a suffix and both bounds on.
    void integerInput_data()
    {
        IntegerInputRow::addColumns(); // setup, start, typed, key, value, shown

        auto row = [](const char* name, const IntSetup& setup, int start, const QString& typed, int key, int value,
                      const QString& shown) { QTest::newRow(name) << setup << start << typed << key << value << shown; };
        const IntSetup none = [](VwaInteger&) {};
        const IntSetup undefinable = [](VwaInteger& e) { e.setUndefineEnabled(true); };
        const int undefined = KbbGlobal::I_FFFF;
        row("prefix and suffix in another case", none, 5, "N = 12 PCS", Qt::Key_Return, 12, "n = 12 pcs");
        row("bare number", none, 5, "42", Qt::Key_Return, 42, "n = 42 pcs");
        row("above the maximum", none, 5, "1000", Qt::Key_Return, 99, "n = 99 pcs");
        row("below the minimum", none, 5, "-3", Qt::Key_Return, 0, "n = 0 pcs");
        row("too big for an int", none, 5, "99999999999", Qt::Key_Return, 99, "n = 99 pcs");
        row("words keep the value", none, 5, "many", Qt::Key_Return, 5, "n = 5 pcs");
        row("empty, undefined allowed", undefinable, 5, "", Qt::Key_Return, undefined, "");
        row("empty, undefined refused", none, 5, "", Qt::Key_Return, 5, "n = 5 pcs");
        row("a step of 5 stops at the maximum", [](VwaInteger& e) { e.setStep(5); }, 95, QString(), Qt::Key_Up, 99,
            "n = 99 pcs");
        row("wraps past the maximum", [](VwaInteger& e) { e.setWrapping(true); }, 99, QString(), Qt::Key_Up, 0,
            "n = 0 pcs");
        row("undefined does not step", undefinable, undefined, QString(), Qt::Key_Up, undefined, "");
    }
    void integerInput()
    {
        const auto [setup, start, typed, key, value, shown] = IntegerInputRow::fetch();

        Form<VwaInteger> form;
        VwaInteger& e = *form.editor;
        e.setPrefix(QStringLiteral("n = "));
        e.setSuffix(QStringLiteral(" pcs"));
        e.setMinimumDefined(true);
        e.setMaximumDefined(true);
        setup(e);
        e.setValue(start);
        QSignalSpy changed(&e, &VwaInteger::valueChanged);
        form.type(typed, key);
        QCOMPARE(e.getValue(), value);
        QCOMPARE(form.field()->text(), shown);
        QCOMPARE(e.text(), shown);
        QCOMPARE(EditorInput::firstArguments<int>(changed), value == start ? QList<int>() : QList<int>{value});
    }
};

QTEST_MAIN(TestVwaNumeric)
#include "tst_vwanumeric.moc"
