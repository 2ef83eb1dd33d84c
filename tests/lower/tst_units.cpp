// Units and affine unit transformations: conversions between the units of a class and back,
// scale-and-shift with inverse and composition, the values that must pass through untouched,
// and the refusals (unknown keys, mixed classes, no inverse).

#include <KbbColor.h>
#include <KbbGlobal.h>
#include <KbeProgrammingError.h>
#include <KbuEUnitClass.h>
#include <KbuUnit.h>
#include <KbuUnitTransfo.h>

#include <QtTest>
#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(KbbColor)
Q_DECLARE_METATYPE(KbuUnitTransfo)

#include "LowerTestSupport.h"

namespace {

const double PI = 3.14159265358979323846;

bool relativelyEqual(double a, double b, double tolerance = 1e-12)
{
    return std::fabs(a - b) <= tolerance * std::max(std::fabs(a), std::fabs(b));
}

const KbuUnit& unit(const char* key)
{
    return KbuUnit::fromKey(QString::fromLatin1(key));
}

KbuUnitTransfo units(const char* from, const char* to)
{
    return KbuUnitTransfo(unit(from), unit(to));
}

} // namespace

// The column types of the tables below.
using ConvertRow = Row<QString, QString, double, double>;
using ClassMismatchThrowsRow = Row<QString, QString>;
using TransfoApplyRow = Row<KbuUnitTransfo, double, double>;
using ColorPackingRow = Row<quint32, KbbColor>;

class TestUnits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void convert_data()
    {
        ConvertRow::addColumns(); // from, to, value, expected
        QTest::newRow("foot to metre") << "ft" << "m" << 1.0 << 0.3048;
        QTest::newRow("mile in feet to km") << "ft" << "km" << 5280.0 << 1.609344;
        QTest::newRow("US survey feet to metre") << "ftUS" << "m" << 3937.0 << 1200.0;
        QTest::newRow("hectare to square metre") << "ha" << "m2" << 1.0 << 1.0e4;
        QTest::newRow("degree to radian") << "deg" << "rad" << 180.0 << PI;
        QTest::newRow("grad to degree") << "grad" << "deg" << 100.0 << 90.0;
        QTest::newRow("no unit to no unit") << "" << "" << 7.25 << 7.25;
    }
    void convert()
    {
        const auto [from, to, value, expected] = ConvertRow::fetch();
        const KbuUnit& a = KbuUnit::fromKey(from);
        const KbuUnit& b = KbuUnit::fromKey(to);
        const double result = a.convert(value, b);
        QVERIFY2(relativelyEqual(result, expected), qPrintable(QString::number(result, 'g', 17)));
        QVERIFY(relativelyEqual(b.convert(result, a), value));
        // The transformation between the two units does the same, and its inverse goes back.
        const KbuUnitTransfo transfo(a, b);
        QVERIFY(relativelyEqual(transfo.apply(value), expected));
        QVERIFY(relativelyEqual(transfo.inverse().apply(expected), value));
        // Undefined and infinite values pass through untouched, NaN stays NaN.
        for (const double special : {KbbGlobal::D_FFFF, INF, -INF}) {
            QCOMPARE(a.convert(special, b), special);
            QCOMPARE(transfo.apply(special), special);
        }
        QVERIFY(std::isnan(a.convert(NaN, b)) && std::isnan(transfo.apply(NaN)));
    }

    void classMismatchThrows_data()
    {
        ClassMismatchThrowsRow::addColumns(); // from, to
        QTest::newRow("length to angle") << "m" << "deg";
        QTest::newRow("area to length") << "ha" << "m";
        QTest::newRow("no unit to length") << "" << "m";
        QTest::newRow("angle to no unit") << "rad" << "";
    }
    void classMismatchThrows()
    {
        const auto [from, to] = ClassMismatchThrowsRow::fetch();
        const KbuUnit& a = KbuUnit::fromKey(from);
        const KbuUnit& b = KbuUnit::fromKey(to);
        QVERIFY(!a.isConvertibleTo(b));
        QVERIFY_EXCEPTION_THROWN(a.convert(1.0, b), KbeProgrammingError);
        // Even the undefined value: mixing classes is a fault of the caller, not of the data.
        QVERIFY_EXCEPTION_THROWN(a.convert(KbbGlobal::D_FFFF, b), KbeProgrammingError);
        QVERIFY_EXCEPTION_THROWN(KbuUnitTransfo(a, b), KbeProgrammingError);
    }

    void lookups()
    {
        // Keys are case-sensitive: "M" is no unit.
        QVERIFY_EXCEPTION_THROWN(unit("M"), KbeProgrammingError);
        QVERIFY(unit("").isNone());

        // Coordinates are shown in the length units and convert with them.
        QCOMPARE(KbuUnit::units(KbuEUnitClass::COORDINATE), KbuUnit::units(KbuEUnitClass::LENGTH));
        QVERIFY(unit("ftUS").belongsTo(KbuEUnitClass::COORDINATE));
        QVERIFY(!unit("ha").belongsTo(KbuEUnitClass::COORDINATE));

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
        QVERIFY_EXCEPTION_THROWN(KbuEUnitClass::fromValue(99), KbeProgrammingError);
    }

    void transfoApply_data()
    {
        TransfoApplyRow::addColumns(); // transfo, value, expected
        const KbuUnitTransfo toPixels(0.01, -5000.0);
        QTest::newRow("map metres to pixels") << toPixels << 600000.0 << 1000.0;
        QTest::newRow("pixels back to metres") << toPixels.inverse() << 1000.0 << 600000.0;
        QTest::newRow("flipped axis") << KbuUnitTransfo(-2.0, 400.0) << 50.0 << 300.0;
        QTest::newRow("feet to km by composition") << units("ft", "m").then(units("m", "km")) << 5280.0 << 1.609344;
        QTest::newRow("units, then scale") << units("ft", "m").then(KbuUnitTransfo(2.0, 10.0)) << 100.0 << 70.96;
        QTest::newRow("scale, then units") << KbuUnitTransfo(2.0, 10.0).then(units("ft", "m")) << 100.0 << 64.008;
        QTest::newRow("inverse of a composition")
            << units("ftUS", "km").then(toPixels).inverse() << 1000.0 << 1968500000.0;
    }
    void transfoApply()
    {
        const auto [transfo, value, expected] = TransfoApplyRow::fetch();
        const double result = transfo.apply(value);
        QVERIFY2(relativelyEqual(result, expected), qPrintable(QString::number(result, 'g', 17)));
        // Offsets cancel out of lengths; a transformation and its inverse compose to the
        // identity, also with offsets far larger than the result.
        QVERIFY(std::fabs(transfo.applyToLength(value) - (result - transfo.apply(0.0))) <= 1e-9 * std::fabs(result));
        QVERIFY(transfo.then(transfo.inverse()).isIdentity());
        QVERIFY(transfo.inverse().then(transfo) == KbuUnitTransfo::identity());
    }

    void transfoRefusalsAndEquality()
    {
        // Close factors are still different units.
        QVERIFY(units("ft", "m") != units("ftUS", "m"));
        QVERIFY(KbuUnitTransfo(1.0e-6) != KbuUnitTransfo(1.000001e-6));
        QVERIFY(KbuUnitTransfo(2.0, 0.001) != KbuUnitTransfo(2.0));
        const KbuUnitTransfo shift = KbuUnitTransfo(3.0, -7.0).inverse();
        QCOMPARE(shift.applyToLength(INF), INF);
        QCOMPARE(shift.applyToLength(KbbGlobal::D_FFFF), KbbGlobal::D_FFFF);
        for (double factor : {0.0, INF, NaN}) {
            expectWarning("^KbuUnitTransfo::KbuUnitTransfo: ");
            QVERIFY(KbuUnitTransfo(factor, 5.0).isIdentity());
        }
    }

    void colorPacking_data()
    {
        ColorPackingRow::addColumns(); // argb, color
        QTest::newRow("opaque black") << quint32(0xFF000000u) << KbbColor();
        QTest::newRow("each channel apart") << quint32(0x80112233u) << KbbColor(0x11, 0x22, 0x33, 0x80);
    }
    void colorPacking()
    {
        const auto [argb, color] = ColorPackingRow::fetch();
        QCOMPARE(KbbColor(argb), color);
        QCOMPARE(color.toRgba(), argb);
    }
};

QTEST_GUILESS_MAIN(TestUnits)
#include "tst_units.moc"
