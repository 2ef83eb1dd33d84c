#pragma once
// What the lower libraries' suites share: table columns declared once, the doubles that are
// no number, expected warnings, and rank sets written as text ("0-4, 7") with a readable
// QCOMPARE.

#include <KbiIntervalIntSmallDisjoint.h>

#include <QRegularExpression>
#include <QStringList>
#include <QTest>

#include <array>
#include <limits>
#include <tuple>
#include <utility>

// The column types of a data table, written once: `using Case = Row<int, double>;`, then
// Case::addColumns() in the _data function and `const auto [count, value] = Case::fetch();`
// in the test.
template <typename... T>
struct Row
{
    static void addColumns() { addColumns(std::index_sequence_for<T...>()); }
    static std::tuple<T...> fetch() { return fetch(std::index_sequence_for<T...>()); }

private:
    // QtTest keeps the pointer to a column's name.
    static const char* name(std::size_t i)
    {
        static const std::array<const char*, 8> names{{"0", "1", "2", "3", "4", "5", "6", "7"}};
        return names.at(i);
    }
    template <std::size_t... I>
    static void addColumns(std::index_sequence<I...>)
    {
        (QTest::addColumn<T>(name(I)), ...);
    }
    template <std::size_t... I>
    static std::tuple<T...> fetch(std::index_sequence<I...>)
    {
        return std::tuple<T...>(*static_cast<T*>(QTest::qData(name(I), qMetaTypeId<T>()))...);
    }
};

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();

// The next warning must match the regular expression, or the test fails.
inline void expectWarning(const QString& pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(pattern));
}

// "0-4, 7" adds [0, 4] then 7, in that order.
inline KbiIntervalIntSmallDisjoint ranks(const QString& text)
{
    KbiIntervalIntSmallDisjoint set;
    for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        const QStringList ends = part.trimmed().split(QLatin1Char('-'));
        set.add(ends.first().toInt(), ends.last().toInt());
    }
    return set;
}

namespace QTest {
template <>
inline char* toString(const KbiIntervalIntSmallDisjoint& set)
{
    return qstrdup(qPrintable(QLatin1Char('{') + set.toString() + QLatin1Char('}')));
}
} // namespace QTest
