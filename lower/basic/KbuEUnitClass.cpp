#include "KbuEUnitClass.h"

#include <QCoreApplication>

const KbuEUnitClass KbuEUnitClass::NONE(QCoreApplication::translate("KbuEUnitClass", "No unit"), NONE_V, "NONE");
const KbuEUnitClass KbuEUnitClass::LENGTH(QCoreApplication::translate("KbuEUnitClass", "Length"), LENGTH_V, "LENGTH");
const KbuEUnitClass KbuEUnitClass::COORDINATE(QCoreApplication::translate("KbuEUnitClass", "Coordinate"), COORDINATE_V,
                                              "COORDINATE");
const KbuEUnitClass KbuEUnitClass::AREA(QCoreApplication::translate("KbuEUnitClass", "Area"), AREA_V, "AREA");
const KbuEUnitClass KbuEUnitClass::ANGLE(QCoreApplication::translate("KbuEUnitClass", "Angle"), ANGLE_V, "ANGLE");

KbuEUnitClass::KbuEUnitClass(const QString& label, int value, const char* key)
    : KbbAEnum(label, value, key)
{
    KbbEnumTable::registerItem(_map(), this, "KbuEUnitClass");
}

KbuEUnitClass::KbuEUnitClass()
    : KbbAEnum(NONE)
{
}

QMap<int, KbuEUnitClass*>& KbuEUnitClass::_map()
{
    static QMap<int, KbuEUnitClass*> map;
    return map;
}

int KbuEUnitClass::count() { return _map().size(); }
KbuEUnitClass::Iterator KbuEUnitClass::createIterator() { return Iterator(_map()); }
bool KbuEUnitClass::existsValue(int value) { return _map().contains(value); }

const KbuEUnitClass& KbuEUnitClass::fromValue(int value)
{
    return KbbEnumTable::fromValue(_map(), value, Q_FUNC_INFO, "Kbu");
}

KbuEUnitClass KbuEUnitClass::fromValue(int value, const KbuEUnitClass& fallback)
{
    const KbuEUnitClass* e = _map().value(value, nullptr);
    return e ? *e : fallback;
}

const KbuEUnitClass& KbuEUnitClass::fromKey(const QString& key)
{
    return KbbEnumTable::fromKey(_map(), key, Q_FUNC_INFO, "Kbu");
}

KbuEUnitClass KbuEUnitClass::fromKey(const QString& key, const KbuEUnitClass& fallback)
{
    const KbuEUnitClass* e = KbbEnumTable::findKey(_map(), key);
    return e ? *e : fallback;
}
