// The overview of a scene: the whole extent fitted into the plot as the scene and the
// size change, the zoom-area rectangle drawn where the area maps, moved by drags, double
// clicks and arrow keys with one signal each, and the main map's rectangles it refuses.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "LowerTestSupport.h"
#include "MapTestKit.h"
#include <VugScene.h>
#include <Vwv2DOverView.h>
#include <VwqBasemapPlot.h>

using MapTest::pointsItem;

namespace {

const QRectF AREA(200, 150, 100, 80); // away from the scene's points

VwqBasemapPlot* plotOf(const Vwv2DOverView& view)
{
    return view.findChild<VwqBasemapPlot*>(QStringLiteral("GeographicOverview"));
}

// The widget the user points at, at a place on the canvas.
QWidget* surfaceAt(const Vwv2DOverView& view, const QPointF& pixel)
{
    return plotOf(view)->canvas()->childAt(pixel.toPoint());
}

QPoint areaCentre(const Vwv2DOverView& view)
{
    return plotOf(view)->viewToPixel(view.getZoomArea().center()).toPoint();
}

} // namespace

class TestVwv2DOverView : public QObject
{
    Q_OBJECT
    MapTestData _data;
    VugScene _scene{1}; // (0, 0) to (500, 500)

    // A shown overview of the scene (0,0)-(500,500) with the zoom area AREA.
    std::unique_ptr<Vwv2DOverView> makeOverview()
    {
        auto view = std::make_unique<Vwv2DOverView>();
        view->resize(200, 200);
        view->setScene(&_scene, _data.datasets.get());
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            return nullptr;
        view->setZoomArea(AREA);
        return view;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(_data.addPoints(QStringLiteral("c"), {{1000, -300}}));
        _scene.appendItem(pointsItem(QStringLiteral("x"), QStringLiteral("a")));
        _scene.appendItem(pointsItem(QStringLiteral("z"), QStringLiteral("b")));
    }

    void wholeSceneIsShown_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("square") << QSize(200, 200);
        QTest::newRow("wide") << QSize(320, 120);
        QTest::newRow("tall") << QSize(120, 320);
    }
    void wholeSceneIsShown()
    {
        QFETCH(QSize, size);
        auto view = makeOverview();
        QVERIFY(view);
        view->resize(size);
        const VwqBasemapPlot* plot = plotOf(*view);
        // Both extreme points inside, the extent filling the canvas in its tight direction,
        // one map unit as long across as up.
        const auto fits = [plot](const QPointF& low, const QPointF& high) {
            const QRectF canvas = plot->canvas()->rect();
            const QRectF shown = plot->viewToPixel(QRectF(low, high));
            return canvas.contains(shown)
                && (shown.width() > 0.8 * canvas.width() || shown.height() > 0.8 * canvas.height())
                && qAbs(shown.width() / shown.height() - (high.x() - low.x()) / (high.y() - low.y())) < 0.02;
        };
        QTRY_VERIFY(fits(QPointF(0, 0), QPointF(500, 500)));
        QCOMPARE(view->getZoomArea(), AREA);

        VugScene grown(2);
        grown.setItems(_scene.items());
        view->setScene(&grown, _data.datasets.get());
        grown.appendItem(pointsItem(QStringLiteral("c"), QStringLiteral("c")));
        QTRY_VERIFY(fits(QPointF(0, -300), QPointF(1000, 500)));
    }

    void emptyOrDeletedSceneKeepsTheLastView()
    {
        auto view = makeOverview();
        QVERIFY(view);
        const QRectF shown = plotOf(*view)->currentViewRect();
        VugScene empty(3);
        view->setScene(&empty, _data.datasets.get());
        QCOMPARE(plotOf(*view)->currentViewRect(), shown);
        QCOMPARE(view->getZoomArea(), AREA);

        auto doomed = std::make_unique<VugScene>(4);
        doomed->setItems(_scene.items());
        view->setScene(doomed.get(), _data.datasets.get());
        doomed.reset();
        view->resize(260, 180);
        QTest::mouseDClick(surfaceAt(*view, QPointF(20, 20)), Qt::LeftButton, {}, QPoint(20, 20));
        QVERIFY(view->getZoomArea().isValid());
    }

    // The cursor shows what can be grabbed, before and during the drag.
    void dragMovesTheRectangle_data()
    {
        // grab: pixels from the area's centre
        Row<QRectF, QPoint, QPoint, int>::addColumns(); // area, grab, delta, emissions
        QTest::newRow("right and down") << AREA << QPoint(0, 0) << QPoint(30, 20) << 1;
        QTest::newRow("grabbed off-centre, up and left") << AREA << QPoint(14, -10) << QPoint(-45, -25) << 1;
        QTest::newRow("tiny area still grabbable") << QRectF(250, 250, 0.5, 0.5) << QPoint(2, 2) << QPoint(10, 0) << 1;
        QTest::newRow("pressed outside") << AREA << QPoint(0, 50) << QPoint(30, 0) << 0;
    }
    void dragMovesTheRectangle()
    {
        auto [area, grab, delta, emissions] = Row<QRectF, QPoint, QPoint, int>::fetch();
        auto view = makeOverview();
        QVERIFY(view);
        view->setZoomArea(area);
        QSignalSpy moved(view.get(), &Vwv2DOverView::zoomAreaChanged);
        const QPoint from = areaCentre(*view) + grab;
        QWidget* surface = surfaceAt(*view, from);
        MapTest::moveMouse(surface, from);
        QCOMPARE(surface->cursor().shape(), emissions ? Qt::OpenHandCursor : Qt::ArrowCursor);
        QTest::mousePress(surface, Qt::LeftButton, {}, from);
        QCOMPARE(surface->cursor().shape(), emissions ? Qt::ClosedHandCursor : Qt::ArrowCursor);
        MapTest::moveMouse(surface, from + delta / 2, Qt::LeftButton);
        MapTest::moveMouse(surface, from + delta, Qt::LeftButton);
        view->setZoomArea(QRectF(0, 0, 10, 10)); // the main map's zoom loses to a drag
        QTest::mouseRelease(surface, Qt::LeftButton, {}, from + delta);

        QCOMPARE(moved.count(), emissions);
        const double perPixel = plotOf(*view)->getFactorPixelToSize();
        const QRectF expected = emissions ? area.translated(delta.x() * perPixel, -delta.y() * perPixel) : QRectF(0, 0, 10, 10);
        const QRectF got = view->getZoomArea();
        QVERIFY2(MapTest::near(got.center(), expected.center(), perPixel), MapTest::describe(got));
        QVERIFY(qFuzzyCompare(got.width(), expected.width()) && qFuzzyCompare(got.height(), expected.height()));
        if (emissions)
            QCOMPARE(moved.last().at(0).toRectF(), got);
    }

    void doubleClickCentres_data()
    {
        // offset: pixels from the area's centre
        Row<QPoint, int>::addColumns(); // offset, emissions
        // The first click on the rectangle is a drag of no length, announced as any drag.
        QTest::newRow("on the rectangle") << QPoint(6, 4) << 2;
        QTest::newRow("elsewhere") << QPoint(-60, 45) << 1;
    }
    void doubleClickCentres()
    {
        auto [offset, emissions] = Row<QPoint, int>::fetch();
        auto view = makeOverview();
        QVERIFY(view);
        QSignalSpy moved(view.get(), &Vwv2DOverView::zoomAreaChanged);
        const QPoint at = areaCentre(*view) + offset;
        QWidget* surface = surfaceAt(*view, at);
        // As a window system delivers it: the double click takes the second press's place.
        QTest::mouseClick(surface, Qt::LeftButton, {}, at);
        QTest::mouseDClick(surface, Qt::LeftButton, {}, at);
        QTest::mouseRelease(surface, Qt::LeftButton, {}, at);
        QCOMPARE(moved.count(), emissions);
        const QRectF got = moved.last().at(0).toRectF();
        QVERIFY(MapTest::near(got.center(), plotOf(*view)->pixelToView(QPointF(at)), plotOf(*view)->getFactorPixelToSize()));
        QCOMPARE(got.size(), AREA.size());
    }

    void arrowKeysMoveTheRectangle_data()
    {
        // direction: on screen
        Row<int, QPoint>::addColumns(); // key, direction
        QTest::newRow("left") << int(Qt::Key_Left) << QPoint(-1, 0);
        QTest::newRow("right") << int(Qt::Key_Right) << QPoint(1, 0);
        QTest::newRow("up") << int(Qt::Key_Up) << QPoint(0, -1);
        QTest::newRow("down") << int(Qt::Key_Down) << QPoint(0, 1);
        QTest::newRow("another key") << int(Qt::Key_A) << QPoint(0, 0);
    }
    void arrowKeysMoveTheRectangle()
    {
        auto [key, direction] = Row<int, QPoint>::fetch();
        auto view = makeOverview();
        QVERIFY(view);
        view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(view.get()));
        QTest::mouseClick(surfaceAt(*view, QPointF(5, 5)), Qt::LeftButton, {}, QPoint(5, 5));
        QVERIFY(view->hasFocus());
        QSignalSpy moved(view.get(), &Vwv2DOverView::zoomAreaChanged);
        const QPoint before = areaCentre(*view);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        const QPoint step = areaCentre(*view) - before;
        QCOMPARE(moved.count(), direction.isNull() ? 0 : 1);
        QCOMPARE(QPoint(qBound(-1, step.x(), 1), qBound(-1, step.y(), 1)), direction);
        QVERIFY(step.manhattanLength() <= 10);
    }

    void badOrSameAreasChangeNothing_data()
    {
        QTest::addColumn<QRectF>("rect");
        const double nan = std::nan(""), inf = HUGE_VAL;
        QTest::newRow("null") << QRectF();
        QTest::newRow("not a number") << QRectF(nan, 0, 10, 10);
        QTest::newRow("infinite") << QRectF(0, 0, inf, 10);
        QTest::newRow("no height") << QRectF(0, 0, 10, 0);
        QTest::newRow("negative width") << QRectF(10, 0, -5, 10);
        QTest::newRow("the same") << AREA;
    }
    void badOrSameAreasChangeNothing()
    {
        QFETCH(QRectF, rect);
        auto view = makeOverview();
        QVERIFY(view);
        QSignalSpy moved(view.get(), &Vwv2DOverView::zoomAreaChanged);
        if (rect != AREA)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Vwv2DOverView::setZoomArea")));
        view->setZoomArea(rect);
        QCOMPARE(view->getZoomArea(), AREA);
        QCOMPARE(moved.count(), 0);
    }

    void rectangleIsDrawnWhereTheAreaMaps_data()
    {
        Row<QSize, QRectF>::addColumns(); // size, area
        QTest::newRow("as shown") << QSize(200, 200) << AREA;
        QTest::newRow("after a resize") << QSize(340, 180) << AREA;
        QTest::newRow("larger than at first") << QSize(900, 900) << AREA;
        QTest::newRow("tiny area") << QSize(200, 200) << QRectF(250, 250, 0.5, 0.5);
    }
    void rectangleIsDrawnWhereTheAreaMaps()
    {
        auto [size, area] = Row<QSize, QRectF>::fetch();
        auto view = makeOverview();
        QVERIFY(view);
        view->setZoomArea(area);
        view->resize(size);
        QTRY_COMPARE(plotOf(*view)->canvas()->size(), size);
        const QColor border = view->palette().color(QPalette::Highlight);
        const QImage image = view->grab().toImage();
        const QPoint origin = plotOf(*view)->canvas()->mapTo(view.get(), QPoint(0, 0));
        const QRectF r = plotOf(*view)->viewToPixel(area).translated(origin);
        // Border-coloured pixels within 3 pixels of a point.
        const auto borderAround = [&](const QPointF& p) {
            return ImageChecks::countNear(image.copy(QRect(p.toPoint() - QPoint(3, 3), QSize(7, 7))), border);
        };
        for (const QPointF& side : {QPointF(r.left(), r.center().y()), QPointF(r.right(), r.center().y()),
                                    QPointF(r.center().x(), r.top()), QPointF(r.center().x(), r.bottom())})
            QVERIFY2(borderAround(side) > 0, qPrintable(QStringLiteral("%1, %2").arg(side.x()).arg(side.y())));
        QCOMPARE(borderAround(r.center() + QPointF(r.width() / 2 + 12, 0)), 0);
    }
};

QTEST_MAIN(TestVwv2DOverView)
#include "tst_vwv2doverview.moc"
