// Coordinate systems: what PROJ makes of definitions and the clear refusals, points against
// reference values from PROJ's cs2cs and back, rectangles whose edges bend, failures that
// leave the input alone, storage in a project, and many points converted in place that
// must match point-by-point conversion, also from several threads.

#include <KbbGlobal.h>
#include <KbuUnit.h>
#include <VuuCoordSystem.h>

#include <QtTest>
#include <cmath>
#include <thread>

#include "LowerTestSupport.h"

namespace {

const QString UTM31 = QStringLiteral("EPSG:32631");
const QString WGS84 = QStringLiteral("EPSG:4326");
const QString ORTHO = QStringLiteral("+proj=ortho +lat_0=45 +lon_0=3 +ellps=WGS84");
const QPointF UNDEFINED(KbbGlobal::D_FFFF, KbbGlobal::D_FFFF);

// "local:<unit>" as a project stores it, "" for no system, otherwise a definition.
VuuCoordSystem system(const QString& text)
{
    return text.startsWith(QLatin1String("local:")) || text.isEmpty() ? VuuCoordSystem::fromString(text)
                                                                       : VuuCoordSystem(text);
}

bool near(const QPointF& a, const QPointF& b, double tolerance)
{
    return std::fabs(a.x() - b.x()) <= tolerance && std::fabs(a.y() - b.y()) <= tolerance;
}

QByteArray describe(const QPointF& p)
{
    return QStringLiteral("(%1, %2)").arg(p.x(), 0, 'f', 6).arg(p.y(), 0, 'f', 6).toUtf8();
}

// Lon/lat around UTM zone 31, with undefined samples and latitudes beyond the pole.
QVector<QPointF> samplePoints(int count)
{
    QVector<QPointF> points;
    points.reserve(count);
    for (int i = 0; i < count; ++i) {
        if (i % 9973 == 0)
            points.append(UNDEFINED);
        else if (i % 10007 == 0)
            points.append(QPointF(3.0, 91.0));
        else
            points.append(QPointF(-3.0 + 12.0 * double(qint64(i) * 7919 % count) / count,
                                  80.0 * double(qint64(i) * 104729 % count) / count));
    }
    return points;
}

} // namespace

// The column types of the tables below.
using DefinitionsRow = Row<QString, QString, QString, QString, bool>;
using ConvertPointRow = Row<QString, QString, QPointF, QPointF, double>;
using ConvertRectRow = Row<QString, QString, QRectF, QRectF, QString>;

class TestCoordSystems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void definitions_data()
    {
        // definition ("local:<unit>" as stored), stored (toString()), name (empty: invalid), unit, geographic
        DefinitionsRow::addColumns();

        QTest::newRow("geographic") << "EPSG:4326" << WGS84 << "WGS 84" << "deg" << true;
        QTest::newRow("lower case") << "epsg:32631" << UTM31 << "WGS 84 / UTM zone 31N" << "m" << false;
        QTest::newRow("US survey feet") << "EPSG:2227" << "EPSG:2227" << "NAD83 / California zone 3 (ftUS)" << "ftUS"
                                        << false;
        QTest::newRow("grads") << "EPSG:4807" << "EPSG:4807" << "NTF (Paris)" << "grad" << true;
        const QString etrsHeight = QStringLiteral("ETRS89 / UTM zone 32N + NN2000 height");
        QTest::newRow("compound") << "EPSG:5972" << "EPSG:5972" << etrsHeight << "m" << false;
        QTest::newRow("PROJ string") << " " + ORTHO << ORTHO << ORTHO << "m" << false;
        QTest::newRow("local US feet") << "local:ftUS" << "local:ftUS" << "Local coordinate system" << "ftUS" << false;
        QTest::newRow("never chosen") << "" << "" << "" << "" << false;
        // Kept as written, so that saving the project again does not lose it.
        QTest::newRow("unknown code") << "EPSG:999999" << "EPSG:999999" << "" << "" << false;
        QTest::newRow("garbage") << "garbage" << "garbage" << "" << "" << false;
        QTest::newRow("geocentric") << "EPSG:4978" << "EPSG:4978" << "" << "" << false;
        const QString swap = QStringLiteral("+proj=axisswap +order=2,1");
        QTest::newRow("an operation") << swap << swap << "" << "" << false;
        QTest::newRow("local in degrees") << "local:deg" << "local:deg" << "" << "" << false;
        QTest::newRow("local in furlongs") << "local:furlong" << "local:furlong" << "" << "" << false;
    }
    void definitions()
    {
        const auto [definition, stored, name, unit, geographic] = DefinitionsRow::fetch();

        const VuuCoordSystem s = system(definition);
        QCOMPARE(s.isValid(), !name.isEmpty());
        QCOMPARE(s.getName(), name);
        QCOMPARE(s.getUnit().getKey(), unit);
        QCOMPARE(s.isGeographic(), geographic);
        QCOMPARE(s.isLocal(), s.isValid() && definition.startsWith(QLatin1String("local:")));
        if (s.isValid() || definition.isEmpty())
            QVERIFY(s.getError().isEmpty());
        else
            QVERIFY2(s.getError().contains(definition.mid(definition.indexOf(QLatin1Char(':')) + 1)),
                     qPrintable(s.getError()));

        QCOMPARE(s.toString(), stored);
        const VuuCoordSystem back = VuuCoordSystem::fromString(stored);
        QVERIFY(back == s);
        QCOMPARE(back.isValid(), s.isValid());
        QCOMPARE(back.getUnit().getKey(), unit);
        const QString other = s.isLocal() ? QStringLiteral("local:km") : UTM31 + QLatin1Char('0');
        QVERIFY(back != VuuCoordSystem::fromString(other));
    }

    void convertPoint_data()
    {
        // from, to, point, expected, tolerance (negative: must fail, leaving the point alone)
        ConvertPointRow::addColumns();

        // References from cs2cs (PROJ 9.1), in x-east order.
        const QPointF utm(500000.0, 4982950.4002);
        QTest::newRow("lon/lat to UTM 31N") << WGS84 << UTM31 << QPointF(3, 45) << utm << 1e-3;
        QTest::newRow("ETRS89 to a compound system")
            << "EPSG:4258" << "EPSG:5972" << QPointF(10, 60) << QPointF(555776.2668, 6651832.7353) << 1e-3;
        QTest::newRow("lon/lat to a PROJ string") << "OGC:CRS84" << "+proj=utm +zone=31 +datum=WGS84" << QPointF(3, 45)
                                                  << utm << 1e-3;
        QTest::newRow("same system") << UTM31 << "epsg:32631" << QPointF(123.4, -7.5) << QPointF(123.4, -7.5) << 0.0;
        QTest::newRow("undefined stays") << WGS84 << UTM31 << UNDEFINED << UNDEFINED << 0.0;
        // Mercator's inverse would wrap the undefined value's longitude into a number.
        QTest::newRow("undefined x stays") << "EPSG:3857" << WGS84 << QPointF(KbbGlobal::D_FFFF, 1e6)
                                           << QPointF(KbbGlobal::D_FFFF, 1e6) << 0.0;
        QTest::newRow("local feet to metres")
            << "local:ft" << "local:m" << QPointF(1000, KbbGlobal::D_FFFF) << QPointF(304.8, KbbGlobal::D_FFFF) << 1e-9;

        const QPointF far(1e9, 1e9);
        QTest::newRow("beyond the pole") << WGS84 << "EPSG:3857" << QPointF(3, 91) << QPointF(3, 91) << -1.0;
        QTest::newRow("local to PROJ") << "local:m" << UTM31 << far << far << -1.0;
        QTest::newRow("no system chosen") << "" << UTM31 << far << far << -1.0;
        QTest::newRow("to garbage") << UTM31 << "garbage" << far << far << -1.0;
    }
    void convertPoint()
    {
        const auto [from, to, point, expected, tolerance] = ConvertPointRow::fetch();

        const VuuCoordSystem a = system(from);
        const VuuCoordSystem b = system(to);
        QString error;
        QPointF p = point;
        if (tolerance < 0) {
            QVERIFY(!VuuCoordSystem::convert(a, b, p, &error));
            QCOMPARE(p, point);
            QVERIFY(!error.isEmpty());
            return;
        }
        QVERIFY2(VuuCoordSystem::convert(a, b, p, &error), qPrintable(error));
        QVERIFY2(near(p, expected, tolerance), describe(p).constData());
        // And back: a micrometre, or about a millimetre in angle, as a datum shift that drops
        // the height is not exactly invertible.
        QVERIFY2(VuuCoordSystem::convert(b, a, p, &error), qPrintable(error));
        QVERIFY2(near(p, point, a.isGeographic() ? 1e-8 : 1e-6), describe(p).constData());
    }

    void convertRect_data()
    {
        ConvertRectRow::addColumns(); // from, to, rect, expected (null: must fail, with this reason), reason

        // Parallels bend in UTM: the lowest northing is in the middle of the southern edge
        // (3E 40N), 4 km below its corners.
        const QRectF utm(QPointF(243900.3520, 4427757.2187), QPointF(756099.6480, 5542944.0186));
        QTest::newRow("lon/lat to UTM 31N") << WGS84 << UTM31 << QRectF(QPointF(0, 40), QPointF(6, 50)) << utm << "";
        QTest::newRow("upside down") << WGS84 << UTM31 << QRectF(QPointF(6, 50), QPointF(0, 40)) << utm << "";
        QTest::newRow("UTM 60N west of the antimeridian")
            << "EPSG:32660" << WGS84 << QRectF(QPointF(500000, 5000000), QPointF(600000, 5100000))
            << QRectF(QPointF(177.0, 45.14639288), QPointF(178.29253204, 46.05357437)) << "";
        QTest::newRow("local feet to metres") << "local:ft" << "local:m" << QRectF(-100, 200, 1000, 500)
                                              << QRectF(-30.48, 60.96, 304.8, 152.4) << "";
        QTest::newRow("UTM 60N across the antimeridian")
            << "EPSG:32660" << WGS84 << QRectF(QPointF(500000, 5000000), QPointF(800000, 5100000)) << QRectF()
            << "antimeridian";
        QTest::newRow("over the pole") << WGS84 << "EPSG:3857" << QRectF(QPointF(0, 80), QPointF(10, 95)) << QRectF()
                                       << "outside";
        QTest::newRow("local to PROJ") << "local:m" << WGS84 << QRectF(0, 0, 1, 1) << QRectF() << "local coordinate";
        QTest::newRow("undefined") << WGS84 << UTM31 << QRectF(KbbGlobal::D_FFFF, 0, 1, 1) << QRectF() << "undefined";
    }
    void convertRect()
    {
        const auto [from, to, rect, expected, reason] = ConvertRectRow::fetch();

        QRectF r = rect;
        QString error;
        const bool ok = VuuCoordSystem::convert(system(from), system(to), r, &error);
        if (expected.isNull()) {
            QVERIFY(!ok);
            QCOMPARE(r, rect);
            QVERIFY2(error.contains(reason, Qt::CaseInsensitive), qPrintable(error));
        } else {
            QVERIFY2(ok, qPrintable(error));
            // The references' last digit: 0.1 mm, or 1e-8 degrees.
            const double tolerance = system(to).isGeographic() ? 1e-7 : 1e-3;
            QVERIFY2(near(r.topLeft(), expected.topLeft(), tolerance)
                         && near(r.bottomRight(), expected.bottomRight(), tolerance),
                     (describe(r.topLeft()) + describe(r.bottomRight())).constData());
        }
    }
    // Points converted in place, as arrays, and from other threads (each system with its own
    // PROJ objects, made here) match those converted one by one; a point that fails becomes
    // undefined, and the failures are counted.
    void manyPointsConvertAlike()
    {
        const int count = 50000;
        const int beyondPole = (count + 10006) / 10007 - 1;
        const QVector<QPointF> input = samplePoints(count);
        const VuuCoordSystem from(WGS84);
        const QVector<VuuCoordSystem> targets{VuuCoordSystem(UTM31), VuuCoordSystem(QStringLiteral("EPSG:3857")),
                                              VuuCoordSystem(UTM31), VuuCoordSystem(QStringLiteral("EPSG:2154"))};
        QVector<QVector<QPointF>> expected(targets.size());
        for (int t = 0; t < targets.size(); ++t)
            for (QPointF one : input)
                expected[t] << (VuuCoordSystem::convert(from, targets[t], one) ? one : UNDEFINED);

        QVector<QPointF> points = input;
        QString error;
        QVERIFY(!VuuCoordSystem::convert(from, targets[0], points, &error));
        QVERIFY2(error.startsWith(QStringLiteral("%1 of %2 points").arg(beyondPole).arg(count)), qPrintable(error));
        QVERIFY(points == expected[0]);
        QVector<double> xs, ys;
        for (const QPointF& p : input) {
            xs << p.x();
            ys << p.y();
        }
        QVERIFY(!VuuCoordSystem::convert(from, targets[0], xs.data(), ys.data(), count));
        for (int i = 0; i < count; ++i)
            QCOMPARE(QPointF(xs[i], ys[i]), expected[0][i]);

        QVector<int> mismatches(targets.size(), 0);
        std::vector<std::thread> threads;
        for (int t = 0; t < targets.size(); ++t)
            threads.emplace_back([&, t] {
                for (int round = 0; round < 3; ++round) {
                    QVector<QPointF> converted = input;
                    VuuCoordSystem::convert(from, targets[t], converted);
                    mismatches[t] += converted != expected[t];
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(mismatches, QVector<int>(targets.size(), 0));
    }
};

QTEST_GUILESS_MAIN(TestCoordSystems)
#include "tst_coordsystems.moc"
