#pragma once
// The kinds of scene a display shows: a 2D map, a 3D view, a vertical section.
// Their values are the scene types of the scene model.

#include <velmora_graphic_export.h>

#include <KbbAEnum.h>

class VELMORA_GRAPHIC_EXPORT VugESceneType : public KbbAEnum
{
public:
    enum EValue { MAP_V = 2, VIEW_3D_V = 3, SECTION_V = 4 };
    using Iterator = KbbEnumIterator<VugESceneType>;

    static const VugESceneType MAP;
    static const VugESceneType VIEW_3D;
    static const VugESceneType SECTION;

    VugESceneType();

    static int count();
    static Iterator createIterator();
    static bool existsValue(int value);
    static const VugESceneType& fromValue(int value);
    static VugESceneType fromValue(int value, const VugESceneType& fallback);
    static const VugESceneType& fromKey(const QString& key);
    static VugESceneType fromKey(const QString& key, const VugESceneType& fallback);

    EValue toEnum() const { return EValue(getValue()); }
    bool operator==(const VugESceneType& o) const { return getValue() == o.getValue(); }
    bool operator!=(const VugESceneType& o) const { return getValue() != o.getValue(); }

private:
    VugESceneType(const QString& label, int value, const char* key);
    static QMap<int, VugESceneType*>& _map();
};
