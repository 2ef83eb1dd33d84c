#include "KbuUnitTransfo.h"

#include <KbbGlobal.h>
#include <KbuUnit.h>

#include <QDebug>
#include <QtGlobal>
#include <algorithm>
#include <cmath>

namespace {

// Equal up to the last bits; zero only equals zero, which is why then() snaps offsets
// that cancel out.
bool same(double a, double b)
{
    return a == b || std::fabs(a - b) <= 1e-12 * std::max(std::fabs(a), std::fabs(b));
}

bool passesThrough(double value)
{
    return KbbGlobal::isUndefined(value) || !std::isfinite(value);
}

} // namespace

KbuUnitTransfo::KbuUnitTransfo(double factor, double offset)
{
    if (factor == 0.0 || !std::isfinite(factor) || !std::isfinite(offset)) {
        qWarning("KbuUnitTransfo::KbuUnitTransfo: factor %g and offset %g do not make an invertible "
                 "transformation; using the identity",
                 factor, offset);
        return;
    }
    _factor = factor;
    _offset = offset;
}

KbuUnitTransfo::KbuUnitTransfo(const KbuUnit& from, const KbuUnit& to)
    // convert() checks the classes and throws; a unit value of 1 gives the exact factor.
    : _factor(from.convert(1.0, to))
{
}

double KbuUnitTransfo::apply(double value) const
{
    if (passesThrough(value))
        return value;
    return value * _factor + _offset;
}

double KbuUnitTransfo::applyToLength(double length) const
{
    if (passesThrough(length))
        return length;
    return length * _factor;
}

KbuUnitTransfo KbuUnitTransfo::inverse() const
{
    KbuUnitTransfo t;
    t._factor = 1.0 / _factor;
    t._offset = -_offset / _factor;
    return t;
}

KbuUnitTransfo KbuUnitTransfo::then(const KbuUnitTransfo& next) const
{
    KbuUnitTransfo t;
    t._factor = _factor * next._factor;
    const double scaled = _offset * next._factor;
    t._offset = scaled + next._offset;
    // A transformation then its inverse leaves a residue proportional to the offsets it
    // cancelled, not to the result: that residue is zero.
    if (std::fabs(t._offset) <= 1e-12 * (std::fabs(scaled) + std::fabs(next._offset)))
        t._offset = 0.0;
    return t;
}

bool KbuUnitTransfo::isIdentity() const
{
    return *this == KbuUnitTransfo();
}

bool KbuUnitTransfo::operator==(const KbuUnitTransfo& o) const
{
    return same(_factor, o._factor) && same(_offset, o._offset);
}

QDebug operator<<(QDebug debug, const KbuUnitTransfo& transfo)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "KbuUnitTransfo(x * " << transfo.getFactor() << " + " << transfo.getOffset() << ')';
    return debug;
}
