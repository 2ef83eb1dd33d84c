#include "VupPreferencesGraphic.h"

#include "VupPreferenceRegistry.h"

const QString VupPreferencesGraphic::GROUP = QStringLiteral("graphic");

namespace {

QVariant read(const char* name, const QVariant& fallback)
{
    return VupPreferenceRegistry::getInstance()->value(VupPreferencesGraphic::GROUP, QLatin1String(name), fallback);
}

// A number within [low, high], or the fallback with a warning.
float number(const char* name, float fallback, float low, float high)
{
    const QVariant v = read(name, fallback);
    bool ok = false;
    const double value = v.toString().trimmed().toDouble(&ok);
    if (ok && value >= low && value <= high)
        return float(value);
    qWarning("VupPreferencesGraphic: graphic/%s is not a number within [%g, %g] ('%s'), %g is used", name,
             double(low), double(high), qPrintable(v.toString()), double(fallback));
    return fallback;
}

} // namespace

class VupPreferencesGraphicPrivate
{
public:
    QMetaObject::Connection connection;
};

VupPreferencesGraphic::VupPreferencesGraphic()
    : _d(std::make_unique<VupPreferencesGraphicPrivate>())
{
    VupPreferenceRegistry* registry = VupPreferenceRegistry::getInstance();
    _d->connection = QObject::connect(registry, &VupPreferenceRegistry::prefChanged, registry,
                                      [this](const VupPreferenceModif& modif) {
                                          if (modif.concerns(GROUP))
                                              notify(modif);
                                      });
}

VupPreferencesGraphic::~VupPreferencesGraphic()
{
    QObject::disconnect(_d->connection);
}

VupPreferencesGraphic* VupPreferencesGraphic::getInstance()
{
    // The registry is made first so that it outlives this instance and its connection.
    VupPreferenceRegistry::getInstance();
    static VupPreferencesGraphic instance;
    return &instance;
}

float VupPreferencesGraphic::getPointSize() { return number("pointSize", 4.0f, 1.0f, 64.0f); }
float VupPreferencesGraphic::getLineWidth() { return number("lineWidth", 2.0f, 1.0f, 32.0f); }
float VupPreferencesGraphic::getZScale() { return number("zScale", 1.0f, 1e-6f, 1e6f); }
float VupPreferencesGraphic::getSurfaceTransparency() { return number("surfaceTransparency", 0.0f, 0.0f, 1.0f); }

bool VupPreferencesGraphic::isZScaleAutomatic()
{
    const QVariant v = read("zScaleAutomatic", false);
    const QString text = v.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    qWarning("VupPreferencesGraphic: graphic/zScaleAutomatic is not a switch ('%s'), off is used",
             qPrintable(v.toString()));
    return false;
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
