#include "VupPreferenceRegistry.h"

#include <QCoreApplication>
#include <QDir>
#include <QSettings>
#include <QStandardPaths>

class VupPreferenceRegistryPrivate
{
public:
    std::unique_ptr<QSettings> settings;

    QSettings& store()
    {
        if (!settings) {
            const QString dir = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
            settings = std::make_unique<QSettings>(dir + QStringLiteral("/preferences.ini"), QSettings::IniFormat);
        }
        return *settings;
    }
};

VupPreferenceRegistry::VupPreferenceRegistry()
    : _d(std::make_unique<VupPreferenceRegistryPrivate>())
{
    qRegisterMetaType<VupPreferenceModif>();
}

VupPreferenceRegistry::~VupPreferenceRegistry() = default;

VupPreferenceRegistry* VupPreferenceRegistry::getInstance()
{
    static VupPreferenceRegistry instance;
    return &instance;
}

void VupPreferenceRegistry::setStorageFile(const QString& path)
{
    _d->settings = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

QString VupPreferenceRegistry::storageFile() const
{
    return _d->store().fileName();
}

static QString keyOf(const QString& group, const QString& name)
{
    return group + QLatin1Char('/') + name;
}

QVariant VupPreferenceRegistry::value(const QString& group, const QString& name, const QVariant& fallback) const
{
    return _d->store().value(keyOf(group, name), fallback);
}

bool VupPreferenceRegistry::flag(const QString& group, const QString& name, bool fallback) const
{
    const QVariant v = value(group, name, fallback);
    const QString text = v.toString().trimmed().toLower();
    if (text == QLatin1String("true") || text == QLatin1String("1"))
        return true;
    if (text == QLatin1String("false") || text == QLatin1String("0"))
        return false;
    qWarning("VupPreferenceRegistry: %s/%s is not a switch ('%s'), %s is used", qPrintable(group), qPrintable(name),
             qPrintable(v.toString()), fallback ? "on" : "off");
    return fallback;
}

QColor VupPreferenceRegistry::color(const QString& group, const QString& name, const QColor& fallback) const
{
    const QVariant v = value(group, name, fallback.name());
    const QColor c(v.toString().trimmed());
    if (c.isValid())
        return c;
    qWarning("VupPreferenceRegistry: %s/%s is not a colour ('%s'), %s is used", qPrintable(group), qPrintable(name),
             qPrintable(v.toString()), qPrintable(fallback.name()));
    return fallback;
}

double VupPreferenceRegistry::number(const QString& group, const QString& name, double fallback, double low,
                                     double high) const
{
    const QVariant v = value(group, name, fallback);
    bool ok = false;
    const double n = v.toString().trimmed().toDouble(&ok);
    if (ok && n >= low && n <= high)
        return n;
    qWarning("VupPreferenceRegistry: %s/%s is not a number within [%g, %g] ('%s'), %g is used", qPrintable(group),
             qPrintable(name), low, high, qPrintable(v.toString()), fallback);
    return fallback;
}

void VupPreferenceRegistry::setValue(const QString& group, const QString& name, const QVariant& value)
{
    const QString key = keyOf(group, name);
    if (_d->store().contains(key) && _d->store().value(key) == value)
        return;
    _d->store().setValue(key, value);
    Q_EMIT prefChanged(VupPreferenceModif(group, name));
}

void VupPreferenceRegistry::remove(const QString& group, const QString& name)
{
    const QString key = keyOf(group, name);
    if (!_d->store().contains(key))
        return;
    _d->store().remove(key);
    Q_EMIT prefChanged(VupPreferenceModif(group, name));
}
