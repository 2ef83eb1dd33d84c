#include "VupPreferences3DViews.h"

#include "VupPreferenceRegistry.h"
#include "VuPosition.h"

const QString VupPreferences3DViews::GROUP = QStringLiteral("3dviews");

namespace {

QVariant read(const char* name, const QVariant& fallback)
{
    return VupPreferenceRegistry::getInstance()->value(VupPreferences3DViews::GROUP, QLatin1String(name), fallback);
}

bool flag(const char* name, bool fallback)
{
    return VupPreferenceRegistry::getInstance()->flag(VupPreferences3DViews::GROUP, QLatin1String(name), fallback);
}

QColor color(const char* name, const QColor& fallback)
{
    return VupPreferenceRegistry::getInstance()->color(VupPreferences3DViews::GROUP, QLatin1String(name), fallback);
}

} // namespace

VupPreferences3DViews::VupPreferences3DViews()
    : VupAGroupPreferences(GROUP)
{
}

VupPreferences3DViews* VupPreferences3DViews::getInstance()
{
    static VupPreferences3DViews instance;
    return &instance;
}

bool VupPreferences3DViews::getMouseWheelZoomDirection() { return flag("mouseWheelZoomDirection", false); }
QColor VupPreferences3DViews::getBackgroundColor() { return color("backgroundColor", QColor(0x1e, 0x23, 0x29)); }
QColor VupPreferences3DViews::getForegroundColor() { return color("foregroundColor", QColor(0xe6, 0xe8, 0xeb)); }
bool VupPreferences3DViews::isWhiteBackground() { return flag("whiteBackground", false); }
bool VupPreferences3DViews::isAxesVisible() { return flag("axesVisible", false); }
bool VupPreferences3DViews::isAxesGridVisible() { return flag("axesGridVisible", false); }
bool VupPreferences3DViews::isGnomonVisible() { return flag("gnomonVisible", true); }
bool VupPreferences3DViews::isCompassVisible() { return flag("compassVisible", false); }
bool VupPreferences3DViews::isLegendVisible() { return flag("legendVisible", true); }
bool VupPreferences3DViews::isPerspective() { return flag("perspective", true); }
bool VupPreferences3DViews::isToolbarVisible() { return flag("toolbarVisible", true); }

int VupPreferences3DViews::getLegendAlignment()
{
    const int fallback = 12;
    const QVariant v = read("legendAlignment", fallback);
    bool ok = false;
    const int value = v.toString().trimmed().toInt(&ok);
    if (ok && Vu::isValidPosition(value))
        return value;
    qWarning("VupPreferences3DViews: 3dviews/legendAlignment is not a corner ('%s'), %d is used",
             qPrintable(v.toString()), fallback);
    return fallback;
}

double VupPreferences3DViews::getSeekDuration()
{
    return VupPreferenceRegistry::getInstance()->number(GROUP, QStringLiteral("seekDuration"), 0.5, 0.0, 60.0);
}

void VupPreferences3DViews::setValue(const QString& name, const QVariant& value)
{
    VupPreferenceRegistry::getInstance()->setValue(GROUP, name, value);
}
