#pragma once
// A set of sample ranks (non-negative integers) kept as sorted, disjoint closed intervals
// that never touch: adding 5 to {[0, 4]} gives {[0, 5]}. A selection of millions of
// consecutive samples costs one interval; look-ups are binary searches on interval starts.

#include <velmora_basic_export.h>

#include <QMetaType>
#include <QPair>
#include <QString>
#include <QVector>
#include <iterator>

class QDebug;

class VELMORA_BASIC_EXPORT KbiIntervalIntSmallDisjoint
{
public:
    using Interval = QPair<int, int>;

    // Visits the ranks in ascending order.
    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = int;
        using difference_type = qint64;
        using pointer = const int*;
        using reference = int;

        const_iterator() = default;
        int operator*() const { return _rank; }
        const_iterator& operator++();
        const_iterator operator++(int)
        {
            const_iterator previous = *this;
            ++*this;
            return previous;
        }
        bool operator==(const const_iterator& o) const { return _index == o._index && _rank == o._rank; }
        bool operator!=(const const_iterator& o) const { return !(*this == o); }

    private:
        friend class KbiIntervalIntSmallDisjoint;
        const_iterator(const QVector<Interval>* intervals, int index);

        const QVector<Interval>* _intervals = nullptr;
        int _index = 0;
        int _rank = 0;
    };

    KbiIntervalIntSmallDisjoint() = default;
    // A negative rank or a reversed interval is refused with a qWarning: the set is empty.
    explicit KbiIntervalIntSmallDisjoint(int rank);
    KbiIntervalIntSmallDisjoint(int first, int last);

    // Ranks in any order, repeated or not. Negative ranks are left out with one qWarning.
    static KbiIntervalIntSmallDisjoint fromList(const QVector<int>& ranks);

    // Negative ranks and reversed intervals (first > last) are refused with a qWarning and
    // leave the set as it was.
    void add(int rank) { add(rank, rank); }
    void add(int first, int last);
    void remove(int rank) { remove(rank, rank); }
    void remove(int first, int last);
    void clear() { _intervals.clear(); }

    bool contains(int rank) const;
    bool isEmpty() const { return _intervals.isEmpty(); }
    // The number of ranks; 64 bits because [0, INT_MAX] holds 2^31 of them.
    qint64 count() const;
    int intervalCount() const { return _intervals.size(); }
    // The smallest and largest rank; -1 when the set is empty.
    int first() const { return _intervals.isEmpty() ? -1 : _intervals.first().first; }
    int last() const { return _intervals.isEmpty() ? -1 : _intervals.last().second; }

    const QVector<Interval>& intervals() const { return _intervals; }
    // Every rank, ascending: one int per rank, so only for sets known to be small. Beyond
    // MAX_LIST_SIZE ranks the list is refused with a qWarning and comes back empty.
    static constexpr qint64 MAX_LIST_SIZE = qint64(1) << 28;
    QVector<int> toList() const;
    // "0-4, 7, 9-12", "" when empty: for messages and test output.
    QString toString() const;

    KbiIntervalIntSmallDisjoint united(const KbiIntervalIntSmallDisjoint& o) const;
    KbiIntervalIntSmallDisjoint intersected(const KbiIntervalIntSmallDisjoint& o) const;
    KbiIntervalIntSmallDisjoint subtracted(const KbiIntervalIntSmallDisjoint& o) const;

    KbiIntervalIntSmallDisjoint operator|(const KbiIntervalIntSmallDisjoint& o) const { return united(o); }
    KbiIntervalIntSmallDisjoint operator&(const KbiIntervalIntSmallDisjoint& o) const { return intersected(o); }
    KbiIntervalIntSmallDisjoint operator-(const KbiIntervalIntSmallDisjoint& o) const { return subtracted(o); }
    KbiIntervalIntSmallDisjoint& operator|=(const KbiIntervalIntSmallDisjoint& o) { return *this = united(o); }
    KbiIntervalIntSmallDisjoint& operator&=(const KbiIntervalIntSmallDisjoint& o) { return *this = intersected(o); }
    KbiIntervalIntSmallDisjoint& operator-=(const KbiIntervalIntSmallDisjoint& o) { return *this = subtracted(o); }

    // The representation is canonical, so equal sets have equal intervals.
    bool operator==(const KbiIntervalIntSmallDisjoint& o) const { return _intervals == o._intervals; }
    bool operator!=(const KbiIntervalIntSmallDisjoint& o) const { return _intervals != o._intervals; }

    const_iterator begin() const { return const_iterator(&_intervals, 0); }
    const_iterator end() const { return const_iterator(&_intervals, _intervals.size()); }

private:
    static bool _isValid(int first, int last, const char* operation);

    QVector<Interval> _intervals;
};

VELMORA_BASIC_EXPORT QDebug operator<<(QDebug debug, const KbiIntervalIntSmallDisjoint& set);

Q_DECLARE_METATYPE(KbiIntervalIntSmallDisjoint)
