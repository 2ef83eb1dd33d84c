#include "KbbAEnum.h"

#include <QCoreApplication>
#include <QDebug>

KbbAEnum::KbbAEnum(const QString& label, int value, const char* key)
    : _label(label)
    , _value(value)
    , _key(key)
{
}

void KbbEnumTable::printDuplicate(const char* className, const KbbAEnum& item)
{
    qDebug("%s: duplicated item %s [%d=%s]!\n", className, item.getLabel().toUtf8().constData(),
           item.getValue(), item.getKey());
}

void KbbEnumTable::throwInvalid(const char* operation, const char* unit, const QString& what)
{
    throw KbeProgrammingError(QString::fromLatin1(operation), QString::fromLatin1(unit),
                              QCoreApplication::translate("KbbAEnum", "%1 is not valid").arg(what));
}
