#pragma once
// Draws a polyline set (faults, contours, traces) with one pen, the selected lines drawn
// again on top in the selection colour and width.

#include <velmora_widget_export.h>

#include <VsdPolylineSet.h>
#include <VwvIBasemapRenderer.h>

#include <QColor>
#include <QVector>

class VELMORA_WIDGET_EXPORT VwvBasemapRendererPolyline : public VwvIBasemapRenderer
{
public:
    struct Style
    {
        QColor color = QColor(40, 40, 40);
        double width = 1.0; // pixels, at least 1
        QColor selectionColor = QColor(230, 0, 0);
        double selectionWidth = 3.0; // pixels, at least 1
        bool antialiased = false;    // off by default: thousands of lines pan faster aliased
    };
    // Valid colours, widths finite within 1..64 pixels.
    static bool isValid(const Style& style);

    // An invalid style is refused with a qWarning and the default style drawn instead.
    explicit VwvBasemapRendererPolyline(const VsdPolylineSet& polylines, const KbiIntervalIntSmallDisjoint& selection = {});
    VwvBasemapRendererPolyline(const VsdPolylineSet& polylines, const KbiIntervalIntSmallDisjoint& selection, const Style& style);
    ~VwvBasemapRendererPolyline() override;

    const VsdPolylineSet& getPolylines() const;
    const KbiIntervalIntSmallDisjoint& getSelection() const;
    const Style& getStyle() const;

    QRectF boundingRect() const override;
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const override;
    qint64 renderCost() const override;
    int pointToRank(const QPointF& point, double tolerance) const override;
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const override;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const override;

private:
    const VsdPolylineSet _polylines;
    const KbiIntervalIntSmallDisjoint _selection;
    const Style _style;
    // One box per line, so that a zoomed view skips the lines it does not show.
    const QVector<QRectF> _boxes;
    const QRectF _bounds;
    const qint64 _vertexCount;
};
