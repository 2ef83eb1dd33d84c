#pragma once
// What changed in the preferences: the group ("style", "units", "3dviews", ...) and the
// key within it, or every key of the group when the key is empty.

#include <QMetaType>
#include <QString>

class VupPreferenceModif
{
public:
    VupPreferenceModif() = default;
    VupPreferenceModif(const QString& group, const QString& key)
        : _group(group)
        , _key(key)
    {
    }

    const QString& getGroup() const { return _group; }
    const QString& getKey() const { return _key; }
    bool concerns(const QString& group) const { return _group == group; }

    static QString styleGroup() { return QStringLiteral("style"); }
    static QString unitsGroup() { return QStringLiteral("units"); }

private:
    QString _group;
    QString _key;
};

Q_DECLARE_METATYPE(VupPreferenceModif)
