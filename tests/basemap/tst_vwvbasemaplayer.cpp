// A layer on the map plot: picks within 8 pixels whatever the zoom, picks and extents
// converted between the view's and the dataset's coordinate systems, snapping, and the
// plot item following the layer's title, visibility and z, gone with either side.

#include <VsdPointSet.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapRenderer.h>

#include <qwt_plot_canvas.h>

#include <QtTest>
#include <memory>

namespace {

std::shared_ptr<VwvBasemapRenderer> points(const QVector<QPointF>& at)
{
    VsdPointSet set;
    for (const QPointF& p : at)
        set.append(p.x(), p.y());
    return std::make_shared<VwvBasemapRenderer>(set);
}

// A plot whose canvas is exactly 400 x 400 pixels, showing `view`.
std::unique_ptr<VwqBasemapPlot> makePlot(const QRectF& view)
{
    auto plot = std::make_unique<VwqBasemapPlot>();
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plot->enableAxis(axis, false);
    plot->canvas()->setFixedSize(400, 400);
    plot->show();
    if (!QTest::qWaitForWindowExposed(plot.get()))
        return nullptr;
    plot->zoomer()->resetZoom(view);
    return plot;
}

} // namespace

class TestVwvBasemapLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picksWithinEightPixels_data()
    {
        QTest::addColumn<QRectF>("view");
        QTest::addColumn<QPointF>("click");
        QTest::addColumn<int>("rank");

        // 400 pixels over 100 units: 8 pixels are 2 units.
        QTest::newRow("1.4 units away, picked") << QRectF(0, 0, 100, 100) << QPointF(51, 51) << 1;
        QTest::newRow("4.2 units away, missed") << QRectF(0, 0, 100, 100) << QPointF(53, 53) << -1;
        // Zoomed out four times: the same 8 pixels are 8 units.
        QTest::newRow("zoomed out, picked") << QRectF(0, 0, 400, 400) << QPointF(53, 53) << 1;
        QTest::newRow("the nearer of two") << QRectF(0, 0, 400, 400) << QPointF(48, 48) << 1;
        QTest::newRow("NaN click") << QRectF(0, 0, 100, 100) << QPointF(qQNaN(), 50) << -1;
    }
    void picksWithinEightPixels()
    {
        QFETCH(QRectF, view);
        QFETCH(QPointF, click);
        QFETCH(int, rank);

        auto plot = makePlot(view);
        QVERIFY(plot);
        VwvBasemapLayer layer(plot.get(), points({{10, 10}, {50, 50}, {45, 45}}));
        QCOMPARE(layer.pointToRank(click), rank);
    }

    void picksAreConvertedToTheDatasetsSystem()
    {
        // The view in kilometres, the samples in metres.
        auto plot = makePlot(QRectF(0, 0, 20, 20));
        VwvBasemapLayer layer(plot.get(), points({{10000, 10000}, {15000, 12000}}));
        layer.setCoordinateSystems(VuuCoordSystem::local(KbuUnit::fromKey(QStringLiteral("km"))),
                                   VuuCoordSystem::local(KbuUnit::fromKey(QStringLiteral("m"))));
        QCOMPARE(layer.pointToRank(QPointF(10.05, 10.05)), 0);
        QCOMPARE(layer.rectangleToRank(QRectF(14, 11, 2, 2)).toList(), QVector<int>{1});
        QCOMPARE(layer.polygonToRanks(QPolygonF({{0, 0}, {20, 0}, {0, 20}})).toList(), (QVector<int>{0}));
        const QRectF extent = layer.boundingRect();
        QVERIFY(qAbs(extent.left() - 10) < 1e-9 && qAbs(extent.right() - 15) < 1e-9);

        QPointF snapped(10.05, 9.98);
        QVERIFY(layer.snapToPoints(snapped));
        QVERIFY(qAbs(snapped.x() - 10) < 1e-9 && qAbs(snapped.y() - 10) < 1e-9);
        QPointF far(3, 3);
        QVERIFY(!layer.snapToPoints(far));
        QCOMPARE(far, QPointF(3, 3));

        // Systems that do not convert into each other pick nothing.
        layer.setCoordinateSystems(VuuCoordSystem::local(), VuuCoordSystem(QStringLiteral("EPSG:32631")));
        QCOMPARE(layer.pointToRank(QPointF(10000, 10000)), -1);
        QVERIFY(layer.rectangleToRank(QRectF(0, 0, 20000, 20000)).isEmpty());
    }

    void thePlotItemFollowsTheLayer()
    {
        auto plot = makePlot(QRectF(0, 0, 100, 100));
        auto layer = std::make_unique<VwvBasemapLayer>(plot.get(), points({{10, 10}}));
        VwvBasemapImageItem* item = layer->getPlotItem();
        QCOMPARE(item->plot(), plot.get());
        layer->setTitle(QStringLiteral("Samples"));
        layer->setVisible(false);
        layer->setZ(3.0);
        QCOMPARE(item->title().text(), QStringLiteral("Samples"));
        QVERIFY(!item->isVisible());
        QCOMPARE(item->z(), 3.0);
        QSignalSpy highlight(layer.get(), &VwvBasemapLayer::highlightChanged);
        layer->setCurrentSubItemId(QStringLiteral("well-3"));
        layer->setCurrentSubItemId(QStringLiteral("well-3"));
        QCOMPARE(highlight.count(), 1);

        layer.reset();
        QVERIFY(plot->itemList(QwtPlotItem::Rtti_PlotUserItem + 1).isEmpty());

        // The plot may go first: the layer then answers without it.
        auto second = std::make_unique<VwvBasemapLayer>(plot.get(), points({{10, 10}}));
        plot.reset();
        QCOMPARE(second->getPlotItem(), nullptr);
        QCOMPARE(second->pointToRank(QPointF(10, 10)), -1);
        second.reset();
    }
};

QTEST_MAIN(TestVwvBasemapLayer)
#include "tst_vwvbasemaplayer.moc"
