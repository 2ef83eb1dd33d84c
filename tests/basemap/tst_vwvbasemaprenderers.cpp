// Points drawn into an image by the point rasterizer, checked at known pixels: where a
// sample lands, how many pixels its disc covers when clipped or translucent, its colour from
// a scale (the selection ring is checked on the map, with the layers), and samples that must
// not be drawn (off the image, non-finite, undefined). The renderer a scene item gets, by its
// rendering (and the errors for renderings the map does not draw, and for a missing
// dataset); the polygon, polyline, grid wireframe and raster renderers drawn into a small
// image and checked at known pixels (a fill, a hole, an edge, a line, a cell's colour, a
// turned grid), their picks, refused styles, and input that must draw nothing and not crash.

#include "MapRendering.h"
#include "MapTestData.h"
#include "LowerTestSupport.h"
#include "MessageCatcher.h"
#include <KbeError.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VwvBasemapRendererFactory.h>

#include <typeinfo>

using namespace MapRendering;

class TestVwvBasemapRenderers : public QObject
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

QTEST_MAIN(TestVwvBasemapRenderers)
#include "tst_vwvbasemaprenderers.moc"
