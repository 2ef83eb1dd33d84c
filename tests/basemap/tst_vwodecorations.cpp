// The decorations as a user sees them over a map: each in its corner (the scale bar drawn to
// its length), the scale bar's round lengths and labels, the north arrow turned by the
// meridian convergence, the GPS marker at its fix and greyed when the fix is lost, and a
// picture rendered at twice the size showing the decorations twice as large.

#include "ImageChecks.h"
#include "LowerTestSupport.h"
#include "MapTestKit.h"
#include <KbuUnit.h>
#include <VuuCoordSystem.h>
#include <VwoCompass.h>
#include <VwoCopyright.h>
#include <VwoGpsPosition.h>
#include <VwoScaleBar.h>

#include <qwt_plot_grid.h>

#include <functional>

namespace {

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

class TestVwoDecorations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

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

QTEST_MAIN(TestVwoDecorations)
#include "tst_vwodecorations.moc"
