#pragma once
// Draws a grid's values as coloured cells, turned with the grid. Each image pixel takes the
// colour of the cell under its centre, written straight into the scan lines: the colours
// of all cells are looked up once, when the renderer is made, so that a drawing costs a
// few operations per pixel whatever the number of cells. Undefined values take the scale's
// undefined colour, transparent unless set.

#include <velmora_widget_export.h>

#include <VsdGrid.h>
#include <VugColorScale.h>
#include <VwvIBasemapRenderer.h>

#include <QVector>

class VELMORA_WIDGET_EXPORT VwvBasemapRendererRaster : public VwvIBasemapRenderer
{
public:
    struct Style
    {
        double opacity = 1.0;    // 0 (invisible) to 1
        int lookupSize = 4096;   // colours sampled from the scale, 2..VugColorScale::MAX_LOOKUP_SIZE
    };
    static bool isValid(const Style& style);

    // An invalid style is refused with a qWarning and the default style drawn instead.
    VwvBasemapRendererRaster(const VsdGrid& grid, const VugColorScale& scale);
    VwvBasemapRendererRaster(const VsdGrid& grid, const VugColorScale& scale, const Style& style);
    ~VwvBasemapRendererRaster() override;

    const VsdGrid& getGrid() const;
    const VugColorScale& getScale() const;
    const Style& getStyle() const;

    QRectF boundingRect() const override;
    // Into an ARGB32_Premultiplied or RGB32 image directly, into others through a copy.
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const override;
    qint64 renderCost() const override;
    // The cell under the point (VsdGrid::rankAt), else the nearest within the tolerance.
    int pointToRank(const QPointF& point, double tolerance) const override;
    // The cells whose centre lies in the rectangle or the polygon.
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const override;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const override;

private:
    void _renderDirect(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const;

    const VsdGrid _grid;
    const VugColorScale _scale;
    const Style _style;
    // One premultiplied colour per node, in the grid's order.
    const QVector<QRgb> _colors;
    const QRectF _bounds;
};
