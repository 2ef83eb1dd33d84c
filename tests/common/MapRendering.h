#pragma once
// What the map's layer and renderer suites draw and look at: 100 x 100 canvases of map
// units, sample polygons, polylines and grids, each renderer in known colours, the point
// rasterizer on a white canvas, and colours compared with their opacity.

#include "ImageChecks.h"
#include "MapTestData.h"
#include "MapTestKit.h"
#include <KbbGlobal.h>
#include <KbiIntervalIntSmallDisjoint.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>
#include <VugColorScale.h>
#include <VwvBasemapRenderer.h>
#include <VwvBasemapRendererGridWire.h>
#include <VwvBasemapRendererPolygon.h>
#include <VwvBasemapRendererPolyline.h>
#include <VwvBasemapRendererRaster.h>
#include <VwvPointRasterizer.h>

#include <memory>

namespace MapRendering {

using MapTest::Canvas;

inline std::shared_ptr<VwvBasemapRenderer> points(const QVector<QPointF>& at, const QVector<int>& selected = {})
{
    VsdPointSet set = MapTest::pointSet(at);
    set.select(KbiIntervalIntSmallDisjoint::fromList(selected));
    return std::make_shared<VwvBasemapRenderer>(set);
}


// Colours compared with their opacity, which the renderers' fills carry.
inline bool close(QRgb a, QRgb b)
{
    return ImageChecks::near(a, b, 4) && std::abs(qAlpha(a) - qAlpha(b)) <= 4;
}

inline Canvas drawn(const VwvIBasemapRenderer& renderer, Canvas c)
{
    renderer.render(c.image, c.xMap, c.yMap);
    return c;
}

inline Canvas drawn(const VwvIBasemapRenderer& renderer, QImage::Format format = QImage::Format_ARGB32_Premultiplied)
{
    return drawn(renderer, Canvas(format));
}

// Whether a pixel within one of the map point's has the colour: aliased edges fall on
// either side of a line through pixel corners.
inline bool near(const Canvas& c, const QPointF& map, QRgb color)
{
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx) {
            const QPointF p = map + QPointF(dx, dy);
            if (p.x() >= 0 && p.x() < 100 && p.y() > 0 && p.y() <= 100 && close(c.at(p), color))
                return true;
        }
    return false;
}

inline QPolygonF square(double x0, double y0, double x1, double y1)
{
    return QPolygonF(QVector<QPointF>{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}});
}

// A square of 10..90 with a hole of 40..60, and a small square of 92..98 beside it.
inline VsdPolygonSet samplePolygons()
{
    VsdPolygonSet set;
    set.append(square(10, 10, 90, 90), {square(40, 40, 60, 60)});
    set.append(square(92, 92, 98, 98));
    return set;
}

// A line along y = 20 and another along y = 70.
inline VsdPolylineSet samplePolylines()
{
    VsdPolylineSet set;
    set.append(QPolygonF(QVector<QPointF>{{10, 20}, {90, 20}}));
    set.append(QPolygonF(QVector<QPointF>{{10, 70}, {50, 70}, {90, 70}}));
    return set;
}

// 10 x 10 cells of 10 units covering 0..100, the value of node (i, j) being i + 10 j, the
// node (9, 9) undefined.
inline VsdGrid sampleGrid(double angle = 0.0)
{
    VsdGrid grid(QPointF(5, 5), 10, 10, 10, 10, angle);
    QVector<double> values(100);
    for (int k = 0; k < 100; ++k)
        values[k] = k;
    values[99] = KbbGlobal::D_FFFF;
    grid.setValues(values);
    return grid;
}

inline VugColorScale grey099()
{
    VugColorScale scale = VugColorScale::grayscale();
    scale.setRange(0, 99);
    return scale;
}

const QRgb FILL = qRgba(0, 0, 255, 128);
const QRgb OUTLINE = qRgb(0, 128, 0);
const QRgb SELECTION = qRgb(255, 0, 0);
const QRgb NONE = qRgba(0, 0, 0, 0);

// "polygon", "selected polygon" (the first), "polyline" (the second line selected), "wire",
// "turned wire" (45 degrees), "raster" or "turned raster" (a quarter turn), drawn in the
// colours above; empty: over no data.
inline std::shared_ptr<VwvIBasemapRenderer> rendererOf(const QString& kind, bool empty = false)
{
    if (kind.endsWith(QLatin1String("polygon"))) {
        VwvBasemapRendererPolygon::Style style;
        style.fillColor = QColor::fromRgba(FILL);
        style.outlineColor = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        const bool selected = kind.startsWith(QLatin1String("selected"));
        return std::make_shared<VwvBasemapRendererPolygon>(empty ? VsdPolygonSet() : samplePolygons(),
                                                           selected ? KbiIntervalIntSmallDisjoint(0) : KbiIntervalIntSmallDisjoint(), style);
    }
    if (kind == QLatin1String("polyline")) {
        VwvBasemapRendererPolyline::Style style;
        style.color = QColor::fromRgba(OUTLINE);
        style.selectionColor = QColor::fromRgba(SELECTION);
        return empty ? std::make_shared<VwvBasemapRendererPolyline>(VsdPolylineSet(), KbiIntervalIntSmallDisjoint(), style)
                     : std::make_shared<VwvBasemapRendererPolyline>(samplePolylines(), KbiIntervalIntSmallDisjoint(1), style);
    }
    const double angle = !kind.startsWith(QLatin1String("turned")) ? 0.0 : kind.endsWith(QLatin1String("wire")) ? 45.0 : 90.0;
    const VsdGrid grid = empty ? VsdGrid() : sampleGrid(angle);
    if (kind.endsWith(QLatin1String("raster")))
        return std::make_shared<VwvBasemapRendererRaster>(grid, grey099());
    VwvBasemapRendererGridWire::Style style;
    style.color = QColor::fromRgba(OUTLINE);
    return std::make_shared<VwvBasemapRendererGridWire>(grid, style);
}

// A white canvas of 0..100 by 0..100 map units, drawn into by a rasterizer.
struct WhiteCanvas : MapTest::Canvas
{
    WhiteCanvas()
        : MapTest::Canvas(QImage::Format_ARGB32_Premultiplied, Qt::white)
    {
    }
    void draw(const VwvPointRasterizer& r) { r.draw(image, xMap, yMap); }
    int countOf(QRgb color) const { return ImageChecks::count(image, [color](QRgb p) { return p == color; }); }
    int notWhite() const { return image.width() * image.height() - countOf(qRgb(255, 255, 255)); }
};

inline VwvPointRasterizer rasterizer(const double* x, const double* y, int count, int size = 1, QRgb color = qRgb(0, 0, 0))
{
    VwvPointRasterizer r;
    VwvPointRasterizer::Style style;
    style.size = size;
    style.color = color;
    r.setStyle(style);
    r.setPoints(x, y, count);
    return r;
}

} // namespace MapRendering
