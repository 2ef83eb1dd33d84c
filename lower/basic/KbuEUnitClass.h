#pragma once
// The kind of quantity a value measures, which decides the units it may be shown in.
// LENGTH and COORDINATE share the length units; COORDINATE has its own display format.

#include <KbbAEnum.h>

class VELMORA_BASIC_EXPORT KbuEUnitClass : public KbbAEnum
{
public:
    enum EValue { NONE_V = 0, LENGTH_V = 1, COORDINATE_V = 2, AREA_V = 3, ANGLE_V = 4 };
    using Iterator = KbbEnumIterator<KbuEUnitClass>;

    static const KbuEUnitClass NONE;
    static const KbuEUnitClass LENGTH;
    static const KbuEUnitClass COORDINATE;
    static const KbuEUnitClass AREA;
    static const KbuEUnitClass ANGLE;

    KbuEUnitClass();

    static int count();
    static Iterator createIterator();
    static bool existsValue(int value);
    static const KbuEUnitClass& fromValue(int value);
    static KbuEUnitClass fromValue(int value, const KbuEUnitClass& fallback);
    static const KbuEUnitClass& fromKey(const QString& key);
    static KbuEUnitClass fromKey(const QString& key, const KbuEUnitClass& fallback);

    EValue toEnum() const { return EValue(getValue()); }
    bool operator==(const KbuEUnitClass& o) const { return getValue() == o.getValue(); }
    bool operator!=(const KbuEUnitClass& o) const { return getValue() != o.getValue(); }

private:
    KbuEUnitClass(const QString& label, int value, const char* key);
    static QMap<int, KbuEUnitClass*>& _map();
};
