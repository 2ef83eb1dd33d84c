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
    const QVariant v = read(name, fallback);
    const QString text = v.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    qWarning("VupPreferences3DViews: 3dviews/%s is not a switch ('%s'), %s is used", name,
             qPrintable(v.toString()), fallback ? "on" : "off");
    return fallback;
}

QColor color(const char* name, const QColor& fallback)
{
    const QVariant v = read(name, fallback.name());
    const QColor c(v.toString().trimmed());
    if (c.isValid())
        return c;
    qWarning("VupPreferences3DViews: 3dviews/%s is not a colour ('%s'), %s is used", name, qPrintable(v.toString()),
             qPrintable(fallback.name()));
    return fallback;
}

} // namespace

class VupPreferences3DViewsPrivate
{
public:
    QMetaObject::Connection connection;
};

VupPreferences3DViews::VupPreferences3DViews()
    : _d(std::make_unique<VupPreferences3DViewsPrivate>())
{
    VupPreferenceRegistry* registry = VupPreferenceRegistry::getInstance();
    _d->connection = QObject::connect(registry, &VupPreferenceRegistry::prefChanged, registry,
                                      [this](const VupPreferenceModif& modif) {
                                          if (modif.concerns(GROUP))
                                              notify(modif);
                                      });
}

VupPreferences3DViews::~VupPreferences3DViews()
{
    QObject::disconnect(_d->connection);
}

VupPreferences3DViews* VupPreferences3DViews::getInstance()
{
    // The registry is made first so that it outlives this instance and its connection.
    VupPreferenceRegistry::getInstance();
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
    const double fallback = 0.5;
    const QVariant v = read("seekDuration", fallback);
    bool ok = false;
    const double value = v.toString().trimmed().toDouble(&ok);
    if (ok && value >= 0.0 && value <= 60.0)
        return value;
    qWarning("VupPreferences3DViews: 3dviews/seekDuration is not a duration in seconds ('%s'), %g is used",
             qPrintable(v.toString()), fallback);
    return fallback;
}

void VupPreferences3DViews::setValue(const QString& name, const QVariant& value)
{
    VupPreferenceRegistry::getInstance()->setValue(GROUP, name, value);
}
