// Axis offsets for map coordinates far from zero and nice scale-bar lengths, compared
// exactly, with hostile bounds.

#include <KbcAlgorithm.h>

#include <QRegularExpression>
#include <QtTest>
#include <cmath>
#include <limits>

#include "LowerTestSupport.h"

namespace {


// QCOMPARE on doubles is fuzzy; all 17 digits make the comparison exact and readable.
QString exact(double value)
{
    return QString::number(value, 'g', 17);
}

} // namespace

// The column types of the tables below.
using RoundedOffsetRow = Row<int, double, double, double, bool>;
using NiceNumberRow = Row<double, double, bool>;

class TestAlgorithm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void roundedOffset_data()
    {
        RoundedOffsetRow::addColumns(); // digits, min, max, expected, warns

        QTest::newRow("interval across zero") << 6 << -50.0 << 50.0 << 0.0 << false;
        QTest::newRow("100 widths away, six digits just fit") << 6 << 10000.0 << 10100.0 << 0.0 << false;
        QTest::newRow("easting 500000..500100") << 6 << 500000.0 << 500100.0 << 500000.0 << false;
        QTest::newRow("seven digits allowed") << 7 << 500000.0 << 500100.0 << 0.0 << false;
        QTest::newRow("northing 6543210..6543250") << 6 << 6543210.0 << 6543250.0 << 6540000.0 << false;
        QTest::newRow("bounds swapped") << 6 << 500100.0 << 500000.0 << 500000.0 << false;
        QTest::newRow("negative interval rounds toward zero") << 6 << -500100.0 << -500000.0 << -500000.0 << false;
        QTest::newRow("decimal offset") << 6 << 12.3456 << 12.3457 << 12.3 << false;
        QTest::newRow("single point") << 6 << 500000.0 << 500000.0 << 0.0 << false;
        QTest::newRow("too few digits, best effort") << 3 << 500000.0 << 500100.0 << 500000.0 << false;
        QTest::newRow("offset cannot shorten") << 6 << 1.0e6 << 2.0e6 << 0.0 << false;
        QTest::newRow("largest doubles") << 6 << 1.0e308 << std::numeric_limits<double>::max() << 1.0e308 << false;
        QTest::newRow("one ulp wide") << 6 << 1.0 << std::nextafter(1.0, 2.0) << 1.0 << false;
        QTest::newRow("NaN min") << 6 << NaN << 500100.0 << 0.0 << true;
        QTest::newRow("zero digits taken as 1") << 0 << 500000.0 << 500100.0 << 500000.0 << true;
        QTest::newRow("100 digits taken as 17") << 100 << 500000.0 << 500100.0 << 0.0 << true;
    }
    void roundedOffset()
    {
        const auto [digits, min, max, expected, warns] = RoundedOffsetRow::fetch();
        if (warns)
            expectWarning("^KbcAlgorithm::getRoundedOffsetFromInterval: ");
        QCOMPARE(exact(KbcAlgorithm::getRoundedOffsetFromInterval(digits, min, max)), exact(expected));
    }

    void niceNumber_data()
    {
        NiceNumberRow::addColumns(); // value, expected, warns

        QTest::newRow("two") << 2.0 << 2.0 << false;
        QTest::newRow("just below five") << 4.999 << 2.0 << false;
        QTest::newRow("five") << 5.0 << 5.0 << false;
        QTest::newRow("just below ten") << 9.999 << 5.0 << false;
        QTest::newRow("0.37") << 0.37 << 0.2 << false;
        QTest::newRow("2e-5 exactly") << 2.0e-5 << 2.0e-5 << false;
        QTest::newRow("largest double") << std::numeric_limits<double>::max() << 1.0e308 << false;
        QTest::newRow("zero") << 0.0 << 0.0 << false;
        QTest::newRow("negative") << -3.0 << 0.0 << true;
        QTest::newRow("NaN") << NaN << 0.0 << true;
    }
    void niceNumber()
    {
        const auto [value, expected, warns] = NiceNumberRow::fetch();
        if (warns)
            expectWarning("^KbcAlgorithm::roundToNiceNumber: ");
        QCOMPARE(exact(KbcAlgorithm::roundToNiceNumber(value)), exact(expected));
    }
};

QTEST_APPLESS_MAIN(TestAlgorithm)
#include "tst_algorithm.moc"
