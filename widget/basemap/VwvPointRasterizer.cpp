#include "VwvPointRasterizer.h"

#include <KbbGlobal.h>
#include <VugColorScale.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

inline QRgb blend(QRgb dst, QRgb src)
{
    const uint a = qAlpha(src);
    if (a == 255)
        return src;
    const uint inv = 255 - a;
    // Source-over for premultiplied pixels, per channel.
    const auto mix = [inv](uint s, uint d) { return s + (d * inv + 127) / 255; };
    return qRgba(mix(qRed(src), qRed(dst)), mix(qGreen(src), qGreen(dst)), mix(qBlue(src), qBlue(dst)),
                 mix(a, qAlpha(dst)));
}

// The linear part of a scale map: pixel = offset + value * factor.
struct Axis
{
    double offset = 0.0;
    double factor = 0.0;
    explicit Axis(const QwtScaleMap& map)
    {
        const double s = map.s2() - map.s1();
        if (s != 0.0 && std::isfinite(s)) {
            factor = (map.p2() - map.p1()) / s;
            offset = map.p1() - map.s1() * factor;
        }
    }
};

struct Target
{
    QRgb* bits;
    int stride; // in pixels
    int width;
    int height;
};

// A disc of the given diameter as one run of pixels per row, offsets from its centre pixel:
// whole rows are written at once, and clipped as rows at the image's border.
struct Disc
{
    struct Span
    {
        int dy;
        int x0;
        int length;
        int offset; // dy rows and x0 pixels from the centre, in the target's pixels
    };
    std::vector<Span> spans;
    int reach = 0; // pixels the disc covers on each side of its centre pixel, at most

    Disc(int size, int stride)
    {
        const double r = size / 2.0;
        const int lo = -(size / 2);
        const int hi = lo + size - 1;
        reach = std::max(-lo, hi);
        // Pixel centres inside the circle; an even size is centred between pixels.
        const double shift = size % 2 ? 0.0 : 0.5;
        for (int dy = lo; dy <= hi; ++dy) {
            int first = hi + 1;
            int last = lo - 1;
            for (int dx = lo; dx <= hi; ++dx) {
                const double cx = dx + shift;
                const double cy = dy + shift;
                if (cx * cx + cy * cy <= r * r + 0.25) {
                    first = std::min(first, dx);
                    last = std::max(last, dx);
                }
            }
            if (first <= last)
                spans.push_back({dy, first, last - first + 1, dy * stride + first});
        }
    }

    // The disc whose centre pixel is (cx, cy), in colour c, wherever it lies.
    void stamp(const Target& t, int cx, int cy, QRgb c) const
    {
        if (cx >= reach && cy >= reach && cx < t.width - reach && cy < t.height - reach) {
            QRgb* const centre = t.bits + ptrdiff_t(cy) * t.stride + cx;
            if (qAlpha(c) == 255) {
                for (const Span& span : spans) {
                    QRgb* const row = centre + span.offset;
                    for (int k = 0; k < span.length; ++k)
                        row[k] = c;
                }
            } else {
                for (const Span& span : spans) {
                    QRgb* const row = centre + span.offset;
                    for (int k = 0; k < span.length; ++k)
                        row[k] = blend(row[k], c);
                }
            }
            return;
        }
        for (const Span& span : spans) {
            const int y = cy + span.dy;
            if (y < 0 || y >= t.height)
                continue;
            QRgb* const row = t.bits + ptrdiff_t(y) * t.stride;
            const int from = std::max(0, cx + span.x0);
            const int to = std::min(t.width, cx + span.x0 + span.length);
            for (int x = from; x < to; ++x)
                row[x] = blend(row[x], c);
        }
    }
};

// The sample's pixel: -1 when it lies off the image, or is not finite.
struct PixelOf
{
    Axis ax;
    Axis ay;
    double w;
    double h;
    int stride;

    int operator()(double x, double y) const
    {
        const double px = ax.offset + x * ax.factor;
        const double py = ay.offset + y * ay.factor;
        if (!(px >= 0.0 && px < w && py >= 0.0 && py < h))
            return -1;
        return int(py) * stride + int(px);
    }
};

// One colour for every sample, written without blending: the common case, in a function of
// its own so that everything it needs stays in registers.
void drawOpaqueDots(const Target& t, const PixelOf& pixelOf, const double* xs, const double* ys, int count, QRgb c)
{
    QRgb* const bits = t.bits;
    for (int i = 0; i < count; ++i) {
        const int at = pixelOf(xs[i], ys[i]);
        if (at >= 0)
            bits[at] = c;
    }
}

template <class ColorOf>
void drawDots(const Target& t, const PixelOf& pixelOf, const double* xs, const double* ys, int count,
              const ColorOf& colorOf)
{
    for (int i = 0; i < count; ++i) {
        const int at = pixelOf(xs[i], ys[i]);
        if (at < 0)
            continue;
        const QRgb c = colorOf(i);
        if (c != 0)
            t.bits[at] = blend(t.bits[at], c);
    }
}

template <class ColorOf>
void drawDiscs(const Target& t, const Disc& disc, const Axis& ax, const Axis& ay, const double* xs, const double* ys,
               int count, const ColorOf& colorOf)
{
    // A disc shows when its centre pixel lies within its reach of the image. The bias keeps
    // the conversion's argument positive, where truncating is flooring.
    const double lo = -disc.reach;
    const double right = t.width + disc.reach;
    const double bottom = t.height + disc.reach;
    const int bias = disc.reach + 1;
    for (int i = 0; i < count; ++i) {
        const double px = ax.offset + xs[i] * ax.factor;
        const double py = ay.offset + ys[i] * ay.factor;
        if (!(px >= lo && px < right && py >= lo && py < bottom))
            continue;
        const QRgb c = colorOf(i);
        if (c != 0)
            disc.stamp(t, int(px + bias) - bias, int(py + bias) - bias, c);
    }
}

} // namespace

VwvPointRasterizer::VwvPointRasterizer() = default;
VwvPointRasterizer::~VwvPointRasterizer() = default;

void VwvPointRasterizer::setPoints(const double* x, const double* y, int count)
{
    if (count < 0 || (count > 0 && (!x || !y))) {
        qWarning("VwvPointRasterizer::setPoints: %d points without coordinates refused", count);
        return;
    }
    _x = x;
    _y = y;
    _count = count;
}

void VwvPointRasterizer::setValues(const double* values, const VugColorScale& scale)
{
    if (!values) {
        clearValues();
        return;
    }
    _values = values;
    scale.fillLookupTable(_lookup, LOOKUP_SIZE);
    _valueMin = scale.getMin();
    const double range = scale.getMax() - scale.getMin();
    _valueScale = range > 0.0 ? (LOOKUP_SIZE - 1) / range : 0.0;
    if (!std::isfinite(_valueScale)) // a range narrower than a double's step over its size
        _valueScale = 0.0;
    // Premultiplied, as the image stores it.
    for (QRgb& c : _lookup)
        c = qPremultiply(c);
    _undefinedColor = qPremultiply(scale.getUndefinedColor());
}

void VwvPointRasterizer::clearValues()
{
    _values = nullptr;
    _lookup.clear();
}

void VwvPointRasterizer::setSelection(const KbiIntervalIntSmallDisjoint& selection)
{
    _selection = selection;
}

void VwvPointRasterizer::setStyle(const Style& style)
{
    if (style.size < 1 || style.size > 64) {
        qWarning("VwvPointRasterizer::setStyle: a point size of %d pixels is refused", style.size);
        return;
    }
    _style = style;
}

const VwvPointRasterizer::Style& VwvPointRasterizer::getStyle() const
{
    return _style;
}

void VwvPointRasterizer::draw(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const
{
    if (image.format() != QImage::Format_ARGB32_Premultiplied && image.format() != QImage::Format_RGB32) {
        qWarning("VwvPointRasterizer::draw: image format %d is not drawn into", int(image.format()));
        return;
    }
    const int width = image.width();
    const int height = image.height();
    if (width <= 0 || height <= 0 || _count == 0)
        return;
    const Axis ax(xMap);
    const Axis ay(yMap);
    if (ax.factor == 0.0 || ay.factor == 0.0)
        return;

    const int stride = image.bytesPerLine() / int(sizeof(QRgb));
    const Target target{reinterpret_cast<QRgb*>(image.bits()), stride, width, height};
    const QRgb uniform = qPremultiply(_style.color);
    const double* const xs = _x;
    const double* const ys = _y;
    const int count = _count;

    // The colour of sample i, premultiplied; 0 (transparent) is not drawn.
    const double* const values = _values;
    const QRgb* const lookup = _lookup.constData();
    const double valueMin = _valueMin;
    const double valueScale = _valueScale;
    const QRgb undefinedColor = _undefinedColor;
    const auto valueColor = [=](int i) -> QRgb {
        const double v = values[i];
        if (v == KbbGlobal::D_FFFF || !std::isfinite(v))
            return undefinedColor;
        const double t = (v - valueMin) * valueScale;
        // NaN (an overflowing difference times a zero scale) lands on the first entry.
        const int index = !(t > 0.0) ? 0 : t >= LOOKUP_SIZE - 1 ? LOOKUP_SIZE - 1 : int(t + 0.5);
        return lookup[index];
    };
    const auto uniformColor = [uniform](int) { return uniform; };
    const auto colorOf = [&](int i) { return values ? valueColor(i) : uniform; };

    if (_style.size == 1) {
        const PixelOf pixelOf{ax, ay, double(width), double(height), stride};
        if (!values && qAlpha(uniform) == 255)
            drawOpaqueDots(target, pixelOf, xs, ys, count, uniform);
        else if (values)
            drawDots(target, pixelOf, xs, ys, count, valueColor);
        else
            drawDots(target, pixelOf, xs, ys, count, uniformColor);
    } else {
        const Disc disc(_style.size, stride);
        if (values)
            drawDiscs(target, disc, ax, ay, xs, ys, count, valueColor);
        else
            drawDiscs(target, disc, ax, ay, xs, ys, count, uniformColor);
    }

    // Selected samples on top: a ring in the selection colour around the sample's own.
    if (_selection.isEmpty())
        return;
    const Disc ring(std::max(3, _style.size + 2), stride);
    const Disc core(std::max(1, _style.size), stride);
    const QRgb selection = qPremultiply(_style.selectionColor);
    const double lo = -ring.reach;
    const int bias = ring.reach + 1;
    for (const auto& interval : _selection.intervals()) {
        for (int i = interval.first; i <= interval.second && i < count; ++i) {
            const double px = ax.offset + xs[i] * ax.factor;
            const double py = ay.offset + ys[i] * ay.factor;
            if (!(px >= lo && px < width + ring.reach && py >= lo && py < height + ring.reach))
                continue;
            const int cx = int(px + bias) - bias;
            const int cy = int(py + bias) - bias;
            if (selection != 0)
                ring.stamp(target, cx, cy, selection);
            const QRgb own = colorOf(i);
            if (own != 0)
                core.stamp(target, cx, cy, own);
        }
    }
}
