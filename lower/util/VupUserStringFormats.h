#pragma once
// Keeps the user's string formats (KbbUserStringFormats) in the preferences, group
// "units", one readable entry per field: "units/LENGTH/digits=2".

#include <velmora_util_export.h>

#include <QString>

class VupPreferenceRegistry;

class VELMORA_UTIL_EXPORT VupUserStringFormats
{
public:
    static const QString GROUP;

    // Classes with no stored entry keep their current format; bad entries are skipped
    // with a qWarning.
    static void load(VupPreferenceRegistry* registry);
    static void save(VupPreferenceRegistry* registry);
};
