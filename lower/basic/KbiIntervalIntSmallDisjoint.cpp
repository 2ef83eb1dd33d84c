#include "KbiIntervalIntSmallDisjoint.h"

#include <QDebug>
#include <QStringList>
#include <algorithm>

// Interval ends are compared in 64 bits wherever one is moved by one, so that INT_MAX, a
// valid rank, never overflows.

KbiIntervalIntSmallDisjoint::const_iterator::const_iterator(const QVector<Interval>* intervals, int index)
    : _intervals(intervals)
    , _index(index)
    , _rank(index < intervals->size() ? intervals->at(index).first : 0)
{
}

KbiIntervalIntSmallDisjoint::const_iterator& KbiIntervalIntSmallDisjoint::const_iterator::operator++()
{
    if (_rank < _intervals->at(_index).second) {
        ++_rank;
        return *this;
    }
    ++_index;
    _rank = _index < _intervals->size() ? _intervals->at(_index).first : 0;
    return *this;
}

KbiIntervalIntSmallDisjoint::KbiIntervalIntSmallDisjoint(int rank)
{
    add(rank);
}

KbiIntervalIntSmallDisjoint::KbiIntervalIntSmallDisjoint(int first, int last)
{
    add(first, last);
}

KbiIntervalIntSmallDisjoint KbiIntervalIntSmallDisjoint::fromList(const QVector<int>& ranks)
{
    QVector<int> sorted = ranks;
    std::sort(sorted.begin(), sorted.end());
    KbiIntervalIntSmallDisjoint set;
    int negatives = 0;
    for (int rank : qAsConst(sorted)) {
        if (rank < 0) {
            ++negatives;
            continue;
        }
        if (!set._intervals.isEmpty() && qint64(set._intervals.last().second) + 1 >= rank)
            set._intervals.last().second = rank; // sorted, so never below the current end
        else
            set._intervals.append(Interval(rank, rank));
    }
    if (negatives > 0)
        qWarning("KbiIntervalIntSmallDisjoint::fromList: %d negative rank(s) left out", negatives);
    return set;
}

bool KbiIntervalIntSmallDisjoint::_isValid(int first, int last, const char* operation)
{
    if (first < 0 || last < 0) {
        qWarning("KbiIntervalIntSmallDisjoint::%s: negative rank in [%d, %d] refused", operation, first, last);
        return false;
    }
    if (first > last) {
        qWarning("KbiIntervalIntSmallDisjoint::%s: reversed interval [%d, %d] refused", operation, first, last);
        return false;
    }
    return true;
}

void KbiIntervalIntSmallDisjoint::add(int first, int last)
{
    if (!_isValid(first, last, "add"))
        return;
    // [lo, hi) are the intervals that overlap [first, last] or touch it on either side.
    const auto lo = std::lower_bound(_intervals.cbegin(), _intervals.cend(), first,
                                     [](const Interval& iv, int f) { return qint64(iv.second) + 1 < f; });
    const auto hi = std::upper_bound(lo, _intervals.cend(), last,
                                     [](int l, const Interval& iv) { return qint64(iv.first) > qint64(l) + 1; });
    const int i = int(lo - _intervals.cbegin());
    const int j = int(hi - _intervals.cbegin());
    if (i == j) {
        _intervals.insert(i, Interval(first, last));
        return;
    }
    const Interval merged(qMin(first, _intervals.at(i).first), qMax(last, _intervals.at(j - 1).second));
    _intervals[i] = merged;
    _intervals.remove(i + 1, j - i - 1);
}

void KbiIntervalIntSmallDisjoint::remove(int first, int last)
{
    if (!_isValid(first, last, "remove"))
        return;
    // [lo, hi) are the intervals that overlap [first, last].
    const auto lo = std::lower_bound(_intervals.cbegin(), _intervals.cend(), first,
                                     [](const Interval& iv, int f) { return iv.second < f; });
    const auto hi = std::upper_bound(lo, _intervals.cend(), last,
                                     [](int l, const Interval& iv) { return l < iv.first; });
    const int i = int(lo - _intervals.cbegin());
    const int j = int(hi - _intervals.cbegin());
    if (i == j)
        return;
    // What sticks out on either side survives; first - 1 and last + 1 stay in range because
    // the surviving piece holds a rank beyond them.
    QVector<Interval> kept;
    if (_intervals.at(i).first < first)
        kept.append(Interval(_intervals.at(i).first, first - 1));
    if (_intervals.at(j - 1).second > last)
        kept.append(Interval(last + 1, _intervals.at(j - 1).second));
    _intervals.remove(i, j - i);
    for (int k = 0; k < kept.size(); ++k)
        _intervals.insert(i + k, kept.at(k));
}

bool KbiIntervalIntSmallDisjoint::contains(int rank) const
{
    if (rank < 0)
        return false;
    const auto after = std::upper_bound(_intervals.cbegin(), _intervals.cend(), rank,
                                        [](int r, const Interval& iv) { return r < iv.first; });
    return after != _intervals.cbegin() && (after - 1)->second >= rank;
}

qint64 KbiIntervalIntSmallDisjoint::count() const
{
    qint64 total = 0;
    for (const Interval& iv : _intervals)
        total += qint64(iv.second) - iv.first + 1;
    return total;
}

QVector<int> KbiIntervalIntSmallDisjoint::toList() const
{
    const qint64 size = count();
    if (size > MAX_LIST_SIZE) {
        qWarning("KbiIntervalIntSmallDisjoint::toList: %lld ranks are too many for a list, none given",
                 static_cast<long long>(size));
        return {};
    }
    QVector<int> ranks;
    ranks.reserve(int(size));
    for (int rank : *this)
        ranks.append(rank);
    return ranks;
}

QString KbiIntervalIntSmallDisjoint::toString() const
{
    QStringList parts;
    for (const Interval& iv : _intervals)
        parts.append(iv.first == iv.second ? QString::number(iv.first)
                                           : QStringLiteral("%1-%2").arg(iv.first).arg(iv.second));
    return parts.join(QStringLiteral(", "));
}

KbiIntervalIntSmallDisjoint KbiIntervalIntSmallDisjoint::united(const KbiIntervalIntSmallDisjoint& o) const
{
    const QVector<Interval>& a = _intervals;
    const QVector<Interval>& b = o._intervals;
    KbiIntervalIntSmallDisjoint result;
    result._intervals.reserve(a.size() + b.size());
    int i = 0;
    int j = 0;
    while (i < a.size() || j < b.size()) {
        const bool fromA = j >= b.size() || (i < a.size() && a.at(i).first <= b.at(j).first);
        const Interval next = fromA ? a.at(i++) : b.at(j++);
        QVector<Interval>& r = result._intervals;
        if (!r.isEmpty() && qint64(r.last().second) + 1 >= next.first)
            r.last().second = qMax(r.last().second, next.second);
        else
            r.append(next);
    }
    return result;
}

KbiIntervalIntSmallDisjoint KbiIntervalIntSmallDisjoint::intersected(const KbiIntervalIntSmallDisjoint& o) const
{
    const QVector<Interval>& a = _intervals;
    const QVector<Interval>& b = o._intervals;
    KbiIntervalIntSmallDisjoint result;
    int i = 0;
    int j = 0;
    // Two pieces cut from canonical sets never touch: the rank after a piece's end lies in
    // the gap of whichever interval ended there.
    while (i < a.size() && j < b.size()) {
        const int first = qMax(a.at(i).first, b.at(j).first);
        const int last = qMin(a.at(i).second, b.at(j).second);
        if (first <= last)
            result._intervals.append(Interval(first, last));
        if (a.at(i).second < b.at(j).second)
            ++i;
        else
            ++j;
    }
    return result;
}

KbiIntervalIntSmallDisjoint KbiIntervalIntSmallDisjoint::subtracted(const KbiIntervalIntSmallDisjoint& o) const
{
    const QVector<Interval>& b = o._intervals;
    KbiIntervalIntSmallDisjoint result;
    int j = 0;
    for (const Interval& iv : _intervals) {
        while (j < b.size() && b.at(j).second < iv.first)
            ++j;
        qint64 start = iv.first;
        // b[k] may also reach into the next interval, so j stays where it is.
        for (int k = j; k < b.size() && b.at(k).first <= iv.second; ++k) {
            if (b.at(k).first > start)
                result._intervals.append(Interval(int(start), b.at(k).first - 1));
            start = qMax(start, qint64(b.at(k).second) + 1);
        }
        if (start <= iv.second)
            result._intervals.append(Interval(int(start), iv.second));
    }
    return result;
}

QDebug operator<<(QDebug debug, const KbiIntervalIntSmallDisjoint& set)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "KbiIntervalIntSmallDisjoint(" << qPrintable(set.toString()) << ')';
    return debug;
}
