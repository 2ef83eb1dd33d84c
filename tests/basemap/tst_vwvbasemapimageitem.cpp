// A map layer's image on the plot: drawn on the spot when small, on a worker thread when
// large (the kept image shown moved until the new one comes), at full quality for exports,
// and never delivered to an item that is gone. The point renderer's picks go to its set.

#include "MessageCatcher.h"
#include <VsdPointSet.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapRenderer.h>

#include <qwt_plot_renderer.h>

#include <KbbDebug.h>
#include <KbeError.h>

#include <QSemaphore>
#include <QtTest>
#include <memory>

namespace {

// Paints a filled square of map units [40, 60] x [40, 60], claiming to be costly so that
// the item draws it on a worker thread; it may be held at a gate.
class SquareRenderer : public VwvIBasemapRenderer
{
public:
    explicit SquareRenderer(QRgb color, QSemaphore* gate = nullptr)
        : _color(color)
        , _gate(gate)
    {
    }
    QRectF boundingRect() const override { return QRectF(0, 0, 100, 100); }
    void render(QImage& image, const QwtScaleMap& x, const QwtScaleMap& y) const override
    {
        if (_gate)
            _gate->acquire();
        ++renders;
        const QRectF pixels = QRectF(QPointF(x.transform(40), y.transform(60)), QPointF(x.transform(60), y.transform(40)));
        QPainter(&image).fillRect(pixels, QColor(_color));
    }
    qint64 renderCost() const override { return VwvBasemapImageItem::SYNCHRONOUS_COST * 10; }
    int pointToRank(const QPointF&, double) const override { return -1; }
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF&) const override { return {}; }
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF&) const override { return {}; }

    mutable QAtomicInt renders;

private:
    QRgb _color;
    QSemaphore* _gate;
};

// Fails every drawing, on the spot or on a worker thread.
class FailingRenderer : public SquareRenderer
{
public:
    explicit FailingRenderer(qint64 cost, bool standard)
        : SquareRenderer(0)
        , _cost(cost)
        , _standard(standard)
    {
    }
    void render(QImage&, const QwtScaleMap&, const QwtScaleMap&) const override
    {
        ++renders;
        if (_standard)
            throw std::runtime_error("disk on fire");
        throw KbeError(QStringLiteral("the grid file is damaged"));
    }
    qint64 renderCost() const override { return _cost; }

private:
    qint64 _cost;
    bool _standard;
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

    QRgb at(const QPointF& mapPoint)
    {
        const QImage image = plot.canvas()->grab().toImage();
        const QPointF pixel = plot.viewToPixel(mapPoint);
        return image.pixel(pixel.toPoint());
    }
};

} // namespace

class TestVwvBasemapImageItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smallSetsAreDrawnOnTheSpot()
    {
        VsdPointSet points;
        for (int i = 0; i < 50; ++i)
            points.append(50.0, 50.0);
        VwvPointRasterizer::Style style;
        style.size = 7;
        style.color = qRgb(200, 0, 0);
        Map map;
        map.item->setRenderer(std::make_shared<VwvBasemapRenderer>(points, QString(), VugColorScale::rainbow(), style));
        map.plot.replot();
        QVERIFY(!map.item->isRendering());
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(200, 0, 0));
        QCOMPARE(map.item->boundingRect(), QRectF(50, 50, 0, 0));
    }

    void largeDrawingsComeFromAWorker()
    {
        Map map;
        auto renderer = std::make_shared<SquareRenderer>(qRgb(0, 0, 255));
        map.item->setRenderer(renderer);
        map.plot.replot();
        QTRY_VERIFY(!map.item->isRendering());
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));

        // Zoomed out twice as far: the kept image shows at once, scaled, then the new one.
        const int before = renderer->renders;
        map.plot.zoomer()->zoom(QRectF(-50, -50, 200, 200));
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        QTRY_VERIFY(renderer->renders > before);
        QTRY_VERIFY(!map.item->isRendering());
        QCOMPARE(map.at(QPointF(45, 45)), qRgb(0, 0, 255));
        QVERIFY(map.at(QPointF(20, 20)) != qRgb(0, 0, 255));
    }

    void exportsAreDrawnInFull()
    {
        Map map;
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(0, 128, 0)));
        QImage image(400, 400, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QwtPlotRenderer renderer;
        QPainter painter(&image);
        renderer.render(&map.plot, &painter, QRectF(0, 0, 400, 400));
        painter.end();
        int green = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                green += image.pixel(x, y) == qRgb(0, 128, 0);
        QVERIFY2(green > 1000, qPrintable(QString::number(green)));
    }

    void anItemGoneBeforeItsImageIsLeftAlone()
    {
        QSemaphore gate;
        auto map = std::make_unique<Map>();
        map->item->setRenderer(std::make_shared<SquareRenderer>(qRgb(1, 2, 3), &gate));
        map->plot.replot();
        QTRY_VERIFY(map->item->isRendering());
        map.reset(); // the plot deletes its items
        gate.release();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents(); // a stray delivery would crash here
    }

    void aLateDrawingOfAnOldRendererIsDropped()
    {
        QSemaphore gate;
        Map map;
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(9, 9, 9), &gate));
        map.plot.replot();
        QTRY_VERIFY(map.item->isRendering());
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(0, 200, 200)));
        map.plot.replot();
        gate.release();
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 200, 200));
        // The first drawing, finished late, is not shown over it.
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 200, 200));
    }

    void drawingErrorsAreReportedOnce_data()
    {
        QTest::addColumn<qint64>("cost");
        QTest::addColumn<bool>("standard");
        QTest::addColumn<QString>("message");
        QTest::newRow("on the spot") << qint64(10) << false << "Error while drawing layer 'layer': the grid file is damaged";
        QTest::newRow("on a worker") << VwvBasemapImageItem::SYNCHRONOUS_COST * 10 << true
                                     << "Error while drawing layer 'layer': std::exception: disk on fire";
    }

    void drawingErrorsAreReportedOnce()
    {
        QFETCH(qint64, cost);
        QFETCH(bool, standard);
        QFETCH(QString, message);
        MessageCatcher caught;
        QStringList& warnings = caught.warnings;
        Map map;
        auto failing = std::make_shared<FailingRenderer>(cost, standard);
        map.item->setRenderer(failing);
        map.plot.replot();
        QTRY_COMPARE(warnings.size(), 1);
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
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(0, 0, 255)));
        map.plot.replot();
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        caught.stop();
        QCOMPARE(warnings, QStringList{message});
    }

    void theOldPictureStandsInForANewRenderer()
    {
        QSemaphore gate;
        Map map;
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(0, 0, 255)));
        map.plot.replot();
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        // While the new drawing is held, the map shows the old one rather than nothing.
        map.item->setRenderer(std::make_shared<SquareRenderer>(qRgb(200, 0, 0), &gate));
        map.plot.replot();
        QTRY_VERIFY(map.item->isRendering());
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
        gate.release();
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(200, 0, 0));
    }

    void sharpOnHighDpiScreens_data()
    {
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<int>("dotSize");
        QTest::newRow("ordinary screen, 5-pixel symbol") << qreal(1) << 5;
        QTest::newRow("double density, 5-pixel symbol") << qreal(2) << 5;
        QTest::newRow("double density, one-pixel dot") << qreal(2) << 1;
        QTest::newRow("one and a half") << qreal(1.5) << 5;
    }

    void sharpOnHighDpiScreens()
    {
        QFETCH(qreal, ratio);
        QFETCH(int, dotSize);
        // A screen's backing store: a pixmap of that many device pixels per logical pixel.
        QPixmap screen(QSize(100, 100) * ratio);
        screen.setDevicePixelRatio(ratio);
        screen.fill(Qt::white);
        VsdPointSet one;
        one.append(50, 50);
        VwvPointRasterizer::Style style;
        style.size = dotSize;
        VwvBasemapImageItem item;
        item.setRenderer(std::make_shared<VwvBasemapRenderer>(one, QString(), VugColorScale::rainbow(), style));
        QwtScaleMap x, y;
        x.setScaleInterval(0, 100);
        x.setPaintInterval(0, 100);
        y.setScaleInterval(0, 100);
        y.setPaintInterval(100, 0);
        QPainter painter(&screen);
        item.draw(&painter, x, y, QRectF(0, 0, 100, 100));
        painter.end();
        const QImage image = screen.toImage();
        int marked = 0;
        for (int j = 0; j < image.height(); ++j)
            for (int i = 0; i < image.width(); ++i)
                marked += image.pixel(i, j) != qRgb(255, 255, 255);
        // The symbol keeps its logical size, in as many device pixels as the screen has; a
        // dot stays one device pixel.
        const double across = std::lround(dotSize * ratio);
        const int expected = dotSize == 1 ? 1 : int(std::lround(M_PI * across * across / 4.0));
        QVERIFY2(qAbs(marked - expected) <= expected / 4 + 1,
                 qPrintable(QStringLiteral("%1 pixels marked, %2 expected").arg(marked).arg(expected)));
        // Centred on the sample, in device pixels.
        const QPoint centre(int(50 * ratio), int(50 * ratio));
        QVERIFY(image.pixel(centre) != qRgb(255, 255, 255) || image.pixel(centre - QPoint(1, 1)) != qRgb(255, 255, 255));
    }

    void pointPicksGoToTheSet()
    {
        VsdPointSet points;
        points.append(10, 10);
        points.append(20, 20);
        points.append(30, 30);
        VwvBasemapRenderer renderer(points);
        QCOMPARE(renderer.pointToRank(QPointF(19, 19), 2.0), 1);
        QCOMPARE(renderer.pointToRank(QPointF(25, 25), 2.0), -1);
        QCOMPARE(renderer.rectangleToRank(QRectF(5, 5, 20, 20)).toList(), (QVector<int>{0, 1}));
        QCOMPARE(renderer.polygonToRanks(QPolygonF({{0, 0}, {40, 0}, {40, 40}})).toList(), (QVector<int>{0, 1, 2}));
    }
};

QTEST_MAIN(TestVwvBasemapImageItem)
#include "tst_vwvbasemapimageitem.moc"
