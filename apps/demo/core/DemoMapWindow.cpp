#include "DemoMapWindow.h"

#include "DemoMapData.h"
#include "DemoSampleProject.h"

#include <KbbDebug.h>
#include <VsoSceneIdentifier.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VuaResourceProvider.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <Vwv2DOverView.h>
#include <VwvBasemapToolActionsView.h>
#include <VwvBasemapView.h>
#include <VwoCopyright.h>

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>

DemoMapWindow::DemoMapWindow(VssProject* project, QWidget* parent)
    : VwwASceneWindow(VstTransactableInfo{project, tr("2D display")}, VugESceneType::MAP, tr("2D display"),
                      Vua::Resource::HelpId(QStringLiteral("display")), Vua::Resource::iconDisplay2D(), true, parent)
{
    _view = new VwvBasemapView;
    _view->setObjectName(QStringLiteral("MAP_VIEW"));
    _overview = new Vwv2DOverView;
    _items = new QListWidget;
    _items->setObjectName(QStringLiteral("SCENE_ITEMS"));
    _items->setToolTip(tr("Tick an item to show it; select it to make it the current layer."));

    auto* sidePanel = new QWidget;
    auto* side = new QVBoxLayout(sidePanel);
    side->setContentsMargins(0, 0, 0, 0);
    side->addWidget(_overview);
    side->addWidget(new QLabel(tr("Items, top first:")));
    side->addWidget(_items, 1);
    // Wide enough for the items' names, in the font's own measure.
    sidePanel->setFixedWidth(fontMetrics().horizontalAdvance(QLatin1Char('x')) * 28);
    auto* layout = new QHBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_view, 1);
    layout->addWidget(sidePanel);
    setMainView(layout);

    _tools = new VwvBasemapToolActionsView(this);
    _view->addTool(_tools);
    for (const QString& id : _tools->getModeIds())
        addToolbarAction(VIEW_TOOLBAR, _tools->getMode(id));
    addToolbarSeparator(VIEW_TOOLBAR);
    for (const QString& id : _tools->getActionIds())
        if (!_tools->getMode(id))
            addToolbarAction(VIEW_TOOLBAR, _tools->getAction(id));
    for (auto kind : {VwvBasemapView::COMPASS, VwvBasemapView::SCALE_BAR, VwvBasemapView::GRID, VwvBasemapView::AXES})
        addToolbarAction(TOOLS_TOOLBAR, _view->getDecorationShowAction(kind));
    addToolbarSeparator(TOOLS_TOOLBAR);
    auto* exportAction = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconExport()), tr("Export as image..."), this);
    exportAction->setToolTip(tr("Save the map as a PNG or SVG file"));
    connect(exportAction, &QAction::triggered, this, [this] { exportImage(); });
    addToolbarAction(TOOLS_TOOLBAR, exportAction);
    _generate = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconFileNew()),
                            tr("Generated points (%L1)").arg(LARGE_SET_SIZE), this);
    _generate->setObjectName(QStringLiteral("GENERATE_POINTS"));
    _generate->setCheckable(true);
    _generate->setToolTip(tr("Add a generated set of %L1 points over the field to try the map with large data, "
                             "or take it out again")
                              .arg(LARGE_SET_SIZE));
    connect(_generate, &QAction::toggled, this, [this](bool on) {
        if (!_scene)
            return;
        if (on)
            addLargePointSet();
        else
            DemoMapData::getInstance()->removeLargePointSet(_scene->getId());
    });
    addToolbarAction(TOOLS_TOOLBAR, _generate);

    _view->setEnableDrops(true, this);
    connect(_view, &VwvBasemapView::trackerPositionChanged, this, &DemoMapWindow::_showTracker);
    connect(_view, &VwvBasemapView::modeChanged, this, [this](const QString& mode) { showStatusMessage(mode); });
    connect(_view, &VwvBasemapView::currentViewChanged, _overview, &Vwv2DOverView::setZoomArea);
    connect(_overview, &Vwv2DOverView::zoomAreaChanged, this,
            [this](const QRectF& rect) { _view->centerAt(rect.center(), true); });
    connect(_items, &QListWidget::itemChanged, this, &DemoMapWindow::_itemChanged);
    connect(_items, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (_scene && item && !_filling)
            _scene->setSelectedItem(item->data(Qt::UserRole).toString());
    });
    connect(DemoMapData::getInstance(), &DemoMapData::aboutToRelease, this, &DemoMapWindow::_release);
    _sceneChanged();
}

DemoMapWindow::~DemoMapWindow() = default;

QString DemoMapWindow::getClassID() const
{
    return QStringLiteral("Display2D");
}

VwvBasemapView* DemoMapWindow::getView() const { return _view; }
Vwv2DOverView* DemoMapWindow::getOverview() const { return _overview; }

QRectF DemoMapWindow::getZoom() const
{
    return _scene ? _view->getCurrentZoom() : QRectF();
}

void DemoMapWindow::_release()
{
    // The data go with the project: nothing may draw from them afterwards.
    if (_scene)
        disconnect(_scene, nullptr, this, nullptr);
    _scene = nullptr;
    _view->setScene(nullptr, nullptr);
    _overview->setScene(nullptr, nullptr);
    _items->clear();
    const QSignalBlocker quiet(_generate);
    _generate->setChecked(false);
}

void DemoMapWindow::_sceneChanged()
{
    _release();
    const VsoSceneIdentifier& id = getScene();
    DemoMapData* data = DemoMapData::getInstance();
    _scene = id.isNull() ? nullptr : data->getScene(id.getId());
    if (!_scene) {
        showStatusMessage(tr("No scene is shown. Open one from the Scenes menu."));
        return;
    }
    const VssProject* project = VssProjectCollection::getInstance()->getCurrentProject();
    QString systemText = _scene->getCoordSystemCode();
    if (systemText.isEmpty() && project)
        systemText = project->getCoordSystemText();
    const VuuCoordSystem system = systemText.isEmpty() ? VuuCoordSystem::local() : VuuCoordSystem::fromString(systemText);
    if (system.isValid()) {
        _view->setCoordinateSystem(system);
        _overview->setCoordinateSystem(system);
    } else {
        KbbDebug::printWarning(tr("The map's coordinate system '%1' is unknown (%2); the map is drawn in local "
                                  "coordinates.").arg(systemText, system.getError()));
    }
    _view->setProject(project);
    _view->getCopyright()->setText(tr("Sample data, generated for the demo"));
    _overview->setScene(_scene, data->getDatasets());
    _view->setScene(_scene, data->getDatasets());
    _overview->setZoomArea(_view->getCurrentZoom());
    connect(_scene, &VugScene::itemInserted, this, &DemoMapWindow::_fillItemList);
    connect(_scene, &VugScene::itemsMoved, this, &DemoMapWindow::_fillItemList);
    connect(_scene, &VugScene::itemsRemoved, this, &DemoMapWindow::_fillItemList);
    connect(_scene, &VugScene::itemRenamed, this, &DemoMapWindow::_fillItemList);
    connect(_scene, &VugScene::itemShown, this, &DemoMapWindow::_fillItemList);
    connect(_scene, &VugScene::reset, this, &DemoMapWindow::_fillItemList);
    _fillItemList();
    showStatusMessage(QString());
    setContentName(id.getName());
}

void DemoMapWindow::_fillItemList()
{
    _filling = true;
    _items->clear();
    for (int rank = _scene ? _scene->count() - 1 : -1; rank >= 0; --rank) {
        const VugSceneItem* item = _scene->item(rank);
        auto* row = new QListWidgetItem(item->getName(), _items);
        row->setData(Qt::UserRole, item->getId());
        row->setFlags(row->flags() | Qt::ItemIsUserCheckable);
        row->setCheckState(item->isActive() ? Qt::Checked : Qt::Unchecked);
        if (item->getId() == _scene->getSelectedItemId())
            _items->setCurrentItem(row);
    }
    _filling = false;
    {
        const QSignalBlocker quiet(_generate);
        _generate->setChecked(_scene && DemoMapData::getInstance()->hasLargePointSet(_scene->getId()));
    }
    const int count = _scene ? _scene->count() : 0;
    showStatusIndicator(count == 1 ? tr("1 item") : tr("%1 items").arg(count), 1);
}

void DemoMapWindow::_itemChanged(QListWidgetItem* row)
{
    if (_filling || !_scene)
        return;
    const int rank = _scene->findRank(row->data(Qt::UserRole).toString());
    if (rank >= 0)
        _scene->setItemActive(rank, row->checkState() == Qt::Checked);
}

QStringList DemoMapWindow::shownItems() const
{
    QStringList names;
    for (int i = 0; i < _items->count(); ++i)
        names.append(_items->item(i)->text());
    return names;
}

void DemoMapWindow::_showTracker(const QPointF& position)
{
    const QString unit = _view->getCoordinatesUnit().getSymbol();
    const QLocale locale;
    showStatusIndicator(tr("X %1 %3   Y %2 %3")
                            .arg(locale.toString(position.x(), 'f', 1), locale.toString(position.y(), 'f', 1), unit)
                            .trimmed(),
                        0);
}

bool DemoMapWindow::addLargePointSet(int count)
{
    if (!_scene)
        return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QString message;
    const bool added = DemoMapData::getInstance()->addLargePointSet(_scene->getId(), count, &message);
    QApplication::restoreOverrideCursor();
    if (!added)
        KbbDebug::printWarning(message);
    else
        showStatusMessage(tr("%L1 points added to the map.").arg(count));
    return added;
}

bool DemoMapWindow::exportImage(QString fileName)
{
    if (fileName.isEmpty())
        fileName = QFileDialog::getSaveFileName(this, tr("Export the Map"), QString(),
                                                tr("PNG image (*.png);;SVG drawing (*.svg)"));
    if (fileName.isEmpty())
        return false;
    const bool svg = QFileInfo(fileName).suffix().compare(QLatin1String("svg"), Qt::CaseInsensitive) == 0;
    const bool saved = svg ? _view->saveSvg(fileName) : _view->getPixmap(devicePixelRatioF()).save(fileName, "PNG");
    if (saved)
        showStatusMessage(tr("The map was saved to '%1'.").arg(QDir::toNativeSeparators(fileName)));
    else
        KbbDebug::printWarning(tr("The map cannot be saved to '%1'.").arg(QDir::toNativeSeparators(fileName)));
    return saved;
}

namespace {
QStringList pointFiles(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        const QString suffix = QFileInfo(url.fileName()).suffix().toLower();
        if (url.isLocalFile() && (suffix == QLatin1String("csv") || suffix == QLatin1String("vpts")))
            files.append(url.toLocalFile());
    }
    return files;
}
} // namespace

bool DemoMapWindow::canAcceptDrop(const QMimeData& data) const
{
    return _scene && !pointFiles(data).isEmpty();
}

bool DemoMapWindow::acceptDrop(const QMimeData& data, const QPointF&)
{
    bool added = false;
    for (const QString& file : pointFiles(data)) {
        QString message;
        if (_scene && DemoMapData::getInstance()->addPointFile(_scene->getId(), file, &message))
            added = true;
        else
            KbbDebug::printWarning(message);
    }
    return added;
}

void DemoMapWindow::connectGps(QObject* gpsDialog, const char* enabledSignal, const char* visibleSignal,
                               const char* centeredSignal, const char* positionSignal, bool connect)
{
    if (!gpsDialog)
        return;
    const struct {
        const char* signal;
        const char* slot;
    } pairs[] = {{enabledSignal, SLOT(setGpsEnabled(bool))},
                 {visibleSignal, SLOT(setGpsVisibleOnMap(bool))},
                 {centeredSignal, SLOT(setGpsCenteredOnMap(bool))},
                 {positionSignal, SLOT(updateGpsPosition(QPointF, bool))}};
    for (const auto& pair : pairs) {
        if (!pair.signal)
            continue;
        if (connect)
            QObject::connect(gpsDialog, pair.signal, _view, pair.slot);
        else
            QObject::disconnect(gpsDialog, pair.signal, _view, pair.slot);
    }
}
