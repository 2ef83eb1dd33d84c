// Projects as their observers see them: the order they are told in, a refused close, a
// failing observer, bad and damaged folders, and scenes that keep their ids.

#include <KbbDebug.h>
#include <KbbOrderedMap.h>
#include <VsmModelScene.h>
#include <VssIObserverProject.h>
#include <VssProject.h>
#include <VssProjectCollection.h>

#include <QtTest>
#include <stdexcept>

#include "LowerTestSupport.h"
#include "MessageCatcher.h"

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

// The column types of the tables below.
using DamagedProjectOpensWithWhatCanBeReadRow = Row<QString, QByteArray, QString, QList<int>>;

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
        QCOMPARE(map.values(), QList<int>({1, 4, 3}));
        QCOMPARE(map.take(QStringLiteral("c")), 1);
        QCOMPARE(map.value(QStringLiteral("b")), 3); // the index follows the removal
        map[QStringLiteral("d")] = 5;
        QCOMPARE(map.keys(), QStringList({"a", "b", "d"}));
        QVERIFY(!map.remove(QStringLiteral("zz")));
        QCOMPARE(map.value(QStringLiteral("zz"), -1), -1);
    }

    // Opening, saving (once with a failing observer), a refused close and a close, as the
    // observers see them: each in the order it registered, the others told all the same.
    void observersFollowTheProject()
    {
        Recorder a(QStringLiteral("A"), _log), b(QStringLiteral("B"), _log);
        auto* collection = VssProjectCollection::getInstance();
        collection->addObserver(&a);
        collection->addObserver(&b);
        collection->addObserver(&a); // once only
        QVERIFY(collection->createProject(_dir.filePath(QStringLiteral("order")), QStringLiteral("Order")));
        QVERIFY(collection->saveProject());
        QCOMPARE(_log, QStringList({"A:opened:Order", "B:opened:Order", "A:save", "B:save"}));

        _log.clear();
        a.throwOnSave = true;
        MessageCatcher caught;
        QString message;
        QVERIFY(!collection->saveProject(&message));
        QCOMPARE(_log, QStringList({"A:save", "B:save"}));
        QCOMPARE(message, QStringLiteral("std::exception: disk full"));
        QCOMPARE(caught.errors, QStringList());

        // One observer not ready keeps the project open, and opening another is refused too.
        _log.clear();
        a.ready = false;
        QVERIFY(!collection->closeProject(&message));
        QVERIFY(!message.isEmpty());
        QCOMPARE(_log, QStringList({"A:ready"}));
        QVERIFY(!collection->createProject(_dir.filePath(QStringLiteral("other")), QStringLiteral("Other")));
        QCOMPARE(collection->getCurrentProject()->getName(), QStringLiteral("Order"));

        _log.clear();
        a.ready = true;
        QVERIFY(collection->closeProject());
        collection->removeObserver(&a);
        collection->removeObserver(&b);
        QCOMPARE(_log, QStringList({"A:ready", "B:ready", "A:aboutToClose", "B:aboutToClose"}));
    }

    void badFoldersKeepTheCurrentProject_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::newRow("missing folder") << "none";
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
        DamagedProjectOpensWithWhatCanBeReadRow::addColumns(); // file, bytes, name, scenes
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
        const auto [file, bytes, name, scenes] = DamagedProjectOpensWithWhatCanBeReadRow::fetch();
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
        // An identifier outlives its model: once the project is closed it names nothing.
        const VsoSceneIdentifier mapId = scenes.getIdentifier(map);
        QVERIFY(mapId.exists() && mapId.getName() == QStringLiteral("Map"));
        QVERIFY(collection->closeProject());
        QVERIFY(recorder.log.size() == 6 && !recorder.modelGone);
        QVERIFY(mapId.isNull() && !mapId.exists() && !mapId.getModel() && mapId.getSceneType() == 0);

        QVERIFY(collection->openProject(folder));
        VsmModelScene& reopened = collection->getCurrentProject()->getModelScene();
        QCOMPARE(reopened.getSceneIds(), QList<int>({map, view}));
        QCOMPARE(reopened.getScene(map)->items, QStringList({"Samples"}));
        QCOMPARE(reopened.getIdentifier(view).getDimension(), KbgEDimension::DIM_3D);
        QCOMPARE(reopened.createScene(QStringLiteral("New"), 2), gone + 1); // ids are not reused
    }
};

QTEST_GUILESS_MAIN(TestProjects)
#include "tst_projects.moc"
