#pragma once
// The 3D views' preferences in the preference registry (group "3dviews"): colours,
// decorations, the legend's corner, the projection, the seek animation and the wheel.
// Each getter gives the default while nothing (or nothing usable) is stored.
// The single instance tells its observers about changes to this group only.

#include <velmora_util_export.h>

#include <VupAGroupPreferences.h>

#include <QColor>
#include <QString>
#include <QVariant>

class VELMORA_UTIL_EXPORT VupPreferences3DViews : public VupAGroupPreferences
{
public:
    static const QString GROUP;

    static VupPreferences3DViews* getInstance();

    // On, the wheel zooms the opposite way to the default.
    static bool getMouseWheelZoomDirection();
    static QColor getBackgroundColor();
    static QColor getForegroundColor();
    static bool isWhiteBackground();
    static bool isAxesVisible();
    static bool isAxesGridVisible();
    static bool isGnomonVisible();
    static bool isCompassVisible();
    static bool isLegendVisible();
    // Alignment flags of the legend (Vu::Position); RIGHT | BOTTOM by default.
    static int getLegendAlignment();
    static bool isPerspective();
    // Seconds a seek takes to reach its target.
    static double getSeekDuration();
    static bool isToolbarVisible();

    // Stores one preference by its name ("mouseWheelZoomDirection", "seekDuration", ...).
    static void setValue(const QString& name, const QVariant& value);

private:
    VupPreferences3DViews();
};
