// The map plot's tools driven with the mouse, the wheel and the keys on a plot whose
// canvas is 600 x 400 pixels showing 0..600 by 0..400 map units (one unit a pixel): which
// tool takes which mode, panning, centring, wheel zoom about the mouse, click and box
// zoom, the zoom stack, and the tracker.

#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VwqPlotMagnifier.h>
#include <VwqPlotPanner.h>
#include <VwqPlotTracker.h>
#include <VwqPlotZoomer.h>

#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_map.h>

#include <QtTest>
#include <cmath>
#include <memory>

namespace {

struct Plot
{
    QwtPlot plot;
    QwtPlotCanvas* canvas = new QwtPlotCanvas;
    VwqPlotPanner* panner;
    VwqPlotMagnifier* magnifier;
    VwqPlotZoomer* zoomer;
    VwqPlotTracker* tracker;

    Plot()
    {
        canvas->setFrameStyle(QFrame::NoFrame);
        canvas->setFocusPolicy(Qt::StrongFocus);
        plot.setCanvas(canvas);
        for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
            plot.enableAxis(axis, false);
        plot.plotLayout()->setCanvasMargin(0);
        plot.plotLayout()->setAlignCanvasToScales(true);
        plot.setContentsMargins(0, 0, 0, 0);
        plot.resize(600, 400);
        plot.setAxisScale(QwtPlot::xBottom, 0, 600);
        plot.setAxisScale(QwtPlot::yLeft, 0, 400);
        panner = new VwqPlotPanner(canvas);
        magnifier = new VwqPlotMagnifier(canvas);
        zoomer = new VwqPlotZoomer(canvas);
        zoomer->setFactor(0.1);
        zoomer->setMaxStackDepth(100);
        tracker = new VwqPlotTracker(canvas);
        plot.show();
        plot.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&plot));
        plot.replot();
        canvas->setFocus();
    }

    void setMode(Vw::ViewMode mode)
    {
        panner->setMode(mode);
        zoomer->setMode(mode);
    }

    QRectF view() const { return zoomer->getZoomRect(); }
    QPointF toMap(const QPoint& pixel) const
    {
        return QPointF(plot.canvasMap(QwtPlot::xBottom).invTransform(pixel.x()),
                       plot.canvasMap(QwtPlot::yLeft).invTransform(pixel.y()));
    }

    void wheel(const QPoint& at, int delta)
    {
        QWheelEvent event(at, canvas->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(canvas, &event);
    }

    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(canvas, Qt::LeftButton, Qt::NoModifier, from);
        // QTest::mouseMove gives no button state on every platform; a real drag does.
        for (const QPoint& at : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, canvas->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(canvas, &move);
        }
        QTest::mouseRelease(canvas, Qt::LeftButton, Qt::NoModifier, to);
    }
};

QString describe(const QRectF& r)
{
    return QStringLiteral("(%1, %2 %3x%4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

bool near(const QRectF& a, const QRectF& b, double tolerance = 1e-6)
{
    return std::fabs(a.left() - b.left()) < tolerance && std::fabs(a.top() - b.top()) < tolerance
        && std::fabs(a.width() - b.width()) < tolerance && std::fabs(a.height() - b.height()) < tolerance;
}

} // namespace


class TestVwqPlotTools : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void initTestCase()
    {
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
    }

    void modesPickTheirTool_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("panner");
        QTest::addColumn<bool>("zoomer");
        QTest::addColumn<int>("cursor");

        QTest::newRow("pan") << int(Vw::PAN) << true << false << int(Qt::OpenHandCursor);
        QTest::newRow("select") << int(Vw::SELECT) << true << false << int(Qt::BitmapCursor);
        QTest::newRow("zoom in") << int(Vw::ZOOM_IN) << false << true << int(Qt::BitmapCursor);
        QTest::newRow("zoom out") << int(Vw::ZOOM_OUT) << false << true << int(Qt::BitmapCursor);
        QTest::newRow("zoom box") << int(Vw::ZOOM_BOX) << false << true << int(Qt::BitmapCursor);
        QTest::newRow("measure area") << int(Vw::MEASURE_AREA) << false << false << -1;
        QTest::newRow("no mode") << int(Vw::NO_MODE) << false << false << -1;
    }
    void modesPickTheirTool()
    {
        QFETCH(int, mode);
        QFETCH(bool, panner);
        QFETCH(bool, zoomer);
        QFETCH(int, cursor);

        Plot p;
        p.setMode(Vw::ViewMode(mode));
        QCOMPARE(p.panner->isEnabled(), panner);
        QCOMPARE(p.zoomer->isEnabled(), zoomer);
        if (cursor >= 0)
            QCOMPARE(int(p.canvas->cursor().shape()), cursor);

        // Without a tool for the mode, a drag leaves the view alone.
        if (!panner && !zoomer) {
            const QRectF before = p.view();
            p.drag(QPoint(300, 200), QPoint(340, 230));
            QVERIFY(near(p.view(), before, 1e-3));
        }
    }

    void dragPansTheMap()
    {
        Plot p;
        p.setMode(Vw::PAN);
        p.drag(QPoint(300, 200), QPoint(340, 230));
        // The map follows the hand: 40 units to the right, 30 down on screen (y grows up).
        QTRY_VERIFY(near(p.view(), QRectF(-40, 30, 600, 400), 1.0));
    }

    void arrowKeysPan_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("shift");
        QTest::addColumn<QPointF>("shift_of_view");

        QTest::newRow("right, 1 pixel") << int(Qt::Key_Right) << false << QPointF(-1, 0);
        QTest::newRow("shift right, 5 pixels") << int(Qt::Key_Right) << true << QPointF(-5, 0);
        QTest::newRow("left") << int(Qt::Key_Left) << false << QPointF(1, 0);
        QTest::newRow("shift up") << int(Qt::Key_Up) << true << QPointF(0, -5);
        QTest::newRow("down") << int(Qt::Key_Down) << false << QPointF(0, 1);
    }
    void arrowKeysPan()
    {
        QFETCH(int, key);
        QFETCH(bool, shift);
        QFETCH(QPointF, shift_of_view);

        Plot p;
        p.setMode(Vw::PAN);
        QTest::keyClick(p.canvas, Qt::Key(key), shift ? Qt::ShiftModifier : Qt::NoModifier);
        // One pixel is 600/599 units: the canvas map runs from pixel 0 to pixel 599.
        QVERIFY2(near(p.view(), QRectF(shift_of_view, QSizeF(600, 400)), 0.05),
                 qPrintable(describe(p.view())));
    }

    void selectModeCentresOnTheClick()
    {
        Plot p;
        p.setMode(Vw::SELECT);
        QTest::mouseClick(p.canvas, Qt::LeftButton, Qt::NoModifier, QPoint(100, 50));
        // Map point (100, 350) is now in the middle of the canvas.
        QVERIFY2(near(p.view(), QRectF(-200, 150, 600, 400), 1.0), qPrintable(describe(p.view())));
    }

    void wheelZoomKeepsThePointUnderTheMouse_data()
    {
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("delta");
        QTest::addColumn<bool>("natural");
        QTest::addColumn<bool>("zoomsIn");

        QTest::newRow("away from the user zooms in") << QPoint(150, 100) << 120 << true << true;
        QTest::newRow("towards the user zooms out") << QPoint(450, 300) << -120 << true << false;
        QTest::newRow("inverted wheel") << QPoint(10, 390) << 120 << false << false;
        QTest::newRow("three notches at a corner") << QPoint(599, 0) << 360 << true << true;
    }
    void wheelZoomKeepsThePointUnderTheMouse()
    {
        QFETCH(QPoint, at);
        QFETCH(int, delta);
        QFETCH(bool, natural);
        QFETCH(bool, zoomsIn);

        Plot p;
        p.magnifier->setNaturalDirection(natural);
        QSignalSpy rescaled(p.magnifier, &VwqPlotMagnifier::rescaled);
        const QPointF under = p.toMap(at);
        p.wheel(at, delta);
        QCOMPARE(rescaled.count(), 1);
        QCOMPARE(p.view().width() < 600, zoomsIn);
        const QPointF after = p.toMap(at);
        QVERIFY2(std::hypot(after.x() - under.x(), after.y() - under.y()) < 0.01,
                 qPrintable(QStringLiteral("%1,%2 -> %3,%4").arg(under.x()).arg(under.y()).arg(after.x()).arg(after.y())));
    }

    void wheelLeavesAHugeViewAndADisabledMagnifierAlone()
    {
        Plot p;
        p.zoomer->resetZoom(QRectF(0, 0, 8e9, 5e9));
        p.wheel(QPoint(300, 200), -120);
        QVERIFY(near(p.view(), QRectF(0, 0, 8e9, 5e9), 1.0));
        p.wheel(QPoint(300, 200), 120); // zooming in is still allowed
        QVERIFY(p.view().width() < 8e9);

        p.zoomer->resetZoom(QRectF(0, 0, 600, 400));
        p.magnifier->disable();
        p.wheel(QPoint(300, 200), 120);
        QVERIFY(near(p.view(), QRectF(0, 0, 600, 400)));
        p.magnifier->enable();
        p.wheel(QPoint(300, 200), 120);
        QVERIFY(p.view().width() < 600);
    }

    void clickZoomKeepsTheClickedPoint_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<double>("scale");
        QTest::newRow("zoom in") << int(Vw::ZOOM_IN) << 0.9;
        QTest::newRow("zoom out") << int(Vw::ZOOM_OUT) << 1.1;
    }
    void clickZoomKeepsTheClickedPoint()
    {
        QFETCH(int, mode);
        QFETCH(double, scale);

        Plot p;
        p.setMode(Vw::ViewMode(mode));
        QSignalSpy zoomed(p.zoomer, &VwqPlotZoomer::zoomed);
        const QPoint at(120, 80);
        const QPointF under = p.toMap(at);
        QTest::mouseClick(p.canvas, Qt::LeftButton, Qt::NoModifier, at);
        QCOMPARE(zoomed.count(), 1);
        QVERIFY(std::fabs(p.view().width() - 600 * scale) < 1e-6);
        const QPointF after = p.toMap(at);
        QVERIFY(std::hypot(after.x() - under.x(), after.y() - under.y()) < 1.0);
    }

    void zoomBoxSizes_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPoint>("to");
        QTest::addColumn<QRectF>("view");

        QTest::newRow("1 x 1 is a click, ignored") << QPoint(100, 100) << QPoint(101, 101) << QRectF(0, 0, 600, 400);
        // Grown to 11 x 11 about its centre, then widened to the view's 3:2 shape.
        QTest::newRow("3 x 1 grows to 11 pixels")
            << QPoint(100, 100) << QPoint(103, 101) << QRectF(101.5 - 8.25, 299.5 - 5.5, 16.5, 11);
        QTest::newRow("a wide box keeps its width, and gets the height of the view's shape")
            << QPoint(1, 1) << QPoint(301, 101) << QRectF(1, 249, 300, 200);
        QTest::newRow("a tall box keeps its height") << QPoint(10, 10) << QPoint(30, 110) << QRectF(-55, 290, 150, 100);
    }
    void zoomBoxSizes()
    {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(QRectF, view);

        Plot p;
        p.setMode(Vw::ZOOM_BOX);
        p.drag(from, to);
        QVERIFY2(near(p.view(), view, 1.5), qPrintable(describe(p.view())));
    }

    // Each step is a zoom to the next rectangle, or a move in the stack.
    void zoomStack_data()
    {
        QTest::addColumn<int>("depth");
        QTest::addColumn<QList<int>>("steps"); // >= 10: zoom to a rectangle of that width; else offset
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("width");

        QTest::newRow("two zooms keep the start") << -1 << QList<int>{300, 200} << 3 << 2 << 200.0;
        QTest::newRow("back once") << -1 << QList<int>{300, 200, -1} << 3 << 1 << 300.0;
        QTest::newRow("back past the start stays at it") << -1 << QList<int>{300, -1, -1, -1} << 2 << 0 << 600.0;
        QTest::newRow("back and forward") << -1 << QList<int>{300, 200, -1, 1} << 3 << 2 << 200.0;
        QTest::newRow("forward past the end stays") << -1 << QList<int>{300, 1} << 2 << 1 << 300.0;
        QTest::newRow("a zoom after going back drops the rest")
            << -1 << QList<int>{300, 200, -1, -1, 100} << 2 << 1 << 100.0;
        QTest::newRow("the same rectangle twice is one entry") << -1 << QList<int>{300, 300} << 2 << 1 << 300.0;
        QTest::newRow("depth 2 drops the oldest") << 2 << QList<int>{500, 400, 300, 200} << 3 << 2 << 200.0;
    }
    void zoomStack()
    {
        QFETCH(int, depth);
        QFETCH(QList<int>, steps);
        QFETCH(int, size);
        QFETCH(int, index);
        QFETCH(double, width);

        Plot p;
        p.zoomer->setMaxStackDepth(depth);
        for (int step : steps) {
            if (step >= 10)
                p.zoomer->zoom(QRectF(0, 0, step, step * 2.0 / 3.0));
            else
                p.zoomer->zoom(step);
        }
        QCOMPARE(p.zoomer->getZoomStack().size(), size);
        QCOMPARE(p.zoomer->getZoomRectIndex(), index);
        QCOMPARE(p.view().width(), width);
    }

    void badRectanglesNeverReachTheStack_data()
    {
        QTest::addColumn<QRectF>("rect");
        QTest::newRow("NaN") << QRectF(std::nan(""), 0, 10, 10);
        QTest::newRow("infinite") << QRectF(0, 0, HUGE_VAL, 10);
        QTest::newRow("empty") << QRectF(5, 5, 0, 0);
        QTest::newRow("outside the limits") << QRectF(-500, -500, 100, 100);
    }
    void badRectanglesNeverReachTheStack()
    {
        QFETCH(QRectF, rect);
        Plot p;
        p.zoomer->setAxisLimits(QwtPlot::xBottom, 0, 1000);
        p.zoomer->setAxisLimits(QwtPlot::yLeft, 0, 1000);
        QSignalSpy zoomed(p.zoomer, &VwqPlotZoomer::zoomed);
        if (!std::isfinite(rect.x() + rect.width()))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwqPlotZoomer::zoom: "));
        p.zoomer->zoom(rect);
        QCOMPARE(zoomed.count(), 0);
        QVERIFY(p.zoomer->getZoomStack().isEmpty());
        QVERIFY(near(p.view(), QRectF(0, 0, 600, 400)));
    }

    void limitsClampTheZoom()
    {
        Plot p;
        p.zoomer->setAxisLimits(QwtPlot::xBottom, 0, 1000);
        p.zoomer->zoom(QRectF(-100, 0, 400, 300));
        QVERIFY(near(p.view(), QRectF(0, 0, 300, 300)));
        p.zoomer->setAxisNoLimit(QwtPlot::xBottom);
        p.zoomer->zoom(QRectF(-100, 0, 400, 300));
        QVERIFY(near(p.view(), QRectF(-100, 0, 400, 300)));
    }

    void trackerReportsMapPositions()
    {
        Plot p;
        QSignalSpy moved(p.tracker, &VwqPlotTracker::newTrackerPosition);
        QTest::mouseMove(p.canvas, QPoint(150, 100));
        QTRY_VERIFY(!moved.isEmpty());
        const QPointF position = moved.last().at(0).toPointF();
        QVERIFY(std::fabs(position.x() - 150) < 1.0 && std::fabs(position.y() - 300) < 1.0);
        QVERIFY(p.tracker->trackerTextF(position).isEmpty());
    }
};

QTEST_MAIN(TestVwqPlotTools)
#include "tst_vwqplottools.moc"
