// The map's command groups as a scene window uses them: the view tools in a tool bar above
// the view, driven by clicks and shortcuts; modes exclusive across groups, with Escape back
// to panning; the zoom commands enabled by the zoom stack and the current layer; groups
// without a view; the tools' icons.

#include <VsdPointSet.h>
#include <VssProject.h>
#include <VuaResourceProvider.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugScene.h>
#include <VupPreferenceRegistry.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapToolActionsView.h>
#include <VwvBasemapToolManager.h>
#include <VwvBasemapView.h>

#include <QAction>
#include <QHBoxLayout>
#include <QToolBar>
#include "MapTestData.h"

#include <QtTest>
#include <functional>
#include <memory>

using Tools = VwvBasemapToolActionsView;
using namespace Vua::Resource;

namespace {

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
        scene.appendItem(VugSceneItem(QStringLiteral("x"), QStringLiteral("X"), VugERendering::POINTS, QStringLiteral("a")));
        scene.appendItem(VugSceneItem(QStringLiteral("z"), QStringLiteral("Z"), VugERendering::POINTS, QStringLiteral("b")));
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
Q_DECLARE_METATYPE(IconId)
Q_DECLARE_METATYPE(std::function<void(Map&)>)

class TestVwvBasemapToolActions : public QObject
{
    Q_OBJECT
    MapTestData _data;
    QTemporaryDir& _dir = _data.dir;
    std::unique_ptr<VugDatasetStore>& _datasets = _data.datasets;

    std::unique_ptr<Map> makeMap()
    {
        auto map = std::make_unique<Map>(_datasets.get());
        return map->ready() ? std::move(map) : nullptr;
    }

private Q_SLOTS:
    void modes_data()
    {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<int>("key");
        QTest::addColumn<Vw::ViewMode>("viewMode");
        QTest::addColumn<QCursor>("cursor");

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
        QFETCH(QString, mode);
        QFETCH(int, key);
        QFETCH(Vw::ViewMode, viewMode);
        QFETCH(QCursor, cursor);

        auto map = makeMap();
        QVERIFY(map);
        QCOMPARE(checkedModes(map->tools), QStringList{Tools::PAN}); // where the view starts
        const Vw::ViewMode other = viewMode == Vw::MEASURE_AREA ? Vw::ZOOM_BOX : Vw::MEASURE_AREA;
        map->view->setViewMode(other);

        map->click(map->tools.getMode(mode));
        QCOMPARE(map->view->getCurrentMode(), viewMode);
        QCOMPARE(checkedModes(map->tools), QStringList{mode});
        QVERIFY(sameCursor(map->canvas()->cursor(), cursor));
        map->click(map->tools.getMode(mode)); // a click on the checked mode keeps it
        QCOMPARE(checkedModes(map->tools), QStringList{mode});
        QCOMPARE(map->view->getCurrentMode(), viewMode);

        map->view->setViewMode(other);
        QTest::keyClick(map->view, Qt::Key(key));
        QCOMPARE(map->view->getCurrentMode(), viewMode);
        QCOMPARE(checkedModes(map->tools), QStringList{mode});
    }

    void shortcutsBelongToTheFocusedMap()
    {
        // Two maps in one window, as two scene windows in a main window.
        QWidget main;
        auto* layout = new QHBoxLayout(&main);
        Map first(_datasets.get(), &main);
        Map second(_datasets.get(), &main);
        layout->addWidget(&first.window);
        layout->addWidget(&second.window);
        main.show();
        main.activateWindow();
        first.view->setFocus();
        QVERIFY(first.ready());

        QTest::keyClick(first.view, Qt::Key_Z);
        QCOMPARE(first.view->getCurrentMode(), Vw::ZOOM_BOX);
        QCOMPARE(second.view->getCurrentMode(), Vw::PAN);
        second.view->setFocus();
        QTest::keyClick(second.view, Qt::Key_L);
        QCOMPARE(second.view->getCurrentMode(), Vw::MEASURE_LENGTH);
        QCOMPARE(first.view->getCurrentMode(), Vw::ZOOM_BOX);
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
        QCOMPARE(checkedModes(map->tools), QStringList());
        QCOMPARE(checkedModes(sketch), QStringList{"sketch"});
        QCOMPARE(map->view->getCurrentMode(), Vw::NO_MODE); // no map tool takes the mouse
        QCOMPARE(map->view->getToolManager()->getActiveTool(), &sketch);

        events.clear();
        QTest::keyClick(map->view, Qt::Key_Escape);
        QCOMPARE(events, (QStringList{"sketch stopped", "view started"}));
        QCOMPARE(checkedModes(sketch), QStringList());
        QCOMPARE(checkedModes(map->tools), QStringList{Tools::PAN});
        QCOMPARE(sketch.hooks, (QStringList{"on sketch", "off sketch"}));

        // Within the active group, nobody stops or starts.
        events.clear();
        map->click(map->tools.getMode(Tools::ZOOM_BOX));
        QTest::keyClick(map->view, Qt::Key_Escape);
        QCOMPARE(events, QStringList());
        QCOMPARE(checkedModes(map->tools), QStringList{Tools::PAN});
    }

    void clashingGroupsAreRefused()
    {
        auto map = makeMap();
        QVERIFY(map);
        VwvBasemapToolManager* manager = map->view->getToolManager();
        SketchTools modeClash(QStringLiteral("pan")), groupClash(QStringLiteral("sketch"), QStringLiteral("view"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("ids 'pan' are used by the group 'view'")));
        QVERIFY(!manager->addTool(&modeClash));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("its id or the ids '' are used")));
        QVERIFY(!manager->addTool(&groupClash));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("the group 'view' is already there")));
        QVERIFY(!manager->addTool(&map->tools));
        QCOMPARE(manager->getTools(), QList<VwvABasemapToolActions*>{&map->tools});
        QVERIFY(!modeClash.getView());
    }

    void undoRedoFollowZooms_data()
    {
        QTest::addColumn<std::function<void(Map&)>>("zoom");

        QTest::newRow("zoomer") << std::function<void(Map&)>(
            [](Map& map) { map.view->getPlot()->zoomer()->zoom(QRectF(10, 10, 20, 20)); });
        QTest::newRow("view all, Home") << std::function<void(Map&)>(
            [](Map& map) { QTest::keyClick(map.view, Qt::Key_Home); });
        QTest::newRow("view all, Ctrl+0") << std::function<void(Map&)>(
            [](Map& map) { QTest::keyClick(map.view, Qt::Key_0, Qt::ControlModifier); });
        QTest::newRow("pan with an arrow key") << std::function<void(Map&)>(
            [](Map& map) { QTest::keyClick(map.canvas(), Qt::Key_Left, Qt::ShiftModifier); });
        QTest::newRow("zoom-in click") << std::function<void(Map&)>([](Map& map) {
            map.click(map.tools.getMode(Tools::ZOOM_IN));
            QTest::mouseClick(map.canvas(), Qt::LeftButton, Qt::NoModifier, QPoint(50, 60));
        });
    }
    void undoRedoFollowZooms()
    {
        QFETCH(std::function<void(Map&)>, zoom);

        auto map = makeMap();
        QVERIFY(map);
        QAction* undo = map->tools.getAction(Tools::UNDO_ZOOM);
        QAction* redo = map->tools.getAction(Tools::REDO_ZOOM);
        map->view->getPlot()->zoomer()->resetZoom(QRectF(-300, -300, 1000, 1000));
        QVERIFY(!undo->isEnabled() && !redo->isEnabled());
        const QRectF before = map->view->getCurrentZoom();

        zoom(*map);
        const QRectF after = map->view->getCurrentZoom();
        QVERIFY(after != before);
        QVERIFY(undo->isEnabled() && !redo->isEnabled());

        map->click(undo);
        QCOMPARE(map->view->getCurrentZoom(), before);
        QVERIFY(!undo->isEnabled() && redo->isEnabled());
        QTest::keyClick(map->view, Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(map->view->getCurrentZoom(), after);
        QVERIFY(undo->isEnabled() && !redo->isEnabled());
        QTest::keyClick(map->view, Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(map->view->getCurrentZoom(), before);
    }

    void viewAllShowsTheData()
    {
        auto map = makeMap();
        QVERIFY(map);
        map->view->getPlot()->zoomer()->zoom(QRectF(2000, 2000, 10, 10));
        map->click(map->tools.getAction(Tools::VIEW_ALL));
        const QRectF all = map->view->getCurrentZoom();
        QVERIFY(all.contains(QRectF(0, 0, 500, 500)));
        QVERIFY(all.width() < 1000 && all.height() < 1000);
    }

    void zoomOnCurrentLayer_data()
    {
        QTest::addColumn<QString>("layer");
        QTest::addColumn<bool>("removeIt");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("no current layer") << QString() << false << false;
        QTest::newRow("a drawn layer") << "z" << false << true;
        QTest::newRow("an item the map cannot draw") << "s" << false << false;
        QTest::newRow("an id the scene does not have") << "w" << false << false;
        QTest::newRow("the current item removed") << "z" << true << false;
    }
    void zoomOnCurrentLayer()
    {
        QFETCH(QString, layer);
        QFETCH(bool, removeIt);
        QFETCH(bool, enabled);

        auto map = makeMap();
        QVERIFY(map);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot create render layer 'S'")));
        map->scene.appendItem(VugSceneItem(QStringLiteral("s"), QStringLiteral("S"), VugERendering::SURFACE));
        QAction* zoomOnLayer = map->tools.getAction(Tools::ZOOM_ON_LAYER);
        QVERIFY(!zoomOnLayer->isEnabled());
        map->view->setCurrentLayer(layer);
        if (removeIt)
            map->scene.removeItem(map->scene.findRank(layer));
        QCOMPARE(zoomOnLayer->isEnabled(), enabled);
        if (!enabled)
            return;
        QTest::keyClick(map->view, Qt::Key_Home, Qt::ShiftModifier);
        const QPointF centre = map->view->getCurrentZoom().center();
        QVERIFY(qAbs(centre.x() - 500) < 1e-6 && qAbs(centre.y() - 500) < 1e-6);
        map->view->setCurrentLayer(QString());
        QVERIFY(!zoomOnLayer->isEnabled());
    }

    void withoutAView_data()
    {
        QTest::addColumn<int>("how");

        QTest::newRow("never attached") << 0;
        QTest::newRow("view deleted") << 1;
        QTest::newRow("manager without a view") << 2;
    }
    void withoutAView()
    {
        QFETCH(int, how);

        Tools tools;
        QSignalSpy stopped(&tools, &VwvABasemapToolActions::stopped);
        if (how == 1) {
            auto* view = new VwvBasemapView;
            view->addTool(&tools);
            QVERIFY(tools.getMode(Tools::PAN)->isChecked()); // the view starts in pan
            delete view;
            QVERIFY(!tools.isActive());
        } else if (how == 2) {
            QTest::ignoreMessage(QtWarningMsg, "VwvBasemapToolManager: no view; the groups added stay without one");
            VwvBasemapToolManager manager(nullptr);
            QVERIFY(manager.addTool(&tools));
        }
        QVERIFY(!tools.getView());
        QCOMPARE(stopped.count(), 0); // whoever listens may be going with the view
        for (const QString& id : tools.getModeIds() + tools.getActionIds()) {
            QAction* action = tools.getAction(id) ? tools.getAction(id) : tools.getMode(id);
            QVERIFY2(!action->isEnabled() && !action->isChecked(), qPrintable(id));
            if (tools.getAction(id))
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("needs a map view")));
            action->trigger();
        }
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("no mode 'nothing'")));
        QVERIFY(!tools.activate(QStringLiteral("nothing")));
    }

    void iconsLoad_data()
    {
        QTest::addColumn<IconId>("icon");

        for (const IconId& icon :
             {iconZoomHand(), iconZoomBox(), iconZoomIn(), iconZoomOut(), iconZoomCenterView(), iconZoomViewAll(),
              iconZoomOnLayer(), iconZoomUndo(), iconZoomRedo(), iconViewerLineRuler(), iconViewerPolygonRuler(),
              iconViewerCompass(), iconViewerScaleBar(), iconViewerGrid(), iconViewerAxes()})
            QTest::newRow(qPrintable(icon.getName())) << icon;
    }
    void iconsLoad()
    {
        QFETCH(IconId, icon);

        VuaResourceProvider::setUseThemeIcons(false); // the library's own set, whatever the desktop has
        const QIcon loaded = VuaResourceProvider::getIcon(icon);
        VuaResourceProvider::setUseThemeIcons(true);
        // Drawn, at any size (sharp on high-DPI screens).
        const QImage image = loaded.pixmap(QSize(96, 96)).toImage();
        QCOMPARE(image.size(), QSize(96, 96));
        int drawn = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                drawn += qAlpha(image.pixel(x, y)) > 0;
        QVERIFY2(drawn > 96 * 96 / 20, qPrintable(QString::number(drawn)));
    }
};

QTEST_MAIN(TestVwvBasemapToolActions)
#include "tst_vwvbasemaptoolactions.moc"
