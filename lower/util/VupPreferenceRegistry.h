#pragma once
// The application's preference map, stored in an INI file, with one signal for every
// change. Keys are "group/name". Tests point it at a file of their own.

#include <velmora_util_export.h>

#include <VupPreferenceModif.h>

#include <QObject>
#include <QVariant>
#include <memory>

class VELMORA_UTIL_EXPORT VupPreferenceRegistry : public QObject
{
    Q_OBJECT
public:
    static VupPreferenceRegistry* getInstance();
    ~VupPreferenceRegistry() override;

    // Where the preferences live; the default is preferences.ini in the application's
    // configuration folder.
    void setStorageFile(const QString& path);
    QString storageFile() const;

    QVariant value(const QString& group, const QString& name, const QVariant& fallback = QVariant()) const;
    // Stores and announces the change; an equal value changes nothing and says nothing.
    void setValue(const QString& group, const QString& name, const QVariant& value);
    void remove(const QString& group, const QString& name);

Q_SIGNALS:
    void prefChanged(const VupPreferenceModif& modif);

private:
    VupPreferenceRegistry();
    std::unique_ptr<class VupPreferenceRegistryPrivate> const _d;
};
