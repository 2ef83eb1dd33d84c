#pragma once
// What the map tests draw: a project in a temporary folder with its dataset store, the
// preferences kept beside it, and two point sets: "a" with (0, 0) and (100, 50), "b" with
// (500, 500).

#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VupPreferenceRegistry.h>

#include <QTemporaryDir>
#include <QtTest>
#include <memory>

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
        VsdPointSet a;
        a.append(0, 0);
        a.append(100, 50);
        VsdPointSet b;
        b.append(500, 500);
        QVERIFY(datasets->setPointSet(QStringLiteral("a"), a));
        QVERIFY(datasets->setPointSet(QStringLiteral("b"), b));
    }
};
