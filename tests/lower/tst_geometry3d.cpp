// The 3D value types: turns of vectors, plane sides, box growth and fences.

#include <KbgBox.h>
#include <KbgFence.h>
#include <KbgPlane.h>
#include <KbgRotation.h>
#include <KbgVector3D.h>

#include <QRegularExpression>
#include <QtTest>

#include "VectorCompare.h"

#include <cmath>
#include <limits>

using V = KbgVector3D;
using Vs = QVector<KbgVector3D>;

#include "LowerTestSupport.h"

namespace {

constexpr double PI = 3.14159265358979323846;

bool near(double a, double b)
{
    return std::fabs(a - b) < 1e-9;
}

} // namespace

char* toString(const KbgVector3D& v)
{
    return QTest::toString(vectorText(v));
}

// The column types of the tables below.
using NormalizedRow = Row<V, V>;
using RotationTurnsVectorsRow = Row<KbgRotation, V, V, double>;
using PlaneSignedDistanceRow = Row<KbgPlane, V, double>;
using PlaneFromPointsRow = Row<Vs, V>;
using BoxGrowthRow = Row<Vs, V, V>;
using FenceLengthAndBoxRow = Row<Vs, double, double>;

class TestGeometry3D : public QObject
{
    Q_OBJECT

private slots:
    void normalized_data()
    {
        NormalizedRow::addColumns(); // vector, expected (the vector itself, with a warning, when it has no direction)
        QTest::newRow("3-4-0") << V(3, -4, 0) << V(0.6, -0.8, 0);
        QTest::newRow("huge stays finite") << V(1e300, 1e300, 0) << V(std::sqrt(0.5), std::sqrt(0.5), 0);
        QTest::newRow("zero") << V() << V();
        QTest::newRow("NaN") << V(NaN, 1, 0) << V(NaN, 1, 0);
    }
    void normalized()
    {
        const auto [vector, expected] = NormalizedRow::fetch();
        if (!(std::fabs(expected.length() - 1.0) < 1e-12))
            expectWarning("^KbgVector3D::normalized: ");
        const V n = vector.normalized();
        if (std::isnan(expected.x()))
            QVERIFY(std::isnan(n.x()) && n.y() == 1.0);
        else
            COMPARE_VEC(n, expected);
    }

    void rotationTurnsVectors_data()
    {
        RotationTurnsVectorsRow::addColumns(); // rotation, vector, expected, angle (within [0, pi])
        QTest::newRow("quarter turn about z") << KbgRotation({0, 0, 1}, PI / 2) << V(1, 0, 0) << V(0, 1, 0) << PI / 2;
        QTest::newRow("half turn about x") << KbgRotation({1, 0, 0}, PI) << V(0, 1, 1) << V(0, -1, -1) << PI;
        QTest::newRow("third turn about the diagonal cycles axes")
            << KbgRotation({1, 1, 1}, 2 * PI / 3) << V(1, 0, 0) << V(0, 1, 0) << 2 * PI / 3;
        QTest::newRow("negative angle") << KbgRotation({1, 0, 0}, -PI / 2) << V(0, 1, 0) << V(0, 0, -1) << PI / 2;
        // From one direction to another, through the branch for opposite ones too.
        const auto turn = [](const V& from, const V& to) { return KbgRotation::fromTwoVectors(from, to); };
        QTest::newRow("from y to x") << turn({0, 1, 0}, {1, 0, 0}) << V(0, 1, 0) << V(1, 0, 0) << PI / 2;
        QTest::newRow("from y to -y") << turn({0, 1, 0}, {0, -1, 0}) << V(0, 1, 0) << V(0, -1, 0) << PI;
        QTest::newRow("from x to -x") << turn({1, 0, 0}, {-2, 0, 0}) << V(1, 0, 0) << V(-1, 0, 0) << PI;
        QTest::newRow("from the diagonal to its opposite") << turn({1, 1, 1}, {-1, -1, -1}) << V(2, 2, 2)
                                                           << V(-2, -2, -2) << PI;
        QTest::newRow("from the same direction") << turn({0, 1, 0}, {0, 3, 0}) << V(1, 2, 3) << V(1, 2, 3) << 0.0;
        QTest::newRow("between oblique directions") << turn({0.6, 0.8, 0}, {0, 0.8, 0.6}) << V(0.6, 0.8, 0)
                                                    << V(0, 0.8, 0.6) << std::acos(0.64);
    }
    void rotationTurnsVectors()
    {
        const auto [rotation, vector, expected, angle] = RotationTurnsVectorsRow::fetch();
        COMPARE_VEC(rotation.apply(vector), expected);
        COMPARE_VEC(rotation.inverse().apply(expected), vector);
        V axis;
        double actual = -1.0;
        rotation.getAxisAngle(axis, actual);
        QVERIFY2(near(actual, angle), qPrintable(QString::number(actual)));
        // Composing keeps the order (the right one acts first), and the axis and angle of the
        // product rebuild the same turn.
        const KbgRotation other({1, 2, -1}, 0.7);
        const V v(0.3, -1.7, 2.2);
        COMPARE_VEC((rotation * other).apply(v), rotation.apply(other.apply(v)));
        QVERIFY((rotation * rotation.inverse()).fuzzyEquals(KbgRotation()));
        (rotation * other).getAxisAngle(axis, actual);
        QVERIFY2(actual >= 0.0 && actual <= PI, qPrintable(QString::number(actual)));
        COMPARE_VEC(KbgRotation(axis, actual).apply(v), (rotation * other).apply(v));
    }

    void planeSignedDistance_data()
    {
        PlaneSignedDistanceRow::addColumns(); // plane, point, distance
        const KbgPlane north(V(5, 10, -3), V(0, 2, 0));
        QTest::newRow("behind") << north << V(0, 4, 0) << -6.0;
        QTest::newRow("on the plane") << north << V(-8, 10, 99) << 0.0;
        const KbgPlane oblique(V(1, 1, 0), std::sqrt(2.0));
        QTest::newRow("oblique, beyond") << oblique << V(2, 2, 0) << std::sqrt(2.0);
    }
    void planeSignedDistance()
    {
        const auto [plane, point, distance] = PlaneSignedDistanceRow::fetch();
        QVERIFY(near(plane.signedDistance(point), distance));
        if (distance != 0.0)
            QCOMPARE(plane.isInHalfSpace(point), distance > 0.0);
        QVERIFY(near(plane.flipped().signedDistance(point), -distance));
        QVERIFY(near(plane.signedDistance(plane.project(point)), 0.0));
        QVERIFY(std::fabs(plane.getNormal().length() - 1.0) < 1e-12);
    }

    void planeFromPoints_data()
    {
        PlaneFromPointsRow::addColumns(); // points, normal (null: refused)
        QTest::newRow("counter-clockwise from above faces up") << Vs{{0, 0, 2}, {1, 0, 2}, {0, 1, 2}} << V(0, 0, 1);
        QTest::newRow("clockwise faces down") << Vs{{0, 0, 2}, {0, 1, 2}, {1, 0, 2}} << V(0, 0, -1);
        QTest::newRow("vertical at map coordinates")
            << Vs{{650000, 4.8e6, 0}, {650000, 4.8e6, 100}, {650100, 4.8e6, 0}} << V(0, 1, 0);
        QTest::newRow("collinear") << Vs{{0, 0, 0}, {1, 1, 1}, {3, 3, 3}} << V();
        QTest::newRow("NaN") << Vs{{NaN, 0, 0}, {1, 0, 0}, {0, 1, 0}} << V();
    }
    void planeFromPoints()
    {
        const auto [points, normal] = PlaneFromPointsRow::fetch();
        const KbgPlane previous(V(1, 0, 0), 4.0);
        KbgPlane plane = previous;
        const bool accepted = normal != V();
        if (!accepted)
            expectWarning("^KbgPlane::fromPoints: ");
        QCOMPARE(KbgPlane::fromPoints(points[0], points[1], points[2], plane), accepted);
        if (!accepted) {
            QCOMPARE(plane, previous);
            return;
        }
        COMPARE_VEC(plane.getNormal(), normal);
        for (const V& p : points)
            QVERIFY(std::fabs(plane.signedDistance(p)) < 1e-6);
    }

    void boxGrowth_data()
    {
        BoxGrowthRow::addColumns(); // points, min, max
        QTest::newRow("two corners in any order") << Vs{{4, -1, 3}, {1, 2, -3}} << V(1, -1, -3) << V(4, 2, 3);
        QTest::newRow("non-finite point ignored") << Vs{{0, 0, 0}, {INF, 0, 0}, {1, 1, 1}} << V(0, 0, 0) << V(1, 1, 1);
    }
    void boxGrowth()
    {
        const auto [points, min, max] = BoxGrowthRow::fetch();
        KbgBox box;
        for (const V& p : points) {
            if (!p.isFinite())
                expectWarning("^KbgBox::extendBy: ");
            box.extendBy(p);
        }
        QVERIFY(!box.isEmpty());
        COMPARE_VEC(box.getMin(), min);
        COMPARE_VEC(box.getMax(), max);
        COMPARE_VEC(box.center(), (min + max) / 2.0);
        COMPARE_VEC(box.size(), max - min);
        COMPARE_VEC(box.halfSize() * 2.0, max - min);
        for (const V& p : points)
            QCOMPARE(box.contains(p), p.isFinite());
        QVERIFY(!box.contains(max + V(0, 0, 1e-3)));
        // Growing by another box grows by both its corners.
        KbgBox other = box;
        other.extendBy(KbgBox(V(-1, -1, -1), V(-2, -2, -2)));
        COMPARE_VEC(other.getMin(), V(std::min(min.x(), -2.0), std::min(min.y(), -2.0), std::min(min.z(), -2.0)));
        COMPARE_VEC(other.getMax(), V(std::max(max.x(), -1.0), std::max(max.y(), -1.0), std::max(max.z(), -1.0)));
    }

    void emptyBoxContainsNothing()
    {
        KbgBox box;
        QVERIFY(box.isEmpty());
        QVERIFY(!box.contains(V()));
        box.extendBy(KbgBox());
        QVERIFY(box.isEmpty());
        expectWarning("^KbgBox::KbgBox: ");
        QVERIFY(KbgBox(V(NaN, 0, 0), V(1, 1, 1)).isEmpty());
        box.extendBy(V(1, 1, 1));
        box.makeEmpty();
        QCOMPARE(box, KbgBox());
    }

    void fenceLengthAndBox_data()
    {
        FenceLengthAndBoxRow::addColumns(); // vertices, extension, length
        QTest::newRow("empty") << Vs() << 10.0 << 0.0;
        QTest::newRow("one vertex") << Vs{{1, 1, 0}} << 10.0 << 0.0;
        QTest::newRow("one panel") << Vs{{0, 0, 0}, {3, 4, 0}} << 10.0 << 5.0;
        QTest::newRow("bent") << Vs{{0, 0, 5}, {3, 4, 5}, {3, 10, 5}} << 0.0 << 11.0;
    }
    void fenceLengthAndBox()
    {
        const auto [vertices, extension, length] = FenceLengthAndBoxRow::fetch();
        const KbgFence fence(vertices, extension);
        QCOMPARE(fence.isValid(), vertices.size() >= 2);
        QVERIFY(std::fabs(fence.length() - length) < 1e-12);
        const KbgBox box = fence.getBoundingBox();
        QCOMPARE(box.isEmpty(), vertices.isEmpty());
        for (const V& v : vertices) {
            QVERIFY(box.contains(v + V(0, 0, extension)));
            QVERIFY(box.contains(v - V(0, 0, extension)));
            QVERIFY(!box.contains(v + V(0, 0, extension + 0.5)));
        }
    }

    void fenceRefusesBadInput()
    {
        KbgFence fence({{0, 0, 0}, {1, 0, 0}}, 2.0);
        const KbgFence before = fence;
        expectWarning("^KbgFence::addVertex: ");
        QVERIFY(!fence.addVertex(V(NaN, 0, 0)));
        expectWarning("^KbgFence::setVertices: vertex 1 ");
        QVERIFY(!fence.setVertices({{0, 0, 0}, {0, INF, 0}}));
        expectWarning("^KbgFence::setExtension: ");
        QVERIFY(!fence.setExtension(-1.0));
        QCOMPARE(fence, before);
        QVERIFY(fence.addVertex(V(1, 1, 0)));
        QCOMPARE(fence.getVertexCount(), 3);
    }
};

QTEST_GUILESS_MAIN(TestGeometry3D)
#include "tst_geometry3d.moc"
