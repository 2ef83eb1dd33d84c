// The overview of a scene: the whole extent fitted into the plot as the scene and the
// size change, the zoom-area rectangle drawn where the area maps, moved by drags, double
// clicks and arrow keys with one signal each, and the main map's rectangles it refuses.

#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <Vwv2DOverView.h>
#include <VwqBasemapPlot.h>

#include <QtTest>
#include <cmath>
#include <memory>

Q_DECLARE_METATYPE(Qt::CursorShape)

namespace {

const QRectF AREA(200, 150, 100, 80); // away from the scene's points

VugSceneItem pointsItem(const QString& id, const QString& dataset)
{
    return VugSceneItem(id, id.toUpper(), VugERendering::POINTS, dataset);
}

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

void moveMouse(QWidget* widget, const QPoint& at, Qt::MouseButtons buttons)
{
    QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

// For failure messages; QTest::toString() hands back memory the caller must free.
QString describe(const QRectF& r)
{
    return QStringLiteral("(%1, %2, %3 x %4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

QString describe(const QPointF& p)
{
    return QStringLiteral("(%1, %2)").arg(p.x()).arg(p.y());
}

bool near(const QPointF& a, const QPointF& b, double tolerance)
{
    return qAbs(a.x() - b.x()) <= tolerance && qAbs(a.y() - b.y()) <= tolerance;
}

} // namespace

class TestVwv2DOverView : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;
    std::unique_ptr<VssProject> _project;
    std::unique_ptr<VugDatasetStore> _datasets;
    std::unique_ptr<VugScene> _scene;

    // A shown overview of the scene (0,0)-(500,500) with the zoom area AREA.
    std::unique_ptr<Vwv2DOverView> makeOverview()
    {
        auto view = std::make_unique<Vwv2DOverView>();
        view->resize(200, 200);
        view->setScene(_scene.get(), _datasets.get());
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            return nullptr;
        view->setZoomArea(AREA);
        return view;
    }

private Q_SLOTS:
    void initTestCase()
    {
        _project = VssProject::create(_dir.filePath(QStringLiteral("p")), QStringLiteral("P"));
        _datasets = std::make_unique<VugDatasetStore>(*_project);
        VsdPointSet a, b, c;
        a.append(0, 0);
        a.append(100, 50);
        b.append(500, 500);
        c.append(1000, -300);
        QVERIFY(_datasets->setPointSet(QStringLiteral("a"), a));
        QVERIFY(_datasets->setPointSet(QStringLiteral("b"), b));
        QVERIFY(_datasets->setPointSet(QStringLiteral("c"), c));
        _scene = std::make_unique<VugScene>(1);
        _scene->appendItem(pointsItem(QStringLiteral("x"), QStringLiteral("a")));
        _scene->appendItem(pointsItem(QStringLiteral("z"), QStringLiteral("b")));
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
        grown.setItems(_scene->items());
        view->setScene(&grown, _datasets.get());
        grown.appendItem(pointsItem(QStringLiteral("c"), QStringLiteral("c")));
        QTRY_VERIFY(fits(QPointF(0, -300), QPointF(1000, 500)));
    }

    void emptyOrDeletedSceneKeepsTheLastView()
    {
        auto view = makeOverview();
        QVERIFY(view);
        const QRectF shown = plotOf(*view)->currentViewRect();
        VugScene empty(3);
        view->setScene(&empty, _datasets.get());
        QCOMPARE(plotOf(*view)->currentViewRect(), shown);
        QCOMPARE(view->getZoomArea(), AREA);

        auto doomed = std::make_unique<VugScene>(4);
        doomed->setItems(_scene->items());
        view->setScene(doomed.get(), _datasets.get());
        doomed.reset();
        view->resize(260, 180);
        QTest::mouseDClick(surfaceAt(*view, QPointF(20, 20)), Qt::LeftButton, {}, QPoint(20, 20));
        QVERIFY(view->getZoomArea().isValid());
    }

    void cursorShowsWhatCanBeGrabbed_data()
    {
        QTest::addColumn<QRectF>("area");
        QTest::addColumn<QPoint>("offset"); // pixels from the area's centre
        QTest::addColumn<bool>("pressed");
        QTest::addColumn<Qt::CursorShape>("cursor");
        QTest::newRow("hover inside") << AREA << QPoint(12, -8) << false << Qt::OpenHandCursor;
        QTest::newRow("hover outside") << AREA << QPoint(40, 0) << false << Qt::ArrowCursor;
        QTest::newRow("pressed inside") << AREA << QPoint(0, 0) << true << Qt::ClosedHandCursor;
        QTest::newRow("pressed outside") << AREA << QPoint(0, 40) << true << Qt::ArrowCursor;
        QTest::newRow("tiny area still grabbable") << QRectF(250, 250, 0.5, 0.5) << QPoint(2, 2) << false
                                                   << Qt::OpenHandCursor;
    }
    void cursorShowsWhatCanBeGrabbed()
    {
        QFETCH(QRectF, area);
        QFETCH(QPoint, offset);
        QFETCH(bool, pressed);
        QFETCH(Qt::CursorShape, cursor);
        auto view = makeOverview();
        QVERIFY(view);
        view->setZoomArea(area);
        const QPoint at = areaCentre(*view) + offset;
        QWidget* surface = surfaceAt(*view, at);
        moveMouse(surface, at, Qt::NoButton);
        if (pressed)
            QTest::mousePress(surface, Qt::LeftButton, {}, at);
        QCOMPARE(surface->cursor().shape(), cursor);
    }

    void dragMovesTheRectangle_data()
    {
        QTest::addColumn<QPoint>("grab"); // pixels from the area's centre
        QTest::addColumn<QPoint>("delta");
        QTest::addColumn<int>("emissions");
        QTest::newRow("right and down") << QPoint(0, 0) << QPoint(30, 20) << 1;
        QTest::newRow("grabbed off-centre, up and left") << QPoint(14, -10) << QPoint(-45, -25) << 1;
        QTest::newRow("zero-length drag, announced all the same") << QPoint(0, 0) << QPoint(0, 0) << 1;
        QTest::newRow("pressed outside") << QPoint(0, 50) << QPoint(30, 0) << 0;
    }
    void dragMovesTheRectangle()
    {
        QFETCH(QPoint, grab);
        QFETCH(QPoint, delta);
        QFETCH(int, emissions);
        auto view = makeOverview();
        QVERIFY(view);
        QSignalSpy moved(view.get(), &Vwv2DOverView::zoomAreaChanged);
        const QPoint from = areaCentre(*view) + grab;
        QWidget* surface = surfaceAt(*view, from);
        QTest::mousePress(surface, Qt::LeftButton, {}, from);
        moveMouse(surface, from + delta / 2, Qt::LeftButton);
        moveMouse(surface, from + delta, Qt::LeftButton);
        if (surface->cursor().shape() == Qt::ClosedHandCursor)
            view->setZoomArea(QRectF(0, 0, 10, 10)); // the main map's zoom loses to the drag
        QTest::mouseRelease(surface, Qt::LeftButton, {}, from + delta);

        QCOMPARE(moved.count(), emissions);
        const double perPixel = plotOf(*view)->getFactorPixelToSize();
        const QRectF expected = emissions ? AREA.translated(delta.x() * perPixel, -delta.y() * perPixel) : AREA;
        const QRectF got = view->getZoomArea();
        QVERIFY2(near(got.center(), expected.center(), perPixel), qPrintable(describe(got)));
        QVERIFY(qFuzzyCompare(got.width(), AREA.width()) && qFuzzyCompare(got.height(), AREA.height()));
        if (emissions)
            QCOMPARE(moved.last().at(0).toRectF(), got);
    }

    void doubleClickCentres_data()
    {
        QTest::addColumn<QPoint>("offset"); // pixels from the area's centre
        QTest::addColumn<int>("emissions");
        // The first click on the rectangle is a drag of no length, announced as any drag.
        QTest::newRow("on the rectangle") << QPoint(6, 4) << 2;
        QTest::newRow("elsewhere") << QPoint(-60, 45) << 1;
    }
    void doubleClickCentres()
    {
        QFETCH(QPoint, offset);
        QFETCH(int, emissions);
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
        QVERIFY(near(got.center(), plotOf(*view)->pixelToView(QPointF(at)), plotOf(*view)->getFactorPixelToSize()));
        QCOMPARE(got.size(), AREA.size());
    }

    void arrowKeysMoveTheRectangle_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QPoint>("direction"); // on screen
        QTest::newRow("left") << int(Qt::Key_Left) << QPoint(-1, 0);
        QTest::newRow("right") << int(Qt::Key_Right) << QPoint(1, 0);
        QTest::newRow("up") << int(Qt::Key_Up) << QPoint(0, -1);
        QTest::newRow("down") << int(Qt::Key_Down) << QPoint(0, 1);
        QTest::newRow("another key") << int(Qt::Key_A) << QPoint(0, 0);
    }
    void arrowKeysMoveTheRectangle()
    {
        QFETCH(int, key);
        QFETCH(QPoint, direction);
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
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRectF>("area");
        QTest::newRow("as shown") << QSize(200, 200) << AREA;
        QTest::newRow("after a resize") << QSize(340, 180) << AREA;
        QTest::newRow("larger than at first") << QSize(900, 900) << AREA;
        QTest::newRow("tiny area") << QSize(200, 200) << QRectF(250, 250, 0.5, 0.5);
    }
    void rectangleIsDrawnWhereTheAreaMaps()
    {
        QFETCH(QSize, size);
        QFETCH(QRectF, area);
        auto view = makeOverview();
        QVERIFY(view);
        view->setZoomArea(area);
        view->resize(size);
        QTRY_COMPARE(plotOf(*view)->canvas()->size(), size);
        const QColor border = view->palette().color(QPalette::Highlight);
        const QImage image = view->grab().toImage();
        const QPoint origin = plotOf(*view)->canvas()->mapTo(view.get(), QPoint(0, 0));
        const QRectF r = plotOf(*view)->viewToPixel(area).translated(origin);
        // Counts border-coloured pixels within 3 pixels of a point.
        const auto borderAround = [&](const QPointF& p) {
            int count = 0;
            for (int dx = -3; dx <= 3; ++dx)
                for (int dy = -3; dy <= 3; ++dy) {
                    const QColor c = image.pixelColor(p.toPoint() + QPoint(dx, dy));
                    count += qAbs(c.red() - border.red()) + qAbs(c.green() - border.green())
                                 + qAbs(c.blue() - border.blue()) < 24;
                }
            return count;
        };
        for (const QPointF& side : {QPointF(r.left(), r.center().y()), QPointF(r.right(), r.center().y()),
                                    QPointF(r.center().x(), r.top()), QPointF(r.center().x(), r.bottom())})
            QVERIFY2(borderAround(side) > 0, qPrintable(describe(side)));
        QCOMPARE(borderAround(r.center() + QPointF(r.width() / 2 + 12, 0)), 0);
    }
};

QTEST_MAIN(TestVwv2DOverView)
#include "tst_vwv2doverview.moc"
