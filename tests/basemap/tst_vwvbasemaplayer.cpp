// A layer on the map plot: picks within 8 pixels whatever the zoom, picks and extents
// converted between the view's and the dataset's coordinate systems, snapping, the plot
// item following the layer's title, visibility and z, gone with either side, and sample
// selection: the four ways to mask, bad ranks, the ring drawn on the map, and layers that
// cannot select.

#include <VsdPointSet.h>
#include <VsdPolygonSet.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapRenderer.h>
#include <VwvBasemapRendererPolygon.h>

#include <qwt_plot_canvas.h>

#include <QtTest>
#include <memory>

namespace {

std::shared_ptr<VwvBasemapRenderer> points(const QVector<QPointF>& at, const QVector<int>& selected = {})
{
    VsdPointSet set;
    for (const QPointF& p : at)
        set.append(p.x(), p.y());
    set.select(KbiIntervalIntSmallDisjoint::fromList(selected));
    return std::make_shared<VwvBasemapRenderer>(set);
}

// Pixels of the colour within two pixels of where the map point is shown.
int pixelsNear(VwqBasemapPlot& plot, const QPointF& mapPoint, QRgb color)
{
    const QImage image = plot.canvas()->grab().toImage();
    const QPoint centre = plot.viewToPixel(mapPoint).toPoint();
    int n = 0;
    for (int y = centre.y() - 2; y <= centre.y() + 2; ++y)
        for (int x = centre.x() - 2; x <= centre.x() + 2; ++x) {
            const QRgb p = image.valid(x, y) ? image.pixel(x, y) : 0;
            n += std::abs(qRed(p) - qRed(color)) <= 4 && std::abs(qGreen(p) - qGreen(color)) <= 4
                && std::abs(qBlue(p) - qBlue(color)) <= 4;
        }
    return n;
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

    void mask_data()
    {
        QTest::addColumn<QVector<int>>("before");
        // One rank goes through mask(int), any other count through the set.
        QTest::addColumn<QVector<int>>("ranks");
        QTest::addColumn<int>("flag");
        QTest::addColumn<QString>("after");
        QTest::addColumn<int>("emitted");
        QTest::addColumn<bool>("warns");

        using V = QVector<int>;
        QTest::newRow("select one") << V{} << V{2} << int(Vu::SELECT) << "2" << 1 << false;
        QTest::newRow("select a set beside the selection") << V{0} << V{2, 3} << int(Vu::SELECT) << "0, 2-3" << 1 << false;
        QTest::newRow("select what is selected") << V{1, 2, 3} << V{2} << int(Vu::SELECT) << "1-3" << 0 << false;
        QTest::newRow("deselect one") << V{1, 2, 3} << V{2} << int(Vu::DESELECT) << "1, 3" << 1 << false;
        QTest::newRow("deselect what is not selected") << V{1} << V{3, 4} << int(Vu::DESELECT) << "1" << 0 << false;
        QTest::newRow("toggle one off") << V{1, 2} << V{2} << int(Vu::TOGGLE) << "1" << 1 << false;
        QTest::newRow("toggle a set across the selection") << V{1, 2} << V{2, 3} << int(Vu::TOGGLE) << "1, 3" << 1 << false;
        QTest::newRow("replace") << V{0, 1} << V{3, 4} << int(Vu::REPLACE) << "3-4" << 1 << false;
        QTest::newRow("replace by the same") << V{3, 4} << V{3, 4} << int(Vu::REPLACE) << "3-4" << 0 << false;
        QTest::newRow("replace by nothing clears") << V{1} << V{} << int(Vu::REPLACE) << "" << 1 << false;
        QTest::newRow("ranks beyond the samples are left out") << V{} << V{3, 4, 5, 9} << int(Vu::SELECT) << "3-4" << 1 << true;
        QTest::newRow("only ranks beyond: ignored") << V{1} << V{5, 6} << int(Vu::REPLACE) << "1" << 0 << true;
        QTest::newRow("one rank beyond: ignored") << V{1} << V{7} << int(Vu::REPLACE) << "1" << 0 << true;
        QTest::newRow("negative rank: ignored") << V{1} << V{-1} << int(Vu::REPLACE) << "1" << 0 << true;
    }
    void mask()
    {
        QFETCH(QVector<int>, before);
        QFETCH(QVector<int>, ranks);
        QFETCH(int, flag);
        QFETCH(QString, after);
        QFETCH(int, emitted);
        QFETCH(bool, warns);

        VwqBasemapPlot plot;
        VwvBasemapLayer layer(&plot, points({{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}}, before));
        QSignalSpy changed(&layer, &VwvBasemapLayer::sampleSelectionChanged);
        const auto apply = [&] {
            if (warns)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwvBasemapLayer::mask: ")));
            if (ranks.size() == 1)
                layer.mask(ranks.first(), Vu::SelectionFlag(flag));
            else
                layer.mask(KbiIntervalIntSmallDisjoint::fromList(ranks), Vu::SelectionFlag(flag));
        };
        apply();
        QCOMPARE(layer.getSelection().toString(), after);
        QCOMPARE(changed.count(), emitted);
        if (emitted)
            QCOMPARE(changed.first().at(0).value<VwvBasemapLayer*>(), &layer);

        // Masked again, the selection stays where it is, and says nothing.
        if (flag != Vu::TOGGLE) {
            apply();
            QCOMPARE(layer.getSelection().toString(), after);
            QCOMPARE(changed.count(), emitted);
        }
    }

    void theSelectedSampleIsRingedOnTheMap()
    {
        const QRgb ring = VwvPointRasterizer::Style().selectionColor;
        auto plot = makePlot(QRectF(0, 0, 100, 100));
        QVERIFY(plot);
        VwvBasemapLayer layer(plot.get(), points({{30.5, 50.5}, {60.5, 50.5}}));
        layer.setZ(1.0); // over the grid
        plot->replot();
        QCOMPARE(pixelsNear(*plot, QPointF(60.5, 50.5), ring), 0);

        layer.mask(1, Vu::SELECT);
        QVERIFY(pixelsNear(*plot, QPointF(60.5, 50.5), ring) >= 6);
        QCOMPARE(pixelsNear(*plot, QPointF(30.5, 50.5), ring), 0);

        layer.clearSelection();
        QCOMPARE(pixelsNear(*plot, QPointF(60.5, 50.5), ring), 0);
    }

    void aLayerThatCannotSelectIgnoresMasks()
    {
        VsdPolygonSet polygons;
        polygons.append(QPolygonF({{0, 0}, {10, 0}, {10, 10}}));
        polygons.append(QPolygonF({{20, 0}, {30, 0}, {30, 10}}));
        VwqBasemapPlot plot;
        VwvBasemapLayer layer(&plot, std::make_shared<VwvBasemapRendererPolygon>(polygons));
        const auto renderer = layer.getRenderer();
        QSignalSpy changed(&layer, &VwvBasemapLayer::sampleSelectionChanged);
        layer.mask(0, Vu::SELECT);
        layer.mask(KbiIntervalIntSmallDisjoint(0, 1), Vu::REPLACE);
        layer.clearSelection();
        QCOMPARE(changed.count(), 0);
        QVERIFY(layer.getSelection().isEmpty());
        QCOMPARE(layer.getRenderer(), renderer);

        // Nor does a layer whose plot is gone.
        auto orphan = std::make_unique<VwqBasemapPlot>();
        VwvBasemapLayer left(orphan.get(), points({{1, 1}}));
        orphan.reset();
        QSignalSpy leftChanged(&left, &VwvBasemapLayer::sampleSelectionChanged);
        left.mask(0, Vu::SELECT);
        QCOMPARE(leftChanged.count(), 0);
    }
};

QTEST_MAIN(TestVwvBasemapLayer)
#include "tst_vwvbasemaplayer.moc"
