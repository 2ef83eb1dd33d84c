// The map view of a scene: a layer per item in z order that follows the scene's changes,
// the message for an item it cannot draw, zooming to all, centring with its quarter-view
// rule, the last zoom kept in the scene, and Escape back to panning.

#include <KbbDebug.h>
#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VwqBasemapPlot.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapView.h>

#include <QtTest>
#include <memory>

namespace {

VugSceneItem pointsItem(const QString& id, const QString& dataset = QStringLiteral("a"))
{
    return VugSceneItem(id, id.toUpper(), VugERendering::POINTS, dataset);
}

QList<double> zOrder(const VwvBasemapView& view)
{
    QList<double> z;
    for (int rank = 0; rank < view.getLayerCount(); ++rank)
        z << (view.getLayer(rank) ? view.getLayer(rank)->getZ() : -1.0);
    return z;
}

QStringList titles(const VwvBasemapView& view)
{
    QStringList t;
    for (int rank = 0; rank < view.getLayerCount(); ++rank)
        t << (view.getLayer(rank) ? view.getLayer(rank)->getTitle() : QStringLiteral("-"));
    return t;
}

} // namespace

class TestVwvBasemapView : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;
    std::unique_ptr<VssProject> _project;
    std::unique_ptr<VugDatasetStore> _datasets;

private Q_SLOTS:
    void initTestCase()
    {
        _project = VssProject::create(_dir.filePath(QStringLiteral("p")), QStringLiteral("P"));
        _datasets = std::make_unique<VugDatasetStore>(*_project);
        VsdPointSet a;
        a.append(0, 0);
        a.append(100, 50);
        VsdPointSet b;
        b.append(500, 500);
        QVERIFY(_datasets->setPointSet(QStringLiteral("a"), a));
        QVERIFY(_datasets->setPointSet(QStringLiteral("b"), b));
    }

    void layersFollowTheScene()
    {
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        scene.appendItem(pointsItem(QStringLiteral("y")));
        scene.appendItem(pointsItem(QStringLiteral("z"), QStringLiteral("b")));
        VwvBasemapView view;
        view.setScene(&scene, _datasets.get());
        QCOMPARE(zOrder(view), (QList<double>{1, 2, 3}));

        scene.moveItem(2, 0);
        QCOMPARE(titles(view), (QStringList{"Z", "X", "Y"}));
        QCOMPARE(zOrder(view), (QList<double>{1, 2, 3}));

        scene.insertItem(1, pointsItem(QStringLiteral("w")));
        QCOMPARE(titles(view), (QStringList{"Z", "W", "X", "Y"}));
        scene.removeItems({0, 2});
        QCOMPARE(titles(view), (QStringList{"W", "Y"}));
        QCOMPARE(zOrder(view), (QList<double>{1, 2}));

        scene.renameItem(1, QStringLiteral("Wells"));
        scene.setItemActive(0, false);
        QCOMPARE(titles(view), (QStringList{"W", "Wells"}));
        QVERIFY(!view.getLayer(0)->isVisible());
    }

    void anItemItCannotDrawIsReported()
    {
        QStringList warnings;
        const int sink = KbbDebug::addSink([&warnings](KbbDebug::Level level, const QString& text) {
            if (level == KbbDebug::Level::Warning)
                warnings << text;
        });
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("Surface"), VugERendering::SURFACE));
        scene.appendItem(pointsItem(QStringLiteral("y"), QStringLiteral("missing")));
        VwvBasemapView view;
        view.setScene(&scene, _datasets.get());
        KbbDebug::removeSink(sink);
        QCOMPARE(titles(view), (QStringList{"X", "-", "-"}));
        QCOMPARE(warnings.size(), 2);
        QCOMPARE(warnings.first(),
                 QStringLiteral("VwvBasemapView: cannot create render layer 'Surface': No 2D renderer for rendering '16'."));
    }

    void zoomsAndTheLastZoom()
    {
        VugScene empty(2);
        VwvBasemapView view;
        view.resize(400, 400);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        view.setScene(&empty, _datasets.get());
        const QRectF before = view.getCurrentZoom();
        view.viewAll();
        QCOMPARE(view.getCurrentZoom(), before); // nothing to show: nothing changes

        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        view.setScene(&scene, _datasets.get());
        const QRectF all = view.getCurrentZoom();
        QVERIFY2(all.contains(QRectF(-10, -5, 120, 60)), qPrintable(QStringLiteral("%1 %2 %3 %4")
                                                                        .arg(all.x()).arg(all.y()).arg(all.width()).arg(all.height())));
        QCOMPARE(scene.getLastZoom(), view.getCurrentZoom());

        // Within a quarter of the view of its centre: left alone; beyond: centred.
        const QRectF view0 = view.getCurrentZoom();
        view.centerAt(view0.center() + QPointF(0.24 * view0.width(), 0));
        QCOMPARE(view.getCurrentZoom(), view0);
        view.centerAt(view0.center() + QPointF(0.26 * view0.width(), 0));
        QVERIFY(qAbs(view.getCurrentZoom().center().x() - (view0.center().x() + 0.26 * view0.width())) < 1e-6);
        QVERIFY(view.canUndoZoom());
        view.undoZoom();
        QCOMPARE(view.getCurrentZoom(), view0);
        QVERIFY(view.canRedoZoom());

        // A scene opened again comes back to its last zoom.
        const QRectF last = scene.getLastZoom();
        VwvBasemapView again;
        again.resize(400, 400);
        again.show();
        QVERIFY(QTest::qWaitForWindowExposed(&again));
        again.setScene(&scene, _datasets.get());
        QVERIFY(qAbs(again.getCurrentZoom().center().x() - last.center().x()) < 1e-6);
    }

    void escapeGoesBackToPanning()
    {
        VwvBasemapView view;
        QSignalSpy modes(&view, &VwvBasemapView::modeChanged);
        view.setViewMode(Vw::MEASURE_LENGTH);
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(view.getCurrentMode(), Vw::PAN);
        QCOMPARE(modes.count(), 2);
        QCOMPARE(modes.last().at(0).toString(), QStringLiteral("Pan"));
    }
};

QTEST_MAIN(TestVwvBasemapView)
#include "tst_vwvbasemapview.moc"
