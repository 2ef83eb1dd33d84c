// Points drawn into an image, checked at known pixels: where a sample lands, its colour
// from a scale, discs clipped at the border, the selection ring, and samples that must
// not be drawn (off the image, non-finite, undefined).

#include <KbbGlobal.h>
#include <VugColorScale.h>
#include <VwvPointRasterizer.h>

#include <QtTest>
#include <cmath>

namespace {

// 100 x 100 pixels showing 0..100 by 0..100 map units, y up.
struct Canvas
{
    QImage image{100, 100, QImage::Format_ARGB32_Premultiplied};
    QwtScaleMap xMap;
    QwtScaleMap yMap;

    Canvas()
    {
        image.fill(Qt::white);
        xMap.setScaleInterval(0, 100);
        xMap.setPaintInterval(0, 100);
        yMap.setScaleInterval(0, 100);
        yMap.setPaintInterval(100, 0);
    }

    int countOf(QRgb color) const
    {
        int n = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                n += image.pixel(x, y) == color;
        return n;
    }
    int notWhite() const { return image.width() * image.height() - countOf(qRgb(255, 255, 255)); }
};

bool close(QRgb a, QRgb b, int tolerance = 3)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance && std::abs(qGreen(a) - qGreen(b)) <= tolerance
        && std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

} // namespace

class TestVwvPointRasterizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesLandOnTheirPixel_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("drawn"); // pixels changed

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
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, drawn);

        Canvas c;
        VwvPointRasterizer r;
        r.setPoints(&x, &y, 1);
        r.draw(c.image, c.xMap, c.yMap);
        QCOMPARE(c.notWhite(), drawn);
        if (drawn)
            QCOMPARE(c.image.pixel(int(x), std::min(99, int(100 - y))), qRgb(0, 0, 0));
    }

    void valuesTakeTheScaleColours()
    {
        const double xs[] = {10, 20, 30, 40};
        const double ys[] = {50, 50, 50, 50};
        const double values[] = {0.0, 0.5, 1.0, KbbGlobal::D_FFFF};
        VugColorScale scale = VugColorScale::rainbow();
        scale.setRange(0.0, 1.0);

        Canvas c;
        VwvPointRasterizer r;
        r.setPoints(xs, ys, 4);
        r.setValues(values, scale);
        r.draw(c.image, c.xMap, c.yMap);
        for (int i = 0; i < 3; ++i)
            QVERIFY2(close(c.image.pixel(int(xs[i]), 50), scale.colorAt(values[i])), qPrintable(QString::number(i)));
        // Undefined with a transparent undefined colour: not drawn at all.
        QCOMPARE(c.image.pixel(40, 50), qRgb(255, 255, 255));

        scale.setUndefinedColor(qRgb(1, 2, 3));
        Canvas c2;
        r.setValues(values, scale);
        r.draw(c2.image, c2.xMap, c2.yMap);
        QCOMPARE(c2.image.pixel(40, 50), qRgb(1, 2, 3));
    }

    void discsAreRoundAndClipped_data()
    {
        QTest::addColumn<double>("x");
        QTest::addColumn<double>("y");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");

        QTest::newRow("5 px in the middle") << 50.5 << 50.5 << 5 << 17 << 25;
        QTest::newRow("5 px on a corner: a quarter") << 0.0 << 100.0 << 5 << 4 << 9;
        QTest::newRow("9 px half off the left") << 0.0 << 50.5 << 9 << 25 << 45;
        QTest::newRow("wholly off the image") << -20.0 << 50.0 << 9 << 0 << 0;
    }
    void discsAreRoundAndClipped()
    {
        QFETCH(double, x);
        QFETCH(double, y);
        QFETCH(int, size);
        QFETCH(int, minimum);
        QFETCH(int, maximum);

        Canvas c;
        VwvPointRasterizer r;
        VwvPointRasterizer::Style style;
        style.size = size;
        style.color = qRgb(0, 0, 255);
        r.setStyle(style);
        r.setPoints(&x, &y, 1);
        r.draw(c.image, c.xMap, c.yMap);
        const int n = c.countOf(qRgb(0, 0, 255));
        QVERIFY2(n >= minimum && n <= maximum, qPrintable(QString::number(n)));
        QCOMPARE(c.notWhite(), n);
    }

    void selectionIsRingedOnTop()
    {
        const double xs[] = {30.5, 60.5};
        const double ys[] = {50.5, 50.5};
        Canvas c;
        VwvPointRasterizer r;
        VwvPointRasterizer::Style style;
        style.size = 3;
        r.setStyle(style);
        r.setPoints(xs, ys, 2);
        KbiIntervalIntSmallDisjoint selection;
        selection.add(1);
        r.setSelection(selection);
        r.draw(c.image, c.xMap, c.yMap);
        QCOMPARE(c.image.pixel(60, 49), qRgb(0, 0, 0));        // the sample itself
        QCOMPARE(c.image.pixel(62, 49), style.selectionColor); // its ring
        QCOMPARE(c.image.pixel(32, 49), qRgb(255, 255, 255));  // the other has none
    }

    void translucentColoursBlend()
    {
        const double x = 50.5;
        const double y = 50.5;
        Canvas c;
        VwvPointRasterizer r;
        VwvPointRasterizer::Style style;
        style.color = qRgba(0, 0, 0, 128);
        r.setStyle(style);
        r.setPoints(&x, &y, 1);
        r.draw(c.image, c.xMap, c.yMap);
        QVERIFY(close(c.image.pixel(50, 49), qRgb(127, 127, 127), 2));
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
        QwtScaleMap flat;
        flat.setScaleInterval(5, 5);
        flat.setPaintInterval(0, 100);
        r.draw(c.image, flat, c.yMap);
        QCOMPARE(c.notWhite(), 0);
    }
};

QTEST_MAIN(TestVwvPointRasterizer)
#include "tst_vwvpointrasterizer.moc"
