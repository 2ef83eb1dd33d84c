// Colour scales: interpolation and clamping, class boundaries, undefined values, rescaling,
// the lookup table renderers use, and refused input that must leave the scale as it was.
// Also the range views fit scales to: NaN, infinities and far outliers left out and counted,
// and colours that stay apart and defined whatever huge values come.

#include <KbcValueRange.h>
#include <VugColorScale.h>

#include <QRegularExpression>
#include <QtTest>
#include <cmath>
#include <limits>

#include "LowerTestSupport.h"

using Scale = VugColorScale;

namespace {

const QRgb RED = qRgb(255, 0, 0);
const QRgb GREEN = qRgb(0, 255, 0);
const QRgb BLUE = qRgb(0, 0, 255);

const QRgb GREY = qRgb(128, 128, 128);
const double UNDEFINED = KbbGlobal::D_FFFF;

// Red at 10 to blue at 20, or three classes over 0, 10, 20, 50.
Scale make(const QString& name)
{
    if (name.startsWith(QLatin1String("red-blue"))) {
        Scale scale(QVector<Scale::Stop>{{10.0, RED}, {20.0, BLUE}});
        if (name.endsWith(QLatin1String("grey undefined")))
            scale.setUndefinedColor(GREY);
        return scale;
    }
    if (name == QLatin1String("fading"))
        return Scale(
            QVector<Scale::Stop>{{0.0, qRgba(0, 0, 0, 0)}, {1.0, qRgb(0, 0, 0)}, {10.0, qRgb(200, 100, 50)}});
    if (name == QLatin1String("classes"))
        return Scale({0.0, 10.0, 20.0, 50.0}, {RED, GREEN, BLUE});
    if (name == QLatin1String("rainbow"))
        return Scale::rainbow();
    if (name == QLatin1String("viridis"))
        return Scale::viridis();
    return Scale::grayscale();
}

QString hex(QRgb color)
{
    return QStringLiteral("#%1").arg(color, 8, 16, QLatin1Char('0'));
}

} // namespace

// The column types of the tables below.
using ColorAtRow = Row<QString, double, QRgb>;
using SetRangeRow = Row<QString, double, double, QVector<double>>;
using LookupTableRow = Row<QString, double, double, int>;
using RefusalsRow = Row<QVector<double>, int>;
using ValueRangeRow = Row<QVector<double>, double, double, int>;

class TestColorScale : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void colorAt_data()
    {
        ColorAtRow::addColumns(); // scale, value, expected

        QTest::newRow("halfway rounds half up") << "red-blue" << 15.0 << qRgb(128, 0, 128);
        QTest::newRow("a quarter") << "red-blue" << 12.5 << qRgb(191, 0, 64);
        QTest::newRow("below clamps") << "red-blue" << -1.0e9 << RED;
        QTest::newRow("above clamps") << "red-blue" << 1.0e9 << BLUE;
        QTest::newRow("alpha interpolates") << "fading" << 0.5 << qRgba(0, 0, 0, 128);
        QTest::newRow("uneven stops, second span") << "fading" << 5.5 << qRgba(100, 50, 25, 255);
        QTest::newRow("rainbow between stops") << "rainbow" << 0.125 << qRgb(0, 128, 255);
        QTest::newRow("class below the limits") << "classes" << -5.0 << RED;
        QTest::newRow("class just below a limit") << "classes" << 9.999 << RED;
        QTest::newRow("inner limit opens the upper class") << "classes" << 10.0 << GREEN;
        QTest::newRow("last class holds its upper limit") << "classes" << 50.0 << BLUE;
        QTest::newRow("undefined value is transparent") << "red-blue" << UNDEFINED << qRgba(0, 0, 0, 0);
        QTest::newRow("NaN in a class is transparent") << "classes" << NaN << qRgba(0, 0, 0, 0);
        QTest::newRow("+inf is not clamped") << "classes" << INF << qRgba(0, 0, 0, 0);
        QTest::newRow("-inf takes the undefined colour") << "red-blue, grey undefined" << -INF << GREY;
        QTest::newRow("undefined takes the undefined colour") << "red-blue, grey undefined" << UNDEFINED << GREY;
    }
    void colorAt()
    {
        const auto [scale, value, expected] = ColorAtRow::fetch();
        QCOMPARE(hex(make(scale).colorAt(value)), hex(expected));
    }

    void setRange_data()
    {
        SetRangeRow::addColumns(); // scale, min, max, expected

        QTest::newRow("rainbow stretched") << "rainbow" << 100.0 << 200.0 << QVector<double>{100, 125, 150, 175, 200};
        QTest::newRow("uneven stops keep proportions") << "fading" << -10.0 << 10.0 << QVector<double>{-10, -8, 10};
        QTest::newRow("classes rescaled") << "classes" << 0.0 << 100.0 << QVector<double>{0, 20, 40, 100};
        QTest::newRow("reversed range refused") << "classes" << 50.0 << 0.0 << QVector<double>{0, 10, 20, 50};
        const QVector<double> unitStops{0, 0.25, 0.5, 0.75, 1};
        QTest::newRow("empty range refused") << "rainbow" << 5.0 << 5.0 << unitStops;
        QTest::newRow("NaN refused") << "red-blue" << NaN << 1.0 << QVector<double>{10, 20};
        QTest::newRow("undefined refused") << "red-blue" << UNDEFINED << 1.0 << QVector<double>{10, 20};
        QTest::newRow("width overflowing refused") << "red-blue" << -1.0e308 << 1.0e308 << QVector<double>{10, 20};
        const double twoUlps = std::nextafter(std::nextafter(1.0, 2.0), 2.0);
        QTest::newRow("too narrow for five stops refused") << "rainbow" << 1.0 << twoUlps << unitStops;
    }
    void setRange()
    {
        const auto [scale, min, max, expected] = SetRangeRow::fetch();
        Scale s = make(scale);
        const Scale before = s;
        const bool accepted = expected.first() == min && expected.last() == max;
        if (!accepted)
            expectWarning("^VugColorScale::setRange: ");
        QCOMPARE(s.setRange(min, max), accepted);

        QVector<double> values = s.getClassLimits();
        for (const Scale::Stop& stop : s.getStops())
            values.append(stop.value);
        QCOMPARE(values, expected);
        QCOMPARE(s.getMin(), expected.first());
        QCOMPARE(s.getMax(), expected.last());
        if (!accepted) {
            QVERIFY(s == before);
        } else {
            // Colours move with their stops: what the first interior value showed, the rescaled one shows.
            const double t = (expected.at(1) - min) / (max - min);
            const double old = before.getMin() + t * (before.getMax() - before.getMin());
            QCOMPARE(hex(s.colorAt(expected.at(1))), hex(before.colorAt(old)));
        }
    }

    void lookupTable_data()
    {
        LookupTableRow::addColumns(); // scale, min, max, size

        QTest::newRow("rainbow, 256 entries") << "rainbow" << 100.0 << 200.0 << 256;
        QTest::newRow("classes") << "classes" << 0.0 << 50.0 << 501;
        QTest::newRow("two entries") << "red-blue" << 10.0 << 20.0 << 2;
    }
    void lookupTable()
    {
        const auto [scale, min, max, size] = LookupTableRow::fetch();
        Scale s = make(scale);
        QVERIFY(s.setRange(min, max));
        QVector<QRgb> table;
        QVERIFY(s.fillLookupTable(table, size));
        QCOMPARE(table.size(), size);
        QCOMPARE(hex(table.first()), hex(s.colorAt(min)));
        QCOMPARE(hex(table.last()), hex(s.colorAt(max)));
        const double step = (max - min) / (size - 1);
        for (int i = 0; i < size; ++i) {
            QCOMPARE(s.getLookupIndex(min + i * step, size), i);
            QCOMPARE(s.getLookupIndex(min + (i + 0.4) * step, size), qMin(i, size - 1));
            QCOMPARE(s.getLookupIndex(min + (i - 0.4) * step, size), qMax(i, 0));
        }
        QCOMPARE(s.getLookupIndex(min - 1.0e6, size), 0);
        QCOMPARE(s.getLookupIndex(max + 1.0e6, size), size - 1);
        QCOMPARE(s.getLookupIndex(NaN, size), -1);
        QCOMPARE(s.getLookupIndex(UNDEFINED, size), -1);

        const QVector<QRgb> before = table;
        for (int bad : {1, 0, -3, Scale::MAX_LOOKUP_SIZE + 1}) {
            expectWarning("^VugColorScale::fillLookupTable: ");
            QVERIFY(!s.fillLookupTable(table, bad));
            QCOMPARE(table, before);
        }
    }

    void refusals_data()
    {
        RefusalsRow::addColumns(); // values, colorCount (-1: the values are continuous stops)

        QTest::newRow("one stop") << QVector<double>{3} << -1;
        QTest::newRow("descending stops") << QVector<double>{0, 2, 1} << -1;
        QTest::newRow("repeated stop") << QVector<double>{0, 1, 1} << -1;
        QTest::newRow("NaN stop") << QVector<double>{0, NaN} << -1;
        QTest::newRow("undefined stop") << QVector<double>{UNDEFINED, 0} << -1;
        QTest::newRow("descending limits") << QVector<double>{5, 0, 10} << 2;
        QTest::newRow("infinite limit") << QVector<double>{0, INF} << 1;
        QTest::newRow("stops wider than a double") << QVector<double>{-1e308, 1e308} << -1;
        QTest::newRow("a colour too many") << QVector<double>{0, 1, 2} << 3;
        QTest::newRow("a colour short") << QVector<double>{0, 1, 2} << 1;
    }
    void refusals()
    {
        const auto [values, colorCount] = RefusalsRow::fetch();
        for (const char* name : {"red-blue", "classes"}) {
            Scale s = make(QLatin1String(name));
            const Scale before = s;
            if (colorCount < 0) {
                QVector<Scale::Stop> stops;
                for (double v : values)
                    stops.append({v, GREEN});
                expectWarning("^VugColorScale::setStops: ");
                QVERIFY(!s.setStops(stops));
            } else {
                expectWarning("^VugColorScale::setClasses: ");
                QVERIFY(!s.setClasses(values, QVector<QRgb>(colorCount, GREEN)));
            }
            QVERIFY(s == before);
        }
    }

    void namedScales()
    {
        // Any case and spacing; an unknown name falls back to the rainbow, with a warning.
        QVERIFY(Scale::named(QStringLiteral(" GrayScale ")) == Scale::grayscale());
        QVERIFY(Scale::named(QStringLiteral("viridis")) == Scale::viridis());
        expectWarning("no colour scale 'sunset'");
        QVERIFY(Scale::named(QStringLiteral("sunset")) == Scale::rainbow());
        QVERIFY(Scale::rainbow() != Scale::viridis());
        // Grayscale runs from black to white, and it and viridis grow lighter all the way.
        QCOMPARE(hex(Scale::grayscale().colorAt(0.0)), hex(qRgb(0, 0, 0)));
        QCOMPARE(hex(Scale::grayscale().colorAt(1.0)), hex(qRgb(255, 255, 255)));
        for (const Scale& s : {Scale::grayscale(), Scale::viridis()}) {
            int previous = -1;
            for (int i = 0; i <= 100; ++i) {
                const int gray = qGray(s.colorAt(i / 100.0));
                QVERIFY2(gray >= previous, qPrintable(QStringLiteral("darker at %1").arg(i / 100.0)));
                previous = gray;
            }
        }
    }

    void valueRange_data()
    {
        ValueRangeRow::addColumns(); // values, min, max, leftOut (10 for each far value, 1 for each not finite)

        const double MAX = std::numeric_limits<double>::max();
        QVector<double> r; // 0 to 1 in 201 steps, descending and skewed
        for (int i = 200; i >= 0; --i)
            r << (i % 3 ? i : i / 4) / 200.0;
        using V = QVector<double>;
        QTest::newRow("ordinary values") << r << 0.0 << 1.0 << 0;
        QTest::newRow("a long tail stays") << r + V{6.0} << 0.0 << 6.0 << 0;
        QTest::newRow("1e30, +-1e308, DBL_MAX left out") << V{1e30, 1e308, -1e308} + r + V{MAX} << 0.0 << 1.0 << 40;
        QTest::newRow("1e30 among ten left out") << V{0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 1e30} << 0.0 << 90.0 << 10;
        QTest::newRow("two values: neither left out") << V{0, 1e30} << 0.0 << 1e30 << 0;
        QTest::newRow("NaN and infinities counted") << r + V{NaN, INF, -INF} << 0.0 << 1.0 << 3;
        QTest::newRow("undefined left out silently") << r + V{UNDEFINED} << 0.0 << 1.0 << 0;
        QTest::newRow("one value and 1e30") << V(99, 431e3) + V{1e30} << 431e3 << 431e3 << 10;
        QTest::newRow("one value and another near") << V(99, 10.0) + V{-500} << -500.0 << 10.0 << 0;
        QTest::newRow("width clamped finite") << V{-1e308, 1e308} << -MAX / 2 << MAX / 2 << 0;
        QTest::newRow("nothing defined") << V{NaN, UNDEFINED} << 0.0 << 0.0 << 1;
    }
    void valueRange()
    {
        const auto [values, min, max, leftOut] = ValueRangeRow::fetch();
        // A column larger than the sample gives the same range (where the outliers stay few).
        const int many = values.size() > 200 ? 2 * KbcValueRange::SAMPLE_SIZE / int(values.size()) + 1 : 1;
        for (const int copies : {1, many}) {
            QVector<double> column;
            for (int i = 0; i < copies; ++i)
                column += values;
            const KbcValueRange range = KbcValueRange::of(column);
            QCOMPARE(range.getMin(), min);
            QCOMPARE(range.getMax(), max);
            QCOMPARE(range.getOutsideCount() * 10 + range.getNonFiniteCount(), qint64(leftOut) * copies);
            QCOMPARE(range.describeLeftOut().isEmpty(), leftOut == 0);
            // A scale fitted to values that differ spans them, even when only the far ones do.
            Scale scale = Scale::rainbow();
            scale.setRange(-7.0, -6.0);
            scale.setUndefinedColor(GREY);
            scale.fitTo(column);
            QCOMPARE(scale.getMin() != -7.0 && scale.getMin() < scale.getMax(), range.getLowest() < range.getHighest());
            // Far values take an end colour, the others the undefined one: no colour made of NaN.
            for (const double v : values) {
                const double end = std::max(scale.getMin(), std::min(v, scale.getMax()));
                QCOMPARE(hex(scale.colorAt(v)), hex(Scale::isUndefinedValue(v) ? GREY : scale.colorAt(end)));
                const int index = scale.getLookupIndex(v, 256);
                QCOMPARE(index, Scale::isUndefinedValue(v) ? -1 : scale.getLookupIndex(end, 256));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestColorScale)
#include "tst_colorscale.moc"
