// The map plot as its view uses it: modes switching the tools, pans and wheel zooms going
// onto the zoom stack, rulers holding the wheel back, axis labels without the round
// offset, and styles following the map preferences live.

#include <KbuUnit.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotMagnifier.h>
#include <VwqPlotMeasureArea.h>
#include <VwqPlotMeasureLine.h>
#include <VwqPlotPanner.h>
#include <VwqPlotZoomer.h>

#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>

#include "ImageChecks.h"

#include <QPainter>
#include <QtTest>
#include <memory>

namespace {

std::unique_ptr<VwqBasemapPlot> makePlot()
{
    auto plot = std::make_unique<VwqBasemapPlot>();
    plot->resize(640, 480);
    plot->show();
    if (!QTest::qWaitForWindowExposed(plot.get()))
        return nullptr;
    plot->zoomer()->resetZoom(QRectF(0, 0, 1000, 1000));
    return plot;
}

void wheel(QWidget* canvas, const QPoint& at, int delta)
{
    QWheelEvent event(at, canvas->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(canvas, &event);
}

} // namespace

class TestVwqBasemapPlot : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void init()
    {
        QFile::remove(_dir.filePath(QStringLiteral("preferences.ini")));
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
    }

    void canvasMapCoversTheWholeCanvas()
    {
        auto plot = makePlot();
        QVERIFY(plot);
        const QWidget* canvas = plot->canvas();
        QCOMPARE(plot->canvasMap(QwtPlot::xBottom).p1(), 0.0);
        QCOMPARE(plot->canvasMap(QwtPlot::xBottom).p2(), double(canvas->width()));
        QCOMPARE(plot->canvasMap(QwtPlot::yLeft).p1(), double(canvas->height()));
        QCOMPARE(plot->canvasMap(QwtPlot::yLeft).p2(), 0.0);
        // 1:1: a map unit is as many pixels across as up (within the canvas frame's pixels).
        const QRectF view = plot->currentViewRect();
        const double across = view.width() / canvas->width();
        QVERIFY(qAbs(across - view.height() / canvas->height()) < 0.01 * across);
        const QPointF p(123.4, 567.8);
        const QPointF back = plot->pixelToView(plot->viewToPixel(p));
        QVERIFY(qAbs(back.x() - p.x()) < 1e-9 && qAbs(back.y() - p.y()) < 1e-9);
        QVERIFY(qAbs(plot->getFactorPixelToSize() * plot->getFactorSizeToPixel() - 1.0) < 1e-12);
    }

    void modesSwitchTheTools_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QList<bool>>("enabled"); // panner, zoomer, length ruler, area ruler
        QTest::newRow("pan") << int(Vw::PAN) << QList<bool>{true, false, false, false};
        QTest::newRow("select") << int(Vw::SELECT) << QList<bool>{true, false, false, false};
        QTest::newRow("zoom box") << int(Vw::ZOOM_BOX) << QList<bool>{false, true, false, false};
        QTest::newRow("measure area") << int(Vw::MEASURE_AREA) << QList<bool>{false, false, false, true};
        QTest::newRow("measure length") << int(Vw::MEASURE_LENGTH) << QList<bool>{false, false, true, false};
        QTest::newRow("none") << int(Vw::NO_MODE) << QList<bool>{false, false, false, false};
    }
    void modesSwitchTheTools()
    {
        QFETCH(int, mode);
        QFETCH(QList<bool>, enabled);
        auto plot = makePlot();
        plot->setMode(Vw::ViewMode(mode));
        QCOMPARE(plot->getMode(), Vw::ViewMode(mode));
        QCOMPARE((QList<bool>{plot->panner()->isEnabled(), plot->zoomer()->isEnabled(),
                              plot->lengthSurveyor()->isEnabled(), plot->areaSurveyor()->isEnabled()}),
                 enabled);
    }

    void pansAndWheelZoomsGoOntoTheStack()
    {
        auto plot = makePlot();
        plot->setMode(Vw::PAN);
        QSignalSpy zoomed(plot->zoomer(), &VwqPlotZoomer::zoomed);
        QSignalSpy viewChanged(plot.get(), &VwqBasemapPlot::currentViewChanged);
        const int before = plot->zoomer()->getZoomStack().size();

        QTest::keyClick(plot->canvas(), Qt::Key_Right, Qt::ShiftModifier);
        wheel(plot->canvas(), QPoint(100, 100), 120);
        QCOMPARE(plot->zoomer()->getZoomStack().size(), before + 2);
        QCOMPARE(zoomed.count(), 2);
        QVERIFY(!viewChanged.isEmpty());
        QCOMPARE(viewChanged.last().at(0).toRectF(), plot->currentViewRect());

        // Back twice brings the first view again.
        plot->zoomer()->zoom(-2);
        QVERIFY(qAbs(plot->currentViewRect().width() - plot->zoomer()->getZoomStack().first().width()) < 1e-6);
    }

    void aRulerInUseHoldsTheWheelBack()
    {
        auto plot = makePlot();
        plot->setMode(Vw::MEASURE_LENGTH);
        QTest::mouseClick(plot->canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        QVERIFY(plot->magnifier()->isDisabled());
        const QRectF view = plot->currentViewRect();
        wheel(plot->canvas(), QPoint(100, 100), 120);
        QCOMPARE(plot->currentViewRect(), view);
        QTest::keyClick(plot->canvas(), Qt::Key_Escape);
        QVERIFY(!plot->magnifier()->isDisabled());
    }

    void axisLabelsLeaveTheOffsetOut()
    {
        auto plot = makePlot();
        plot->updatePlotAxes(QRectF(500000, 6543200, 100, 60), QStringLiteral("UTM 31N"), KbuUnit::fromKey("m"),
                             QStringLiteral("Field A"));
        const double x = plot->getAxisOffset(QwtPlot::xBottom);
        const double y = plot->getAxisOffset(QwtPlot::yLeft);
        QVERIFY2(x > 400000 && x <= 500000, qPrintable(QString::number(x)));
        QVERIFY2(y > 6500000 && y <= 6543200, qPrintable(QString::number(y)));
        const QString label = plot->axisScaleDraw(QwtPlot::xBottom)->label(500050).text();
        QCOMPARE(label, QLocale::system().toString(500050 - x, 'g', 6));
        const QString title = plot->axisTitle(QwtPlot::xBottom).text();
        QVERIFY2(title.startsWith(QStringLiteral("UTM 31N&nbsp;[m]&nbsp;(+")), qPrintable(title));
        QVERIFY(title.endsWith(QStringLiteral("&nbsp;&nbsp;&nbsp;<small><i>Field A</i></small>")));

        // Small coordinates need no offset.
        plot->updatePlotAxes(QRectF(0, 0, 100, 60), QStringLiteral("Local"), KbuUnit::fromKey("m"));
        QCOMPARE(plot->getAxisOffset(QwtPlot::xBottom), 0.0);
        // Without a subtitle, plain text with the same unbreakable spaces.
        QCOMPARE(plot->axisTitle(QwtPlot::yLeft).text(), QStringLiteral("Local\u00a0[m]"));
    }

    void plotPaintsItsOwnBackground()
    {
        // A parent painting a loud colour: none of it shows beside the axes.
        struct Loud : QWidget
        {
            void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), Qt::magenta); }
        } parent;
        auto* plot = new VwqBasemapPlot(&parent);
        plot->updatePlotAxes(QRectF(0, 0, 100, 100), QStringLiteral("Local"), KbuUnit::fromKey("m"));
        parent.resize(400, 300);
        plot->resize(parent.size());
        parent.show();
        QVERIFY(QTest::qWaitForWindowExposed(&parent));
        QVERIFY(plot->axisEnabled(QwtPlot::yLeft));
        QCOMPARE(ImageChecks::countNear(parent.grab().toImage(), Qt::magenta), 0);
    }

    void stylesFollowThePreferences()
    {
        auto plot = makePlot();
        QVERIFY(plot->grid()->isVisible());
        VupMapPreferences::setValue(QStringLiteral("backgroundColor"), QStringLiteral("#102030"));
        VupMapPreferences::setValue(QStringLiteral("gridInBackground"), false);
        VupMapPreferences::setValue(QStringLiteral("zoomWheelInverted"), true);
        QCOMPARE(plot->canvas()->palette().color(QPalette::Window), QColor(0x10, 0x20, 0x30));
        QCOMPARE(plot->grid()->z(), 10000.0);
        QVERIFY(!plot->magnifier()->isNaturalDirection());

        plot->setGridVisible(false);
        QVERIFY(!plot->grid()->isVisible());
        QVERIFY(!VupMapPreferences::isGridVisible());
        VupMapPreferences::setValue(QStringLiteral("gridVisible"), true);
        QVERIFY(plot->grid()->isVisible());
    }

    void layersAreAttachedOnTheMapAxes()
    {
        auto plot = makePlot();
        auto* curve = new QwtPlotCurve;
        curve->setAxes(QwtPlot::xTop, QwtPlot::yRight);
        plot->addPlotItem(curve);
        QCOMPARE(curve->plot(), plot.get());
        QCOMPARE(curve->xAxis(), int(QwtPlot::xBottom));
        QCOMPARE(curve->yAxis(), int(QwtPlot::yLeft));
        QVERIFY(curve->testItemAttribute(QwtPlotItem::AutoScale));
        QVERIFY(!curve->testRenderHint(QwtPlotItem::RenderAntialiased));
    }
};

QTEST_MAIN(TestVwqBasemapPlot)
#include "tst_vwqbasemapplot.moc"
