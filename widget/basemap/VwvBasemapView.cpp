#include "VwvBasemapView.h"

#include "VwqBasemapPlot.h"
#include "VwqPlotZoomer.h"
#include "VwvBasemapLayer.h"
#include "VwvBasemapRendererFactory.h"

#include <KbbDebug.h>
#include <KbeError.h>
#include <VugScene.h>
#include <VugSceneItem.h>

#include <QKeyEvent>
#include <QVBoxLayout>

#include <cmath>

class VwvBasemapViewPrivate
{
public:
    VwqBasemapPlot* plot = nullptr;
    QPointer<VugScene> scene;
    const VugDatasetStore* datasets = nullptr;
    VuuCoordSystem system = VuuCoordSystem::local();
    // One entry per scene item, in rank order; null where the item could not be drawn.
    QList<VwvBasemapLayer*> layers;
    Vw::ViewMode mode = Vw::NO_MODE;
    QList<QMetaObject::Connection> sceneConnections;
};

VwvBasemapView::VwvBasemapView(QWidget* parent)
    : QWidget(parent)
    , _d(new VwvBasemapViewPrivate)
{
    _d->plot = new VwqBasemapPlot(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_d->plot);
    setFocusPolicy(Qt::WheelFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);

    connect(_d->plot, &VwqBasemapPlot::currentViewChanged, this, &VwvBasemapView::currentViewChanged);
    connect(_d->plot, &VwqBasemapPlot::newTrackerPosition, this, &VwvBasemapView::trackerPositionChanged);
    connect(_d->plot->zoomer(), &VwqPlotZoomer::zoomed, this, &VwvBasemapView::saveZoomInScene);
    setDefaultMode();
}

VwvBasemapView::~VwvBasemapView()
{
    _clearLayers();
}

VwqBasemapPlot* VwvBasemapView::getPlot() const
{
    return _d->plot;
}

VugScene* VwvBasemapView::getScene() const
{
    return _d->scene;
}

VwvBasemapLayer* VwvBasemapView::getLayer(int rank) const
{
    return rank >= 0 && rank < _d->layers.size() ? _d->layers.at(rank) : nullptr;
}

int VwvBasemapView::getLayerCount() const
{
    return _d->layers.size();
}

void VwvBasemapView::_clearLayers()
{
    qDeleteAll(_d->layers);
    _d->layers.clear();
}

void VwvBasemapView::setScene(VugScene* scene, const VugDatasetStore* datasets)
{
    for (const auto& connection : qAsConst(_d->sceneConnections))
        disconnect(connection);
    _d->sceneConnections.clear();
    _d->scene = scene;
    _d->datasets = datasets;
    _sceneReset();
    if (!scene)
        return;
    _d->sceneConnections = {
        connect(scene, &VugScene::itemInserted, this, &VwvBasemapView::_layerInserted),
        connect(scene, &VugScene::itemsMoved, this, &VwvBasemapView::_layerMoved),
        connect(scene, &VugScene::itemsRemoved, this, &VwvBasemapView::_removeLayers),
        connect(scene, &VugScene::itemRenamed, this, &VwvBasemapView::_renameLayer),
        connect(scene, &VugScene::itemShown, this, &VwvBasemapView::_showLayer),
        connect(scene, &VugScene::itemSourceChanged, this, &VwvBasemapView::_layerSourceChanged),
        connect(scene, &VugScene::reset, this, &VwvBasemapView::_sceneReset),
    };
    const QRectF last = scene->getLastZoom();
    if (last.isValid())
        _d->plot->zoomer()->resetZoom(last);
    else
        viewAll();
}

VwvBasemapLayer* VwvBasemapView::_makeLayer(int rank)
{
    const VugSceneItem* item = _d->scene ? _d->scene->item(rank) : nullptr;
    if (!item || !_d->datasets)
        return nullptr;
    try {
        auto* layer = new VwvBasemapLayer(_d->plot, VwvBasemapRendererFactory::create(*item, *_d->datasets), this);
        layer->setTitle(item->getName());
        layer->setVisible(item->isActive());
        layer->setSceneItemId(item->getId());
        layer->setDatasetKeys(item->getDatasetKey(), item->getSubDatasetKey());
        layer->setCoordinateSystems(_d->system, _d->system);
        return layer;
    } catch (const KbeError& error) {
        // The item stays without a layer; the others are drawn.
        KbbDebug::printWarning(
            tr("VwvBasemapView: cannot create render layer '%1': %2").arg(item->getName(), error.getMessage()));
        return nullptr;
    }
}

void VwvBasemapView::_updateZOrder()
{
    double z = 1.0;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers)) {
        if (layer)
            layer->setZ(z);
        z += 1.0;
    }
    _d->plot->replot();
}

void VwvBasemapView::_sceneReset()
{
    _clearLayers();
    const int count = _d->scene ? _d->scene->count() : 0;
    for (int rank = 0; rank < count; ++rank)
        _d->layers.append(_makeLayer(rank));
    _updateZOrder();
}

void VwvBasemapView::_layerInserted(int rank)
{
    if (rank < 0 || rank > _d->layers.size())
        return _sceneReset();
    _d->layers.insert(rank, _makeLayer(rank));
    _updateZOrder();
}

void VwvBasemapView::_layerMoved(const QStringList&)
{
    // The scene's order is the truth: the layers follow it by item id.
    QHash<QString, VwvBasemapLayer*> byId;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers))
        if (layer)
            byId.insert(layer->getSceneItemId(), layer);
    QList<VwvBasemapLayer*> ordered;
    for (int rank = 0; rank < _d->scene->count(); ++rank)
        ordered.append(byId.take(_d->scene->item(rank)->getId()));
    qDeleteAll(byId); // layers of items the scene no longer has
    _d->layers = ordered;
    _updateZOrder();
}

void VwvBasemapView::_removeLayers(const QList<int>& ranks)
{
    QList<int> sorted = ranks;
    std::sort(sorted.begin(), sorted.end(), std::greater<int>());
    for (int rank : sorted)
        if (rank >= 0 && rank < _d->layers.size())
            delete _d->layers.takeAt(rank);
    _updateZOrder();
}

void VwvBasemapView::_renameLayer(int rank, const QString&, const QString& newName)
{
    if (VwvBasemapLayer* layer = getLayer(rank))
        layer->setTitle(newName);
}

void VwvBasemapView::_showLayer(int rank, bool shown)
{
    if (VwvBasemapLayer* layer = getLayer(rank))
        layer->setVisible(shown);
}

void VwvBasemapView::_layerSourceChanged(int rank)
{
    if (rank < 0 || rank >= _d->layers.size())
        return;
    delete _d->layers.at(rank);
    _d->layers[rank] = _makeLayer(rank);
    _updateZOrder();
}

void VwvBasemapView::setCoordinateSystem(const VuuCoordSystem& system)
{
    _d->system = system;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers))
        if (layer)
            layer->setCoordinateSystems(system, layer->getDatasetCoordSystem());
}

const VuuCoordSystem& VwvBasemapView::getCoordSystem() const
{
    return _d->system;
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

void VwvBasemapView::viewAll(bool visibleOnly)
{
    // By hand: QRectF::united() drops the zero-size extent of a single sample.
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    bool found = false;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers)) {
        if (!layer || (visibleOnly && !layer->isVisible()))
            continue;
        const QRectF r = layer->boundingRect().normalized();
        if (r == QRectF() || !std::isfinite(r.left() + r.width()) || !std::isfinite(r.top() + r.height()))
            continue;
        left = found ? std::min(left, r.left()) : r.left();
        top = found ? std::min(top, r.top()) : r.top();
        right = found ? std::max(right, r.right()) : r.right();
        bottom = found ? std::max(bottom, r.bottom()) : r.bottom();
        found = true;
    }
    if (!found)
        return;
    // A tenth more on each side; a single location still gets a view around it.
    const double dx = right > left ? (right - left) * 0.1 : 1.0;
    const double dy = bottom > top ? (bottom - top) * 0.1 : 1.0;
    QRectF view(QPointF(left - dx, top - dy), QPointF(right + dx, bottom + dy));
    _d->plot->zoomer()->rescaleToCurrentScale(view);
    _d->plot->zoomer()->zoom(view);
}

void VwvBasemapView::zoomTo(const QRectF& rect)
{
    if (!_d->scene || !rect.isValid())
        return;
    QRectF view = rect.normalized();
    _d->plot->zoomer()->rescaleToCurrentScale(view);
    _d->plot->zoomer()->zoom(view);
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
    if (_d->scene && rect.isValid())
        _d->scene->setLastZoom(rect);
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
