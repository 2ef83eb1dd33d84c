#include "MessageCatcher.h"
#include <KbbDebug.h>
#include <KbbOrderedMap.h>
#include <VsmModelScene.h>
#include <VssIObserverProject.h>
#include <VssProject.h>
#include <VssProjectCollection.h>

#include <QtTest>
#include <stdexcept>

// Records what the project collection tells it, into a log shared by several observers.
class Recorder : public VssIObserverProject
{
public:
    Recorder(const QString& name, QStringList& log)
        : _name(name)
        , _log(log)
    {
    }
    bool ready = true;
    bool throwOnSave = false;

    bool isReadyToClose() override
    {
        _log << _name + QStringLiteral(":ready");
        return ready;
    }
    void projectAboutToClose() override { _log << _name + QStringLiteral(":aboutToClose"); }
    void saveInProject() override
    {
        _log << _name + QStringLiteral(":save");
        if (throwOnSave)
            throw std::runtime_error("disk full");
    }
    void projectOpened(VssProject& project) override { _log << _name + QStringLiteral(":opened:") + project.getName(); }

private:
    QString _name;
    QStringList& _log;
};

// Records the scene model's notifications as "reason:id".
class SceneRecorder : public VuoIObserver<VsmModifScene>
{
public:
    QStringList log;
    bool modelGone = false;
    void update(const VsmModifScene& modif) override
    {
        for (int reason : {0x01, 0x02, 0x04, 0x08, 0x40, 0x80})
            for (const VsoSceneIdentifier& id : modif.getIdentsForReasons(reason))
                log << QStringLiteral("%1:%2").arg(reason, 0, 16).arg(id.getId());
    }
    void destroyed(const VuoAObservable<VsmModifScene>*) override { modelGone = true; }
};

class TestProjects : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;
    QStringList _log;

private Q_SLOTS:
    void cleanup() { VssProjectCollection::getInstance()->closeProject(); }

    void orderedMapKeepsInsertionOrder()
    {
        KbbOrderedMap<QString, int> map;
        map.insert(QStringLiteral("c"), 1);
        map.insert(QStringLiteral("a"), 2);
        map.insert(QStringLiteral("b"), 3);
        map.insert(QStringLiteral("a"), 4); // replaced in place
        QCOMPARE(map.keys(), QStringList({"c", "a", "b"}));
        QCOMPARE(map.values(), QList<int>({1, 4, 3}));
        QCOMPARE(map.take(QStringLiteral("c")), 1);
        QCOMPARE(map.value(QStringLiteral("b")), 3); // the index follows the removal
        map[QStringLiteral("d")] = 5;
        QCOMPARE(map.keys(), QStringList({"a", "b", "d"}));
        QVERIFY(!map.remove(QStringLiteral("zz")));
        QCOMPARE(map.value(QStringLiteral("zz"), -1), -1);
    }

    void observersAreToldInOrder()
    {
        Recorder a(QStringLiteral("A"), _log), b(QStringLiteral("B"), _log);
        auto* collection = VssProjectCollection::getInstance();
        collection->addObserver(&a);
        collection->addObserver(&b);
        collection->addObserver(&a); // once only
        _log.clear();
        QVERIFY(collection->createProject(_dir.filePath(QStringLiteral("order")), QStringLiteral("Order")));
        QVERIFY(collection->saveProject());
        QVERIFY(collection->closeProject());
        collection->removeObserver(&a);
        collection->removeObserver(&b);
        QCOMPARE(_log, QStringList({"A:opened:Order", "B:opened:Order", "A:save", "B:save", "A:ready", "B:ready",
                                    "A:aboutToClose", "B:aboutToClose"}));
    }

    void refusalKeepsTheProjectOpen()
    {
        Recorder a(QStringLiteral("A"), _log), b(QStringLiteral("B"), _log), c(QStringLiteral("C"), _log);
        auto* collection = VssProjectCollection::getInstance();
        for (Recorder* r : {&a, &b, &c})
            collection->addObserver(r);
        QVERIFY(collection->createProject(_dir.filePath(QStringLiteral("refuse")), QStringLiteral("Refuse")));
        b.ready = false;
        _log.clear();
        QString message;
        QVERIFY(!collection->closeProject(&message));
        QVERIFY(!message.isEmpty());
        QCOMPARE(_log, QStringList({"A:ready", "B:ready"}));
        QVERIFY(collection->getCurrentProject());
        // Opening another project is refused the same way, and the first stays.
        QVERIFY(!collection->createProject(_dir.filePath(QStringLiteral("other")), QStringLiteral("Other")));
        QCOMPARE(collection->getCurrentProject()->getName(), QStringLiteral("Refuse"));
        b.ready = true;
        for (Recorder* r : {&a, &b, &c})
            collection->removeObserver(r);
    }

    void observerExceptionIsReported()
    {
        Recorder a(QStringLiteral("A"), _log), b(QStringLiteral("B"), _log);
        auto* collection = VssProjectCollection::getInstance();
        collection->addObserver(&a);
        collection->addObserver(&b);
        a.throwOnSave = true;
        MessageCatcher caught;
        QStringList& errors = caught.errors;
        QVERIFY(collection->createProject(_dir.filePath(QStringLiteral("throw")), QStringLiteral("Throw")));
        _log.clear();
        // The others save all the same, and the one who saves learns what failed.
        QString message;
        const bool saved = collection->saveProject(&message);
        caught.stop();
        collection->removeObserver(&a);
        collection->removeObserver(&b);
        QVERIFY(!saved);
        QCOMPARE(_log, QStringList({"A:save", "B:save"}));
        QCOMPARE(message, QStringLiteral("std::exception: disk full"));
        QCOMPARE(errors, QStringList());
    }

    void badFoldersKeepTheCurrentProject_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::newRow("missing folder") << "none";
        QTest::newRow("folder without a project") << "empty";
        QTest::newRow("a folder in the project file's place") << "folder";
    }

    void badFoldersKeepTheCurrentProject()
    {
        QFETCH(QString, setup);
        auto* collection = VssProjectCollection::getInstance();
        QVERIFY(collection->createProject(_dir.filePath(QStringLiteral("good-") + setup), QStringLiteral("Good")));
        const QString bad = _dir.filePath(QStringLiteral("bad-") + setup);
        if (setup != QLatin1String("none"))
            QDir().mkpath(bad + QStringLiteral("/database"));
        if (setup == QLatin1String("folder"))
            QDir().mkpath(bad + QStringLiteral("/project.xml"));
        QString message;
        QVERIFY(!collection->openProject(bad, &message));
        QVERIFY(!message.isEmpty());
        QCOMPARE(collection->getCurrentProject()->getName(), QStringLiteral("Good"));
        QVERIFY(QFileInfo(bad + QStringLiteral("/project.xml")).isDir() == (setup == QLatin1String("folder")));
    }

    void damagedProjectOpensWithWhatCanBeRead_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QList<int>>("scenes");
        QTest::newRow("truncated project file") << "project.xml" << QByteArray("<project name=\"x\"") << QString()
                                                << QList<int>{1, 2};
        QTest::newRow("project file of another kind") << "project.xml" << QByteArray("<windows/>") << QString()
                                                      << QList<int>{1, 2};
        QTest::newRow("scenes file of garbage") << "database/scenes.xml" << QByteArray("\xff\xfe garbage") << "P"
                                                << QList<int>{};
        QTest::newRow("repeated scene ids")
            << "database/scenes.xml"
            << QByteArray("<scenes><scene id=\"1\" name=\"Map\" type=\"2\"/><scene id=\"1\" name=\"Again\" type=\"3\"/>"
                          "<scene id=\"x\" name=\"No id\" type=\"3\"/></scenes>")
            << "P" << QList<int>{1};
    }

    // What can be read opens; the damaged file is kept aside, reported once, and the next
    // save writes a sound one.
    void damagedProjectOpensWithWhatCanBeRead()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QFETCH(QList<int>, scenes);
        auto* collection = VssProjectCollection::getInstance();
        static int count = 0;
        const QString folder = _dir.filePath(QStringLiteral("damaged%1").arg(++count));
        QVERIFY(collection->createProject(folder, QStringLiteral("P")));
        VsmModelScene& model = collection->getCurrentProject()->getModelScene();
        model.createScene(QStringLiteral("Map"), 2);
        model.createScene(QStringLiteral("3D"), 3);
        QVERIFY(collection->closeProject());
        QDir(folder).mkpath(QStringLiteral("database/scenes"));
        QFile(QDir(folder).filePath(QStringLiteral("database/scenes/2.xml"))).open(QIODevice::WriteOnly);
        const QString path = QDir(folder).filePath(file);
        QFile f(path);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
        f.close();

        MessageCatcher caught;
        QStringList& warnings = caught.told;
        const bool opened = collection->openProject(folder);
        caught.stop();
        QVERIFY(opened);
        QCOMPARE(warnings.size(), 1);
        QVERIFY2(warnings.first().contains(QDir::toNativeSeparators(path + ".bad")), qPrintable(warnings.first()));
        // Without its file, the project is named after its folder.
        QCOMPARE(collection->getCurrentProject()->getName(), name.isEmpty() ? QFileInfo(folder).fileName() : name);
        QCOMPARE(collection->getCurrentProject()->getModelScene().getSceneIds(), scenes);
        QFile kept(path + ".bad");
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), bytes);
        // A new scene never takes the number of one that may still have files.
        QCOMPARE(collection->getCurrentProject()->getModelScene().createScene(QStringLiteral("New"), 2), 3);

        QVERIFY(collection->closeProject());
        QVERIFY(collection->openProject(folder));
        QCOMPARE(collection->getCurrentProject()->getModelScene().getSceneIds(), scenes + QList<int>{3});
        QVERIFY(QFileInfo::exists(path + ".bad"));
        QVERIFY(collection->closeProject());
    }

    void scenesKeepTheirIds()
    {
        auto* collection = VssProjectCollection::getInstance();
        const QString folder = _dir.filePath(QStringLiteral("scenes"));
        QVERIFY(collection->createProject(folder, QStringLiteral("Scenes")));
        VsmModelScene& scenes = collection->getCurrentProject()->getModelScene();
        SceneRecorder recorder;
        scenes.addObserver(&recorder);
        const int map = scenes.createScene(QStringLiteral("Map"), 2, {QStringLiteral("Samples")});
        const int view = scenes.createScene(QStringLiteral("3D"), 3);
        const int gone = scenes.createScene(QStringLiteral("Gone"), 4);
        const VsoSceneIdentifier goneId = scenes.getIdentifier(gone);
        QVERIFY(scenes.removeScene(gone));
        QVERIFY(!goneId.exists());
        scenes.requestOpen(view);
        scenes.requestOpen(gone); // no longer there: nothing is asked
        QCOMPARE(recorder.log, QStringList({"1:1", "1:2", "1:3", "80:3", "2:3", "40:2"}));
        scenes.removeObserver(&recorder);
        QVERIFY(collection->closeProject());
        QVERIFY(recorder.log.size() == 6 && !recorder.modelGone);

        QVERIFY(collection->openProject(folder));
        VsmModelScene& reopened = collection->getCurrentProject()->getModelScene();
        QCOMPARE(reopened.getSceneIds(), QList<int>({map, view}));
        QCOMPARE(reopened.getScene(map)->items, QStringList({"Samples"}));
        QCOMPARE(reopened.getIdentifier(view).getDimension(), KbgEDimension::DIM_3D);
        QCOMPARE(reopened.createScene(QStringLiteral("New"), 2), gone + 1); // ids are not reused
    }

    void identifierOutlivesItsModel()
    {
        VsoSceneIdentifier id;
        {
            VsmModelScene model;
            id = model.getIdentifier(model.createScene(QStringLiteral("x"), 2));
            QVERIFY(id.exists());
            QCOMPARE(id.getName(), QStringLiteral("x"));
        }
        QVERIFY(id.isNull());
        QVERIFY(!id.exists());
        QCOMPARE(id.getModel(), nullptr);
        QCOMPARE(id.getSceneType(), 0);
    }
};

QTEST_GUILESS_MAIN(TestProjects)
#include "tst_projects.moc"
