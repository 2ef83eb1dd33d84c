#include "VugColorScale.h"

#include <algorithm>
#include <limits>

namespace {

int blend(int from, int to, double t)
{
    return int(std::lround(from + (to - from) * t));
}

QRgb interpolate(QRgb from, QRgb to, double t)
{
    return qRgba(blend(qRed(from), qRed(to), t), blend(qGreen(from), qGreen(to), t),
                 blend(qBlue(from), qBlue(to), t), blend(qAlpha(from), qAlpha(to), t));
}

QVector<double> stopValues(const QVector<VugColorScale::Stop>& stops)
{
    QVector<double> values;
    values.reserve(stops.size());
    for (const VugColorScale::Stop& s : stops)
        values.append(s.value);
    return values;
}

VugColorScale::Stop stop(double value, int red, int green, int blue)
{
    return VugColorScale::Stop{value, qRgb(red, green, blue)};
}

} // namespace

VugColorScale::VugColorScale()
    : _stops{stop(0.0, 0, 0, 0), stop(1.0, 255, 255, 255)}
{
}

VugColorScale::VugColorScale(const QVector<Stop>& stops)
    : VugColorScale()
{
    setStops(stops);
}

VugColorScale::VugColorScale(const QVector<double>& limits, const QVector<QRgb>& colors)
    : VugColorScale()
{
    setClasses(limits, colors);
}

VugColorScale VugColorScale::rainbow()
{
    return VugColorScale({stop(0.0, 0, 0, 255), stop(0.25, 0, 255, 255), stop(0.5, 0, 255, 0),
                          stop(0.75, 255, 255, 0), stop(1.0, 255, 0, 0)});
}

VugColorScale VugColorScale::grayscale()
{
    return VugColorScale();
}

VugColorScale VugColorScale::viridis()
{
    return VugColorScale({stop(0.0, 68, 1, 84), stop(0.25, 59, 82, 139), stop(0.5, 33, 145, 140),
                          stop(0.75, 94, 201, 98), stop(1.0, 253, 231, 37)});
}

VugColorScale VugColorScale::named(const QString& name)
{
    const QString key = name.trimmed().toLower();
    if (key == QLatin1String("grayscale") || key == QLatin1String("greyscale"))
        return grayscale();
    if (key == QLatin1String("viridis"))
        return viridis();
    if (key != QLatin1String("rainbow"))
        qWarning("VugColorScale::named: there is no colour scale '%s', the rainbow is used", qPrintable(name));
    return rainbow();
}

bool VugColorScale::_isAscending(const QVector<double>& values, const char* operation, const char* what)
{
    if (values.size() < 2) {
        qWarning("VugColorScale::%s: %d %s, at least 2 are needed", operation, int(values.size()), what);
        return false;
    }
    for (int i = 0; i < values.size(); ++i) {
        if (isUndefinedValue(values.at(i))) {
            qWarning("VugColorScale::%s: %s %d is undefined or not finite", operation, what, i);
            return false;
        }
        if (i > 0 && !(values.at(i - 1) < values.at(i))) {
            qWarning("VugColorScale::%s: %s %d (%g) is not above the one before (%g)", operation, what, i,
                     values.at(i), values.at(i - 1));
            return false;
        }
    }
    // Every colour is found by dividing by the width: an infinite one would give NaN.
    if (!std::isfinite(values.last() - values.first())) {
        qWarning("VugColorScale::%s: %s from %g to %g span more than a double holds", operation, what,
                 values.first(), values.last());
        return false;
    }
    return true;
}

bool VugColorScale::setStops(const QVector<Stop>& stops)
{
    const QVector<double> values = stopValues(stops);
    if (!_isAscending(values, "setStops", "stops"))
        return false;
    _mode = CONTINUOUS;
    _stops = stops;
    _limits.clear();
    _colors.clear();
    _min = values.first();
    _max = values.last();
    return true;
}

bool VugColorScale::setClasses(const QVector<double>& limits, const QVector<QRgb>& colors)
{
    if (!_isAscending(limits, "setClasses", "limits"))
        return false;
    if (colors.size() != limits.size() - 1) {
        qWarning("VugColorScale::setClasses: %d colours for %d classes", int(colors.size()), int(limits.size() - 1));
        return false;
    }
    _mode = CLASSED;
    _stops.clear();
    _limits = limits;
    _colors = colors;
    _min = limits.first();
    _max = limits.last();
    return true;
}

int VugColorScale::getClassIndex(double value) const
{
    if (_mode != CLASSED || isUndefinedValue(value))
        return -1;
    const int after = int(std::upper_bound(_limits.cbegin(), _limits.cend(), value) - _limits.cbegin());
    return qBound(0, after - 1, int(_colors.size()) - 1);
}

bool VugColorScale::setRange(double min, double max)
{
    if (isUndefinedValue(min) || isUndefinedValue(max) || !(min < max) || !std::isfinite(max - min)) {
        qWarning("VugColorScale::setRange: [%g, %g] is not a finite ascending range", min, max);
        return false;
    }
    const QVector<double> old = _mode == CLASSED ? _limits : stopValues(_stops);
    QVector<double> moved(old.size());
    const double factor = (max - min) / (_max - _min);
    for (int i = 0; i < old.size(); ++i)
        moved[i] = min + (old.at(i) - _min) * factor;
    // The ends exactly, whatever the rounding in between.
    moved.first() = min;
    moved.last() = max;
    if (!_isAscending(moved, "setRange", "rescaled values")) // a range too narrow for the stops
        return false;
    if (_mode == CLASSED) {
        _limits = moved;
    } else {
        for (int i = 0; i < moved.size(); ++i)
            _stops[i].value = moved.at(i);
    }
    _min = min;
    _max = max;
    return true;
}

KbcValueRange VugColorScale::fitTo(const QVector<double>& values)
{
    const KbcValueRange range = KbcValueRange::of(values);
    if (range.isSpan()) {
        setRange(range.getMin(), range.getMax());
    } else if (range.getLowest() < range.getHighest()) {
        // All but the far ones are one value: only the whole range tells them apart.
        const double limit = std::numeric_limits<double>::max() / 2.0;
        setRange(std::max(range.getLowest(), -limit), std::min(range.getHighest(), limit));
    }
    return range;
}

QRgb VugColorScale::colorAt(double value) const
{
    if (isUndefinedValue(value))
        return _undefinedColor;
    if (_mode == CLASSED)
        return _colors.at(getClassIndex(value));
    const auto after = std::upper_bound(_stops.cbegin(), _stops.cend(), value,
                                        [](double v, const Stop& s) { return v < s.value; });
    if (after == _stops.cbegin())
        return _stops.first().color;
    if (after == _stops.cend())
        return _stops.last().color;
    const Stop& lower = *(after - 1);
    return interpolate(lower.color, after->color, (value - lower.value) / (after->value - lower.value));
}

bool VugColorScale::fillLookupTable(QVector<QRgb>& table, int size) const
{
    if (size < 2 || size > MAX_LOOKUP_SIZE) {
        qWarning("VugColorScale::fillLookupTable: size %d is outside 2..%d", size, MAX_LOOKUP_SIZE);
        return false;
    }
    table.resize(size);
    const double step = (_max - _min) / (size - 1);
    for (int i = 0; i < size - 1; ++i)
        table[i] = colorAt(_min + i * step);
    table[size - 1] = colorAt(_max);
    return true;
}

bool VugColorScale::operator==(const VugColorScale& o) const
{
    return _mode == o._mode && _stops == o._stops && _limits == o._limits && _colors == o._colors
        && _undefinedColor == o._undefinedColor;
}
