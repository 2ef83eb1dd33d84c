// Points drawn into an image, checked at known pixels: where a sample lands, its colour
// from a scale, discs clipped at the border, the selection ring, and samples that must
// not be drawn (off the image, non-finite, undefined).

#include "ImageChecks.h"
#include "MapTestKit.h"
#include <KbbGlobal.h>
#include <VugColorScale.h>
#include <VwvPointRasterizer.h>

namespace {

// A white canvas of 0..100 by 0..100 map units, drawn into by a rasterizer.
struct Canvas : MapTest::Canvas
{
    Canvas()
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

class TestVwvPointRasterizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesLandOnTheirPixel_data()
    {
        // drawn: pixels changed
        MapTest::addColumns<double, double, int>({"x", "y", "drawn"});
        QTest::newRow("inside") << 10.5 << 20.5 << 1;
        QTest::newRow("on the lower left corner") << 0.0 << 0.01 << 1;
        QTest::newRow("just off the right") << 100.0 << 50.0 << 0;
        QTest::newRow("negative") << -0.5 << 50.0 << 0;
        QTest::newRow("NaN") << std::nan("") << 50.0 << 0;
        QTest::newRow("infinite") << 50.0 << HUGE_VAL << 0;
        QTest::newRow("the undefined value") << KbbGlobal::D_FFFF << 50.0 << 0;
    }
    void samplesLandOnTheirPixel()
    {
        auto [x, y, drawn] = MapTest::fetch<double, double, int>();
        Canvas c;
        c.draw(rasterizer(&x, &y, 1));
        QCOMPARE(c.notWhite(), drawn);
        if (drawn)
            QCOMPARE(c.at(QPointF(x, y)), qRgb(0, 0, 0));
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
            Canvas c;
            c.draw(r);
            for (int i = 0; i < 3; ++i)
                QVERIFY2(ImageChecks::near(c.image.pixel(int(xs[i]), 50), scale.colorAt(values[i]), 3), qPrintable(QString::number(i)));
            // Undefined with a transparent undefined colour: not drawn at all.
            QCOMPARE(c.image.pixel(40, 50), qRgb(255, 255, 255));
        }
        scale.setUndefinedColor(qRgb(1, 2, 3));
        VwvPointRasterizer r = rasterizer(xs, ys, 4);
        r.setValues(values, scale);
        Canvas c;
        c.draw(r);
        QCOMPARE(c.image.pixel(40, 50), qRgb(1, 2, 3));
    }

    void discsAreRoundClippedAndBlended_data()
    {
        MapTest::addColumns<double, double, int, int, int, int>({"x", "y", "size", "alpha", "minimum", "maximum"});
        QTest::newRow("5 px in the middle") << 50.5 << 50.5 << 5 << 255 << 21 << 21;
        QTest::newRow("4 px, centred between pixels") << 50.0 << 50.0 << 4 << 255 << 12 << 12;
        QTest::newRow("5 px on a corner: a quarter") << 0.0 << 100.0 << 5 << 255 << 8 << 8;
        QTest::newRow("9 px half off the left") << 0.0 << 50.5 << 9 << 255 << 39 << 39;
        QTest::newRow("wholly off the image") << -20.0 << 50.0 << 9 << 255 << 0 << 0;
        QTest::newRow("translucent dot") << 50.5 << 50.5 << 1 << 128 << 1 << 1;
        QTest::newRow("translucent disc") << 50.5 << 50.5 << 5 << 128 << 21 << 21;
        QTest::newRow("translucent disc, clipped") << 0.0 << 50.5 << 9 << 128 << 39 << 39;
    }
    void discsAreRoundClippedAndBlended()
    {
        auto [x, y, size, alpha, minimum, maximum] = MapTest::fetch<double, double, int, int, int, int>();
        Canvas c;
        c.draw(rasterizer(&x, &y, 1, size, qRgba(0, 0, 0, alpha)));
        // Black, or the grey it makes over white.
        const int n = ImageChecks::countNear(c.image, QColor(255 - alpha, 255 - alpha, 255 - alpha), 2);
        QVERIFY2(n >= minimum && n <= maximum, qPrintable(QString::number(n)));
        QCOMPARE(c.notWhite(), n);
    }

    void selectionIsRingedOnTop()
    {
        const double xs[] = {30.5, 60.5};
        const double ys[] = {50.5, 50.5};
        VwvPointRasterizer r = rasterizer(xs, ys, 2, 3);
        KbiIntervalIntSmallDisjoint selection;
        selection.add(1);
        r.setSelection(selection);
        Canvas c;
        c.draw(r);
        QCOMPARE(c.image.pixel(60, 49), qRgb(0, 0, 0));                      // the sample itself
        QCOMPARE(c.image.pixel(62, 49), VwvPointRasterizer::Style().selectionColor); // its ring
        QCOMPARE(c.image.pixel(32, 49), qRgb(255, 255, 255));                // the other has none
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
        Canvas c;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwvPointRasterizer::draw: "));
        r.draw(indexed, c.xMap, c.yMap);
        // A collapsed scale draws nothing rather than dividing by zero.
        c.xMap.setScaleInterval(5, 5);
        c.draw(r);
        QCOMPARE(c.notWhite(), 0);
    }
};

QTEST_MAIN(TestVwvPointRasterizer)
#include "tst_vwvpointrasterizer.moc"
