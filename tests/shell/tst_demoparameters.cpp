// The demo's Parameters window as a user meets it: opened from the Tools menu, editors
// typed into with the log listing their signals, the toolbar switches, the style-sheet
// inspector, and the window brought back with the project.

#include "DemoParametersWindow.h"
#include "DemoSession.h"

#include <KbbUserStringFormats.h>
#include <VuaResourceProvider.h>
#include <VwaDouble.h>
#include <VwhStyleSheetDialog.h>

#include <QAbstractSpinBox>
#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QtTest>

namespace {

void typeInto(VwaAWidget* editor, const QString& text)
{
    auto* spin = editor->findChild<QAbstractSpinBox*>(QStringLiteral("spinbox"));
    auto* field = spin->findChild<QLineEdit*>();
    QTest::mouseClick(field, Qt::LeftButton);
    QTRY_VERIFY(spin->hasFocus());
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(field, text);
    QTest::keyClick(spin, Qt::Key_Return);
}

QAction* toolbarAction(DemoParametersWindow* window, const QString& text)
{
    for (QAction* action : window->getToolbarActions(VwwAWindow::MAIN_TOOLBAR))
        if (action->text() == text)
            return action;
    return nullptr;
}

VwhStyleSheetDialog* styleSheetDialog()
{
    for (QWidget* w : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<VwhStyleSheetDialog*>(w); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

} // namespace

class TestDemoParameters : public QObject
{
    Q_OBJECT
    DemoSession _demo;

private Q_SLOTS:
    void initTestCase()
    {
        VuaResourceProvider::setUseThemeIcons(false);
        KbbUserStringFormats::resetToDefaults();
    }

    void init()
    {
        QVERIFY(_demo.start());
        QVERIFY(_demo.open());
        // The form's shortcut goes to the active window; opening the project may have taken it.
        _demo.main->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(_demo.main.get()));
    }

    void cleanup() { _demo.stop(); }

    void openedFromTheToolsMenuOnce()
    {
        QTest::keyClick(_demo.main.get(), Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        auto* form = _demo.main->findChild<DemoParametersWindow*>();
        QVERIFY(form);
        QTRY_VERIFY(!form->visibleRegion().isEmpty());
        QCOMPARE(_demo.main->showParameters(), form);
        // Every editor of the table is there.
        for (const QString& row : DemoParametersWindow::rows())
            for (const QString& column : DemoParametersWindow::columns())
                QVERIFY2(form->editor(row, column), qPrintable(row + '.' + column));
        // The window comes back with the project, once.
        QVERIFY(_demo.reopen());
        QCOMPARE(_demo.main->findChildren<DemoParametersWindow*>().size(), 1);
    }

    void typedValuesAreLogged()
    {
        DemoParametersWindow* form = _demo.main->showParameters();
        QTRY_VERIFY(!form->visibleRegion().isEmpty());
        typeInto(form->editor(QStringLiteral("length"), QStringLiteral("normal")), QStringLiteral("42"));
        typeInto(form->editor(QStringLiteral("length"), QStringLiteral("normal")), QStringLiteral("420"));
        const QString log = form->log()->toPlainText();
        QVERIFY2(log.contains(QStringLiteral("length.normal: valueChanged(42) shown as \"42.00 m\"")), qPrintable(log));
        QVERIFY2(log.contains(QStringLiteral("length.normal: valueChanged(100) shown as \"100.00 m\"")), qPrintable(log));
        QCOMPARE(log.count(QStringLiteral("valueChangedByEnter()")), 2);

        // Bounds off: the same text is taken as it is.
        toolbarAction(form, DemoParametersWindow::tr("Bounds"))->trigger();
        typeInto(form->editor(QStringLiteral("length"), QStringLiteral("normal")), QStringLiteral("420"));
        QCOMPARE(qobject_cast<VwaDouble*>(form->editor(QStringLiteral("length"), QStringLiteral("normal")))->getValue(),
                 420.0);

        // The automatic state is left by typing, and says so.
        typeInto(form->editor(QStringLiteral("length"), QStringLiteral("automatic")), QStringLiteral("3"));
        QVERIFY(form->log()->toPlainText().contains(QStringLiteral("length.automatic: automaticToggled(false)")));
    }

    void undefinedNuggetCanBeSwitchedOff()
    {
        DemoParametersWindow* form = _demo.main->showParameters();
        auto* nugget = qobject_cast<VwaDouble*>(form->editor(QStringLiteral("variance"), QStringLiteral("normal")));
        QCOMPARE(nugget->text(), QString());
        toolbarAction(form, DemoParametersWindow::tr("Undefined nugget"))->trigger();
        QCOMPARE(nugget->getValue(), 0.0);
        QCOMPARE(nugget->text(), QStringLiteral("0.00 m\u00B2"));
        QVERIFY(form->log()->toPlainText().contains(QStringLiteral("variance.normal: valueChanged(0)")));
    }

    // The toolbar's inspector edits the form itself (applying and restoring are the
    // dialog's own tests).
    void styleSheetInspectorEditsTheForm()
    {
        DemoParametersWindow* form = _demo.main->showParameters();
        toolbarAction(form, QStringLiteral("Style sheet..."))->trigger();
        QTRY_VERIFY(styleSheetDialog());
        QCOMPARE(styleSheetDialog()->target()->objectName(), QStringLiteral("parametersForm"));
        styleSheetDialog()->close();
    }
};

QTEST_MAIN(TestDemoParameters)
#include "tst_demoparameters.moc"
