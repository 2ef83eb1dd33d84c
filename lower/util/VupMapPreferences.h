#pragma once
// The map's preferences in the preference registry (group "map"): colours and styles of
// the background and grids, whether the axes show, the wheel direction, and what the
// rulers write. Each getter gives the default while nothing is stored.

#include <velmora_util_export.h>

#include <QColor>
#include <QString>

class VELMORA_UTIL_EXPORT VupMapPreferences
{
public:
    static const QString GROUP;

    static QColor getBackgroundColor();
    static QColor getGridColor();
    static Qt::PenStyle getGridStyle();
    static QColor getSubGridColor();
    static Qt::PenStyle getSubGridStyle();
    static bool isGridVisible();
    static bool isSubGridVisible();
    static bool isGridInBackground();
    static bool isAxesVisible();
    static bool isCompassVisible();
    static bool isScaleBarVisible();
    // On, the wheel zooms the way the plain plot library does; off (the default), the
    // way most map programs do.
    static bool isZoomWheelInverted();

    static bool isLineRulerTotalLengthEnabled();
    static bool isLineRulerAzimuthEnabled();
    static bool isLineRulerLengthEnabled();
    static bool isLineRulerAngleEnabled();
    static bool isAreaRulerAreaEnabled();
    static bool isAreaRulerPerimeterEnabled();
    static bool isAreaRulerLengthEnabled();
    static bool isAreaRulerAngleEnabled();

    // Stores one preference by its name ("zoomWheelInverted", "lineRulerAzimuth", ...).
    static void setValue(const QString& name, const QVariant& value);

    VupMapPreferences() = delete;
};
