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
