#pragma once
// The 2D map of a scene: the map plot with one layer per scene item, in the scene's order
// (rank 0 lowest), following the scene as items are inserted, moved, removed, renamed,
// shown or given new data. It zooms to all, to a rectangle or about a point, keeps the
// scene's last zoom, and switches the interaction mode. Escape goes back to panning.

#include <velmora_widget_export.h>

#include <VuuCoordSystem.h>
#include <VwViewMode.h>

#include <QPointer>
#include <QWidget>
#include <memory>

class VugDatasetStore;
class VugScene;
class VwqBasemapPlot;
class VwvBasemapLayer;

class VELMORA_WIDGET_EXPORT VwvBasemapView : public QWidget
{
    Q_OBJECT
public:
    explicit VwvBasemapView(QWidget* parent = nullptr);
    ~VwvBasemapView() override;

    VwqBasemapPlot* getPlot() const;

    // Clears the layers and builds one per item of the scene from the datasets; restores
    // the scene's last zoom, or zooms to all. Both must outlive the view or be reset.
    void setScene(VugScene* scene, const VugDatasetStore* datasets);
    VugScene* getScene() const;
    // The layer of the item at that rank; null when the item could not be drawn.
    VwvBasemapLayer* getLayer(int rank) const;
    int getLayerCount() const;

    void setCoordinateSystem(const VuuCoordSystem& system);
    const VuuCoordSystem& getCoordSystem() const;

    Vw::ViewMode getCurrentMode() const;
    void setViewMode(Vw::ViewMode mode);
    void setDefaultMode();

    // The layers' extent (of the visible ones only, if asked), widened by a tenth on each
    // side and shaped to the view; nothing happens without an extent.
    void viewAll(bool visibleOnly = false);
    void zoomTo(const QRectF& rect);
    // Unless forced, a point within a quarter of the view's width and height of its
    // centre leaves the view alone; otherwise the view is centred on it, at the same scale.
    void centerAt(const QPointF& point, bool force = false);
    QRectF getCurrentZoom() const;
    void undoZoom();
    void redoZoom();
    bool canUndoZoom() const;
    bool canRedoZoom() const;

public Q_SLOTS:
    void saveZoomInScene(const QRectF& rect);

Q_SIGNALS:
    void currentViewChanged(const QRectF& rect);
    void trackerPositionChanged(const QPointF& position);
    void modeChanged(const QString& modeDescription);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void _clearLayers();
    VwvBasemapLayer* _makeLayer(int rank);
    void _updateZOrder();
    void _layerInserted(int rank);
    void _layerMoved(const QStringList& movedItemIds);
    void _removeLayers(const QList<int>& ranks);
    void _renameLayer(int rank, const QString& oldName, const QString& newName);
    void _showLayer(int rank, bool shown);
    void _layerSourceChanged(int rank);
    void _sceneReset();

    std::unique_ptr<class VwvBasemapViewPrivate> const _d;
};
