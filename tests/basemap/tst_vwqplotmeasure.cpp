// The map rulers driven with the mouse and keys on a plot where one pixel is one map unit:
// the measure text beside the cursor, its units and preferences, the signals a listener
// receives, the drawing of segment lengths and angles, and input that measures nothing.

#include "ImageChecks.h"
#include "MapTestKit.h"
#include <KbbUserStringFormats.h>
#include <KbuUnit.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VwqPlotMeasureArea.h>
#include <VwqPlotMeasureLine.h>

#include <qwt_scale_div.h>

namespace {
enum class Ruler { Line, Area };
} // namespace
Q_DECLARE_METATYPE(Ruler)

namespace {

using Clicks = QVector<QPoint>;

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

class TestVwqPlotMeasure : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void initTestCase()
    {
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
        QLocale::setDefault(QLocale::c());
    }

    void init()
    {
        for (const char* name : {"lineRulerTotalLength", "lineRulerAzimuth", "lineRulerLength", "lineRulerAngle",
                                 "areaRulerArea", "areaRulerPerimeter", "areaRulerLength", "areaRulerAngle"})
            VupMapPreferences::setValue(QLatin1String(name), true);
        KbbUserStringFormats::resetToDefaults();
    }

    void measureText_data()
    {
        // userUnit: the user's format of its unit class; "" keeps m and m²
        MapTest::addColumns<Ruler, QString, QString, QStringList, Clicks, QString>(
            {"ruler", "viewUnit", "userUnit", "switchedOff", "clicks", "expected"});

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
            MapTest::fetch<Ruler, QString, QString, QStringList, Clicks, QString>();

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
        // ending: a key, 0 for a right click, -1 for a switch to pan mode; selection: empty: nothing is selected
        MapTest::addColumns<Ruler, int, Clicks, int, Clicks>({"ruler", "mode", "clicks", "ending", "selection"});

        const int length = Vw::MEASURE_LENGTH, area = Vw::MEASURE_AREA;
        const Clicks path{{100, 200}, {200, 200}, {200, 200}, {200, 100}};
        const Clicks picked{{100, 200}, {200, 200}, {200, 100}};
        QTest::newRow("line, right click ends") << Ruler::Line << length << path << 0 << picked;
        QTest::newRow("line, Space ends") << Ruler::Line << length << path << int(Qt::Key_Space) << picked;
        QTest::newRow("line, Escape abandons") << Ruler::Line << length << path << int(Qt::Key_Escape) << Clicks();
        QTest::newRow("line, a mode switch abandons") << Ruler::Line << length << path << -1 << Clicks();
        QTest::newRow("line, one vertex is no measure") << Ruler::Line << length << Clicks{{100, 200}, {100, 200}} << 0 << Clicks();
        QTest::newRow("line, area mode takes no clicks") << Ruler::Line << area << path << 0 << Clicks();
        QTest::newRow("area, right click ends") << Ruler::Area << area << path << 0 << picked;
        QTest::newRow("area, two vertices are no measure") << Ruler::Area << area << Clicks{{100, 200}, {200, 200}} << 0 << Clicks();
        QTest::newRow("area, zoom box mode takes no clicks") << Ruler::Area << int(Vw::ZOOM_BOX) << path << 0 << Clicks();
    }

    void picking()
    {
        auto [ruler, mode, clicks, ending, selection] = MapTest::fetch<Ruler, int, Clicks, int, Clicks>();

        const auto plot = MapTest::barePlot();
        VwqPlotAMeasure* measure = makeRuler(ruler, plot.get());
        measure->setMode(Vw::NO_MODE);
        plot->canvas()->setCursor(Qt::CrossCursor); // another tool's
        measure->setMode(Vw::ViewMode(mode));
        const bool ownMode = mode == (ruler == Ruler::Line ? Vw::MEASURE_LENGTH : Vw::MEASURE_AREA);
        QCOMPARE(plot->canvas()->cursor().shape(), ownMode ? Qt::ArrowCursor : Qt::CrossCursor);
        QSignalSpy started(measure, &VwqPlotAMeasure::startPicking);
        QSignalSpy stopped(measure, &VwqPlotAMeasure::stopPicking);
        QSignalSpy selected(measure, QOverload<const QVector<QPointF>&>::of(&QwtPlotPicker::selected));

        pick(plot->canvas(), clicks);
        QCOMPARE(started.count(), ownMode ? 1 : 0);
        QCOMPARE(stopped.count(), 0);
        if (ending == 0)
            QTest::mouseClick(plot->canvas(), Qt::RightButton, Qt::NoModifier, clicks.last());
        else if (ending > 0)
            QTest::keyClick(plot->canvas(), Qt::Key(ending));
        else
            measure->setMode(Vw::PAN);

        QVERIFY(!measure->isActive());
        QCOMPARE(started.count(), ownMode ? 1 : 0);
        QCOMPARE(stopped.count(), ownMode ? 1 : 0);
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
        MapTest::addColumns<Ruler, QStringList, bool, bool>({"ruler", "switchedOff", "lengthLabel", "angleArc"});

        QTest::newRow("line, length labels and angle arcs") << Ruler::Line << QStringList() << true << true;
        QTest::newRow("line, length labels off") << Ruler::Line << QStringList{"lineRulerLength"} << false << true;
        QTest::newRow("line, angle arcs off, area preferences ignored")
            << Ruler::Line << QStringList{"lineRulerAngle", "areaRulerLength"} << true << false;
        QTest::newRow("area, closed") << Ruler::Area << QStringList() << true << true;
    }

    void drawing()
    {
        auto [ruler, switchedOff, lengthLabel, angleArc] = MapTest::fetch<Ruler, QStringList, bool, bool>();

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

    void degenerateInput_data()
    {
        MapTest::addColumns<Ruler, double, double, Clicks>({"ruler", "axisMinimum", "axisMaximum", "clicks"});

        const double nan = std::nan(""), inf = HUGE_VAL;
        const Clicks triangle{{100, 200}, {200, 200}, {200, 100}};
        QTest::newRow("line, no vertices") << Ruler::Line << 0.0 << 399.0 << Clicks();
        QTest::newRow("line, NaN axes") << Ruler::Line << nan << nan << triangle;
        QTest::newRow("area, infinite axes") << Ruler::Area << -inf << inf << triangle;
        QTest::newRow("area, axes of no range") << Ruler::Area << 5.0 << 5.0 << triangle;
    }

    void degenerateInput()
    {
        auto [ruler, axisMinimum, axisMaximum, clicks] = MapTest::fetch<Ruler, double, double, Clicks>();

        const auto plot = MapTest::barePlot();
        for (int axis : {QwtPlot::xBottom, QwtPlot::yLeft})
            plot->setAxisScaleDiv(axis, QwtScaleDiv(axisMinimum, axisMaximum));
        plot->replot();
        VwqPlotAMeasure* measure = makeRuler(ruler, plot.get());
        QSignalSpy selected(measure, QOverload<const QVector<QPointF>&>::of(&QwtPlotPicker::selected));
        QSignalSpy stopped(measure, &VwqPlotAMeasure::stopPicking);
        for (int i = 0; i < clicks.size(); ++i)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("append: the pixel .* no plot coordinates")));

        pick(plot->canvas(), clicks);
        moveTo(plot->canvas(), QPoint(250, 50));
        QVERIFY(shownText(*measure).isEmpty());
        QVERIFY(!plot->canvas()->grab().isNull());
        QTest::mouseClick(plot->canvas(), Qt::RightButton, Qt::NoModifier, QPoint(250, 50));
        QTest::keyClick(plot->canvas(), Qt::Key_Space);
        QTest::keyClick(plot->canvas(), Qt::Key_Escape);

        QCOMPARE(stopped.count(), clicks.isEmpty() ? 0 : 1);
        QCOMPARE(selected.count(), 0);
    }
};

QTEST_MAIN(TestVwqPlotMeasure)
#include "tst_vwqplotmeasure.moc"
