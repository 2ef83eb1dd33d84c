#include "KbdVariable.h"

#include <KbbGlobal.h>

#include <algorithm>
#include <cmath>

KbdVariable::KbdVariable(const QString& name, const QVector<double>& values, const KbuUnit& unit)
    : _name(name)
    , _values(values)
    , _unit(unit)
    , _range(1.0, 0.0)
{
    bool any = false;
    for (double v : values) {
        if (!std::isfinite(v) || KbbGlobal::isUndefined(v))
            continue;
        _range.first = any ? std::min(_range.first, v) : v;
        _range.second = any ? std::max(_range.second, v) : v;
        any = true;
    }
}
