#pragma once
// Draws a polygon set: each polygon filled (its holes left open by the odd-even rule) and
// outlined, the selected ones outlined again on top in the selection colour. Aliased, as a
// map of thousands of zones is redrawn at every pan.

#include <velmora_widget_export.h>

#include <VsdPolygonSet.h>
#include <VwvIBasemapRenderer.h>

#include <QColor>
#include <QVector>

class VELMORA_WIDGET_EXPORT VwvBasemapRendererPolygon : public VwvIBasemapRenderer
{
public:
    struct Style
    {
        QColor fillColor = QColor(70, 130, 180, 90); // translucent, so what lies below shows
        QColor outlineColor = QColor(30, 60, 110);
        double outlineWidth = 1.0; // pixels; 0 draws no outline
        QColor selectionColor = QColor(230, 0, 0);
        double selectionWidth = 2.0; // pixels, at least 1
    };
    // Valid colours, widths finite and at most 64 pixels.
    static bool isValid(const Style& style);

    // An invalid style is refused with a qWarning and the default style drawn instead.
    explicit VwvBasemapRendererPolygon(const VsdPolygonSet& polygons, const KbiIntervalIntSmallDisjoint& selection = {});
    VwvBasemapRendererPolygon(const VsdPolygonSet& polygons, const KbiIntervalIntSmallDisjoint& selection, const Style& style);
    ~VwvBasemapRendererPolygon() override;

    const VsdPolygonSet& getPolygons() const;
    const KbiIntervalIntSmallDisjoint& getSelection() const;
    const Style& getStyle() const;

    QRectF boundingRect() const override;
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const override;
    qint64 renderCost() const override;
    int pointToRank(const QPointF& point, double tolerance) const override;
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const override;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const override;

private:
    const VsdPolygonSet _polygons;
    const KbiIntervalIntSmallDisjoint _selection;
    const Style _style;
    // One box per polygon, so that a zoomed view skips the polygons it does not show.
    const QVector<QRectF> _boxes;
    const QRectF _bounds;
    const qint64 _vertexCount;
};
