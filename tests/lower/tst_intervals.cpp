// Rank sets: merging on insertion, splitting on removal, set operations against a plain
// reference set, ranks at INT_MAX, and refused negative or reversed input.

#include <KbiIntervalIntSmallDisjoint.h>

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>
#include <algorithm>
#include <climits>

using Set = KbiIntervalIntSmallDisjoint;

namespace {

// "0-4, 7" adds [0, 4] then 7, in that order.
Set parse(const QString& text)
{
    Set set;
    for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QStringList ends = part.trimmed().split(QLatin1Char('-'));
        set.add(ends.first().toInt(), ends.last().toInt());
    }
    return set;
}

} // namespace

namespace QTest {
template<> char* toString(const Set& set)
{
    return qstrdup(qPrintable(QLatin1Char('{') + set.toString() + QLatin1Char('}')));
}
} // namespace QTest

class TestIntervals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addAndRemove_data();
    void addAndRemove();
    void setOperations_data();
    void setOperations();
    void matchesReferenceSet();
    void fromListAndIteration();
    void refusals_data();
    void refusals();
};

void TestIntervals::addAndRemove_data()
{
    QTest::addColumn<QString>("added");
    QTest::addColumn<QString>("removed");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<qint64>("count");

    const QString top = QStringLiteral("%1-%2").arg(INT_MAX - 1).arg(INT_MAX);
    QTest::newRow("apart ranks stay apart") << "3, 1" << "" << "1, 3" << qint64(2);
    QTest::newRow("adjacent on the right merges") << "0-4, 5" << "" << "0-5" << qint64(6);
    QTest::newRow("adjacent on the left merges") << "5-9, 4" << "" << "4-9" << qint64(6);
    QTest::newRow("rank filling a gap joins both") << "0-4, 6-9, 5" << "" << "0-9" << qint64(10);
    QTest::newRow("interval bridging four") << "0-1, 3-4, 6-7, 9-10, 2-8" << "" << "0-10" << qint64(11);
    QTest::newRow("overlap extends both ends") << "5-9, 3-12" << "" << "3-12" << qint64(10);
    QTest::newRow("contained adds nothing") << "0-9, 3-4, 9" << "" << "0-9" << qint64(10);
    QTest::newRow("between two without touching") << "0-1, 10-11, 5-6" << "" << "0-1, 5-6, 10-11" << qint64(6);
    QTest::newRow("whole int range") << QStringLiteral("0-%1").arg(INT_MAX) << "" << QStringLiteral("0-%1").arg(INT_MAX)
                                     << qint64(INT_MAX) + 1;
    QTest::newRow("merge below INT_MAX") << top + QStringLiteral(", %1").arg(INT_MAX - 2) << ""
                                         << QStringLiteral("%1-%2").arg(INT_MAX - 2).arg(INT_MAX) << qint64(3);
    QTest::newRow("hole splits ten million") << "0-10000000" << "5000000" << "0-4999999, 5000001-10000000"
                                             << qint64(10000000);
    QTest::newRow("cut left end") << "0-9" << "0-2" << "3-9" << qint64(7);
    QTest::newRow("cut right end") << "0-9" << "8-20" << "0-7" << qint64(8);
    QTest::newRow("remove spanning three") << "0-4, 6-8, 10-14" << "2-12" << "0-1, 13-14" << qint64(4);
    QTest::newRow("remove an exact interval") << "0-4, 6-8, 10-14" << "6-8" << "0-4, 10-14" << qint64(10);
    QTest::newRow("remove in a gap") << "0-4, 10-14" << "5-9" << "0-4, 10-14" << qint64(10);
    QTest::newRow("remove last rank of INT_MAX") << top << QString::number(INT_MAX) << QString::number(INT_MAX - 1)
                                                 << qint64(1);
    QTest::newRow("remove everything") << "0-4, 10-14" << "0-100" << "" << qint64(0);
}

void TestIntervals::addAndRemove()
{
    QFETCH(QString, added);
    QFETCH(QString, removed);
    QFETCH(QString, expected);
    QFETCH(qint64, count);
    Set set = parse(added);
    const Set toRemove = parse(removed);
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

void TestIntervals::setOperations_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<QString>("united");
    QTest::addColumn<QString>("intersected");
    QTest::addColumn<QString>("aMinusB");

    QTest::newRow("touching sets unite into one") << "0-4" << "5-9" << "0-9" << "" << "0-4";
    QTest::newRow("overlap") << "0-6" << "4-9" << "0-9" << "4-6" << "0-3";
    QTest::newRow("nested") << "0-20" << "5-9" << "0-20" << "5-9" << "0-4, 10-20";
    QTest::newRow("identical") << "1-3, 7" << "1-3, 7" << "1-3, 7" << "1-3, 7" << "";
    QTest::newRow("empty right") << "2-5" << "" << "2-5" << "" << "2-5";
    QTest::newRow("many holes punched") << "0-100" << "10, 20-29, 50, 99-200" << "0-200"
                                        << "10, 20-29, 50, 99-100" << "0-9, 11-19, 30-49, 51-98";
    QTest::newRow("one interval across several") << "0-2, 5-7, 10-12" << "1-11" << "0-12" << "1-2, 5-7, 10-11"
                                                   << "0, 12";
    QTest::newRow("large ranges") << "0-10000000" << "5000000-20000000" << "0-20000000" << "5000000-10000000"
                                  << "0-4999999";
}

void TestIntervals::setOperations()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(QString, united);
    QFETCH(QString, intersected);
    QFETCH(QString, aMinusB);
    const Set setA = parse(a);
    const Set setB = parse(b);
    QCOMPARE((setA | setB).toString(), united);
    QCOMPARE((setB | setA).toString(), united);
    QCOMPARE((setA & setB).toString(), intersected);
    QCOMPARE((setB & setA).toString(), intersected);
    QCOMPARE((setA - setB).toString(), aMinusB);
    QCOMPARE(setA - setB, parse(united) - setB);
}

void TestIntervals::matchesReferenceSet()
{
    // Random edits and operations over a small range, where collisions are frequent.
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

void TestIntervals::fromListAndIteration()
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

    QTest::ignoreMessage(QtWarningMsg, "KbiIntervalIntSmallDisjoint::fromList: 2 negative rank(s) left out");
    QCOMPARE(Set::fromList({3, -1, 2, INT_MIN}).toString(), QStringLiteral("2-3"));
    QTest::ignoreMessage(QtWarningMsg,
                         "KbiIntervalIntSmallDisjoint::toList: 2147483648 ranks are too many for a list, none given");
    QVERIFY(Set(0, INT_MAX).toList().isEmpty());
}

void TestIntervals::refusals_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");

    QTest::newRow("add a negative rank") << "add" << -1 << -1;
    QTest::newRow("add an interval starting below 0") << "add" << -5 << 3;
    QTest::newRow("add INT_MIN") << "add" << INT_MIN << INT_MIN;
    QTest::newRow("add a reversed interval") << "add" << 9 << 2;
    QTest::newRow("remove a negative rank") << "remove" << -3 << -3;
    QTest::newRow("remove a reversed interval") << "remove" << 4 << 1;
}

void TestIntervals::refusals()
{
    QFETCH(QString, operation);
    QFETCH(int, first);
    QFETCH(int, last);
    Set set = parse(QStringLiteral("0-4, 8"));
    const Set before = set;
    const QString prefix = QStringLiteral("^KbiIntervalIntSmallDisjoint::%1: ").arg(operation);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(prefix));
    operation == QLatin1String("add") ? set.add(first, last) : set.remove(first, last);
    QCOMPARE(set, before);
}

QTEST_APPLESS_MAIN(TestIntervals)
#include "tst_intervals.moc"
