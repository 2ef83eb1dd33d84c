// The map's datasets: bounds that skip bad samples, picks at tolerance edges and on polygon
// edges, holes, rotated grids, files written and read back, and hostile files refused with
// a message that names the file and the place (the reader's robustness against any bytes is
// the fuzz target's job).

#include <KbbGlobal.h>
#include <KbeError.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdCsv.h>
#include <VsdPointSetFile.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>

#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>
#include <cmath>
#include <cstring>
#include <functional>

#include "LowerTestSupport.h"

using Edit = std::function<bool(VsdPointSet&)>;
Q_DECLARE_METATYPE(VsdPointSetFile::Format)
Q_DECLARE_METATYPE(Edit)

using Ranks = KbiIntervalIntSmallDisjoint;
using Points = QVector<QPointF>;

namespace {

constexpr double U = KbbGlobal::D_FFFF;
const double Inf = INF;

VsdPointSet pointSet(const Points& points)
{
    VsdPointSet set;
    for (const QPointF& p : points)
        set.append(p.x(), p.y());
    return set;
}

// Samples on the lattice 0..4 x 0..4, rank j * 5 + i at (i, j).
VsdPointSet lattice()
{
    VsdPointSet set;
    for (int j = 0; j < 5; ++j)
        for (int i = 0; i < 5; ++i)
            set.append(i, j);
    return set;
}

bool sameValues(const QVector<double>& a, const QVector<double>& b)
{
    return a.size() == b.size() && std::memcmp(a.constData(), b.constData(), size_t(a.size()) * sizeof(double)) == 0;
}

QByteArray le32(quint32 v)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToLittleEndian(v, bytes.data());
    return bytes;
}

QByteArray binaryHeader(quint32 version, quint32 count, quint32 variables)
{
    return QByteArray("VPTS") + le32(version) + le32(count) + le32(variables);
}

QByteArray doubles(int n)
{
    return QByteArray(n * 8, '\0');
}

} // namespace

// The column types of the tables below.
using PointBoundsRow = Row<Points, QRectF>;
using PointNearestRow = Row<Points, QPointF, double, int>;
using PointRegionsRow = Row<QPolygonF, bool, QString>;
using SelectionRow = Row<Edit, QString>;
using RefusalsKeepStateRow = Row<Edit, QString>;
using PolylinePicksRow = Row<QString, QPolygonF, double, QString>;
using PolygonsWithHolesRow = Row<QPointF, bool, int, QRectF, QString>;
using GridRotatedBoundsRow = Row<double, QRectF>;
using CsvNumbersRow = Row<QByteArray, double>;
using HostileFilesRow = Row<QByteArray, QString>;

class TestDatasets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pointBounds_data()
    {
        PointBoundsRow::addColumns(); // points, expected

        QTest::newRow("finite samples") << Points{{1, 5}, {-2, 3}, {4, -1}} << QRectF(QPointF(-2, -1), QPointF(4, 5));
        QTest::newRow("NaN, infinite and undefined coordinates skipped")
            << Points{{NaN, 100}, {1, 1}, {50, Inf}, {-Inf, 2}, {U, 0}, {0, U}, {2, 3}} << QRectF(1, 1, 1, 2);
        QTest::newRow("one sample gives a point") << Points{{7, 8}, {U, U}} << QRectF(7, 8, 0, 0);
        QTest::newRow("only bad samples") << Points{{U, U}, {NaN, 1}, {Inf, -Inf}} << QRectF();
        QTest::newRow("empty set") << Points{} << QRectF();
    }
    void pointBounds()
    {
        const auto [points, expected] = PointBoundsRow::fetch();
        QCOMPARE(pointSet(points).boundingRect(), expected);
    }

    void pointNearest_data()
    {
        PointNearestRow::addColumns(); // points, query, tolerance, expected

        const Points square{{0, 0}, {10, 0}, {0, 10}, {10, 10}};
        QTest::newRow("exact hit") << square << QPointF(10, 0) << 0.0 << 1;
        QTest::newRow("tie goes to the lowest rank") << square << QPointF(5, 5) << 8.0 << 0;
        QTest::newRow("distance equal to tolerance taken") << square << QPointF(3, 4) << 5.0 << 0;
        QTest::newRow("just beyond tolerance") << square << QPointF(3, 4) << 4.999999 << -1;
        QTest::newRow("undefined sample never picked") << Points{{U, U}, {5, 5}} << QPointF(U, U) << 1.0 << -1;
        QTest::newRow("NaN sample skipped") << Points{{NaN, 0}, {2, 0}} << QPointF(0, 0) << 3.0 << 1;
        QTest::newRow("infinite tolerance") << square << QPointF(1e9, 1e9) << Inf << 3;
        QTest::newRow("empty set") << Points{} << QPointF(0, 0) << Inf << -1;
    }
    void pointNearest()
    {
        const auto [points, query, tolerance, expected] = PointNearestRow::fetch();
        QCOMPARE(pointSet(points).nearestRank(query, tolerance), expected);
    }

    void pointRegions_data()
    {
        PointRegionsRow::addColumns(); // polygon, asRect, expected

        QTest::newRow("rectangle edges included") << QPolygonF(QRectF(1, 1, 2, 1)) << true << "6-8, 11-13";
        QTest::newRow("reversed rectangle") << QPolygonF(QRectF(QPointF(3, 2), QPointF(1, 1))) << true << "6-8, 11-13";
        QTest::newRow("zero-width rectangle, a column") << QPolygonF(QRectF(2, 0, 0, 4)) << true << "2, 7, 12, 17, 22";
        // An L: the notch at the top right holds no sample.
        QTest::newRow("concave L leaves its notch out")
            << QPolygonF(Points{{-0.5, -0.5}, {4.5, -0.5}, {4.5, 1.5}, {1.5, 1.5}, {1.5, 4.5}, {-0.5, 4.5}}) << false
            << "0-11, 15-16, 20-21";
        QTest::newRow("samples on edges and vertices")
            << QPolygonF(Points{{0, 0}, {2, 0}, {2, 2}, {0, 2}}) << false << "0-2, 5-7, 10-12";
        QTest::newRow("on a diagonal edge")
            << QPolygonF(Points{{0, 0}, {4, 4}, {4, 0}}) << false << "0-4, 6-9, 12-14, 18-19, 24";
        // A ring drawn twice over the centre square: odd-even leaves the inner part out.
        QTest::newRow("overlap counted twice is outside")
            << QPolygonF(Points{{0.5, 0.5}, {3.5, 0.5}, {3.5, 3.5}, {0.5, 3.5}, {0.5, 0.5}, {1.5, 1.5}, {2.5, 1.5},
                                {2.5, 2.5}, {1.5, 2.5}, {1.5, 1.5}})
            << false << "6-8, 11, 13, 16-18";
        QTest::newRow("empty polygon") << QPolygonF() << false << "";
    }
    void pointRegions()
    {
        const auto [polygon, asRect, expected] = PointRegionsRow::fetch();
        const VsdPointSet set = lattice();
        QCOMPARE(asRect ? set.ranksInRect(polygon.boundingRect()) : set.ranksInPolygon(polygon), ranks(expected));
    }
    void selection_data()
    {
        SelectionRow::addColumns(); // edit, expected

        QTest::newRow("deselect splits") << Edit([](VsdPointSet& s) { return s.select(Ranks(0, 9)) && s.deselect(5); }) << "0-4, 6-9";
        QTest::newRow("toggle a rank twice") << Edit([](VsdPointSet& s) { return s.select(1) && s.toggle(7) && s.toggle(7); }) << "1";
        QTest::newRow("toggle a set flips each rank")
            << Edit([](VsdPointSet& s) { return s.select(Ranks(0, 4)) && s.toggle(Ranks(3, 8)); }) << "0-2, 5-8";
        QTest::newRow("deselect a set")
            << Edit([](VsdPointSet& s) { return s.select(Ranks(0, 9)) && s.deselect(ranks("2-3, 7")); }) << "0-1, 4-6, 8-9";
        QTest::newRow("clear") << Edit([](VsdPointSet& s) {
            s.select(Ranks(0, 9));
            s.clearSelection();
            return s.select(9);
        }) << "9";
    }
    void selection()
    {
        const auto [edit, expected] = SelectionRow::fetch();
        VsdPointSet set = lattice();
        const VsdPointSet before = set;
        QVERIFY(edit(set));
        QCOMPARE(set.selection(), ranks(expected));
        QVERIFY(before.selection().isEmpty()); // the copy kept its own state
    }

    void refusalsKeepState_data()
    {
        RefusalsKeepStateRow::addColumns(); // edit, warning (after "VsdPointSet::")

        QTest::newRow("append with too few values") << Edit([](VsdPointSet& s) { return s.append(5, 5, 5, {1}); })
                                                    << "append: 1 values for 2 variables refused";
        QTest::newRow("variable of the wrong length") << Edit([](VsdPointSet& s) { return s.addVariable("w", {1, 2}); })
                                                      << "addVariable: 2 values for 3 samples refused ('w')";
        QTest::newRow("variable named like a coordinate")
            << Edit([](VsdPointSet& s) { return s.addVariable("Z"); }) << "addVariable: 'Z' names a coordinate refused";
        QTest::newRow("variable added twice") << Edit([](VsdPointSet& s) { return s.addVariable("a"); })
                                              << "addVariable: 'a' is already a variable refused";
        QTest::newRow("coordinates of mismatched lengths")
            << Edit([](VsdPointSet& s) { return s.setCoordinates({1, 2, 3}, {1, 2}, {1, 2, 3}); })
            << "setCoordinates: columns of 3, 2 and 3 values refused";
        QTest::newRow("coordinates resizing past the variables")
            << Edit([](VsdPointSet& s) { return s.setCoordinates({1}, {1}, {1}); })
            << "setCoordinates: 1 samples refused, the variables hold 3";
        QTest::newRow("select beyond the last rank") << Edit([](VsdPointSet& s) { return s.select(Ranks(2, 3)); })
                                                     << "select: ranks up to 3 refused, the set has 3 samples";
        QTest::newRow("toggle a negative rank") << Edit([](VsdPointSet& s) { return s.toggle(-1); })
                                                << "toggle: rank -1 refused, the set has 3 samples";
        QTest::newRow("negative tolerance") << Edit([](VsdPointSet& s) { return s.nearestRank({0, 0}, -1) >= 0; })
                                            << "nearestRank: tolerance -1 refused";
        QTest::newRow("NaN tolerance") << Edit([](VsdPointSet& s) { return s.nearestRank({0, 0}, NaN) >= 0; })
                                       << "nearestRank: tolerance nan refused";
        QTest::newRow("remove unknown variable") << Edit([](VsdPointSet& s) { return s.removeVariable("nope"); })
                                                 << "removeVariable: no variable 'nope'";
    }
    void refusalsKeepState()
    {
        const auto [edit, warning] = RefusalsKeepStateRow::fetch();
        VsdPointSet set = pointSet({{0, 0}, {1, 1}, {2, 2}});
        set.addVariable(QStringLiteral("a"), {1, 2, 3});
        set.addVariable(QStringLiteral("b"));
        set.select(1);
        const auto state = [&set] {
            QStringList parts{set.selection().toString()};
            for (const QVector<double>* column : {&set.x(), &set.y(), &set.z()})
                parts << QString::number(column->size()) + QLatin1Char(':') + QString::number(column->value(2));
            for (const QString& name : set.variableNames())
                parts << name + QLatin1Char('=') + QString::number(set.variable(name).size());
            return parts.join(QLatin1Char(' '));
        };
        const QString before = state();
        QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("VsdPointSet::") + warning));
        QVERIFY(!edit(set));
        QCOMPARE(state(), before);
    }

    void polylinePicks_data()
    {
        PolylinePicksRow::addColumns(); // pick, region, tolerance, expected

        // Line 0 runs along y = 0 from x 0 to 100, line 1 is a V below y = 10, line 2 lies far off.
        QTest::newRow("near the middle of a long segment") << "nearest" << QPolygonF({QPointF(50, 3)}) << 3.0 << "0";
        QTest::newRow("tolerance short by a hair") << "nearest" << QPolygonF({QPointF(50, 3)}) << 2.999 << "";
        QTest::newRow("equal distance to two lines") << "nearest" << QPolygonF({QPointF(30, 1)}) << 1.0 << "0";
        QTest::newRow("beyond the segment's end") << "nearest" << QPolygonF({QPointF(103, 4)}) << 5.0 << "0";
        QTest::newRow("rectangle crossed by a segment, no vertex inside")
            << "rect" << QPolygonF(QRectF(40, -1, 5, 2)) << 0.0 << "0";
        QTest::newRow("rectangle touching a vertex") << "rect" << QPolygonF(QRectF(100, 0, 3, 3)) << 0.0 << "0";
        QTest::newRow("rectangle around all") << "rect" << QPolygonF(QRectF(-10, -10, 1200, 1200)) << 0.0 << "0-2";
        QTest::newRow("triangle between the arms of the V")
            << "polygon" << QPolygonF(Points{{28, 9}, {32, 9}, {30, 7}}) << 0.0 << "";
        QTest::newRow("triangle on an arm") << "polygon" << QPolygonF(Points{{20, 9}, {32, 9}, {30, 7}}) << 0.0 << "1";
    }
    void polylinePicks()
    {
        const auto [pick, region, tolerance, expected] = PolylinePicksRow::fetch();
        VsdPolylineSet lines;
        QVERIFY(lines.append(QPolygonF(Points{{0, 0}, {100, 0}})));
        QVERIFY(lines.append(QPolygonF(Points{{20, 10}, {30, 2}, {40, 10}})));
        QVERIFY(lines.append(QPolygonF(Points{{1000, 1000}, {1001, 1001}})));
        QCOMPARE(lines.boundingRect(), QRectF(QPointF(0, 0), QPointF(1001, 1001)));
        if (pick == QLatin1String("nearest"))
            QCOMPARE(lines.nearestRank(region.first(), tolerance), expected.isEmpty() ? -1 : expected.toInt());
        else
            QCOMPARE(pick == "rect" ? lines.ranksInRect(region.boundingRect()) : lines.ranksInPolygon(region),
                     ranks(expected));
    }

    void polygonsWithHoles_data()
    {
        PolygonsWithHolesRow::addColumns(); // point, inside, nearest, box, inBox

        // Polygon 0: the square 0..10 with the hole 4..6; polygon 1: the square 20..30.
        QTest::newRow("in the hole") << QPointF(5, 5) << false << -1 << QRectF(4.5, 4.5, 1, 1) << "";
        QTest::newRow("on the hole's edge") << QPointF(4, 5) << true << 0 << QRectF(5, 5, 2, 0.5) << "0";
        QTest::newRow("across the outer edge") << QPointF(-0.5, 2.5) << false << 0 << QRectF(-1, 2, 2, 1) << "0";
        QTest::newRow("on the outer edge") << QPointF(10, 3) << true << 0 << QRectF(10, 3, 0, 0) << "0";
        QTest::newRow("near the outer edge") << QPointF(10.5, 3) << false << 0 << QRectF(10.5, 3, 1, 1) << "";
        QTest::newRow("between the two") << QPointF(15, 5) << false << -1 << QRectF(9, 0, 11, 20) << "0-1";
        QTest::newRow("box holding a whole polygon") << QPointF(25, 25) << false << 1 << QRectF(19, 19, 12, 12) << "1";
    }
    void polygonsWithHoles()
    {
        const auto [point, inside, nearest, box, inBox] = PolygonsWithHolesRow::fetch();
        VsdPolygonSet set;
        // Closed by a repeated point, which must not count twice in the area.
        QVERIFY(set.append(QPolygonF(QRectF(0, 0, 10, 10)), {QPolygonF(Points{{4, 4}, {6, 4}, {6, 6}, {4, 6}})}));
        QVERIFY(set.append(QPolygonF(Points{{20, 20}, {30, 20}, {30, 30}, {20, 30}})));
        QCOMPARE(set.area(0), 96.0);
        QCOMPARE(set.area(1), 100.0);
        QCOMPARE(set.contains(0, point), inside);
        QCOMPARE(set.nearestRank(point, 0.6), nearest);
        QCOMPARE(set.ranksInRect(box), ranks(inBox));
        QTest::ignoreMessage(QtWarningMsg, "VsdPolygonSet::append: hole 0 has 2 vertices, refused");
        QVERIFY(!set.append(QPolygonF(QRectF(0, 0, 1, 1)), {QPolygonF(Points{{0, 0}, {1, 1}})}));
        QCOMPARE(set.size(), 2);
    }

    void gridRotatedBounds_data()
    {
        GridRotatedBoundsRow::addColumns(); // angle, expected

        // Origin (10, 20), cells 2 x 1, 3 x 2 nodes: the cells cover u in [-1, 5], v in [-0.5, 1.5].
        const double r = 1.0 / std::sqrt(2.0);
        QTest::newRow("quarter turn") << 90.0 << QRectF(QPointF(8.5, 19), QPointF(10.5, 25));
        const QRectF eighth(QPointF(10 - 2.5 * r, 20 - 1.5 * r), QPointF(10 + 5.5 * r, 20 + 6.5 * r));
        QTest::newRow("eighth turn") << 45.0 << eighth;
        QTest::newRow("negative angle same as its complement") << -270.0 << QRectF(QPointF(8.5, 19), QPointF(10.5, 25));
    }
    void gridRotatedBounds()
    {
        const auto [angle, expected] = GridRotatedBoundsRow::fetch();
        const VsdGrid grid(QPointF(10, 20), 2, 1, 3, 2, angle);
        const QRectF bounds = grid.boundingRect();
        QCOMPARE(bounds, expected);
        // Every cell lies within the bounds, and a node falls in its own cell.
        for (int j = 0; j < grid.ny(); ++j) {
            for (int i = 0; i < grid.nx(); ++i) {
                for (const QPointF& corner : grid.cellPolygon(i, j))
                    QVERIFY(bounds.adjusted(-1e-9, -1e-9, 1e-9, 1e-9).contains(corner));
                QCOMPARE(grid.rankAt(grid.nodePosition(i, j)), j * grid.nx() + i);
            }
        }
        QCOMPARE(grid.rankAt(grid.nodePosition(3, 0)), -1);
    }
    void gridCellsAndRefusals()
    {
        VsdGrid grid(QPointF(0, 0), 1, 1, 3, 2);
        QVERIFY(grid.setValues({1, U, NaN, -4, 7, U}));
        QCOMPARE(grid.valueRange(), qMakePair(-4.0, 7.0));
        QCOMPARE(grid.value(1, 1), 7.0);
        QCOMPARE(grid.value(3, 0), U);

        QTest::ignoreMessage(QtWarningMsg, "VsdGrid::setValues: 5 values for 3 x 2 nodes refused");
        QVERIFY(!grid.setValues({1, 2, 3, 4, 5}));
        QTest::ignoreMessage(QtWarningMsg, "VsdGrid::setValue: node (0, 2) refused, the grid has 3 x 2 nodes");
        QVERIFY(!grid.setValue(0, 2, 1.0));
        QCOMPARE(grid.value(1, 1), 7.0);
        QVERIFY(grid.setValues(QVector<double>(6, U)));
        QCOMPARE(grid.valueRange(), qMakePair(U, U));

        const QVector<std::function<void()>> makers{
            [] { VsdGrid(QPointF(), 1, 1, -1, 3); },
            [] { VsdGrid(QPointF(), NaN, 1, 2, 2); },
            [] { VsdGrid(QPointF(), 1, 0, 2, 2); },
            [] { VsdGrid(QPointF(), 1, 1, 2, 2, Inf); },
            [] { VsdGrid(QPointF(), 1, 1, 1 << 16, 1 << 16); },
        };
        for (const auto& make : makers)
            QVERIFY_EXCEPTION_THROWN(make(), KbeError);
    }

    void fileRoundTrip_data()
    {
        QTest::addColumn<VsdPointSetFile::Format>("format");
        QTest::newRow("binary") << VsdPointSetFile::Format::Binary;
        QTest::newRow("CSV") << VsdPointSetFile::Format::Csv;
    }
    void fileRoundTrip()
    {
        QFETCH(VsdPointSetFile::Format, format);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("points"));
        VsdPointSet set;
        set.addVariable(QStringLiteral("Porosité"));
        set.addVariable(QStringLiteral("Facies code"));
        set.append(0.1, 1e-300, -0.0, {U, 3});
        set.append(1.7976931348623157e308, -2.5, U, {0.123456789012345678, -7});
        set.append(Inf, -Inf, 5, {4.9e-324, 0});
        VsdPointSetFile::write(set, path, format);
        const VsdPointSet back = VsdPointSetFile::read(path);
        QCOMPARE(back.size(), 3);
        QCOMPARE(back.variableNames(), set.variableNames());
        // Text keeps no infinity: like "inf" typed in a file, it reads back undefined.
        const bool text = format == VsdPointSetFile::Format::Csv;
        QVERIFY(sameValues(back.x(), {0.1, 1.7976931348623157e308, text ? U : Inf}));
        QVERIFY(sameValues(back.y(), {1e-300, -2.5, text ? U : -Inf}));
        QVERIFY(sameValues(back.z(), set.z()));
        for (const QString& name : set.variableNames())
            QVERIFY2(sameValues(back.variable(name), set.variable(name)), qPrintable(name));

        // A write that fails leaves the previous file whole.
        VsdPointSet bad = set;
        bad.addVariable(QStringLiteral("a,b"));
        if (format == VsdPointSetFile::Format::Csv)
            QVERIFY_EXCEPTION_THROWN(VsdPointSetFile::write(bad, path, format), KbeError);
        QVERIFY_EXCEPTION_THROWN(VsdPointSetFile::write(set, dir.filePath(QStringLiteral("no/such/folder")), format),
                                 KbeError);
        QCOMPARE(VsdPointSetFile::read(path).variableNames(), set.variableNames());
    }

    // Every CSV reader reads a field so: what is no finite double is undefined, text is refused
    // (empty fields and the largest double are read back in the round trip above, a word in
    // a file dropped on the demo's map is refused there).
    void csvNumbers_data()
    {
        CsvNumbersRow::addColumns(); // field, value (NaN: refused)
        QTest::newRow("blanks and a plus") << QByteArray(" +2.5\t") << 2.5;
        QTest::newRow("-inf") << QByteArray("-inf") << U;
        QTest::newRow("beyond the largest double") << QByteArray("1e400") << U;
        QTest::newRow("below the smallest double") << QByteArray("1e-400") << 0.0;
        QTest::newRow("decimal comma") << QByteArray("1,5") << NaN;
        QTest::newRow("hexadecimal") << QByteArray("0x10") << NaN;
    }
    void csvNumbers()
    {
        const auto [field, value] = CsvNumbersRow::fetch();
        double read = -7;
        QCOMPARE(VsdCsv::parseNumber(field, read), !std::isnan(value));
        QCOMPARE(read, std::isnan(value) ? -7.0 : value);
    }

    void hostileFiles_data()
    {
        HostileFilesRow::addColumns(); // bytes, message

        const QByteArray whole = binaryHeader(1, 2, 0) + doubles(6);
        QTest::newRow("empty file") << QByteArray() << "is empty";
        QTest::newRow("CSV without coordinates") << QByteArray("a,b,c\n1,2,3\n") << "line 1 must start with \"x,y,z\"";
        QTest::newRow("CSV cut in a number") << QByteArray("x,y,z,v\n1,2,3,4\n5,6,7,1e") << "\"1e\" at line 3, field 4";
        QTest::newRow("CSV missing field") << QByteArray("x,y,z\n1,2\n") << "2 fields at line 2, 3 expected";
        QTest::newRow("CSV extra field") << QByteArray("x,y,z\r\n\r\n1,2,3,4\r\n") << "4 fields at line 3, 3 expected";
        QTest::newRow("CSV variable twice") << QByteArray("x,y,z,v,v\n") << "line 1, field 5: 'v' is already";
        QTest::newRow("CSV endless line") << QByteArray("x,y,z\n") + QByteArray(3 << 20, '7')
                                          << "longer than 1048576 bytes at line 2";
        QTest::newRow("binary magic only") << QByteArray("VPTS") << "truncated at byte offset 4";
        QTest::newRow("binary from the future") << binaryHeader(3, 0, 0) << "version 3 at byte offset 4";
        const QByteArray two = binaryHeader(2, 2, 0) + doubles(6);
        QTest::newRow("binary v2 without its selection") << two << "truncated at byte offset 64";
        QTest::newRow("binary v2 claiming more intervals")
            << two + le32(3) + le32(0) + le32(0) << "claims 3 selected intervals at byte offset 64, and holds 8";
        QTest::newRow("binary v2 interval past the samples") << two + le32(1) + le32(0) + le32(2)
                                                             << "bad selected interval [0, 2] at byte offset 68";
        QTest::newRow("binary v2 reversed interval") << two + le32(1) + le32(1) + le32(0)
                                                     << "bad selected interval [1, 0]";
        QTest::newRow("binary v2 overlapping intervals") << two + le32(2) + le32(0) + le32(1) + le32(1) + le32(1)
                                                         << "bad selected interval [1, 1] at byte offset 76";
        QTest::newRow("binary claiming four billion samples") << binaryHeader(1, 0xFFFFFFFFu, 0) + doubles(3)
                                                              << "claims 4294967295 samples at byte offset 8";
        QTest::newRow("binary claiming more samples than it holds")
            << binaryHeader(1, 1000000, 0) + doubles(6)
            << "is truncated: 1000000 samples need 24000000 bytes after byte offset 16";
        QTest::newRow("binary claiming four billion variables") << binaryHeader(1, 0, 0xFFFFFFFFu)
                                                                << "claims 4294967295 variables at byte offset 12";
        QTest::newRow("binary huge name length") << binaryHeader(1, 0, 1) + le32(0x7FFFFFFF) + "abcd"
                                                 << "variable name of 2147483647 bytes at byte offset 16";
        QTest::newRow("binary cut inside a name") << binaryHeader(1, 0, 1) + le32(8) + "abc"
                                                  << "truncated at byte offset 20: 8 bytes expected, 3 found";
        QTest::newRow("binary variable named x") << binaryHeader(1, 0, 1) + le32(1) + "x"
                                                 << "byte offset 16: 'x' names a coordinate";
        QTest::newRow("binary junk at the end") << whole + "junk" << "4 unexpected bytes at byte offset 64";
    }
    void hostileFiles()
    {
        const auto [bytes, message] = HostileFilesRow::fetch();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("hostile.dat"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        try {
            VsdPointSetFile::read(path);
            QFAIL("the file was accepted");
        } catch (const KbeError& e) {
            QVERIFY2(e.getMessage().contains(QDir::toNativeSeparators(path)), qPrintable(e.getMessage()));
            QVERIFY2(e.getMessage().contains(message), qPrintable(e.getMessage()));
        }
    }
    void generateIsReproducible()
    {
        const QRectF extent(-500, 1000, 2000, 300);
        const VsdPointSet a = VsdPointSet::generate(2000, 42, extent);
        const VsdPointSet b = VsdPointSet::generate(2000, 42, extent);
        const VsdPointSet c = VsdPointSet::generate(2000, 43, extent);
        QCOMPARE(a.size(), 2000);
        QVERIFY(sameValues(a.x(), b.x()) && sameValues(a.z(), b.z()));
        for (const QString& name : a.variableNames())
            QVERIFY(sameValues(a.variable(name), b.variable(name)));
        QVERIFY(!sameValues(a.x(), c.x()));
        QVERIFY(extent.contains(a.boundingRect()));
        const QVector<double> porosity = a.variable(QStringLiteral("Porosity"));
        const int undefined = int(std::count(porosity.cbegin(), porosity.cend(), U));
        QVERIFY2(undefined > 0 && undefined < 100, qPrintable(QString::number(undefined)));

        const VsdGrid g = VsdGrid::generate(40, 30, 7, extent);
        QVERIFY(sameValues(g.values(), VsdGrid::generate(40, 30, 7, extent).values()));
        QVERIFY(!sameValues(g.values(), VsdGrid::generate(40, 30, 8, extent).values()));
        QCOMPARE(g.boundingRect(), extent);
        QVERIFY(g.value(0, 0) == U && g.value(39, 29) != U);
    }
};

QTEST_GUILESS_MAIN(TestDatasets)
#include "tst_datasets.moc"
