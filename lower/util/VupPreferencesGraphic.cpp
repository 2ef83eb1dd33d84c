#include "VupPreferencesGraphic.h"

#include "VupPreferenceRegistry.h"

const QString VupPreferencesGraphic::GROUP = QStringLiteral("graphic");

namespace {

QVariant read(const char* name, const QVariant& fallback)
{
    return VupPreferenceRegistry::getInstance()->value(VupPreferencesGraphic::GROUP, QLatin1String(name), fallback);
}

float number(const char* name, float fallback, float low, float high)
{
    return float(VupPreferenceRegistry::getInstance()->number(VupPreferencesGraphic::GROUP, QLatin1String(name),
                                                              fallback, low, high));
}

} // namespace

VupPreferencesGraphic::VupPreferencesGraphic()
    : VupAGroupPreferences(GROUP)
{
}

VupPreferencesGraphic* VupPreferencesGraphic::getInstance()
{
    static VupPreferencesGraphic instance;
    return &instance;
}

float VupPreferencesGraphic::getPointSize() { return number("pointSize", 4.0f, 1.0f, 64.0f); }
float VupPreferencesGraphic::getLineWidth() { return number("lineWidth", 2.0f, 1.0f, 32.0f); }
float VupPreferencesGraphic::getZScale() { return number("zScale", 1.0f, 1e-6f, 1e6f); }
float VupPreferencesGraphic::getSurfaceTransparency() { return number("surfaceTransparency", 0.0f, 0.0f, 1.0f); }

bool VupPreferencesGraphic::isZScaleAutomatic()
{
    return VupPreferenceRegistry::getInstance()->flag(GROUP, QStringLiteral("zScaleAutomatic"), false);
}

QString VupPreferencesGraphic::getColorScale()
{
    const QString fallback = QStringLiteral("rainbow");
    const QString name = read("colorScale", fallback).toString().trimmed();
    if (!name.isEmpty())
        return name;
    qWarning("VupPreferencesGraphic: graphic/colorScale is empty, '%s' is used", qPrintable(fallback));
    return fallback;
}

void VupPreferencesGraphic::setValue(const QString& name, const QVariant& value)
{
    VupPreferenceRegistry::getInstance()->setValue(GROUP, name, value);
}
