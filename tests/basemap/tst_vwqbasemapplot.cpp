// The map plot as its view uses it: rulers holding the wheel back, rich-text axis titles and
// labels without the round offset, its own background, and styles following the map
// preferences live. Its tools driven with the mouse, the wheel and the keys on a bare plot
// whose canvas is 600 x 400 pixels showing 0..600 by 0..400 map units (one unit a pixel):
// the view each gesture leaves in each mode (pan, centre, click and box zoom, none), wheel
// zoom about the mouse, the zoom stack and its limits (the tracker is seen in the demo map's
// status bar). The rulers on such a plot: the measure text beside the cursor, its units and
// preferences, the signals a listener receives, the drawing of segment lengths and angles,
// and input that measures nothing.
// The decorations as a user sees them over a map: each in its corner (the scale bar drawn to
// its length), the scale bar's round lengths and labels, the north arrow turned by the
// meridian convergence, the GPS marker at its fix and greyed when the fix is lost, and a
// picture rendered at twice the size showing the decorations twice as large.

#include "ImageChecks.h"
#include "LowerTestSupport.h"
#include "MapTestKit.h"
#include <KbbUserStringFormats.h>
#include <KbuUnit.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VuuCoordSystem.h>
#include <VwoCompass.h>
#include <VwoCopyright.h>
#include <VwoGpsPosition.h>
#include <VwoScaleBar.h>
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

// A dark layer under the decorations: their light boxes must show over it.
const QColor GROUND(40, 90, 40);

enum Kind { COPYRIGHT, COMPASS, SCALE_BAR, GPS };
// Where the GPS marker goes instead of a corner: at its fix.
const int AT_ITS_FIX = 4;

VwoADecoration* makeDecoration(int kind, const QString& text = QStringLiteral("\u00A9 Velmora contributors"))
{
    if (kind == COPYRIGHT)
        return new VwoCopyright(text);
    if (kind == COMPASS)
        return new VwoCompass(VuuCoordSystem::local());
    if (kind == SCALE_BAR)
        return new VwoScaleBar();
    auto* gps = new VwoGpsPosition;
    gps->setPosition(QPointF(150, 250), true);
    gps->setVisible(true);
    return gps;
}

// A 600 x 400 map without axes or grid, on the dark ground, showing `view` (map units).
std::unique_ptr<VwqBasemapPlot> groundPlot(const QRectF& view = QRectF(0, 0, 600, 400))
{
    auto plot = MapTest::showPlot(view.isValid() ? view : QRectF(0, 0, 600, 400), QSize(600, 400));
    if (!plot)
        return nullptr;
    plot->grid()->hide();
    QPalette palette = plot->canvas()->palette();
    palette.setColor(QPalette::Window, GROUND);
    plot->canvas()->setPalette(palette);
    // Exactly this view, not widened to the canvas's shape.
    plot->setAxisScale(QwtPlot::xBottom, view.left(), view.right());
    plot->setAxisScale(QwtPlot::yLeft, view.top(), view.bottom());
    plot->replot();
    return plot;
}

QImage grabCanvas(VwqBasemapPlot& plot)
{
    plot.replot();
    return plot.canvas()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool isDark(QRgb c)
{
    return qGray(c) < 60 && !ImageChecks::near(c, GROUND, 30);
}

// Where the picture with the decoration differs from the one without; empty when nowhere.
QRect decorationArea(VwoADecoration* decoration, const std::function<QImage()>& picture)
{
    const bool visible = decoration->isVisible();
    decoration->setVisible(false);
    const QImage without = picture();
    decoration->setVisible(visible);
    return MapTest::changedArea(picture(), without, 24);
}

QPointF toSystem(const QString& definition, const QPointF& lonLat)
{
    QPointF point = lonLat;
    VuuCoordSystem::convert(VuuCoordSystem(QStringLiteral("EPSG:4326")), VuuCoordSystem(definition), point);
    return point;
}

// The angle from grid north to true north, clockwise, on a transverse Mercator map on a
// sphere: atan(tan(dLon) sin(lat)); the arrow turns the other way.
double arrowAngle(double lonFromCentralMeridian, double lat)
{
    return -qRadiansToDegrees(std::atan(std::tan(qDegreesToRadians(lonFromCentralMeridian)) * std::sin(qDegreesToRadians(lat))));
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

    void eachDecorationInItsCorner_data()
    {
        // text: the attribution's; corner: Qt::Corner, -1 for nothing drawn
        // A picture rendered at twice the size shows each twice as large, twice as far in.
        Row<int, QString, QRectF, int>::addColumns(); // kind, text, view, corner
        const QRectF view(0, 0, 600, 400);
        QTest::newRow("attribution") << int(COPYRIGHT) << "\u00A9 Velmora contributors" << view << int(Qt::BottomRightCorner);
        QTest::newRow("attribution on two lines") << int(COPYRIGHT) << "Imagery\n\u00A9 Velmora" << view << int(Qt::BottomRightCorner);
        QTest::newRow("attribution without text") << int(COPYRIGHT) << "" << view << -1;
        QTest::newRow("attribution of blanks") << int(COPYRIGHT) << "   " << view << -1;
        QTest::newRow("compass") << int(COMPASS) << "" << view << int(Qt::TopRightCorner);
        QTest::newRow("scale bar") << int(SCALE_BAR) << "" << view << int(Qt::BottomLeftCorner);
        QTest::newRow("scale bar far out") << int(SCALE_BAR) << "" << QRectF(0, 0, 6e7, 4e7) << int(Qt::BottomLeftCorner);
        QTest::newRow("scale bar in centimetres") << int(SCALE_BAR) << "" << QRectF(1e6, 5e6, 6, 4) << int(Qt::BottomLeftCorner);
        QTest::newRow("scale bar on a view of no width") << int(SCALE_BAR) << "" << QRectF(5, 0, 0, 400) << -1;
        QTest::newRow("GPS position") << int(GPS) << "" << view << AT_ITS_FIX;
    }
    void eachDecorationInItsCorner()
    {
        auto [kind, text, view, corner] = Row<int, QString, QRectF, int>::fetch();
        auto plot = groundPlot(view);
        QVERIFY(plot);
        VwoADecoration* decoration = makeDecoration(kind, text);
        decoration->attach(plot.get());
        const QImage image = grabCanvas(*plot);
        const QRect area = decorationArea(decoration, [&] { return grabCanvas(*plot); });
        QCOMPARE(area.isEmpty(), corner < 0);
        if (corner < 0)
            return;
        const QRect one = decorationArea(decoration, [&] { return MapTest::rendered(*plot); });
        const QRect two = decorationArea(decoration, [&] { return MapTest::rendered(*plot, 2.0); });
        const QString sizes = QStringLiteral("%1 x %2 at 1, %3 x %4 at 2").arg(one.width()).arg(one.height()).arg(two.width()).arg(two.height());
        QVERIFY2(!one.isEmpty() && qAbs(two.width() - 2 * one.width()) <= 4 && qAbs(two.height() - 2 * one.height()) <= 4, qPrintable(sizes));
        QVERIFY2(MapTest::near(two.center(), one.center() * 2, 3), qPrintable(sizes));
        if (corner == AT_ITS_FIX)
            return;
        // Within the corner's quarter, about the margin (10 px, and the frame's pixel) from its edges.
        const bool right = corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner;
        const bool bottom = corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner;
        const int gapX = right ? image.width() - 1 - area.right() : area.left();
        const int gapY = bottom ? image.height() - 1 - area.bottom() : area.top();
        QVERIFY2(gapX >= 9 && gapX <= 14 && gapY >= 9 && gapY <= 14, qPrintable(QStringLiteral("%1, %2").arg(gapX).arg(gapY)));
        QVERIFY(area.width() < image.width() / 2 && area.height() < image.height() / 2);
        // A light box behind the marks, lighter than the layer under it.
        const int light = ImageChecks::count(image.copy(area), [](QRgb c) { return qGray(c) > qGray(GROUND.rgb()) + 60; });
        QVERIFY2(light > area.width() * area.height() / 3, qPrintable(QString::number(light)));
        if (kind != SCALE_BAR)
            return;
        // The bar's outline, its widest dark row, is as long as the bar measures.
        const double perPixel = plot->getFactorPixelToSize();
        const double length = VwoScaleBar::getLength(perPixel, plot->canvas()->contentsRect().width()) / perPixel;
        int widest = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(), first = -1; x <= area.right(); ++x)
                if (isDark(image.pixel(x, y))) {
                    first = first < 0 ? x : first;
                    widest = std::max(widest, x + 1 - first);
                }
        QVERIFY2(qAbs(widest - length) <= 2.0, qPrintable(QStringLiteral("%1 px drawn, %2 expected").arg(widest).arg(length)));
    }

    void scaleBarRoundsDown_data()
    {
        Row<QString, double, double, double, QString>::addColumns(); // unit, unitsPerPixel, canvasWidth, length, label
        QTest::newRow("a metre a pixel") << "m" << 1.0 << 1000.0 << 200.0 << "200 m";
        QTest::newRow("half a kilometre") << "m" << 2.6 << 1000.0 << 500.0 << "500 m";
        QTest::newRow("metres read as kilometres") << "m" << 7.3 << 1000.0 << 1000.0 << "1 km";
        QTest::newRow("exactly a kilometre") << "m" << 5.0 << 1000.0 << 1000.0 << "1 km";
        QTest::newRow("two kilometres") << "m" << 12.0 << 1000.0 << 2000.0 << "2 km";
        QTest::newRow("continent") << "m" << 5000.0 << 1000.0 << 1.0e6 << "1000 km";
        QTest::newRow("millimetres a pixel") << "m" << 0.0013 << 1000.0 << 0.2 << "0.2 m";
        QTest::newRow("map in kilometres") << "km" << 0.01 << 500.0 << 1.0 << "1 km";
        QTest::newRow("feet stay feet") << "ft" << 3.0 << 1000.0 << 500.0 << "500 ft";
        QTest::newRow("US survey feet") << "ftUS" << 1.0 << 600.0 << 100.0 << "100 ft (US)";
        QTest::newRow("degrees") << "deg" << 1.0e-4 << 1000.0 << 0.02 << "0.02\u00B0";
        QTest::newRow("no unit") << "" << 1.0 << 1000.0 << 200.0 << "200";
        QTest::newRow("narrow canvas aims at 40 px") << "m" << 1.0 << 150.0 << 20.0 << "20 m";
        QTest::newRow("canvas too narrow for a bar") << "m" << 1.0 << 50.0 << 0.0 << "";
        QTest::newRow("zero scale") << "m" << 0.0 << 1000.0 << 0.0 << "";
        QTest::newRow("negative scale") << "m" << -1.0 << 1000.0 << 0.0 << "";
        QTest::newRow("NaN scale") << "m" << NaN << 1000.0 << 0.0 << "";
        QTest::newRow("infinite scale") << "m" << qInf() << 1000.0 << 0.0 << "";
        QTest::newRow("scale overflowing") << "m" << 1.0e307 << 1000.0 << 0.0 << "";
        QTest::newRow("NaN width") << "m" << 1.0 << NaN << 0.0 << "";
    }
    void scaleBarRoundsDown()
    {
        auto [unit, unitsPerPixel, canvasWidth, length, label] = Row<QString, double, double, double, QString>::fetch();
        const double got = VwoScaleBar::getLength(unitsPerPixel, canvasWidth);
        QVERIFY2(qAbs(got - length) <= 1e-12 * length, qPrintable(QString::number(got, 'g', 17)));
        QCOMPARE(VwoScaleBar(KbuUnit::fromKey(unit)).getLabel(got), label);
    }

    void northAngle_data()
    {
        // system: "local:<unit>", "" for none, or a definition; unit: of the map's coordinates; point: in the system, from longitude and latitude
        Row<QString, QString, QPointF, bool, double>::addColumns(); // system, unit, point, lonLat, angle
        const QString utm31 = QStringLiteral("EPSG:32631"); // central meridian 3° E
        QTest::newRow("local") << "local:m" << "m" << QPointF(500, 500) << false << 0.0;
        QTest::newRow("no system") << "" << "m" << QPointF(500, 500) << false << 0.0;
        QTest::newRow("geographic") << "EPSG:4326" << "deg" << QPointF(6, 45) << true << 0.0;
        QTest::newRow("on the central meridian") << utm31 << "m" << QPointF(3, 45) << true << 0.0;
        QTest::newRow("east of it") << utm31 << "m" << QPointF(6, 45) << true << arrowAngle(3, 45);
        QTest::newRow("west of it") << utm31 << "m" << QPointF(0, 45) << true << arrowAngle(-3, 45);
        QTest::newRow("far north") << utm31 << "m" << QPointF(6, 80) << true << arrowAngle(3, 80);
        QTest::newRow("by the pole") << utm31 << "m" << QPointF(6, 89.9995) << true << arrowAngle(3, 89.9995);
        QTest::newRow("southern hemisphere") << "EPSG:32731" << "m" << QPointF(6, -30) << true << arrowAngle(3, -30);
        QTest::newRow("map in kilometres") << utm31 << "km" << QPointF(6, 45) << true << arrowAngle(3, 45);
        QTest::newRow("NaN point") << utm31 << "m" << QPointF(NaN, 5e6) << false << 0.0;
        QTest::newRow("infinite point") << utm31 << "m" << QPointF(qInf(), 5e6) << false << 0.0;
        QTest::newRow("beyond the projection") << utm31 << "m" << QPointF(1e30, 1e30) << false << 0.0;
    }
    void northAngle()
    {
        auto [system, unit, point, lonLat, angle] = Row<QString, QString, QPointF, bool, double>::fetch();
        const bool local = system.startsWith(QLatin1String("local:")) || system.isEmpty();
        if (lonLat)
            point = toSystem(system, point) / (unit == QLatin1String("km") ? 1000.0 : 1.0);
        const VwoCompass compass(local ? VuuCoordSystem::fromString(system) : VuuCoordSystem(system), KbuUnit::fromKey(unit));
        const double got = compass.northAngleAt(point);
        QVERIFY2(std::isfinite(got) && qAbs(got - angle) <= 0.01, qPrintable(QStringLiteral("%1° instead of %2°").arg(got).arg(angle)));
    }

    void compassLeansWithTheMeridians_data()
    {
        // lonLat: at the canvas's centre, on UTM zone 31; lean: -1 west, +1 east, 0 upright
        Row<QPointF, int>::addColumns(); // lonLat, lean
        QTest::newRow("east of the central meridian") << QPointF(21, 70) << -1;
        QTest::newRow("west of the central meridian") << QPointF(-15, 70) << +1;
        QTest::newRow("on the central meridian") << QPointF(3, 70) << 0;
    }
    void compassLeansWithTheMeridians()
    {
        auto [lonLat, lean] = Row<QPointF, int>::fetch();
        const QPointF centre = toSystem(QStringLiteral("EPSG:32631"), lonLat);
        auto plot = groundPlot(QRectF(centre - QPointF(30000, 20000), QSizeF(60000, 40000)));
        QVERIFY(plot);
        auto* compass = new VwoCompass(VuuCoordSystem::local());
        compass->attach(plot.get());
        // The x of the dark pixels' centroid in the upper half of the corner: where it points.
        const auto tip = [&] {
            const QImage image = grabCanvas(*plot).copy(600 - 80, 0, 80, 40);
            double sum = 0.0, count = 0.0;
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x)
                    if (isDark(image.pixel(x, y))) {
                        sum += x;
                        ++count;
                    }
            return count ? sum / count : NaN;
        };
        const double upright = tip();
        compass->setCoordSystem(VuuCoordSystem(QStringLiteral("EPSG:32631")));
        const double turned = tip();
        QVERIFY(std::isfinite(upright) && std::isfinite(turned));
        const QString shift = QString::number(turned - upright);
        QVERIFY2(lean == 0 ? qAbs(turned - upright) < 0.5 : lean * (turned - upright) > 2.0, qPrintable(shift));
    }

    void gpsMarkerFollowsTheFix_data()
    {
        // marker: invalid for none
        Row<bool, QList<QPointF>, QList<bool>, QColor, QPointF>::addColumns(); // shown, fixes, valid, marker, at
        using Points = QList<QPointF>;
        using Flags = QList<bool>;
        const QPointF a(150, 250), b(400, 100), lost(NaN, NaN);
        const QColor blue(0, 110, 255), grey(150, 150, 150);
        QTest::newRow("a fix") << true << Points{a} << Flags{true} << blue << a;
        QTest::newRow("hidden at creation") << false << Points{a} << Flags{true} << QColor() << a;
        QTest::newRow("no fix yet") << true << Points{a} << Flags{false} << QColor() << a;
        QTest::newRow("NaN as first fix") << true << Points{lost} << Flags{true} << QColor() << a;
        QTest::newRow("moved") << true << Points{a, b} << Flags{true, true} << blue << b;
        QTest::newRow("fix lost") << true << Points{a, b} << Flags{true, false} << grey << a;
        QTest::newRow("NaN after a fix") << true << Points{a, lost} << Flags{true, true} << grey << a;
        QTest::newRow("found again") << true << Points{a, lost, b} << Flags{true, false, true} << blue << b;
        QTest::newRow("off the view") << true << Points{QPointF(5000, 5000)} << Flags{true} << QColor() << a;
    }
    void gpsMarkerFollowsTheFix()
    {
        auto [shown, fixes, valid, marker, at] = Row<bool, QList<QPointF>, QList<bool>, QColor, QPointF>::fetch();
        auto plot = groundPlot();
        QVERIFY(plot);
        auto* gps = new VwoGpsPosition;
        gps->attach(plot.get());
        gps->setVisible(shown);
        for (int i = 0; i < fixes.size(); ++i) {
            if (valid[i] && !std::isfinite(fixes[i].x()))
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("VwoGpsPosition::setPosition")));
            gps->setPosition(fixes[i], valid[i]);
        }
        const QImage image = grabCanvas(*plot);
        const QRect area = decorationArea(gps, [&] { return grabCanvas(*plot); });
        QCOMPARE(area.isEmpty(), !marker.isValid());
        if (!marker.isValid())
            return;
        const QPoint pixel = plot->viewToPixel(at).toPoint();
        for (const QPoint& ring : {QPoint(0, 0), QPoint(7, 0), QPoint(-7, 0), QPoint(0, 7), QPoint(0, -7)})
            QVERIFY2(ImageChecks::near(image.pixel(pixel + ring), marker, 40), qPrintable(ImageChecks::toString(image.pixel(pixel + ring))));
        // Only the marker, about 20 px across, centred on the fix.
        QVERIFY(MapTest::near(area.center(), pixel, 1));
        QVERIFY2(area.width() >= 18 && area.width() <= 23, qPrintable(QString::number(area.width())));
    }
};

QTEST_MAIN(TestVwqBasemapPlot)
#include "tst_vwqbasemapplot.moc"
