#pragma once
// What the map renderers share: the checks that a drawing can be made at all (an image and
// scale maps without NaN or zero spans), the visible part of the map, a style width check,
// and the picks on a grid, whose cells the wireframe and the raster renderers both answer.

#include <KbiIntervalIntSmallDisjoint.h>
#include <VsdGrid.h>

#include <QImage>
#include <QPolygonF>
#include <QRectF>
#include <qwt_scale_map.h>

namespace VwvBasemapRendererSupport {

// The widest pen a style may ask for, in pixels.
constexpr double MAX_WIDTH = 64.0;

// A non-null image and maps with finite, non-empty scale and paint intervals.
bool canDraw(const QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap);
// The map rectangle the image shows.
QRectF visibleRect(const QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap);
// Each vertex through the maps.
QPolygonF toPixels(const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QPolygonF& points);
// The extent a view frames of these lines or rings: their vertices' bounds without the
// vertices far outside the others (KbcValueRange), as a point set's framingRect().
QRectF framingRect(const QVector<QPolygonF>& lines);
// Finite and within [minimum, MAX_WIDTH].
bool isWidth(double width, double minimum);

// The cell holding the point, else the nearest cell whose edge is within the tolerance
// (map units); -1 when none. A negative or NaN tolerance is refused with a qWarning.
int gridPointToRank(const VsdGrid& grid, const QPointF& point, double tolerance);
// The cells whose node (the cell's centre) lies in the rectangle or the polygon's area
// (odd-even rule, edges included).
KbiIntervalIntSmallDisjoint gridRectangleToRanks(const VsdGrid& grid, const QRectF& rect);
KbiIntervalIntSmallDisjoint gridPolygonToRanks(const VsdGrid& grid, const QPolygonF& polygon);

} // namespace VwvBasemapRendererSupport
