#pragma once
// The application's preference map, stored in an INI file, with one signal for every
// change. Keys are "group/name". Tests point it at a file of their own.

#include <velmora_util_export.h>

#include <VupPreferenceModif.h>

#include <QColor>
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
    // Typed reads for the preference classes: a stored value that is not a switch ("true",
    // "false", "1", "0"), a colour or a number within [low, high] gives the fallback, with a
    // warning naming "group/name".
    bool flag(const QString& group, const QString& name, bool fallback) const;
    QColor color(const QString& group, const QString& name, const QColor& fallback) const;
    double number(const QString& group, const QString& name, double fallback, double low, double high) const;
    // Stores and announces the change; an equal value changes nothing and says nothing.
    void setValue(const QString& group, const QString& name, const QVariant& value);
    void remove(const QString& group, const QString& name);

Q_SIGNALS:
    void prefChanged(const VupPreferenceModif& modif);

private:
    VupPreferenceRegistry();
    std::unique_ptr<class VupPreferenceRegistryPrivate> const _d;
};
