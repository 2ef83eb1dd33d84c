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

#include <QDesktopWidget>
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

    void axisLabelsLeaveTheOffsetOut_data()
    {
        QTest::addColumn<QRectF>("rect");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("subtitle");
        QTest::addColumn<QString>("expected"); // of the x axis, %1 standing for its offset
        QTest::newRow("offset and subtitle") << QRectF(500000, 6543200, 100, 60) << "UTM 31N" << "Field A"
                                             << "UTM 31N&nbsp;[m]&nbsp;(+%1)&nbsp;&nbsp;&nbsp;<small><i>Field A</i></small>";
        QTest::newRow("negative offset") << QRectF(-500100, 0, 100, 60) << "Local" << "" << "Local&nbsp;[m]&nbsp;(%1)";
        QTest::newRow("no offset, no subtitle") << QRectF(0, 0, 100, 60) << "Local" << "" << "Local&nbsp;[m]";
        QTest::newRow("markup in the names is text") << QRectF(0, 0, 100, 60) << "A<B & C" << "<b>"
                                                     << "A&lt;B &amp; C&nbsp;[m]&nbsp;&nbsp;&nbsp;<small><i>&lt;b&gt;</i></small>";
    }
    void axisLabelsLeaveTheOffsetOut()
    {
        QFETCH(QRectF, rect);
        QFETCH(QString, title);
        QFETCH(QString, subtitle);
        QFETCH(QString, expected);
        auto plot = makePlot();
        plot->updatePlotAxes(rect, title, KbuUnit::fromKey("m"), subtitle);
        const double offset = plot->getAxisOffset(QwtPlot::xBottom);
        QVERIFY2(expected.contains(QLatin1String("%1")) ? qAbs(offset) > 400000 && qAbs(offset) <= 500100 : offset == 0,
                 qPrintable(QString::number(offset)));
        QCOMPARE(plot->axisScaleDraw(QwtPlot::xBottom)->label(rect.left() + 50).text(),
                 QLocale::system().toString(rect.left() + 50 - offset, 'g', 6));
        QCOMPARE(plot->axisTitle(QwtPlot::xBottom).text(), expected.arg(offset, 0, 'g', 12));
        QCOMPARE(plot->axisTitle(QwtPlot::yRight).text().section(QLatin1String("&nbsp;"), 0, 1),
                 expected.section(QLatin1String("&nbsp;"), 0, 1));
    }

    // The titles are laid out as Qwt lays out rich text, their layouts kept between paints:
    // the same size and the same pixels, also after the font changes.
    void axisTitlesAreRichText()
    {
        auto plot = makePlot();
        plot->updatePlotAxes(QRectF(0, 0, 100, 60), QStringLiteral("Local"), KbuUnit::fromKey("m"),
                             QStringLiteral("Field A"));
        QwtText title = plot->axisTitle(QwtPlot::xBottom);
        QwtText qwtRich(title.text(), QwtText::RichText);
        // Of the screen's resolution, as an axis is.
        const auto picture = [](const QwtText& text) {
            QImage image(300, 40, QImage::Format_RGB32);
            image.setDotsPerMeterX(qRound(QApplication::desktop()->logicalDpiX() / 0.0254));
            image.setDotsPerMeterY(qRound(QApplication::desktop()->logicalDpiY() / 0.0254));
            image.fill(Qt::white);
            QPainter painter(&image);
            text.draw(&painter, QRectF(0, 0, 300, 40));
            return image;
        };
        for (const int points : {9, 14, 9}) {
            QFont font(plot->font());
            font.setPointSize(points);
            title.setFont(font);
            qwtRich.setFont(font);
            QCOMPARE(title.textSize(), qwtRich.textSize());
            QCOMPARE(title.heightForWidth(120), qwtRich.heightForWidth(120));
            const QImage ours = picture(title);
            const QImage theirs = picture(qwtRich);
            QVERIFY(ImageChecks::count(ours, [](QRgb p) { return qGray(p) < 128; }) > 20);
            int differing = 0;
            for (int y = 0; y < ours.height(); ++y)
                for (int x = 0; x < ours.width(); ++x)
                    differing += !ImageChecks::near(ours.pixel(x, y), theirs.pixel(x, y));
            QCOMPARE(differing, 0);
        }
        // "&nbsp;" is a space, not six characters.
        QVERIFY(title.textSize().width() < QwtText(title.text(), QwtText::PlainText).textSize().width() * 0.8);
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
