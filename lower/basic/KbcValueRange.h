#pragma once
// The range views give a column of values (a colour scale, a legend, the frame of "view
// all"): the finite, defined values without the few that lie far outside the others. Data
// from outside holds such values (1e30 written for "missing", a northing of 0 among UTM
// coordinates, 1e308 from an overflowing export); left in, one of them squeezes every
// other value into one colour or one pixel. What is left out is counted, so that the user
// can be told.
//
// A value is far outside when it lies beyond the 2nd or the 98th percentile by more than
// FAR_FACTOR times the distance between the two. Percentiles move with the bulk of the
// data, not with a few extremes; the wide margin keeps every value of ordinary data (a
// normal distribution would need a value 40 standard deviations out) and all but the
// thinnest tail of skewed data, while values wrong by orders of magnitude always fall out.
// A bulk of one value is measured by its own size instead: a value is far outside it when
// it differs by orders of magnitude. A bulk of zeros, or two values alone, have nothing far
// outside.

#include <velmora_basic_export.h>

#include <QRectF>
#include <QString>
#include <QVector>

class VELMORA_BASIC_EXPORT KbcValueRange
{
public:
    static constexpr double FAR_FACTOR = 10.0;
    // Percentiles of larger columns are taken over an even sample of this many values: a
    // few ten-thousandths of error in where the bulk lies changes nothing at FAR_FACTOR, and
    // millions of values then cost one pass more than their minimum and maximum.
    static constexpr int SAMPLE_SIZE = 1 << 16;

    // Empty: no value.
    KbcValueRange() = default;

    static KbcValueRange of(const QVector<double>& values);
    static KbcValueRange of(const double* values, qint64 count);
    // What a view frames of points: the bounds of those with a defined x and y, less those
    // whose x or y is far outside the others. QRectF() when none is left.
    static QRectF framingRect(const QVector<double>& x, const QVector<double>& y);

    // min < max: a range a colour scale can be stretched over. A bulk of one value with
    // others far outside is a single value: a frame around it, but no colour scale.
    bool isSpan() const { return _count > 0 && _min < _max; }
    // max − min is always finite: a range wider than a double holds is narrowed to
    // ±DBL_MAX / 2, and what lies beyond takes the ends as the values outside do.
    double getMin() const { return _min; }
    double getMax() const { return _max; }
    bool contains(double value) const { return _count > 0 && value >= _min && value <= _max; }

    // NaN and infinities, left out.
    qint64 getNonFiniteCount() const { return _nonFinite; }
    // Finite, defined values beyond the range; views draw them with the range's ends.
    qint64 getOutsideCount() const { return _outside; }
    // The lowest and highest finite, defined value, those outside included.
    double getLowest() const { return _lowest; }
    double getHighest() const { return _highest; }

    bool hasLeftOut() const { return _nonFinite > 0 || _outside > 0; }
    // "1 value far outside the others (1e+30), 2 values that are not numbers (NaN or
    // infinite)"; empty when nothing was left out. The undefined value
    // (KbbGlobal::D_FFFF) marks missing data on purpose: it is left out without a word.
    QString describeLeftOut() const;

private:
    double _min = 0.0;
    double _max = 0.0;
    double _lowest = 0.0;
    double _highest = 0.0;
    qint64 _count = 0;
    qint64 _nonFinite = 0;
    qint64 _outside = 0;
};
