#include "KbcAlgorithm.h"

#include <QtGlobal>
#include <algorithm>
#include <cmath>

namespace {

// Digits a positive value is written with when it must resolve 10^resolution: from the
// leading digit down to the units or to the resolution, whichever is finer. The integer
// digits all count, since a label that drops them turns into exponent notation.
int writtenDigits(double value, int resolution)
{
    if (value < KbcAlgorithm::getPowerOfTen(resolution))
        return 1;
    return KbcAlgorithm::getDecade(value) - std::min(resolution, 0) + 1;
}

// `value` rounded down to a multiple of 10^exponent; negative exponents multiply by the
// exact inverse power so that 100.57 at -1 gives the double nearest 100.5.
double floorTo(double value, int exponent)
{
    if (exponent >= 0) {
        const double power = KbcAlgorithm::getPowerOfTen(exponent);
        return std::floor(value / power) * power;
    }
    const double inverse = KbcAlgorithm::getPowerOfTen(-exponent);
    return std::floor(value * inverse) / inverse;
}

// The offset for 0 < near < far.
double positiveOffset(int significantDigits, double near, double far)
{
    const int resolution = KbcAlgorithm::getDecade(far - near) - 3;
    int bestDigits = writtenDigits(far, resolution);
    if (bestDigits <= significantDigits)
        return 0.0;
    double best = 0.0;
    for (int exponent = KbcAlgorithm::getDecade(near); exponent >= resolution; --exponent) {
        const double offset = floorTo(near, exponent);
        const int digits = writtenDigits(far - offset, resolution);
        if (digits <= significantDigits)
            return offset;
        if (digits < bestDigits) {
            bestDigits = digits;
            best = offset;
        }
    }
    return best;
}

} // namespace

double KbcAlgorithm::getRoundedOffsetFromInterval(int significantDigits, double min, double max)
{
    if (!std::isfinite(min) || !std::isfinite(max)) {
        qWarning("KbcAlgorithm::getRoundedOffsetFromInterval: interval [%g, %g] is not finite, no offset",
                 min, max);
        return 0.0;
    }
    if (significantDigits < 1 || significantDigits > 17) {
        const int bounded = qBound(1, significantDigits, 17);
        qWarning("KbcAlgorithm::getRoundedOffsetFromInterval: %d significant digits is outside 1..17, %d is used",
                 significantDigits, bounded);
        significantDigits = bounded;
    }
    const double lo = std::min(min, max);
    const double hi = std::max(min, max);
    if (lo <= 0.0 && hi >= 0.0)
        return 0.0;
    // Below a width of 1e-290 the resolution's power of ten leaves the double range.
    if (hi - lo < 1e-290)
        return 0.0;
    // A negative interval mirrors a positive one, so its offset also rounds toward zero.
    if (hi < 0.0)
        return -positiveOffset(significantDigits, -hi, -lo);
    return positiveOffset(significantDigits, lo, hi);
}

double KbcAlgorithm::roundToNiceNumber(double value)
{
    if (value == 0.0)
        return 0.0;
    if (!std::isfinite(value) || value < 0.0) {
        qWarning("KbcAlgorithm::roundToNiceNumber: %g has no nice number below it, 0 is used", value);
        return 0.0;
    }
    const int decade = getDecade(value);
    for (int mantissa : {5, 2}) {
        // Dividing by an exact power keeps 0.2 the double nearest 0.2.
        const double nice = decade >= 0 || decade < -308 ? mantissa * getPowerOfTen(decade)
                                                         : mantissa / getPowerOfTen(-decade);
        if (nice <= value)
            return nice;
    }
    return getPowerOfTen(decade);
}

int KbcAlgorithm::getDecade(double value)
{
    if (!(value > 0.0) || !std::isfinite(value))
        return 0;
    int decade = int(std::floor(std::log10(value)));
    if (getPowerOfTen(decade) > value)
        --decade;
    else if (getPowerOfTen(decade + 1) <= value)
        ++decade;
    return decade;
}

double KbcAlgorithm::getPowerOfTen(int exponent)
{
    if (exponent >= 0)
        return std::pow(10.0, exponent);
    if (exponent >= -308)
        return 1.0 / std::pow(10.0, -exponent);
    return std::pow(10.0, exponent);
}
