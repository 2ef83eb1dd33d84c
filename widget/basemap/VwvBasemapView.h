#pragma once
// The 2D map of a scene: the map plot with one layer per scene item, in the scene's order
// (rank 0 lowest), following the scene as items are inserted, moved, removed, renamed,
// shown or given new data. It zooms to all, to a layer, to a rectangle or about a point,
// keeps the scene's last zoom, shows axes titled with the coordinate system, the
// decorations (attribution, compass, scale bar, GPS position), and renders itself into
// pixmaps, SVG files and printers. Escape goes back to panning.

#include <velmora_widget_export.h>

#include <KbuUnit.h>
#include <KbuUnitTransfo.h>
#include <VuuCoordSystem.h>
#include <VwViewMode.h>
#include <VwvIPrintable.h>

#include <QPixmap>
#include <QWidget>
#include <memory>

class QAction;
class QPrinter;
class VssProject;
class VugDatasetStore;
class VugScene;
class VugSceneItem;
class VwoCompass;
class VwoCopyright;
class VwoGpsPosition;
class VwoScaleBar;
class VwqBasemapPlot;
class VwvABasemapToolActions;
class VwvBasemapLayer;
class VwvBasemapToolManager;
class VwvIAcceptDrops;

class VELMORA_WIDGET_EXPORT VwvBasemapView : public QWidget, public VwvIPrintable
{
    Q_OBJECT
public:
    enum DecorationKind { COMPASS = 0, SCALE_BAR = 1, GRID = 2, AXES = 3 };

    explicit VwvBasemapView(QWidget* parent = nullptr);
    ~VwvBasemapView() override;

    VwqBasemapPlot* getPlot() const;

    // Clears the layers and builds one per item of the scene from the datasets; restores
    // the scene's last zoom, or zooms to all. Both must outlive the view or be reset.
    void setScene(VugScene* scene, VugDatasetStore* datasets);
    VugScene* getScene() const;
    // The layer of the item at that rank; null when the item could not be drawn.
    VwvBasemapLayer* getLayer(int rank) const;
    int getLayerCount() const;

    // The project whose coordinate system zoomTo() rectangles come in; may be null.
    void setProject(const VssProject* project);
    // The system the map is drawn in; layers, axes, compass, scale bar and rulers follow.
    // An invalid system is refused with a warning.
    void setCoordinateSystem(const VuuCoordSystem& system);
    const VuuCoordSystem& getCoordSystem() const;
    const KbuUnit& getCoordinatesUnit() const;
    // From a length in the coordinate unit to pixels at the current zoom.
    KbuUnitTransfo getConversionSizeToPixel() const;

    Vw::ViewMode getCurrentMode() const;
    void setViewMode(Vw::ViewMode mode);
    void setDefaultMode();

    // Groups of map commands; the manager keeps their modes exclusive.
    VwvBasemapToolManager* getToolManager() const;
    void addTool(VwvABasemapToolActions* tool);
    QAction* getToolAction(const QString& id) const;
    QAction* getToolMode(const QString& id) const;

    // The layer the user works on, by scene item id; a sub-item narrows zoomToLayer().
    void setCurrentLayer(const QString& layerId, const QString& subItemId = QString());
    QString getCurrentLayerId() const;

    // The layers' extent (of the visible ones only, if asked), widened by a tenth on each
    // side and shaped to the view; nothing happens without an extent.
    void viewAll(bool visibleOnly = false);
    // A rectangle in the project's coordinate system; nothing happens without a scene or
    // for a rectangle that is empty or cannot be converted.
    void zoomTo(const QRectF& rect);
    // The extent of the layer at that rank, widened as by viewAll().
    void zoomToLayer(int rank, const QString& subItemId = QString());
    void zoomToCurrentLayer();
    // Unless forced, a point within a quarter of the view's width and height of its
    // centre leaves the view alone; otherwise the view is centred on it, at the same scale.
    void centerAt(const QPointF& point, bool force = false);
    QRectF getCurrentZoom() const;
    void undoZoom();
    void redoZoom();
    bool canUndoZoom() const;
    bool canRedoZoom() const;

    // The checkable action that shows or hides a decoration kind.
    QAction* getDecorationShowAction(DecorationKind kind) const;
    VwoCopyright* getCopyright() const;
    VwoCompass* getCompass() const;
    VwoScaleBar* getScaleBar() const;
    VwoGpsPosition* getGpsPosition() const;

    // The map as seen, axes and decorations included, at the widget's size times scale.
    QPixmap getPixmap(double scale = 1.0) const;
    // The map as seen, laid out in w x h pixels.
    QPixmap getPixmap(int w, int h) const;
    // The visible layers over the area (widened to the pixmap's shape), without axes.
    QPixmap getPixmapFromArea(const QRectF& area, int w, int h, const QColor& background) const;
    // One layer over its own extent; area receives that extent (widened to the shape).
    QPixmap getPixmapFromLayer(int w, int h, const QColor& background, const VugSceneItem* item,
                               QRectF& area) const;
    // The map as seen, as a vector drawing; false when the file cannot be written.
    bool saveSvg(const QString& fileName) const;
    // The map on one page, as large as fits with its shape kept, with the scene's name
    // above; false when the printer cannot be painted on.
    bool print(QPrinter& printer) const override;

    // Drops on the map go to the acceptor (which must outlive the view or be unset);
    // without one, or disabled, nothing can be dropped.
    void setEnableDrops(bool enable, VwvIAcceptDrops* acceptor = nullptr);

public Q_SLOTS:
    void setAxesVisible(bool visible);
    void setCompassVisible(bool visible);
    void setScaleBarVisible(bool visible);
    void setGpsEnabled(bool enabled);
    void setGpsVisibleOnMap(bool visible);
    void setGpsCenteredOnMap(bool centered);
    void updateGpsPosition(const QPointF& position, bool valid);
    void saveZoomInScene(const QRectF& rect);

Q_SIGNALS:
    void currentViewChanged(const QRectF& rect);
    void trackerPositionChanged(const QPointF& position);
    void modeChanged(const QString& modeDescription);
    void currentLayerChanged(const QString& layerId);
    // The samples selected in a layer changed (written back into its dataset).
    void selectionChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void _updateAxes();
    void _createDecorations();
    static QRectF _widened(const QRectF& extent);
    void _zoomToExtent(const QRectF& extent);
    void _initialZoom(const QRectF& rect);
    void _preferenceChanged(const class VupPreferenceModif& modif);
    void _writePreference(const QString& name, bool value);
    void _renderMap(QPainter* painter, const QRectF& target) const;

    std::unique_ptr<class VwvBasemapViewPrivate> const _d;
};
