#pragma once
// Draws a point set: every sample a pixel or a small disc, coloured by one of its
// variables through a colour scale (or in one colour), the selected samples ringed.

#include <velmora_widget_export.h>

#include <VsdPointSet.h>
#include <VugColorScale.h>
#include <VwvIBasemapRenderer.h>
#include <VwvPointRasterizer.h>

class VELMORA_WIDGET_EXPORT VwvBasemapRenderer : public VwvIBasemapRenderer
{
public:
    // An empty or unknown variable draws every sample in the style's colour.
    VwvBasemapRenderer(const VsdPointSet& points, const QString& variable = QString(),
                       const VugColorScale& scale = VugColorScale::rainbow(),
                       const VwvPointRasterizer::Style& style = VwvPointRasterizer::Style());
    ~VwvBasemapRenderer() override;

    const VsdPointSet& getPoints() const;
    const QString& getVariable() const;

    QRectF boundingRect() const override;
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const override;
    void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap, qreal pixelRatio) const override;
    qint64 renderCost() const override;
    int pointToRank(const QPointF& point, double tolerance) const override;
    KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const override;
    KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const override;
    QPointF rankPosition(int rank) const override;
    KbiIntervalIntSmallDisjoint selection() const override;
    std::shared_ptr<const VwvIBasemapRenderer> withSelection(const KbiIntervalIntSmallDisjoint& ranks) const override;

private:
    // The source's drawing over the same data, with another selection.
    VwvBasemapRenderer(const VwvBasemapRenderer& source, const KbiIntervalIntSmallDisjoint& selection);

    const VsdPointSet _points;
    const QString _variable;
    const QVector<double> _values; // shares the set's column
    const VugColorScale _scale;
    const VwvPointRasterizer::Style _style;
    const QRectF _bounds;
};
