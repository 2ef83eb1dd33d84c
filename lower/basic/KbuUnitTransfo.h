#pragma once
// An affine change of units along one dimension: value' = value * factor + offset. Built
// from two units of one class, or from a factor and an offset (map units to pixels).
// The undefined value, NaN and infinities pass through unchanged, as in KbuUnit::convert.

#include <velmora_basic_export.h>

class KbuUnit;
class QDebug;

class VELMORA_BASIC_EXPORT KbuUnitTransfo
{
public:
    // The identity.
    KbuUnitTransfo() = default;
    // A zero or non-finite factor, or a non-finite offset, cannot be inverted: it is
    // refused with a warning and the identity is built instead.
    explicit KbuUnitTransfo(double factor, double offset = 0.0);
    // From values in `from` to values in `to`. Throws KbeProgrammingError when the units
    // measure different things.
    KbuUnitTransfo(const KbuUnit& from, const KbuUnit& to);

    static KbuUnitTransfo identity() { return KbuUnitTransfo(); }

    double apply(double value) const;
    // For a length (a difference of two values) the offset cancels out.
    double applyToLength(double length) const;

    KbuUnitTransfo inverse() const;
    // This transformation, then `next`: then(next).apply(v) == next.apply(apply(v)).
    KbuUnitTransfo then(const KbuUnitTransfo& next) const;

    double getFactor() const { return _factor; }
    double getOffset() const { return _offset; }
    bool isIdentity() const;

    // Equal up to rounding (relative 1e-12), so that a change of units and its inverse
    // compose to the identity even when the factors are not exact in binary.
    bool operator==(const KbuUnitTransfo& o) const;
    bool operator!=(const KbuUnitTransfo& o) const { return !(*this == o); }

private:
    double _factor = 1.0;
    double _offset = 0.0;
};

VELMORA_BASIC_EXPORT QDebug operator<<(QDebug debug, const KbuUnitTransfo& transfo);
