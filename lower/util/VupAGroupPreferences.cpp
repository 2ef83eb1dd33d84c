#include "VupAGroupPreferences.h"

#include "VupPreferenceRegistry.h"

VupAGroupPreferences::VupAGroupPreferences(const QString& group)
{
    VupPreferenceRegistry* registry = VupPreferenceRegistry::getInstance();
    _connection = QObject::connect(registry, &VupPreferenceRegistry::prefChanged, registry,
                                   [this, group](const VupPreferenceModif& modif) {
                                       if (modif.concerns(group))
                                           notify(modif);
                                   });
}

VupAGroupPreferences::~VupAGroupPreferences()
{
    QObject::disconnect(_connection);
}
