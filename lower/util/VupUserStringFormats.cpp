#include "VupUserStringFormats.h"

#include <KbbUserStringFormats.h>
#include <VupPreferenceRegistry.h>

const QString VupUserStringFormats::GROUP = QStringLiteral("units");

namespace {

// The fields of KbbStringFormat::toVariantMap().
QStringList fieldNames()
{
    return KbbStringFormat().toVariantMap().keys();
}

} // namespace

void VupUserStringFormats::load(VupPreferenceRegistry* registry)
{
    if (!registry) {
        qWarning("VupUserStringFormats::load: no preference registry");
        return;
    }
    const QStringList fields = fieldNames();
    QVariantMap all;
    for (auto it = KbuEUnitClass::createIterator(); it.hasNext();) {
        const QString classKey = QString::fromLatin1(it.next().getKey());
        QVariantMap entry;
        for (const QString& field : fields) {
            const QVariant v = registry->value(GROUP, classKey + QLatin1Char('/') + field);
            if (v.isValid())
                entry.insert(field, v);
        }
        if (!entry.isEmpty())
            all.insert(classKey, entry);
    }
    KbbUserStringFormats::fromVariantMap(all);
}

void VupUserStringFormats::save(VupPreferenceRegistry* registry)
{
    if (!registry) {
        qWarning("VupUserStringFormats::save: no preference registry");
        return;
    }
    const QVariantMap all = KbbUserStringFormats::toVariantMap();
    for (auto it = all.cbegin(); it != all.cend(); ++it) {
        const QVariantMap entry = it.value().toMap();
        for (auto f = entry.cbegin(); f != entry.cend(); ++f)
            registry->setValue(GROUP, it.key() + QLatin1Char('/') + f.key(), f.value());
    }
}
