// Units: conversions between the units of a class, their round trips, the values that
// must pass through untouched, and the refusals (unknown keys, mixed classes).

#include <KbbColor.h>
#include <KbbGlobal.h>
#include <KbeProgrammingError.h>
#include <KbuEUnitClass.h>
#include <KbuUnit.h>

#include <QtTest>
#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(KbbColor)

namespace {

const double PI = 3.14159265358979323846;

bool relativelyEqual(double a, double b, double tolerance)
{
    return std::fabs(a - b) <= tolerance * std::max(std::fabs(a), std::fabs(b));
}

} // namespace

class TestUnits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convert_data();
    void convert();
    void roundTrip_data();
    void roundTrip();
    void specialValuesPassThrough_data();
    void specialValuesPassThrough();
    void classMismatchThrows_data();
    void classMismatchThrows();
    void lookups();
    void colorPacking_data();
    void colorPacking();
};

void TestUnits::convert_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("expected");

    QTest::newRow("foot to metre") << "ft" << "m" << 1.0 << 0.3048;
    QTest::newRow("metre to foot") << "m" << "ft" << 0.3048 << 1.0;
    QTest::newRow("mile in feet to km") << "ft" << "km" << 5280.0 << 1.609344;
    QTest::newRow("US survey feet to metre") << "ftUS" << "m" << 3937.0 << 1200.0;
    QTest::newRow("foot to US survey foot") << "ft" << "ftUS" << 1.0 << 0.999998;
    QTest::newRow("km to metre, negative") << "km" << "m" << -2.5 << -2500.0;
    QTest::newRow("hectare to square metre") << "ha" << "m2" << 1.0 << 1.0e4;
    QTest::newRow("square km to hectare") << "km2" << "ha" << 3.0 << 300.0;
    QTest::newRow("square metre to square km") << "m2" << "km2" << 5.0e5 << 0.5;
    QTest::newRow("degree to radian") << "deg" << "rad" << 180.0 << PI;
    QTest::newRow("radian to degree") << "rad" << "deg" << PI / 2 << 90.0;
    QTest::newRow("grad to degree") << "grad" << "deg" << 100.0 << 90.0;
    QTest::newRow("degree to grad") << "deg" << "grad" << 360.0 << 400.0;
    QTest::newRow("radian to grad") << "rad" << "grad" << PI << 200.0;
    QTest::newRow("zero stays zero") << "km" << "ft" << 0.0 << 0.0;
    QTest::newRow("no unit to no unit") << "" << "" << 7.25 << 7.25;
}

void TestUnits::convert()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(double, value);
    QFETCH(double, expected);
    const double result = KbuUnit::fromKey(from).convert(value, KbuUnit::fromKey(to));
    QVERIFY2(relativelyEqual(result, expected, 1e-12), qPrintable(QString::number(result, 'g', 17)));
}

void TestUnits::roundTrip_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<double>("value");

    // Every ordered pair of units of each class, with values across the double range.
    const QList<double> values{1.0, -12345.678, 1.0e-9, 6.02e23, 0.1};
    for (const KbuEUnitClass* unitClass : {&KbuEUnitClass::LENGTH, &KbuEUnitClass::AREA, &KbuEUnitClass::ANGLE}) {
        const QList<KbuUnit> units = KbuUnit::units(*unitClass);
        for (const KbuUnit& a : units)
            for (const KbuUnit& b : units)
                for (double v : values)
                    QTest::addRow("%s %s->%s %g", unitClass->getKey(), qPrintable(a.getKey()),
                                  qPrintable(b.getKey()), v)
                        << a.getKey() << b.getKey() << v;
    }
}

void TestUnits::roundTrip()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(double, value);
    const KbuUnit& a = KbuUnit::fromKey(from);
    const KbuUnit& b = KbuUnit::fromKey(to);
    const double back = b.convert(a.convert(value, b), a);
    QVERIFY2(relativelyEqual(back, value, 1e-12), qPrintable(QString::number(back, 'g', 17)));
}

void TestUnits::specialValuesPassThrough_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<double>("value");

    for (const auto& pair : {qMakePair(QStringLiteral("km"), QStringLiteral("ft")),
                             qMakePair(QStringLiteral("ha"), QStringLiteral("m2")),
                             qMakePair(QStringLiteral("deg"), QStringLiteral("rad"))}) {
        const QByteArray name = (pair.first + QStringLiteral("->") + pair.second).toLatin1();
        QTest::addRow("undefined %s", name.constData()) << pair.first << pair.second << KbbGlobal::D_FFFF;
        QTest::addRow("+inf %s", name.constData())
            << pair.first << pair.second << std::numeric_limits<double>::infinity();
        QTest::addRow("-inf %s", name.constData())
            << pair.first << pair.second << -std::numeric_limits<double>::infinity();
        QTest::addRow("nan %s", name.constData())
            << pair.first << pair.second << std::numeric_limits<double>::quiet_NaN();
    }
}

void TestUnits::specialValuesPassThrough()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(double, value);
    const double result = KbuUnit::fromKey(from).convert(value, KbuUnit::fromKey(to));
    if (std::isnan(value))
        QVERIFY(std::isnan(result));
    else
        QCOMPARE(result, value); // exact: the undefined value is compared by equality
}

void TestUnits::classMismatchThrows_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");

    QTest::newRow("length to angle") << "m" << "deg";
    QTest::newRow("area to length") << "ha" << "m";
    QTest::newRow("length to area") << "km" << "km2";
    QTest::newRow("no unit to length") << "" << "m";
    QTest::newRow("angle to no unit") << "rad" << "";
}

void TestUnits::classMismatchThrows()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    const KbuUnit& a = KbuUnit::fromKey(from);
    const KbuUnit& b = KbuUnit::fromKey(to);
    QVERIFY(!a.isConvertibleTo(b));
    QVERIFY_EXCEPTION_THROWN(a.convert(1.0, b), KbeProgrammingError);
    // Even the undefined value: mixing classes is a fault of the caller, not of the data.
    QVERIFY_EXCEPTION_THROWN(a.convert(KbbGlobal::D_FFFF, b), KbeProgrammingError);
}

void TestUnits::lookups()
{
    // Unknown keys are refused with a message naming the key.
    try {
        KbuUnit::fromKey(QStringLiteral("parsec"));
        QFAIL("no exception for an unknown unit key");
    } catch (const KbeProgrammingError& e) {
        QVERIFY2(e.getMessage().contains(QLatin1String("parsec")), qPrintable(e.getMessage()));
    }
    QVERIFY_EXCEPTION_THROWN(KbuUnit::fromKey(QStringLiteral("M")), KbeProgrammingError);
    QVERIFY(KbuUnit::fromKey(QString()).isNone());
    QCOMPARE(KbuUnit(), KbuUnit::none());

    // Coordinates are shown in the length units and convert with them.
    QCOMPARE(KbuUnit::units(KbuEUnitClass::COORDINATE), KbuUnit::units(KbuEUnitClass::LENGTH));
    QVERIFY(KbuUnit::fromKey(QStringLiteral("ftUS")).belongsTo(KbuEUnitClass::COORDINATE));
    QVERIFY(!KbuUnit::fromKey(QStringLiteral("ha")).belongsTo(KbuEUnitClass::COORDINATE));

    // Each unit is found again by its key, and each class lists its base unit first.
    for (auto it = KbuEUnitClass::createIterator(); it.hasNext();) {
        const KbuEUnitClass& c = it.next();
        QCOMPARE(KbuEUnitClass::fromKey(QString::fromLatin1(c.getKey())), c);
        const QList<KbuUnit> units = KbuUnit::units(c);
        QVERIFY(!units.isEmpty());
        QCOMPARE(units.first().getFactor(), 1.0);
        for (const KbuUnit& u : units)
            QCOMPARE(KbuUnit::fromKey(u.getKey()), u);
    }
    QCOMPARE(KbuEUnitClass::count(), 5);
    QVERIFY_EXCEPTION_THROWN(KbuEUnitClass::fromValue(99), KbeProgrammingError);
}

void TestUnits::colorPacking_data()
{
    QTest::addColumn<quint32>("argb");
    QTest::addColumn<KbbColor>("color");

    QTest::newRow("opaque black") << quint32(0xFF000000u) << KbbColor();
    QTest::newRow("each channel apart") << quint32(0x80112233u) << KbbColor(0x11, 0x22, 0x33, 0x80);
    QTest::newRow("transparent white") << quint32(0x00FFFFFFu) << KbbColor(255, 255, 255, 0);
    QTest::newRow("all bits set") << quint32(0xFFFFFFFFu) << KbbColor(255, 255, 255, 255);
}

void TestUnits::colorPacking()
{
    QFETCH(quint32, argb);
    QFETCH(KbbColor, color);
    QCOMPARE(KbbColor(argb), color);
    QCOMPARE(color.toRgba(), argb);
    QCOMPARE(KbbColor(color.toRgba()), color);
}

QTEST_GUILESS_MAIN(TestUnits)
#include "tst_units.moc"
