// The map view of a scene: a layer per item in z order that follows the scene's changes,
// the message for an item it cannot draw, zooming to all, to a layer and to a rectangle of
// the project's system (keeping to the finite data when a sample lies at 1e30 or NaN),
// centring with its quarter-view rule, the last zoom kept in the
// scene, the decoration switches, GPS following, axis titles, pictures of the map in
// pixmaps, SVG and PDF, and Escape back to panning.

#include "MessageCatcher.h"
#include <KbbDebug.h>
#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>
#include <VwoCompass.h>
#include <VwoGpsPosition.h>
#include <VwoScaleBar.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapView.h>
#include <VwvIAcceptDrops.h>

#include <QAction>
#include <QMimeData>
#include <QSet>
#include <QPrinter>
#include "MapTestData.h"

#include <QtTest>
#include <limits>
#include <qwt_plot_grid.h>
#include <qwt_scale_widget.h>
#include <memory>

namespace {

VugSceneItem pointsItem(const QString& id, const QString& dataset = QStringLiteral("a"))
{
    return VugSceneItem(id, id.toUpper(), VugERendering::POINTS, dataset);
}

// Takes text drops, and remembers where they landed.
struct TextAcceptor : VwvIAcceptDrops
{
    QList<QPointF> drops;
    bool canAcceptDrop(const QMimeData& data) const override { return data.hasText(); }
    bool acceptDrop(const QMimeData&, const QPointF& mapPoint) override
    {
        drops.append(mapPoint);
        return true;
    }
};

// Shows the view at that size and waits for it; false when it is not shown.
bool showAt(VwvBasemapView& view, const QSize& size)
{
    view.resize(size);
    view.show();
    return QTest::qWaitForWindowExposed(&view);
}

QList<double> zOrder(const VwvBasemapView& view)
{
    QList<double> z;
    for (int rank = 0; rank < view.getLayerCount(); ++rank)
        z << (view.getLayer(rank) ? view.getLayer(rank)->getZ() : -1.0);
    return z;
}

QStringList titles(const VwvBasemapView& view)
{
    QStringList t;
    for (int rank = 0; rank < view.getLayerCount(); ++rank)
        t << (view.getLayer(rank) ? view.getLayer(rank)->getTitle() : QStringLiteral("-"));
    return t;
}

} // namespace

class TestVwvBasemapView : public QObject
{
    Q_OBJECT
    MapTestData _data;
    QTemporaryDir& _dir = _data.dir;
    std::unique_ptr<VugDatasetStore>& _datasets = _data.datasets;

private Q_SLOTS:
    void layersFollowTheScene()
    {
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        scene.appendItem(pointsItem(QStringLiteral("y")));
        scene.appendItem(pointsItem(QStringLiteral("z"), QStringLiteral("b")));
        VwvBasemapView view;
        view.setScene(&scene, _datasets.get());
        QCOMPARE(zOrder(view), (QList<double>{1, 2, 3}));

        scene.moveItem(2, 0);
        QCOMPARE(titles(view), (QStringList{"Z", "X", "Y"}));
        QCOMPARE(zOrder(view), (QList<double>{1, 2, 3}));

        scene.insertItem(1, pointsItem(QStringLiteral("w")));
        QCOMPARE(titles(view), (QStringList{"Z", "W", "X", "Y"}));
        scene.removeItems({0, 2});
        QCOMPARE(titles(view), (QStringList{"W", "Y"}));
        QCOMPARE(zOrder(view), (QList<double>{1, 2}));

        scene.renameItem(1, QStringLiteral("Wells"));
        scene.setItemActive(0, false);
        QCOMPARE(titles(view), (QStringList{"W", "Wells"}));
        QVERIFY(!view.getLayer(0)->isVisible());
    }

    void anItemItCannotDrawIsReported()
    {
        MessageCatcher caught;
        QStringList& warnings = caught.warnings;
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("Surface"), VugERendering::SURFACE));
        scene.appendItem(pointsItem(QStringLiteral("y"), QStringLiteral("missing")));
        VwvBasemapView view;
        view.setScene(&scene, _datasets.get());
        caught.stop();
        QCOMPARE(titles(view), (QStringList{"X", "-", "-"}));
        QCOMPARE(warnings.size(), 2);
        QCOMPARE(warnings.first(),
                 QStringLiteral("VwvBasemapView: cannot create render layer 'Surface': No 2D renderer for rendering '16'."));
    }

    void zoomsAndTheLastZoom()
    {
        VugScene empty(2);
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setScene(&empty, _datasets.get());
        const QRectF before = view.getCurrentZoom();
        view.viewAll();
        QCOMPARE(view.getCurrentZoom(), before); // nothing to show: nothing changes

        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        view.setScene(&scene, _datasets.get());
        const QRectF all = view.getCurrentZoom();
        QVERIFY2(all.contains(QRectF(-10, -5, 120, 60)), qPrintable(QStringLiteral("%1 %2 %3 %4")
                                                                        .arg(all.x()).arg(all.y()).arg(all.width()).arg(all.height())));
        QCOMPARE(scene.getLastZoom(), view.getCurrentZoom());

        // Within a quarter of the view of its centre: left alone; beyond: centred.
        const QRectF view0 = view.getCurrentZoom();
        view.centerAt(view0.center() + QPointF(0.24 * view0.width(), 0));
        QCOMPARE(view.getCurrentZoom(), view0);
        view.centerAt(view0.center() + QPointF(0.26 * view0.width(), 0));
        QVERIFY(qAbs(view.getCurrentZoom().center().x() - (view0.center().x() + 0.26 * view0.width())) < 1e-6);
        QVERIFY(view.canUndoZoom());
        view.undoZoom();
        QCOMPARE(view.getCurrentZoom(), view0);
        QVERIFY(view.canRedoZoom());

        // A scene opened again comes back to its last zoom.
        const QRectF last = scene.getLastZoom();
        VwvBasemapView again;
        QVERIFY(showAt(again, QSize(400, 400)));
        again.setScene(&scene, _datasets.get());
        QVERIFY(qAbs(again.getCurrentZoom().center().x() - last.center().x()) < 1e-6);
    }

    void decorationSwitches_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("preference");
        QTest::newRow("compass") << int(VwvBasemapView::COMPASS) << "Show/hide compass" << "compassVisible";
        QTest::newRow("scale bar") << int(VwvBasemapView::SCALE_BAR) << "Show/hide scale bar" << "scaleBarVisible";
        QTest::newRow("grid") << int(VwvBasemapView::GRID) << "Show/hide grid" << "gridVisible";
        QTest::newRow("axes") << int(VwvBasemapView::AXES) << "Show/hide axes" << "axesVisible";
    }

    void decorationSwitches()
    {
        QFETCH(int, kind);
        QFETCH(QString, text);
        QFETCH(QString, preference);
        VwvBasemapView view;
        VwvBasemapView other; // a second map follows the shared preference
        const auto shown = [kind](const VwvBasemapView& v) {
            switch (kind) {
            case VwvBasemapView::COMPASS: return v.getCompass()->isVisible();
            case VwvBasemapView::SCALE_BAR: return v.getScaleBar()->isVisible();
            case VwvBasemapView::GRID: return v.getPlot()->grid()->isVisible();
            default: return v.getPlot()->axisEnabled(QwtPlot::xBottom);
            }
        };
        QAction* action = view.getDecorationShowAction(VwvBasemapView::DecorationKind(kind));
        QVERIFY(action && action->isCheckable());
        QCOMPARE(action->text(), text);
        QVERIFY(!action->icon().isNull());
        QVERIFY(action->isChecked() && shown(view));

        action->trigger();
        QVERIFY(!action->isChecked());
        QVERIFY(!shown(view));
        QCOMPARE(VupPreferenceRegistry::getInstance()->value(VupMapPreferences::GROUP, preference).toString(),
                 QStringLiteral("false"));
        QVERIFY(!other.getDecorationShowAction(VwvBasemapView::DecorationKind(kind))->isChecked());
        QVERIFY(!shown(other));

        other.getDecorationShowAction(VwvBasemapView::DecorationKind(kind))->trigger();
        QVERIFY(action->isChecked() && shown(view));
    }

    void axisTitlesNameTheSystem_data()
    {
        QTest::addColumn<QString>("system");
        QTest::addColumn<QPointF>("centre");
        QTest::addColumn<QString>("title");
        QTest::newRow("local") << "local:m" << QPointF(50, 25) << "Local coordinate system&nbsp;[m]";
        QTest::newRow("local feet") << "local:ft" << QPointF(50, 25) << "Local coordinate system&nbsp;[ft]";
        QTest::newRow("UTM, with an offset") << "EPSG:32631" << QPointF(431500, 6541500)
                                             << "WGS 84 / UTM zone 31N&nbsp;[m]&nbsp;(+6";
    }

    void axisTitlesNameTheSystem()
    {
        QFETCH(QString, system);
        QFETCH(QPointF, centre);
        QFETCH(QString, title);
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 300)));
        view.setCoordinateSystem(VuuCoordSystem::fromString(system));
        view.getPlot()->zoomer()->resetZoom(QRectF(centre - QPointF(500, 500), QSizeF(1000, 1000)));
        QVERIFY2(view.getPlot()->axisTitle(QwtPlot::yLeft).text().startsWith(title),
                 qPrintable(view.getPlot()->axisTitle(QwtPlot::yLeft).text()));
        QCOMPARE(view.getPlot()->axisTitle(QwtPlot::yRight).text(), view.getPlot()->axisTitle(QwtPlot::yLeft).text());
        QCOMPARE(view.getCoordinatesUnit().getKey(), VuuCoordSystem::fromString(system).getUnit().getKey());
        // The top and right axes show what the bottom and left ones show.
        QCOMPARE(view.getPlot()->axisScaleDiv(QwtPlot::xTop), view.getPlot()->axisScaleDiv(QwtPlot::xBottom));
        QCOMPARE(view.getPlot()->axisScaleDiv(QwtPlot::yRight), view.getPlot()->axisScaleDiv(QwtPlot::yLeft));

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be drawn in coordinate system")));
        view.setCoordinateSystem(VuuCoordSystem(QStringLiteral("EPSG:0")));
        QCOMPARE(view.getCoordinatesUnit().getKey(), VuuCoordSystem::fromString(system).getUnit().getKey());
    }

    void zoomToTakesTheProjectsSystem()
    {
        // The project is in longitude and latitude, the map in UTM 31N.
        std::unique_ptr<VssProject> project =
            VssProject::create(_dir.filePath(QStringLiteral("geographic")), QStringLiteral("G"));
        project->setCoordSystemText(QStringLiteral("EPSG:4326"));
        VugScene scene(1);
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setCoordinateSystem(VuuCoordSystem(QStringLiteral("EPSG:32631")));
        view.setProject(project.get());
        view.setScene(&scene, _datasets.get());
        const QRectF degrees(2.9, 45.0, 0.2, 0.1);
        view.zoomTo(degrees);
        QPointF centre = degrees.center();
        QVERIFY(VuuCoordSystem::convert(VuuCoordSystem(QStringLiteral("EPSG:4326")),
                                        VuuCoordSystem(QStringLiteral("EPSG:32631")), centre));
        const QRectF shown = view.getCurrentZoom();
        // The converted rectangle bounds the curved one: its centre is near, not on, the
        // converted centre.
        QVERIFY2(qAbs(shown.center().x() - centre.x()) < 50.0 && qAbs(shown.center().y() - centre.y()) < 50.0,
                 qPrintable(QStringLiteral("%1 %2 %3 %4").arg(shown.center().x()).arg(shown.center().y()).arg(centre.x()).arg(centre.y())));
        QVERIFY(shown.width() > 15000 && shown.width() < 40000); // 0.2 degrees of longitude at 45 N

        for (const QRectF& bad : {QRectF(), QRectF(1, 1, 0, 5), QRectF(qQNaN(), 0, 1, 1), QRectF(0, 0, qInf(), 1)}) {
            view.zoomTo(bad);
            QCOMPARE(view.getCurrentZoom(), shown);
        }
    }

    void zoomToTheCurrentLayer()
    {
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));                      // (0, 0) to (100, 50)
        scene.appendItem(pointsItem(QStringLiteral("y"), QStringLiteral("b"))); // (500, 500)
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setScene(&scene, _datasets.get());
        QSignalSpy current(&view, &VwvBasemapView::currentLayerChanged);
        scene.setSelectedItem(QStringLiteral("x"));
        QCOMPARE(view.getCurrentLayerId(), QStringLiteral("x"));
        QCOMPARE(current.count(), 1);
        view.zoomToCurrentLayer();
        const QRectF shown = view.getCurrentZoom();
        QVERIFY(shown.contains(QRectF(0, 0, 100, 50)));
        QVERIFY(!shown.contains(QPointF(500, 500)));
        QVERIFY(shown.width() < 200);
        scene.setSelectedItem(QString());
        view.zoomToCurrentLayer(); // no current layer: nothing moves
        QCOMPARE(view.getCurrentZoom(), shown);
    }

    // Samples valued 0 to 99 on a 10 x 10 lattice over 0..90, and one more at a bad place or
    // with a bad value: view all shows the lattice, coloured apart.
    void viewAllKeepsToTheFiniteData_data()
    {
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<double>("value");
        const double MAX = std::numeric_limits<double>::max();
        QTest::newRow("x 1e30") << QPointF(1e30, 5) << 5.0;
        QTest::newRow("y -DBL_MAX") << QPointF(5, -MAX) << 5.0;
        QTest::newRow("x NaN, y infinite") << QPointF(qQNaN(), qInf()) << 5.0;
        QTest::newRow("value infinite, x 1e308") << QPointF(1e308, 5) << qInf();
        QTest::newRow("value 1e30") << QPointF(5, 5) << 1e30;
        QTest::newRow("value -DBL_MAX") << QPointF(5, 5) << -MAX;
    }
    void viewAllKeepsToTheFiniteData()
    {
        QFETCH(QPointF, at);
        QFETCH(double, value);
        VsdPointSet set;
        QVERIFY(set.addVariable(QStringLiteral("v")));
        for (int i = 0; i < 100; ++i)
            set.append(10.0 * (i % 10), 10.0 * (i / 10), 0.0, {double(i)});
        set.append(at.x(), at.y(), 0.0, {value});
        QVERIFY(_datasets->setPointSet(QStringLiteral("far"), set));
        VugScene scene(1);
        scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("S"), VugERendering::POINT_SYMBOLS,
                                      QStringLiteral("far"), QStringLiteral("v")));
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setScene(&scene, _datasets.get());
        view.zoomTo(QRectF(1000, 1000, 10, 10));
        view.viewAll();
        const QRectF shown = view.getCurrentZoom();
        QVERIFY2(shown.contains(QRectF(0, 0, 90, 90)) && shown.width() < 200 && shown.height() < 200,
                 qPrintable(QStringLiteral("%1 %2 %3 %4").arg(shown.x()).arg(shown.y()).arg(shown.width()).arg(shown.height())));
        const QImage image = view.getPixmapFromArea(shown, 200, 200, Qt::white).toImage();
        QSet<QRgb> colors; // near colours as one
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                colors.insert(image.pixel(x, y) & 0xf0f0f0);
        QVERIFY2(colors.size() >= 20, qPrintable(QString::number(colors.size())));
    }

    void gpsFollowing_data()
    {
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("centred");
        QTest::addColumn<bool>("valid");
        QTest::addColumn<bool>("moves");
        QTest::addColumn<bool>("markerShown");
        QTest::newRow("followed") << true << true << true << true << true;
        QTest::newRow("shown, not followed") << true << false << true << false << true;
        QTest::newRow("no fix") << true << true << false << false << true;
        QTest::newRow("receiver off") << false << true << true << false << false;
    }

    void gpsFollowing()
    {
        QFETCH(bool, enabled);
        QFETCH(bool, centred);
        QFETCH(bool, valid);
        QFETCH(bool, moves);
        QFETCH(bool, markerShown);
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setScene(&scene, _datasets.get());
        const QRectF before = view.getCurrentZoom();
        QVERIFY(!view.getGpsPosition()->isVisible()); // hidden until a receiver is on
        view.setGpsEnabled(enabled);
        view.setGpsVisibleOnMap(true);
        view.setGpsCenteredOnMap(centred);
        const QPointF far = before.center() + QPointF(before.width(), 0);
        view.updateGpsPosition(far, valid);
        QCOMPARE(view.getGpsPosition()->isVisible(), markerShown);
        QCOMPARE(view.getCurrentZoom() != before, moves);
        if (moves)
            QVERIFY(qAbs(view.getCurrentZoom().center().x() - far.x()) < 1e-6);
        // A fix near the centre does not shake the map.
        const QRectF now = view.getCurrentZoom();
        view.updateGpsPosition(now.center() + QPointF(now.width() * 0.1, 0), valid);
        QCOMPARE(view.getCurrentZoom(), now);
    }

    void picturesOfTheMap()
    {
        VsdPointSet one;
        one.append(10, 10);
        QVERIFY(_datasets->setPointSet(QStringLiteral("one"), one));
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("p"), QStringLiteral("one")));
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(601, 401)));
        view.setScene(&scene, _datasets.get());

        QCOMPARE(view.getPixmap(1.0).size(), QSize(601, 401));
        QCOMPARE(view.getPixmap(1.5).size(), QSize(902, 602)); // halves round up
        QVERIFY(view.getPixmap(0.0).isNull());
        QVERIFY(view.getPixmap(qQNaN()).isNull());
        QCOMPARE(view.getPixmap(800, 200).size(), QSize(800, 200));
        QVERIFY(view.getPixmap(0, 200).isNull());

        // The area (0, 0)-(20, 20) in 100 x 100 pixels: the sample at (10, 10) is in the middle.
        const QImage area = view.getPixmapFromArea(QRectF(0, 0, 20, 20), 100, 100, Qt::white).toImage();
        QCOMPARE(area.size(), QSize(100, 100));
        QVERIFY(area.pixelColor(50, 50) != QColor(Qt::white));
        QCOMPARE(area.pixelColor(10, 10), QColor(Qt::white));
        QVERIFY(view.getPixmapFromArea(QRectF(0, 0, qInf(), 1), 100, 100, Qt::white).isNull());

        // A layer over its own extent, widened to the picture's shape.
        VugScene scene2(2);
        scene2.appendItem(pointsItem(QStringLiteral("x"))); // (0, 0) and (100, 50)
        view.setScene(&scene2, _datasets.get());
        QRectF extent;
        const QPixmap layer = view.getPixmapFromLayer(200, 200, Qt::white, scene2.item(0), extent);
        QCOMPARE(layer.size(), QSize(200, 200));
        QVERIFY(extent.contains(QRectF(0, 0, 100, 50)));
        QVERIFY(qAbs(extent.width() - extent.height()) < 1e-9);
        QVERIFY(view.getPixmapFromLayer(200, 200, Qt::white, nullptr, extent).isNull());
    }

    void svgAndPrint()
    {
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(300, 200)));
        view.setScene(&scene, _datasets.get());

        const QString svg = _dir.filePath(QStringLiteral("map.svg"));
        QVERIFY(view.saveSvg(svg));
        QFile file(svg);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains("<svg"));
        file.close();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be saved")));
        QVERIFY(!view.saveSvg(_dir.filePath(QStringLiteral("no/such/folder/map.svg"))));

        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(_dir.filePath(QStringLiteral("map.pdf")));
        QVERIFY(view.print(printer));
        QFile pdf(printer.outputFileName());
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QVERIFY(pdf.read(5) == "%PDF-");
        QVERIFY(pdf.size() > 1000);
    }

    void dropsReachTheAcceptorAtTheirMapPoint()
    {
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        VwvBasemapView view;
        QVERIFY(showAt(view, QSize(400, 400)));
        view.setScene(&scene, _datasets.get());
        QVERIFY(!view.acceptDrops());
        TextAcceptor acceptor;
        view.setEnableDrops(true, &acceptor);
        QVERIFY(view.acceptDrops());

        QWidget* canvas = view.getPlot()->canvas();
        const QPoint onCanvas(canvas->width() / 3, canvas->height() / 4);
        const QPoint onView = canvas->mapTo(&view, onCanvas);
        QMimeData text;
        text.setText(QStringLiteral("a well"));
        QMimeData image;
        image.setImageData(QImage(2, 2, QImage::Format_RGB32));
        for (QMimeData* data : {&text, &image}) {
            QDragEnterEvent enter(onView, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&view, &enter);
            QCOMPARE(enter.isAccepted(), data == &text);
            QDropEvent drop(onView, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&view, &drop);
        }
        QCOMPARE(acceptor.drops.size(), 1);
        const QPointF expected = view.getPlot()->pixelToView(QPointF(onCanvas));
        QVERIFY(qAbs(acceptor.drops.first().x() - expected.x()) < 1e-9);
        QVERIFY(qAbs(acceptor.drops.first().y() - expected.y()) < 1e-9);

        view.setEnableDrops(false);
        QVERIFY(!view.acceptDrops());
    }

    void escapeGoesBackToPanning()
    {
        VwvBasemapView view;
        QSignalSpy modes(&view, &VwvBasemapView::modeChanged);
        view.setViewMode(Vw::MEASURE_LENGTH);
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(view.getCurrentMode(), Vw::PAN);
        QCOMPARE(modes.count(), 2);
        QCOMPARE(modes.last().at(0).toString(), QStringLiteral("Pan"));
    }
};

QTEST_MAIN(TestVwvBasemapView)
#include "tst_vwvbasemapview.moc"
