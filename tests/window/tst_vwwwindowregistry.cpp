#include "FakeMainWindow.h"
#include "MessageCatcher.h"
#include "TestWindows.h"

#include <KbbDebug.h>
#include <KbeMemoryError.h>
#include <VsoSceneFilter.h>
#include <VuaApplication.h>
#include <VuoUpdateModifyLock.h>
#include <VwdGpsDialog.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>
#include <VwwWindowModel.h>

#include <QLabel>
#include <QtTest>
#include <typeinfo>

class TestWindowRegistry : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    int _projects = 0;

    // A new project with a 2D, a 3D and a section scene; it is the open project.
    VssProject* openNewProject()
    {
        const QString folder = _dir.filePath(QStringLiteral("project%1").arg(++_projects));
        QString message;
        if (!VssProjectCollection::getInstance()->createProject(folder, QStringLiteral("Test"), &message))
            qFatal("%s", qPrintable(message));
        VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
        VsmModelScene& scenes = project->getModelScene();
        scenes.createScene(QStringLiteral("Map"), 2);
        scenes.createScene(QStringLiteral("Volume"), 3);
        scenes.createScene(QStringLiteral("Section"), 4);
        return project;
    }

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void addTwiceKeepsTheFirst()
    {
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        TestWindow a(QStringLiteral("A"));
        TestWindow b(QStringLiteral("B"), VwwEWindowType::TASK, VwwAWindow::WindowFlags());
        VwwWindowRegistry::add(&a, false);
        QCOMPARE(main.calls, QStringList({"add:A:docked", "add:B:floating"}));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 2);
        QCOMPARE(registeredIds(), QList<int>({a.getWindowID(), b.getWindowID()}));
        QCOMPARE(VwwWindowRegistry::getWindow(b.getWindowID()), &b);
    }

    void idsAreNeverReused()
    {
        int first = 0;
        {
            TestWindow a(QStringLiteral("A"));
            first = a.getWindowID();
        }
        TestWindow b(QStringLiteral("B"));
        QCOMPARE(b.getWindowID(), first + 1);
        QCOMPARE(b.objectName(), QStringLiteral("WINDOW_SPREADSHEET_%1").arg(first + 1));
        QCOMPARE(VwwWindowRegistry::getWindow(first), nullptr);
    }

    void removeHandsTheWindowBack()
    {
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        auto* a = new TestWindow(QStringLiteral("A"));
        QCOMPARE(VwwWindowRegistry::remove(a->getWindowID() + 1000), nullptr);
        QCOMPARE(main.calls, QStringList({"add:A:docked"}));
        QCOMPARE(VwwWindowRegistry::remove(a->getWindowID()), a);
        QCOMPARE(main.calls.last(), QStringLiteral("remove:A"));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 0);
        QCOMPARE(VwwWindowRegistry::remove(a->getWindowID()), nullptr);
        main.calls.clear();
        delete a; // unregistered already: nothing more is asked of the main window
        QVERIFY(main.calls.isEmpty());
    }

    void closingAWindowUnregistersIt()
    {
        QPointer<TestWindow> a = new TestWindow(QStringLiteral("A"));
        a->show();
        QVERIFY(a->close());
        QTRY_VERIFY(a.isNull());
        QVERIFY(registeredIds().isEmpty());
    }

    void iteratorVisitsOneKindOverASnapshot()
    {
        TestWindow a(QStringLiteral("A"), VwwEWindowType::TASK);
        TestWindow b(QStringLiteral("B"), VwwEWindowType::SPREADSHEET);
        TestWindow c(QStringLiteral("C"), VwwEWindowType::TASK);
        VwwWindowRegistryIterator it(VwwWindowRegistry::getInstance(), VwwEWindowType::TASK);
        TestWindow late(QStringLiteral("late"), VwwEWindowType::TASK); // not in the snapshot
        QVERIFY(it.hasNext());
        QCOMPARE(it.next(), &a);
        VwwWindowRegistryIterator copy(it);
        QCOMPARE(it.next(), &c);
        QVERIFY(!it.hasNext());
        QCOMPARE(it.next(), nullptr);
        QCOMPARE(copy.next(), &c);
        copy = VwwWindowRegistryIterator(VwwWindowRegistry::getInstance(), VwwEWindowType::BATCH_EDITOR);
        QVERIFY(!copy.hasNext());
    }

    void widgetToWindow()
    {
        TestWindow a(QStringLiteral("A"));
        TestWindow b(QStringLiteral("B"));
        auto* label = new QLabel;
        b.setMainView(label);
        QLabel stray;
        QCOMPARE(VwwWindowRegistry::widgetToWindow(label), &b);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(&a), &a);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(&stray), nullptr);
        QCOMPARE(VwwWindowRegistry::widgetToWindow(nullptr), nullptr);
    }

    void singletonWindowsAreMadeOnce()
    {
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), nullptr);
        VwwMessagesWindow* messages = VwwWindowRegistry::getMessagesWindow(true);
        QVERIFY(messages);
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), messages);
        QCOMPARE(VwwWindowRegistry::getReporterWindow(), VwwWindowRegistry::getReporterWindow());
        QVERIFY(VwwWindowRegistry::getDebugWindow() == VwwWindowRegistry::getDebugWindow());
        delete VwwWindowRegistry::getMessagesWindow(false);
        QCOMPARE(VwwWindowRegistry::getMessagesWindow(false), nullptr);
        QVERIFY(VwwWindowRegistry::getMessagesWindow(true) != nullptr);
    }

    void factoryIsReplacedAndDeleted()
    {
        auto* first = new TestFactory;
        VwwWindowRegistry::setWindowFactory(first);
        VwwWindowRegistry::setWindowFactory(first); // the same again: kept, not deleted
        QCOMPARE(VwwWindowRegistry::getWindowFactory(), first);
        QCOMPARE(VwwWindowRegistry::createWindow(QStringLiteral("nothing")), nullptr);
        QCOMPARE(first->calls, QStringList({"createWindow:nothing"}));
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        QVERIFY(VwwWindowRegistry::getWindowFactory() != first);
        VwwWindowRegistry::setWindowFactory(nullptr);
        QCOMPARE(VwwWindowRegistry::createWindow(QStringLiteral("TestWindow")), nullptr);
    }

    void exceptionTexts_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text");
        QTest::newRow("KbeError") << 0 << "Error occurred in window 'B': the disk is full";
        QTest::newRow("KbeMemoryError") << 1 << "Error occurred in window 'B': no memory for the grid";
        QTest::newRow("bad_alloc") << 2 << "Error occurred in window 'B': std::bad_alloc: std::bad_alloc";
        QTest::newRow("bad_cast") << 3 << "Error occurred in window 'B': std::bad_cast: std::bad_cast";
        QTest::newRow("bad_typeid") << 4 << "Error occurred in window 'B': std::bad_typeid: std::bad_typeid";
        QTest::newRow("bad_exception") << 5 << "Error occurred in window 'B': std::bad_exception: std::bad_exception";
        QTest::newRow("other std exception") << 6 << "Error occurred in window 'B': std::exception: out of range";
        QTest::newRow("not an exception class") << 7 << "Error occurred in window 'B': Unknown exception.";
    }

    void exceptionTexts()
    {
        QFETCH(int, kind);
        QFETCH(QString, text);
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
        try {
            VwwWindowRegistry::getInstance()->saveInProject();
            QFAIL("the failure did not reach the caller");
        } catch (const KbeError& e) {
            QCOMPARE(e.getMessage(), text);
        }
        QCOMPARE(catcher.errors, QStringList({text}));
        QCOMPARE(callLog(), QStringList({"A:saveInProject", "B:saveInProject", "C:saveInProject"}));

        // The windows are not removable: they stay through projectAboutToClose.
        catcher.errors.clear();
        callLog().clear();
        VwwWindowRegistry::getInstance()->projectAboutToClose();
        QCOMPARE(catcher.errors, QStringList({text}));
        QCOMPARE(callLog(), QStringList({"A:projectAboutToClose", "B:projectAboutToClose", "C:projectAboutToClose"}));
        b.onCall = nullptr;
    }

    void savingAWindowThatThrows()
    {
        VssProject* project = openNewProject();
        auto* a = new TestWindow(QStringLiteral("A"), VwwEWindowType::DISPLAY);
        auto* b = new TestWindow(QStringLiteral("B"), VwwEWindowType::DISPLAY);
        auto* c = new TestWindow(QStringLiteral("C"), VwwEWindowType::DISPLAY);
        a->fields.insert(QStringLiteral("k"), QStringLiteral("a"));
        c->fields.insert(QStringLiteral("k"), QStringLiteral("c"));
        b->onCall = [](const char* what) {
            if (qstrcmp(what, "serialize") == 0)
                throw std::runtime_error("no state");
        };
        MessageCatcher catcher;
        QVERIFY(VwwWindowRegistry::getInstance()->isReadyToClose());
        QCOMPARE(catcher.warnings, QStringList({"Saving window 'B' failed: std::exception: no state"}));

        VwwWindowRegistry::WindowData data;
        QDomElement workspace;
        VwwWindowRegistry::readWindowsFile(VwwWindowRegistry::windowsFilePath(*project), data, workspace);
        QCOMPARE(data.size(), 2);
        QCOMPARE(data[0].second.value(QStringLiteral("k")), QStringLiteral("a"));
        QCOMPARE(data[1].second.value(QStringLiteral("k")), QStringLiteral("c"));
        QVERIFY(!workspace.isNull());
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
        auto* a = new TestWindow(QStringLiteral("A"), VwwEWindowType::TASK, VwwAWindow::DOCKED);
        QPointer<TestWindow> b = new TestWindow(QStringLiteral("B"), VwwEWindowType::TASK, VwwAWindow::DOCKED);
        QPointer<TestWindow> c = new TestWindow(QStringLiteral("C"), VwwEWindowType::TASK, VwwAWindow::DOCKED);
        // A deletes B (not yet visited) and C deletes itself.
        a->onCall = [&b, operation](const char* what) {
            if (operation == QLatin1String(what))
                delete b.data();
        };
        c->onCall = [&c, operation](const char* what) {
            if (operation == QLatin1String(what))
                delete c.data();
        };
        callLog().clear();
        if (operation == QLatin1String("projectOpened")) {
            const QString folder = VssProjectCollection::getInstance()->getCurrentProject()->getFolder();
            QVERIFY(VssProjectCollection::getInstance()->closeProject());
            callLog().clear();
            QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        } else if (operation == QLatin1String("saveInProject")) {
            VwwWindowRegistry::getInstance()->saveInProject();
        } else if (operation == QLatin1String("isReadyToClose")) {
            QVERIFY(VwwWindowRegistry::getInstance()->isReadyToClose());
        } else {
            VwwWindowRegistry::getInstance()->projectAboutToClose();
        }
        QVERIFY(b.isNull());
        QVERIFY(c.isNull());
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
        QVERIFY(!VwwWindowRegistry::getInstance()->isReadyToClose());
        QCOMPARE(callLog(), QStringList({"A:isReadyToClose", "B:isReadyToClose"}));
        QVERIFY(!VssProjectCollection::getInstance()->closeProject());
        QVERIFY(VssProjectCollection::getInstance()->getCurrentProject());
        b.readyToClose = true;
    }

    void whichWindowsAreSaved()
    {
        VssProject* project = openNewProject();
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        const VsoSceneIdentifier map = project->getModelScene().getIdentifier(1);
        auto* shown = new TestSceneWindow(VugESceneType::MAP);
        shown->setScene(map);
        new TestSceneWindow(VugESceneType::MAP); // no scene: not saved
        new TestWindow(QStringLiteral("sheet"), VwwEWindowType::SPREADSHEET);
        new TestWindow(QStringLiteral("messages"), VwwEWindowType::MESSAGES);
        auto* reporter = new TestWindow(QStringLiteral("reporter"), VwwEWindowType::REPORTER);
        reporter->classId = QStringLiteral("TestReporter");

        const QString path = VwwWindowRegistry::windowsFilePath(*project);
        QVERIFY(VssProjectCollection::getInstance()->closeProject());
        VwwWindowRegistry::WindowData data;
        QDomElement workspace;
        VwwWindowRegistry::readWindowsFile(path, data, workspace);
        QStringList classIds;
        for (const auto& entry : data)
            classIds << entry.first;
        QCOMPARE(classIds, QStringList({"Test2D", "TestReporter"}));
        QCOMPARE(data[0].second.value(QStringLiteral("scene-id")), QStringLiteral("1"));
    }

    void openingWithoutSavedWindows_data()
    {
        QTest::addColumn<bool>("spawn3D");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("with a 3D display") << true
                                           << QStringList({"createReporterWindow", "create3DDisplay:0", "create2DDisplay:0"});
        QTest::newRow("without") << false << QStringList({"createReporterWindow", "create2DDisplay:0"});
    }

    void openingWithoutSavedWindows()
    {
        QFETCH(bool, spawn3D);
        QFETCH(QStringList, calls);
        VuaApplication::setSpawnDefault3DV(spawn3D);
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        openNewProject();
        VuaApplication::setSpawnDefault3DV(true);
        QCOMPARE(factory->calls, calls);
        QVERIFY(callLog().contains(QStringLiteral("reporter:projectOpened"))); // made after the opening, still told
        QCOMPARE(main.calls.last(), QStringLiteral("restore"));
        QCOMPARE(main.restoredText, QStringLiteral("<null>"));
    }

    void savedWindowsComeBack_data()
    {
        QTest::addColumn<bool>("userCanChange");
        QTest::addColumn<QStringList>("calls");
        QTest::newRow("user can change windows")
            << true << QStringList({"createWindow:Test2D", "createWindow:TestWindow", "createWindow:TestWindow",
                                    "createWindow:TestReporter", "create3DDisplay:0"});
        QTest::newRow("user cannot") << false << QStringList({"createReporterWindow", "create3DDisplay:0", "create2DDisplay:0"});
    }

    void savedWindowsComeBack()
    {
        QFETCH(bool, userCanChange);
        QFETCH(QStringList, calls);
        VssProject* project = openNewProject();
        const QString folder = project->getFolder();
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        main.workspaceText = QStringLiteral("three windows");
        auto* map = new TestSceneWindow(VugESceneType::MAP);
        map->setScene(project->getModelScene().getIdentifier(1));
        auto* display = new TestWindow(QStringLiteral("kept"), VwwEWindowType::DISPLAY);
        display->fields.insert(QStringLiteral("colour"), QStringLiteral("red & <blue>"));
        auto* failing = new TestWindow(QStringLiteral("failing"), VwwEWindowType::DISPLAY);
        failing->fields.insert(QStringLiteral("fail"), QString());
        auto* reporter = new TestWindow(QStringLiteral("reporter"), VwwEWindowType::REPORTER);
        reporter->classId = QStringLiteral("TestReporter");
        QVERIFY(VssProjectCollection::getInstance()->closeProject());
        VwwWindowRegistry::clear();

        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        VwwWindowRegistry::setMainWindow(&main);
        VwwWindowRegistry::enableUserToChangeWindows(userCanChange);
        QVERIFY(VssProjectCollection::getInstance()->openProject(folder));
        QCOMPARE(factory->calls, calls);
        QCOMPARE(main.restoredText, QStringLiteral("three windows"));
        if (userCanChange) {
            // The window whose unserialize failed is deleted; the others are live.
            QCOMPARE(registeredIds().size(), 4);
            auto* restoredMap = qobject_cast<VwwASceneWindow*>(VwwWindowRegistry::getWindow(registeredIds().first()));
            QVERIFY(restoredMap);
            QCOMPARE(restoredMap->getScene().getName(), QStringLiteral("Map"));
            auto* kept = qobject_cast<TestWindow*>(VwwWindowRegistry::getWindow(registeredIds().at(1)));
            QCOMPARE(kept->fields.value(QStringLiteral("colour")), QStringLiteral("red & <blue>"));
        }
    }

    void scenesOpenAndCloseTheirDisplays()
    {
        VssProject* project = openNewProject();
        auto* factory = new TestFactory;
        VwwWindowRegistry::setWindowFactory(factory);
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        VsmModelScene& scenes = project->getModelScene();

        scenes.requestOpen(1);
        scenes.requestOpen(2);
        scenes.requestOpen(3);
        QCOMPARE(factory->calls, QStringList({"create2DDisplay:1", "create3DDisplay:2", "createSceneType4Display:3"}));
        const int count = registeredIds().size();

        main.calls.clear();
        scenes.requestOpen(2); // already shown: activated, no second display
        QCOMPARE(registeredIds().size(), count);
        QCOMPARE(main.calls, QStringList({"activate:Scene window"}));

        // A removable display goes with its scene; a fixed one is emptied.
        QPointer<VwwAWindow> display3D = VwwWindowRegistry::getWindow(registeredIds().at(1));
        scenes.requestClose(2);
        QVERIFY(display3D.isNull());
        auto* fixed = new TestSceneWindow(VugESceneType::MAP, false);
        fixed->setScene(scenes.getIdentifier(1));
        QPointer<VwwAWindow> removableMap = VwwWindowRegistry::getWindow(registeredIds().first());
        scenes.requestClose(1); // only the first display of the scene is treated
        QVERIFY(removableMap.isNull());
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
    }

    void openedDisplayHonoursTheFilter()
    {
        VssProject* project = openNewProject();
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        VsmModelScene& scenes = project->getModelScene();
        scenes.requestOpen(2);
        scenes.requestOpen(1);
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter()), VsoSceneIdentifier()); // none visible
        for (int id : registeredIds())
            VwwWindowRegistry::getWindow(id)->show();
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter()).getId(), 2);
        QCOMPARE(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter({2})).getId(), 1);
        QVERIFY(VwwWindowRegistry::getOpenedDisplay(VsoSceneFilter({4})).isNull());
    }

    void gpsDialogIsConnectedToNewDisplays()
    {
        VssProject* project = openNewProject();
        VwwWindowRegistry::setWindowFactory(new TestFactory);
        VwdGpsDialog gps;
        VwwWindowRegistry::setGpsDialog(&gps);
        project->getModelScene().requestOpen(1);
        auto* display = qobject_cast<TestSceneWindow*>(VwwWindowRegistry::getWindow(registeredIds().last()));
        QVERIFY(display);
        QCOMPARE(display->gpsConnections, 1);
        Q_EMIT gps.gpsEnabled(true);
        QCOMPARE(display->gpsEnabledCalls, 1);
        auto* restored = qobject_cast<TestSceneWindow*>(VwwWindowRegistry::createWindow(QStringLiteral("Test3D")));
        QCOMPARE(restored->gpsConnections, 1);
        delete restored;
    }

    void updateLockReachesEveryWindow()
    {
        openNewProject();
        auto* display = new TestSceneWindow(VugESceneType::MAP);
        {
            VuoUpdateModifyLocker lock;
            VuoUpdateModifyLocker nested;
            QVERIFY(!display->updatesEnabled());
        }
        QVERIFY(display->updatesEnabled());
    }

    void clearEmptiesTheRegistry()
    {
        FakeMainWindow main;
        VwwWindowRegistry::setMainWindow(&main);
        QPointer<TestWindow> a = new TestWindow(QStringLiteral("A"));
        QPointer<VwwWindowModel> model = VwwWindowRegistry::getWindowModel();
        VwwWindowRegistry::clear();
        QVERIFY(a.isNull());
        QVERIFY(model.isNull());
        QCOMPARE(VwwWindowRegistry::getMainWindow(), nullptr);
        QVERIFY(registeredIds().isEmpty());
        // No model until the registry is made anew; windows still register.
        TestWindow b(QStringLiteral("B"));
        QCOMPARE(VwwWindowRegistry::getWindowModel(), nullptr);
        QCOMPARE(registeredIds(), QList<int>({b.getWindowID()}));
        VwwWindowRegistry::remove(b.getWindowID());
        VwwWindowRegistry::reset();
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 0);
        TestWindow c(QStringLiteral("C"));
        QCOMPARE(VwwWindowRegistry::getWindowModel()->rowCount(), 1);
    }
};

QTEST_MAIN(TestWindowRegistry)
#include "tst_vwwwindowregistry.moc"
