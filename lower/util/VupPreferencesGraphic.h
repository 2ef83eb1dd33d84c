#pragma once
// The graphic preferences in the preference registry (group "graphic"): point size,
// line width, vertical scale, colour scale and surface transparency of the 3D nodes.
// Each getter gives the default while nothing (or nothing usable) is stored.
// The single instance tells its observers about changes to this group only.

#include <velmora_util_export.h>

#include <VupAGroupPreferences.h>

#include <QString>
#include <QVariant>

class VELMORA_UTIL_EXPORT VupPreferencesGraphic : public VupAGroupPreferences
{
public:
    static const QString GROUP;

    static VupPreferencesGraphic* getInstance();

    // Pixels.
    static float getPointSize();
    // Pixels.
    static float getLineWidth();
    static float getZScale();
    static bool isZScaleAutomatic();
    static QString getColorScale();
    // 0 opaque .. 1 invisible.
    static float getSurfaceTransparency();

    // Stores one preference by its name ("pointSize", "zScale", ...).
    static void setValue(const QString& name, const QVariant& value);

private:
    VupPreferencesGraphic();
};
