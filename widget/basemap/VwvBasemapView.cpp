#include "VwvBasemapView.h"

#include "VwoCompass.h"
#include "VwoCopyright.h"
#include "VwoGpsPosition.h"
#include "VwoScaleBar.h"
#include "VwqBasemapPlot.h"
#include "VwqPlotMeasureArea.h"
#include "VwqPlotMeasureLine.h"
#include "VwqPlotZoomer.h"
#include "VwvBasemapImageItem.h"
#include "VwvBasemapLayer.h"
#include "VwvBasemapSceneLayers.h"
#include "VwvBasemapToolManager.h"
#include "VwvIAcceptDrops.h"

#include <KbbDebug.h>
#include <VssProject.h>
#include <VuaResourceProvider.h>
#include <VugScene.h>
#include <VugSceneItem.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>

#include <QAction>
#include <QBuffer>
#include <QDropEvent>
#include <QMimeData>
#include <QKeyEvent>
#include <QPainter>
#include <QPrinter>
#include <QSaveFile>
#include <QSvgGenerator>
#include <QTimer>
#include <QVBoxLayout>

#include <qwt_plot_renderer.h>

#include <cmath>

namespace {

bool isFinite(const QRectF& r)
{
    return std::isfinite(r.x()) && std::isfinite(r.y()) && std::isfinite(r.width()) && std::isfinite(r.height());
}

// The rectangle grown about its centre to the width / height ratio of a w x h picture,
// so that maps keep one scale on both axes.
QRectF fitToShape(const QRectF& area, double w, double h)
{
    QRectF r = area.normalized();
    if (w <= 0.0 || h <= 0.0 || r.width() <= 0.0 || r.height() <= 0.0)
        return r;
    const QPointF centre = r.center();
    if (r.width() / r.height() < w / h)
        r.setWidth(r.height() * w / h);
    else
        r.setHeight(r.width() * h / w);
    r.moveCenter(centre);
    return r;
}

// The layers, in that order, over the area (already of the picture's shape), drawn on
// the spot: into an image, which layers never leave to a worker thread.
QPixmap drawLayers(const QList<const VwvBasemapLayer*>& layers, const QRectF& area, int w, int h,
                   const QColor& background)
{
    QwtScaleMap xMap, yMap;
    xMap.setScaleInterval(area.left(), area.right());
    xMap.setPaintInterval(0, w);
    yMap.setScaleInterval(area.top(), area.bottom());
    yMap.setPaintInterval(h, 0);
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    QPainter painter(&image);
    for (const VwvBasemapLayer* layer : layers)
        layer->getPlotItem()->draw(&painter, xMap, yMap, QRectF(0, 0, w, h));
    painter.end();
    return QPixmap::fromImage(image);
}

} // namespace

class VwvBasemapViewPrivate
{
public:
    VwqBasemapPlot* plot = nullptr;
    VwvBasemapSceneLayers* layers = nullptr;
    VwvBasemapToolManager* tools = nullptr;
    const VssProject* project = nullptr;
    Vw::ViewMode mode = Vw::NO_MODE;
    QString currentLayerId;
    QString currentSubItemId;
    QMetaObject::Connection selectionConnection;

    VwvIAcceptDrops* dropAcceptor = nullptr;
    VwoCopyright* copyright = nullptr;
    VwoCompass* compass = nullptr;
    VwoScaleBar* scaleBar = nullptr;
    VwoGpsPosition* gps = nullptr;
    QAction* decorationActions[4] = {};

    QRectF initialZoom;
    bool initialZoomPending = false;
    bool applyingInitialZoom = false;
    bool gpsEnabled = false;
    bool gpsVisible = false;
    bool gpsCentered = false;
    // Our own preference writes, which must not come back as changes to apply.
    bool writingPreferences = false;
};

VwvBasemapView::VwvBasemapView(QWidget* parent)
    : QWidget(parent)
    , _d(new VwvBasemapViewPrivate)
{
    _d->plot = new VwqBasemapPlot(this);
    _d->layers = new VwvBasemapSceneLayers(_d->plot, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_d->plot);
    setFocusPolicy(Qt::WheelFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);

    _createDecorations();
    const KbuUnit& unit = getCoordinatesUnit();
    _d->plot->lengthSurveyor()->setViewCoordinateUnit(unit);
    _d->plot->areaSurveyor()->setViewCoordinateUnit(unit);

    connect(_d->plot, &VwqBasemapPlot::currentViewChanged, this, &VwvBasemapView::currentViewChanged);
    connect(_d->plot, &VwqBasemapPlot::newTrackerPosition, this, &VwvBasemapView::trackerPositionChanged);
    connect(_d->plot->zoomer(), &VwqPlotZoomer::zoomed, this, &VwvBasemapView::saveZoomInScene);
    connect(_d->layers, &VwvBasemapSceneLayers::selectionChanged, this, &VwvBasemapView::selectionChanged);
    connect(VupPreferenceRegistry::getInstance(), &VupPreferenceRegistry::prefChanged, this,
            &VwvBasemapView::_preferenceChanged);
    _d->tools = new VwvBasemapToolManager(this);
    setDefaultMode();
    _updateAxes();
}

VwvBasemapView::~VwvBasemapView()
{
    // The layers hold items of the plot and draw on it: they go first.
    delete _d->layers;
}

void VwvBasemapView::_createDecorations()
{
    const VuuCoordSystem& system = getCoordSystem();
    _d->copyright = new VwoCopyright;
    _d->compass = new VwoCompass(system, system.getUnit());
    _d->scaleBar = new VwoScaleBar(system.getUnit());
    _d->gps = new VwoGpsPosition;
    for (QwtPlotItem* item : std::initializer_list<QwtPlotItem*>{_d->copyright, _d->compass, _d->scaleBar, _d->gps})
        item->attach(_d->plot);
    _d->gps->setVisible(false);
    _d->compass->setVisible(VupMapPreferences::isCompassVisible());
    _d->scaleBar->setVisible(VupMapPreferences::isScaleBarVisible());

    struct Entry {
        const char* text;
        Vua::Resource::IconId (*icon)();
        bool checked;
        void (VwvBasemapView::*slot)(bool);
    };
    const Entry entries[4] = {
        {QT_TR_NOOP("Show/hide compass"), &Vua::Resource::iconViewerCompass, _d->compass->isVisible(),
         &VwvBasemapView::setCompassVisible},
        {QT_TR_NOOP("Show/hide scale bar"), &Vua::Resource::iconViewerScaleBar, _d->scaleBar->isVisible(),
         &VwvBasemapView::setScaleBarVisible},
        {QT_TR_NOOP("Show/hide grid"), &Vua::Resource::iconViewerGrid, VupMapPreferences::isGridVisible(), nullptr},
        {QT_TR_NOOP("Show/hide axes"), &Vua::Resource::iconViewerAxes, VupMapPreferences::isAxesVisible(),
         &VwvBasemapView::setAxesVisible},
    };
    for (int kind = 0; kind < 4; ++kind) {
        auto* action = new QAction(VuaResourceProvider::getIcon(entries[kind].icon()), tr(entries[kind].text), this);
        action->setCheckable(true);
        action->setChecked(entries[kind].checked);
        if (entries[kind].slot)
            connect(action, &QAction::toggled, this, entries[kind].slot);
        else
            connect(action, &QAction::toggled, _d->plot, &VwqBasemapPlot::setGridVisible);
        _d->decorationActions[kind] = action;
    }
}

VwqBasemapPlot* VwvBasemapView::getPlot() const { return _d->plot; }
VugScene* VwvBasemapView::getScene() const { return _d->layers->getScene(); }
VwvBasemapLayer* VwvBasemapView::getLayer(int rank) const { return _d->layers->getLayer(rank); }
int VwvBasemapView::getLayerCount() const { return _d->layers->count(); }
VwvBasemapToolManager* VwvBasemapView::getToolManager() const { return _d->tools; }
VwoCopyright* VwvBasemapView::getCopyright() const { return _d->copyright; }
VwoCompass* VwvBasemapView::getCompass() const { return _d->compass; }
VwoScaleBar* VwvBasemapView::getScaleBar() const { return _d->scaleBar; }
VwoGpsPosition* VwvBasemapView::getGpsPosition() const { return _d->gps; }

QAction* VwvBasemapView::getDecorationShowAction(DecorationKind kind) const
{
    return kind >= COMPASS && kind <= AXES ? _d->decorationActions[kind] : nullptr;
}

void VwvBasemapView::setScene(VugScene* scene, VugDatasetStore* datasets)
{
    disconnect(_d->selectionConnection);
    _d->layers->setScene(scene, datasets);
    // The scene's selected item is the layer the user works on.
    setCurrentLayer(scene ? scene->getSelectedItemId() : QString());
    if (!scene)
        return;
    _d->selectionConnection = connect(scene, &VugScene::selectionChanged, this,
                                      [this](const QString& itemId) { setCurrentLayer(itemId); });
    QRectF extent;
    if (scene->getLastZoom().isValid())
        _initialZoom(scene->getLastZoom());
    else if (_d->layers->extent(&extent))
        _initialZoom(_widened(extent));
    _updateAxes();
}

void VwvBasemapView::_initialZoom(const QRectF& rect)
{
    _d->initialZoom = rect;
    _d->applyingInitialZoom = true;
    _d->plot->zoomer()->resetZoom(rect);
    _d->applyingInitialZoom = false;
    // A view not shown yet has no size of its own: the rectangle is fitted again to the
    // canvas it gets, rather than cut to the one it has now.
    _d->initialZoomPending = !isVisible();
}

void VwvBasemapView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (_d->initialZoomPending)
        QTimer::singleShot(0, this, [this] {
            if (!_d->initialZoomPending || !getScene())
                return;
            _initialZoom(_d->initialZoom);
        });
}

void VwvBasemapView::setProject(const VssProject* project)
{
    _d->project = project;
}

void VwvBasemapView::setCoordinateSystem(const VuuCoordSystem& system)
{
    if (!system.isValid()) {
        KbbDebug::printWarning(tr("The map cannot be drawn in coordinate system '%1': %2")
                                   .arg(system.toString(), system.getError()));
        return;
    }
    _d->layers->setCoordinateSystem(system);
    _d->compass->setCoordSystem(system);
    _d->compass->setUnit(system.getUnit());
    _d->scaleBar->setUnit(system.getUnit());
    _d->plot->lengthSurveyor()->setViewCoordinateUnit(system.getUnit());
    _d->plot->areaSurveyor()->setViewCoordinateUnit(system.getUnit());
    _updateAxes();
}

const VuuCoordSystem& VwvBasemapView::getCoordSystem() const
{
    return _d->layers->getCoordSystem();
}

const KbuUnit& VwvBasemapView::getCoordinatesUnit() const
{
    return getCoordSystem().getUnit();
}

KbuUnitTransfo VwvBasemapView::getConversionSizeToPixel() const
{
    return KbuUnitTransfo(_d->plot->getFactorSizeToPixel());
}

void VwvBasemapView::_updateAxes()
{
    const VuuCoordSystem& system = getCoordSystem();
    const QString title = system.isLocal() ? tr("Local coordinate system") : system.getName();
    _d->plot->updatePlotAxes(getCurrentZoom(), title, system.getUnit());
}

Vw::ViewMode VwvBasemapView::getCurrentMode() const
{
    return _d->mode;
}

void VwvBasemapView::setViewMode(Vw::ViewMode mode)
{
    if (mode == _d->mode)
        return;
    _d->mode = mode;
    _d->plot->setMode(mode);
    static const char* const descriptions[] = {
        QT_TR_NOOP("No tool"),        QT_TR_NOOP("Pan"),          QT_TR_NOOP("Select and centre"),
        QT_TR_NOOP("Zoom in"),        QT_TR_NOOP("Zoom out"),     QT_TR_NOOP("Zoom box"),
        QT_TR_NOOP("Measure area"),   QT_TR_NOOP("Measure length")};
    emit modeChanged(mode >= 0 && mode <= Vw::MEASURE_LENGTH ? tr(descriptions[mode]) : QString());
}

void VwvBasemapView::setDefaultMode()
{
    setViewMode(Vw::PAN);
}

void VwvBasemapView::addTool(VwvABasemapToolActions* tool)
{
    _d->tools->addTool(tool);
}

QAction* VwvBasemapView::getToolAction(const QString& id) const
{
    return _d->tools->getToolAction(id);
}

QAction* VwvBasemapView::getToolMode(const QString& id) const
{
    return _d->tools->getToolMode(id);
}

void VwvBasemapView::setCurrentLayer(const QString& layerId, const QString& subItemId)
{
    if (layerId == _d->currentLayerId && subItemId == _d->currentSubItemId)
        return;
    _d->currentLayerId = layerId;
    _d->currentSubItemId = subItemId;
    emit currentLayerChanged(layerId);
}

QString VwvBasemapView::getCurrentLayerId() const
{
    return _d->currentLayerId;
}

QRectF VwvBasemapView::_widened(const QRectF& extent)
{
    // A tenth more on each side; a single location still gets a view around it.
    const double dx = extent.width() > 0.0 ? extent.width() * 0.1 : 1.0;
    const double dy = extent.height() > 0.0 ? extent.height() * 0.1 : 1.0;
    return extent.adjusted(-dx, -dy, dx, dy);
}

void VwvBasemapView::_zoomToExtent(const QRectF& extent)
{
    QRectF view = _widened(extent);
    _d->plot->zoomer()->rescaleToCurrentScale(view);
    _d->plot->zoomer()->zoom(view);
}

void VwvBasemapView::viewAll(bool visibleOnly)
{
    QRectF extent;
    if (_d->layers->extent(&extent, visibleOnly))
        _zoomToExtent(extent);
}

void VwvBasemapView::zoomTo(const QRectF& rect)
{
    if (!getScene() || !rect.isValid() || !isFinite(rect))
        return;
    QRectF view = rect.normalized();
    const VuuCoordSystem from = _d->project && !_d->project->getCoordSystemText().isEmpty()
        ? VuuCoordSystem::fromString(_d->project->getCoordSystemText())
        : VuuCoordSystem::local();
    if (from.isValid() && from != getCoordSystem() && !VuuCoordSystem::convert(from, getCoordSystem(), view))
        return;
    if (!view.isValid() || !isFinite(view))
        return;
    _d->plot->zoomer()->rescaleToCurrentScale(view);
    _d->plot->zoomer()->zoom(view);
}

void VwvBasemapView::zoomToLayer(int rank, const QString& subItemId)
{
    Q_UNUSED(subItemId) // layers have no parts of their own extent yet
    const VwvBasemapLayer* layer = getLayer(rank);
    if (!layer)
        return;
    const QRectF extent = layer->boundingRect().normalized();
    if (isFinite(extent) && extent != QRectF())
        _zoomToExtent(extent);
}

void VwvBasemapView::zoomToCurrentLayer()
{
    if (const VugScene* scene = getScene())
        zoomToLayer(scene->findRank(_d->currentLayerId), _d->currentSubItemId);
}

void VwvBasemapView::centerAt(const QPointF& point, bool force)
{
    if (!std::isfinite(point.x()) || !std::isfinite(point.y()))
        return;
    QRectF view = getCurrentZoom();
    const QPointF offset = point - view.center();
    if (!force && std::fabs(offset.x()) <= view.width() / 4.0 && std::fabs(offset.y()) <= view.height() / 4.0)
        return;
    view.moveCenter(point);
    _d->plot->zoomer()->zoom(view);
}

QRectF VwvBasemapView::getCurrentZoom() const
{
    return _d->plot->currentViewRect();
}

void VwvBasemapView::undoZoom()
{
    _d->plot->zoomer()->zoom(-1);
}

void VwvBasemapView::redoZoom()
{
    _d->plot->zoomer()->zoom(1);
}

bool VwvBasemapView::canUndoZoom() const
{
    return _d->plot->zoomer()->getZoomRectIndex() > 0;
}

bool VwvBasemapView::canRedoZoom() const
{
    const VwqPlotZoomer* zoomer = _d->plot->zoomer();
    return zoomer->getZoomRectIndex() + 1 < zoomer->getZoomStack().size();
}

void VwvBasemapView::saveZoomInScene(const QRectF& rect)
{
    if (!_d->applyingInitialZoom)
        _d->initialZoomPending = false; // the user's zoom wins
    if (VugScene* scene = getScene())
        if (rect.isValid())
            scene->setLastZoom(rect);
}

void VwvBasemapView::_writePreference(const QString& name, bool value)
{
    _d->writingPreferences = true;
    VupMapPreferences::setValue(name, value);
    _d->writingPreferences = false;
}

void VwvBasemapView::_preferenceChanged(const VupPreferenceModif& modif)
{
    if (_d->writingPreferences || !modif.concerns(VupMapPreferences::GROUP))
        return;
    // Another view or the preferences dialog switched something: follow it.
    const bool states[4] = {VupMapPreferences::isCompassVisible(), VupMapPreferences::isScaleBarVisible(),
                            VupMapPreferences::isGridVisible(), VupMapPreferences::isAxesVisible()};
    for (int kind = 0; kind < 4; ++kind)
        _d->decorationActions[kind]->setChecked(states[kind]);
}

void VwvBasemapView::setAxesVisible(bool visible)
{
    _d->decorationActions[AXES]->setChecked(visible);
    _writePreference(QStringLiteral("axesVisible"), visible);
    _updateAxes();
}

void VwvBasemapView::setCompassVisible(bool visible)
{
    _d->decorationActions[COMPASS]->setChecked(visible);
    _writePreference(QStringLiteral("compassVisible"), visible);
    _d->compass->setVisible(visible);
    _d->plot->replot();
}

void VwvBasemapView::setScaleBarVisible(bool visible)
{
    _d->decorationActions[SCALE_BAR]->setChecked(visible);
    _writePreference(QStringLiteral("scaleBarVisible"), visible);
    _d->scaleBar->setVisible(visible);
    _d->plot->replot();
}

void VwvBasemapView::setGpsEnabled(bool enabled)
{
    _d->gpsEnabled = enabled;
    _d->gps->setVisible(enabled && _d->gpsVisible);
    _d->plot->replot();
}

void VwvBasemapView::setGpsVisibleOnMap(bool visible)
{
    _d->gpsVisible = visible;
    _d->gps->setVisible(_d->gpsEnabled && visible);
    _d->plot->replot();
}

void VwvBasemapView::setGpsCenteredOnMap(bool centered)
{
    _d->gpsCentered = centered;
}

void VwvBasemapView::updateGpsPosition(const QPointF& position, bool valid)
{
    if (!_d->gpsEnabled)
        return;
    _d->gps->setPosition(position, valid);
    if (valid && _d->gpsCentered)
        centerAt(position, false);
    if (_d->gps->isVisible())
        _d->plot->replot();
}

void VwvBasemapView::_renderMap(QPainter* painter, const QRectF& target) const
{
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardCanvasFrame, true);
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground, false);
    renderer.render(_d->plot, painter, target);
}

QPixmap VwvBasemapView::getPixmap(double scale) const
{
    if (!(scale > 0.0) || !std::isfinite(scale))
        return QPixmap();
    const QSize size(int(std::floor(width() * scale + 0.5)), int(std::floor(height() * scale + 0.5)));
    if (size.isEmpty())
        return QPixmap();
    // Into an image, not a pixmap: layers then draw at full quality on the spot.
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(palette().color(QPalette::Window));
    QPainter painter(&image);
    painter.scale(scale, scale);
    _renderMap(&painter, QRectF(0, 0, width(), height()));
    painter.end();
    return QPixmap::fromImage(image);
}

QPixmap VwvBasemapView::getPixmap(int w, int h) const
{
    if (w <= 0 || h <= 0 || width() <= 0 || height() <= 0)
        return QPixmap();
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(palette().color(QPalette::Window));
    // The map as seen, scaled to fit and centred: one scale on both axes.
    const double scale = std::min(double(w) / width(), double(h) / height());
    QPainter painter(&image);
    painter.translate((w - width() * scale) / 2.0, (h - height() * scale) / 2.0);
    painter.scale(scale, scale);
    _renderMap(&painter, QRectF(0, 0, width(), height()));
    painter.end();
    return QPixmap::fromImage(image);
}

QPixmap VwvBasemapView::getPixmapFromArea(const QRectF& area, int w, int h, const QColor& background) const
{
    if (w <= 0 || h <= 0 || !isFinite(area) || area.normalized().isEmpty())
        return QPixmap();
    QList<const VwvBasemapLayer*> layers;
    for (int rank = 0; rank < getLayerCount(); ++rank)
        if (const VwvBasemapLayer* layer = getLayer(rank))
            if (layer->isVisible())
                layers.append(layer);
    std::stable_sort(layers.begin(), layers.end(),
                     [](const VwvBasemapLayer* a, const VwvBasemapLayer* b) { return a->getZ() < b->getZ(); });
    return drawLayers(layers, fitToShape(area, w, h), w, h, background);
}

QPixmap VwvBasemapView::getPixmapFromLayer(int w, int h, const QColor& background, const VugSceneItem* item,
                                           QRectF& area) const
{
    const VugScene* scene = getScene();
    const VwvBasemapLayer* layer = item && scene ? getLayer(scene->findRank(item->getId())) : nullptr;
    if (!layer || w <= 0 || h <= 0)
        return QPixmap();
    const QRectF extent = layer->boundingRect().normalized();
    if (!isFinite(extent) || extent.isEmpty())
        return QPixmap();
    area = fitToShape(extent, w, h);
    return drawLayers({layer}, area, w, h, background);
}

bool VwvBasemapView::saveSvg(const QString& fileName) const
{
    // Drawn into memory first: a file that cannot be written leaves any old one whole.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(size());
    generator.setViewBox(QRect(QPoint(0, 0), size()));
    generator.setTitle(window()->windowTitle());
    {
        QPainter painter;
        if (!painter.begin(&generator))
            return false;
        _renderMap(&painter, QRectF(0, 0, width(), height()));
    }
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(buffer.data()) != buffer.size() || !file.commit()) {
        KbbDebug::printWarning(tr("The map cannot be saved to '%1': %2")
                                   .arg(QDir::toNativeSeparators(fileName), file.errorString()));
        return false;
    }
    return true;
}

bool VwvBasemapView::print(QPrinter& printer) const
{
    QPainter painter;
    if (width() <= 0 || height() <= 0 || !painter.begin(&printer))
        return false;
    const QRectF page = printer.pageLayout().paintRectPixels(printer.resolution());
    QRectF area(0, 0, page.width(), page.height());
    // The window's title (the scene's name) above the map.
    const QString title = window()->windowTitle();
    if (!title.isEmpty()) {
        QFont font = painter.font();
        font.setPointSizeF(14);
        font.setBold(true);
        painter.setFont(font);
        const QRectF titleRect(0, 0, area.width(), painter.fontMetrics().height() * 1.5);
        painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignTop, title);
        area.setTop(titleRect.bottom());
    }
    const double scale = std::min(area.width() / width(), area.height() / height());
    painter.translate(area.left(), area.top());
    painter.scale(scale, scale);
    _renderMap(&painter, QRectF(0, 0, width(), height()));
    return painter.end();
}

void VwvBasemapView::setEnableDrops(bool enable, VwvIAcceptDrops* acceptor)
{
    _d->dropAcceptor = enable ? acceptor : nullptr;
    setAcceptDrops(_d->dropAcceptor != nullptr);
}

void VwvBasemapView::dragEnterEvent(QDragEnterEvent* event)
{
    dragMoveEvent(event);
}

void VwvBasemapView::dragMoveEvent(QDragMoveEvent* event)
{
    if (_d->dropAcceptor && event->mimeData() && _d->dropAcceptor->canAcceptDrop(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void VwvBasemapView::dropEvent(QDropEvent* event)
{
    if (!_d->dropAcceptor || !event->mimeData() || !_d->dropAcceptor->canAcceptDrop(*event->mimeData())) {
        event->ignore();
        return;
    }
    const QPoint onCanvas = _d->plot->canvas()->mapFrom(this, event->pos());
    if (_d->dropAcceptor->acceptDrop(*event->mimeData(), _d->plot->pixelToView(QPointF(onCanvas))))
        event->acceptProposedAction();
    else
        event->ignore();
}

void VwvBasemapView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        setDefaultMode();
        event->accept();
        return;
    }
    QWidget::keyPressEvent(event);
}
