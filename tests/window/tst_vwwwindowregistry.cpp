#include "DataRow.h"
#include "FakeMainWindow.h"
#include "MessageCatcher.h"
#include "TestWindows.h"
#include "WindowFileHelpers.h"

#include <KbeMemoryError.h>
#include <VsoSceneFilter.h>
#include <VuaApplication.h>
#include <VuoUpdateModifyLock.h>
#include <VwdGpsDialog.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>
#include <VwwWindowModel.h>

#include <QLabel>
#include <QSignalSpy>
#include <QtTest>
#include <typeinfo>

// The column types of the tables below.
using ExceptionTextsRow = Row<int, QString>;
using OpeningMakesTheWindowsRow = Row<bool, bool, bool, QStringList>;
using RowsFollowAddAndRemoveRow = Row<QStringList, QStringList, int, int>;

class TestWindowRegistry : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

    // A new project with a map (1), a 3D (2) and a section scene (3); it is the open project.
    VssProject* openNewProject()
    {
        if (!VssProjectCollection::getInstance()->openProject(WindowFiles::makeProject(_dir)))
            qFatal("the project does not open");
        return VssProjectCollection::getInstance()->getCurrentProject();
    }

    static QStringList titles(const VwwWindowModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list << model.index(row).data(Qt::DisplayRole).toString();
        return list;
    }

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void addAndRemove()
    {
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        TestWindow a(QStringLiteral("A"));
        auto* b = new TestWindow(QStringLiteral("B"), VwwEWindowType::TASK, VwwAWindow::WindowFlags());
        VwwWindowRegistry::add(&a, false); // twice: the first stays, nobody is told again
        QCOMPARE(main.calls, QStringList({"add:A:docked", "add:B:floating"}));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 2);
        QCOMPARE(registeredIds(), QList<int>({a.getWindowID(), b->getWindowID()}));

        const int id = b->getWindowID();
        QCOMPARE(VwwWindowRegistry::remove(id + 1000), nullptr);
        QCOMPARE(VwwWindowRegistry::remove(id), b);
        QCOMPARE(main.calls.last(), QStringLiteral("remove:B"));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 1);
        QCOMPARE(VwwWindowRegistry::remove(id), nullptr);
        main.calls.clear();
        delete b; // unregistered already: nothing more is asked of the main window
        QVERIFY(main.calls.isEmpty());

        // Ids are never used again.
        TestWindow c(QStringLiteral("C"));
        QCOMPARE(c.getWindowID(), id + 1);
    }

    // The iterator visits one kind over a snapshot; a window is found from any of its
    // widgets; a closed window is gone.
    void findingWindows()
    {
        TestWindow a(QStringLiteral("A"), VwwEWindowType::TASK);
        TestWindow b(QStringLiteral("B"), VwwEWindowType::SPREADSHEET);
        TestWindow c(QStringLiteral("C"), VwwEWindowType::TASK);
        VwwWindowRegistryIterator it(VwwWindowRegistry::getInstance(), VwwEWindowType::TASK);
        QPointer<TestWindow> late = new TestWindow(QStringLiteral("late"), VwwEWindowType::TASK); // not in it
        QVERIFY(it.hasNext());
        QCOMPARE(it.next(), &a);
        VwwWindowRegistryIterator copy(it);
        QCOMPARE(it.next(), &c);
        QVERIFY(!it.hasNext());
        QCOMPARE(it.next(), nullptr);
        QCOMPARE(copy.next(), &c);
        copy = VwwWindowRegistryIterator(VwwWindowRegistry::getInstance(), VwwEWindowType::BATCH_EDITOR);
        QVERIFY(!copy.hasNext());

        auto* label = new QLabel;
        b.setMainView(label);
        QLabel stray;
        QCOMPARE(VwwWindowRegistry::widgetToWindow(label), &b);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(&a), &a);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(&stray), nullptr);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(nullptr), nullptr);

        late->show();
        QVERIFY(late->close());
        QTRY_VERIFY(late.isNull());
        QCOMPARE(registeredIds(), QList<int>({a.getWindowID(), b.getWindowID(), c.getWindowID()}));
    }

    void singletonWindowsAndTheFactory()
    {
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), nullptr);
        VwwMessagesWindow* messages = VwwWindowRegistry::getMessagesWindow(true);
        QVERIFY(messages);
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), messages);
        QCOMPARE(VwwWindowRegistry::getReporterWindow(), VwwWindowRegistry::getReporterWindow());
        QVERIFY(VwwWindowRegistry::getDebugWindow() == VwwWindowRegistry::getDebugWindow());
        delete messages;
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), nullptr);

        auto* first = new TestFactory;
        VwwWindowRegistry::setWindowFactory(first);
        VwwWindowRegistry::setWindowFactory(first); // the same again: kept, not deleted
        QCOMPARE(VwwWindowRegistry::createWindow(QStringLiteral("nothing")), nullptr);
        QCOMPARE(first->calls, QStringList({"createWindow:nothing"}));
        VwwWindowRegistry::setWindowFactory(nullptr);
        QCOMPARE(VwwWindowRegistry::createWindow(QStringLiteral("TestWindow")), nullptr);
    }

    void exceptionTexts_data()
    {
        ExceptionTextsRow::addColumns(); // kind, text
        QTest::newRow("KbeError") << 0 << "the disk is full";
        QTest::newRow("KbeMemoryError") << 1 << "no memory for the grid";
        QTest::newRow("bad_alloc") << 2 << "std::bad_alloc: std::bad_alloc";
        QTest::newRow("bad_cast") << 3 << "std::bad_cast: std::bad_cast";
        QTest::newRow("bad_typeid") << 4 << "std::bad_typeid: std::bad_typeid";
        QTest::newRow("bad_exception") << 5 << "std::bad_exception: std::bad_exception";
        QTest::newRow("other std exception") << 6 << "std::exception: out of range";
        QTest::newRow("not an exception class") << 7 << "Unknown exception.";
    }

    void exceptionTexts()
    {
        const auto [kind, message] = ExceptionTextsRow::fetch();
        const QString text = QStringLiteral("Error occurred in window 'B': ") + message;
        openNewProject();
        TestWindow a(QStringLiteral("A")), b(QStringLiteral("B")), c(QStringLiteral("C"));
        b.onCall = [kind](const char* what) {
            if (qstrcmp(what, "saveInProject") != 0 && qstrcmp(what, "projectAboutToClose") != 0)
                return;
            switch (kind) {
            case 0: throw KbeError(QStringLiteral("the disk is full"));
            case 1: throw KbeMemoryError(QStringLiteral("no memory for the grid"));
            case 2: throw std::bad_alloc();
            case 3: throw std::bad_cast();
            case 4: throw std::bad_typeid();
            case 5: throw std::bad_exception();
            case 6: throw std::out_of_range("out of range");
            default: throw 42;
            }
        };
        MessageCatcher catcher;
        callLog().clear();
        // Printed, and given to the caller of the save as well.
        QString told;
        try {
            VwwWindowRegistry::getInstance()->saveInProject();
        } catch (const KbeError& e) {
            told = e.getMessage();
        }
        QCOMPARE(told, text);
        QCOMPARE(catcher.errors, QStringList({text}));
        // The windows are not removable: they stay through projectAboutToClose.
        VwwWindowRegistry::getInstance()->projectAboutToClose();
        QCOMPARE(catcher.errors, QStringList({text, text}));
        QCOMPARE(callLog(), QStringList({"A:saveInProject", "B:saveInProject", "C:saveInProject", "A:projectAboutToClose",
                                         "B:projectAboutToClose", "C:projectAboutToClose"}));
        b.onCall = nullptr;
    }

    void windowsDeletedDuringAWalk_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::newRow("saveInProject") << "saveInProject";
        QTest::newRow("isReadyToClose") << "isReadyToClose";
        QTest::newRow("projectAboutToClose") << "projectAboutToClose";
        QTest::newRow("projectOpened") << "projectOpened";
    }

    void windowsDeletedDuringAWalk()
    {
        QFETCH(QString, operation);
        openNewProject();
        auto* a = new TestWindow(QStringLiteral("A"), VwwEWindowType::TASK);
        QPointer<TestWindow> b = new TestWindow(QStringLiteral("B"), VwwEWindowType::TASK);
        QPointer<TestWindow> c = new TestWindow(QStringLiteral("C"), VwwEWindowType::TASK);
        // A deletes B (not yet visited) and C deletes itself.
        a->onCall = [&b, operation](const char* what) {
            if (operation == QLatin1String(what))
                delete b.data();
        };
        c->onCall = [&c, operation](const char* what) {
            if (operation == QLatin1String(what))
                delete c.data();
        };
        auto* collection = VssProjectCollection::getInstance();
        if (operation == QLatin1String("projectOpened")) {
            const QString folder = collection->getCurrentProject()->getFolder();
            QVERIFY(collection->closeProject());
            callLog().clear();
            QVERIFY(collection->openProject(folder));
        } else {
            callLog().clear();
            auto* registry = VwwWindowRegistry::getInstance();
            operation == QLatin1String("saveInProject")         ? registry->saveInProject()
            : operation == QLatin1String("projectAboutToClose") ? registry->projectAboutToClose()
                                                                : (void)registry->isReadyToClose();
        }
        QVERIFY(b.isNull() && c.isNull());
        QCOMPARE(registeredIds(), QList<int>({a->getWindowID()}));
        QVERIFY(!callLog().contains(QStringLiteral("B:") + operation));
        QVERIFY(callLog().contains(QStringLiteral("C:") + operation));
        delete a;
    }

    void readyToCloseStopsAtTheFirstRefusal()
    {
        openNewProject();
        TestWindow a(QStringLiteral("A")), b(QStringLiteral("B")), c(QStringLiteral("C"));
        b.readyToClose = false;
        callLog().clear();
        QVERIFY(!VssProjectCollection::getInstance()->closeProject());
        QCOMPARE(callLog(), QStringList({"A:isReadyToClose", "B:isReadyToClose"}));
        QVERIFY(VssProjectCollection::getInstance()->getCurrentProject());
        b.readyToClose = true;
    }

    void openingMakesTheWindows_data()
    {
        // saved: windows were saved before
        // userCanChange: saved windows are recreated
        OpeningMakesTheWindowsRow::addColumns(); // saved, userCanChange, spawn3D, calls
        QTest::newRow("nothing saved") << false << true << true
                                       << QStringList({"createReporterWindow", "create3DDisplay:0", "create2DDisplay:0"});
        QTest::newRow("nothing saved, no 3D display asked for")
            << false << true << false << QStringList({"createReporterWindow", "create2DDisplay:0"});
        QTest::newRow("saved windows come back")
            << true << true << true
            << QStringList({"createWindow:Test2D", "createWindow:TestWindow", "createWindow:TestWindow",
                            "createWindow:TestReporter", "create3DDisplay:0"});
        QTest::newRow("the user cannot change windows")
            << true << false << true << QStringList({"createReporterWindow", "create3DDisplay:0", "create2DDisplay:0"});
    }

    void openingMakesTheWindows()
    {
        const auto [saved, userCanChange, spawn3D, calls] = OpeningMakesTheWindowsRow::fetch();
        const QString folder = WindowFiles::makeProject(_dir);
        FakeMainWindow main;
        main.workspaceText = QStringLiteral("three windows");
        if (saved) {
            VwwWindowRegistry::setMainWindow(&main);
            VssProject* project = VssProjectCollection::getInstance()->openProject(folder)
                                      ? VssProjectCollection::getInstance()->getCurrentProject()
                                      : nullptr;
            QVERIFY(project);
            auto* map = new TestSceneWindow(VugESceneType::MAP);
            map->setScene(project->getModelScene().getIdentifier(1));
            new TestWindow(QStringLiteral("kept"), VwwEWindowType::DISPLAY);
            auto* failing = new TestWindow(QStringLiteral("failing"), VwwEWindowType::DISPLAY);
            failing->fields.insert(QStringLiteral("fail"), QString()); // its unserialize() fails
            auto* reporter = new TestWindow(QStringLiteral("reporter"), VwwEWindowType::REPORTER);
            reporter->classId = QStringLiteral("TestReporter");
            reporter->fields.insert(QStringLiteral("k"), QStringLiteral("r"));
            // Not saved: a display without a scene, other kinds, and one whose serialize() throws.
            new TestSceneWindow(VugESceneType::MAP);
            new TestWindow(QStringLiteral("sheet"), VwwEWindowType::SPREADSHEET);
            new TestWindow(QStringLiteral("messages"), VwwEWindowType::MESSAGES);
            auto* throwing = new TestWindow(QStringLiteral("throwing"), VwwEWindowType::DISPLAY);
            throwing->onCall = [](const char* what) {
                if (qstrcmp(what, "serialize") == 0)
                    throw std::runtime_error("no state");
            };
            MessageCatcher catcher;
            QVERIFY(VssProjectCollection::getInstance()->closeProject());
            QCOMPARE(catcher.warnings, QStringList({"Saving window 'throwing' failed: std::exception: no state"}));
            VwwWindowRegistry::clear();
        }
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        VwwWindowRegistry::setMainWindow(&main);
        VwwWindowRegistry::enableUserToChangeWindows(userCanChange);
        VuaApplication::setSpawnDefault3DV(spawn3D);
        callLog().clear();
        const bool opened = VssProjectCollection::getInstance()->openProject(folder);
        VuaApplication::setSpawnDefault3DV(true);
        QVERIFY(opened);
        QCOMPARE(factory->calls, calls);
        QCOMPARE(main.calls.last(), QStringLiteral("restore")); // after the windows are made
        QCOMPARE(main.restoredText, saved ? QStringLiteral("three windows") : QStringLiteral("<null>"));
        QVERIFY(callLog().contains(QStringLiteral("reporter:projectOpened"))); // made after the opening, still told
        if (saved && userCanChange) {
            // The window whose unserialize failed is deleted; the others are live.
            QCOMPARE(registeredIds().size(), 4);
            auto* map = qobject_cast<VwwASceneWindow*>(VwwWindowRegistry::getWindow(registeredIds().first()));
            QCOMPARE(map->getScene().getName(), QStringLiteral("Map"));
            auto* reporter = qobject_cast<TestWindow*>(VwwWindowRegistry::getWindow(registeredIds().at(2))); // after the kept display
            QCOMPARE(reporter->fields.value(QStringLiteral("k")), QStringLiteral("r"));
        }
    }

    void scenesOpenAndCloseTheirDisplays()
    {
        VsmModelScene& scenes = openNewProject()->getModelScene();
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        VwdGpsDialog gps;
        VwwWindowRegistry::setGpsDialog(&gps);

        scenes.requestOpen(1);
        scenes.requestOpen(2);
        scenes.requestOpen(3);
        QCOMPARE(factory->calls, QStringList({"create2DDisplay:1", "create3DDisplay:2", "createSceneType4Display:3"}));
        const QList<int> ids = registeredIds();
        main.calls.clear();
        scenes.requestOpen(2); // already shown: activated, no second display
        QCOMPARE(registeredIds(), ids);
        QCOMPARE(main.calls, QStringList({"activate:Scene window"}));

        // New displays, and windows made by class id, are connected to the GPS dialog.
        auto* map = qobject_cast<TestSceneWindow*>(VwwWindowRegistry::getWindow(ids.first()));
        QCOMPARE(map->gpsConnections, 1);
        Q_EMIT gps.gpsEnabled(true);
        QCOMPARE(map->gpsEnabledCalls, 1);
        std::unique_ptr<VwwAWindow> restored(VwwWindowRegistry::createWindow(QStringLiteral("Test3D")));
        QCOMPARE(qobject_cast<TestSceneWindow*>(restored.get())->gpsConnections, 1);
        restored.reset();

        // The first visible display whose scene is of a type the filter takes.
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter()), VsoSceneIdentifier()); // none visible
        VwwWindowRegistry::getWindow(ids.at(1))->show();
        VwwWindowRegistry::getWindow(ids.at(2))->show();
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter()).getId(), 2);
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter({4})).getId(), 3);
        QVERIFY(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter({2})).isNull()); // the map is hidden

        // A removable display goes with its scene; a fixed one is emptied.
        QPointer<VwwAWindow> display3D = VwwWindowRegistry::getWindow(ids.at(1));
        scenes.requestClose(2);
        QVERIFY(display3D.isNull());
        auto* fixed = new TestSceneWindow(VugESceneType::MAP, false);
        fixed->setScene(scenes.getIdentifier(1));
        scenes.requestClose(1); // only the first display of the scene is treated
        QVERIFY(!registeredIds().contains(ids.first()));
        QCOMPARE(fixed->getScene().getId(), 1);
        scenes.requestClose(1);
        QVERIFY(fixed->getScene().isNull());
        QVERIFY(registeredIds().contains(fixed->getWindowID()));

        // A scene of another model, or one that is gone, opens nothing.
        VsmModelScene other;
        other.createScene(QStringLiteral("elsewhere"), 2);
        factory->calls.clear();
        VwwWindowRegistry::openDisplay(other.getIdentifier(1));
        VwwWindowRegistry::openDisplay(scenes.getIdentifier(99));
        VwwWindowRegistry::openDisplay(VsoSceneIdentifier());
        QVERIFY(factory->calls.isEmpty());

        // Updates are locked in every window while the lock is held.
        {
            VuoUpdateModifyLocker lock;
            VuoUpdateModifyLocker nested;
            QVERIFY(!fixed->updatesEnabled());
        }
        QVERIFY(fixed->updatesEnabled());
    }

    void clearEmptiesTheRegistry()
    {
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        QPointer<TestWindow> a = new TestWindow(QStringLiteral("A"));
        QPointer<VwwWindowModel> model = VwwWindowRegistry::getWindowModel();
        VwwWindowRegistry::clear();
        QVERIFY(a.isNull() && model.isNull());
        QCOMPARE(VwwWindowRegistry::getMainWindow(), nullptr);
        // No model until the registry is made anew; windows still register.
        TestWindow b(QStringLiteral("B"));
        QCOMPARE(VwwWindowRegistry::getWindowModel(), nullptr);
        QCOMPARE(registeredIds(), QList<int>({b.getWindowID()}));
        VwwWindowRegistry::remove(b.getWindowID());
        VwwWindowRegistry::reset();
        TestWindow c(QStringLiteral("C"));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 1);
    }

    // The window model on its own: rows and signals (the Window menu shows its titles).
    void rowsFollowAddAndRemove_data()
    {
        // operations: "+a" adds a, "-a" removes it, "xa" deletes it
        RowsFollowAddAndRemoveRow::addColumns(); // operations, rows, inserted, removed
        QTest::newRow("in the order added") << QStringList{"+a", "+b", "+c"} << QStringList{"a", "b", "c"} << 3 << 0;
        QTest::newRow("first and last removed") << QStringList{"+a", "+b", "+c", "-a", "-c"} << QStringList{"b"} << 3
                                                << 2;
        QTest::newRow("adding twice keeps one row") << QStringList{"+a", "+b", "+a"} << QStringList{"a", "b"} << 2 << 0;
        QTest::newRow("unknown window removed") << QStringList{"+a", "-b", "-a", "-a"} << QStringList{} << 1 << 1;
        QTest::newRow("added again goes last") << QStringList{"+a", "+b", "-a", "+a"} << QStringList{"b", "a"} << 3
                                               << 1;
        QTest::newRow("a deleted window leaves") << QStringList{"+a", "+b", "+c", "xb"} << QStringList{"a", "c"} << 3
                                                 << 1;
    }

    void rowsFollowAddAndRemove()
    {
        const auto [operations, rows, inserted, removed] = RowsFollowAddAndRemoveRow::fetch();
        QMap<QString, QPointer<TestWindow>> windows;
        for (const char* name : {"a", "b", "c"})
            windows[QLatin1String(name)] = new TestWindow(QLatin1String(name)); // the registry deletes them

        VwwWindowModel model;
        QSignalSpy insertSpy(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removeSpy(&model, &QAbstractItemModel::rowsRemoved);
        for (const QString& op : qAsConst(operations)) {
            TestWindow* window = windows.value(op.mid(1));
            op[0] == QLatin1Char('+') ? model.addWindow(window)
                                      : op[0] == QLatin1Char('-') ? model.removeWindow(window) : delete window;
        }
        QCOMPARE(titles(model), rows);
        QCOMPARE(insertSpy.count(), inserted);
        QCOMPARE(removeSpy.count(), removed);
        for (int row = 0; row < model.rowCount(); ++row)
            QCOMPARE(model.rowOf(model.windowAt(row)), row);
        QCOMPARE(model.windowAt(model.rowCount()), nullptr);
    }
};

QTEST_MAIN(TestWindowRegistry)
#include "tst_vwwwindowregistry.moc"
