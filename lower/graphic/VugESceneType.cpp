#include "VugESceneType.h"

#include <QCoreApplication>

const VugESceneType VugESceneType::MAP(QCoreApplication::translate("VugESceneType", "Map"), MAP_V, "MAP");
const VugESceneType VugESceneType::VIEW_3D(QCoreApplication::translate("VugESceneType", "3D view"), VIEW_3D_V, "VIEW_3D");
const VugESceneType VugESceneType::SECTION(QCoreApplication::translate("VugESceneType", "Section"), SECTION_V, "SECTION");

VugESceneType::VugESceneType(const QString& label, int value, const char* key)
    : KbbAEnum(label, value, key)
{
    KbbEnumTable::registerItem(_map(), this, "VugESceneType");
}

VugESceneType::VugESceneType()
    : KbbAEnum(MAP)
{
}

QMap<int, VugESceneType*>& VugESceneType::_map()
{
    static QMap<int, VugESceneType*> map;
    return map;
}

int VugESceneType::count() { return _map().size(); }
VugESceneType::Iterator VugESceneType::createIterator() { return Iterator(_map()); }
bool VugESceneType::existsValue(int value) { return _map().contains(value); }

const VugESceneType& VugESceneType::fromValue(int value)
{
    return KbbEnumTable::fromValue(_map(), value, Q_FUNC_INFO, "Vug");
}

VugESceneType VugESceneType::fromValue(int value, const VugESceneType& fallback)
{
    const VugESceneType* e = _map().value(value, nullptr);
    return e ? *e : fallback;
}

const VugESceneType& VugESceneType::fromKey(const QString& key)
{
    return KbbEnumTable::fromKey(_map(), key, Q_FUNC_INFO, "Vug");
}

VugESceneType VugESceneType::fromKey(const QString& key, const VugESceneType& fallback)
{
    const VugESceneType* e = KbbEnumTable::findKey(_map(), key);
    return e ? *e : fallback;
}
