#pragma once
// The colours the views give to values: continuous (colours interpolated in RGB between
// stops, clamped beyond the first and last stop) or classed (class limits and one colour
// per class). Undefined values, NaN and infinities take the undefined colour. A plain
// copyable value: whoever owns a scale tells its views when it changes.

#include <velmora_graphic_export.h>

#include <KbbGlobal.h>
#include <KbcValueRange.h>

#include <QMetaType>
#include <QRgb>
#include <QVector>
#include <cmath>

class VELMORA_GRAPHIC_EXPORT VugColorScale
{
public:
    enum Mode { CONTINUOUS, CLASSED };

    struct Stop
    {
        double value = 0.0;
        QRgb color = 0;

        bool operator==(const Stop& o) const { return value == o.value && color == o.color; }
        bool operator!=(const Stop& o) const { return !(*this == o); }
    };

    // Enough for a colour per pixel of any screen's width many times over.
    static constexpr int MAX_LOOKUP_SIZE = 1 << 24;

    // Grey, from black at 0 to white at 1.
    VugColorScale();
    // Invalid stops or classes are refused as by setStops and setClasses: the scale is
    // then the default grey one.
    explicit VugColorScale(const QVector<Stop>& stops);
    VugColorScale(const QVector<double>& limits, const QVector<QRgb>& colors);

    // Continuous scales from 0 to 1, to be stretched with setRange.
    // Blue, cyan, green, yellow, red.
    static VugColorScale rainbow();
    // Black to white.
    static VugColorScale grayscale();
    // Dark violet through blue and green to yellow: lightness grows steadily, so the order
    // of values still reads in grey prints and for most colour-blind readers.
    static VugColorScale viridis();
    // One of the scales above by its name ("rainbow", "grayscale", "viridis"), as the
    // preferences store it; another name is warned about and gives the rainbow.
    static VugColorScale named(const QString& name);

    Mode getMode() const { return _mode; }
    bool isClassed() const { return _mode == CLASSED; }

    // Empty for a classed scale.
    const QVector<Stop>& getStops() const { return _stops; }
    // At least two stops with finite, defined values in strictly ascending order, the last
    // minus the first a finite number; otherwise refused with a qWarning and false, the
    // scale unchanged. Makes the scale continuous.
    bool setStops(const QVector<Stop>& stops);

    // Class i holds the values from limits[i] (included) to limits[i + 1] (excluded; the
    // last class includes its upper limit too). Values beyond the limits take the colour of
    // the nearest end class. Empty for a continuous scale.
    const QVector<double>& getClassLimits() const { return _limits; }
    const QVector<QRgb>& getClassColors() const { return _colors; }
    int getClassCount() const { return _colors.size(); }
    // Limits as for setStops and one colour fewer than limits; otherwise refused with a
    // qWarning and false, the scale unchanged. Makes the scale classed.
    bool setClasses(const QVector<double>& limits, const QVector<QRgb>& colors);
    // The class a value falls in, -1 for an undefined value or a continuous scale.
    int getClassIndex(double value) const;

    // The first and last stop or class limit.
    double getMin() const { return _min; }
    double getMax() const { return _max; }
    // Moves the stops or limits linearly so that they span [min, max], keeping their
    // proportions. A range that is not finite and ascending (min < max) is refused with a
    // qWarning and false, the scale unchanged.
    bool setRange(double min, double max);

    // Stretches the scale over KbcValueRange::of(values), the range views show: NaN,
    // infinities and the few values far outside the others are left out of it, and those
    // take the end colours, so that one wrong value cannot paint every other one alike.
    // Where all but those are one value, the whole range (within ±DBL_MAX / 2) is used
    // instead, as nothing else tells them apart. Returns that range, whose counts tell what
    // was left out; values all alike leave the scale as it was.
    KbcValueRange fitTo(const QVector<double>& values);

    // Transparent unless set.
    QRgb getUndefinedColor() const { return _undefinedColor; }
    void setUndefinedColor(QRgb color) { _undefinedColor = color; }

    static bool isUndefinedValue(double value) { return !std::isfinite(value) || KbbGlobal::isUndefined(value); }

    QRgb colorAt(double value) const;

    // For renderers that colour millions of values: fills `table` with `size` colours
    // sampled evenly from getMin() to getMax(), both included, so that a value takes
    // table[getLookupIndex(value, size)]. A size outside 2..MAX_LOOKUP_SIZE is refused with a
    // qWarning and false, the table unchanged. Classes narrower than a table step may be
    // missed: use a table at least as large as the range over the narrowest class.
    bool fillLookupTable(QVector<QRgb>& table, int size) const;
    // round((value − min) / (max − min) · (size − 1)), clamped to the table; -1 for an
    // undefined value, which takes getUndefinedColor().
    int getLookupIndex(double value, int size) const
    {
        if (isUndefinedValue(value))
            return -1;
        const double t = (value - _min) / (_max - _min);
        // Written so that a NaN (an infinite quotient over an infinite width) lands on an end.
        if (!(t > 0.0))
            return 0;
        if (!(t < 1.0))
            return size - 1;
        return int(t * (size - 1) + 0.5);
    }

    bool operator==(const VugColorScale& o) const;
    bool operator!=(const VugColorScale& o) const { return !(*this == o); }

private:
    static bool _isAscending(const QVector<double>& values, const char* operation, const char* what);

    Mode _mode = CONTINUOUS;
    QVector<Stop> _stops;
    QVector<double> _limits;
    QVector<QRgb> _colors;
    double _min = 0.0;
    double _max = 1.0;
    QRgb _undefinedColor = 0;
};

Q_DECLARE_METATYPE(VugColorScale)
