// The number editors driven as a user drives them: typed text confirmed by Enter, Tab or
// Backtab, the step keys and the wheel, bounds and undefined values switched on and off,
// the automatic state, read-only presentation, and hostile text.

#include <KbbGlobal.h>
#include <KbbStringFormat.h>
#include <KbbUserStringFormats.h>
#include <VuaResourceProvider.h>
#include <VwaDouble.h>
#include <VwaInteger.h>
#include <VwcAutomaticButton.h>

#include <QClipboard>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QtTest>
#include <cmath>
#include <functional>
#include <memory>

using Setup = std::function<void(VwaDouble&)>;
Q_DECLARE_METATYPE(Setup)

namespace {

constexpr double UNDEF = KbbGlobal::D_FFFF;

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

    // Clicks into the field, replaces its text by typing, and confirms with `key`.
    void type(const QString& text, Qt::Key key = Qt::Key_Return)
    {
        QTest::mouseClick(field(), Qt::LeftButton);
        QTRY_VERIFY(spin()->hasFocus());
        QTest::keyClick(field(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field(), Qt::Key_Delete);
        QTest::keyClicks(field(), text);
        QTest::keyClick(spin(), key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    }

    // The same through the clipboard, for text no keyboard types.
    void paste(const QString& text, Qt::Key key = Qt::Key_Return)
    {
        QApplication::clipboard()->setText(text);
        QTest::mouseClick(field(), Qt::LeftButton);
        QTRY_VERIFY(spin()->hasFocus());
        QTest::keyClick(field(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(field(), Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(spin(), key);
    }
};

void wheel(QWidget* target, int delta)
{
    const QPoint at = target->rect().center();
    QWheelEvent event(at, target->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &event);
}

QList<double> values(const QSignalSpy& spy)
{
    QList<double> result;
    for (const auto& args : spy)
        result << args.at(0).toDouble();
    return result;
}

} // namespace

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

    void typedText_data()
    {
        QTest::addColumn<Setup>("setup");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("focus");

        const Setup none = [](VwaDouble&) {};
        const Setup metres = [](VwaDouble& e) {
            e.setDisplayFormat(fixed(2, QStringLiteral("m")));
            e.setPrefix(QStringLiteral("h = "));
        };
        const Setup bounded = [](VwaDouble& e) {
            e.setMinimumDefined(true);
            e.setMaximumDefined(true);
        };
        const Setup undefinable = [](VwaDouble& e) { e.setUndefineEnabled(true); };

        QTest::newRow("number, Enter") << none << "12.5" << int(Qt::Key_Return) << 12.5 << "12.50" << "spinbox";
        QTest::newRow("more digits than shown are kept") << none << "1.23456" << int(Qt::Key_Enter) << 1.23456
                                                         << "1.23" << "spinbox";
        QTest::newRow("prefix and unit in another case, Tab")
            << metres << "H = 3.25 M" << int(Qt::Key_Tab) << 3.25 << "h = 3.25 m" << "after";
        QTest::newRow("blanks around prefix and unit") << metres << "  H = 3  m " << int(Qt::Key_Return) << 3.0
                                                      << "h = 3.00 m" << "spinbox";
        QTest::newRow("number without prefix, Backtab")
            << metres << "7" << int(Qt::Key_Backtab) << 7.0 << "h = 7.00 m" << "before";
        QTest::newRow("degree sign follows the number")
            << Setup([](VwaDouble& e) { e.setDisplayFormat(fixed(1, QStringLiteral("deg"))); }) << "45\u00B0"
            << int(Qt::Key_Return) << 45.0 << "45.0\u00B0" << "spinbox";
        QTest::newRow("square of the unit")
            << Setup([](VwaDouble& e) { e.setDisplayFormat(fixed(1, QStringLiteral("m")), 2); }) << "4 m\u00B2"
            << int(Qt::Key_Return) << 4.0 << "4.0 m\u00B2" << "spinbox";
        QTest::newRow("power of ten")
            << Setup([](VwaDouble& e) { e.setDisplayFormat(fixed(1, QString(), 3)); }) << "12.5"
            << int(Qt::Key_Return) << 12500.0 << "12.5 \u00D710\u00B3" << "spinbox";
        QTest::newRow("above the maximum") << bounded << "150" << int(Qt::Key_Return) << 99.0 << "99.00" << "spinbox";
        QTest::newRow("below the minimum, Tab") << bounded << "-1e6" << int(Qt::Key_Tab) << -99.0 << "-99.00"
                                                << "after";
        QTest::newRow("bounds off: any size") << none << "1e20" << int(Qt::Key_Return) << 1e20 << "100000000000000000000.00"
                                              << "spinbox";
        QTest::newRow("empty, undefined allowed") << undefinable << "" << int(Qt::Key_Return) << UNDEF << ""
                                                  << "spinbox";
        QTest::newRow("empty, undefined refused") << none << "" << int(Qt::Key_Return) << 0.0 << "0.00" << "spinbox";
        QTest::newRow("words") << none << "twelve" << int(Qt::Key_Tab) << 0.0 << "0.00" << "after";
    }

    void typedText()
    {
        QFETCH(Setup, setup);
        QFETCH(QString, typed);
        QFETCH(int, key);
        QFETCH(double, value);
        QFETCH(QString, shown);
        QFETCH(QString, focus);

        Form<VwaDouble> form;
        setup(*form.editor);
        QSignalSpy changed(form.editor, &VwaDouble::valueChanged);
        form.type(typed, Qt::Key(key));

        QCOMPARE(form.editor->getValue(), value);
        QCOMPARE(form.field()->text(), shown);
        QCOMPARE(form.editor->text(), shown);
        QCOMPARE(values(changed), value == 0.0 ? QList<double>() : QList<double>{value});
        QCOMPARE(QApplication::focusWidget()->objectName(), focus);
    }

    void enterConfirmsEvenAnUnchangedValue()
    {
        Form<VwaDouble> form;
        form.editor->setValue(5.0);
        QSignalSpy changed(form.editor, &VwaDouble::valueChanged);
        QSignalSpy entered(form.editor, &VwaDouble::valueChangedByEnter);
        form.type(QStringLiteral("5"));
        form.type(QStringLiteral("6"));
        form.type(QStringLiteral("6"), Qt::Key_Tab);
        QCOMPARE(values(changed), QList<double>{6.0});
        QCOMPARE(entered.count(), 2);
    }

    void escapeTakesBackTheTyping()
    {
        Form<VwaDouble> form;
        form.editor->setValue(5.0);
        QSignalSpy changed(form.editor, &VwaDouble::valueChanged);
        form.type(QStringLiteral("77"), Qt::Key_Escape);
        QCOMPARE(form.field()->text(), QStringLiteral("5.00"));
        QTest::keyClick(form.spin(), Qt::Key_Tab);
        QCOMPARE(form.editor->getValue(), 5.0);
        QCOMPARE(changed.count(), 0);
    }

    void leavingWithoutTypingKeepsHiddenDigits()
    {
        Form<VwaDouble> form;
        form.editor->setValue(1.23456);
        QTest::mouseClick(form.field(), Qt::LeftButton);
        QTest::keyClick(form.spin(), Qt::Key_Tab);
        QCOMPARE(form.editor->getValue(), 1.23456);
    }

    void stepKeys_data()
    {
        QTest::addColumn<Setup>("setup");
        QTest::addColumn<double>("start");
        QTest::addColumn<int>("key");
        QTest::addColumn<double>("value");

        const Setup bounded = [](VwaDouble& e) {
            e.setMinimumDefined(true);
            e.setMaximumDefined(true);
        };
        const Setup wrapped = [bounded](VwaDouble& e) {
            bounded(e);
            e.setWrapping(true);
        };
        QTest::newRow("up by the default step") << Setup() << 1.5 << int(Qt::Key_Up) << 2.5;
        QTest::newRow("page down") << Setup() << 0.0 << int(Qt::Key_PageDown) << -10.0;
        QTest::newRow("tenths add up exactly")
            << Setup([](VwaDouble& e) { e.setStep(0.1); }) << 0.2 << int(Qt::Key_Up) << 0.3;
        QTest::newRow("a negative step is ignored")
            << Setup([](VwaDouble& e) { e.setStep(-1.0); }) << 1.0 << int(Qt::Key_Up) << 2.0;
        QTest::newRow("stops at the maximum") << bounded << 98.5 << int(Qt::Key_PageUp) << 99.0;
        QTest::newRow("no step beyond the maximum") << bounded << 99.0 << int(Qt::Key_Up) << 99.0;
        QTest::newRow("wraps past the maximum") << wrapped << 99.0 << int(Qt::Key_Up) << -99.0;
        QTest::newRow("wraps past the minimum") << wrapped << -99.0 << int(Qt::Key_Down) << 99.0;
        QTest::newRow("undefined does not step")
            << Setup([](VwaDouble& e) { e.setUndefineEnabled(true); }) << UNDEF << int(Qt::Key_Up) << UNDEF;
        QTest::newRow("read-only does not step")
            << Setup([](VwaDouble& e) { e.setReadOnly(true); }) << 3.0 << int(Qt::Key_Up) << 3.0;
    }

    void stepKeys()
    {
        QFETCH(Setup, setup);
        QFETCH(double, start);
        QFETCH(int, key);
        QFETCH(double, value);

        Form<VwaDouble> form;
        if (setup)
            setup(*form.editor);
        form.editor->setValue(start);
        QSignalSpy changed(form.editor, &VwaDouble::valueChanged);
        form.spin()->setFocus();
        QTest::keyClick(form.spin(), Qt::Key(key));
        QCOMPARE(form.editor->getValue(), value);
        QCOMPARE(changed.count(), value == start ? 0 : 1);
    }

    void wheelNeedsFocus()
    {
        Form<VwaDouble> form;
        form.after->setFocus();
        wheel(form.spin(), 120);
        QCOMPARE(form.editor->getValue(), 0.0);
        QVERIFY(form.after->hasFocus());

        QTest::mouseClick(form.field(), Qt::LeftButton);
        QTRY_VERIFY(form.spin()->hasFocus());
        wheel(form.spin(), 120);
        QCOMPARE(form.editor->getValue(), 1.0);
    }

    // The cases users and forms run into when bounds and undefined values change under
    // a value that is already there.
    void boundsAndUndefined_data()
    {
        QTest::addColumn<Setup>("change");
        QTest::addColumn<double>("start");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("emitted");

        QTest::newRow("no bounds keep a huge value") << Setup([](VwaDouble&) {}) << 1e300 << 1e300 << 0;
        QTest::newRow("defining the maximum lowers it")
            << Setup([](VwaDouble& e) { e.setMaximumDefined(true); }) << 1e300 << 99.0 << 1;
        QTest::newRow("a new minimum while off changes nothing")
            << Setup([](VwaDouble& e) { e.setMinimum(50.0); }) << 10.0 << 10.0 << 0;
        QTest::newRow("a new minimum while on raises it")
            << Setup([](VwaDouble& e) {
                   e.setMinimumDefined(true);
                   e.setMinimum(50.0);
               })
            << 10.0 << 50.0 << 1;
        QTest::newRow("switching the maximum off keeps the value")
            << Setup([](VwaDouble& e) {
                   e.setMaximumDefined(true);
                   e.setMaximumDefined(false);
                   e.setValue(500.0);
               })
            << 0.0 << 500.0 << 1;
        QTest::newRow("undefined refused becomes the clamped zero")
            << Setup([](VwaDouble& e) {
                   e.setMinimum(5.0);
                   e.setMinimumDefined(true);
                   e.setValue(UNDEF);
               })
            << 7.0 << 5.0 << 1;
        QTest::newRow("switching undefined off turns it into zero")
            << Setup([](VwaDouble& e) { e.setUndefineEnabled(false); }) << UNDEF << 0.0 << 1;
        QTest::newRow("NaN from code is no value")
            << Setup([](VwaDouble& e) { e.setValue(std::nan("")); }) << 3.0 << 0.0 << 1;
    }

    void boundsAndUndefined()
    {
        QFETCH(Setup, change);
        QFETCH(double, start);
        QFETCH(double, value);
        QFETCH(int, emitted);

        VwaDouble editor;
        editor.setUndefineEnabled(true);
        editor.setValue(start);
        if (start != UNDEF)
            editor.setUndefineEnabled(false);
        QSignalSpy changed(&editor, &VwaDouble::valueChanged);
        change(editor);
        QCOMPARE(editor.getValue(), value);
        QCOMPARE(changed.count(), emitted);
        if (emitted)
            QCOMPARE(changed.last().at(0).toDouble(), value);
    }

    void automaticState()
    {
        Form<VwaDouble> form;
        VwaDouble& e = *form.editor;
        e.setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
        e.setAutoValue(4.0);
        QCOMPARE(e.getValue(), 0.0);

        auto* button = e.findChild<VwcAutomaticButton*>(QStringLiteral("automaticButton"));
        QVERIFY(button->isVisible());
        QTest::mouseClick(button, Qt::LeftButton);
        QVERIFY(e.isAutomatic());
        QCOMPARE(e.getValue(), 4.0);
        e.setAutoValue(6.0);
        QCOMPARE(e.getValue(), 6.0);

        // Typing a value takes the editor out of the automatic state.
        form.type(QStringLiteral("1"));
        QVERIFY(!e.isAutomatic());
        e.setAutoValue(8.0);
        QCOMPARE(e.getValue(), 1.0);

        // A bound that would move the automatic value disables the automatic button.
        QTest::mouseClick(button, Qt::LeftButton);
        QCOMPARE(e.getValue(), 8.0);
        e.setMaximum(5.0);
        e.setMaximumDefined(true);
        QVERIFY(!e.isAutomatic());
        QVERIFY(!e.isAutomaticEnabled());
        QCOMPARE(e.getValue(), 5.0);
    }

    void automaticValueButton()
    {
        Form<VwaDouble> form;
        VwaDouble& e = *form.editor;
        e.setAutomaticMode(VwaAWidget::AUTO_SET_VALUE);
        e.setAutoValue(2.5);
        form.type(QStringLiteral("9"));
        QSignalSpy changed(&e, &VwaDouble::valueChanged);
        QSignalSpy toggled(&e, &VwaAWidget::automaticToggled);
        QTest::mouseClick(e.findChild<VwcAutomaticButton*>(QStringLiteral("automaticButton")), Qt::LeftButton);
        QCOMPARE(values(changed), QList<double>{2.5});
        QCOMPARE(toggled.count(), 0);
        QCOMPARE(form.field()->text(), QStringLiteral("2.50"));
    }

    void readOnlyShowsFlatText()
    {
        Form<VwaDouble> form;
        form.editor->setDisplayFormat(fixed(3, QStringLiteral("km")));
        form.editor->setValue(1.5);
        form.editor->setReadOnly(true);
        form.editor->setLockValueAvailable(true);
        auto* page = form.editor->findChild<QLineEdit*>(QStringLiteral("lineEdit"));
        auto* lock = form.editor->findChild<QWidget*>(QStringLiteral("lockValueButton"));
        QVERIFY(page->isVisible());
        QVERIFY(!form.spin()->isVisible());
        QVERIFY(!lock->isVisible());
        QCOMPARE(page->text(), QStringLiteral("1.500 km"));
        QCOMPARE(form.editor->text(), QStringLiteral("1.500 km"));
        form.editor->setValue(2.0);
        QCOMPARE(page->text(), QStringLiteral("2.000 km"));

        form.editor->setReadOnly(false);
        QVERIFY(form.spin()->isVisible());
        QVERIFY(lock->isVisible());
        QVERIFY(!page->isVisible());
    }

    void fixedTextIsLogged()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("halvorn.widget.atomic.double.debug=true"));
        Form<VwaDouble> form;
        QTest::ignoreMessage(QtDebugMsg, "_SpinBoxPrivate::interpret text ' 3.14159' >> '3.14159'' >> '3.14'");
        form.type(QStringLiteral(" 3.14159"));
        QLoggingCategory::setFilterRules(QString());
    }

    // Whatever is typed, the value stays a finite number within the bounds.
    void hostileText_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("empty") << QString();
        QTest::newRow("blanks") << QStringLiteral("    ");
        QTest::newRow("nan") << QStringLiteral("nan");
        QTest::newRow("inf") << QStringLiteral("inf");
        QTest::newRow("-inf") << QStringLiteral("-inf");
        QTest::newRow("1e309") << QStringLiteral("1e309");
        QTest::newRow("4 KB of digits") << QString(4096, QLatin1Char('9'));
        QTest::newRow("German separators") << QStringLiteral("1.234,5");
        QTest::newRow("two decimal points") << QStringLiteral("1.2.3");
        QTest::newRow("stray symbols") << QStringLiteral("$%&*()");
        QTest::newRow("hexadecimal") << QStringLiteral("0x1F");
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
        const bool typable = std::all_of(typed.begin(), typed.end(), [](QChar c) { return c.isPrint() && c.unicode() < 256; });
        if (typable)
            form.type(typed);
        form.paste(typed, Qt::Key_Tab);
        const double v = form.editor->getValue();
        QVERIFY2(std::isfinite(v) && v >= -10.0 && v <= 10.0, qPrintable(QString::number(v)));
        QCOMPARE(form.field()->text(), form.editor->text());
    }

    void integerTypedText_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("undefinable");
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("shown");

        QTest::newRow("prefix and suffix in another case") << "N = 12 PCS" << false << 12 << "n = 12 pcs";
        QTest::newRow("bare number") << "42" << false << 42 << "n = 42 pcs";
        QTest::newRow("above the maximum") << "1000" << false << 99 << "n = 99 pcs";
        QTest::newRow("below the minimum") << "-3" << false << 0 << "n = 0 pcs";
        QTest::newRow("too big for an int") << "99999999999" << false << 99 << "n = 99 pcs";
        QTest::newRow("words keep the value") << "many" << false << 5 << "n = 5 pcs";
        QTest::newRow("empty, undefined allowed") << "" << true << KbbGlobal::I_FFFF << "";
        QTest::newRow("empty, undefined refused") << "" << false << 5 << "n = 5 pcs";
    }

    void integerTypedText()
    {
        QFETCH(QString, typed);
        QFETCH(bool, undefinable);
        QFETCH(int, value);
        QFETCH(QString, shown);

        Form<VwaInteger> form;
        VwaInteger& e = *form.editor;
        e.setPrefix(QStringLiteral("n = "));
        e.setSuffix(QStringLiteral(" pcs"));
        e.setMinimumDefined(true);
        e.setMaximumDefined(true);
        e.setUndefineEnabled(undefinable);
        e.setValue(5);
        QSignalSpy changed(&e, &VwaInteger::valueChanged);
        form.type(typed);
        QCOMPARE(e.getValue(), value);
        QCOMPARE(form.field()->text(), shown);
        QCOMPARE(e.text(), shown);
        QCOMPARE(changed.count(), value == 5 ? 0 : 1);
    }

    void integerSteps()
    {
        Form<VwaInteger> form;
        VwaInteger& e = *form.editor;
        e.setMaximumDefined(true);
        e.setStep(5);
        e.setValue(90);
        form.spin()->setFocus();
        QTest::keyClick(form.spin(), Qt::Key_Up);
        QTest::keyClick(form.spin(), Qt::Key_Up);
        QCOMPARE(e.getValue(), 99);
        e.setWrapping(true);
        e.setMinimumDefined(true);
        QTest::keyClick(form.spin(), Qt::Key_Up);
        QCOMPARE(e.getValue(), 0);
        e.setUndefineEnabled(true);
        e.setValue(KbbGlobal::I_FFFF);
        QTest::keyClick(form.spin(), Qt::Key_Up);
        QCOMPARE(e.getValue(), KbbGlobal::I_FFFF);
    }
};

QTEST_MAIN(TestVwaNumeric)
#include "tst_vwanumeric.moc"
