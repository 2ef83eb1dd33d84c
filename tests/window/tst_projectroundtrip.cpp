// The demo's windows saved with a project and brought back when it reopens: the same
// windows, scenes, report and workspace.

#include "DemoMapWindow.h"
#include <VwvBasemapView.h>
#include "DemoMainWindow.h"
#include "DemoSampleProject.h"
#include "DemoWindowFactory.h"
#include "TestWindows.h"

#include <VwwReporterWindow.h>

#include <QDockWidget>
#include <QtTest>

namespace {

QDockWidget* dockOf(QWidget* window)
{
    for (QWidget* w = window; w; w = w->parentWidget())
        if (auto* dock = qobject_cast<QDockWidget*>(w))
            return dock;
    return nullptr;
}

// "classId:scene name" of each window, in registry order.
QStringList windowSummary()
{
    QStringList summary;
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows()) {
        if (!e.second)
            continue;
        QString line = e.second->getClassID();
        if (auto* display = qobject_cast<VwwASceneWindow*>(e.second.data()))
            line += QLatin1Char(':') + display->getScene().getName();
        summary << line;
    }
    return summary;
}

VwwASceneWindow* displayOf(const QString& classId)
{
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows())
        if (e.second && e.second->getClassID() == classId)
            return qobject_cast<VwwASceneWindow*>(e.second.data());
    return nullptr;
}

} // namespace

class TestProjectRoundTrip : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void init() { resetWindowFramework(); }
    void cleanup() { resetWindowFramework(); }

    void sameWindowsAndWorkspaceComeBack()
    {
        const QString folder = _dir.filePath(QStringLiteral("sample"));
        QString message;
        QVERIFY2(DemoSampleProject::ensure(folder, &message), qPrintable(message));

        VwwWindowRegistry::setWindowFactory(new DemoWindowFactory);
        auto main = std::make_unique<DemoMainWindow>();
        VwwWindowRegistry::setMainWindow(main.get());
        main->resize(1200, 800);
        main->show();
        QVERIFY(QTest::qWaitForWindowExposed(main.get()));
        QVERIFY(main->openProject(folder, true));

        // A first opening shows the first map and 3D scene in the default displays.
        QCOMPARE(windowSummary(), QStringList({"Reporter", "Display3D:Field in 3D", "Display2D:Field map"}));
        VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
        project->getModelScene().requestOpen(3); // the section
        QCOMPARE(windowSummary().size(), 4);
        VwwASceneWindow* section = displayOf(QStringLiteral("DisplaySection"));
        QVERIFY(section);
        VwwWindowRegistry::getReporterWindow()->appendText(QStringLiteral("Porosity looks fine."));

        // The user floats the section and brings the 3D display to the front.
        QDockWidget* sectionDock = dockOf(section);
        QVERIFY(sectionDock);
        sectionDock->setFloating(true);
        sectionDock->setGeometry(QRect(150, 160, 420, 310));
        // and zooms the map onto part of the field.
        auto* map = qobject_cast<DemoMapWindow*>(displayOf(QStringLiteral("Display2D")));
        QVERIFY(map);
        const QRectF zoom(431200, 6541200, 300, 200);
        map->getView()->zoomTo(zoom);
        const QRectF shown = map->getView()->getCurrentZoom();
        QVERIFY(shown.contains(zoom.adjusted(1, 1, -1, -1)));
        main->setActiveWindow(displayOf(QStringLiteral("Display3D")));
        QTRY_VERIFY(!displayOf(QStringLiteral("Display3D"))->visibleRegion().isEmpty());
        const QStringList before = windowSummary();

        QVERIFY(main->closeProject());
        QVERIFY(QFileInfo::exists(folder + QStringLiteral("/database/windows.xml")));
        QCOMPARE(windowSummary(), QStringList({"Reporter"})); // the displays were removable
        QVERIFY(VwwWindowRegistry::getReporterWindow()->isEmpty());

        QVERIFY(main->openProject(folder, true));
        QCOMPARE(windowSummary(), before);
        QVERIFY(VwwWindowRegistry::getReporterWindow()->toHtml().contains(QStringLiteral("Porosity looks fine.")));
        section = displayOf(QStringLiteral("DisplaySection"));
        sectionDock = dockOf(section);
        QVERIFY(sectionDock && sectionDock->isFloating());
        QCOMPARE(sectionDock->size(), QSize(420, 310));
        QTRY_VERIFY(!displayOf(QStringLiteral("Display3D"))->visibleRegion().isEmpty());
        QVERIFY(displayOf(QStringLiteral("Display2D"))->visibleRegion().isEmpty()); // a tab behind
        // The map comes back with its items drawn and the zoom it was left at.
        map = qobject_cast<DemoMapWindow*>(displayOf(QStringLiteral("Display2D")));
        QVERIFY(map);
        QCOMPARE(map->shownItems(), QStringList({"Samples (thickness)", "Boundary", "Thickness grid"}));
        for (int rank = 0; rank < 3; ++rank)
            QVERIFY(map->getView()->getLayer(rank));
        main->setActiveWindow(map);
        QTRY_VERIFY(!map->visibleRegion().isEmpty());
        QTRY_VERIFY(map->getView()->getCurrentZoom().contains(zoom.adjusted(1, 1, -1, -1)));
        QVERIFY(qAbs(map->getView()->getCurrentZoom().center().x() - shown.center().x()) < 1.0);
        QVERIFY(qAbs(map->getView()->getCurrentZoom().center().y() - shown.center().y()) < 1.0);

        QVERIFY(main->closeProject());
        VwwWindowRegistry::setMainWindow(nullptr);
    }
};

QTEST_MAIN(TestProjectRoundTrip)
#include "tst_projectroundtrip.moc"
