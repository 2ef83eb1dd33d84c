// Scenes as a view sees them: insert, move and remove sequences with the ranks, ids and
// signals they give, refusals that change nothing, the last zoom; scenes and datasets
// kept in a project across closing and reopening; damaged files refused with a message
// that names the file; values views leave out told once per dataset.

#include "MessageCatcher.h"
#include <KbbDebug.h>
#include <KbeError.h>
#include <KbeProgrammingError.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPointSetFile.h>
#include <VsdPolygonSet.h>
#include <VsmModelScene.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <VugSceneStore.h>

#include <QColor>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <cmath>

namespace {

VugSceneItem makeItem(const QString& id, const QString& name = QString())
{
    return VugSceneItem(id, name.isEmpty() ? id.toUpper() : name, VugERendering::POINTS, id + QStringLiteral("_data"));
}

QList<int> ranks(const QString& text)
{
    QList<int> result;
    for (const QString& r : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) result << r.toInt();
    return result;
}

// "-" is an empty text, "<blank>" a blank one.
QString text(const QString& token)
{
    if (token == QLatin1String("-")) return QString();
    return token == QLatin1String("<blank>") ? QStringLiteral("   ") : token;
}

// The scene's signals as text, in the order they come.
QStringList* watch(VugScene& s, QObject* context)
{
    auto log = new QStringList;
    QObject::connect(context, &QObject::destroyed, [log] { delete log; });
    const auto on = [&](auto signal, auto show) { QObject::connect(&s, signal, context, [=](auto... a) { *log << show(a...); }); };
    on(&VugScene::itemInserted, [](int r) { return QStringLiteral("inserted %1").arg(r); });
    on(&VugScene::itemsMoved, [](const QStringList& ids) { return "moved " + ids.join(','); });
    on(&VugScene::itemsRemoved, [](const QList<int>& ranks) {
        QStringList parts;
        for (int r : ranks) parts << QString::number(r);
        return "removed " + parts.join(',');
    });
    on(&VugScene::itemRenamed, [](int r, const QString& from, const QString& to) {
        return QStringLiteral("renamed %1 %2>%3").arg(r).arg(from, to);
    });
    on(&VugScene::itemShown, [](int r, bool shown) { return QStringLiteral("shown %1 %2").arg(r).arg(shown ? "true" : "false"); });
    on(&VugScene::itemSourceChanged, [](int r) { return QStringLiteral("source %1").arg(r); });
    on(&VugScene::reset, [] { return QStringLiteral("reset"); });
    on(&VugScene::selectionChanged, [](const QString& id) { return "selection " + (id.isEmpty() ? QStringLiteral("-") : id); });
    return log;
}

// Runs "op args; op args; ...", logging the signals of each step.
QStringList run(VugScene& scene, const QString& script)
{
    QObject context;
    QStringList* signalLog = watch(scene, &context);
    QStringList log;
    for (const QString& step : script.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QStringList a = step.simplified().split(QLatin1Char(' '));
        const QString& op = a[0];
        if (op == QLatin1String("ins")) scene.insertItem(a[1].toInt(), makeItem(a[2]));
        else if (op == QLatin1String("app")) scene.appendItem(makeItem(a[1], a.size() > 2 ? text(a[2]) : QString()));
        else if (op == QLatin1String("mv")) scene.moveItem(a[1].toInt(), a[2].toInt());
        else if (op == QLatin1String("mvs")) scene.moveItems(ranks(a[1]), a[2].toInt());
        else if (op == QLatin1String("rm")) scene.removeItems(ranks(a[1]));
        else if (op == QLatin1String("ren")) scene.renameItem(a[1].toInt(), text(a[2]));
        else if (op == QLatin1String("show")) scene.setItemActive(a[1].toInt(), a[2] == QLatin1String("1"));
        else if (op == QLatin1String("src")) scene.setItemSource(a[1].toInt(), text(a[2]), text(a[3]));
        else if (op == QLatin1String("sel")) scene.setSelectedItem(text(a[1]));
        else if (op == QLatin1String("reset")) {
            QVector<VugSceneItem> items;
            for (const QString& id : a[1].split(QLatin1Char(','))) items << makeItem(id);
            scene.setItems(items);
        } else if (op == QLatin1String("clear")) scene.clear();
        else qFatal("unknown step %s", qPrintable(step));
        log << *signalLog;
        signalLog->clear();
    }
    return log;
}

std::unique_ptr<VugScene> sceneOf(const QString& ids, int id = 1)
{
    auto scene = std::make_unique<VugScene>(id);
    for (const QString& i : ids.split(QLatin1Char(' '), Qt::SkipEmptyParts)) scene->appendItem(makeItem(i));
    return scene;
}

bool sameRect(const QRectF& a, const QRectF& b)
{
    return a.x() == b.x() && a.y() == b.y() && a.width() == b.width() && a.height() == b.height();
}

QByteArray sceneFile(const QByteArray& body, const QByteArray& attributes = "version=\"1\" id=\"1\"")
{
    return "<?xml version=\"1.0\"?>\n<scene " + attributes + ">" + body + "</scene>\n";
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(f.write(bytes), qint64(bytes.size()));
}

} // namespace

class TestScene : public QObject
{
    Q_OBJECT
    // Outlives the project that cleanup() closes.
    QTemporaryDir _dir;
    int _projects = 0;

    // A project of its own, in the suite's folder.
    auto newProject() { return VssProject::create(_dir.filePath(QString::number(++_projects)), QStringLiteral("P")); }

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<QList<int>>(); }
    void cleanup() { VssProjectCollection::getInstance()->closeProject(); }

    void operations_data()
    {
        QTest::addColumn<QString>("start");
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("ids");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("warning");

        QTest::newRow("insert at front, middle and end")
            << "" << "app a; ins 0 b; ins 1 c; ins 3 d" << "b c a d" << "inserted 0|inserted 0|inserted 1|inserted 3" << "";
        QTest::newRow("last moved to the bottom") << "a b c" << "mv 2 0" << "c a b" << "moved c" << "";
        QTest::newRow("bottom moved to the top") << "a b c" << "mv 0 2" << "b c a" << "moved a" << "";
        QTest::newRow("move onto its own rank sends nothing") << "a b c" << "mv 1 1" << "a b c" << "" << "";
        QTest::newRow("scattered block to the front keeps its order")
            << "a b c d e" << "mvs 3,1 0" << "b d a c e" << "moved b,d" << "";
        QTest::newRow("scattered block to the end") << "a b c d e" << "mvs 0,2 3" << "b d e a c" << "moved a,c" << "";
        QTest::newRow("block one step up") << "a b c d e" << "mvs 1,2 2" << "a d b c e" << "moved b,c" << "";
        QTest::newRow("block already in place sends nothing") << "a b c d e" << "mvs 2,1 1" << "a b c d e" << "" << "";
        QTest::newRow("removal reports old ranks highest first") << "a b c d" << "rm 0,2" << "b d" << "removed 2,0" << "";
        QTest::newRow("repeated ranks are removed once") << "a b c d" << "rm 1,3,1" << "a c" << "removed 3,1" << "";
        QTest::newRow("emptied then filled again")
            << "a b c" << "rm 2,0,1; app x" << "x" << "removed 2,1,0|inserted 0" << "";
        QTest::newRow("removing the selected item clears the selection")
            << "a b c" << "sel b; rm 1,2" << "a" << "selection b|removed 2,1|selection -" << "";
        QTest::newRow("removing another item keeps the selection")
            << "a b c" << "sel a; rm 1" << "a c" << "selection a|removed 1" << "";
        QTest::newRow("rename, hide, show and change the source")
            << "a b" << "ren 1 Wells; show 1 0; show 1 0; show 1 1; src 1 grid Porosity"
            << "a b" << "renamed 1 B>Wells|shown 1 false|shown 1 true|source 1" << "";
        QTest::newRow("unchanged values send nothing")
            << "a b" << "ren 0 A; show 0 1; src 0 a_data -; sel -" << "a b" << "" << "";
        QTest::newRow("reset drops a selection it no longer holds")
            << "a b" << "sel a; reset x,y" << "x y" << "selection a|reset|selection -" << "";
        QTest::newRow("reset keeps a selection it still holds") << "a b" << "sel b; reset b,a" << "b a" << "selection b|reset" << "";
        QTest::newRow("clearing an empty scene sends nothing") << "" << "clear" << "" << "" << "";
        QTest::newRow("clearing") << "a b" << "clear; app a" << "a" << "reset|inserted 0" << "";

        QTest::newRow("insert past the end") << "a" << "ins 2 b" << "a" << "" << "^VugScene::insertItem: rank 2 is out of range";
        QTest::newRow("insert at a negative rank") << "a" << "ins -1 b" << "a" << "" << "^VugScene::insertItem: rank -1";
        QTest::newRow("insert a used id") << "a b" << "app b" << "a b" << "" << "^VugScene::insertItem: the id 'b' is already used";
        QTest::newRow("insert a blank name") << "a" << "app b <blank>" << "a" << "" << "^VugScene::insertItem: the item's name";
        QTest::newRow("move from past the end") << "a b" << "mv 2 0" << "a b" << "" << "^VugScene::moveItem: rank 2 is out of range";
        QTest::newRow("move to past the end") << "a b" << "mv 0 2" << "a b" << "" << "^VugScene::moveItem: rank 2 is out of range";
        QTest::newRow("block moved past the end")
            << "a b c" << "mvs 0,1 2" << "a b c" << "" << "^VugScene::moveItems: target rank 2 is out of range \\[0, 1\\]";
        QTest::newRow("block with a repeated rank") << "a b c" << "mvs 1,1 0" << "a b c" << "" << "^VugScene::moveItems: rank 1 is given twice";
        QTest::newRow("removal with one bad rank removes nothing")
            << "a b c" << "rm 0,3" << "a b c" << "" << "^VugScene::removeItems: rank 3";
        QTest::newRow("rename to a blank name") << "a" << "ren 0 <blank>" << "a" << "" << "^VugScene::renameItem: the name";
        QTest::newRow("rename in an empty scene") << "" << "ren 0 x" << "" << "" << "^VugScene::renameItem: rank 0 is invalid: the scene is empty";
        QTest::newRow("show a negative rank") << "a" << "show -1 0" << "a" << "" << "^VugScene::setItemActive: rank -1";
        QTest::newRow("select an unknown id") << "a" << "sel zz" << "a" << "" << "^VugScene::setSelectedItem: no item has the id 'zz'";
        QTest::newRow("reset with a repeated id keeps the items")
            << "a b" << "reset x,x" << "a b" << "" << "^VugScene::setItems: the id 'x' is used twice";
    }

    void operations()
    {
        QFETCH(QString, start);
        QFETCH(QString, script);
        QFETCH(QString, ids);
        QFETCH(QString, expected);
        QFETCH(QString, warning);
        auto scene = sceneOf(start);
        if (!warning.isEmpty()) QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
        const QStringList log = run(*scene, script);
        QCOMPARE(log.join(QLatin1Char('|')), expected);
        QCOMPARE(scene->itemIds().join(QLatin1Char(' ')), ids);
        for (int r = 0; r < scene->count(); ++r) QCOMPARE(scene->findRank(scene->item(r)->getId()), r);
    }

    // A view keeps item pointers by layer: they must follow the items, not the ranks.
    void itemsKeepTheirAddressAcrossMoves()
    {
        auto scene = sceneOf(QStringLiteral("a b c d"));
        const VugSceneItem* c = scene->item(2);
        scene->moveItems({2, 3}, 0);
        scene->removeItem(3);
        QCOMPARE(scene->item(0), c);
        QCOMPARE(scene->findItem(QStringLiteral("c")), c);
        QCOMPARE(scene->uniqueItemId(QStringLiteral("c")), QStringLiteral("c_2"));
    }

    void lastZoom_data()
    {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("ordinary") << QRectF(1e5, 4e6, 2500, 1800) << true;
        QTest::newRow("negative origin, tiny") << QRectF(-3, -4, 1e-9, 1e-9) << true;
        QTest::newRow("no width") << QRectF(0, 0, 0, 10) << false;
        QTest::newRow("negative height") << QRectF(0, 10, 10, -10) << false;
        QTest::newRow("NaN origin") << QRectF(std::nan(""), 0, 1, 1) << false;
        QTest::newRow("infinite width") << QRectF(0, 0, HUGE_VAL, 1) << false;
    }

    void lastZoom()
    {
        QFETCH(QRectF, rect);
        QFETCH(bool, accepted);
        VugScene scene;
        QVERIFY(!scene.hasLastZoom());
        const QRectF good(10, 20, 30, 40);
        QVERIFY(scene.setLastZoom(good));
        if (!accepted)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VugScene::setLastZoom: ")));
        QCOMPARE(scene.setLastZoom(rect), accepted);
        QVERIFY(sameRect(scene.getLastZoom(), accepted ? rect : good));
    }

    void renderingLookups()
    {
        // The values a map view and saved scenes rely on.
        const QMap<int, QString> fixed{{0, "POINTS"},     {1, "RASTER"},         {2, "TILED_RASTER_MAP"},
                                       {3, "VECTOR_MAP"}, {6, "POLYGONS"},       {7, "GRID_WIRE"},
                                       {8, "POINT_SYMBOLS"}, {12, "POINT_LABELS"}, {25, "POLYLINES"}};
        for (auto it = fixed.cbegin(); it != fixed.cend(); ++it) {
            QCOMPARE(QString::fromLatin1(VugERendering::fromValue(it.key()).getKey()), it.value());
            QCOMPARE(VugERendering::fromKey(it.value()).getValue(), it.key());
            QVERIFY(VugERendering::fromValue(it.key()).isMapRendering());
        }
        QVERIFY(!VugERendering::SURFACE.isMapRendering());
        QVERIFY_EXCEPTION_THROWN(VugERendering::fromValue(99), KbeProgrammingError);
        QVERIFY_EXCEPTION_THROWN(VugERendering::fromKey(QStringLiteral("points")), KbeProgrammingError);
        QCOMPARE(VugERendering::fromValue(99, VugERendering::RASTER), VugERendering::RASTER);
        QCOMPARE(VugERendering::fromKey(QStringLiteral("nope"), VugERendering::POLYGONS), VugERendering::POLYGONS);
    }

    void sceneAndDatasetsSurviveReopening()
    {
        const QString folder = _dir.filePath(QStringLiteral("field"));
        auto* collection = VssProjectCollection::getInstance();
        QVERIFY(collection->createProject(folder, QStringLiteral("Field")));
        VssProject& project = *collection->getCurrentProject();
        const int id = project.getModelScene().createScene(QStringLiteral("Map"), VsmModelScene::SCENE_2D);

        VugScene scene(id);
        VugSceneItem wells(QStringLiteral("wells"), QStringLiteral("Forages – Ø <\"&'>"), VugERendering::POINT_SYMBOLS,
                           QStringLiteral("../wells/2024"), QStringLiteral("Porosity"));
        wells.setStyle({{"size", 4.25}, {"third", 1.0 / 3.0}, {"filled", true}, {"count", 7}, {"big", qlonglong(1) << 40},
                        {"label", QStringLiteral(" a\tb\nc  ")}, {"colour", QColor(10, 20, 30, 40)}, {"no colour", QColor()}});
        QVERIFY(scene.appendItem(wells));
        QVERIFY(scene.appendItem(VugSceneItem(QStringLiteral("limit"), QStringLiteral("Limit"), VugERendering::POLYGONS,
                                              QStringLiteral("boundary"))));
        QVERIFY(scene.appendItem(makeItem(QStringLiteral("grid"))));
        scene.moveItem(2, 0);
        scene.setItemActive(1, false);
        QVERIFY(scene.setLastZoom(QRectF(0.1, -2e6 / 3, 1234.5678901234567, 1e-3)));
        QVERIFY(scene.setCoordSystemCode(QStringLiteral("EPSG:32631")));

        VugDatasetStore datasets(project);
        const VsdPointSet points = VsdPointSet::generate(200, 7, QRectF(0, 0, 1000, 800));
        QVERIFY(datasets.setPointSet(QStringLiteral("../wells/2024"), points));
        VsdPolygonSet boundary;
        boundary.append(QPolygonF({{0, 0}, {1000, 0}, {1000, 800}}));
        QVERIFY(datasets.setPolygonSet(QStringLiteral("boundary"), boundary));
        QVERIFY(datasets.setPointSet(QStringLiteral("gone"), points));
        datasets.save();
        QVERIFY(datasets.remove(QStringLiteral("gone")));
        // A set kept in memory is never written, and drops the file an earlier one left.
        QVERIFY(datasets.setPointSet(QStringLiteral("generated"), points));
        datasets.save();
        QVERIFY(datasets.setPointSet(QStringLiteral("generated"), points, VugDatasetStore::Storage::IN_MEMORY));
        datasets.save();
        // Keys never reach outside the datasets folder, and a removed set leaves no file.
        QCOMPARE(QDir(datasets.getDirectory()).entryList(QDir::Files | QDir::Hidden).size(), 1);
        QCOMPARE(QDir(project.getDatabaseDirectory()).entryList({"*.vpts"}, QDir::Files), QStringList());

        VugSceneStore::save(project, scene);
        project.setCoordSystemText(QStringLiteral("EPSG:32631"));
        QVERIFY(collection->closeProject());
        QVERIFY(collection->openProject(folder));
        VssProject& reopened = *collection->getCurrentProject();
        QVERIFY(reopened.getModelScene().exists(id));
        QCOMPARE(reopened.getCoordSystemText(), QStringLiteral("EPSG:32631"));

        VugScene back(id);
        QSignalSpy reset(&back, &VugScene::reset);
        QString problem;
        QVERIFY(VugSceneStore::load(reopened, back, &problem));
        QCOMPARE(problem, QString());
        QCOMPARE(reset.count(), 1);
        QCOMPARE(back.itemIds(), QStringList({"grid", "wells", "limit"}));
        QCOMPARE(back.items(), scene.items());
        // QVariant equality converts between types: the types must come back too.
        const QVariantMap style = back.item(1)->getStyle();
        for (const QString& key : wells.getStyle().keys()) {
            QCOMPARE(style.value(key).userType(), wells.getStyle().value(key).userType());
            QCOMPARE(style.value(key).toString(), wells.getStyle().value(key).toString());
        }
        QVERIFY(style.value(QStringLiteral("third")).toDouble() == 1.0 / 3.0);
        QVERIFY(sameRect(back.getLastZoom(), scene.getLastZoom()));
        QCOMPARE(back.getCoordSystemCode(), QStringLiteral("EPSG:32631"));

        VugDatasetStore again(reopened);
        again.load();
        QCOMPARE(again.keys(), QStringList({"../wells/2024"}));
        const VsdPointSet* loaded = again.pointSet(QStringLiteral("../wells/2024"));
        QVERIFY(loaded);
        QCOMPARE(loaded->x(), points.x());
        QCOMPARE(loaded->variable(QStringLiteral("Porosity")).size(), 200);
        // Polygon sets are kept in memory only.
        QVERIFY(!again.polygonSet(QStringLiteral("boundary")));

        VugScene never(id + 1);
        QVERIFY(!VugSceneStore::load(reopened, never, &problem));
        QVERIFY(never.isEmpty());
    }

    void damagedSceneFiles_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("problem");
        // What the scene keeps: the items that could be read.
        QTest::addColumn<QStringList>("kept");

        VugScene sample(1);
        sample.appendItem(makeItem(QStringLiteral("a")));
        sample.appendItem(makeItem(QStringLiteral("b")));
        const QByteArray whole = VugSceneStore::toXml(sample);
        const QByteArray item = "<item id=\"a\" name=\"A\" rendering=\"0\"/>";
        const QByteArray good = "<item id=\"b\" name=\"B\" rendering=\"6\"/>";
        const QStringList none;
        const QStringList b{"b"};

        QTest::newRow("truncated") << whole.left(whole.size() * 2 / 3) << "is not a valid file" << none;
        QTest::newRow("empty") << QByteArray() << "is not a valid file" << none;
        QTest::newRow("wrong root") << QByteArray("<windows version=\"1\" id=\"1\"/>") << "its root element is <windows>"
                                    << none;
        QTest::newRow("unknown rendering value") << sceneFile("<item id=\"a\" name=\"A\" rendering=\"99\"/>" + good)
            << "the item 'a' has the unknown rendering '99'" << b;
        QTest::newRow("rendering not a number")
            << sceneFile(good + "<item id=\"a\" name=\"A\" rendering=\"POINTS\"/>") << "unknown rendering 'POINTS'" << b;
        QTest::newRow("duplicate ids") << sceneFile(item + good + item) << "the item id 'a' is used twice"
                                       << QStringList{"a", "b"};
        QTest::newRow("item without a name") << sceneFile("<item id=\"a\" rendering=\"0\"/>" + good) << "the item's name"
                                             << b;
        QTest::newRow("bad active flag") << sceneFile("<item id=\"a\" name=\"A\" rendering=\"0\" active=\"yes\"/>" + good)
                                         << "neither 'true' nor 'false'" << b;
        QTest::newRow("style value of the wrong type")
            << sceneFile("<item id=\"a\" name=\"A\" rendering=\"0\"><style name=\"size\" type=\"int\" value=\"big\"/></item>"
                         + good) << "not a value of type int" << b;
        QTest::newRow("newer format") << sceneFile(item, "version=\"7\" id=\"1\"") << "newer version" << none;
        QTest::newRow("another scene's file") << sceneFile(item, "version=\"1\" id=\"9\"") << "holds the scene '9'"
                                              << none;
        QTest::newRow("infinite zoom") << sceneFile("<zoom x=\"0\" y=\"0\" width=\"inf\" height=\"1\"/>" + good)
                                       << "the width 'inf' of <zoom> is not a finite number" << b;
        QTest::newRow("zoom without area") << sceneFile("<zoom x=\"0\" y=\"0\" width=\"0\" height=\"1\"/>" + good)
                                           << "its zoom has no area" << b;
        QTest::newRow("bad coordinate-system code") << sceneFile(good, "version=\"1\" id=\"1\" coordsys=\"a&#9;b\"")
                                                    << "coordinate-system code is refused" << b;
        QTest::newRow("entity expansion")
            << QByteArray("<?xml version=\"1.0\"?><!DOCTYPE scene [<!ENTITY a \"aaaaaaaaaa\">]>"
                          "<scene version=\"1\" id=\"1\"><item id=\"&a;\" name=\"A\" rendering=\"0\"/></scene>")
            << "declares entities" << none;
        QTest::newRow("deep nesting") << sceneFile(QByteArray("<x>").repeated(200) + QByteArray("</x>").repeated(200))
                                      << "nested deeper" << none;
        QByteArray junk(10 * 1024 * 1024, Qt::Uninitialized);
        QRandomGenerator(42).fillRange(reinterpret_cast<quint32*>(junk.data()), junk.size() / 4);
        QTest::newRow("10 MB of junk") << junk << "is too large" << none;
    }

    // A damaged file is reported once, moved aside whole, and the scene opens with what
    // could be read; saving the scene then writes a new file beside the kept one.
    void damagedSceneFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, problem);
        QFETCH(QStringList, kept);
        const auto project = newProject();
        const QString path = VugSceneStore::filePath(*project, 1);
        writeFile(path, bytes);

        auto scene = sceneOf(QStringLiteral("x y"));
        scene->setLastZoom(QRectF(0, 0, 5, 5));
        scene->setCoordSystemCode(QStringLiteral("EPSG:4326"));
        QString message;
        QVERIFY(VugSceneStore::load(*project, *scene, &message));
        QVERIFY2(message.contains(QDir::toNativeSeparators(path)), qPrintable(message));
        QVERIFY2(message.contains(problem), qPrintable(message));
        QVERIFY2(message.contains(QDir::toNativeSeparators(path + ".bad")), qPrintable(message));
        QCOMPARE(scene->itemIds(), kept);
        QVERIFY(!scene->hasLastZoom());
        QVERIFY(scene->getCoordSystemCode().isEmpty());

        QVERIFY(!QFileInfo::exists(path));
        QFile aside(path + ".bad");
        QVERIFY(aside.open(QIODevice::ReadOnly));
        QCOMPARE(aside.readAll(), bytes);
        VugSceneStore::save(*project, *scene);
        QVERIFY(VugSceneStore::load(*project, *scene, &message));
        QCOMPARE(message, QString());
        QCOMPARE(scene->itemIds(), kept);
        QVERIFY(QFileInfo::exists(path + ".bad"));
    }

    void unwritableSceneFolderIsReported()
    {
        const auto project = newProject();
        writeFile(QDir(project->getDatabaseDirectory()).filePath(QStringLiteral("scenes")), "not a folder");
        auto scene = sceneOf(QStringLiteral("a"));
        QVERIFY_EXCEPTION_THROWN(VugSceneStore::save(*project, *scene), KbeError);
    }

    void datasetKeysRefused_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("warning");
        QTest::newRow("empty") << QString() << "it is empty";
        QTest::newRow("blank") << QStringLiteral("  ") << "it is empty";
        QTest::newRow("control character") << QStringLiteral("a\x01" "b") << "control character";
        QTest::newRow("too long") << QString(81, QLatin1Char('k')) << "longer than 80";
        QTest::newRow("another kind") << QStringLiteral("boundary") << "it holds a polygon set";
    }

    void datasetKeysRefused()
    {
        QFETCH(QString, key);
        QFETCH(QString, warning);
        const auto project = newProject();
        VugDatasetStore store(*project);
        VsdPolygonSet boundary;
        boundary.append(QPolygonF({{0, 0}, {1, 0}, {1, 1}}));
        QVERIFY(store.setPolygonSet(QStringLiteral("boundary"), boundary));
        QSignalSpy changed(&store, &VugDatasetStore::datasetChanged);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VugDatasetStore::setPointSet: .*") + warning));
        QVERIFY(!store.setPointSet(key, VsdPointSet::generate(3, 1, QRectF(0, 0, 1, 1))));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(store.keys(), QStringList({"boundary"}));
        QVERIFY(!store.pointSet(key));
    }

    void damagedPointSetFileIsNamedAndTheOthersLoad()
    {
        const auto project = newProject();
        VugDatasetStore store(*project);
        QVERIFY(store.setPointSet(QStringLiteral("good"), VsdPointSet::generate(10, 1, QRectF(0, 0, 1, 1))));
        store.save();
        const QString bad = QDir(store.getDirectory()).filePath(VugDatasetStore::fileName(QStringLiteral("bad")));
        writeFile(bad, "VPTS\x01\x00\x00\x00truncated");
        VugDatasetStore again(*project);
        QSignalSpy reloaded(&again, &VugDatasetStore::reloaded);
        try {
            again.load();
            QFAIL("a damaged point-set file was read");
        } catch (const KbeError& e) {
            QVERIFY2(e.getMessage().contains(QDir::toNativeSeparators(bad)), qPrintable(e.getMessage()));
        }
        QCOMPARE(reloaded.count(), 1);
        QCOMPARE(again.keys(), QStringList({"good"}));
        QCOMPARE(again.pointSet(QStringLiteral("good"))->size(), 10);
        // Kept aside: a set saved again under its key does not write over it.
        QVERIFY(again.setPointSet(QStringLiteral("bad"), VsdPointSet::generate(5, 1, QRectF(0, 0, 1, 1))));
        again.save();
        QFile kept(bad + QStringLiteral(".bad"));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), QByteArray("VPTS\x01\x00\x00\x00truncated"));
    }

    // What views leave out of their scales and frames is told once, as a dataset comes in;
    // a new selection or a reload of the same values does not tell it again.
    void leftOutValuesAreToldOnce()
    {
        MessageCatcher caught;
        QStringList& told = caught.warnings;
        const auto project = newProject();
        VugDatasetStore store(*project);
        VsdPointSet set = VsdPointSet::generate(100, 1, QRectF(0, 0, 100, 100));
        set.append(1e30, 50, 0, {qQNaN(), 1e308});
        QVERIFY(store.setPointSet(QStringLiteral("wells"), set));
        set.select(3);
        QVERIFY(store.setPointSet(QStringLiteral("wells"), set));
        store.save();
        store.load();
        VsdGrid grid(QPointF(0, 0), 1, 1, 2, 2);
        grid.setValues({1, 2, 3, qInf()});
        QVERIFY(store.setGrid(QStringLiteral("top"), grid));
        caught.stop();
        const QString end = QStringLiteral(". Colour scales and the views' frames leave them out.");
        QCOMPARE(told, (QStringList{"Dataset 'wells': in x, 1 value far outside the others (1e+30); in Porosity, 1 "
                                    "value that is not a number (NaN or infinite); in Thickness, 1 value far outside "
                                    "the others (1e+308)" + end,
                                    "Dataset 'top': 1 value that is not a number (NaN or infinite)" + end}));
    }
};

QTEST_MAIN(TestScene)
#include "tst_scene.moc"
