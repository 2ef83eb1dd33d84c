// Rank sets: merging on insertion, splitting on removal, set operations against a plain
// reference set, ranks at INT_MAX, and refused negative or reversed input.

#include <KbiIntervalIntSmallDisjoint.h>

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>
#include <algorithm>
#include <climits>

#include "LowerTestSupport.h"

using Set = KbiIntervalIntSmallDisjoint;

// The column types of the tables below.
using AddAndRemoveRow = Row<QString, QString, QString, qint64>;
using RefusalsRow = Row<QString, int, int>;

class TestIntervals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addAndRemove_data()
    {
        AddAndRemoveRow::addColumns(); // added, removed, expected, count

        const QString top = QStringLiteral("%1-%2").arg(INT_MAX - 1).arg(INT_MAX);
        const QString all = QStringLiteral("0-%1").arg(INT_MAX);
        QTest::newRow("whole int range") << all << "" << all << qint64(INT_MAX) + 1;
        QTest::newRow("merge below INT_MAX") << top + QStringLiteral(", %1").arg(INT_MAX - 2) << ""
                                             << QStringLiteral("%1-%2").arg(INT_MAX - 2).arg(INT_MAX) << qint64(3);
        QTest::newRow("hole splits ten million") << "0-10000000" << "5000000" << "0-4999999, 5000001-10000000"
                                                 << qint64(10000000);
        QTest::newRow("remove last rank of INT_MAX") << top << QString::number(INT_MAX) << QString::number(INT_MAX - 1)
                                                     << qint64(1);
    }
    void addAndRemove()
    {
        const auto [added, removed, expected, count] = AddAndRemoveRow::fetch();
        Set set = ranks(added);
        const Set toRemove = ranks(removed);
        for (const Set::Interval& iv : toRemove.intervals())
            set.remove(iv.first, iv.second);
        QCOMPARE(set.toString(), expected);
        QCOMPARE(set.count(), count);
        QCOMPARE(set.isEmpty(), count == 0);
        for (const Set::Interval& iv : set.intervals()) {
            QVERIFY(set.contains(iv.first) && set.contains(iv.second));
            QVERIFY(iv.first == 0 || !set.contains(iv.first - 1));
            QVERIFY(iv.second == INT_MAX || !set.contains(iv.second + 1));
        }
    }

    // Large ranges; the random walk below covers the small ones.
    void setOperations()
    {
        const Set a = ranks(QStringLiteral("0-10000000"));
        const Set b = ranks(QStringLiteral("5000000-20000000"));
        QCOMPARE(a | b, ranks(QStringLiteral("0-20000000")));
        QCOMPARE(b & a, ranks(QStringLiteral("5000000-10000000")));
        QCOMPARE(a - b, ranks(QStringLiteral("0-4999999")));
    }
    // Random edits and operations over a small range, where intervals touch, overlap and
    // split all the time.
    void matchesReferenceSet()
    {
        QRandomGenerator random(20240611);
        Set a;
        Set b;
        QSet<int> refA;
        QSet<int> refB;
        const auto sorted = [](const QSet<int>& s) {
            QVector<int> v(s.begin(), s.end());
            std::sort(v.begin(), v.end());
            return v;
        };
        for (int step = 0; step < 2000; ++step) {
            const bool onA = random.bounded(2) == 0;
            Set& set = onA ? a : b;
            QSet<int>& ref = onA ? refA : refB;
            const int first = random.bounded(64);
            const int last = first + random.bounded(6);
            const bool adding = random.bounded(3) != 0;
            adding ? set.add(first, last) : set.remove(first, last);
            for (int r = first; r <= last; ++r)
                adding ? void(ref.insert(r)) : void(ref.remove(r));
            QCOMPARE(set.toList(), sorted(ref));
            QCOMPARE((a | b).toList(), sorted(refA | refB));
            QCOMPARE((a & b).toList(), sorted(QSet<int>(refA).intersect(refB)));
            QCOMPARE((a - b).toList(), sorted(QSet<int>(refA).subtract(refB)));
            QCOMPARE(Set::fromList(set.toList()), set);
        }
    }
    void fromListAndIteration()
    {
        const Set set = Set::fromList({INT_MAX, 7, 3, 4, 5, 7, 0, INT_MAX - 1});
        QCOMPARE(set.toString(), QStringLiteral("0, 3-5, 7, %1-%2").arg(INT_MAX - 1).arg(INT_MAX));
        QVector<int> visited;
        for (int rank : set)
            visited.append(rank);
        QCOMPARE(visited, (QVector<int>{0, 3, 4, 5, 7, INT_MAX - 1, INT_MAX}));
        QCOMPARE(set.first(), 0);
        QCOMPARE(set.last(), INT_MAX);
        QCOMPARE(Set().first(), -1);
        QVERIFY(Set().begin() == Set().end());

        expectWarning("^KbiIntervalIntSmallDisjoint::fromList: 2 negative rank\\(s\\) left out");
        QCOMPARE(Set::fromList({3, -1, 2, INT_MIN}).toString(), QStringLiteral("2-3"));
        expectWarning("^KbiIntervalIntSmallDisjoint::toList: 2147483648 ranks are too many for a list, none given");
        QVERIFY(Set(0, INT_MAX).toList().isEmpty());
    }

    void refusals_data()
    {
        RefusalsRow::addColumns(); // operation, first, last

        QTest::newRow("add an interval starting below 0") << "add" << -5 << 3;
        QTest::newRow("add a reversed interval") << "add" << 9 << 2;
        QTest::newRow("remove a negative rank") << "remove" << -3 << -3;
        QTest::newRow("remove a reversed interval") << "remove" << 4 << 1;
    }
    void refusals()
    {
        const auto [operation, first, last] = RefusalsRow::fetch();
        Set set = ranks(QStringLiteral("0-4, 8"));
        const Set before = set;
        expectWarning(QStringLiteral("^KbiIntervalIntSmallDisjoint::%1: ").arg(operation));
        operation == QLatin1String("add") ? set.add(first, last) : set.remove(first, last);
        QCOMPARE(set, before);
    }
};

QTEST_APPLESS_MAIN(TestIntervals)
#include "tst_intervals.moc"
