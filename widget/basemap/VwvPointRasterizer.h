#pragma once
// Draws a point set straight into an image: one pixel or a small filled disc per sample,
// in one colour or coloured by a variable through a colour scale, selected samples on
// top with a ring. Millions of points are written as pixels, not painter calls; the
// work is a pure function of its inputs, so a layer may run it on a worker thread.

#include <velmora_widget_export.h>

#include <KbiIntervalIntSmallDisjoint.h>

#include <QImage>
#include <QVector>
#include <qwt_scale_map.h>

class VugColorScale;

class VELMORA_WIDGET_EXPORT VwvPointRasterizer
{
public:
    struct Style
    {
        int size = 1;                        // pixels across: 1 is a pixel, more a disc
        QRgb color = qRgb(0, 0, 0);          // without values
        QRgb selectionColor = qRgb(230, 0, 0);
    };

    VwvPointRasterizer();
    ~VwvPointRasterizer();

    // The coordinates are not copied: they must outlive the drawing.
    void setPoints(const double* x, const double* y, int count);
    // Colours by value (not copied either); null draws every point in the style's colour.
    // Samples with an undefined value take the scale's undefined colour, and are left out
    // when it is transparent.
    void setValues(const double* values, const VugColorScale& scale);
    void clearValues();
    void setSelection(const KbiIntervalIntSmallDisjoint& selection);
    // A size below 1 or above 64 is refused with a warning.
    void setStyle(const Style& style);
    const Style& getStyle() const;

    // Draws through the maps (map coordinates to image pixels) into an image of format
    // ARGB32_Premultiplied or RGB32; points off the image are skipped.
    void draw(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const;

private:
    static constexpr int LOOKUP_SIZE = 1024;

    const double* _x = nullptr;
    const double* _y = nullptr;
    int _count = 0;
    const double* _values = nullptr;
    QVector<QRgb> _lookup;
    double _valueMin = 0.0;
    double _valueScale = 0.0;
    QRgb _undefinedColor = 0;
    KbiIntervalIntSmallDisjoint _selection;
    Style _style;
};
