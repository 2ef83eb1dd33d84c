#pragma once
// A map that remembers the order in which its keys were first inserted. Iteration,
// keys() and values() follow that order; replacing a value keeps the key's place.
// Lookups are hashed; removal is linear in the size, which suits the short lists
// (window lists, field maps) it holds.

#include <QHash>
#include <QList>
#include <utility>
#include <vector>

template <class K, class V>
class KbbOrderedMap
{
public:
    using Entry = std::pair<K, V>;
    using const_iterator = typename std::vector<Entry>::const_iterator;

    KbbOrderedMap() = default;
    KbbOrderedMap(std::initializer_list<Entry> entries)
    {
        for (const Entry& e : entries)
            insert(e.first, e.second);
    }

    int size() const { return int(_entries.size()); }
    bool isEmpty() const { return _entries.empty(); }
    bool contains(const K& key) const { return _index.contains(key); }

    void insert(const K& key, const V& value)
    {
        const auto it = _index.constFind(key);
        if (it != _index.cend()) {
            _entries[size_t(*it)].second = value;
            return;
        }
        _index.insert(key, int(_entries.size()));
        _entries.emplace_back(key, value);
    }

    V value(const K& key, const V& fallback = V()) const
    {
        const auto it = _index.constFind(key);
        return it == _index.cend() ? fallback : _entries[size_t(*it)].second;
    }

    // Inserts a default value when the key is new.
    V& operator[](const K& key)
    {
        if (!contains(key))
            insert(key, V());
        return _entries[size_t(_index.value(key))].second;
    }

    V take(const K& key)
    {
        const auto it = _index.constFind(key);
        if (it == _index.cend())
            return V();
        const int pos = *it;
        V v = std::move(_entries[size_t(pos)].second);
        _entries.erase(_entries.begin() + pos);
        _index.remove(key);
        for (size_t i = size_t(pos); i < _entries.size(); ++i)
            _index[_entries[i].first] = int(i);
        return v;
    }

    bool remove(const K& key)
    {
        if (!contains(key))
            return false;
        take(key);
        return true;
    }

    void clear()
    {
        _entries.clear();
        _index.clear();
    }

    QList<K> keys() const
    {
        QList<K> list;
        list.reserve(size());
        for (const Entry& e : _entries)
            list.append(e.first);
        return list;
    }

    QList<V> values() const
    {
        QList<V> list;
        list.reserve(size());
        for (const Entry& e : _entries)
            list.append(e.second);
        return list;
    }

    const Entry& at(int pos) const { return _entries[size_t(pos)]; }

    const_iterator begin() const { return _entries.cbegin(); }
    const_iterator end() const { return _entries.cend(); }

    bool operator==(const KbbOrderedMap& other) const { return _entries == other._entries; }
    bool operator!=(const KbbOrderedMap& other) const { return !(*this == other); }

private:
    std::vector<Entry> _entries;
    QHash<K, int> _index;
};
