#pragma once
// Draws a grid's cell outlines as lines, turned with the grid. When cells would be smaller
// than MIN_CELL_PIXELS on screen, only the outline of the whole grid is drawn: a dense
// grid seen whole would otherwise be a solid patch of a million lines.

#include <velmora_widget_export.h>

#include <VsdGrid.h>
#include <VwvIBasemapRenderer.h>

#include <QColor>

class VELMORA_WIDGET_EXPORT VwvBasemapRendererGridWire : public VwvIBasemapRenderer
{
public:
    static constexpr double MIN_CELL_PIXELS = 2.0;

    struct Style
    {
        QColor color = QColor(90, 90, 90);
        double width = 1.0; // pixels, at least 1
    };
    // A valid colour, a width finite within 1..64 pixels.
    static bool isValid(const Style& style);

    // An invalid style is refused with a qWarning and the default style drawn instead.
    explicit VwvBasemapRendererGridWire(const VsdGrid& grid);
    VwvBasemapRendererGridWire(const VsdGrid& grid, const Style& style);
    ~VwvBasemapRendererGridWire() override;

    const VsdGrid& getGrid() const;
    const Style& getStyle() const;

    QRectF boundingRect() const override;
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const override;
    qint64 renderCost() const override;
    // Picks answer cells, as VwvBasemapRendererRaster's do.
    int pointToRank(const QPointF& point, double tolerance) const override;
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const override;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const override;

private:
    const VsdGrid _grid;
    const Style _style;
    const QRectF _bounds;
};
