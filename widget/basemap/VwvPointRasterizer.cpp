#include "VwvPointRasterizer.h"

#include <KbbGlobal.h>
#include <VugColorScale.h>

#include <cmath>

namespace {

// The pixels of a disc of the given diameter, as offsets from its centre pixel.
QVector<QPoint> discStamp(int size)
{
    QVector<QPoint> stamp;
    const double r = size / 2.0;
    const int lo = -(size / 2);
    const int hi = lo + size - 1;
    for (int dy = lo; dy <= hi; ++dy)
        for (int dx = lo; dx <= hi; ++dx) {
            // Pixel centres inside the circle; an even size is centred between pixels.
            const double cx = dx + (size % 2 ? 0.0 : 0.5);
            const double cy = dy + (size % 2 ? 0.0 : 0.5);
            if (cx * cx + cy * cy <= r * r + 0.25)
                stamp.append(QPoint(dx, dy));
        }
    return stamp;
}

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

    auto* const bits = reinterpret_cast<QRgb*>(image.bits());
    const int stride = image.bytesPerLine() / int(sizeof(QRgb));
    const double w = width;
    const double h = height;
    const QRgb uniform = qPremultiply(_style.color);
    const bool opaqueOnly = !_values && qAlpha(uniform) == 255;
    const double* const xs = _x;
    const double* const ys = _y;
    // A local copy: the pixel writes could alias the member, which would then be read
    // again at every sample.
    const int count = _count;

    // The colour of sample i, premultiplied; 0 (transparent) is not drawn.
    const auto colorOf = [&](int i) -> QRgb {
        if (!_values)
            return uniform;
        const double v = _values[i];
        if (v == KbbGlobal::D_FFFF || !std::isfinite(v))
            return _undefinedColor;
        const double t = (v - _valueMin) * _valueScale;
        // NaN (an overflowing difference times a zero scale) lands on the first entry.
        const int index = !(t > 0.0) ? 0 : t >= LOOKUP_SIZE - 1 ? LOOKUP_SIZE - 1 : int(t + 0.5);
        return _lookup[index];
    };

    if (_style.size == 1) {
        if (opaqueOnly) {
            // The common case, kept free of branches it does not need.
            for (int i = 0; i < count; ++i) {
                const double px = ax.offset + xs[i] * ax.factor;
                const double py = ay.offset + ys[i] * ay.factor;
                if (px >= 0.0 && px < w && py >= 0.0 && py < h)
                    bits[int(py) * stride + int(px)] = uniform;
            }
        } else {
            for (int i = 0; i < count; ++i) {
                const double px = ax.offset + xs[i] * ax.factor;
                const double py = ay.offset + ys[i] * ay.factor;
                if (!(px >= 0.0 && px < w && py >= 0.0 && py < h))
                    continue;
                const QRgb c = colorOf(i);
                if (c == 0)
                    continue;
                QRgb& pixel = bits[int(py) * stride + int(px)];
                pixel = blend(pixel, c);
            }
        }
    } else {
        const QVector<QPoint> stamp = discStamp(_style.size);
        const int reach = _style.size / 2 + 1;
        for (int i = 0; i < count; ++i) {
            const double px = ax.offset + xs[i] * ax.factor;
            const double py = ay.offset + ys[i] * ay.factor;
            if (!(px >= -reach && px < w + reach && py >= -reach && py < h + reach))
                continue;
            const QRgb c = colorOf(i);
            if (c == 0)
                continue;
            const int cx = int(std::floor(px));
            const int cy = int(std::floor(py));
            const bool inside = cx >= reach && cy >= reach && cx < width - reach && cy < height - reach;
            QRgb* const centre = bits + cy * stride + cx;
            for (const QPoint& d : stamp) {
                if (!inside) {
                    const int x = cx + d.x();
                    const int y = cy + d.y();
                    if (x < 0 || y < 0 || x >= width || y >= height)
                        continue;
                }
                QRgb& pixel = centre[d.y() * stride + d.x()];
                pixel = qAlpha(c) == 255 ? c : blend(pixel, c);
            }
        }
    }

    // Selected samples on top: a ring in the selection colour around the sample's own.
    if (_selection.isEmpty())
        return;
    const int ringSize = std::max(3, _style.size + 2);
    const QVector<QPoint> ring = discStamp(ringSize);
    const QVector<QPoint> core = discStamp(std::max(1, _style.size));
    const QRgb selection = qPremultiply(_style.selectionColor);
    for (const auto& interval : _selection.intervals()) {
        for (int i = interval.first; i <= interval.second && i < count; ++i) {
            const double px = ax.offset + xs[i] * ax.factor;
            const double py = ay.offset + ys[i] * ay.factor;
            if (!(px >= -ringSize && px < w + ringSize && py >= -ringSize && py < h + ringSize))
                continue;
            const int cx = int(std::floor(px));
            const int cy = int(std::floor(py));
            const QRgb own = colorOf(i);
            for (int pass = 0; pass < 2; ++pass) {
                const QRgb c = pass == 0 ? selection : own;
                if (c == 0)
                    continue;
                for (const QPoint& d : pass == 0 ? ring : core) {
                    const int x = cx + d.x();
                    const int y = cy + d.y();
                    if (x >= 0 && y >= 0 && x < width && y < height) {
                        QRgb& pixel = bits[y * stride + x];
                        pixel = blend(pixel, c);
                    }
                }
            }
        }
    }
}
