#include "KbcValueRange.h"

#include <KbbGlobal.h>

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

bool isDefined(double v)
{
    return std::isfinite(v) && v != KbbGlobal::D_FFFF;
}

// The values beyond [low, high] are far outside the others; false when no value can be
// told to be (two values, or a bulk of zeros).
bool bulkFences(const double* values, qint64 count, qint64 defined, double& low, double& high)
{
    // Where the bulk lies: every k-th defined value, so that undefined ones cannot leave
    // the sample empty. Without any, the sample is read straight from its places.
    const qint64 every = std::max<qint64>(1, defined / KbcValueRange::SAMPLE_SIZE);
    std::vector<double> sample;
    sample.reserve(size_t(defined / every + 1));
    if (defined == count) {
        for (qint64 i = 0; i < count; i += every)
            sample.push_back(values[i]);
    } else {
        for (qint64 i = 0, skip = 0; i < count; ++i)
            if (isDefined(values[i]) && skip-- == 0) {
                sample.push_back(values[i]);
                skip = every - 1;
            }
    }
    // Ranks rounded inwards, so that in a small set the extremes are never the percentiles:
    // among eleven values the second and the tenth stand for them.
    const size_t last = sample.size() - 1;
    const size_t lo = size_t(std::ceil(0.02 * double(last)));
    const size_t hi = size_t(std::floor(0.98 * double(last)));
    if (lo > hi)
        return false;
    std::nth_element(sample.begin(), sample.begin() + lo, sample.end());
    const double p2 = sample[lo];
    // Those above the 2nd percentile's place are the larger ones: the 98th is among them.
    std::nth_element(sample.begin() + lo, sample.begin() + hi, sample.end());
    const double p98 = sample[hi];
    // An overflowing spread makes the fences infinite: nothing is then far outside.
    double spread = p98 - p2;
    // A bulk of one value has no spread: a value is then far outside only when it differs
    // from it by orders of magnitude (1e30 among northings of 431000, not -500 among
    // depths of 10); a bulk of zeros has nothing far outside.
    if (spread == 0.0)
        spread = 1000.0 * std::abs(p2);
    low = p2 - KbcValueRange::FAR_FACTOR * spread;
    high = p98 + KbcValueRange::FAR_FACTOR * spread;
    return spread > 0.0;
}

QString values(qint64 n)
{
    return n == 1 ? QCoreApplication::translate("KbcValueRange", "1 value")
                  : QCoreApplication::translate("KbcValueRange", "%1 values").arg(n);
}

} // namespace

KbcValueRange KbcValueRange::of(const QVector<double>& values)
{
    return of(values.constData(), values.size());
}

KbcValueRange KbcValueRange::of(const double* values, qint64 count)
{
    KbcValueRange r;
    if (!values || count <= 0)
        return r;
    qint64 defined = 0;
    double lowest = HUGE_VAL;
    double highest = -HUGE_VAL;
    for (qint64 i = 0; i < count; ++i) {
        const double v = values[i];
        if (!std::isfinite(v)) {
            ++r._nonFinite;
        } else if (v != KbbGlobal::D_FFFF) {
            ++defined;
            lowest = std::min(lowest, v);
            highest = std::max(highest, v);
        }
    }
    if (defined == 0)
        return r;
    r._lowest = r._min = lowest;
    r._highest = r._max = highest;
    r._count = defined;

    double low = -HUGE_VAL;
    double high = HUGE_VAL;
    if (bulkFences(values, count, defined, low, high) && (lowest < low || highest > high)) {
        double min = HUGE_VAL;
        double max = -HUGE_VAL;
        qint64 within = 0;
        for (qint64 i = 0; i < count; ++i) {
            const double v = values[i];
            if (isDefined(v) && v >= low && v <= high) {
                ++within;
                min = std::min(min, v);
                max = std::max(max, v);
            }
        }
        r._min = min;
        r._max = max;
        r._count = within;
        r._outside = defined - within;
    }
    // Colour scales divide by the width: it must be a finite number.
    if (!std::isfinite(r._max - r._min)) {
        const double limit = std::numeric_limits<double>::max() / 2.0;
        r._min = std::max(r._min, -limit);
        r._max = std::min(r._max, limit);
    }
    return r;
}

QRectF KbcValueRange::framingRect(const QVector<double>& x, const QVector<double>& y)
{
    const KbcValueRange xRange = of(x);
    const KbcValueRange yRange = of(y);
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
    for (int i = 0, n = std::min(x.size(), y.size()); i < n; ++i) {
        if (!isDefined(x[i]) || !isDefined(y[i]) || !xRange.contains(x[i]) || !yRange.contains(y[i]))
            continue;
        minX = std::min(minX, x[i]);
        maxX = std::max(maxX, x[i]);
        minY = std::min(minY, y[i]);
        maxY = std::max(maxY, y[i]);
    }
    return minX > maxX ? QRectF() : QRectF(QPointF(minX, minY), QPointF(maxX, maxY));
}

QString KbcValueRange::describeLeftOut() const
{
    QStringList parts;
    if (_outside > 0) {
        QStringList extremes;
        if (_lowest < _min)
            extremes << QString::number(_lowest, 'g', 3);
        if (_highest > _max)
            extremes << QString::number(_highest, 'g', 3);
        parts << QCoreApplication::translate("KbcValueRange", "%1 far outside the others (%2)")
                     .arg(values(_outside), extremes.join(QLatin1String(", ")));
    }
    if (_nonFinite > 0)
        parts << (_nonFinite == 1
                      ? QCoreApplication::translate("KbcValueRange", "1 value that is not a number (NaN or infinite)")
                      : QCoreApplication::translate("KbcValueRange", "%1 values that are not numbers (NaN or infinite)")
                            .arg(_nonFinite));
    return parts.join(QLatin1String(", "));
}
