#include "KbgEDimension.h"

#include <QCoreApplication>

const KbgEDimension KbgEDimension::DIM_2D(QCoreApplication::translate("KbgEDimension", "2D"), DIM_2D_V, "DIM_2D");
const KbgEDimension KbgEDimension::DIM_3D(QCoreApplication::translate("KbgEDimension", "3D"), DIM_3D_V, "DIM_3D");

KbgEDimension::KbgEDimension(const QString& label, int value, const char* key)
    : KbbAEnum(label, value, key)
{
    KbbEnumTable::registerItem(_map(), this, "KbgEDimension");
}

KbgEDimension::KbgEDimension()
    : KbbAEnum(DIM_2D)
{
}

QMap<int, KbgEDimension*>& KbgEDimension::_map()
{
    static QMap<int, KbgEDimension*> map;
    return map;
}

int KbgEDimension::count() { return _map().size(); }
KbgEDimension::Iterator KbgEDimension::createIterator() { return Iterator(_map()); }
bool KbgEDimension::existsValue(int value) { return _map().contains(value); }

const KbgEDimension& KbgEDimension::fromValue(int value)
{
    return KbbEnumTable::fromValue(_map(), value, Q_FUNC_INFO, "Kbg");
}

KbgEDimension KbgEDimension::fromValue(int value, const KbgEDimension& fallback)
{
    const KbgEDimension* e = _map().value(value, nullptr);
    return e ? *e : fallback;
}

const KbgEDimension& KbgEDimension::fromKey(const QString& key)
{
    return KbbEnumTable::fromKey(_map(), key, Q_FUNC_INFO, "Kbg");
}

KbgEDimension KbgEDimension::fromKey(const QString& key, const KbgEDimension& fallback)
{
    const KbgEDimension* e = KbbEnumTable::findKey(_map(), key);
    return e ? *e : fallback;
}
