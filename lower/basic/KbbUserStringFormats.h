#pragma once
// The user's string format for each unit class, which value editors and tables use when
// they are given no format of their own. Held for the whole process; VupUserStringFormats
// loads and saves it with the preferences.

#include <velmora_basic_export.h>

#include <KbbStringFormat.h>
#include <KbuEUnitClass.h>

#include <QVariantMap>

class VELMORA_BASIC_EXPORT KbbUserStringFormats
{
public:
    static KbbStringFormat getStringFormat(const KbuEUnitClass& unitClass);
    // Refuses, with a qWarning, a format whose unit does not measure the class.
    static void setStringFormat(const KbuEUnitClass& unitClass, const KbbStringFormat& format);
    static KbbStringFormat getDefaultStringFormat(const KbuEUnitClass& unitClass);
    static void resetToDefaults();

    // One entry per unit class key ("LENGTH"), each the map of KbbStringFormat::toVariantMap().
    static QVariantMap toVariantMap();
    // Takes the good entries; unknown classes and bad formats are skipped with a qWarning.
    static void fromVariantMap(const QVariantMap& map);

private:
    static QMap<int, KbbStringFormat>& _formats();
};
