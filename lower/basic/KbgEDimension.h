#pragma once
// The dimension of a scene or a dataset: 2D (maps, sections) or 3D.

#include <KbbAEnum.h>

class VELMORA_BASIC_EXPORT KbgEDimension : public KbbAEnum
{
public:
    enum EValue { DIM_2D_V = 2, DIM_3D_V = 3 };
    using Iterator = KbbEnumIterator<KbgEDimension>;

    static const KbgEDimension DIM_2D;
    static const KbgEDimension DIM_3D;

    KbgEDimension();

    static int count();
    static Iterator createIterator();
    static bool existsValue(int value);
    static const KbgEDimension& fromValue(int value);
    static KbgEDimension fromValue(int value, const KbgEDimension& fallback);
    static const KbgEDimension& fromKey(const QString& key);
    static KbgEDimension fromKey(const QString& key, const KbgEDimension& fallback);

    EValue toEnum() const { return EValue(getValue()); }
    bool operator==(const KbgEDimension& o) const { return getValue() == o.getValue(); }
    bool operator!=(const KbgEDimension& o) const { return getValue() != o.getValue(); }

private:
    KbgEDimension(const QString& label, int value, const char* key);
    static QMap<int, KbgEDimension*>& _map();
};
