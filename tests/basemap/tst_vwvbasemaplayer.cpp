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

// Points drawn into an image by the point rasterizer, checked at known pixels: where a
// sample lands, how many pixels its disc covers when clipped or translucent, its colour from
// a scale (the selection ring is checked on the map, with the layers), and samples that must
// not be drawn (off the image, non-finite, undefined). The renderer a scene item gets, by its
// rendering (and the errors for renderings the map does not draw, and for a missing
// dataset); the polygon, polyline, grid wireframe and raster renderers drawn into a small
// image and checked at known pixels (a fill, a hole, an edge, a line, a cell's colour, a
// turned grid), their picks, refused styles, and input that must draw nothing and not crash.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "LowerTestSupport.h"
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

std::shared_ptr<VwvBasemapRenderer> points(const QVector<QPointF>& at, const QVector<int>& selected = {})
{
    VsdPointSet set = MapTest::pointSet(at);
    set.select(KbiIntervalIntSmallDisjoint::fromList(selected));
    return std::make_shared<VwvBasemapRenderer>(set);
}

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


using MapTest::Canvas;

// Colours compared with their opacity, which the renderers' fills carry.
bool close(QRgb a, QRgb b)
{
    return ImageChecks::near(a, b, 4) && std::abs(qAlpha(a) - qAlpha(b)) <= 4;
}

Canvas drawn(const VwvIBasemapRenderer& renderer, Canvas c)
{
    renderer.render(c.image, c.xMap, c.yMap);
    return c;
}

Canvas drawn(const VwvIBasemapRenderer& renderer, QImage::Format format = QImage::Format_ARGB32_Premultiplied)
{
    return drawn(renderer, Canvas(format));
}

// Whether a pixel within one of the map point's has the colour: aliased edges fall on
// either side of a line through pixel corners.
bool near(const Canvas& c, const QPointF& map, QRgb color)
{
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const QPointF p = map + QPointF(dx, dy);
            if (p.x() >= 0 && p.x() < 100 && p.y() > 0 && p.y() <= 100 && close(c.at(p), color))
                return true;
        }
    return false;
}

QPolygonF square(double x0, double y0, double x1, double y1)
{
    return QPolygonF(QVector<QPointF>{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// A square of 10..90 with a hole of 40..60, and a small square of 92..98 beside it.
VsdPolygonSet samplePolygons()
{
    VsdPolygonSet set;
    set.append(square(10, 10, 90, 90), {square(40, 40, 60, 60)});
    set.append(square(92, 92, 98, 98));
    return set;
}

// A line along y = 20 and another along y = 70.
VsdPolylineSet samplePolylines()
{
    VsdPolylineSet set;
    set.append(QPolygonF(QVector<QPointF>{{10, 20}, {90, 20}}));
    set.append(QPolygonF(QVector<QPointF>{{10, 70}, {50, 70}, {90, 70}}));
    return set;
}

// 10 x 10 cells of 10 units covering 0..100, the value of node (i, j) being i + 10 j, the
// node (9, 9) undefined.
VsdGrid sampleGrid(double angle = 0.0)
{
    VsdGrid grid(QPointF(5, 5), 10, 10, 10, 10, angle);
    QVector<double> values(100);
    for (int k = 0; k < 100; ++k)
        values[k] = k;
    values[99] = KbbGlobal::D_FFFF;
    grid.setValues(values);
    return grid;
}

VugColorScale grey099()
{
    VugColorScale scale = VugColorScale::grayscale();
    scale.setRange(0, 99);
    return scale;
}

const QRgb FILL = qRgba(0, 0, 255, 128);
const QRgb OUTLINE = qRgb(0, 128, 0);
const QRgb SELECTION = qRgb(255, 0, 0);
const QRgb NONE = qRgba(0, 0, 0, 0);

// "polygon", "selected polygon" (the first), "polyline" (the second line selected), "wire",
// "turned wire" (45 degrees), "raster" or "turned raster" (a quarter turn), drawn in the
// colours above; empty: over no data.
std::shared_ptr<VwvIBasemapRenderer> rendererOf(const QString& kind, bool empty = false)
{
    if (kind.endsWith(QLatin1String("polygon"))) {
        VwvBasemapRendererPolygon::Style style;
        style.fillColor = QColor::fromRgba(FILL);
        style.outlineColor = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        const bool selected = kind.startsWith(QLatin1String("selected"));
        return std::make_shared<VwvBasemapRendererPolygon>(empty ? VsdPolygonSet() : samplePolygons(),
                                                           selected ? KbiIntervalIntSmallDisjoint(0) : KbiIntervalIntSmallDisjoint(), style);
    }
    if (kind == QLatin1String("polyline")) {
        VwvBasemapRendererPolyline::Style style;
        style.color = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        return empty ? std::make_shared<VwvBasemapRendererPolyline>(VsdPolylineSet(), KbiIntervalIntSmallDisjoint(), style)
                     : std::make_shared<VwvBasemapRendererPolyline>(samplePolylines(), KbiIntervalIntSmallDisjoint(1), style);
    }
    const double angle = !kind.startsWith(QLatin1String("turned")) ? 0.0 : kind.endsWith(QLatin1String("wire")) ? 45.0 : 90.0;
    const VsdGrid grid = empty ? VsdGrid() : sampleGrid(angle);
    if (kind.endsWith(QLatin1String("raster")))
        return std::make_shared<VwvBasemapRendererRaster>(grid, grey099());
    VwvBasemapRendererGridWire::Style style;
    style.color = QColor::fromRgba(OUTLINE);
    return std::make_shared<VwvBasemapRendererGridWire>(grid, style);
}

// A white canvas of 0..100 by 0..100 map units, drawn into by a rasterizer.
struct WhiteCanvas : MapTest::Canvas
{
    WhiteCanvas()
        : MapTest::Canvas(QImage::Format_ARGB32_Premultiplied, Qt::white)
    {
    }
    void draw(const VwvPointRasterizer& r) { r.draw(image, xMap, yMap); }
    int countOf(QRgb color) const { return ImageChecks::count(image, [color](QRgb p) { return p == color; }); }
    int notWhite() const { return image.width() * image.height() - countOf(qRgb(255, 255, 255)); }
};

VwvPointRasterizer rasterizer(const double* x, const double* y, int count, int size = 1, QRgb color = qRgb(0, 0, 0))
{
    VwvPointRasterizer r;
    VwvPointRasterizer::Style style;
    style.size = size;
    style.color = color;
    r.setStyle(style);
    r.setPoints(x, y, count);
    return r;
}

} // namespace

class TestVwvBasemapLayer : public QObject
{
    Q_OBJECT
    MapTestData _data;

private Q_SLOTS:
    void initTestCase()
    {
        VsdPointSet points;
        points.append(1, 2);
        points.addVariable(QStringLiteral("Porosity"), {0.2});
        QVERIFY(_data.datasets->setPointSet(QStringLiteral("samples"), points));
        QVERIFY(_data.datasets->setPolygonSet(QStringLiteral("boundary"), samplePolygons()));
        QVERIFY(_data.datasets->setPolylineSet(QStringLiteral("faults"), samplePolylines()));
        QVERIFY(_data.datasets->setGrid(QStringLiteral("thickness"), sampleGrid()));
    }

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
    void samplesAreRoundClippedAndBlended_data()
    {
        Row<double, double, int, int, int>::addColumns(); // x, y, size, alpha, pixels
        QTest::newRow("a dot inside") << 10.5 << 20.5 << 1 << 255 << 1;
        QTest::newRow("a dot on the lower left corner") << 0.0 << 0.01 << 1 << 255 << 1;
        QTest::newRow("a dot just off the right") << 100.0 << 50.0 << 1 << 255 << 0;
        QTest::newRow("a dot at a negative x") << -0.5 << 50.0 << 1 << 255 << 0;
        QTest::newRow("NaN") << std::nan("") << 50.0 << 1 << 255 << 0;
        QTest::newRow("infinite") << 50.0 << HUGE_VAL << 1 << 255 << 0;
        QTest::newRow("the undefined value") << KbbGlobal::D_FFFF << 50.0 << 1 << 255 << 0;
        QTest::newRow("5 px in the middle") << 50.5 << 50.5 << 5 << 255 << 21;
        QTest::newRow("4 px, centred between pixels") << 50.0 << 50.0 << 4 << 255 << 12;
        QTest::newRow("5 px on a corner: a quarter") << 0.0 << 100.0 << 5 << 255 << 8;
        QTest::newRow("9 px half off the left") << 0.0 << 50.5 << 9 << 255 << 39;
        QTest::newRow("wholly off the image") << -20.0 << 50.0 << 9 << 255 << 0;
        QTest::newRow("translucent dot") << 50.5 << 50.5 << 1 << 128 << 1;
        QTest::newRow("translucent disc") << 50.5 << 50.5 << 5 << 128 << 21;
        QTest::newRow("translucent disc, clipped") << 0.0 << 50.5 << 9 << 128 << 39;
    }
    void samplesAreRoundClippedAndBlended()
    {
        auto [x, y, size, alpha, pixels] = Row<double, double, int, int, int>::fetch();
        WhiteCanvas c;
        c.draw(rasterizer(&x, &y, 1, size, qRgba(0, 0, 0, alpha)));
        const QColor drawn(255 - alpha, 255 - alpha, 255 - alpha);
        QCOMPARE(ImageChecks::countNear(c.image, drawn, 2), pixels);
        QCOMPARE(c.notWhite(), pixels);
        QVERIFY(pixels == 0 || ImageChecks::near(c.at(QPointF(x, y)), drawn, 2)); // on the sample's own pixel
    }

    void refusesWhatItCannotDraw()
    {
        VwvPointRasterizer r;
        VwvPointRasterizer::Style style;
        style.size = 0;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwvPointRasterizer::setStyle: "));
        r.setStyle(style);
        QCOMPARE(r.getStyle().size, 1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwvPointRasterizer::setPoints: "));
        r.setPoints(nullptr, nullptr, 5);
        const double x = 1.5;
        r.setPoints(&x, &x, 1);
        QImage indexed(10, 10, QImage::Format_Indexed8);
        WhiteCanvas c;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwvPointRasterizer::draw: "));
        r.draw(indexed, c.xMap, c.yMap);
        // A collapsed scale draws nothing rather than dividing by zero.
        c.xMap.setScaleInterval(5, 5);
        c.draw(r);
        QCOMPARE(c.notWhite(), 0);
    }

    void renderingPicksTheRenderer_data()
    {
        // type: the renderer's class, or the error's text (a surface, and a missing point set, with the scene's layers)
        Row<int, QString, QString>::addColumns(); // rendering, dataset, type
        const QString points = typeid(VwvBasemapRenderer).name();
        QTest::newRow("points") << int(VugERendering::POINTS_V) << "samples" << points;
        QTest::newRow("point symbols") << int(VugERendering::POINT_SYMBOLS_V) << "samples" << points;
        QTest::newRow("point labels") << int(VugERendering::POINT_LABELS_V) << "samples" << points;
        QTest::newRow("raster") << int(VugERendering::RASTER_V) << "thickness" << typeid(VwvBasemapRendererRaster).name();
        QTest::newRow("polygons") << int(VugERendering::POLYGONS_V) << "boundary" << typeid(VwvBasemapRendererPolygon).name();
        QTest::newRow("grid wireframe") << int(VugERendering::GRID_WIRE_V) << "thickness" << typeid(VwvBasemapRendererGridWire).name();
        QTest::newRow("polylines") << int(VugERendering::POLYLINES_V) << "faults" << typeid(VwvBasemapRendererPolyline).name();
        QTest::newRow("tiled map: not on the map yet") << int(VugERendering::TILED_RASTER_MAP_V) << "samples"
                                                       << "No 2D renderer for rendering '2'.";
        QTest::newRow("another kind of dataset") << int(VugERendering::POLYGONS_V) << "samples"
                                                 << "The item 'Item' needs the polygon set 'samples', which the project does not hold.";
    }
    void renderingPicksTheRenderer()
    {
        auto [rendering, dataset, type] = Row<int, QString, QString>::fetch();

        const VugSceneItem item(QStringLiteral("i1"), QStringLiteral("Item"), VugERendering::fromValue(rendering),
                                dataset, QStringLiteral("Porosity"));
        try {
            const auto renderer = VwvBasemapRendererFactory::create(item, *_data.datasets);
            QVERIFY(renderer);
            QCOMPARE(QString::fromLatin1(typeid(*renderer).name()), type);
            // Over the item's dataset: it has an extent (a single sample's is a point).
            QVERIFY(renderer->boundingRect() != QRectF());
        } catch (const KbeError& error) {
            QCOMPARE(error.getMessage(), type);
        }
    }
    // A fill or nothing shows at the point; an outline or a line within a pixel of it.
    void outlinesFillsAndSelections_data()
    {
        Row<QString, QPointF, QRgb>::addColumns(); // kind, point, expected

        QTest::newRow("polygon: inside the ring") << "polygon" << QPointF(25.5, 25.5) << FILL;
        QTest::newRow("polygon: inside the hole") << "polygon" << QPointF(50.5, 50.5) << NONE;
        QTest::newRow("polygon: outside") << "polygon" << QPointF(5.5, 50.5) << NONE;
        QTest::newRow("polygon: on the left edge") << "polygon" << QPointF(10, 50.5) << OUTLINE;
        QTest::newRow("polygon: on the hole's edge") << "polygon" << QPointF(40, 50.5) << OUTLINE;
        QTest::newRow("selected polygon: the edge") << "selected polygon" << QPointF(10, 50.5) << SELECTION;
        QTest::newRow("selected polygon: the hole's edge") << "selected polygon" << QPointF(60, 50.5) << SELECTION;
        QTest::newRow("selected polygon: the fill stays") << "selected polygon" << QPointF(25.5, 25.5) << FILL;
        QTest::newRow("selected polygon: the square beside is not") << "selected polygon" << QPointF(92, 95) << OUTLINE;
        QTest::newRow("polyline: on the first line") << "polyline" << QPointF(30.5, 20) << OUTLINE;
        QTest::newRow("polyline: on the selected line") << "polyline" << QPointF(70.5, 70) << SELECTION;
        QTest::newRow("polyline: at the selected line's bend") << "polyline" << QPointF(50.5, 70) << SELECTION;
        QTest::newRow("polyline: between the lines") << "polyline" << QPointF(50.5, 45.5) << NONE;
        QTest::newRow("polyline: beyond a line's end") << "polyline" << QPointF(95.5, 20.5) << NONE;
        QTest::newRow("wire: a column edge") << "wire" << QPointF(30, 55.5) << OUTLINE;
        QTest::newRow("wire: a row edge") << "wire" << QPointF(55.5, 70) << OUTLINE;
        QTest::newRow("wire: a cell's middle") << "wire" << QPointF(35.5, 55.5) << NONE;
        // Turned 45 degrees about the node (5, 5): grid point (u, v) lies at
        // (5 + (u - v) / sqrt 2, 5 + (u + v) / sqrt 2); column edges run at u = 5, 15, ...
        const double h = 1.0 / std::sqrt(2.0);
        QTest::newRow("turned wire: a column edge") << "turned wire" << QPointF(5 + (45 - 20) * h, 5 + (45 + 20) * h) << OUTLINE;
        QTest::newRow("turned wire: a cell's middle") << "turned wire" << QPointF(5 + (50 - 20) * h, 5 + (50 + 20) * h) << NONE;
    }
    void outlinesFillsAndSelections()
    {
        auto [kind, point, expected] = Row<QString, QPointF, QRgb>::fetch();

        const Canvas c = drawn(*rendererOf(kind));
        if (expected == NONE || expected == FILL)
            QVERIFY2(close(c.at(point), expected), qPrintable(QString::number(c.at(point), 16)));
        else
            QVERIFY(near(c, point, expected));
    }

    void gridWireDrawsOnlyTheOutlineOfTinyCells_data()
    {
        Row<int, int, int>::addColumns(); // nodes, minimum, maximum

        // Cells of about 5 pixels: 21 lines each way, 98 pixels long.
        QTest::newRow("5-pixel cells: the wireframe") << 20 << 3300 << 4200;
        // Cells of 0.1 pixel: the grid's outline alone, four sides of about 100 pixels.
        QTest::newRow("0.1-pixel cells: the outline") << 1000 << 300 << 420;
    }
    void gridWireDrawsOnlyTheOutlineOfTinyCells()
    {
        auto [nodes, minimum, maximum] = Row<int, int, int>::fetch();

        const double cell = 98.0 / nodes;
        const VsdGrid grid(QPointF(1 + cell / 2, 1 + cell / 2), cell, cell, nodes, nodes);
        const int n = MapTest::opaque(drawn(VwvBasemapRendererGridWire(grid)).image);
        QVERIFY2(n >= minimum && n <= maximum, qPrintable(QString::number(n)));
    }

    void rasterCellsAgreeWithPicks_data()
    {
        // rank: -1: outside, the pixel left transparent
        Row<double, QPointF, int>::addColumns(); // angle, point, rank

        QTest::newRow("first cell") << 0.0 << QPointF(2.5, 2.5) << 0;
        QTest::newRow("a middle cell") << 0.0 << QPointF(34.5, 57.5) << 53;
        QTest::newRow("just past a cell edge") << 0.0 << QPointF(40.5, 57.5) << 54;
        QTest::newRow("the undefined cell") << 0.0 << QPointF(95.5, 95.5) << 99;
        // Turned a quarter about the node (5, 5): rows run along -x, columns along +y.
        QTest::newRow("turned 90: node (3, 0)") << 90.0 << QPointF(5.5, 35.5) << 3;
        QTest::newRow("turned 90: node (2, 0)") << 90.0 << QPointF(5.5, 25.5) << 2;
        QTest::newRow("turned 90: beyond the grid") << 90.0 << QPointF(30.5, 30.5) << -1;
        // Turned 30 degrees: the node (4, 2) sits at (5 + 40 cos 30 - 20 sin 30, 5 + 40 sin 30 + 20 cos 30).
        QTest::newRow("turned 30: node (4, 2)") << 30.0 << QPointF(29.64 + 0.3, 42.32 - 0.4) << 24;
    }
    void rasterCellsAgreeWithPicks()
    {
        auto [angle, point, rank] = Row<double, QPointF, int>::fetch();

        const VsdGrid grid = sampleGrid(angle);
        const VugColorScale scale = grey099();
        const VwvBasemapRendererRaster renderer(grid, scale);
        const Canvas c = drawn(renderer);
        // The pixel's centre, not the point, decides the cell; the rows keep both in one cell.
        QCOMPARE(renderer.pointToRank(point, 0.0), rank);
        const double value = rank < 0 ? KbbGlobal::D_FFFF : grid.values().at(rank);
        const QRgb expected = rank < 0 || KbbGlobal::isUndefined(value) ? NONE : scale.colorAt(value);
        QVERIFY2(close(c.at(point), expected), qPrintable(QStringLiteral("%1 for %2").arg(c.at(point), 8, 16).arg(expected, 8, 16)));
    }

    void rasterIntoOtherFormatsAndWithOpacity_data()
    {
        Row<int, double, int>::addColumns(); // format, opacity, alpha

        QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied) << 1.0 << 255;
        QTest::newRow("RGB32") << int(QImage::Format_RGB32) << 1.0 << 255;
        QTest::newRow("ARGB32, through a copy") << int(QImage::Format_ARGB32) << 1.0 << 255;
        QTest::newRow("half opaque") << int(QImage::Format_ARGB32_Premultiplied) << 0.5 << 128;
        QTest::newRow("invisible") << int(QImage::Format_ARGB32_Premultiplied) << 0.0 << 0;
    }
    void rasterIntoOtherFormatsAndWithOpacity()
    {
        auto [format, opacity, alpha] = Row<int, double, int>::fetch();

        VugColorScale scale;
        scale.setClasses({0, 50, 99}, {qRgb(200, 0, 0), qRgb(0, 0, 200)});
        VwvBasemapRendererRaster::Style style;
        style.opacity = opacity;
        const Canvas c = drawn(VwvBasemapRendererRaster(sampleGrid(), scale, style), QImage::Format(format));
        const QRgb low = c.at(QPointF(15.5, 15.5));
        const QRgb high = c.at(QPointF(15.5, 85.5));
        if (format == QImage::Format_RGB32) { // drawn over black, opaque
            QVERIFY(close(low, qRgb(200, 0, 0)));
            QVERIFY(close(high, qRgb(0, 0, 200)));
            return;
        }
        QVERIFY2(std::abs(qAlpha(low) - alpha) <= 2, qPrintable(QString::number(qAlpha(low))));
        if (alpha > 0) {
            QVERIFY(close(low, qRgba(200, 0, 0, alpha)));
            QVERIFY(close(high, qRgba(0, 0, 200, alpha)));
        }
    }

    void picks_data()
    {
        Row<QString, QPointF, double, int, QRectF, QString>::addColumns(); // kind, point, tolerance, rank, rect, inRect

        const QRectF nothing(200, 200, 10, 10);
        QTest::newRow("polygon: inside") << "polygon" << QPointF(20, 20) << 0.0 << 0 << QRectF(91, 91, 2, 2) << "1";
        QTest::newRow("polygon: in the hole, far from edges") << "polygon" << QPointF(50, 50) << 5.0 << -1 << QRectF(45, 45, 10, 10) << "";
        QTest::newRow("polygon: in the hole, near an edge") << "polygon" << QPointF(50, 58) << 3.0 << 0 << nothing << "";
        QTest::newRow("polyline: near the second") << "polyline" << QPointF(30, 72) << 2.5 << 1 << QRectF(0, 0, 100, 50) << "0";
        QTest::newRow("polyline: too far") << "polyline" << QPointF(30, 45) << 2.0 << -1 << QRectF(0, 0, 100, 100) << "0-1";
        QTest::newRow("wire: in a cell") << "wire" << QPointF(34, 57) << 0.0 << 53 << QRectF(14, 14, 12, 2) << "11-12";
        QTest::newRow("raster: beside the grid, within") << "raster" << QPointF(-2, 57) << 2.5 << 50 << QRectF(80, 80, 30, 30) << "88-89, 98-99";
        QTest::newRow("raster: beside the grid, beyond") << "raster" << QPointF(-3, 57) << 2.5 << -1 << nothing << "";
        // Turned a quarter about (5, 5): node (i, j) sits at (5 - 10 j, 5 + 10 i).
        QTest::newRow("turned raster: a row across") << "turned raster" << QPointF(-15, 15) << 0.0 << 21 << QRectF(-20, 10, 30, 12) << "1, 11, 21";
    }
    void picks()
    {
        auto [kind, point, tolerance, rank, rect, inRect] = Row<QString, QPointF, double, int, QRectF, QString>::fetch();

        const auto renderer = rendererOf(kind);
        QCOMPARE(renderer->pointToRank(point, tolerance), rank);
        QCOMPARE(renderer->rectangleToRank(rect).toString(), inRect);
        // A polygon along the rectangle picks the same.
        const QPolygonF polygon(rect);
        QCOMPARE(renderer->polygonToRanks(polygon).toString(), inRect);
    }

    void degenerateInputDrawsNothing_data()
    {
        Row<QString, bool>::addColumns(); // kind, empty

        for (const char* kind : {"polygon", "polyline", "wire", "raster"}) {
            QTest::addRow("%s, empty", kind) << QString::fromLatin1(kind) << true;
            QTest::addRow("%s, bad maps", kind) << QString::fromLatin1(kind) << false;
        }
    }
    void degenerateInputDrawsNothing()
    {
        auto [kind, empty] = Row<QString, bool>::fetch();

        const auto renderer = rendererOf(kind, empty);
        const auto drawsNothing = [&](const Canvas& c) { return MapTest::opaque(drawn(*renderer, c).image) == 0; };
        if (empty) {
            QVERIFY(renderer->boundingRect().isEmpty());
            QVERIFY(drawsNothing(Canvas()));
            QCOMPARE(renderer->pointToRank(QPointF(50, 50), 10), -1);
            QVERIFY(renderer->rectangleToRank(QRectF(0, 0, 100, 100)).isEmpty());
            QVERIFY(renderer->polygonToRanks(QPolygonF()).isEmpty());
            return;
        }
        const double nan = std::nan("");
        for (const auto& scale : QVector<QPair<double, double>>{{nan, 100}, {0, HUGE_VAL}, {50, 50}}) {
            Canvas c;
            c.xMap.setScaleInterval(scale.first, scale.second);
            QVERIFY(drawsNothing(c));
        }
        Canvas flat; // no pixels across
        flat.yMap.setPaintInterval(0, 0);
        QVERIFY(drawsNothing(flat));
        QImage none, zero(0, 10, QImage::Format_ARGB32_Premultiplied);
        renderer->render(none, flat.xMap, flat.yMap);
        renderer->render(zero, Canvas().xMap, Canvas().yMap);

        QCOMPARE(renderer->pointToRank(QPointF(nan, 50), 1.0), -1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("tolerance")));
        QCOMPARE(renderer->pointToRank(QPointF(50, 50), nan), -1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("non-finite.* refused")));
        QVERIFY(renderer->rectangleToRank(QRectF(nan, 0, 10, 10)).isEmpty());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("a polygon with a non-finite or undefined vertex refused")));
        QVERIFY(renderer->polygonToRanks(QPolygonF(QVector<QPointF>{{nan, 0}, {10, 0}, {10, 10}})).isEmpty());
    }

    void invalidStylesAreRefused()
    {
        for (const double width : {std::nan(""), -1.0, 1000.0}) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("style refused")));
            VwvBasemapRendererPolygon::Style polygon;
            polygon.selectionWidth = width;
            polygon.fillColor = Qt::black;
            QCOMPARE(VwvBasemapRendererPolygon(samplePolygons(), {}, polygon).getStyle().fillColor,
                     VwvBasemapRendererPolygon::Style().fillColor);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("style refused")));
            VwvBasemapRendererPolyline::Style polyline;
            polyline.width = width;
            QCOMPARE(VwvBasemapRendererPolyline(samplePolylines(), {}, polyline).getStyle().width, 1.0);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("style refused")));
            VwvBasemapRendererGridWire::Style wire;
            wire.width = width;
            wire.color = QColor(); // invalid as well
            QCOMPARE(VwvBasemapRendererGridWire(sampleGrid(), wire).getStyle().color, VwvBasemapRendererGridWire::Style().color);
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("style refused")));
            VwvBasemapRendererRaster::Style raster;
            raster.opacity = width; // NaN, below 0, above 1
            QCOMPARE(VwvBasemapRendererRaster(sampleGrid(), grey099(), raster).getStyle().opacity, 1.0);
        }
    }
};

QTEST_MAIN(TestVwvBasemapLayer)
#include "tst_vwvbasemaplayer.moc"
