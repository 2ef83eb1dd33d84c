#pragma once
// The layers of a scene on one map plot: one per item, in the scene's order (rank 0 drawn
// lowest, z 1.0, 2.0, ...), following the scene as items are inserted, moved, removed,
// renamed, shown or given new data, and the store as datasets are replaced or removed. An
// item that cannot be drawn gets no layer and a warning; the others are drawn. A layer's
// sample selection is kept in its point set in the store, so that it outlives the layer
// and every view of the set shows it. The map view and its overview each hold one.

#include <velmora_widget_export.h>

#include <VuuCoordSystem.h>

#include <QObject>
#include <QPointer>
#include <memory>

class VugDatasetStore;
class VugScene;
class VwqBasemapPlot;
class VwvBasemapLayer;

class VELMORA_WIDGET_EXPORT VwvBasemapSceneLayers : public QObject
{
    Q_OBJECT
public:
    explicit VwvBasemapSceneLayers(VwqBasemapPlot* plot, QObject* parent = nullptr);
    ~VwvBasemapSceneLayers() override;

    // Rebuilds the layers from the scene and follows it; both must outlive this object
    // or be reset.
    void setScene(VugScene* scene, VugDatasetStore* datasets);
    VugScene* getScene() const;
    VugDatasetStore* getDatasets() const;

    // The layer of the item at that rank; null when the item could not be drawn.
    VwvBasemapLayer* getLayer(int rank) const;
    int count() const;

    void setCoordinateSystem(const VuuCoordSystem& system);
    const VuuCoordSystem& getCoordSystem() const;

    // The united extent of the layers (of the visible ones only, if asked); false when no
    // layer has one. A single sample gives a rectangle of no size.
    bool extent(QRectF* rect, bool visibleOnly = false) const;

Q_SIGNALS:
    // Layers were added, removed, reordered or rebuilt.
    void layersChanged();
    // A layer's sample selection changed and was written into its point set.
    void selectionChanged();

private:
    void _clear();
    VwvBasemapLayer* _makeLayer(int rank);
    void _updateZOrder();
    void _layerInserted(int rank);
    void _layerMoved(const QStringList& movedItemIds);
    void _removeLayers(const QList<int>& ranks);
    void _renameLayer(int rank, const QString& oldName, const QString& newName);
    void _showLayer(int rank, bool shown);
    void _layerSourceChanged(int rank);
    void _sceneReset();
    void _rebuildLayersOf(const QString& datasetKey);
    void _keepSelection(VwvBasemapLayer* layer);

    std::unique_ptr<class VwvBasemapSceneLayersPrivate> const _d;
};
