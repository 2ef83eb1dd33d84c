// A map layer's image on the plot: drawn on the spot when small, on a worker thread when
// large (the kept image shown moved until the new one comes), at full quality for exports,
// and never delivered to an item that is gone. The point renderer's picks go to its set.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "MapTestKit.h"
#include "MessageCatcher.h"
#include <KbeError.h>
#include <VsdPointSet.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapRenderer.h>

#include <QSemaphore>

namespace {

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

class TestVwvBasemapImageItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smallSetsAreDrawnOnTheSpot()
    {
        const VsdPointSet points = MapTest::pointSet(QVector<QPointF>(50, QPointF(50, 50)));
        VwvPointRasterizer::Style style;
        style.size = 7;
        style.color = qRgb(200, 0, 0);
        Map map;
        map.show(std::make_shared<VwvBasemapRenderer>(points, QString(), VugColorScale::rainbow(), style));
        QVERIFY(!map.item->isRendering());
        QCOMPARE(map.at(QPointF(50, 50)), qRgb(200, 0, 0));
        QCOMPARE(map.item->boundingRect(), QRectF(50, 50, 0, 0));
    }

    void largeDrawingsComeFromAWorker()
    {
        Map map;
        auto renderer = std::make_shared<SquareRenderer>(qRgb(0, 0, 255));
        map.show(renderer);
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
        const int green = ImageChecks::countNear(MapTest::rendered(map.plot), QColor(0, 128, 0));
        QVERIFY2(green > 1000, qPrintable(QString::number(green)));
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

    void newRenderersReplaceTheOldPictureInTurn()
    {
        QSemaphore gate;
        Map map;
        map.show(std::make_shared<SquareRenderer>(qRgb(0, 0, 255)));
        QTRY_COMPARE(map.at(QPointF(50, 50)), qRgb(0, 0, 255));
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

    void drawingErrorsAreReportedOnce_data()
    {
        MapTest::addColumns<qint64, int, QString>({"cost", "failure", "message"});
        QTest::newRow("on the spot") << qint64(10) << int(SquareRenderer::OURS)
                                     << "Error while drawing layer 'layer': the grid file is damaged";
        QTest::newRow("on a worker") << VwvBasemapImageItem::SYNCHRONOUS_COST * 10 << int(SquareRenderer::STANDARD)
                                     << "Error while drawing layer 'layer': std::exception: disk on fire";
    }
    void drawingErrorsAreReportedOnce()
    {
        auto [cost, failure, message] = MapTest::fetch<qint64, int, QString>();
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
        MapTest::addColumns<qreal, int>({"ratio", "dotSize"});
        QTest::newRow("ordinary screen, 5-pixel symbol") << qreal(1) << 5;
        QTest::newRow("double density, 5-pixel symbol") << qreal(2) << 5;
        QTest::newRow("double density, one-pixel dot") << qreal(2) << 1;
        QTest::newRow("one and a half") << qreal(1.5) << 5;
    }
    void sharpOnHighDpiScreens()
    {
        auto [ratio, dotSize] = MapTest::fetch<qreal, int>();
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
};

QTEST_MAIN(TestVwvBasemapImageItem)
#include "tst_vwvbasemapimageitem.moc"
