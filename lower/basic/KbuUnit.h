#pragma once
// A unit of measure: its key (stored in files and preferences), the symbol shown to the
// user, the class of quantity it measures and its factor to that class's base unit
// (metre, square metre, radian). Units come from a fixed table; the key "" is no unit.

#include <velmora_basic_export.h>

#include <KbuEUnitClass.h>

#include <QList>
#include <QString>

class VELMORA_BASIC_EXPORT KbuUnit
{
public:
    // No unit.
    KbuUnit();

    static const KbuUnit& none();
    // Throws KbeProgrammingError for a key that is not in the table.
    static const KbuUnit& fromKey(const QString& key);
    static bool existsKey(const QString& key);
    // The units a value of the class may be shown in, base unit first. COORDINATE gives
    // the length units.
    static QList<KbuUnit> units(const KbuEUnitClass& unitClass);

    const QString& getKey() const { return _key; }
    const QString& getSymbol() const { return _symbol; }
    const KbuEUnitClass& getUnitClass() const;
    double getFactor() const { return _factor; }
    bool isNone() const { return _key.isEmpty(); }

    // True when a value of the class may be expressed in this unit.
    bool belongsTo(const KbuEUnitClass& unitClass) const;
    bool isConvertibleTo(const KbuUnit& to) const;
    // The value expressed in `to`. The undefined value, NaN and infinities come back
    // unchanged. Throws KbeProgrammingError when the units measure different things.
    double convert(double value, const KbuUnit& to) const;

    bool operator==(const KbuUnit& o) const { return _key == o._key; }
    bool operator!=(const KbuUnit& o) const { return _key != o._key; }

private:
    KbuUnit(const QString& key, const QString& symbol, int unitClass, double factor);
    static const QList<KbuUnit>& _table();

    QString _key;
    QString _symbol;
    int _class;
    double _factor;
};
