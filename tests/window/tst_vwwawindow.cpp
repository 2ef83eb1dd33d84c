#include "DataRow.h"
#include "TestWindows.h"

#include <KbcAProgress.h>
#include <VuaResourceProvider.h>
#include <VupPreferenceRegistry.h>

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>
#include <QtTest>

// A window that counts the preference hooks and may refuse to close.
class HookWindow : public TestWindow
{
    Q_OBJECT
public:
    using TestWindow::TestWindow;
    int styleChanges = 0;
    int unitChanges = 0;
    bool mayClose = true;
    void stylePreferenceChanged() override { ++styleChanges; }
    void unitPreferencesChanged() override { ++unitChanges; }
    bool askForClose() override { return mayClose; }
};

class Progress : public KbcAProgress
{
public:
    double fraction = 0.25;
    QString getTitle() const override { return QStringLiteral("Kriging"); }
    double getFraction() const override { return fraction; }
};

// The column types of the tables below.
using StatusIndicatorsRow = Row<int, bool>;

class TestAWindow : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void initTestCase()
    {
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("prefs.ini")));
    }
    void cleanup() { resetWindowFramework(); }

    void titleAndSize()
    {
        TestWindow window(QStringLiteral("Map"), VwwEWindowType::REPORTER, VwwAWindow::DOCKED, QSize(-5, 300));
        QCOMPARE(window.sizeHint(), QSize(800, 600)); // an invalid size gives the default
        QCOMPARE(TestWindow(QStringLiteral("W"), VwwEWindowType::TASK, {}, QSize(320, 200)).sizeHint(), QSize(320, 200));
        QCOMPARE(window.objectName(), QStringLiteral("WINDOW_REPORTER_%1").arg(window.getWindowID()));
        QSignalSpy spy(&window, &VwwAWindow::windowTitleUpdated);
        window.setContentName(QStringLiteral("Porosity"));
        window.setContentName(QStringLiteral("Porosity")); // no change, no signal
        window.setContentModified(true);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(window.windowTitle(), QStringLiteral("Map - Porosity*"));
        QCOMPARE(window.getTitle(), QStringLiteral("Map"));
        window.setContentModified(false);
        window.setContentName(QString());
        QCOMPARE(window.windowTitle(), QStringLiteral("Map"));
        QCOMPARE(spy.count(), 4);
    }

    void statusIndicators_data()
    {
        StatusIndicatorsRow::addColumns(); // id, accepted
        QTest::newRow("last") << 3 << true;
        QTest::newRow("one past the last") << 4 << false;
        QTest::newRow("negative") << -1 << false;
    }

    void statusIndicators()
    {
        const auto [id, accepted] = StatusIndicatorsRow::fetch();
        TestWindow window(QStringLiteral("W"));
        window.show();
        if (!accepted)
            QTest::ignoreMessage(QtWarningMsg,
                                 qPrintable(QStringLiteral("VwwAWindow::showStatusIndicator: bad indicator ID: %1").arg(id)));
        window.showStatusIndicator(QStringLiteral("x = 12.5"), id);
        QStringList shown;
        for (QLabel* label : window.findChildren<QLabel*>(QRegularExpression(QStringLiteral("^STATUS_INDICATOR_"))))
            if (label->isVisible())
                shown << label->objectName() + QLatin1Char('=') + label->text();
        QCOMPARE(shown, accepted ? QStringList({QStringLiteral("STATUS_INDICATOR_%1=x = 12.5").arg(id + 1)}) : QStringList());
        window.showStatusIndicator(QString(), accepted ? id : 0); // an empty text hides it again
        for (QLabel* label : window.findChildren<QLabel*>(QRegularExpression(QStringLiteral("^STATUS_INDICATOR_"))))
            QVERIFY(!label->isVisible());
        // The message keeps its format: markup shown as typed.
        window.showStatusMessage(QStringLiteral("<b>42</b> samples"), Qt::PlainText);
        auto* message = window.findChild<QLabel*>(QStringLiteral("STATUS_MESSAGE"));
        QCOMPARE(message->text(), QStringLiteral("<b>42</b> samples"));
        QCOMPARE(message->textFormat(), Qt::PlainText);
    }

    void toolbarsKeepTheirOrder()
    {
        TestWindow window(QStringLiteral("W"));
        auto* second = new QAction(QStringLiteral("Zoom"), &window);
        auto* first = new QAction(QStringLiteral("Open"), &window);
        window.addToolbarAction(VwwAWindow::VIEW_TOOLBAR, second);
        window.addToolbarAction(VwwAWindow::MAIN_TOOLBAR, first);
        window.addToolbarSeparator(VwwAWindow::MAIN_TOOLBAR);
        auto* menu = new QMenu(&window);
        QToolButton* button = window.addToolbarActionMenu(VwwAWindow::MAIN_TOOLBAR, new QAction(QStringLiteral("Export"), &window), menu);
        QCOMPARE(button->menu(), menu);
        QCOMPARE(window.getToolbarActions(VwwAWindow::MAIN_TOOLBAR).size(), 3);
        window.show();
        // The main toolbar stands left of the view toolbar whatever the order of creation.
        const QWidget* mainBar = window.getWidgetFromAction(VwwAWindow::MAIN_TOOLBAR, first)->parentWidget();
        const QWidget* viewBar = window.getWidgetFromAction(VwwAWindow::VIEW_TOOLBAR, second)->parentWidget();
        QVERIFY(mainBar->x() < viewBar->x());
        window.hideToolbar(VwwAWindow::VIEW_TOOLBAR);
        QVERIFY(!viewBar->isVisible());
        std::unique_ptr<QToolBar> taken(window.takeToolbar(VwwAWindow::VIEW_TOOLBAR));
        QVERIFY(taken && window.getToolbarActions(VwwAWindow::VIEW_TOOLBAR).isEmpty());
    }

    void applyHelpAndProgress()
    {
        QStringList topics;
        VuaResourceProvider::setHelpHandler([&topics](const Vua::Resource::HelpId& id) { topics << id.getTopic(); });
        TestWindow window(QStringLiteral("W"));
        auto* field = new QLineEdit;
        window.setMainView(field);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));

        QVERIFY(!window.getApplyButton()->isVisible());
        window.enableApply(true);
        window.enableAutoApply(true);
        QSignalSpy apply(&window, &VwwAWindow::applyRequested);
        QSignalSpy autoApply(&window, &VwwAWindow::autoApplyToggled);
        QTest::mouseClick(window.getApplyButton(), Qt::LeftButton);
        QTest::mouseClick(window.getAutoApplyButton(), Qt::LeftButton);
        QCOMPARE(apply.count(), 1);
        QCOMPARE(autoApply.count(), 1);
        QVERIFY(!window.getApplyButton()->isEnabled()); // every change is applied already

        // F1 opens the window's help topic, once it has one.
        field->setFocus();
        QTest::keyClick(field, Qt::Key_F1);
        window.setHelpId(Vua::Resource::HelpId(QStringLiteral("variography")));
        QTest::keyClick(field, Qt::Key_F1);
        VuaResourceProvider::setHelpHandler(nullptr);
        QCOMPARE(topics, QStringList({"variography"}));

        // A calculation's progress, then a busy bar for an unknown amount of work.
        auto* bar = window.findChild<QProgressBar*>(QStringLiteral("STATUS_PROGRESS"));
        Progress progress;
        window.calculatorHasStarted(&progress);
        QVERIFY(bar->isVisible());
        QCOMPARE(bar->value(), 25);
        progress.fraction = -1;
        window.calculatorHasStarted(&progress);
        QCOMPARE(bar->maximum(), 0);
        window.calculatorHasFinished();
        QVERIFY(!bar->isVisible());
    }

    void closeCanBeRefusedAndPreferencesReachTheHooks()
    {
        QPointer<HookWindow> window = new HookWindow(QStringLiteral("W"));
        QSignalSpy spy(window.data(), &VwwAWindow::closeWindow);
        window->show();
        window->mayClose = false;
        QVERIFY(!window->close() && window);
        QCOMPARE(spy.count(), 0);
        window->mayClose = true;
        QVERIFY(window->close());
        QCOMPARE(spy.count(), 1);
        QTRY_VERIFY(window.isNull());

        // The style and unit hooks hear their own preferences, once a change.
        HookWindow hooked(QStringLiteral("W"));
        auto* prefs = VupPreferenceRegistry::getInstance();
        prefs->setValue(QStringLiteral("style"), QStringLiteral("font-size"), 12);
        prefs->setValue(QStringLiteral("style"), QStringLiteral("font-size"), 12); // unchanged: silent
        prefs->setValue(QStringLiteral("units"), QStringLiteral("length"), QStringLiteral("ft"));
        prefs->setValue(QStringLiteral("3dviews"), QStringLiteral("background"), QStringLiteral("black"));
        QCOMPARE(hooked.styleChanges, 1);
        QCOMPARE(hooked.unitChanges, 1);
    }
};

QTEST_MAIN(TestAWindow)
#include "tst_vwwawindow.moc"
