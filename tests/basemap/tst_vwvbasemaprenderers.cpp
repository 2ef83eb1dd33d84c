// The polygon, polyline, grid wireframe and raster renderers drawn into a small image and
// checked at known pixels (a fill, a hole, an edge, a line, a cell's colour, a turned
// grid), their picks, refused styles, and input that must draw nothing and not crash.

#include <KbbGlobal.h>
#include <VsdGrid.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>
#include <VugColorScale.h>
#include <VwvBasemapRendererGridWire.h>
#include <VwvBasemapRendererPolygon.h>
#include <VwvBasemapRendererPolyline.h>
#include <VwvBasemapRendererRaster.h>

#include <QtTest>
#include <cmath>
#include <memory>

namespace {

// 100 x 100 transparent pixels showing 0..100 by 0..100 map units, y up: the pixel (px, py)
// shows the map point (px + 0.5, 99.5 - py).
struct Canvas
{
    QImage image;
    QwtScaleMap xMap;
    QwtScaleMap yMap;

    explicit Canvas(QImage::Format format = QImage::Format_ARGB32_Premultiplied)
        : image(100, 100, format)
    {
        image.fill(Qt::transparent);
        xMap.setScaleInterval(0, 100);
        xMap.setPaintInterval(0, 100);
        yMap.setScaleInterval(0, 100);
        yMap.setPaintInterval(100, 0);
    }
    void draw(const VwvIBasemapRenderer& renderer) { renderer.render(image, xMap, yMap); }
    // Not premultiplied, whatever the format.
    QRgb pixel(int x, int y) const { return image.pixelColor(x, y).rgba(); }
    QRgb at(const QPointF& map) const { return pixel(int(map.x()), std::min(99, int(100 - map.y()))); }
    // Whether a pixel within one of the map point has the colour: aliased edges fall on
    // either side of a line through pixel corners.
    bool near(const QPointF& map, QRgb color) const
    {
        const int px = int(map.x());
        const int py = std::min(99, int(100 - map.y()));
        for (int y = py - 1; y <= py + 1; ++y)
            for (int x = px - 1; x <= px + 1; ++x)
                if (image.valid(x, y) && close(pixel(x, y), color))
                    return true;
        return false;
    }
    int opaqueCount() const
    {
        int n = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                n += qAlpha(image.pixel(x, y)) > 0;
        return n;
    }
    static bool close(QRgb a, QRgb b, int tolerance = 4)
    {
        return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance
            && std::abs(qBlue(a) - qBlue(b)) <= tolerance && std::abs(qAlpha(a) - qAlpha(b)) <= tolerance;
    }
};

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

std::shared_ptr<VwvIBasemapRenderer> rendererOf(const QString& kind, bool empty = false)
{
    if (kind == QLatin1String("polygon"))
        return std::make_shared<VwvBasemapRendererPolygon>(empty ? VsdPolygonSet() : samplePolygons());
    if (kind == QLatin1String("polyline"))
        return std::make_shared<VwvBasemapRendererPolyline>(empty ? VsdPolylineSet() : samplePolylines());
    const VsdGrid grid = empty ? VsdGrid() : sampleGrid();
    if (kind == QLatin1String("wire"))
        return std::make_shared<VwvBasemapRendererGridWire>(grid);
    return std::make_shared<VwvBasemapRendererRaster>(grid, grey099());
}

const QRgb FILL = qRgba(0, 0, 255, 128);
const QRgb OUTLINE = qRgb(0, 128, 0);
const QRgb SELECTION = qRgb(255, 0, 0);
const QRgb NONE = qRgba(0, 0, 0, 0);

} // namespace

class TestVwvBasemapRenderers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void polygonFillHolesAndOutline_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("selected");
        QTest::addColumn<QRgb>("expected");

        QTest::newRow("inside the ring") << QPointF(25.5, 25.5) << false << FILL;
        QTest::newRow("inside the hole") << QPointF(50.5, 50.5) << false << NONE;
        QTest::newRow("outside") << QPointF(5.5, 50.5) << false << NONE;
        QTest::newRow("on the left edge") << QPointF(10, 50.5) << false << OUTLINE;
        QTest::newRow("on the hole's edge") << QPointF(40, 50.5) << false << OUTLINE;
        QTest::newRow("selected: the edge") << QPointF(10, 50.5) << true << SELECTION;
        QTest::newRow("selected: the hole's edge") << QPointF(60, 50.5) << true << SELECTION;
        QTest::newRow("selected: the fill stays") << QPointF(25.5, 25.5) << true << FILL;
    }
    void polygonFillHolesAndOutline()
    {
        QFETCH(QPointF, point);
        QFETCH(bool, selected);
        QFETCH(QRgb, expected);

        VwvBasemapRendererPolygon::Style style;
        style.fillColor = QColor::fromRgba(FILL);
        style.outlineColor = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        const VwvBasemapRendererPolygon renderer(samplePolygons(), selected ? KbiIntervalIntSmallDisjoint(0) : KbiIntervalIntSmallDisjoint(),
                                                 style);
        Canvas c;
        c.draw(renderer);
        if (expected == NONE || expected == FILL)
            QVERIFY2(Canvas::close(c.at(point), expected), qPrintable(QString::number(c.at(point), 16)));
        else
            QVERIFY(c.near(point, expected));
        // The unselected square beside is never drawn in the selection colour.
        QVERIFY(!c.near(QPointF(92, 95), SELECTION));
    }

    void polylinesAndSelection_data()
    {
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<QRgb>("expected");

        QTest::newRow("on the first line") << QPointF(30.5, 20) << OUTLINE;
        QTest::newRow("on the selected line") << QPointF(70.5, 70) << SELECTION;
        QTest::newRow("at the selected line's bend") << QPointF(50.5, 70) << SELECTION;
        QTest::newRow("between the lines") << QPointF(50.5, 45.5) << NONE;
        QTest::newRow("beyond a line's end") << QPointF(95.5, 20.5) << NONE;
    }
    void polylinesAndSelection()
    {
        QFETCH(QPointF, point);
        QFETCH(QRgb, expected);

        VwvBasemapRendererPolyline::Style style;
        style.color = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        Canvas c;
        c.draw(VwvBasemapRendererPolyline(samplePolylines(), KbiIntervalIntSmallDisjoint(1), style));
        if (expected == NONE)
            QCOMPARE(c.at(point), NONE);
        else
            QVERIFY(c.near(point, expected));
    }

    void gridWireFollowsTheCells_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<bool>("drawn");

        QTest::newRow("a column edge") << 0.0 << QPointF(30, 55.5) << true;
        QTest::newRow("a row edge") << 0.0 << QPointF(55.5, 70) << true;
        QTest::newRow("a cell's middle") << 0.0 << QPointF(35.5, 55.5) << false;
        // Turned 45 degrees about the node (5, 5): grid point (u, v) lies at
        // (5 + (u - v) / sqrt 2, 5 + (u + v) / sqrt 2); column edges run at u = 5, 15, ...
        const double h = 1.0 / std::sqrt(2.0);
        QTest::newRow("turned: a column edge") << 45.0 << QPointF(5 + (45 - 20) * h, 5 + (45 + 20) * h) << true;
        QTest::newRow("turned: a cell's middle") << 45.0 << QPointF(5 + (50 - 20) * h, 5 + (50 + 20) * h) << false;
    }
    void gridWireFollowsTheCells()
    {
        QFETCH(double, angle);
        QFETCH(QPointF, point);
        QFETCH(bool, drawn);

        VwvBasemapRendererGridWire::Style style;
        style.color = QColor::fromRgba(OUTLINE);
        Canvas c;
        c.draw(VwvBasemapRendererGridWire(sampleGrid(angle), style));
        QCOMPARE(c.near(point, OUTLINE), drawn);
    }

    void gridWireDrawsOnlyTheOutlineOfTinyCells_data()
    {
        QTest::addColumn<int>("nodes");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");

        // Cells of about 5 pixels: 21 lines each way, 98 pixels long.
        QTest::newRow("5-pixel cells: the wireframe") << 20 << 3300 << 4200;
        // Cells of 0.1 pixel: the grid's outline alone, four sides of about 100 pixels.
        QTest::newRow("0.1-pixel cells: the outline") << 1000 << 300 << 420;
    }
    void gridWireDrawsOnlyTheOutlineOfTinyCells()
    {
        QFETCH(int, nodes);
        QFETCH(int, minimum);
        QFETCH(int, maximum);

        const double cell = 98.0 / nodes;
        const VsdGrid grid(QPointF(1 + cell / 2, 1 + cell / 2), cell, cell, nodes, nodes);
        Canvas c;
        c.draw(VwvBasemapRendererGridWire(grid));
        const int n = c.opaqueCount();
        QVERIFY2(n >= minimum && n <= maximum, qPrintable(QString::number(n)));
    }

    void rasterCellsAgreeWithPicks_data()
    {
        QTest::addColumn<double>("angle");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<int>("rank"); // -1: outside, the pixel left transparent

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
        QFETCH(double, angle);
        QFETCH(QPointF, point);
        QFETCH(int, rank);

        const VsdGrid grid = sampleGrid(angle);
        const VugColorScale scale = grey099();
        const VwvBasemapRendererRaster renderer(grid, scale);
        Canvas c;
        c.draw(renderer);
        // The pixel's centre, not the point, decides the cell; the rows keep both in one cell.
        QCOMPARE(renderer.pointToRank(point, 0.0), rank);
        const double value = rank < 0 ? KbbGlobal::D_FFFF : grid.values().at(rank);
        const QRgb expected = rank < 0 || KbbGlobal::isUndefined(value) ? NONE : scale.colorAt(value);
        QVERIFY2(Canvas::close(c.at(point), expected),
                 qPrintable(QStringLiteral("%1 for %2").arg(c.at(point), 8, 16).arg(expected, 8, 16)));
    }

    void rasterIntoOtherFormatsAndWithOpacity_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<double>("opacity");
        QTest::addColumn<int>("alpha");

        QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied) << 1.0 << 255;
        QTest::newRow("RGB32") << int(QImage::Format_RGB32) << 1.0 << 255;
        QTest::newRow("ARGB32, through a copy") << int(QImage::Format_ARGB32) << 1.0 << 255;
        QTest::newRow("half opaque") << int(QImage::Format_ARGB32_Premultiplied) << 0.5 << 128;
        QTest::newRow("invisible") << int(QImage::Format_ARGB32_Premultiplied) << 0.0 << 0;
    }
    void rasterIntoOtherFormatsAndWithOpacity()
    {
        QFETCH(int, format);
        QFETCH(double, opacity);
        QFETCH(int, alpha);

        VugColorScale scale;
        scale.setClasses({0, 50, 99}, {qRgb(200, 0, 0), qRgb(0, 0, 200)});
        VwvBasemapRendererRaster::Style style;
        style.opacity = opacity;
        Canvas c{QImage::Format(format)};
        c.draw(VwvBasemapRendererRaster(sampleGrid(), scale, style));
        const QRgb low = c.at(QPointF(15.5, 15.5));
        const QRgb high = c.at(QPointF(15.5, 85.5));
        if (format == QImage::Format_RGB32) { // drawn over black, opaque
            QVERIFY(Canvas::close(low, qRgb(200, 0, 0)));
            QVERIFY(Canvas::close(high, qRgb(0, 0, 200)));
            return;
        }
        QVERIFY2(std::abs(qAlpha(low) - alpha) <= 2, qPrintable(QString::number(qAlpha(low))));
        if (alpha > 0) {
            QVERIFY(Canvas::close(low, qRgba(200, 0, 0, alpha)));
            QVERIFY(Canvas::close(high, qRgba(0, 0, 200, alpha)));
        }
    }

    void picks_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QPointF>("point");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<int>("rank");
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<QString>("inRect");

        const QRectF nothing(200, 200, 10, 10);
        QTest::newRow("polygon: inside") << "polygon" << QPointF(20, 20) << 0.0 << 0 << QRectF(91, 91, 2, 2) << "1";
        QTest::newRow("polygon: in the hole, far from edges") << "polygon" << QPointF(50, 50) << 5.0 << -1 << QRectF(45, 45, 10, 10) << "";
        QTest::newRow("polygon: in the hole, near an edge") << "polygon" << QPointF(50, 58) << 3.0 << 0 << nothing << "";
        QTest::newRow("polyline: near the second") << "polyline" << QPointF(30, 72) << 2.5 << 1 << QRectF(0, 0, 100, 50) << "0";
        QTest::newRow("polyline: too far") << "polyline" << QPointF(30, 45) << 2.0 << -1 << QRectF(0, 0, 100, 100) << "0-1";
        QTest::newRow("wire: in a cell") << "wire" << QPointF(34, 57) << 0.0 << 53 << QRectF(14, 14, 12, 2) << "11-12";
        QTest::newRow("raster: beside the grid, within") << "raster" << QPointF(-2, 57) << 2.5 << 50 << QRectF(80, 80, 30, 30) << "88-89, 98-99";
        QTest::newRow("raster: beside the grid, beyond") << "raster" << QPointF(-3, 57) << 2.5 << -1 << nothing << "";
    }
    void picks()
    {
        QFETCH(QString, kind);
        QFETCH(QPointF, point);
        QFETCH(double, tolerance);
        QFETCH(int, rank);
        QFETCH(QRectF, rect);
        QFETCH(QString, inRect);

        const auto renderer = rendererOf(kind);
        QCOMPARE(renderer->pointToRank(point, tolerance), rank);
        QCOMPARE(renderer->rectangleToRank(rect).toString(), inRect);
        // A polygon along the rectangle picks the same.
        const QPolygonF polygon(rect);
        QCOMPARE(renderer->polygonToRanks(polygon).toString(), inRect);
    }

    void gridPicksFollowTheTurn()
    {
        // Turned a quarter about (5, 5): node (i, j) sits at (5 - 10 j, 5 + 10 i).
        const VwvBasemapRendererRaster renderer(sampleGrid(90.0), grey099());
        QCOMPARE(renderer.rectangleToRank(QRectF(-20, 10, 30, 12)).toString(), QStringLiteral("1, 11, 21"));
        const QPolygonF triangle(QVector<QPointF>{{6, 3}, {6, 26}, {-17, 26}});
        QCOMPARE(renderer.polygonToRanks(triangle).toString(), QStringLiteral("0-2, 11-12, 22"));
    }

    void degenerateInputDrawsNothing_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("empty");

        for (const char* kind : {"polygon", "polyline", "wire", "raster"}) {
            QTest::addRow("%s, empty", kind) << QString::fromLatin1(kind) << true;
            QTest::addRow("%s, bad maps", kind) << QString::fromLatin1(kind) << false;
        }
    }
    void degenerateInputDrawsNothing()
    {
        QFETCH(QString, kind);
        QFETCH(bool, empty);

        const auto renderer = rendererOf(kind, empty);
        if (empty) {
            QVERIFY(renderer->boundingRect().isEmpty());
            Canvas c;
            c.draw(*renderer);
            QCOMPARE(c.opaqueCount(), 0);
            QCOMPARE(renderer->pointToRank(QPointF(50, 50), 10), -1);
            QVERIFY(renderer->rectangleToRank(QRectF(0, 0, 100, 100)).isEmpty());
            QVERIFY(renderer->polygonToRanks(QPolygonF()).isEmpty());
            return;
        }
        const double nan = std::nan("");
        const QVector<QPair<double, double>> scales{{nan, 100}, {0, HUGE_VAL}, {50, 50}};
        for (const auto& s : scales) {
            Canvas c;
            c.xMap.setScaleInterval(s.first, s.second);
            c.draw(*renderer);
            QCOMPARE(c.opaqueCount(), 0);
        }
        Canvas flat; // no pixels across
        flat.yMap.setPaintInterval(0, 0);
        flat.draw(*renderer);
        QCOMPARE(flat.opaqueCount(), 0);
        QImage none;
        renderer->render(none, flat.xMap, flat.yMap);
        QImage zero(0, 10, QImage::Format_ARGB32_Premultiplied);
        Canvas c;
        renderer->render(zero, c.xMap, c.yMap);

        QCOMPARE(renderer->pointToRank(QPointF(nan, 50), 1.0), -1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("tolerance")));
        QCOMPARE(renderer->pointToRank(QPointF(50, 50), nan), -1);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("non-finite.* refused")));
        QVERIFY(renderer->rectangleToRank(QRectF(nan, 0, 10, 10)).isEmpty());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("a polygon with a non-finite or undefined vertex refused")));
        QVERIFY(renderer->polygonToRanks(QPolygonF(QVector<QPointF>{{nan, 0}, {10, 0}, {10, 10}})).isEmpty());
    }

    void invalidStylesAreRefused_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<double>("width");

        for (const char* kind : {"polygon", "polyline", "wire", "raster"}) {
            QTest::addRow("%s, NaN", kind) << QString::fromLatin1(kind) << std::nan("");
            QTest::addRow("%s, negative", kind) << QString::fromLatin1(kind) << -1.0;
            QTest::addRow("%s, too wide", kind) << QString::fromLatin1(kind) << 1000.0;
        }
    }
    void invalidStylesAreRefused()
    {
        QFETCH(QString, kind);
        QFETCH(double, width);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("style refused")));
        if (kind == QLatin1String("polygon")) {
            VwvBasemapRendererPolygon::Style style;
            style.selectionWidth = width;
            style.fillColor = Qt::black;
            QCOMPARE(VwvBasemapRendererPolygon(samplePolygons(), {}, style).getStyle().fillColor,
                     VwvBasemapRendererPolygon::Style().fillColor);
        } else if (kind == QLatin1String("polyline")) {
            VwvBasemapRendererPolyline::Style style;
            style.width = width;
            QCOMPARE(VwvBasemapRendererPolyline(samplePolylines(), {}, style).getStyle().width, 1.0);
        } else if (kind == QLatin1String("wire")) {
            VwvBasemapRendererGridWire::Style style;
            style.width = width;
            style.color = QColor(); // invalid as well
            QCOMPARE(VwvBasemapRendererGridWire(sampleGrid(), style).getStyle().color,
                     VwvBasemapRendererGridWire::Style().color);
        } else {
            VwvBasemapRendererRaster::Style style;
            style.opacity = width; // NaN, below 0, above 1
            QCOMPARE(VwvBasemapRendererRaster(sampleGrid(), grey099(), style).getStyle().opacity, 1.0);
        }
    }
};

QTEST_MAIN(TestVwvBasemapRenderers)
#include "tst_vwvbasemaprenderers.moc"
