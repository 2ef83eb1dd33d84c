#pragma once
// The observable side of a group of preferences: it passes on the registry's changes to
// its own group ("3dviews", "graphic", ...) and no others. The preference classes derive
// from it and keep a single instance each.

#include <velmora_util_export.h>

#include <VuoAObservable.h>
#include <VupPreferenceModif.h>

#include <QMetaObject>
#include <QString>

class VELMORA_UTIL_EXPORT VupAGroupPreferences : public VuoAObservable<VupPreferenceModif>
{
public:
    ~VupAGroupPreferences() override;

protected:
    // Makes the registry first, so that it outlives the instance and its connection.
    explicit VupAGroupPreferences(const QString& group);

private:
    QMetaObject::Connection _connection;
};
