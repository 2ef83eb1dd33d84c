#include "VwvBasemapSceneLayers.h"

#include "VwqBasemapPlot.h"
#include "VwvBasemapLayer.h"
#include "VwvBasemapRendererFactory.h"

#include <KbbDebug.h>
#include <VsdPointSet.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <VugSceneItem.h>

#include <QHash>

#include <cmath>

class VwvBasemapSceneLayersPrivate
{
public:
    VwqBasemapPlot* plot = nullptr;
    QPointer<VugScene> scene;
    VugDatasetStore* datasets = nullptr;
    VuuCoordSystem system = VuuCoordSystem::local();
    // One entry per scene item, in rank order; null where the item could not be drawn.
    QList<VwvBasemapLayer*> layers;
    // To the scene and to the store.
    QList<QMetaObject::Connection> sceneConnections;
    // The layer whose selection is being written into the store: the store's change
    // notice is its own, and it already shows it.
    const VwvBasemapLayer* keepingSelectionOf = nullptr;
};

VwvBasemapSceneLayers::VwvBasemapSceneLayers(VwqBasemapPlot* plot, QObject* parent)
    : QObject(parent)
    , _d(new VwvBasemapSceneLayersPrivate)
{
    _d->plot = plot;
}

VwvBasemapSceneLayers::~VwvBasemapSceneLayers()
{
    _clear();
}

VugScene* VwvBasemapSceneLayers::getScene() const
{
    return _d->scene;
}

VugDatasetStore* VwvBasemapSceneLayers::getDatasets() const
{
    return _d->datasets;
}

VwvBasemapLayer* VwvBasemapSceneLayers::getLayer(int rank) const
{
    return rank >= 0 && rank < _d->layers.size() ? _d->layers.at(rank) : nullptr;
}

int VwvBasemapSceneLayers::count() const
{
    return _d->layers.size();
}

void VwvBasemapSceneLayers::setScene(VugScene* scene, VugDatasetStore* datasets)
{
    for (const auto& connection : qAsConst(_d->sceneConnections))
        disconnect(connection);
    _d->sceneConnections.clear();
    _d->scene = scene;
    _d->datasets = datasets;
    if (scene) {
        using Self = VwvBasemapSceneLayers;
        _d->sceneConnections = {
            connect(scene, &VugScene::itemInserted, this, &Self::_layerInserted),
            connect(scene, &VugScene::itemsMoved, this, &Self::_layerMoved),
            connect(scene, &VugScene::itemsRemoved, this, &Self::_removeLayers),
            connect(scene, &VugScene::itemRenamed, this, &Self::_renameLayer),
            connect(scene, &VugScene::itemShown, this, &Self::_showLayer),
            connect(scene, &VugScene::itemSourceChanged, this, &Self::_layerSourceChanged),
            connect(scene, &VugScene::reset, this, &Self::_sceneReset),
        };
    }
    if (datasets) {
        using Self = VwvBasemapSceneLayers;
        _d->sceneConnections << connect(datasets, &VugDatasetStore::datasetChanged, this, &Self::_rebuildLayersOf)
                             << connect(datasets, &VugDatasetStore::datasetRemoved, this, &Self::_rebuildLayersOf)
                             << connect(datasets, &VugDatasetStore::reloaded, this, &Self::_sceneReset);
    }
    _sceneReset();
}

void VwvBasemapSceneLayers::_clear()
{
    qDeleteAll(_d->layers);
    _d->layers.clear();
}

VwvBasemapLayer* VwvBasemapSceneLayers::_makeLayer(int rank)
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
        connect(layer, &VwvBasemapLayer::sampleSelectionChanged, this, &VwvBasemapSceneLayers::_keepSelection);
        return layer;
    } catch (...) {
        KbbDebug::printWarning(tr("VwvBasemapView: cannot create render layer '%1': %2")
                                   .arg(item->getName(), KbbDebug::describeCurrentException()));
        return nullptr;
    }
}

void VwvBasemapSceneLayers::_updateZOrder()
{
    double z = 1.0;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers)) {
        if (layer)
            layer->setZ(z);
        z += 1.0;
    }
    _d->plot->replot();
    emit layersChanged();
}

void VwvBasemapSceneLayers::_sceneReset()
{
    _clear();
    const int count = _d->scene ? _d->scene->count() : 0;
    for (int rank = 0; rank < count; ++rank)
        _d->layers.append(_makeLayer(rank));
    _updateZOrder();
}

void VwvBasemapSceneLayers::_layerInserted(int rank)
{
    if (rank < 0 || rank > _d->layers.size())
        return _sceneReset();
    _d->layers.insert(rank, _makeLayer(rank));
    _updateZOrder();
}

void VwvBasemapSceneLayers::_layerMoved(const QStringList&)
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

void VwvBasemapSceneLayers::_removeLayers(const QList<int>& ranks)
{
    QList<int> sorted = ranks;
    std::sort(sorted.begin(), sorted.end(), std::greater<int>());
    for (int rank : sorted)
        if (rank >= 0 && rank < _d->layers.size())
            delete _d->layers.takeAt(rank);
    _updateZOrder();
}

void VwvBasemapSceneLayers::_renameLayer(int rank, const QString&, const QString& newName)
{
    if (VwvBasemapLayer* layer = getLayer(rank))
        layer->setTitle(newName);
}

void VwvBasemapSceneLayers::_showLayer(int rank, bool shown)
{
    if (VwvBasemapLayer* layer = getLayer(rank))
        layer->setVisible(shown);
}

void VwvBasemapSceneLayers::_layerSourceChanged(int rank)
{
    if (rank < 0 || rank >= _d->layers.size())
        return;
    delete _d->layers.at(rank);
    _d->layers[rank] = _makeLayer(rank);
    _updateZOrder();
}

void VwvBasemapSceneLayers::_rebuildLayersOf(const QString& datasetKey)
{
    if (!_d->scene)
        return;
    const QString key = datasetKey; // the sender's string may belong to a layer deleted here
    bool rebuilt = false;
    for (int rank = 0; rank < _d->layers.size(); ++rank) {
        const VugSceneItem* item = _d->scene->item(rank);
        VwvBasemapLayer* old = _d->layers.at(rank);
        if (!item || item->getDatasetKey() != key || (old && old == _d->keepingSelectionOf))
            continue;
        VwvBasemapLayer* layer = _makeLayer(rank);
        if (layer && old) {
            layer->setTitle(old->getTitle());
            layer->setVisible(old->isVisible());
        }
        delete old;
        _d->layers[rank] = layer;
        rebuilt = true;
    }
    if (rebuilt)
        _updateZOrder();
}

void VwvBasemapSceneLayers::_keepSelection(VwvBasemapLayer* layer)
{
    const QString key = layer->getDatasetKey();
    const VsdPointSet* stored = _d->datasets ? _d->datasets->pointSet(key) : nullptr;
    const KbiIntervalIntSmallDisjoint selection = layer->getSelection();
    if (!stored) {
        qWarning("VwvBasemapSceneLayers: the selection of '%s' has no point set '%s' to be kept in",
                 qUtf8Printable(layer->getTitle()), qUtf8Printable(key));
    } else if (stored->selection() != selection) {
        VsdPointSet set = *stored; // the coordinates stay shared: only the selection is new
        set.clearSelection();
        if (set.select(selection)) {
            _d->keepingSelectionOf = layer;
            _d->datasets->setPointSet(key, set, _d->datasets->storageOf(key));
            _d->keepingSelectionOf = nullptr;
        }
    }
    emit selectionChanged();
}

void VwvBasemapSceneLayers::setCoordinateSystem(const VuuCoordSystem& system)
{
    _d->system = system;
    for (VwvBasemapLayer* layer : qAsConst(_d->layers))
        if (layer)
            layer->setCoordinateSystems(system, layer->getDatasetCoordSystem());
}

const VuuCoordSystem& VwvBasemapSceneLayers::getCoordSystem() const
{
    return _d->system;
}

bool VwvBasemapSceneLayers::extent(QRectF* rect, bool visibleOnly) const
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
    if (found && rect)
        *rect = QRectF(QPointF(left, top), QPointF(right, bottom));
    return found;
}
