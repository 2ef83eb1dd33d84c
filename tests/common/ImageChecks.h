#pragma once
// Pictures checked as the eye would, never byte for byte: one tolerance rule for a colour,
// counts of the pixels that match, and toString for failure messages.

#include <QColor>
#include <QImage>
#include <QSet>
#include <QString>
#include <functional>

namespace ImageChecks {

// The default tolerance: each channel within 8 units, what antialiasing and the GL
// rasterisers leave of a flat colour.
constexpr int kTolerance = 8;

inline bool near(QRgb actual, QRgb expected, int tolerance = kTolerance)
{
    return qAbs(qRed(actual) - qRed(expected)) <= tolerance && qAbs(qGreen(actual) - qGreen(expected)) <= tolerance
           && qAbs(qBlue(actual) - qBlue(expected)) <= tolerance;
}

inline bool near(QRgb actual, const QColor& expected, int tolerance = kTolerance)
{
    return near(actual, expected.rgb(), tolerance);
}

// Qt::white would otherwise convert to the QRgb 3, not to white.
inline bool near(QRgb actual, Qt::GlobalColor expected, int tolerance = kTolerance)
{
    return near(actual, QColor(expected).rgb(), tolerance);
}

// How many pixels satisfy the test.
inline int count(const QImage& image, const std::function<bool(QRgb)>& test)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    int n = 0;
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x)
            n += test(line[x]) ? 1 : 0;
    }
    return n;
}

inline int countNear(const QImage& image, const QColor& color, int tolerance = kTolerance)
{
    return count(image, [&](QRgb p) { return near(p, color, tolerance); });
}

// How many different colours the picture holds (opaque RGB).
inline int distinctColors(const QImage& image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    QSet<QRgb> colors;
    for (int y = 0; y < rgb.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        for (int x = 0; x < rgb.width(); ++x)
            colors.insert(line[x] | 0xff000000u);
    }
    return colors.size();
}

inline QString toString(QRgb c)
{
    return QStringLiteral("rgb(%1, %2, %3)").arg(qRed(c)).arg(qGreen(c)).arg(qBlue(c));
}

} // namespace ImageChecks
