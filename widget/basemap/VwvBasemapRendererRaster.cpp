#include "VwvBasemapRendererRaster.h"

#include "VwvBasemapRendererSupport.h"

#include <QPainter>

#include <cmath>

namespace {

VwvBasemapRendererRaster::Style checked(const VwvBasemapRendererRaster::Style& style)
{
    if (VwvBasemapRendererRaster::isValid(style))
        return style;
    qWarning("VwvBasemapRendererRaster: style refused (opacity %g, lookup size %d), the default style is used",
             style.opacity, style.lookupSize);
    return VwvBasemapRendererRaster::Style();
}

QRgb premultiplied(QRgb color, double opacity)
{
    const int alpha = int(qAlpha(color) * opacity + 0.5);
    return qPremultiply(qRgba(qRed(color), qGreen(color), qBlue(color), alpha));
}

QVector<QRgb> colorsOf(const VsdGrid& grid, const VugColorScale& scale, const VwvBasemapRendererRaster::Style& style)
{
    QVector<QRgb> table;
    if (!scale.fillLookupTable(table, style.lookupSize))
        return QVector<QRgb>(grid.values().size(), 0);
    for (QRgb& color : table)
        color = premultiplied(color, style.opacity);
    const QRgb undefined = premultiplied(scale.getUndefinedColor(), style.opacity);
    QVector<QRgb> colors(grid.values().size());
    const double* values = grid.values().constData();
    QRgb* out = colors.data();
    for (int k = 0; k < colors.size(); ++k) {
        const int index = scale.getLookupIndex(values[k], style.lookupSize);
        out[k] = index < 0 ? undefined : table.at(index);
    }
    return colors;
}

// Source over destination, both premultiplied.
inline QRgb over(QRgb src, QRgb dst)
{
    const uint inverse = 255 - qAlpha(src);
    const auto mix = [inverse](uint s, uint d) { return s + (d * inverse + 127) / 255; };
    return qRgba(mix(qRed(src), qRed(dst)), mix(qGreen(src), qGreen(dst)), mix(qBlue(src), qBlue(dst)),
                 mix(qAlpha(src), qAlpha(dst)));
}

} // namespace

bool VwvBasemapRendererRaster::isValid(const Style& style)
{
    return style.opacity >= 0.0 && style.opacity <= 1.0 && style.lookupSize >= 2
        && style.lookupSize <= VugColorScale::MAX_LOOKUP_SIZE;
}

VwvBasemapRendererRaster::VwvBasemapRendererRaster(const VsdGrid& grid, const VugColorScale& scale, const Style& style)
    : _grid(grid)
    , _scale(scale)
    , _style(checked(style))
    , _colors(colorsOf(grid, scale, _style))
    , _bounds(grid.boundingRect())
{
}

VwvBasemapRendererRaster::VwvBasemapRendererRaster(const VsdGrid& grid, const VugColorScale& scale)
    : VwvBasemapRendererRaster(grid, scale, Style())
{
}

VwvBasemapRendererRaster::~VwvBasemapRendererRaster() = default;

const VsdGrid& VwvBasemapRendererRaster::getGrid() const
{
    return _grid;
}

const VugColorScale& VwvBasemapRendererRaster::getScale() const
{
    return _scale;
}

const VwvBasemapRendererRaster::Style& VwvBasemapRendererRaster::getStyle() const
{
    return _style;
}

QRectF VwvBasemapRendererRaster::boundingRect() const
{
    return _bounds;
}

void VwvBasemapRendererRaster::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    if (_grid.isEmpty() || !VwvBasemapRendererSupport::canDraw(image, xMap, yMap))
        return;
    if (image.format() == QImage::Format_ARGB32_Premultiplied || image.format() == QImage::Format_RGB32) {
        _renderDirect(image, xMap, yMap);
        return;
    }
    QImage layer(image.size(), QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    _renderDirect(layer, xMap, yMap);
    QPainter(&image).drawImage(0, 0, layer);
}

void VwvBasemapRendererRaster::_renderDirect(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    const int width = image.width();
    const int height = image.height();
    const int nx = _grid.nx();
    const int ny = _grid.ny();
    const double radians = _grid.angle() * (3.14159265358979323846 / 180.0);
    const double c = std::cos(radians);
    const double s = std::sin(radians);
    const QPointF origin = _grid.origin();

    // The turn is linear, so a pixel centre's cell coordinates (in cells, shifted by half a
    // cell so that truncation finds the cell) are a column's part plus a row's part.
    QVector<double> columnU(width), columnV(width), rowU(height), rowV(height);
    for (int px = 0; px < width; ++px) {
        const double x = xMap.invTransform(px + 0.5) - origin.x();
        columnU[px] = x * c / _grid.dx();
        columnV[px] = -x * s / _grid.dy();
    }
    for (int py = 0; py < height; ++py) {
        const double y = yMap.invTransform(py + 0.5) - origin.y();
        rowU[py] = y * s / _grid.dx() + 0.5;
        rowV[py] = y * c / _grid.dy() + 0.5;
    }

    const QRgb* colors = _colors.constData();
    const double* cu = columnU.constData();
    const double* cv = columnV.constData();
    const double nxLimit = nx;
    const double nyLimit = ny;
    for (int py = 0; py < height; ++py) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(py));
        const double ru = rowU[py];
        const double rv = rowV[py];
        for (int px = 0; px < width; ++px) {
            const double u = cu[px] + ru;
            const double v = cv[px] + rv;
            // Also false for NaN: a pixel outside the grid is left as it is.
            if (!(u >= 0.0 && u < nxLimit && v >= 0.0 && v < nyLimit))
                continue;
            const QRgb color = colors[int(v) * nx + int(u)];
            const uint alpha = qAlpha(color);
            if (alpha == 255)
                line[px] = color;
            else if (alpha != 0)
                line[px] = over(color, line[px]);
        }
    }
}

qint64 VwvBasemapRendererRaster::renderCost() const
{
    return qint64(_grid.nx()) * _grid.ny();
}

int VwvBasemapRendererRaster::pointToRank(const QPointF& point, double tolerance) const
{
    return VwvBasemapRendererSupport::gridPointToRank(_grid, point, tolerance);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererRaster::rectangleToRank(const QRectF& rect) const
{
    return VwvBasemapRendererSupport::gridRectangleToRanks(_grid, rect);
}

KbiIntervalIntSmallDisjoint VwvBasemapRendererRaster::polygonToRanks(const QPolygonF& polygon) const
{
    return VwvBasemapRendererSupport::gridPolygonToRanks(_grid, polygon);
}
