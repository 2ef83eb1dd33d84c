#include "DataRow.h"
#include "TestWindows.h"

#include <VwmMainWindow.h>
#include <VwwMessagesWindow.h>

#include <QAbstractButton>
#include <QDockWidget>
#include <QDomDocument>
#include <QMenu>
#include <QTabBar>
#include <QtTest>
#include <memory>

namespace {

// A window with its own class id (the workspace keys docks by it) that may refuse to close.
class ShellWindow : public TestWindow
{
    Q_OBJECT
public:
    ShellWindow(const QString& title, const QString& id = QStringLiteral("Shell"), WindowFlags flags = DOCKED)
        : TestWindow(title, VwwEWindowType::SPREADSHEET, flags, QSize(320, 240))
    {
        classId = id;
    }
    bool allowClose = true;
    bool askForClose() override { return allowClose; }
};

QDockWidget* dockOf(const QWidget* window)
{
    return window ? qobject_cast<QDockWidget*>(window->parentWidget()) : nullptr;
}

// The window entries of the Window menu, and their titles as the user reads them.
QList<QAction*> menuEntries(const VwmMainWindow& main)
{
    QList<QAction*> entries;
    for (QAction* action : main.windowMenu()->actions())
        if (action->data().isValid())
            entries << action;
    return entries;
}

QStringList menuTitles(const VwmMainWindow& main, QString* checked = nullptr)
{
    QStringList titles;
    for (QAction* action : menuEntries(main)) {
        titles << action->text().replace(QStringLiteral("&&"), QStringLiteral("&"));
        if (checked && action->isChecked())
            *checked = titles.last();
    }
    return titles;
}

QAction* menuEntry(const VwmMainWindow& main, const QString& title)
{
    return menuEntries(main).value(menuTitles(main).indexOf(title));
}

// What the user sees of the layout: each dock's place, the tab groups and the window size.
QStringList layoutOf(const VwmMainWindow& main)
{
    QStringList lines;
    lines << QStringLiteral("main %1x%2").arg(main.width()).arg(main.height());
    for (QDockWidget* dock : main.findChildren<QDockWidget*>()) {
        QString line = QStringLiteral("%1: area %2 hidden %3").arg(dock->windowTitle()).arg(int(main.dockWidgetArea(dock))).arg(dock->isHidden());
        if (dock->isFloating()) {
            const QRect g = dock->geometry();
            line += QStringLiteral(" floating %1,%2 %3x%4").arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height());
        }
        lines << line;
    }
    for (QTabBar* bar : main.findChildren<QTabBar*>()) {
        if (!bar->isVisible())
            continue;
        QStringList tabs;
        for (int i = 0; i < bar->count(); ++i)
            tabs << bar->tabText(i);
        lines << QStringLiteral("tabs %1 current %2").arg(tabs.join(QLatin1Char(','))).arg(bar->tabText(bar->currentIndex()));
    }
    lines.sort();
    return lines;
}

} // namespace

// The column types of the tables below.
using ClosingTheDockClosesTheWindowRow = Row<bool, bool, bool>;
using DockedWindowsShareTabsAndOthersFloatRow = Row<QString, QString>;

class TestVwmMainWindow : public QObject
{
    Q_OBJECT

    std::unique_ptr<VwmMainWindow> makeMainWindow()
    {
        auto main = std::make_unique<VwmMainWindow>();
        VwwWindowRegistry::setMainWindow(main.get());
        main->resize(700, 500);
        main->show();
        return main;
    }

    static QDomElement savedWorkspace(const VwmMainWindow& main)
    {
        QDomDocument document;
        QDomElement workspace = document.createElement(QStringLiteral("workspace"));
        document.appendChild(workspace);
        main.saveWorkspaceToXml(workspace);
        return workspace;
    }

    static QWidget* focused()
    {
        return QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
    }

    void activate(QWidget* window)
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window));
    }

private Q_SLOTS:
    void init() { VwwWindowRegistry::reset(); }
    void cleanup() { VwwWindowRegistry::reset(); }

    void dockedWindowsShareTabsAndOthersFloat_data()
    {
        // kinds: one letter per window: D docked, F floating
        // tabs: the expected tab bar, "" for none
        DockedWindowsShareTabsAndOthersFloatRow::addColumns(); // kinds, tabs
        QTest::newRow("one docked window has no tabs") << "D" << "";
        QTest::newRow("docked windows join the first, the newest on top") << "DDD" << "w0,w1,w2 current w2";
        QTest::newRow("floating windows stay out of the tabs") << "DFDF" << "w0,w2 current w2";
        QTest::newRow("floating only") << "FF" << "";
    }
    void dockedWindowsShareTabsAndOthersFloat()
    {
        const auto [kinds, tabs] = DockedWindowsShareTabsAndOthersFloatRow::fetch();
        auto main = makeMainWindow();
        QList<QPointer<ShellWindow>> windows;
        for (int i = 0; i < kinds.size(); ++i)
            windows << new ShellWindow(QStringLiteral("w%1").arg(i), QStringLiteral("Shell"),
                                       kinds[i] == QLatin1Char('D') ? VwwAWindow::DOCKED : VwwAWindow::WindowFlags());
        for (int i = 0; i < kinds.size(); ++i) {
            QDockWidget* dock = dockOf(windows[i]);
            QVERIFY(dock);
            QCOMPARE(dock->windowTitle(), windows[i]->getTitle(true));
            const bool docked = kinds[i] == QLatin1Char('D');
            QCOMPARE(dock->isFloating(), !docked);
            if (docked) {
                QCOMPARE(main->dockWidgetArea(dock), Qt::RightDockWidgetArea);
            } else {
                QTRY_COMPARE(windows[i]->size(), windows[i]->sizeHint());
                QVERIFY(dock->isVisible() && main->geometry().intersects(dock->geometry()));
            }
        }
        QCOMPARE(layoutOf(*main).filter(QStringLiteral("tabs ")).join(QString()),
                 tabs.isEmpty() ? QString() : QStringLiteral("tabs ") + tabs);
        // The placeholder shows only while nothing is docked.
        auto* placeholder = main->findChild<QWidget*>(QStringLiteral("WORKSPACE_PLACEHOLDER"));
        QCOMPARE(placeholder->isVisible(), !kinds.contains(QLatin1Char('D')));
    }

    void closingTheDockClosesTheWindow_data()
    {
        // byKey: Ctrl+W, otherwise the dock's close button
        ClosingTheDockClosesTheWindowRow::addColumns(); // floating, byKey, allowed
        QTest::newRow("close button of a docked window") << false << false << true;
        QTest::newRow("closing a floating dock") << true << false << true;
        QTest::newRow("Ctrl+W in the main window") << false << true << true;
        QTest::newRow("Ctrl+W in a floating dock") << true << true << true;
        QTest::newRow("the window refuses to close") << false << false << false;
        QTest::newRow("the window refuses Ctrl+W") << true << true << false;
    }
    void closingTheDockClosesTheWindow()
    {
        const auto [floating, byKey, allowed] = ClosingTheDockClosesTheWindowRow::fetch();
        auto main = makeMainWindow();
        new ShellWindow(QStringLiteral("other"));
        QPointer<ShellWindow> window =
            new ShellWindow(QStringLiteral("target"), QStringLiteral("Shell"), floating ? VwwAWindow::WindowFlags() : VwwAWindow::DOCKED);
        window->allowClose = allowed;
        const int id = window->getWindowID();
        QPointer<QDockWidget> dock = dockOf(window);
        main->setActiveWindow(window);
        QCOMPARE(main->activeWindow(), window.data());

        if (byKey) {
            activate(floating ? static_cast<QWidget*>(dock) : main.get());
            QTest::keyClick(focused(), Qt::Key_W, Qt::ControlModifier);
        } else if (!floating) {
            auto* button = dock->findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton"));
            QVERIFY(button && button->isVisible());
            QTest::mouseClick(button, Qt::LeftButton);
        } else {
            dock->close(); // what the window manager's close button does
        }

        if (!allowed) {
            QVERIFY(window && dock && dock->isVisible());
            QCOMPARE(VwwWindowRegistry::getWindow(id), window.data());
            return;
        }
        QTRY_VERIFY(window.isNull() && dock.isNull());
        QCOMPARE(VwwWindowRegistry::getWindow(id), nullptr);
        QCOMPARE(menuTitles(*main), QStringList{QStringLiteral("other")});
        QVERIFY(!main->activeWindow() || main->activeWindow()->getTitle() == QLatin1String("other"));
    }

    void windowDeletedByCodeLeavesCleanly()
    {
        auto main = makeMainWindow();
        auto* first = new ShellWindow(QStringLiteral("first"));
        QPointer<ShellWindow> doomed = new ShellWindow(QStringLiteral("doomed"));
        auto* last = new ShellWindow(QStringLiteral("last"));
        main->setActiveWindow(doomed);
        QSignalSpy active(main.get(), &VwmMainWindow::activeWindowChanged);
        QPointer<QDockWidget> dock = dockOf(doomed);
        const VwwAWindow* address = doomed;

        delete doomed.data();
        QTRY_VERIFY(dock.isNull());
        // The focus may move on to a neighbour; the dead window is never reported active.
        QVERIFY(!active.isEmpty());
        for (const QList<QVariant>& arguments : qAsConst(active))
            QVERIFY(arguments.at(0).value<VwwAWindow*>() != address);
        QVERIFY(main->activeWindow() != address);
        QCOMPARE(menuTitles(*main), (QStringList{QStringLiteral("first"), QStringLiteral("last")}));
        QCOMPARE(main->tabifiedDockWidgets(dockOf(first)), QList<QDockWidget*>{dockOf(last)});

        // Letting go of a window twice, or of one it never held, changes nothing.
        main->removeWindow(first);
        QCOMPARE(first->parentWidget(), nullptr);
        main->removeWindow(first);
        VwwWindowRegistry::setMainWindow(nullptr);
        ShellWindow stranger(QStringLiteral("stranger"));
        main->removeWindow(&stranger);
        QVERIFY(dockOf(last));
        delete first;
    }

    // Hidden removable windows are closed on request, hidden others come back from the
    // menu; all go with the main window.
    void hiddenWindowsAndTheEnd()
    {
        auto main = makeMainWindow();
        QPointer<ShellWindow> hiddenRemovable =
            new ShellWindow(QStringLiteral("hidden removable"), QStringLiteral("Shell"), VwwAWindow::DOCKED | VwwAWindow::REMOVABLE);
        QPointer<ShellWindow> hiddenKept = new ShellWindow(QStringLiteral("hidden kept"));
        QPointer<ShellWindow> floating =
            new ShellWindow(QStringLiteral("floating"), QStringLiteral("Shell"), VwwAWindow::REMOVABLE);
        dockOf(hiddenRemovable)->hide();
        dockOf(hiddenKept)->hide();

        main->clearHiddenWindows();
        QVERIFY(hiddenRemovable.isNull() && hiddenKept && floating);
        QCOMPARE(menuTitles(*main), (QStringList{QStringLiteral("hidden kept"), QStringLiteral("floating")}));
        menuEntry(*main, QStringLiteral("hidden kept"))->trigger();
        QVERIFY(!dockOf(hiddenKept)->isHidden());

        main->setActiveWindow(hiddenKept);
        main.reset();
        QVERIFY(hiddenKept.isNull() && floating.isNull());
        QCOMPARE(VwwWindowRegistry::getMainWindow(), nullptr);
        QVERIFY(VwwWindowRegistry::getInstance()->getWindows().isEmpty());
        ShellWindow later(QStringLiteral("later")); // no main window to call back
        QCOMPARE(later.parentWidget(), nullptr);
    }

    void windowMenuFollowsTheWindows()
    {
        auto main = makeMainWindow();
        auto* a = new ShellWindow(QStringLiteral("A"));
        QPointer<ShellWindow> b = new ShellWindow(QStringLiteral("B"));
        auto* c = new ShellWindow(QStringLiteral("R&D"), QStringLiteral("Shell"), VwwAWindow::WindowFlags());
        QCOMPARE(menuTitles(*main), (QStringList{QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("R&D")}));
        QVERIFY(!menuEntries(*main).first()->icon().isNull());

        a->setContentName(QStringLiteral("wells"));
        QCOMPARE(menuTitles(*main).first(), a->getTitle(true));
        delete b.data();
        QCOMPARE(menuTitles(*main), (QStringList{a->getTitle(true), QStringLiteral("R&D")}));

        main->setActiveWindow(c);
        QSignalSpy active(main.get(), &VwmMainWindow::activeWindowChanged);
        menuEntry(*main, a->getTitle(true))->trigger();
        QCOMPARE(main->activeWindow(), a);
        QCOMPARE(active.count(), 1);
        QCOMPARE(active.last().at(0).value<VwwAWindow*>(), a);
        menuEntry(*main, QStringLiteral("R&D"))->trigger();
        QCOMPARE(main->activeWindow(), c);
        QString checked;
        menuTitles(*main, &checked);
        QCOMPARE(checked, QStringLiteral("R&D"));
        QTRY_VERIFY(dockOf(c)->isActiveWindow());

        // The menu's Messages entry makes the messages window and brings it up, docked.
        main->windowMenu()->findChild<QAction*>(QStringLiteral("ACTION_MESSAGES_WINDOW"))->trigger();
        VwwAWindow* messages = VwwWindowRegistry::getMessagesWindow(false);
        QVERIFY(messages && dockOf(messages));
        QCOMPARE(main->activeWindow(), messages);
        QVERIFY(menuTitles(*main).contains(messages->getTitle(true)));
    }

    void keysCycleThroughTheWindows()
    {
        auto main = makeMainWindow();
        QList<VwwAWindow*> windows{new ShellWindow(QStringLiteral("0")), new ShellWindow(QStringLiteral("1")),
                                   new ShellWindow(QStringLiteral("2"))};
        main->setActiveWindow(windows[0]);
        activate(main.get());
        // Ctrl+F6 the next, Ctrl+Shift+F6 the previous, both wrapping; the tab comes to the front.
        const std::pair<bool, int> steps[] = {{false, 1}, {true, 0}, {true, 2}, {false, 0}}; // {back, then active}
        for (const auto& step : steps) {
            QTest::keyClick(focused(), Qt::Key_F6, Qt::ControlModifier | (step.first ? Qt::ShiftModifier : Qt::NoModifier));
            QCOMPARE(main->activeWindow(), windows[step.second]);
            QTRY_VERIFY(dockOf(windows[step.second])->isVisible());
        }
    }

    void workspaceRoundTrip()
    {
        auto main = makeMainWindow();
        auto makeWindows = [] {
            QList<QPointer<ShellWindow>> list;
            list << new ShellWindow(QStringLiteral("A"), QStringLiteral("Alpha"));
            list << new ShellWindow(QStringLiteral("B"), QStringLiteral("Alpha"));
            list << new ShellWindow(QStringLiteral("C"), QStringLiteral("Beta"), VwwAWindow::WindowFlags());
            list << new ShellWindow(QStringLiteral("D"), QStringLiteral("Alpha"));
            list << new ShellWindow(QStringLiteral("E"), QStringLiteral("Gamma"));
            return list;
        };
        QList<QPointer<ShellWindow>> windows = makeWindows();
        // The user moves D to the bottom, places C and chooses A's tab; E is hidden by code.
        main->resize(650, 450);
        main->addDockWidget(Qt::BottomDockWidgetArea, dockOf(windows[3]));
        dockOf(windows[2])->setGeometry(40, 60, 300, 200);
        main->setActiveWindow(windows[0]);
        dockOf(windows[4])->hide();
        QTRY_VERIFY(layoutOf(*main).contains(QStringLiteral("tabs A,B current A")));
        const QStringList saved = layoutOf(*main);

        const QDomElement workspace = savedWorkspace(*main);
        // The windows come back with new ids: the docks are found by class id and rank.
        for (const QPointer<ShellWindow>& window : qAsConst(windows))
            delete window.data();
        main->resize(500, 400);
        windows = makeWindows();
        QTRY_VERIFY(layoutOf(*main) != saved);

        main->restoreWorkspaceFromXml(workspace);
        QTRY_COMPARE(layoutOf(*main), saved);
    }

    void hostileWorkspaceKeepsTheLayout_data()
    {
        QTest::addColumn<int>("damage"); // see the switch below; all but the first are warned about
        const char* rows[] = {"null element", "no main-window element", "state is not base64", "state cut short",
                              "geometry is garbage", "newer layout version", "no version", "windows that are not open"};
        for (int damage = 0; damage < 8; ++damage)
            QTest::newRow(rows[damage]) << damage;
    }
    void hostileWorkspaceKeepsTheLayout()
    {
        QFETCH(int, damage);
        auto main = makeMainWindow();
        auto* a = new ShellWindow(QStringLiteral("A"));
        auto* b = new ShellWindow(QStringLiteral("B"));
        new ShellWindow(QStringLiteral("C"), QStringLiteral("Shell"), VwwAWindow::WindowFlags());

        // Saved with B at the bottom; the layout then changes so that any restore would show.
        main->addDockWidget(Qt::BottomDockWidgetArea, dockOf(b));
        QDomElement workspace = savedWorkspace(*main);
        main->tabifyDockWidget(dockOf(a), dockOf(b));
        main->resize(600, 420);
        QTRY_VERIFY(dockOf(b)->isVisible());
        const QStringList before = layoutOf(*main);

        QDomElement mainElement = workspace.firstChildElement(QStringLiteral("main-window"));
        QDomElement state = mainElement.firstChildElement(QStringLiteral("state"));
        auto setText = [](QDomElement e, const QString& text) {
            while (e.hasChildNodes())
                e.removeChild(e.firstChild());
            e.appendChild(e.ownerDocument().createTextNode(text));
        };
        switch (damage) {
        case 0: workspace = QDomElement(); break;
        case 1: workspace.removeChild(mainElement); break;
        case 2: setText(state, QStringLiteral("@@ not * base64 @@")); break;
        case 3: setText(state, QString::fromLatin1(QByteArray::fromBase64(state.text().toLatin1()).left(24).toBase64())); break;
        case 4: setText(mainElement.firstChildElement(QStringLiteral("geometry")), QStringLiteral("AAAAAAAA")); break;
        case 5: mainElement.setAttribute(QStringLiteral("version"), 99); break;
        case 6: mainElement.removeAttribute(QStringLiteral("version")); break;
        default:
            for (QDomElement e = workspace.firstChildElement(QStringLiteral("dock")); !e.isNull();
                 e = e.nextSiblingElement(QStringLiteral("dock")))
                e.setAttribute(QStringLiteral("key"), QStringLiteral("Ghost:") + e.attribute(QStringLiteral("key")));
        }
        if (damage > 0)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwmMainWindow::restoreWorkspaceFromXml: .*kept$")));
        main->restoreWorkspaceFromXml(workspace);
        QCoreApplication::processEvents();
        QCOMPARE(layoutOf(*main), before);
    }
};

QTEST_MAIN(TestVwmMainWindow)
#include "tst_vwmmainwindow.moc"
