// Affine unit transformations: values through changes of units and scale-and-shift,
// inverse and composition, the values that pass through, and the refusals.

#include <KbbGlobal.h>
#include <KbeProgrammingError.h>
#include <KbuUnit.h>
#include <KbuUnitTransfo.h>

#include <QtTest>
#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(KbuUnitTransfo)

namespace {

KbuUnitTransfo units(const char* from, const char* to)
{
    return KbuUnitTransfo(KbuUnit::fromKey(QString::fromLatin1(from)), KbuUnit::fromKey(QString::fromLatin1(to)));
}

} // namespace

class TestUnitTransfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void apply_data();
    void apply();
    void specialValuesAndRefusals();
};

void TestUnitTransfo::apply_data()
{
    QTest::addColumn<KbuUnitTransfo>("transfo");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("expected");

    const KbuUnitTransfo toPixels(0.01, -5000.0);
    QTest::newRow("feet to metres") << units("ft", "m") << 1000.0 << 304.8;
    QTest::newRow("metres to US survey feet") << units("m", "ftUS") << 1200.0 << 3937.0;
    QTest::newRow("degrees to grads") << units("deg", "grad") << 90.0 << 100.0;
    QTest::newRow("map metres to pixels") << toPixels << 600000.0 << 1000.0;
    QTest::newRow("pixels back to metres") << toPixels.inverse() << 1000.0 << 600000.0;
    QTest::newRow("flipped axis") << KbuUnitTransfo(-2.0, 400.0) << 50.0 << 300.0;
    QTest::newRow("feet to km by composition") << units("ft", "m").then(units("m", "km")) << 5280.0 << 1.609344;
    QTest::newRow("units, then scale") << units("ft", "m").then(KbuUnitTransfo(2.0, 10.0)) << 100.0 << 70.96;
    QTest::newRow("scale, then units") << KbuUnitTransfo(2.0, 10.0).then(units("ft", "m")) << 100.0 << 64.008;
    QTest::newRow("inverse of a composition")
        << units("ftUS", "km").then(toPixels).inverse() << 1000.0 << 1968500000.0;
}

void TestUnitTransfo::apply()
{
    QFETCH(KbuUnitTransfo, transfo);
    QFETCH(double, value);
    QFETCH(double, expected);
    const double result = transfo.apply(value);
    QVERIFY2(std::fabs(result - expected) <= 1e-12 * std::fabs(expected), qPrintable(QString::number(result, 'g', 17)));
    // Offsets cancel out of lengths; a transformation and its inverse compose to the
    // identity, also with offsets far larger than the result.
    QVERIFY(std::fabs(transfo.applyToLength(value) - (result - transfo.apply(0.0))) <= 1e-9 * std::fabs(result));
    QVERIFY(transfo.then(transfo.inverse()).isIdentity());
    QVERIFY(transfo.inverse().then(transfo) == KbuUnitTransfo::identity());
}

void TestUnitTransfo::specialValuesAndRefusals()
{
    const KbuUnitTransfo t = units("km", "ft").then(KbuUnitTransfo(3.0, -7.0));
    const double inf = std::numeric_limits<double>::infinity();
    for (double v : {KbbGlobal::D_FFFF, inf, -inf})
        QCOMPARE(t.inverse().apply(v), v);
    QVERIFY(std::isnan(t.apply(std::numeric_limits<double>::quiet_NaN())));

    // Close factors are still different units.
    QVERIFY(units("ft", "m") != units("ftUS", "m"));
    QVERIFY(KbuUnitTransfo(1.0e-6) != KbuUnitTransfo(1.000001e-6));
    QVERIFY(KbuUnitTransfo(2.0, 0.001) != KbuUnitTransfo(2.0));

    QVERIFY_EXCEPTION_THROWN(units("m", "deg"), KbeProgrammingError);
    QVERIFY_EXCEPTION_THROWN(units("ha", "m"), KbeProgrammingError);
    QVERIFY_EXCEPTION_THROWN(units("", "ft"), KbeProgrammingError);
    for (double factor : {0.0, std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^KbuUnitTransfo::KbuUnitTransfo: ")));
        QVERIFY(KbuUnitTransfo(factor, 5.0).isIdentity());
    }
}

QTEST_GUILESS_MAIN(TestUnitTransfo)
#include "tst_unittransfo.moc"
