#pragma once
// One item of a map scene on the map plot: it owns the plot item that shows the item's
// drawing and answers the view's picks in the view's coordinates, converting them to the
// dataset's coordinate system and unit. Picks use a tolerance of 8 pixels.

#include <velmora_widget_export.h>

#include <VuSelectionFlag.h>
#include <VuuCoordSystem.h>
#include <VwvIBasemapRenderer.h>

#include <QObject>
#include <QPointer>
#include <memory>

class VwqBasemapPlot;
class VwvBasemapImageItem;

class VELMORA_WIDGET_EXPORT VwvBasemapLayer : public QObject
{
    Q_OBJECT
public:
    // Pixels around the mouse within which a sample is picked.
    static constexpr double PICK_TOLERANCE_PIXELS = 8.0;

    VwvBasemapLayer(VwqBasemapPlot* plot, std::shared_ptr<const VwvIBasemapRenderer> renderer,
                    QObject* parent = nullptr);
    ~VwvBasemapLayer() override;

    VwqBasemapPlot* getPlot() const;
    VwvBasemapImageItem* getPlotItem() const;
    std::shared_ptr<const VwvIBasemapRenderer> getRenderer() const;
    void setRenderer(std::shared_ptr<const VwvIBasemapRenderer> renderer);

    QString getTitle() const;
    void setTitle(const QString& title);
    bool isVisible() const;
    void setVisible(bool visible);
    double getZ() const;
    void setZ(double z);

    const QString& getSceneItemId() const;
    void setSceneItemId(const QString& itemId);
    const QString& getDatasetKey() const;
    const QString& getSubDatasetKey() const;
    void setDatasetKeys(const QString& datasetKey, const QString& subDatasetKey);
    bool isLabelVisible() const;
    void setLabelVisible(bool visible);
    const QString& getCurrentSubItemId() const;
    void setCurrentSubItemId(const QString& subItemId);

    // The view's system and the dataset's; picks are converted from the one to the other.
    void setCoordinateSystems(const VuuCoordSystem& view, const VuuCoordSystem& dataset);
    const VuuCoordSystem& getViewCoordSystem() const;
    const VuuCoordSystem& getDatasetCoordSystem() const;

    // The extent of the layer in the view's coordinates; empty when it has none or it
    // cannot be converted.
    QRectF boundingRect() const;

    // Picks in the view's coordinates. -1 or an empty set when nothing is there, when the
    // layer has no renderer, or when the point cannot be converted.
    int pointToRank(const QPointF& viewPoint) const;
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& viewRect) const;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& viewPolygon) const;
    // Moves the point onto the nearest sample within the tolerance; false when none.
    bool snapToPoints(QPointF& viewPoint) const;

    // The selected sample ranks; empty when the layer's drawing cannot select.
    KbiIntervalIntSmallDisjoint getSelection() const;
    // Changes the selection as the flag says and draws it. Ranks beyond the layer's samples
    // are left out with a warning; a layer whose drawing cannot select ignores the call.
    void mask(int rank, Vu::SelectionFlag flag);
    void mask(const KbiIntervalIntSmallDisjoint& ranks, Vu::SelectionFlag flag);
    void clearSelection();

    // Asks the plot to draw the layer again.
    void draw();

Q_SIGNALS:
    // The selected samples changed; a mask that leaves them as they were says nothing.
    void sampleSelectionChanged(VwvBasemapLayer* layer);
    void highlightChanged(VwvBasemapLayer* layer);
    // From the shape editors: a new geometry, a changed one, samples to delete.
    void createRequested(const QPolygonF& geometry);
    void updateRequested(const KbiIntervalIntSmallDisjoint& ranks, const QPolygonF& geometry);
    void deleteRequested(const KbiIntervalIntSmallDisjoint& ranks);

private:
    bool _toDataset(QPointF& point) const;
    bool _toView(QPointF& point) const;
    double _toleranceInDataset(const QPointF& viewPoint) const;

    std::unique_ptr<class VwvBasemapLayerPrivate> const _d;
};
