// The map view of a scene (its layers follow the scene as the layer tests show): zooming
// to all, to a layer and to a rectangle of the project's system (keeping to the finite data
// when a sample lies at 1e30 or NaN), centring with its quarter-view rule, the last zoom
// kept in the scene, the decoration switches, GPS following, axis titles, pictures of the
// map in pixmaps, SVG and PDF, drops.
// Its command groups as a scene window uses them: the view tools in a tool bar above the
// view, driven by clicks and shortcuts; modes exclusive across groups, with Escape back to
// panning; the zoom commands enabled by the zoom stack and the current layer; groups
// without a view; the tools' and switches' icons drawn.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "LowerTestSupport.h"
#include "MapTestKit.h"
#include <VugERendering.h>
#include <VugScene.h>
#include <Vwv2DOverView.h>
#include <VupMapPreferences.h>
#include <VwoCompass.h>
#include <VwoCopyright.h>
#include <VwoGpsPosition.h>
#include <VwoScaleBar.h>
#include <VuaResourceProvider.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapToolActionsView.h>
#include <VwvBasemapToolManager.h>
#include <VwvBasemapView.h>
#include <VwvIAcceptDrops.h>

#include <QAction>
#include <QHBoxLayout>
#include <QToolBar>
#include <functional>
#include <QMimeData>
#include <QPrinter>
#include <qwt_plot_grid.h>

using Tools = VwvBasemapToolActionsView;
using namespace Vua::Resource;
using MapTest::pointsItem;

namespace {
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

// A second group, with one mode of its own that hands the view no mode.
class SketchTools : public VwvABasemapToolActions
{
public:
    explicit SketchTools(const QString& modeId = QStringLiteral("sketch"), const QString& id = QStringLiteral("sketch"))
        : _id(id)
    {
        _addMode(modeId, IconId(), QStringLiteral("Sketch"), QString(), QKeySequence(Qt::Key_K));
    }
    QString getId() const override { return _id; }
    QStringList hooks;

protected:
    void _modeActivated(const QString& id) override { hooks << QStringLiteral("on ") + id; }
    void _modeDeactivated(const QString& id) override { hooks << QStringLiteral("off ") + id; }

private:
    QString _id;
};

// A scene window as it would be: the groups' actions in a tool bar above the map.
struct Map
{
    VugScene scene{1};
    QWidget window;
    QToolBar* bar = new QToolBar(&window);
    VwvBasemapView* view = new VwvBasemapView(&window);
    Tools tools;

    explicit Map(VugDatasetStore* datasets, QWidget* parent = nullptr)
    {
        window.setParent(parent);
        auto* layout = new QVBoxLayout(&window);
        layout->addWidget(bar);
        layout->addWidget(view);
        view->setAxesVisible(false); // axis labels of changing width would resize the canvas
        scene.appendItem(pointsItem(QStringLiteral("x")));
        scene.appendItem(pointsItem(QStringLiteral("z"), QStringLiteral("b")));
        window.resize(420, 460);
        window.show();
        window.activateWindow();
        view->addTool(&tools);
        addToBar(&tools);
        view->setScene(&scene, datasets);
        view->setFocus();
    }
    bool ready() { return QTest::qWaitForWindowActive(&window) && view->hasFocus(); }
    void addToBar(const VwvABasemapToolActions* group)
    {
        for (const QString& id : group->getModeIds())
            bar->addAction(group->getMode(id));
        for (const QString& id : group->getActionIds())
            bar->addAction(group->getAction(id));
    }
    void click(QAction* action) { QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton); }
    QWidget* canvas() const { return view->getPlot()->canvas(); }
};

QStringList checkedModes(const VwvABasemapToolActions& group)
{
    QStringList ids;
    for (const QString& id : group.getModeIds())
        if (group.getMode(id)->isChecked())
            ids << id;
    return ids;
}

bool sameCursor(const QCursor& a, const QCursor& b)
{
    return a.shape() == b.shape()
        && (a.shape() != Qt::BitmapCursor
            || (a.hotSpot() == b.hotSpot() && a.pixmap().toImage() == b.pixmap().toImage()));
}

} // namespace

Q_DECLARE_METATYPE(Vw::ViewMode)
using Shown = bool (*)(const VwvBasemapView&);
Q_DECLARE_METATYPE(Shown)
using Zoom = std::function<void(Map&)>;
Q_DECLARE_METATYPE(Zoom)

class TestVwvBasemapView : public QObject
{
    Q_OBJECT
    MapTestData _data;

    // A view of the scene, shown at that size; null when it is not shown.
    std::unique_ptr<VwvBasemapView> showView(VugScene* scene, const QSize& size = QSize(400, 400))
    {
        auto view = std::make_unique<VwvBasemapView>();
        view->resize(size);
        view->show();
        if (!QTest::qWaitForWindowExposed(view.get()))
            return nullptr;
        if (scene)
            view->setScene(scene, _data.datasets.get());
        return view;
    }

    std::unique_ptr<Map> makeMap()
    {
        auto map = std::make_unique<Map>(_data.datasets.get());
        return map->ready() ? std::move(map) : nullptr;
    }

private Q_SLOTS:
    // The icons checked below are the library's own, whatever the desktop has.
    void initTestCase() { VuaResourceProvider::setUseThemeIcons(false); }

    void zoomsAndTheLastZoom()
    {
        VugScene empty(2);
        auto view = showView(&empty);
        QVERIFY(view);
        const QRectF before = view->getCurrentZoom();
        view->viewAll();
        QCOMPARE(view->getCurrentZoom(), before); // nothing to show: nothing changes

        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("x")));
        view->setScene(&scene, _data.datasets.get());
        const QRectF all = view->getCurrentZoom();
        QVERIFY2(all.contains(QRectF(-10, -5, 120, 60)), MapTest::describe(all));
        QCOMPARE(scene.getLastZoom(), all);
        // Within a quarter of the view of its centre: left alone; beyond: centred.
        view->centerAt(all.center() + QPointF(0.24 * all.width(), 0));
        QCOMPARE(view->getCurrentZoom(), all);
        view->centerAt(all.center() + QPointF(0.26 * all.width(), 0));
        QVERIFY(qAbs(view->getCurrentZoom().center().x() - (all.center().x() + 0.26 * all.width())) < 1e-6);

        // A scene opened again comes back to its last zoom.
        const QRectF last = scene.getLastZoom();
        auto again = showView(&scene);
        QVERIFY(again && qAbs(again->getCurrentZoom().center().x() - last.center().x()) < 1e-6);
    }

    void decorationSwitches_data()
    {
        Row<int, QString, QString, Shown>::addColumns(); // kind, text, preference, shown
        QTest::newRow("compass") << int(VwvBasemapView::COMPASS) << "Show/hide compass" << "compassVisible"
                                 << Shown([](const VwvBasemapView& v) { return v.getCompass()->isVisible(); });
        QTest::newRow("scale bar") << int(VwvBasemapView::SCALE_BAR) << "Show/hide scale bar" << "scaleBarVisible"
                                   << Shown([](const VwvBasemapView& v) { return v.getScaleBar()->isVisible(); });
        QTest::newRow("grid") << int(VwvBasemapView::GRID) << "Show/hide grid" << "gridVisible"
                              << Shown([](const VwvBasemapView& v) { return v.getPlot()->grid()->isVisible(); });
        QTest::newRow("axes") << int(VwvBasemapView::AXES) << "Show/hide axes" << "axesVisible"
                              << Shown([](const VwvBasemapView& v) { return v.getPlot()->axisEnabled(QwtPlot::xBottom); });
    }
    void decorationSwitches()
    {
        auto [kind, text, preference, shown] = Row<int, QString, QString, Shown>::fetch();
        VwvBasemapView view;
        VwvBasemapView other; // a second map follows the shared preference
        QAction* action = view.getDecorationShowAction(VwvBasemapView::DecorationKind(kind));
        QVERIFY(action && action->isCheckable() && MapTest::opaque(action->icon().pixmap(QSize(96, 96)).toImage()) > 96 * 96 / 20);
        QCOMPARE(action->text(), text);
        QVERIFY(action->isChecked() && shown(view));
        action->trigger();
        QVERIFY(!action->isChecked() && !shown(view));
        QCOMPARE(VupPreferenceRegistry::getInstance()->value(VupMapPreferences::GROUP, preference).toString(), QStringLiteral("false"));
        QVERIFY(!other.getDecorationShowAction(VwvBasemapView::DecorationKind(kind))->isChecked() && !shown(other));
        other.getDecorationShowAction(VwvBasemapView::DecorationKind(kind))->trigger();
        QVERIFY(action->isChecked() && shown(view));
    }

    void axisTitlesNameTheSystem_data()
    {
        Row<QString, QPointF, QString>::addColumns(); // system, centre, title
        QTest::newRow("local") << "local:m" << QPointF(50, 25) << "Local coordinate system&nbsp;[m]";
        QTest::newRow("local feet") << "local:ft" << QPointF(50, 25) << "Local coordinate system&nbsp;[ft]";
        QTest::newRow("UTM, with an offset") << "EPSG:32631" << QPointF(431500, 6541500) << "WGS 84 / UTM zone 31N&nbsp;[m]&nbsp;(+6";
    }
    void axisTitlesNameTheSystem()
    {
        auto [system, centre, title] = Row<QString, QPointF, QString>::fetch();
        auto view = showView(nullptr, QSize(400, 300));
        QVERIFY(view);
        view->setCoordinateSystem(VuuCoordSystem::fromString(system));
        VwqBasemapPlot* plot = view->getPlot();
        plot->zoomer()->resetZoom(QRectF(centre - QPointF(500, 500), QSizeF(1000, 1000)));
        QVERIFY2(plot->axisTitle(QwtPlot::yLeft).text().startsWith(title), qPrintable(plot->axisTitle(QwtPlot::yLeft).text()));
        QCOMPARE(plot->axisTitle(QwtPlot::yRight).text(), plot->axisTitle(QwtPlot::yLeft).text());
        QCOMPARE(view->getCoordinatesUnit().getKey(), VuuCoordSystem::fromString(system).getUnit().getKey());
        // The top and right axes show what the bottom and left ones show.
        QCOMPARE(plot->axisScaleDiv(QwtPlot::xTop), plot->axisScaleDiv(QwtPlot::xBottom));
        QCOMPARE(plot->axisScaleDiv(QwtPlot::yRight), plot->axisScaleDiv(QwtPlot::yLeft));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be drawn in coordinate system")));
        view->setCoordinateSystem(VuuCoordSystem(QStringLiteral("EPSG:0")));
        QCOMPARE(view->getCoordinatesUnit().getKey(), VuuCoordSystem::fromString(system).getUnit().getKey());
    }

    void zoomToTakesTheProjectsSystem()
    {
        // The project is in longitude and latitude, the map in UTM 31N.
        std::unique_ptr<VssProject> project = VssProject::create(_data.dir.filePath(QStringLiteral("geographic")), QStringLiteral("G"));
        project->setCoordSystemText(QStringLiteral("EPSG:4326"));
        VugScene scene(1);
        auto view = showView(nullptr);
        QVERIFY(view);
        view->setCoordinateSystem(VuuCoordSystem(QStringLiteral("EPSG:32631")));
        view->setProject(project.get());
        view->setScene(&scene, _data.datasets.get());
        const QRectF degrees(2.9, 45.0, 0.2, 0.1);
        view->zoomTo(degrees);
        QPointF centre = degrees.center();
        QVERIFY(VuuCoordSystem::convert(VuuCoordSystem(QStringLiteral("EPSG:4326")), VuuCoordSystem(QStringLiteral("EPSG:32631")), centre));
        const QRectF shown = view->getCurrentZoom();
        // The converted rectangle bounds the curved one: its centre is near, not on, the
        // converted centre.
        QVERIFY2(MapTest::near(shown.center(), centre, 50.0), MapTest::describe(shown));
        QVERIFY(shown.width() > 15000 && shown.width() < 40000); // 0.2 degrees of longitude at 45 N
        for (const QRectF& bad : {QRectF(), QRectF(1, 1, 0, 5), QRectF(qQNaN(), 0, 1, 1), QRectF(0, 0, qInf(), 1)}) {
            view->zoomTo(bad);
            QCOMPARE(view->getCurrentZoom(), shown);
        }
    }

    // Samples valued 0 to 99 on a 10 x 10 lattice over 0..90, and one more at a bad place or
    // with a bad value: view all shows the lattice, coloured apart.
    void viewAllKeepsToTheFiniteData_data()
    {
        Row<QPointF, double>::addColumns(); // at, value
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
        auto [at, value] = Row<QPointF, double>::fetch();
        VsdPointSet set;
        QVERIFY(set.addVariable(QStringLiteral("v")));
        for (int i = 0; i < 100; ++i)
            set.append(10.0 * (i % 10), 10.0 * (i / 10), 0.0, {double(i)});
        set.append(at.x(), at.y(), 0.0, {value});
        QVERIFY(_data.datasets->setPointSet(QStringLiteral("far"), set));
        VugScene scene(1);
        scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("S"), VugERendering::POINT_SYMBOLS, QStringLiteral("far"),
                                      QStringLiteral("v")));
        auto view = showView(&scene);
        QVERIFY(view);
        view->zoomTo(QRectF(1000, 1000, 10, 10));
        view->viewAll();
        const QRectF shown = view->getCurrentZoom();
        QVERIFY2(shown.contains(QRectF(0, 0, 90, 90)) && shown.width() < 200 && shown.height() < 200, MapTest::describe(shown));
        QImage image = view->getPixmapFromArea(shown, 200, 200, Qt::white).toImage().convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) // near colours as one
            for (int x = 0; x < image.width(); ++x)
                image.setPixel(x, y, image.pixel(x, y) & 0xfff0f0f0);
        QVERIFY2(ImageChecks::distinctColors(image) >= 20, qPrintable(QString::number(ImageChecks::distinctColors(image))));
    }

    void gpsFollowing_data()
    {
        Row<bool, bool, bool, bool>::addColumns(); // enabled, centred, valid, moves
        QTest::newRow("followed") << true << true << true << true;
        QTest::newRow("shown, not followed") << true << false << true << false;
        QTest::newRow("no fix") << true << true << false << false;
        QTest::newRow("receiver off") << false << true << true << false;
    }
    void gpsFollowing()
    {
        auto [enabled, centred, valid, moves] = Row<bool, bool, bool, bool>::fetch();
        auto map = makeMap();
        QVERIFY(map);
        VwvBasemapView* view = map->view;
        const QRectF before = view->getCurrentZoom();
        QVERIFY(!view->getGpsPosition()->isVisible()); // hidden until a receiver is on
        view->setGpsEnabled(enabled);
        view->setGpsVisibleOnMap(true);
        view->setGpsCenteredOnMap(centred);
        const QPointF far = before.center() + QPointF(before.width(), 0);
        view->updateGpsPosition(far, valid);
        QCOMPARE(view->getGpsPosition()->isVisible(), enabled);
        QCOMPARE(view->getCurrentZoom() != before, moves);
        QVERIFY(!moves || qAbs(view->getCurrentZoom().center().x() - far.x()) < 1e-6);
        // A fix near the centre does not shake the map.
        const QRectF now = view->getCurrentZoom();
        view->updateGpsPosition(now.center() + QPointF(now.width() * 0.1, 0), valid);
        QCOMPARE(view->getCurrentZoom(), now);
    }

    void picturesOfTheMap()
    {
        QVERIFY(_data.addPoints(QStringLiteral("one"), {{10, 10}}));
        VugScene scene(1);
        scene.appendItem(pointsItem(QStringLiteral("p"), QStringLiteral("one")));
        auto view = showView(&scene, QSize(601, 401));
        QVERIFY(view);
        QCOMPARE(view->getPixmap(1.0).size(), QSize(601, 401));
        QCOMPARE(view->getPixmap(1.5).size(), QSize(902, 602)); // halves round up
        QVERIFY(view->getPixmap(0.0).isNull() && view->getPixmap(qQNaN()).isNull());
        QCOMPARE(view->getPixmap(800, 200).size(), QSize(800, 200));
        QVERIFY(view->getPixmap(0, 200).isNull());
        // The area (0, 0)-(20, 20) in 100 x 100 pixels: the sample at (10, 10) is in the middle.
        const QImage area = view->getPixmapFromArea(QRectF(0, 0, 20, 20), 100, 100, Qt::white).toImage();
        QCOMPARE(area.size(), QSize(100, 100));
        QVERIFY(area.pixelColor(50, 50) != QColor(Qt::white));
        QCOMPARE(area.pixelColor(10, 10), QColor(Qt::white));
        QVERIFY(view->getPixmapFromArea(QRectF(0, 0, qInf(), 1), 100, 100, Qt::white).isNull());
        // A layer over its own extent, widened to the picture's shape.
        VugScene scene2(2);
        scene2.appendItem(pointsItem(QStringLiteral("x"))); // (0, 0) and (100, 50)
        view->setScene(&scene2, _data.datasets.get());
        QRectF extent;
        QCOMPARE(view->getPixmapFromLayer(200, 200, Qt::white, scene2.item(0), extent).size(), QSize(200, 200));
        QVERIFY(extent.contains(QRectF(0, 0, 100, 50)) && qAbs(extent.width() - extent.height()) < 1e-9);
        QVERIFY(view->getPixmapFromLayer(200, 200, Qt::white, nullptr, extent).isNull());

        // In SVG and PDF.
        view->getCopyright()->setText(QStringLiteral("\u00A9 Velmora contributors"));
        const QString svg = _data.dir.filePath(QStringLiteral("map.svg"));
        QVERIFY(view->saveSvg(svg));
        QFile file(svg);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray written = file.readAll();
        QVERIFY(written.contains("<svg") && written.contains("Velmora contributors")); // the attribution stays text
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be saved")));
        QVERIFY(!view->saveSvg(_data.dir.filePath(QStringLiteral("no/such/folder/map.svg"))));
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(_data.dir.filePath(QStringLiteral("map.pdf")));
        QVERIFY(view->print(printer));
        QFile pdf(printer.outputFileName());
        QVERIFY(pdf.open(QIODevice::ReadOnly) && pdf.read(5) == "%PDF-" && pdf.size() > 1000);
    }

    void dropsReachTheAcceptorAtTheirMapPoint()
    {
        auto map = makeMap();
        VwvBasemapView* view = map ? map->view : nullptr;
        QVERIFY(view && !view->acceptDrops());
        TextAcceptor acceptor;
        view->setEnableDrops(true, &acceptor);
        QVERIFY(view->acceptDrops());
        QWidget* canvas = view->getPlot()->canvas();
        const QPoint onCanvas(canvas->width() / 3, canvas->height() / 4);
        const QPoint onView = canvas->mapTo(view, onCanvas);
        // What the acceptor refuses is refused on entering, as the demo's map shows with its files.
        QMimeData text;
        text.setText(QStringLiteral("a well"));
        QDragEnterEvent enter(onView, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &enter);
        QDropEvent drop(onView, Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view, &drop);
        QCOMPARE(acceptor.drops.size(), 1);
        QVERIFY(MapTest::near(acceptor.drops.first(), view->getPlot()->pixelToView(QPointF(onCanvas)), 1e-9));
        view->setEnableDrops(false);
        QVERIFY(!view->acceptDrops());
    }

    void modes_data()
    {
        Row<QString, int, Vw::ViewMode, QCursor>::addColumns(); // mode, key, viewMode, cursor

        const auto cursor = [](const CursorId& id) { return VuaResourceProvider::getCursor(id); };
        QTest::newRow("pan, P") << Tools::PAN << int(Qt::Key_P) << Vw::PAN << QCursor(Qt::OpenHandCursor);
        QTest::newRow("zoom box, Z") << Tools::ZOOM_BOX << int(Qt::Key_Z) << Vw::ZOOM_BOX << cursor(cursorZoomBox());
        QTest::newRow("zoom in, +") << Tools::ZOOM_IN << int(Qt::Key_Plus) << Vw::ZOOM_IN << cursor(cursorZoomIn());
        QTest::newRow("zoom out, -") << Tools::ZOOM_OUT << int(Qt::Key_Minus) << Vw::ZOOM_OUT << cursor(cursorZoomOut());
        QTest::newRow("centre view, C") << Tools::CENTER_VIEW << int(Qt::Key_C) << Vw::SELECT
                                        << cursor(cursorSelectVisor());
        QTest::newRow("measure length, L") << Tools::MEASURE_LENGTH << int(Qt::Key_L) << Vw::MEASURE_LENGTH
                                           << QCursor(Qt::ArrowCursor);
        QTest::newRow("measure area, A") << Tools::MEASURE_AREA << int(Qt::Key_A) << Vw::MEASURE_AREA
                                         << QCursor(Qt::ArrowCursor);
    }
    void modes()
    {
        auto [mode, key, viewMode, cursor] = Row<QString, int, Vw::ViewMode, QCursor>::fetch();
        // Two maps in one window, as two scene windows in a main window: keys reach the focused one.
        QWidget main;
        auto* layout = new QHBoxLayout(&main);
        Map map(_data.datasets.get(), &main), beside(_data.datasets.get(), &main);
        layout->addWidget(&map.window);
        layout->addWidget(&beside.window);
        main.show();
        main.activateWindow();
        map.view->setFocus();
        QVERIFY(map.ready());
        QCOMPARE(checkedModes(map.tools), QStringList{Tools::PAN}); // where the view starts
        const Vw::ViewMode other = viewMode == Vw::MEASURE_AREA ? Vw::ZOOM_BOX : Vw::MEASURE_AREA;
        map.view->setViewMode(other);

        map.click(map.tools.getMode(mode));
        QCOMPARE(map.view->getCurrentMode(), viewMode);
        QCOMPARE(checkedModes(map.tools), QStringList{mode});
        QVERIFY(sameCursor(map.canvas()->cursor(), cursor));
        map.click(map.tools.getMode(mode)); // a click on the checked mode keeps it
        QCOMPARE(checkedModes(map.tools), QStringList{mode});
        QCOMPARE(map.view->getCurrentMode(), viewMode);

        map.view->setViewMode(other);
        beside.view->setViewMode(other);
        QTest::keyClick(map.view, Qt::Key(key));
        QCOMPARE(map.view->getCurrentMode(), viewMode);
        QCOMPARE(checkedModes(map.tools), QStringList{mode});
        QCOMPARE(beside.view->getCurrentMode(), other);
    }

    void modesAreExclusiveAcrossGroupsAndEscapePans()
    {
        auto map = makeMap();
        QVERIFY(map);
        SketchTools sketch;
        QVERIFY(map->view->getToolManager()->addTool(&sketch));
        map->addToBar(&sketch);
        QCOMPARE(map->view->getToolMode(QStringLiteral("sketch")), sketch.getMode(QStringLiteral("sketch")));
        QStringList events;
        for (VwvABasemapToolActions* group : {static_cast<VwvABasemapToolActions*>(&map->tools),
                                              static_cast<VwvABasemapToolActions*>(&sketch)}) {
            connect(group, &VwvABasemapToolActions::started, [&events, group] { events << group->getId() + " started"; });
            connect(group, &VwvABasemapToolActions::stopped, [&events, group] { events << group->getId() + " stopped"; });
        }

        map->click(sketch.getMode(QStringLiteral("sketch")));
        QCOMPARE(events, (QStringList{"view stopped", "sketch started"}));
        QCOMPARE(checkedModes(map->tools) + checkedModes(sketch), QStringList{"sketch"});
        QCOMPARE(map->view->getCurrentMode(), Vw::NO_MODE); // no map tool takes the mouse
        QCOMPARE(map->view->getToolManager()->getActiveTool(), &sketch);

        events.clear();
        QSignalSpy modes(map->view, &VwvBasemapView::modeChanged);
        QTest::keyClick(map->view, Qt::Key_Escape);
        QCOMPARE(events, (QStringList{"sketch stopped", "view started"}));
        QCOMPARE(modes.count(), 1);
        QCOMPARE(modes.last().at(0).toString(), QStringLiteral("Pan"));
        QCOMPARE(checkedModes(map->tools) + checkedModes(sketch), QStringList{Tools::PAN});
        QCOMPARE(sketch.hooks, (QStringList{"on sketch", "off sketch"}));

        // Within the active group, nobody stops or starts.
        events.clear();
        map->click(map->tools.getMode(Tools::ZOOM_BOX));
        QTest::keyClick(map->view, Qt::Key_Escape);
        QCOMPARE(events, QStringList());
        QCOMPARE(checkedModes(map->tools), QStringList{Tools::PAN});

        // A group whose id or mode ids are taken is refused.
        VwvBasemapToolManager* manager = map->view->getToolManager();
        SketchTools modeClash(QStringLiteral("pan")), groupClash(QStringLiteral("sketch"), QStringLiteral("view"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ids 'pan' are used by the group 'view'")));
        QVERIFY(!manager->addTool(&modeClash));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("its id or the ids '' are used")));
        QVERIFY(!manager->addTool(&groupClash));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("the group 'view' is already there")));
        QVERIFY(!manager->addTool(&map->tools));
        QCOMPARE(manager->getTools(), (QList<VwvABasemapToolActions*>{&map->tools, &sketch}));
        QVERIFY(!modeClash.getView());
    }

    void undoRedoFollowZooms_data()
    {
        QTest::addColumn<Zoom>("zoom");
        QTest::newRow("view all button") << Zoom([](Map& map) { map.click(map.tools.getAction(Tools::VIEW_ALL)); });
        QTest::newRow("view all, Home") << Zoom([](Map& map) { QTest::keyClick(map.view, Qt::Key_Home); });
        QTest::newRow("view all, Ctrl+0") << Zoom([](Map& map) { QTest::keyClick(map.view, Qt::Key_0, Qt::ControlModifier); });
        QTest::newRow("pan with an arrow key") << Zoom([](Map& map) { QTest::keyClick(map.canvas(), Qt::Key_Left, Qt::ShiftModifier); });
        QTest::newRow("wheel") << Zoom([](Map& map) { MapTest::wheel(map.canvas(), QPoint(100, 100), 120); });
        QTest::newRow("zoom-in click") << Zoom([](Map& map) {
            map.click(map.tools.getMode(Tools::ZOOM_IN));
            QTest::mouseClick(map.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
        });
    }
    void undoRedoFollowZooms()
    {
        QFETCH(Zoom, zoom);
        auto map = makeMap();
        QVERIFY(map);
        QAction* undo = map->tools.getAction(Tools::UNDO_ZOOM);
        QAction* redo = map->tools.getAction(Tools::REDO_ZOOM);
        map->view->getPlot()->zoomer()->resetZoom(QRectF(-300, -300, 1000, 1000));
        QVERIFY(!undo->isEnabled() && !redo->isEnabled());
        const QRectF before = map->view->getCurrentZoom();
        QSignalSpy viewChanged(map->view, &VwvBasemapView::currentViewChanged);
        zoom(*map);
        const QRectF after = map->view->getCurrentZoom();
        QVERIFY(after != before && undo->isEnabled() && !redo->isEnabled());
        // Announced, and kept as the scene's last zoom.
        QVERIFY(!viewChanged.isEmpty());
        QCOMPARE(viewChanged.last().at(0).toRectF(), after);
        QCOMPARE(map->scene.getLastZoom(), after);
        map->click(undo);
        QCOMPARE(map->view->getCurrentZoom(), before);
        QVERIFY(!undo->isEnabled() && redo->isEnabled());
        QTest::keyClick(map->view, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(map->view->getCurrentZoom(), after);
        QVERIFY(undo->isEnabled() && !redo->isEnabled());
        QTest::keyClick(map->view, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(map->view->getCurrentZoom(), before);
    }

    void zoomOnCurrentLayer_data()
    {
        Row<QString, bool, bool>::addColumns(); // layer, removeIt, enabled

        QTest::newRow("no current layer") << QString() << false << false;
        QTest::newRow("a drawn layer") << "z" << false << true;
        QTest::newRow("an item the map cannot draw") << "s" << false << false;
        QTest::newRow("an id the scene does not have") << "w" << false << false;
        QTest::newRow("the current item removed") << "z" << true << false;
    }
    void zoomOnCurrentLayer()
    {
        auto [layer, removeIt, enabled] = Row<QString, bool, bool>::fetch();

        auto map = makeMap();
        QVERIFY(map);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot create render layer 'S'")));
        map->scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("S"), VugERendering::SURFACE));
        QAction* zoomOnLayer = map->tools.getAction(Tools::ZOOM_ON_LAYER);
        QVERIFY(!zoomOnLayer->isEnabled());
        // The item selected in the scene becomes the current layer.
        QSignalSpy current(map->view, &VwvBasemapView::currentLayerChanged);
        map->scene.setSelectedItem(QStringLiteral("x"));
        QVERIFY(map->view->getCurrentLayerId() == QStringLiteral("x") && current.count() == 1);
        map->view->setCurrentLayer(layer);
        if (removeIt)
            map->scene.removeItem(map->scene.findRank(layer));
        QCOMPARE(zoomOnLayer->isEnabled(), enabled);
        const QRectF before = map->view->getCurrentZoom();
        if (enabled)
            QTest::keyClick(map->view, Qt::Key_Home, Qt::ShiftModifier);
        else
            map->view->zoomToCurrentLayer();
        const QRectF shown = map->view->getCurrentZoom();
        // Only the layer's sample at (500, 500) in the middle, or nothing moved.
        QVERIFY2(enabled ? MapTest::near(shown.center(), QPointF(500, 500), 1e-6) && !shown.contains(QPointF(0, 0)) : shown == before,
                 MapTest::describe(shown));
    }

    // Groups never attached, left by their view, or in a manager without one: all disabled.
    void withoutAView()
    {
        Tools never, orphan, managed;
        QSignalSpy stopped(&orphan, &VwvABasemapToolActions::stopped);
        {
            VwvBasemapView view;
            view.addTool(&orphan);
            QVERIFY(orphan.getMode(Tools::PAN)->isChecked()); // the view starts in pan
        }
        QVERIFY(!orphan.isActive());
        QCOMPARE(stopped.count(), 0); // whoever listens may be going with the view
        QTest::ignoreMessage(QtWarningMsg, "VwvBasemapToolManager: no view; the groups added stay without one");
        VwvBasemapToolManager manager(nullptr);
        QVERIFY(manager.addTool(&managed));
        for (Tools* tools : {&never, &orphan, &managed}) {
            QVERIFY(!tools->getView());
            for (const QString& id : tools->getModeIds() + tools->getActionIds()) {
                QAction* action = tools->getAction(id) ? tools->getAction(id) : tools->getMode(id);
                QVERIFY2(!action->isEnabled() && !action->isChecked(), qPrintable(id));
                // Its icon is drawn, at any size (sharp on high-DPI screens).
                QVERIFY2(MapTest::opaque(action->icon().pixmap(QSize(96, 96)).toImage()) > 96 * 96 / 20, qPrintable(id));
                if (tools->getAction(id))
                    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("needs a map view")));
                action->trigger();
            }
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("no mode 'nothing'")));
            QVERIFY(!tools->activate(QStringLiteral("nothing")));
        }
    }
};

QTEST_MAIN(TestVwvBasemapView)
#include "tst_vwvbasemapview.moc"
