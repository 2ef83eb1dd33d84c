#include "KbuUnit.h"

#include <KbbGlobal.h>
#include <KbeProgrammingError.h>

#include <QCoreApplication>
#include <cmath>

namespace {

const double PI = 3.14159265358979323846;

// Coordinates are lengths measured from an origin: they convert with the length factors.
int dimensionOf(int unitClass)
{
    return unitClass == KbuEUnitClass::COORDINATE_V ? int(KbuEUnitClass::LENGTH_V) : unitClass;
}

} // namespace

KbuUnit::KbuUnit(const QString& key, const QString& symbol, int unitClass, double factor)
    : _key(key)
    , _symbol(symbol)
    , _class(unitClass)
    , _factor(factor)
{
}

KbuUnit::KbuUnit()
    : KbuUnit(none())
{
}

// Built on first use rather than at load time, so that it never depends on the order in
// which the library's static objects are initialised.
const QList<KbuUnit>& KbuUnit::_table()
{
    static const QList<KbuUnit> table{
        KbuUnit(QString(), QString(), KbuEUnitClass::NONE_V, 1.0),
        KbuUnit(QStringLiteral("m"), QStringLiteral("m"), KbuEUnitClass::LENGTH_V, 1.0),
        KbuUnit(QStringLiteral("km"), QStringLiteral("km"), KbuEUnitClass::LENGTH_V, 1000.0),
        KbuUnit(QStringLiteral("ft"), QStringLiteral("ft"), KbuEUnitClass::LENGTH_V, 0.3048),
        KbuUnit(QStringLiteral("ftUS"), QCoreApplication::translate("KbuUnit", "ft (US)"), KbuEUnitClass::LENGTH_V,
                1200.0 / 3937.0),
        KbuUnit(QStringLiteral("m2"), QStringLiteral("m\u00B2"), KbuEUnitClass::AREA_V, 1.0),
        KbuUnit(QStringLiteral("ha"), QStringLiteral("ha"), KbuEUnitClass::AREA_V, 1.0e4),
        KbuUnit(QStringLiteral("km2"), QStringLiteral("km\u00B2"), KbuEUnitClass::AREA_V, 1.0e6),
        KbuUnit(QStringLiteral("rad"), QStringLiteral("rad"), KbuEUnitClass::ANGLE_V, 1.0),
        KbuUnit(QStringLiteral("deg"), QStringLiteral("\u00B0"), KbuEUnitClass::ANGLE_V, PI / 180.0),
        KbuUnit(QStringLiteral("grad"), QStringLiteral("gon"), KbuEUnitClass::ANGLE_V, PI / 200.0),
    };
    return table;
}

const KbuUnit& KbuUnit::none()
{
    return _table().first();
}

bool KbuUnit::existsKey(const QString& key)
{
    for (const KbuUnit& u : _table())
        if (u._key == key)
            return true;
    return false;
}

const KbuUnit& KbuUnit::fromKey(const QString& key)
{
    for (const KbuUnit& u : _table())
        if (u._key == key)
            return u;
    throw KbeProgrammingError(QString::fromLatin1(Q_FUNC_INFO), QStringLiteral("Kbu"),
                              QCoreApplication::translate("KbuUnit", "'%1' is not a known unit key").arg(key));
}

QList<KbuUnit> KbuUnit::units(const KbuEUnitClass& unitClass)
{
    QList<KbuUnit> list;
    for (const KbuUnit& u : _table())
        if (u.belongsTo(unitClass))
            list.append(u);
    return list;
}

const KbuEUnitClass& KbuUnit::getUnitClass() const
{
    return KbuEUnitClass::fromValue(_class);
}

bool KbuUnit::belongsTo(const KbuEUnitClass& unitClass) const
{
    return dimensionOf(_class) == dimensionOf(unitClass.getValue());
}

bool KbuUnit::isConvertibleTo(const KbuUnit& to) const
{
    return dimensionOf(_class) == dimensionOf(to._class);
}

double KbuUnit::convert(double value, const KbuUnit& to) const
{
    if (!isConvertibleTo(to)) {
        const QString none = QCoreApplication::translate("KbuUnit", "no unit");
        throw KbeProgrammingError(QString::fromLatin1(Q_FUNC_INFO), QStringLiteral("Kbu"),
                                  QCoreApplication::translate("KbuUnit", "cannot convert from %1 (%2) to %3 (%4)")
                                      .arg(isNone() ? none : _symbol, getUnitClass().getLabel(),
                                           to.isNone() ? none : to._symbol, to.getUnitClass().getLabel()));
    }
    if (KbbGlobal::isUndefined(value) || !std::isfinite(value) || _factor == to._factor)
        return value;
    return value * _factor / to._factor;
}
