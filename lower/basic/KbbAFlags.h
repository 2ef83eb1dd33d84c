#pragma once
// A set over an enumeration class E: one boolean per value of E, in value order.
// E provides createIterator(), fromValue(int) and the KbbAEnum accessors.

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

template <class E>
class KbbAFlags
{
public:
    void addFlag(const E& e) { _flags[e.getValue()] = true; }
    void removeFlag(const E& e) { _flags[e.getValue()] = false; }
    void addFlags(const KbbAFlags& other)
    {
        for (auto it = other._flags.cbegin(); it != other._flags.cend(); ++it)
            if (it.value())
                _flags[it.key()] = true;
    }
    void removeFlags(const KbbAFlags& other)
    {
        for (auto it = other._flags.cbegin(); it != other._flags.cend(); ++it)
            if (it.value())
                _flags[it.key()] = false;
    }

    bool testFlag(const E& e) const { return _flags.value(e.getValue(), false); }
    // True when the two sets share at least one member.
    bool testFlag(const KbbAFlags& other) const
    {
        for (auto it = other._flags.cbegin(); it != other._flags.cend(); ++it)
            if (it.value() && _flags.value(it.key(), false))
                return true;
        return false;
    }
    // True when every member of the other set is a member of this one.
    bool testFlags(const KbbAFlags& other) const
    {
        for (auto it = other._flags.cbegin(); it != other._flags.cend(); ++it)
            if (it.value() && !_flags.value(it.key(), false))
                return false;
        return true;
    }

    int count(bool set) const
    {
        int n = 0;
        for (bool f : _flags)
            n += (f == set) ? 1 : 0;
        return n;
    }

    QList<E> toList() const
    {
        QList<E> list;
        for (auto it = _flags.cbegin(); it != _flags.cend(); ++it)
            if (it.value())
                list.append(E::fromValue(it.key()));
        return list;
    }

    QString getKeys() const
    {
        QStringList keys;
        for (auto it = _flags.cbegin(); it != _flags.cend(); ++it)
            if (it.value())
                keys.append(QLatin1String(E::fromValue(it.key()).getKey()));
        return keys.join(QLatin1Char('|'));
    }

    void setKeys(const QString& text)
    {
        const QStringList keys = text.split(QLatin1Char('|'));
        for (auto it = E::createIterator(); it.hasNext();) {
            const E& e = it.next();
            _flags[e.getValue()] = keys.contains(QLatin1String(e.getKey()));
        }
    }

    bool operator==(const KbbAFlags& other) const { return _flags == other._flags; }
    bool operator!=(const KbbAFlags& other) const { return !(*this == other); }

protected:
    explicit KbbAFlags(bool set)
    {
        for (auto it = E::createIterator(); it.hasNext();)
            _flags.insert(it.next().getValue(), set);
    }

private:
    QMap<int, bool> _flags;
};
