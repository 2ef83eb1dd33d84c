#include "KbbUserStringFormats.h"

QMap<int, KbbStringFormat>& KbbUserStringFormats::_formats()
{
    static QMap<int, KbbStringFormat> formats = [] {
        QMap<int, KbbStringFormat> m;
        for (auto it = KbuEUnitClass::createIterator(); it.hasNext();) {
            const KbuEUnitClass& c = it.next();
            m.insert(c.getValue(), getDefaultStringFormat(c));
        }
        return m;
    }();
    return formats;
}

KbbStringFormat KbbUserStringFormats::getDefaultStringFormat(const KbuEUnitClass& unitClass)
{
    switch (unitClass.toEnum()) {
    case KbuEUnitClass::LENGTH_V:
    case KbuEUnitClass::COORDINATE_V:
        return KbbStringFormat(KbbStringFormat::FIXED, 2, KbuUnit::fromKey(QStringLiteral("m")));
    case KbuEUnitClass::AREA_V:
        return KbbStringFormat(KbbStringFormat::FIXED, 2, KbuUnit::fromKey(QStringLiteral("m2")));
    case KbuEUnitClass::ANGLE_V:
        return KbbStringFormat(KbbStringFormat::FIXED, 2, KbuUnit::fromKey(QStringLiteral("deg")));
    case KbuEUnitClass::NONE_V:
        break;
    }
    return KbbStringFormat(KbbStringFormat::GENERAL, 6, KbuUnit::none());
}

KbbStringFormat KbbUserStringFormats::getStringFormat(const KbuEUnitClass& unitClass)
{
    return _formats().value(unitClass.getValue(), getDefaultStringFormat(unitClass));
}

void KbbUserStringFormats::setStringFormat(const KbuEUnitClass& unitClass, const KbbStringFormat& format)
{
    if (!format.getUnit().belongsTo(unitClass)) {
        qWarning("KbbUserStringFormats::setStringFormat: unit '%s' does not measure %s, the format is ignored",
                 qPrintable(format.getUnit().getKey()), unitClass.getKey());
        return;
    }
    _formats().insert(unitClass.getValue(), format);
}

void KbbUserStringFormats::resetToDefaults()
{
    QMap<int, KbbStringFormat>& formats = _formats();
    for (auto it = formats.begin(); it != formats.end(); ++it)
        it.value() = getDefaultStringFormat(KbuEUnitClass::fromValue(it.key()));
}

QVariantMap KbbUserStringFormats::toVariantMap()
{
    QVariantMap map;
    const QMap<int, KbbStringFormat>& formats = _formats();
    for (auto it = formats.cbegin(); it != formats.cend(); ++it)
        map.insert(QString::fromLatin1(KbuEUnitClass::fromValue(it.key()).getKey()), it.value().toVariantMap());
    return map;
}

void KbbUserStringFormats::fromVariantMap(const QVariantMap& map)
{
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        const KbuEUnitClass* unitClass = nullptr;
        for (auto c = KbuEUnitClass::createIterator(); c.hasNext();) {
            const KbuEUnitClass& candidate = c.next();
            if (candidate.hasKey(it.key()))
                unitClass = &candidate;
        }
        if (!unitClass) {
            qWarning("KbbUserStringFormats::fromVariantMap: unknown unit class '%s' is ignored", qPrintable(it.key()));
            continue;
        }
        if (!it.value().canConvert<QVariantMap>()) {
            qWarning("KbbUserStringFormats::fromVariantMap: the entry of %s is not a map, it is ignored",
                     unitClass->getKey());
            continue;
        }
        KbbStringFormat format;
        if (KbbStringFormat::fromVariantMap(it.value().toMap(), format))
            setStringFormat(*unitClass, format);
    }
}
