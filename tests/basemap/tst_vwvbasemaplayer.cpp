// A layer on the map plot: picks within 8 pixels whatever the zoom, picks and extents
// converted between the view's and the dataset's coordinate systems, snapping, the plot
// item following the layer's title, visibility and z, gone with either side, and sample
// selection: the four ways to mask, bad ranks, the ring drawn on the map, and layers that
// cannot select. The layers of a scene follow its items (moved, inserted, removed, renamed,
// hidden, or not drawable, which is reported) and the dataset store: a layer's selection
// kept in its point set (shown by the other layers of the set and by a second plot's, still
// there when the layer is rebuilt or the store reloaded), a replaced dataset redrawing only the
// layers that draw it, a removed one leaving its items without a layer until it comes back.
// Its image on the plot: drawn on the spot when cheap, on a worker thread when
// large (the kept image shown moved until the new one comes), at full quality for exports,
// and never delivered to an item that is gone. The point renderer's picks go to its set.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "LowerTestSupport.h"
#include "MapRendering.h"
#include "MapTestKit.h"
#include "MessageCatcher.h"
#include <KbbGlobal.h>
#include <KbeError.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>
#include <VugColorScale.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapRenderer.h>
#include <VwvBasemapRendererFactory.h>
#include <VwvBasemapRendererGridWire.h>
#include <VwvBasemapRendererPolygon.h>
#include <VwvBasemapRendererPolyline.h>
#include <VwvBasemapRendererRaster.h>
#include <VwvBasemapSceneLayers.h>
#include <VwvPointRasterizer.h>

#include <QSemaphore>
#include <typeinfo>

namespace {


// Pixels of the selection colour within `reach` pixels of where the map point is shown.
int ringNear(VwqBasemapPlot& plot, const QPointF& mapPoint, int reach = 2)
{
    const QPoint centre = plot.viewToPixel(mapPoint).toPoint();
    const QImage around = plot.canvas()->grab().toImage().copy(QRect(centre - QPoint(reach, reach), QSize(2 * reach + 1, 2 * reach + 1)));
    return ImageChecks::countNear(around, QColor(VwvPointRasterizer::Style().selectionColor), 4);
}

// count samples on the diagonal from (start, start), one unit apart, with a "Thickness".
VsdPointSet diagonal(double start, int count)
{
    VsdPointSet set;
    for (int i = 0; i < count; ++i)
        set.append(start + i, start + i);
    QVector<double> thickness(count, 2.0);
    set.addVariable(QStringLiteral("Thickness"), thickness);
    return set;
}

// A project holding a (samples 0..4), b (10..12) and c (20..21), and a scene whose items
// X, Y, Z draw the given keys, laid out on a plot.
struct World
{
    MapTestData data;
    std::unique_ptr<VugDatasetStore>& store = data.datasets;
    VugScene scene{1};
    VwqBasemapPlot plot;
    VwvBasemapSceneLayers layers{&plot};

    explicit World(const QStringList& keys)
    {
        store->setPointSet(QStringLiteral("a"), diagonal(0, 5));
        store->setPointSet(QStringLiteral("b"), diagonal(10, 3));
        store->setPointSet(QStringLiteral("c"), diagonal(20, 2));
        const QStringList ids = {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("z")};
        for (int i = 0; i < keys.size(); ++i)
            scene.appendItem(MapTest::pointsItem(ids.at(i), keys.at(i)));
        layers.setScene(&scene, store.get());
    }

    // Each layer's title, z and selection ("X 1 1-2"), "-" for an item without a layer.
    QStringList state() const
    {
        QStringList state;
        for (int rank = 0; rank < layers.count(); ++rank) {
            const VwvBasemapLayer* layer = layers.getLayer(rank);
            if (!layer)
                state << QStringLiteral("-");
            else
                state << QStringLiteral("%1 %2 %3").arg(layer->getTitle()).arg(layer->getZ()).arg(layer->getSelection().toString()).trimmed();
        }
        return state;
    }
};

// Paints a filled square of map units [40, 60] x [40, 60], claiming to be costly so that
// the item draws it on a worker thread unless told otherwise; it may be held at a gate,
// and may fail every drawing.
class SquareRenderer : public VwvIBasemapRenderer
{
public:
    enum Failure { NONE, OURS, STANDARD };
    explicit SquareRenderer(QRgb color, QSemaphore* gate = nullptr, Failure failure = NONE,
                            qint64 cost = VwvBasemapImageItem::SYNCHRONOUS_COST * 10)
        : _color(color), _gate(gate), _failure(failure), _cost(cost)
    {
    }
    QRectF boundingRect() const override { return QRectF(0, 0, 100, 100); }
    void render(QImage& image, const QwtScaleMap& x, const QwtScaleMap& y) const override
    {
        if (_gate)
            _gate->acquire();
        ++renders;
        if (_failure == STANDARD)
            throw std::runtime_error("disk on fire");
        if (_failure == OURS)
            throw KbeError(QStringLiteral("the grid file is damaged"));
        QPainter(&image).fillRect(QRectF(QPointF(x.transform(40), y.transform(60)), QPointF(x.transform(60), y.transform(40))),
                                  QColor(_color));
    }
    qint64 renderCost() const override { return _cost; }
    int pointToRank(const QPointF&, double) const override { return -1; }
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF&) const override { return {}; }
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF&) const override { return {}; }

    mutable QAtomicInt renders;

private:
    QRgb _color;
    QSemaphore* _gate;
    Failure _failure;
    qint64 _cost;
};

struct Map
{
    VwqBasemapPlot plot;
    VwvBasemapImageItem* item = new VwvBasemapImageItem(QStringLiteral("layer"));

    Map()
    {
        plot.resize(400, 400);
        plot.addPlotItem(item);
        item->setZ(1.0); // over the grid, as layers are
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        plot.zoomer()->resetZoom(QRectF(0, 0, 100, 100));
    }
    void show(std::shared_ptr<VwvIBasemapRenderer> renderer)
    {
        item->setRenderer(std::move(renderer));
        plot.replot();
    }
    QRgb at(const QPointF& mapPoint) { return plot.canvas()->grab().toImage().pixel(plot.viewToPixel(mapPoint).toPoint()); }
};

} // namespace

using namespace MapRendering;

class TestVwvBasemapLayer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void valuesTakeTheScaleColours()
    {
        const double xs[] = {10, 20, 30, 40};
        const double ys[] = {50, 50, 50, 50};
        const double values[] = {0.0, 0.5, 1.0, KbbGlobal::D_FFFF};
        VugColorScale scale = VugColorScale::rainbow();
        scale.setRange(0.0, 1.0);
        for (const int size : {1, 3}) {
            VwvPointRasterizer r = rasterizer(xs, ys, 4, size);
            r.setValues(values, scale);
            WhiteCanvas c;
            c.draw(r);
            for (int i = 0; i < 3; ++i)
                QVERIFY2(ImageChecks::near(c.image.pixel(int(xs[i]), 50), scale.colorAt(values[i]), 3), qPrintable(QString::number(i)));
            // Undefined with a transparent undefined colour: not drawn at all.
            QCOMPARE(c.image.pixel(40, 50), qRgb(255, 255, 255));
        }
        scale.setUndefinedColor(qRgb(1, 2, 3));
        VwvPointRasterizer r = rasterizer(xs, ys, 4);
        r.setValues(values, scale);
        WhiteCanvas c;
        c.draw(r);
        QCOMPARE(c.image.pixel(40, 50), qRgb(1, 2, 3));
    }

    // A sample drawn alone: the pixels of its colour (black, or the grey it makes over white).
    void picksWithinEightPixels_data()
    {
        Row<QRectF, QPointF, int>::addColumns(); // view, click, rank

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
        auto [view, click, rank] = Row<QRectF, QPointF, int>::fetch();

        auto plot = MapTest::showPlot(view);
        QVERIFY(plot);
        VwvBasemapLayer layer(plot.get(), points({{10, 10}, {50, 50}, {45, 45}}));
        QCOMPARE(layer.pointToRank(click), rank);
    }

    void picksAreConvertedToTheDatasetsSystem()
    {
        // The view in kilometres, the samples in metres.
        auto plot = MapTest::showPlot(QRectF(0, 0, 20, 20));
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
        auto plot = MapTest::showPlot(QRectF(0, 0, 100, 100));
        auto layer = std::make_unique<VwvBasemapLayer>(plot.get(), points({{10, 10}}));
        VwvBasemapImageItem* item = layer->getPlotItem();
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

        // The plot may go first: the layer then answers without it, and selects nothing.
        auto second = std::make_unique<VwvBasemapLayer>(plot.get(), points({{10, 10}}));
        plot.reset();
        QCOMPARE(second->getPlotItem(), nullptr);
        QCOMPARE(second->pointToRank(QPointF(10, 10)), -1);
        QSignalSpy changed(second.get(), &VwvBasemapLayer::sampleSelectionChanged);
        second->mask(0, Vu::SELECT);
        QCOMPARE(changed.count(), 0);
        second.reset();
    }

    void mask_data()
    {
        // One rank goes through mask(int), any other count through the set.
        Row<QVector<int>, QVector<int>, int, QString, int, bool>::addColumns(); // before, ranks, flag, after, emitted, warns

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
        auto [before, ranks, flag, after, emitted, warns] = Row<QVector<int>, QVector<int>, int, QString, int, bool>::fetch();

        VwqBasemapPlot plot;
        VwvBasemapLayer layer(&plot, points({{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}}, before));
        QSignalSpy changed(&layer, &VwvBasemapLayer::sampleSelectionChanged);
        // Masked again (but toggled), the selection stays where it is, and says nothing.
        for (int time = 0; time < (flag == Vu::TOGGLE ? 1 : 2); ++time) {
            if (warns)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwvBasemapLayer::mask: ")));
            if (ranks.size() == 1)
                layer.mask(ranks.first(), Vu::SelectionFlag(flag));
            else
                layer.mask(KbiIntervalIntSmallDisjoint::fromList(ranks), Vu::SelectionFlag(flag));
            QCOMPARE(layer.getSelection().toString(), after);
            QCOMPARE(changed.count(), emitted);
        }
        if (emitted)
            QCOMPARE(changed.first().at(0).value<VwvBasemapLayer*>(), &layer);
    }

    void theSelectedSampleIsRingedOnTheMap()
    {
        auto plot = MapTest::showPlot(QRectF(0, 0, 100, 100));
        QVERIFY(plot);
        VwvBasemapLayer layer(plot.get(), points({{30.5, 50.5}, {60.5, 50.5}}));
        layer.setZ(1.0); // over the grid
        plot->replot();
        QCOMPARE(ringNear(*plot, QPointF(60.5, 50.5)), 0);
        layer.mask(1, Vu::SELECT);
        QVERIFY(ringNear(*plot, QPointF(60.5, 50.5)) >= 6);
        QCOMPARE(ringNear(*plot, QPointF(60.5, 50.5), 0), 0); // around the sample, not over it
        QCOMPARE(ringNear(*plot, QPointF(30.5, 50.5)), 0);
        layer.clearSelection();
        QCOMPARE(ringNear(*plot, QPointF(60.5, 50.5)), 0);
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
    }

    void layersFollowTheScene()
    {
        World w({QStringLiteral("a"), QStringLiteral("a"), QStringLiteral("b")});
        w.scene.moveItem(2, 0);
        QCOMPARE(w.state(), (QStringList{"Z 1", "X 2", "Y 3"}));
        w.scene.insertItem(1, MapTest::pointsItem(QStringLiteral("w")));
        w.scene.removeItems({0, 2}); // Z and X
        QCOMPARE(w.state(), (QStringList{"W 1", "Y 2"}));
        w.scene.renameItem(1, QStringLiteral("Wells"));
        QCOMPARE(w.state(), (QStringList{"W 1", "Wells 2"}));
        // Items that cannot be drawn keep their place without a layer, each reported.
        MessageCatcher caught;
        w.scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("Surface"), VugERendering::SURFACE));
        w.scene.appendItem(MapTest::pointsItem(QStringLiteral("v"), QStringLiteral("missing")));
        caught.stop();
        QCOMPARE(w.state(), (QStringList{"W 1", "Wells 2", "-", "-"}));
        QCOMPARE(caught.warnings.size(), 2);
        QCOMPARE(caught.warnings.first(),
                 QStringLiteral("VwvBasemapView: cannot create render layer 'Surface': No 2D renderer for rendering '16'."));
    }

    void theSelectionIsKeptInThePointSet()
    {
        World w({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("a")});
        VwqBasemapPlot overviewPlot;
        VwvBasemapSceneLayers overview(&overviewPlot);
        overview.setScene(&w.scene, w.store.get());
        QSignalSpy selection(&w.layers, &VwvBasemapSceneLayers::selectionChanged);
        QSignalSpy rebuilt(&w.layers, &VwvBasemapSceneLayers::layersChanged);
        QSignalSpy stored(w.store.get(), &VugDatasetStore::datasetChanged);
        const QPointer<VwvBasemapLayer> x = w.layers.getLayer(0);
        const QPointer<VwvBasemapLayer> y = w.layers.getLayer(1);
        const QPointer<VwvBasemapLayer> z = w.layers.getLayer(2);

        x->mask(KbiIntervalIntSmallDisjoint(1, 2), Vu::SELECT);
        QCOMPARE(w.store->pointSet(QStringLiteral("a"))->selection().toString(), QStringLiteral("1-2"));
        QCOMPARE(selection.count(), 1);
        QCOMPARE(stored.count(), 1);
        // The layer that was masked stays; Z, drawing the same set, is redrawn with it.
        QCOMPARE(w.layers.getLayer(0), x.data());
        QCOMPARE(w.layers.getLayer(1), y.data());
        QVERIFY(!z);
        QCOMPARE(w.state(), (QStringList{"X 1 1-2", "Y 2", "Z 3 1-2"}));
        QCOMPARE(rebuilt.count(), 1);
        QCOMPARE(overview.getLayer(0)->getSelection().toString(), QStringLiteral("1-2"));

        // Nothing new: nothing written.
        x->mask(2, Vu::SELECT);
        QCOMPARE(selection.count(), 1);
        QCOMPARE(stored.count(), 1);

        // A layer made again for the item reads the selection from the set.
        QVERIFY(w.scene.setItemSource(0, QStringLiteral("a"), QStringLiteral("Thickness")));
        QVERIFY(!x);
        QCOMPARE(w.layers.getLayer(0)->getSelection().toString(), QStringLiteral("1-2"));

        // Loading the store again puts the saved set, with its selection, back on the map.
        w.store->save();
        w.layers.getLayer(0)->mask(4, Vu::REPLACE);
        QCOMPARE(w.store->pointSet(QStringLiteral("a"))->selection().toString(), QStringLiteral("4"));
        w.store->load();
        QCOMPARE(w.store->pointSet(QStringLiteral("a"))->selection().toString(), QStringLiteral("1-2"));
        QCOMPARE(w.state(), (QStringList{"X 1 1-2", "Y 2", "Z 3 1-2"}));
    }

    void layersFollowTheirDatasets_data()
    {
        // yBounds: null: Y has no layer
        Row<QStringList, bool, QRectF, int>::addColumns(); // events, yRebuilt, yBounds, rebuilds

        const QRectF before(10, 10, 2, 2);
        const QRectF after(50, 50, 3, 3);
        QTest::newRow("its set replaced") << QStringList{"set b"} << true << after << 1;
        QTest::newRow("its set removed") << QStringList{"remove b"} << true << QRectF() << 1;
        QTest::newRow("its set removed and put back") << QStringList{"remove b", "set b"} << true << after << 2;
        QTest::newRow("a set no item draws") << QStringList{"set d", "remove d"} << false << before << 0;
        QTest::newRow("another item's set replaced") << QStringList{"set c"} << false << before << 1;
    }
    void layersFollowTheirDatasets()
    {
        auto [events, yRebuilt, yBounds, rebuilds] = Row<QStringList, bool, QRectF, int>::fetch();

        World w({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")});
        w.scene.renameItem(1, QStringLiteral("Wells"));
        w.scene.setItemActive(1, false);
        const QPointer<VwvBasemapLayer> x = w.layers.getLayer(0);
        const QPointer<VwvBasemapLayer> y = w.layers.getLayer(1);
        QSignalSpy rebuilt(&w.layers, &VwvBasemapSceneLayers::layersChanged);

        for (const QString& event : events) {
            const QString key = event.section(QLatin1Char(' '), 1);
            if (event.startsWith(QLatin1String("set"))) {
                QVERIFY(w.store->setPointSet(key, diagonal(50, 4)));
            } else {
                if (key == QLatin1String("b"))
                    QTest::ignoreMessage(QtWarningMsg, "VwvBasemapView: cannot create render layer 'Wells': The item "
                                                       "'Wells' needs the point set 'b', which the project does not hold.");
                QVERIFY(w.store->remove(key));
            }
        }

        QCOMPARE(rebuilt.count(), rebuilds);
        QCOMPARE(w.layers.getLayer(0), x.data());
        QCOMPARE(!y, yRebuilt);
        QCOMPARE(w.state(), (QStringList{"X 1", yBounds.isNull() ? "-" : "Wells 2", "Z 3"}));
        const VwvBasemapLayer* layer = w.layers.getLayer(1);
        QVERIFY(!layer || (layer->boundingRect() == yBounds && !layer->isVisible()));
        // The third layer is only made again when its own set changed.
        const bool zOwnSet = events.contains(QStringLiteral("set c"));
        QCOMPARE(w.layers.getLayer(2)->boundingRect(), zOwnSet ? QRectF(50, 50, 3, 3) : QRectF(20, 20, 1, 1));
    }

    // A costly drawing comes from a worker; an export draws it in full at once. Meanwhile the
    // map shows the kept image, moved to a new view, or the old renderer's picture.
    void largeDrawingsComeFromAWorkerInTurn()
    {
        QSemaphore gate;
        Map map;
        auto renderer = std::make_shared<SquareRenderer>(qRgb(0, 0, 255));
        map.show(renderer);
        const int exported = ImageChecks::countNear(MapTest::rendered(map.plot), QColor(0, 0, 255));
        QVERIFY2(exported > 1000, qPrintable(QString::number(exported)));
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        // Zoomed out twice as far: the kept image shows at once, scaled, then the new one.
        const int before = renderer->renders;
        map.plot.zoomer()->zoom(QRectF(-50, -50, 200, 200));
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        QTRY_VERIFY(renderer->renders > before);
        QTRY_VERIFY(!map.item->isRendering());
        QCOMPARE(map.at(QPointF(45, 45)), qRgb(0, 0, 255));
        QVERIFY(map.at(QPointF(20, 20)) != qRgb(0, 0, 255));
        // While the new drawing is held, the map shows the old one rather than nothing.
        map.show(std::make_shared<SquareRenderer>(qRgb(200, 0, 0), &gate));
        QTRY_VERIFY(map.item->isRendering());
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        // A third renderer meanwhile, drawn on the spot: the held drawing, finished late, is
        // not shown over it.
        map.show(std::make_shared<SquareRenderer>(qRgb(0, 200, 200), nullptr, SquareRenderer::NONE, 10));
        gate.release();
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 200, 200));
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 200, 200));
    }

    void anItemGoneBeforeItsImageIsLeftAlone()
    {
        QSemaphore gate;
        auto map = std::make_unique<Map>();
        map->show(std::make_shared<SquareRenderer>(qRgb(1, 2, 3), &gate));
        QTRY_VERIFY(map->item->isRendering());
        map.reset(); // the plot deletes its items
        gate.release();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents(); // a stray delivery would crash here
    }

    void drawingErrorsAreReportedOnce_data()
    {
        Row<qint64, int, QString>::addColumns(); // cost, failure, message
        QTest::newRow("on the spot") << qint64(10) << int(SquareRenderer::OURS)
                                     << "Error while drawing layer 'layer': the grid file is damaged";
        QTest::newRow("on a worker") << VwvBasemapImageItem::SYNCHRONOUS_COST * 10 << int(SquareRenderer::STANDARD)
                                     << "Error while drawing layer 'layer': std::exception: disk on fire";
    }
    void drawingErrorsAreReportedOnce()
    {
        auto [cost, failure, message] = Row<qint64, int, QString>::fetch();
        MessageCatcher caught;
        Map map;
        auto failing = std::make_shared<SquareRenderer>(0, nullptr, SquareRenderer::Failure(failure), cost);
        map.show(failing);
        QTRY_COMPARE(caught.warnings.size(), 1);
        QTRY_VERIFY(!map.item->isRendering());
        QCoreApplication::processEvents();
        // Replots of the same view do not try again, nor repeat the message.
        const int tries = failing->renders;
        map.plot.replot();
        map.plot.replot();
        QCoreApplication::processEvents();
        QCOMPARE(int(failing->renders), tries);
        QVERIFY(map.at(QPointF(50, 50)) != qRgb(0, 0, 0));
        // A working renderer draws again.
        map.show(std::make_shared<SquareRenderer>(qRgb(0, 0, 255)));
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        caught.stop();
        QCOMPARE(caught.warnings, QStringList{message});
    }

    void sharpOnHighDpiScreens_data()
    {
        Row<qreal, int>::addColumns(); // ratio, dotSize
        QTest::newRow("double density, 5-pixel symbol") << qreal(2) << 5;
        QTest::newRow("double density, one-pixel dot") << qreal(2) << 1;
        QTest::newRow("one and a half") << qreal(1.5) << 5;
    }
    void sharpOnHighDpiScreens()
    {
        auto [ratio, dotSize] = Row<qreal, int>::fetch();
        // A screen's backing store: a pixmap of that many device pixels per logical pixel.
        QPixmap screen(QSize(100, 100) * ratio);
        screen.setDevicePixelRatio(ratio);
        screen.fill(Qt::white);
        VwvPointRasterizer::Style style;
        style.size = dotSize;
        VwvBasemapImageItem item;
        item.setRenderer(std::make_shared<VwvBasemapRenderer>(MapTest::pointSet({{50, 50}}), QString(), VugColorScale::rainbow(), style));
        const MapTest::Canvas maps;
        QPainter painter(&screen);
        item.draw(&painter, maps.xMap, maps.yMap, QRectF(0, 0, 100, 100));
        painter.end();
        const QImage image = screen.toImage();
        const int marked = ImageChecks::count(image, [](QRgb p) { return p != qRgb(255, 255, 255); });
        // The symbol keeps its logical size, in as many device pixels as the screen has; a
        // dot stays one device pixel.
        const double across = std::lround(dotSize * ratio);
        const int expected = dotSize == 1 ? 1 : int(std::lround(M_PI * across * across / 4.0));
        QVERIFY2(qAbs(marked - expected) <= expected / 4 + 1, qPrintable(QStringLiteral("%1 pixels marked, %2 expected").arg(marked).arg(expected)));
        // Centred on the sample, in device pixels.
        const QPoint centre(int(50 * ratio), int(50 * ratio));
        QVERIFY(image.pixel(centre) != qRgb(255, 255, 255) || image.pixel(centre - QPoint(1, 1)) != qRgb(255, 255, 255));
    }

    // A sample drawn alone: the pixels of its colour (black, or the grey it makes over white).
};

QTEST_MAIN(TestVwvBasemapLayer)
#include "tst_vwvbasemaplayer.moc"
