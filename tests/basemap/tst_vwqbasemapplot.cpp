// The map plot as its view uses it: rulers holding the wheel back, rich-text axis titles and
// labels without the round offset, its own background, and styles following the map
// preferences live. Its tools driven with the mouse, the wheel and the keys on a bare plot
// whose canvas is 600 x 400 pixels showing 0..600 by 0..400 map units (one unit a pixel):
// the view each gesture leaves in each mode (pan, centre, click and box zoom, none), wheel
// zoom about the mouse, the zoom stack and its limits (the tracker is seen in the demo map's
// status bar). The rulers on such a plot: the measure text beside the cursor, its units and
// preferences, the signals a listener receives, the drawing of segment lengths and angles,
// and input that measures nothing.

#include "ImageChecks.h"
#include "LowerTestSupport.h"
#include "MapTestKit.h"
#include <KbbUserStringFormats.h>
#include <KbuUnit.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VwqPlotMagnifier.h>
#include <VwqPlotMeasureArea.h>
#include <VwqPlotMeasureLine.h>
#include <VwqPlotPanner.h>

#include <qwt_plot_grid.h>
#include <qwt_scale_div.h>
#include <qwt_scale_draw.h>

#include <QDesktopWidget>
#include <QPainter>
#include <functional>

namespace {
enum class Ruler { Line, Area };
} // namespace
Q_DECLARE_METATYPE(Ruler)

Q_DECLARE_METATYPE(std::function<void(QWidget*)>)

namespace {

using Gesture = std::function<void(QWidget*)>;

// The tools on a bare plot showing 0..600 by 0..400 map units, one unit a pixel.
struct Plot
{
    std::unique_ptr<QwtPlot> plot = MapTest::barePlot();
    QWidget* canvas = plot->canvas();
    VwqPlotPanner* panner = new VwqPlotPanner(canvas);
    VwqPlotMagnifier* magnifier = new VwqPlotMagnifier(canvas);
    VwqPlotZoomer* zoomer = new VwqPlotZoomer(canvas);

    Plot()
    {
        zoomer->setFactor(0.1);
        zoomer->setMaxStackDepth(100);
        plot->setAxisScale(QwtPlot::xBottom, 0, 600);
        plot->setAxisScale(QwtPlot::yLeft, 0, 400);
        plot->replot();
    }
    void setMode(Vw::ViewMode mode)
    {
        panner->setMode(mode);
        zoomer->setMode(mode);
    }
    QRectF view() const { return zoomer->getZoomRect(); }
    QPointF toMap(const QPoint& pixel) const
    {
        return QPointF(plot->canvasMap(QwtPlot::xBottom).invTransform(pixel.x()), plot->canvasMap(QwtPlot::yLeft).invTransform(pixel.y()));
    }
};

Gesture drag(const QPoint& from, const QPoint& to)
{
    return [=](QWidget* canvas) { MapTest::drag(canvas, from, to); };
}
Gesture click(const QPoint& at)
{
    return [=](QWidget* canvas) { QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, at); };
}
Gesture key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    return [=](QWidget* canvas) { QTest::keyClick(canvas, key, modifiers); };
}

using Clicks = QVector<QPoint>;
using Axes = QVector<double>; // the bounds of both axes

VwqPlotAMeasure* makeRuler(Ruler kind, QwtPlot* plot)
{
    VwqPlotAMeasure* ruler = kind == Ruler::Line ? static_cast<VwqPlotAMeasure*>(new VwqPlotMeasureLine(plot->canvas()))
                                                 : new VwqPlotMeasureArea(plot->canvas());
    ruler->setRubberBandPen(QPen(Qt::red));
    ruler->setMode(kind == Ruler::Line ? Vw::MEASURE_LENGTH : Vw::MEASURE_AREA);
    return ruler;
}

void moveTo(QWidget* canvas, const QPoint& pos)
{
    QCursor::setPos(canvas->mapToGlobal(pos));
    MapTest::moveMouse(canvas, pos);
}

// The user moves to each point and clicks it.
void pick(QWidget* canvas, const Clicks& clicks)
{
    for (const QPoint& p : clicks) {
        moveTo(canvas, p);
        QTest::mouseClick(canvas, Qt::LeftButton, Qt::NoModifier, p);
    }
}

// The text beside the cursor, as the tracker draws it.
QwtText shownText(const VwqPlotAMeasure& ruler)
{
    return static_cast<const QwtPicker&>(ruler).trackerText(ruler.trackerPosition());
}

void switchOff(const QStringList& preferences)
{
    for (const QString& name : preferences)
        VupMapPreferences::setValue(name, false);
}

bool isYellowish(QRgb c) { return qRed(c) > 220 && qGreen(c) > 220 && qBlue(c) < 190; }
bool isRed(QRgb c) { return qRed(c) > 200 && qGreen(c) < 80 && qBlue(c) < 80; }
int blackPixels(const QImage& image, const QRect& area)
{
    return ImageChecks::count(image.copy(area), [](QRgb c) { return qMax(qMax(qRed(c), qGreen(c)), qBlue(c)) < 100; });
}

} // namespace

class TestVwqBasemapPlot : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

    static std::unique_ptr<VwqBasemapPlot> makePlot() { return MapTest::showPlot(QRectF(0, 0, 1000, 1000), QSize(600, 450)); }

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void init()
    {
        QFile::remove(_dir.filePath(QStringLiteral("preferences.ini")));
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
        for (const char* name : {"lineRulerTotalLength", "lineRulerAzimuth", "lineRulerLength", "lineRulerAngle",
                                 "areaRulerArea", "areaRulerPerimeter", "areaRulerLength", "areaRulerAngle"})
            VupMapPreferences::setValue(QLatin1String(name), true);
        KbbUserStringFormats::resetToDefaults();
    }

    void aRulerInUseHoldsTheWheelBack()
    {
        auto plot = makePlot();
        plot->setMode(Vw::MEASURE_LENGTH);
        QTest::mouseClick(plot->canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        QVERIFY(plot->magnifier()->isDisabled());
        const QRectF view = plot->currentViewRect();
        MapTest::wheel(plot->canvas(), QPoint(100, 100), 120);
        QCOMPARE(plot->currentViewRect(), view);
        QTest::keyClick(plot->canvas(), Qt::Key_Escape);
        QVERIFY(!plot->magnifier()->isDisabled());
    }

    void axisLabelsLeaveTheOffsetOut_data()
    {
        // expected: of the x axis, %1 standing for its offset
        Row<QRectF, QString, QString, QString>::addColumns(); // rect, title, subtitle, expected
        QTest::newRow("offset and subtitle") << QRectF(500000, 6543200, 100, 60) << "UTM 31N" << "Field A"
                                             << "UTM 31N&nbsp;[m]&nbsp;(+%1)&nbsp;&nbsp;&nbsp;<small><i>Field A</i></small>";
        QTest::newRow("negative offset") << QRectF(-500100, 0, 100, 60) << "Local" << "" << "Local&nbsp;[m]&nbsp;(%1)";
        QTest::newRow("no offset, no subtitle") << QRectF(0, 0, 100, 60) << "Local" << "" << "Local&nbsp;[m]";
        QTest::newRow("markup in the names is text") << QRectF(0, 0, 100, 60) << "A<B & C" << "<b>"
                                                     << "A&lt;B &amp; C&nbsp;[m]&nbsp;&nbsp;&nbsp;<small><i>&lt;b&gt;</i></small>";
    }
    void axisLabelsLeaveTheOffsetOut()
    {
        auto [rect, title, subtitle, expected] = Row<QRectF, QString, QString, QString>::fetch();
        auto plot = makePlot();
        plot->updatePlotAxes(rect, title, KbuUnit::fromKey("m"), subtitle);
        const double offset = plot->getAxisOffset(QwtPlot::xBottom);
        QVERIFY2(expected.contains(QLatin1String("%1")) ? qAbs(offset) > 400000 && qAbs(offset) <= 500100 : offset == 0,
                 qPrintable(QString::number(offset)));
        QCOMPARE(plot->axisScaleDraw(QwtPlot::xBottom)->label(rect.left() + 50).text(),
                 QLocale::system().toString(rect.left() + 50 - offset, 'g', 6));
        QCOMPARE(plot->axisTitle(QwtPlot::xBottom).text(), offset ? expected.arg(offset, 0, 'g', 12) : expected);
        QCOMPARE(plot->axisTitle(QwtPlot::yRight).text().section(QLatin1String("&nbsp;"), 0, 1),
                 expected.section(QLatin1String("&nbsp;"), 0, 1));

        // Laid out as Qwt lays out rich text, the layouts kept between paints: the same size
        // and the same pixels, also after the font changes.
        QwtText shown = plot->axisTitle(QwtPlot::xBottom);
        QwtText qwtRich(shown.text(), QwtText::RichText);
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
            shown.setFont(font);
            qwtRich.setFont(font);
            QCOMPARE(shown.textSize(), qwtRich.textSize());
            QCOMPARE(shown.heightForWidth(120), qwtRich.heightForWidth(120));
            const QImage ours = picture(shown);
            const QImage theirs = picture(qwtRich);
            QVERIFY(ImageChecks::count(ours, [](QRgb p) { return qGray(p) < 128; }) > 20);
            QCOMPARE(MapTest::changedArea(ours, theirs), QRect());
        }
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
        QVERIFY(!plot->grid()->isVisible() && !VupMapPreferences::isGridVisible());
        VupMapPreferences::setValue(QStringLiteral("gridVisible"), true);
        QVERIFY(plot->grid()->isVisible());
    }

    void gesturesLeaveTheirView_data()
    {
        // zooms: zoomed() signals
        Row<int, Gesture, QRectF, double, int>::addColumns(); // mode, gesture, view, tolerance, zooms
        const QRectF start(0, 0, 600, 400);
        // The map follows the hand: 40 units to the right, 30 down on screen (y grows up).
        QTest::newRow("pan, drag") << int(Vw::PAN) << drag({300, 200}, {340, 230}) << QRectF(-40, 30, 600, 400) << 1.0 << 0;
        // One pixel is 600/599 units: the canvas map runs from pixel 0 to pixel 599.
        QTest::newRow("pan, right") << int(Vw::PAN) << key(Qt::Key_Right) << QRectF(-1, 0, 600, 400) << 0.05 << 0;
        QTest::newRow("pan, shift right") << int(Vw::PAN) << key(Qt::Key_Right, Qt::ShiftModifier)
                                          << QRectF(-5, 0, 600, 400) << 0.05 << 0;
        QTest::newRow("pan, left") << int(Vw::PAN) << key(Qt::Key_Left) << QRectF(1, 0, 600, 400) << 0.05 << 0;
        QTest::newRow("pan, shift up") << int(Vw::PAN) << key(Qt::Key_Up, Qt::ShiftModifier)
                                       << QRectF(0, -5, 600, 400) << 0.05 << 0;
        QTest::newRow("pan, down") << int(Vw::PAN) << key(Qt::Key_Down) << QRectF(0, 1, 600, 400) << 0.05 << 0;
        // Map point (100, 350) comes to the middle of the canvas.
        QTest::newRow("select, click centres") << int(Vw::SELECT) << click({100, 50}) << QRectF(-200, 150, 600, 400) << 1.0 << 0;
        // Scaled by 0.9 or 1.1 about the clicked point (120, 320), which keeps its place.
        QTest::newRow("zoom in, click") << int(Vw::ZOOM_IN) << click({120, 80}) << QRectF(12, 32, 540, 360) << 1.0 << 1;
        QTest::newRow("zoom out, click") << int(Vw::ZOOM_OUT) << click({120, 80}) << QRectF(-12, -32, 660, 440) << 1.0 << 1;
        QTest::newRow("zoom box, 1 x 1 is a click, ignored") << int(Vw::ZOOM_BOX) << drag({100, 100}, {101, 101}) << start << 1e-6 << 0;
        // Grown to 11 x 11 about its centre, then widened to the view's 3:2 shape.
        QTest::newRow("zoom box, 3 x 1 grows to 11 pixels") << int(Vw::ZOOM_BOX) << drag({100, 100}, {103, 101})
                                                            << QRectF(101.5 - 8.25, 299.5 - 5.5, 16.5, 11) << 1.5 << 1;
        QTest::newRow("zoom box, wide keeps its width") << int(Vw::ZOOM_BOX) << drag({1, 1}, {301, 101})
                                                        << QRectF(1, 249, 300, 200) << 1.5 << 1;
        QTest::newRow("zoom box, tall keeps its height") << int(Vw::ZOOM_BOX) << drag({10, 10}, {30, 110})
                                                         << QRectF(-55, 290, 150, 100) << 1.5 << 1;
        QTest::newRow("measure area, a drag moves nothing") << int(Vw::MEASURE_AREA) << drag({300, 200}, {340, 230}) << start << 1e-3 << 0;
        QTest::newRow("no mode, a drag moves nothing") << int(Vw::NO_MODE) << drag({300, 200}, {340, 230}) << start << 1e-3 << 0;
    }
    void gesturesLeaveTheirView()
    {
        auto [mode, gesture, view, tolerance, zooms] = Row<int, Gesture, QRectF, double, int>::fetch();
        Plot p;
        p.setMode(Vw::ViewMode(mode));
        QSignalSpy zoomed(p.zoomer, &VwqPlotZoomer::zoomed);
        gesture(p.canvas);
        QTRY_VERIFY2(MapTest::near(p.view(), view, tolerance), MapTest::describe(p.view()));
        QCOMPARE(zoomed.count(), zooms);
    }

    void wheelZoomKeepsThePointUnderTheMouse_data()
    {
        Row<QPoint, int, bool, bool>::addColumns(); // at, delta, natural, zoomsIn
        QTest::newRow("away from the user zooms in") << QPoint(150, 100) << 120 << true << true;
        QTest::newRow("towards the user zooms out") << QPoint(450, 300) << -120 << true << false;
        QTest::newRow("inverted wheel") << QPoint(10, 390) << 120 << false << false;
        QTest::newRow("three notches at a corner") << QPoint(599, 0) << 360 << true << true;
    }
    void wheelZoomKeepsThePointUnderTheMouse()
    {
        auto [at, delta, natural, zoomsIn] = Row<QPoint, int, bool, bool>::fetch();
        Plot p;
        p.magnifier->setNaturalDirection(natural);
        QSignalSpy rescaled(p.magnifier, &VwqPlotMagnifier::rescaled);
        const QPointF under = p.toMap(at);
        MapTest::wheel(p.canvas, at, delta);
        QCOMPARE(rescaled.count(), 1);
        QCOMPARE(p.view().width() < 600, zoomsIn);
        QVERIFY(MapTest::near(p.toMap(at), under, 0.01));
    }

    void wheelLeavesAHugeViewAlone()
    {
        Plot p;
        p.zoomer->resetZoom(QRectF(0, 0, 8e9, 5e9));
        MapTest::wheel(p.canvas, QPoint(300, 200), -120);
        QVERIFY(MapTest::near(p.view(), QRectF(0, 0, 8e9, 5e9), 1.0));
        MapTest::wheel(p.canvas, QPoint(300, 200), 120); // zooming in is still allowed
        QVERIFY(p.view().width() < 8e9);
    }

    // Each step is a zoom to the next rectangle, or a move in the stack.
    void zoomStack_data()
    {
        // steps: >= 10: zoom to a rectangle of that width; else offset
        Row<int, QList<int>, int, int, double>::addColumns(); // depth, steps, size, index, width
        QTest::newRow("two zooms keep the start") << -1 << QList<int>{300, 200} << 3 << 2 << 200.0;
        QTest::newRow("back once") << -1 << QList<int>{300, 200, -1} << 3 << 1 << 300.0;
        QTest::newRow("back past the start stays at it") << -1 << QList<int>{300, -1, -1, -1} << 2 << 0 << 600.0;
        QTest::newRow("back and forward") << -1 << QList<int>{300, 200, -1, 1} << 3 << 2 << 200.0;
        QTest::newRow("forward past the end stays") << -1 << QList<int>{300, 1} << 2 << 1 << 300.0;
        QTest::newRow("a zoom after going back drops the rest") << -1 << QList<int>{300, 200, -1, -1, 100} << 2 << 1 << 100.0;
        QTest::newRow("the same rectangle twice is one entry") << -1 << QList<int>{300, 300} << 2 << 1 << 300.0;
        QTest::newRow("depth 2 drops the oldest") << 2 << QList<int>{500, 400, 300, 200} << 3 << 2 << 200.0;
    }
    void zoomStack()
    {
        auto [depth, steps, size, index, width] = Row<int, QList<int>, int, int, double>::fetch();
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

    void limitsClampAndBadRectanglesNeverReachTheStack_data()
    {
        // view: null: the rectangle is refused
        Row<QRectF, QRectF>::addColumns(); // rect, view
        QTest::newRow("NaN") << QRectF(std::nan(""), 0, 10, 10) << QRectF();
        QTest::newRow("infinite") << QRectF(0, 0, HUGE_VAL, 10) << QRectF();
        QTest::newRow("empty") << QRectF(5, 5, 0, 0) << QRectF();
        QTest::newRow("outside the limits") << QRectF(-500, -500, 100, 100) << QRectF();
        QTest::newRow("across a limit, clamped") << QRectF(-100, 0, 400, 300) << QRectF(0, 0, 300, 300);
    }
    void limitsClampAndBadRectanglesNeverReachTheStack()
    {
        auto [rect, view] = Row<QRectF, QRectF>::fetch();
        Plot p;
        p.zoomer->setAxisLimits(QwtPlot::xBottom, 0, 1000);
        p.zoomer->setAxisLimits(QwtPlot::yLeft, 0, 1000);
        QSignalSpy zoomed(p.zoomer, &VwqPlotZoomer::zoomed);
        if (!std::isfinite(rect.x() + rect.width()))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwqPlotZoomer::zoom: "));
        p.zoomer->zoom(rect);
        QCOMPARE(zoomed.count(), view.isNull() ? 0 : 1);
        QCOMPARE(p.zoomer->getZoomStack().isEmpty(), view.isNull());
        QVERIFY2(MapTest::near(p.view(), view.isNull() ? QRectF(0, 0, 600, 400) : view), MapTest::describe(p.view()));
        if (view.isNull())
            return;
        p.zoomer->setAxisNoLimit(QwtPlot::xBottom);
        p.zoomer->zoom(rect);
        QVERIFY(MapTest::near(p.view(), rect));
    }

    void measureText_data()
    {
        // userUnit: the user's format of its unit class; "" keeps m and m²
        // ruler, viewUnit, userUnit, switchedOff, clicks, expected
        Row<Ruler, QString, QString, QStringList, Clicks, QString>::addColumns();

        const auto row = [](const char* name, Ruler ruler, const char* view, const char* user, const QStringList& off,
                            const Clicks& clicks, const QString& expected) {
            QTest::newRow(name) << ruler << QString::fromLatin1(view) << QString::fromLatin1(user) << off << clicks << expected;
        };
        const Clicks east{{100, 200}, {200, 200}};
        const Clicks square{{100, 200}, {110, 200}, {110, 190}, {100, 190}};
        const QString eastText = QStringLiteral("Total Length : 100.00 m\nAzimuth : 90.00 °");
        const Ruler line = Ruler::Line, area = Ruler::Area;
        row("line, one vertex shows nothing", line, "m", "", {}, {{100, 200}}, QString());
        row("line, 100 m east", line, "m", "", {}, east, eastText);
        row("line, south-west diagonal", line, "m", "", {}, {{200, 100}, {100, 200}}, "Total Length : 141.42 m\nAzimuth : 225.00 °");
        row("line, path sums its segments, azimuth of the last", line, "m", "", {}, {{100, 200}, {200, 200}, {200, 100}},
            "Total Length : 200.00 m\nAzimuth : 0.00 °");
        row("line, repeated clicks on one pixel count once", line, "m", "", {}, {{100, 200}, {100, 200}, {200, 200}, {200, 200}},
            eastText);
        row("line, view in km", line, "km", "", {}, east, "Total Length : 100000.00 m\nAzimuth : 90.00 °");
        row("line, an area unit for the view is refused", line, "m2", "", {}, east, eastText);
        row("line, total length off", line, "m", "", {"lineRulerTotalLength"}, east, "Azimuth : 90.00 °");
        row("line, azimuth off, area preferences ignored", line, "m", "", {"lineRulerAzimuth", "areaRulerArea"}, east,
            "Total Length : 100.00 m");
        row("area, two vertices show nothing", area, "m", "", {}, east, QString());
        row("area, square of 10 m, perimeter without the closing edge", area, "m", "", {}, square,
            "Area : 100.00 m²\nPerimeter : 30.00 m");
        row("area, view in km", area, "km", "", {}, square, "Area : 100000000.00 m²\nPerimeter : 30000.00 m");
        row("area, view in ft", area, "ft", "", {}, square, "Area : 9.29 m²\nPerimeter : 9.14 m");
        row("area, written in the user's hectares", area, "m", "ha", {}, square, "Area : 0.01 ha\nPerimeter : 30.00 m");
        row("area, written in the user's km", area, "m", "km", {}, square, "Area : 100.00 m²\nPerimeter : 0.03 km");
        row("area, area off", area, "m", "", {"areaRulerArea"}, square, "Perimeter : 30.00 m");
        row("area, perimeter off, line preferences ignored", area, "m", "", {"areaRulerPerimeter", "lineRulerTotalLength"},
            square, "Area : 100.00 m²");
    }

    void measureText()
    {
        auto [ruler, viewUnit, userUnit, switchedOff, clicks, expected] =
            Row<Ruler, QString, QString, QStringList, Clicks, QString>::fetch();

        switchOff(switchedOff);
        if (!userUnit.isEmpty()) {
            const KbuUnit& unit = KbuUnit::fromKey(userUnit);
            KbbStringFormat format = KbbUserStringFormats::getStringFormat(unit.getUnitClass());
            format.setUnit(unit);
            KbbUserStringFormats::setStringFormat(unit.getUnitClass(), format);
        }
        const auto plot = MapTest::barePlot();
        VwqPlotAMeasure* measure = makeRuler(ruler, plot.get());
        if (!KbuUnit::fromKey(viewUnit).belongsTo(KbuEUnitClass::LENGTH))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("setViewCoordinateUnit: .* not a length")));
        measure->setViewCoordinateUnit(KbuUnit::fromKey(viewUnit));

        pick(plot->canvas(), clicks);
        const QwtText text = shownText(*measure);
        QCOMPARE(text.text(), expected);
        if (!expected.isEmpty())
            QCOMPARE(text.backgroundBrush().color(), QColor(255, 255, 255, 200));

        // The text goes with the measure.
        QTest::mouseClick(plot->canvas(), Qt::RightButton, Qt::NoModifier, clicks.last());
        QVERIFY(shownText(*measure).isEmpty());
    }

    void picking_data()
    {
        // ending: a key, 0 for a right click, -1 for a switch to pan mode; selection: empty: nothing is selected;
        // axes: the bounds of both axes, none to keep them
        Row<Ruler, int, Clicks, int, Clicks, Axes>::addColumns(); // ruler, mode, clicks, ending, selection, axes

        const int length = Vw::MEASURE_LENGTH, area = Vw::MEASURE_AREA;
        const Clicks path{{100, 200}, {200, 200}, {200, 200}, {200, 100}};
        const Clicks picked{{100, 200}, {200, 200}, {200, 100}}, none;
        const Axes keep;
        QTest::newRow("line, right click ends") << Ruler::Line << length << path << 0 << picked << keep;
        QTest::newRow("line, Space ends") << Ruler::Line << length << path << int(Qt::Key_Space) << picked << keep;
        QTest::newRow("line, Escape abandons") << Ruler::Line << length << path << int(Qt::Key_Escape) << none << keep;
        QTest::newRow("line, a mode switch abandons") << Ruler::Line << length << path << -1 << none << keep;
        QTest::newRow("line, one vertex is no measure") << Ruler::Line << length << Clicks{{100, 200}, {100, 200}} << 0 << none << keep;
        QTest::newRow("line, area mode takes no clicks") << Ruler::Line << area << path << 0 << none << keep;
        QTest::newRow("area, right click ends") << Ruler::Area << area << path << 0 << picked << keep;
        QTest::newRow("area, two vertices are no measure") << Ruler::Area << area << Clicks{{100, 200}, {200, 200}} << 0 << none << keep;
        QTest::newRow("area, zoom box mode takes no clicks") << Ruler::Area << int(Vw::ZOOM_BOX) << path << 0 << none << keep;
        // Axes whose pixels have no plot coordinates: nothing measured, nothing shown, no crash.
        const double nan = std::nan(""), inf = HUGE_VAL;
        QTest::newRow("line, no vertices") << Ruler::Line << length << none << int(Qt::Key_Space) << none << keep;
        QTest::newRow("line, NaN axes") << Ruler::Line << length << picked << 0 << none << Axes{nan, nan};
        QTest::newRow("area, infinite axes") << Ruler::Area << area << picked << 0 << none << Axes{-inf, inf};
        QTest::newRow("area, axes of no range") << Ruler::Area << area << picked << 0 << none << Axes{5, 5};
    }

    void picking()
    {
        auto [ruler, mode, clicks, ending, selection, axes] = Row<Ruler, int, Clicks, int, Clicks, Axes>::fetch();

        const auto plot = MapTest::barePlot();
        if (!axes.isEmpty()) {
            for (int axis : {QwtPlot::xBottom, QwtPlot::yLeft})
                plot->setAxisScaleDiv(axis, QwtScaleDiv(axes.first(), axes.last()));
            plot->replot();
            for (int i = 0; i < clicks.size(); ++i)
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("append: the pixel .* no plot coordinates")));
        }
        VwqPlotAMeasure* measure = makeRuler(ruler, plot.get());
        measure->setMode(Vw::ViewMode(mode));
        const bool ownMode = mode == (ruler == Ruler::Line ? Vw::MEASURE_LENGTH : Vw::MEASURE_AREA);
        const int picks = ownMode && !clicks.isEmpty() ? 1 : 0;
        QSignalSpy started(measure, &VwqPlotAMeasure::startPicking);
        QSignalSpy stopped(measure, &VwqPlotAMeasure::stopPicking);
        QSignalSpy selected(measure, QOverload<const QVector<QPointF>&>::of(&QwtPlotPicker::selected));

        pick(plot->canvas(), clicks);
        QCOMPARE(started.count(), picks);
        QCOMPARE(stopped.count(), 0);
        QVERIFY(axes.isEmpty() || (shownText(*measure).isEmpty() && !plot->canvas()->grab().isNull()));
        if (ending == 0)
            QTest::mouseClick(plot->canvas(), Qt::RightButton, Qt::NoModifier, clicks.last());
        else if (ending > 0)
            QTest::keyClick(plot->canvas(), Qt::Key(ending));
        else
            measure->setMode(Vw::PAN);

        QVERIFY(!measure->isActive());
        QCOMPARE(started.count(), picks);
        QCOMPARE(stopped.count(), picks);
        QCOMPARE(selected.count(), selection.isEmpty() ? 0 : 1);
        if (selection.isEmpty())
            return;
        QVector<QPointF> expected;
        for (const QPoint& p : selection)
            expected << QPointF(p.x(), plot->canvas()->height() - 1 - p.y());
        QCOMPARE(selected.first().first().value<QVector<QPointF>>(), expected);
    }

    void drawing_data()
    {
        Row<Ruler, QStringList, bool, bool>::addColumns(); // ruler, switchedOff, lengthLabel, angleArc

        QTest::newRow("line, length labels and angle arcs") << Ruler::Line << QStringList() << true << true;
        QTest::newRow("line, length labels off") << Ruler::Line << QStringList{"lineRulerLength"} << false << true;
        QTest::newRow("line, angle arcs off, area preferences ignored")
            << Ruler::Line << QStringList{"lineRulerAngle", "areaRulerLength"} << true << false;
        QTest::newRow("area, closed") << Ruler::Area << QStringList() << true << true;
    }

    void drawing()
    {
        auto [ruler, switchedOff, lengthLabel, angleArc] = Row<Ruler, QStringList, bool, bool>::fetch();

        switchOff(switchedOff);
        const auto plot = MapTest::barePlot();
        makeRuler(ruler, plot.get());
        // East along y = 300, then north: a right angle at (300, 300) whose arc, 50 px in
        // radius, opens up and to the left. The area ruler closes along x + y = 400.
        pick(plot->canvas(), {{100, 300}, {300, 300}, {300, 100}});
        const QImage image = plot->canvas()->grab().toImage();

        QVERIFY(isRed(image.pixel(270, 300)));
        QVERIFY(isRed(image.pixel(300, 250)));
        QCOMPARE(isRed(image.pixel(150, 250)) || isRed(image.pixel(151, 250)), ruler == Ruler::Area);
        // "200.00 m" on the middle of the first segment; its lower half shows only when the
        // overlay's mask covers the label and not just the line.
        const int lengthText = blackPixels(image, QRect(185, 303, 30, 3));
        QVERIFY2(lengthLabel ? lengthText > 5 : lengthText == 0, qPrintable(QString::number(lengthText)));
        QCOMPARE(isYellowish(image.pixel(295, 295)), angleArc);
        QCOMPARE(isYellowish(image.pixel(288, 296)), angleArc);
        QVERIFY2(!isYellowish(image.pixel(305, 305)), "the arc stays between its segments");
        QVERIFY2(!isYellowish(image.pixel(245, 295)), "the arc ends at its radius");
        // "90.00 °" on the bisector, 30 px from the vertex.
        const int angleText = blackPixels(image, QRect(267, 274, 24, 10));
        QVERIFY2(angleArc ? angleText > 5 : angleText == 0, qPrintable(QString::number(angleText)));
    }
};

QTEST_MAIN(TestVwqBasemapPlot)
#include "tst_vwqbasemapplot.moc"
