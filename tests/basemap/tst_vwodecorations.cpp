// The map decorations as a user sees them over a map: each in its corner, the scale bar's
// round lengths and labels, the north arrow turned by the meridian convergence, the GPS
// marker at its fix and greyed when the fix is lost, the plot's extent left alone, and a
// picture rendered at twice the size showing the decorations twice as large.

#include <KbuUnit.h>
#include <VupPreferenceRegistry.h>
#include <VuuCoordSystem.h>
#include <VwoCompass.h>
#include <VwoCopyright.h>
#include <VwoGpsPosition.h>
#include <VwoScaleBar.h>
#include <VwqBasemapPlot.h>

#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_renderer.h>

#include <QBuffer>
#include <QSvgGenerator>
#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double PI = 3.14159265358979323846;
// A dark layer under the decorations: their light boxes must show over it.
const QColor GROUND(40, 90, 40);
const QColor GPS_BLUE(0, 110, 255);
const QColor GPS_GREY(150, 150, 150);

enum Kind { COPYRIGHT, COMPASS, SCALE_BAR, GPS };

VwoADecoration* makeDecoration(int kind)
{
    switch (kind) {
    case COPYRIGHT:
        return new VwoCopyright(QStringLiteral("\u00A9 Velmora contributors"));
    case COMPASS:
        return new VwoCompass(VuuCoordSystem::local());
    case SCALE_BAR:
        return new VwoScaleBar();
    default: {
        auto* gps = new VwoGpsPosition;
        gps->setPosition(QPointF(150, 250), true);
        gps->setVisible(true);
        return gps;
    }
    }
}

// A 600 x 400 map without axes or grid, on the dark ground, showing `view` (map units).
std::unique_ptr<VwqBasemapPlot> makePlot(const QRectF& view = QRectF(0, 0, 600, 400))
{
    auto plot = std::make_unique<VwqBasemapPlot>();
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plot->enableAxis(axis, false);
    plot->grid()->hide();
    QPalette palette = plot->canvas()->palette();
    palette.setColor(QPalette::Window, GROUND);
    plot->canvas()->setPalette(palette);
    plot->resize(600, 400);
    plot->show();
    if (!QTest::qWaitForWindowExposed(plot.get()))
        return nullptr;
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

// As the view makes its pixmaps: the whole plot into an image `scale` times its size.
QImage renderPlot(VwqBasemapPlot& plot, double scale)
{
    QImage image((QSizeF(plot.size()) * scale).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardCanvasFrame);
    renderer.render(&plot, &painter, QRectF(QPointF(0, 0), QSizeF(plot.size())));
    return image;
}

bool near(QRgb a, const QColor& b, int tolerance = 40)
{
    return qAbs(qRed(a) - b.red()) <= tolerance && qAbs(qGreen(a) - b.green()) <= tolerance &&
           qAbs(qBlue(a) - b.blue()) <= tolerance;
}

bool isDark(QRgb c)
{
    return qGray(c) < 60 && !near(c, GROUND, 30);
}

// Where two pictures of the same size differ; empty when they do not.
QRect changedArea(const QImage& a, const QImage& b)
{
    QRect area;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (!near(a.pixel(x, y), b.pixel(x, y), 24))
                area |= QRect(x, y, 1, 1);
    return area;
}

// The picture with and without the decoration.
QRect decorationArea(VwoADecoration* decoration, const std::function<QImage()>& picture)
{
    const bool visible = decoration->isVisible();
    decoration->setVisible(false);
    const QImage without = picture();
    decoration->setVisible(visible);
    return changedArea(picture(), without);
}

// The x of the centroid of the dark pixels above the middle of the top-right corner's drawing.
double upperDarkCentroid(const QImage& image)
{
    double sum = 0.0, top = image.height(), bottom = 0.0;
    const QRect corner(image.width() - 80, 0, 80, 80);
    for (int y = corner.top(); y <= corner.bottom(); ++y)
        for (int x = corner.left(); x <= corner.right(); ++x)
            if (isDark(image.pixel(x, y))) {
                top = std::min(top, double(y));
                bottom = std::max(bottom, double(y));
            }
    int count = 0;
    for (int y = corner.top(); y < (top + bottom) / 2.0; ++y)
        for (int x = corner.left(); x <= corner.right(); ++x)
            if (isDark(image.pixel(x, y))) {
                sum += x;
                ++count;
            }
    return count ? sum / count : NaN;
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
    return -std::atan(std::tan(lonFromCentralMeridian * PI / 180.0) * std::sin(lat * PI / 180.0)) * 180.0 / PI;
}

} // namespace

class TestVwoDecorations : public QObject
{
    Q_OBJECT
    QTemporaryDir _dir;

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath(QStringLiteral("preferences.ini")));
    }

    void eachDecorationInItsCorner_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text"); // the attribution's
        QTest::addColumn<QRectF>("view");
        QTest::addColumn<int>("corner"); // Qt::Corner, -1 for nothing drawn

        const QRectF view(0, 0, 600, 400);
        QTest::newRow("attribution") << int(COPYRIGHT) << "\u00A9 Velmora contributors" << view
                                     << int(Qt::BottomRightCorner);
        QTest::newRow("attribution on two lines") << int(COPYRIGHT) << "Imagery\n\u00A9 Velmora" << view
                                                  << int(Qt::BottomRightCorner);
        QTest::newRow("attribution without text") << int(COPYRIGHT) << "" << view << -1;
        QTest::newRow("attribution of blanks") << int(COPYRIGHT) << "   " << view << -1;
        QTest::newRow("compass") << int(COMPASS) << "" << view << int(Qt::TopRightCorner);
        QTest::newRow("scale bar") << int(SCALE_BAR) << "" << view << int(Qt::BottomLeftCorner);
        QTest::newRow("scale bar far out") << int(SCALE_BAR) << "" << QRectF(0, 0, 6e7, 4e7)
                                           << int(Qt::BottomLeftCorner);
        QTest::newRow("scale bar on a view of no width") << int(SCALE_BAR) << "" << QRectF(5, 0, 0, 400) << -1;
    }
    void eachDecorationInItsCorner()
    {
        QFETCH(int, kind);
        QFETCH(QString, text);
        QFETCH(QRectF, view);
        QFETCH(int, corner);
        auto plot = makePlot(view);
        QVERIFY(plot);
        VwoADecoration* decoration = makeDecoration(kind);
        if (auto* copyright = dynamic_cast<VwoCopyright*>(decoration))
            copyright->setText(text);
        decoration->attach(plot.get());

        const QImage image = grabCanvas(*plot);
        const QRect area = decorationArea(decoration, [&] { return grabCanvas(*plot); });
        if (corner < 0) {
            QVERIFY2(area.isEmpty(), qPrintable(QStringLiteral("drawn at %1, %2").arg(area.x()).arg(area.y())));
            return;
        }
        QVERIFY(!area.isEmpty());
        // Within the corner's quarter, about the margin (10 px, and the frame's pixel) from its edges.
        const QRect canvas(QPoint(0, 0), image.size());
        const bool right = corner == Qt::TopRightCorner || corner == Qt::BottomRightCorner;
        const bool bottom = corner == Qt::BottomLeftCorner || corner == Qt::BottomRightCorner;
        const int gapX = right ? canvas.right() - area.right() : area.left();
        const int gapY = bottom ? canvas.bottom() - area.bottom() : area.top();
        QVERIFY2(gapX >= 9 && gapX <= 14, qPrintable(QString::number(gapX)));
        QVERIFY2(gapY >= 9 && gapY <= 14, qPrintable(QString::number(gapY)));
        QVERIFY(area.width() < canvas.width() / 2 && area.height() < canvas.height() / 2);
        // A light box behind the marks, lighter than the layer under it.
        int light = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                light += qGray(image.pixel(x, y)) > qGray(GROUND.rgb()) + 60;
        QVERIFY2(light > area.width() * area.height() / 3, qPrintable(QString::number(light)));
    }

    void scaleBarRoundsDown_data()
    {
        QTest::addColumn<QString>("unit");
        QTest::addColumn<double>("unitsPerPixel");
        QTest::addColumn<double>("canvasWidth");
        QTest::addColumn<double>("length");
        QTest::addColumn<QString>("label");

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
        QFETCH(QString, unit);
        QFETCH(double, unitsPerPixel);
        QFETCH(double, canvasWidth);
        QFETCH(double, length);
        QFETCH(QString, label);
        const VwoScaleBar bar(KbuUnit::fromKey(unit));
        const double got = VwoScaleBar::getLength(unitsPerPixel, canvasWidth);
        QVERIFY2(qAbs(got - length) <= 1e-12 * length, qPrintable(QString::number(got, 'g', 17)));
        QCOMPARE(bar.getLabel(got), label);
    }

    void scaleBarDrawnToItsLength_data()
    {
        QTest::addColumn<QRectF>("view");
        QTest::newRow("a metre a pixel") << QRectF(0, 0, 600, 400);
        QTest::newRow("ten metres a pixel") << QRectF(-3000, 0, 6000, 4000);
        QTest::newRow("centimetres a pixel") << QRectF(1e6, 5e6, 6, 4);
    }
    void scaleBarDrawnToItsLength()
    {
        QFETCH(QRectF, view);
        auto plot = makePlot(view);
        QVERIFY(plot);
        (new VwoScaleBar)->attach(plot.get());
        const QImage image = grabCanvas(*plot);
        const double unitsPerPixel = plot->getFactorPixelToSize();
        const double expected = VwoScaleBar::getLength(unitsPerPixel, plot->canvas()->contentsRect().width()) /
                                unitsPerPixel;
        QVERIFY(expected >= 40.0 / 2.5);

        // The bar's outline is the widest dark row of the bottom-left quarter.
        int widest = 0;
        for (int y = image.height() / 2; y < image.height(); ++y)
            for (int x = 0, first = -1; x < image.width() / 2; ++x)
                if (isDark(image.pixel(x, y))) {
                    first = first < 0 ? x : first;
                    widest = std::max(widest, x + 1 - first);
                }
        QVERIFY2(qAbs(widest - expected) <= 2.0,
                 qPrintable(QStringLiteral("%1 px drawn, %2 expected").arg(widest).arg(expected)));
    }

    void northAngle_data()
    {
        QTest::addColumn<QString>("system"); // "local:<unit>", "" for none, or a definition
        QTest::addColumn<QString>("unit");   // of the map's coordinates
        QTest::addColumn<QPointF>("point");  // in the system, from longitude and latitude
        QTest::addColumn<bool>("lonLat");
        QTest::addColumn<double>("angle");

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
        QFETCH(QString, system);
        QFETCH(QString, unit);
        QFETCH(QPointF, point);
        QFETCH(bool, lonLat);
        QFETCH(double, angle);
        const VuuCoordSystem coordSystem = system.startsWith(QLatin1String("local:")) || system.isEmpty()
                                               ? VuuCoordSystem::fromString(system)
                                               : VuuCoordSystem(system);
        if (lonLat) {
            point = toSystem(system, point);
            if (unit == QLatin1String("km"))
                point /= 1000.0;
        }
        const VwoCompass compass(coordSystem, KbuUnit::fromKey(unit));
        const double got = compass.northAngleAt(point);
        QVERIFY2(std::isfinite(got) && qAbs(got - angle) <= 0.01,
                 qPrintable(QStringLiteral("%1° instead of %2°").arg(got).arg(angle)));
    }

    void compassLeansWithTheMeridians_data()
    {
        QTest::addColumn<QPointF>("lonLat"); // at the canvas's centre, on UTM zone 31
        QTest::addColumn<int>("lean");       // -1 west, +1 east, 0 upright

        QTest::newRow("east of the central meridian") << QPointF(21, 70) << -1;
        QTest::newRow("west of the central meridian") << QPointF(-15, 70) << +1;
        QTest::newRow("on the central meridian") << QPointF(3, 70) << 0;
    }
    void compassLeansWithTheMeridians()
    {
        QFETCH(QPointF, lonLat);
        QFETCH(int, lean);
        const QPointF centre = toSystem(QStringLiteral("EPSG:32631"), lonLat);
        auto plot = makePlot(QRectF(centre - QPointF(30000, 20000), QSizeF(60000, 40000)));
        QVERIFY(plot);
        auto* compass = new VwoCompass(VuuCoordSystem::local());
        compass->attach(plot.get());
        const double upright = upperDarkCentroid(grabCanvas(*plot));
        compass->setCoordSystem(VuuCoordSystem(QStringLiteral("EPSG:32631")));
        const double turned = upperDarkCentroid(grabCanvas(*plot));
        QVERIFY(std::isfinite(upright) && std::isfinite(turned));
        const QString shift = QString::number(turned - upright);
        if (lean == 0)
            QVERIFY2(qAbs(turned - upright) < 0.5, qPrintable(shift));
        else
            QVERIFY2(lean * (turned - upright) > 2.0, qPrintable(shift));
    }

    void gpsMarkerFollowsTheFix_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::addColumn<QList<QPointF>>("fixes");
        QTest::addColumn<QList<bool>>("valid");
        QTest::addColumn<QString>("marker"); // "blue", "grey" or "" for none
        QTest::addColumn<QPointF>("at");

        using Points = QList<QPointF>;
        using Flags = QList<bool>;
        const QPointF a(150, 250), b(400, 100), lost(NaN, NaN);
        QTest::newRow("a fix") << true << Points{a} << Flags{true} << "blue" << a;
        QTest::newRow("hidden at creation") << false << Points{a} << Flags{true} << "" << a;
        QTest::newRow("no fix yet") << true << Points{a} << Flags{false} << "" << a;
        QTest::newRow("NaN as first fix") << true << Points{lost} << Flags{true} << "" << a;
        QTest::newRow("moved") << true << Points{a, b} << Flags{true, true} << "blue" << b;
        QTest::newRow("fix lost") << true << Points{a, b} << Flags{true, false} << "grey" << a;
        QTest::newRow("NaN after a fix") << true << Points{a, lost} << Flags{true, true} << "grey" << a;
        QTest::newRow("found again") << true << Points{a, lost, b} << Flags{true, false, true} << "blue" << b;
        QTest::newRow("off the view") << true << Points{QPointF(5000, 5000)} << Flags{true} << "" << a;
    }
    void gpsMarkerFollowsTheFix()
    {
        QFETCH(bool, shown);
        QFETCH(QList<QPointF>, fixes);
        QFETCH(QList<bool>, valid);
        QFETCH(QString, marker);
        QFETCH(QPointF, at);
        auto plot = makePlot();
        QVERIFY(plot);
        const QImage before = grabCanvas(*plot);
        auto* gps = new VwoGpsPosition;
        gps->attach(plot.get());
        if (shown)
            gps->setVisible(true);
        for (int i = 0; i < fixes.size(); ++i) {
            if (valid[i] && !std::isfinite(fixes[i].x()))
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("VwoGpsPosition::setPosition")));
            gps->setPosition(fixes[i], valid[i]);
        }
        const QImage image = grabCanvas(*plot);
        const QRect area = changedArea(image, before);
        if (marker.isEmpty()) {
            QVERIFY(area.isEmpty());
            return;
        }
        const QColor colour = marker == QLatin1String("blue") ? GPS_BLUE : GPS_GREY;
        const QPoint pixel = plot->viewToPixel(at).toPoint();
        QVERIFY2(near(image.pixel(pixel), colour), qPrintable(QString::number(image.pixel(pixel), 16)));
        for (const QPoint& ring : {QPoint(7, 0), QPoint(-7, 0), QPoint(0, 7), QPoint(0, -7)})
            QVERIFY(near(image.pixel(pixel + ring), colour));
        // Only the marker, about 20 px across, centred on the fix.
        QVERIFY2(qAbs(area.center().x() - pixel.x()) <= 1 && qAbs(area.center().y() - pixel.y()) <= 1,
                 qPrintable(QStringLiteral("%1, %2").arg(area.center().x()).arg(area.center().y())));
        QVERIFY2(area.width() >= 18 && area.width() <= 23, qPrintable(QString::number(area.width())));
    }

    void extentLeftAlone()
    {
        auto plot = makePlot();
        QVERIFY(plot);
        auto* curve = new QwtPlotCurve;
        curve->setSamples(QVector<QPointF>{{100, 100}, {300, 200}});
        plot->addPlotItem(curve);
        plot->setAxisAutoScale(QwtPlot::xBottom);
        plot->setAxisAutoScale(QwtPlot::yLeft);
        plot->replot();
        const QRectF extent = plot->currentViewRect();

        auto* gps = new VwoGpsPosition;
        gps->setPosition(QPointF(1e7, -1e7), true);
        gps->setVisible(true);
        for (VwoADecoration* decoration : {static_cast<VwoADecoration*>(gps), makeDecoration(COPYRIGHT),
                                           makeDecoration(COMPASS), makeDecoration(SCALE_BAR)})
            decoration->attach(plot.get());
        plot->replot();
        QCOMPARE(plot->currentViewRect(), extent);
    }

    void scaledPictureScalesTheDecorations_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("attribution") << int(COPYRIGHT);
        QTest::newRow("compass") << int(COMPASS);
        QTest::newRow("scale bar") << int(SCALE_BAR);
        QTest::newRow("GPS position") << int(GPS);
    }
    void scaledPictureScalesTheDecorations()
    {
        QFETCH(int, kind);
        auto plot = makePlot();
        QVERIFY(plot);
        VwoADecoration* decoration = makeDecoration(kind);
        decoration->attach(plot.get());
        const QRect one = decorationArea(decoration, [&] { return renderPlot(*plot, 1.0); });
        const QRect two = decorationArea(decoration, [&] { return renderPlot(*plot, 2.0); });
        QVERIFY(!one.isEmpty());
        const QString sizes = QStringLiteral("%1 x %2 at 1, %3 x %4 at 2")
                                  .arg(one.width()).arg(one.height()).arg(two.width()).arg(two.height());
        QVERIFY2(qAbs(two.width() - 2 * one.width()) <= 4 && qAbs(two.height() - 2 * one.height()) <= 4,
                 qPrintable(sizes));
        QVERIFY2(qAbs(two.center().x() - 2 * one.center().x()) <= 3 &&
                     qAbs(two.center().y() - 2 * one.center().y()) <= 3,
                 qPrintable(sizes));
    }

    void attributionInSvgExport()
    {
        auto plot = makePlot();
        QVERIFY(plot);
        makeDecoration(COPYRIGHT)->attach(plot.get());
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QSvgGenerator generator;
        generator.setOutputDevice(&buffer);
        generator.setSize(plot->size());
        QPainter painter(&generator);
        QwtPlotRenderer().render(plot.get(), &painter, QRectF(QPointF(0, 0), QSizeF(plot->size())));
        painter.end();
        QVERIFY(QString::fromUtf8(buffer.data()).contains(QStringLiteral("Velmora contributors")));
    }
};

QTEST_MAIN(TestVwoDecorations)
#include "tst_vwodecorations.moc"
