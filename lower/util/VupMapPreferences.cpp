#include "VupMapPreferences.h"

#include "VupPreferenceRegistry.h"

const QString VupMapPreferences::GROUP = QStringLiteral("map");

namespace {

QVariant read(const char* name, const QVariant& fallback)
{
    return VupPreferenceRegistry::getInstance()->value(VupMapPreferences::GROUP, QLatin1String(name), fallback);
}

bool flag(const char* name, bool fallback)
{
    return VupPreferenceRegistry::getInstance()->flag(VupMapPreferences::GROUP, QLatin1String(name), fallback);
}

// An invalid stored colour quietly gives the default, as maps always have.
QColor color(const char* name, const QColor& fallback)
{
    const QColor c(read(name, fallback.name()).toString());
    return c.isValid() ? c : fallback;
}

Qt::PenStyle penStyle(const char* name, Qt::PenStyle fallback)
{
    bool ok = false;
    const int style = read(name, int(fallback)).toInt(&ok);
    return ok && style >= Qt::NoPen && style <= Qt::DashDotDotLine ? Qt::PenStyle(style) : fallback;
}

} // namespace

QColor VupMapPreferences::getBackgroundColor() { return color("backgroundColor", Qt::white); }
QColor VupMapPreferences::getGridColor() { return color("gridColor", QColor(0xa5, 0x9f, 0x9b)); }
Qt::PenStyle VupMapPreferences::getGridStyle() { return penStyle("gridStyle", Qt::DashLine); }
QColor VupMapPreferences::getSubGridColor() { return color("subGridColor", QColor(0xd2, 0xcf, 0xcd)); }
Qt::PenStyle VupMapPreferences::getSubGridStyle() { return penStyle("subGridStyle", Qt::DotLine); }
bool VupMapPreferences::isGridVisible() { return flag("gridVisible", true); }
bool VupMapPreferences::isSubGridVisible() { return flag("subGridVisible", false); }
bool VupMapPreferences::isGridInBackground() { return flag("gridInBackground", true); }
bool VupMapPreferences::isAxesVisible() { return flag("axesVisible", true); }
bool VupMapPreferences::isCompassVisible() { return flag("compassVisible", true); }
bool VupMapPreferences::isScaleBarVisible() { return flag("scaleBarVisible", true); }
bool VupMapPreferences::isZoomWheelInverted() { return flag("zoomWheelInverted", false); }
bool VupMapPreferences::isLineRulerTotalLengthEnabled() { return flag("lineRulerTotalLength", true); }
bool VupMapPreferences::isLineRulerAzimuthEnabled() { return flag("lineRulerAzimuth", true); }
bool VupMapPreferences::isLineRulerLengthEnabled() { return flag("lineRulerLength", true); }
bool VupMapPreferences::isLineRulerAngleEnabled() { return flag("lineRulerAngle", true); }
bool VupMapPreferences::isAreaRulerAreaEnabled() { return flag("areaRulerArea", true); }
bool VupMapPreferences::isAreaRulerPerimeterEnabled() { return flag("areaRulerPerimeter", true); }
bool VupMapPreferences::isAreaRulerLengthEnabled() { return flag("areaRulerLength", true); }
bool VupMapPreferences::isAreaRulerAngleEnabled() { return flag("areaRulerAngle", true); }

void VupMapPreferences::setValue(const QString& name, const QVariant& value)
{
    VupPreferenceRegistry::getInstance()->setValue(GROUP, name, value);
}
