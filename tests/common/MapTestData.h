#pragma once
// What the map tests draw: a project in a temporary folder with its dataset store, the
// preferences kept beside it, and two point sets: "a" with (0, 0) and (100, 50), "b" with
// (500, 500); point sets and scene items made from a list of places.

#include <VsdPointSet.h>
#include <VugERendering.h>
#include <VugSceneItem.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VupPreferenceRegistry.h>

#include <QTemporaryDir>
#include <QtTest>
#include <memory>

namespace MapTest {

// Samples at the places, without variables.
inline VsdPointSet pointSet(const QVector<QPointF>& at)
{
    VsdPointSet set;
    for (const QPointF& p : at)
        set.append(p.x(), p.y());
    return set;
}

// An item drawing the point set as points, titled as its id in capitals.
inline VugSceneItem pointsItem(const QString& id, const QString& dataset = QStringLiteral("a"))
{
    return VugSceneItem(id, id.toUpper(), VugERendering::POINTS, dataset);
}

} // namespace MapTest

struct MapTestData
{
    QTemporaryDir dir;
    std::unique_ptr<VssProject> project;
    std::unique_ptr<VugDatasetStore> datasets;

    MapTestData()
    {
        VupPreferenceRegistry::getInstance()->setStorageFile(dir.filePath(QStringLiteral("preferences.ini")));
        project = VssProject::create(dir.filePath(QStringLiteral("p")), QStringLiteral("P"));
        datasets = std::make_unique<VugDatasetStore>(*project);
        QVERIFY(addPoints(QStringLiteral("a"), {{0, 0}, {100, 50}}));
        QVERIFY(addPoints(QStringLiteral("b"), {{500, 500}}));
    }

    bool addPoints(const QString& key, const QVector<QPointF>& at) { return datasets->setPointSet(key, MapTest::pointSet(at)); }
};
