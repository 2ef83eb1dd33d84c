#pragma once
// Base of the enumeration classes: each instance carries a translated label, a unique
// integer value and a fixed ASCII key. KbbEnumTable<E> is the class-wide ordered map
// that an enumeration class keeps of its instances, with the lookups they all share.

#include <velmora_basic_export.h>

#include <KbeProgrammingError.h>

#include <QMap>
#include <QString>

class VELMORA_BASIC_EXPORT KbbAEnum
{
public:
    const QString& getLabel() const { return _label; }
    int getValue() const { return _value; }
    const char* getKey() const { return _key; }

    bool hasKey(const QString& key) const { return key == QLatin1String(_key); }
    bool hasLabel(const QString& label, Qt::CaseSensitivity cs = Qt::CaseSensitive) const
    {
        return _label.compare(label, cs) == 0;
    }

protected:
    KbbAEnum(const QString& label, int value, const char* key);
    KbbAEnum(const KbbAEnum&) = default;
    KbbAEnum& operator=(const KbbAEnum&) = default;
    ~KbbAEnum() = default;

private:
    QString _label;
    int _value;
    const char* _key;
};

// Iterates over the instances of an enumeration in ascending value order.
template <class E>
class KbbEnumIterator
{
public:
    explicit KbbEnumIterator(const QMap<int, E*>& map)
        : _it(map.cbegin())
        , _end(map.cend())
    {
    }
    bool hasNext() const { return _it != _end; }
    const E& next() { return **(_it++); }

private:
    typename QMap<int, E*>::const_iterator _it;
    typename QMap<int, E*>::const_iterator _end;
};

// The lookups of an enumeration class over its map. `unit` names the source unit in the
// text of the programming error raised by a failed lookup.
namespace KbbEnumTable {

VELMORA_BASIC_EXPORT void printDuplicate(const char* className, const KbbAEnum& item);
[[noreturn]] VELMORA_BASIC_EXPORT void throwInvalid(const char* operation, const char* unit, const QString& what);

template <class E>
void registerItem(QMap<int, E*>& map, E* item, const char* className)
{
    if (map.contains(item->getValue()))
        printDuplicate(className, *item);
    map.insert(item->getValue(), item);
}

template <class E>
const E* findKey(const QMap<int, E*>& map, const QString& key)
{
    for (const E* e : map)
        if (e->hasKey(key))
            return e;
    return nullptr;
}

template <class E>
const E* findLabel(const QMap<int, E*>& map, const QString& label, Qt::CaseSensitivity cs)
{
    for (const E* e : map)
        if (e->hasLabel(label, cs))
            return e;
    return nullptr;
}

template <class E>
const E& fromValue(const QMap<int, E*>& map, int value, const char* operation, const char* unit)
{
    const E* e = map.value(value, nullptr);
    if (!e)
        throwInvalid(operation, unit, QString::number(value));
    return *e;
}

template <class E>
const E& fromKey(const QMap<int, E*>& map, const QString& key, const char* operation, const char* unit)
{
    const E* e = findKey(map, key);
    if (!e)
        throwInvalid(operation, unit, key);
    return *e;
}

template <class E>
const E& fromLabel(const QMap<int, E*>& map, const QString& label, const char* operation, const char* unit)
{
    const E* e = findLabel(map, label, Qt::CaseSensitive);
    if (!e)
        throwInvalid(operation, unit, label);
    return *e;
}

} // namespace KbbEnumTable
