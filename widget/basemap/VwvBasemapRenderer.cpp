#include "VwvBasemapRenderer.h"

#include <cmath>

namespace {

// A copy of the set selecting the ranks it holds. Only the selection is detached: the
// coordinate and value columns stay shared with the source.
VsdPointSet withRanksSelected(const VsdPointSet& points, const KbiIntervalIntSmallDisjoint& ranks)
{
    VsdPointSet copy = points;
    KbiIntervalIntSmallDisjoint within;
    if (!points.isEmpty() && !ranks.isEmpty())
        within = ranks & KbiIntervalIntSmallDisjoint(0, points.size() - 1);
    if (copy.selection() != within) {
        copy.clearSelection();
        copy.select(within);
    }
    return copy;
}

} // namespace

VwvBasemapRenderer::VwvBasemapRenderer(const VsdPointSet& points, const QString& variable,
                                       const VugColorScale& scale, const VwvPointRasterizer::Style& style)
    : _points(points)
    , _variable(variable)
    , _values(variable.isEmpty() ? QVector<double>() : points.variable(variable))
    , _scale(scale)
    , _style(style)
    , _bounds(points.framingRect())
{
}

VwvBasemapRenderer::VwvBasemapRenderer(const VwvBasemapRenderer& source, const KbiIntervalIntSmallDisjoint& selection)
    : _points(withRanksSelected(source._points, selection))
    , _variable(source._variable)
    , _values(source._values)
    , _scale(source._scale)
    , _style(source._style)
    , _bounds(source._bounds)
{
}

VwvBasemapRenderer::~VwvBasemapRenderer() = default;

const VsdPointSet& VwvBasemapRenderer::getPoints() const
{
    return _points;
}

const QString& VwvBasemapRenderer::getVariable() const
{
    return _variable;
}

QRectF VwvBasemapRenderer::boundingRect() const
{
    return _bounds;
}

void VwvBasemapRenderer::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    render(image, xMap, yMap, 1.0);
}

void VwvBasemapRenderer::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                                qreal pixelRatio) const
{
    VwvPointRasterizer rasterizer;
    VwvPointRasterizer::Style style = _style;
    // Sizes are logical pixels; a one-pixel dot stays one device pixel, as fine as the screen.
    if (style.size > 1 && pixelRatio > 1.0 && std::isfinite(pixelRatio))
        style.size = int(std::lround(style.size * std::min(pixelRatio, 4.0)));
    rasterizer.setStyle(style);
    rasterizer.setPoints(_points.x().constData(), _points.y().constData(), _points.size());
    if (_values.size() == _points.size() && !_values.isEmpty())
        rasterizer.setValues(_values.constData(), _scale);
    rasterizer.setSelection(_points.selection());
    rasterizer.draw(image, xMap, yMap);
}

qint64 VwvBasemapRenderer::renderCost() const
{
    return qint64(_points.size()) * _style.size * _style.size;
}

int VwvBasemapRenderer::pointToRank(const QPointF& point, double tolerance) const
{
    return _points.nearestRank(point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapRenderer::rectangleToRank(const QRectF& rect) const
{
    return _points.ranksInRect(rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapRenderer::polygonToRanks(const QPolygonF& polygon) const
{
    return _points.ranksInPolygon(polygon);
}

QPointF VwvBasemapRenderer::rankPosition(int rank) const
{
    if (rank < 0 || rank >= _points.size())
        return VwvIBasemapRenderer::rankPosition(rank);
    return _points.point(rank);
}

KbiIntervalIntSmallDisjoint VwvBasemapRenderer::selection() const
{
    return _points.selection();
}

std::shared_ptr<const VwvIBasemapRenderer>
VwvBasemapRenderer::withSelection(const KbiIntervalIntSmallDisjoint& ranks) const
{
    return std::shared_ptr<const VwvIBasemapRenderer>(new VwvBasemapRenderer(*this, ranks));
}
