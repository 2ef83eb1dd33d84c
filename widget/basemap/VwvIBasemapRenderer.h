#pragma once
// Draws one item of a map scene and answers picks on it. A renderer does not change once
// made (a new style or selection makes a new one), so that a layer can hand it to a
// worker thread to draw while the GUI thread goes on.

#include <velmora_widget_export.h>

#include <KbiIntervalIntSmallDisjoint.h>

#include <QImage>
#include <QPolygonF>
#include <QRectF>
#include <qwt_scale_map.h>

#include <memory>

class VELMORA_WIDGET_EXPORT VwvIBasemapRenderer
{
public:
    virtual ~VwvIBasemapRenderer();

    // The extent of what it draws, in map coordinates, for views to frame: samples or
    // vertices far outside the others (KbcValueRange) are left out of it, so that one wrong
    // coordinate cannot make "view all" show everything else as a dot. Empty when there is
    // nothing.
    virtual QRectF boundingRect() const = 0;
    // Draws into a transparent ARGB32_Premultiplied image through the maps (map to image
    // pixels). May run on a worker thread: it reads only its own data.
    virtual void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const = 0;
    // The same for a screen of pixelRatio device pixels per logical pixel: the image and
    // the maps are in device pixels, and marks sized in logical pixels (points, symbols)
    // grow by the ratio. By default, the drawing above.
    virtual void render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap, qreal pixelRatio) const;
    // About how many marks a drawing makes: small drawings are done on the spot.
    virtual qint64 renderCost() const = 0;

    // The rank of the nearest sample within the tolerance (map units), or -1.
    virtual int pointToRank(const QPointF& point, double tolerance) const = 0;
    virtual KbiIntervalIntSmallDisjoint rectangleToRank(const QRectF& rect) const = 0;
    virtual KbiIntervalIntSmallDisjoint polygonToRanks(const QPolygonF& polygon) const = 0;
    // Where the sample of that rank lies, for snapping onto it; (NaN, NaN) when the
    // renderer's samples have no single position.
    virtual QPointF rankPosition(int rank) const;

    // The selected sample ranks it rings; empty for a kind that cannot select.
    virtual KbiIntervalIntSmallDisjoint selection() const;
    // The same drawing with these ranks selected, those outside its samples dropped; the
    // data are shared, not copied. Null when the kind cannot select.
    virtual std::shared_ptr<const VwvIBasemapRenderer> withSelection(const KbiIntervalIntSmallDisjoint& ranks) const;
};
