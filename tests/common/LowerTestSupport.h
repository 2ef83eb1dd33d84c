#pragma once
// What the lower libraries' suites share: table columns declared once, the doubles that are
// no number, expected warnings, and rank sets written as text ("0-4, 7") with a readable
// QCOMPARE.

#include "DataRow.h"

#include <KbiIntervalIntSmallDisjoint.h>

#include <QRegularExpression>
#include <QStringList>
#include <QTest>

#include <limits>

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
