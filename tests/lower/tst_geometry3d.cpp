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

namespace {

constexpr double PI = 3.14159265358979323846;
const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();

} // namespace

char* toString(const KbgVector3D& v)
{
    return QTest::toString(vectorText(v));
}

class TestGeometry3D : public QObject
{
    Q_OBJECT

private slots:
    void normalizedRefusesVectorsWithoutDirection_data();
    void normalizedRefusesVectorsWithoutDirection();

    void rotationTurnsVectors_data();
    void rotationTurnsVectors();
    void rotationComposesAndInverts_data();
    void rotationComposesAndInverts();
    void rotationFromTwoVectors_data();
    void rotationFromTwoVectors();

    void planeSignedDistance_data();
    void planeSignedDistance();
    void planeFromPoints_data();
    void planeFromPoints();

    void boxGrowth_data();
    void boxGrowth();
    void emptyBoxContainsNothing();

    void fenceLengthAndBox_data();
    void fenceLengthAndBox();
    void fenceRefusesBadInput();

};

void TestGeometry3D::normalizedRefusesVectorsWithoutDirection_data()
{
    QTest::addColumn<KbgVector3D>("vector");
    QTest::addColumn<KbgVector3D>("expected");
    QTest::addColumn<bool>("warns");
    QTest::newRow("axis") << KbgVector3D(0, 0, 5) << KbgVector3D(0, 0, 1) << false;
    QTest::newRow("3-4-0") << KbgVector3D(3, -4, 0) << KbgVector3D(0.6, -0.8, 0) << false;
    QTest::newRow("huge stays finite") << KbgVector3D(1e300, 1e300, 0)
                                       << KbgVector3D(std::sqrt(0.5), std::sqrt(0.5), 0) << false;
    QTest::newRow("zero") << KbgVector3D() << KbgVector3D() << true;
    QTest::newRow("NaN") << KbgVector3D(NaN, 1, 0) << KbgVector3D(NaN, 1, 0) << true;
}

void TestGeometry3D::normalizedRefusesVectorsWithoutDirection()
{
    QFETCH(KbgVector3D, vector);
    QFETCH(KbgVector3D, expected);
    QFETCH(bool, warns);
    if (warns)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgVector3D::normalized: "));
    const KbgVector3D n = vector.normalized();
    if (std::isnan(expected.x()))
        QVERIFY(std::isnan(n.x()) && n.y() == 1.0);
    else
        COMPARE_VEC(n, expected);
}

void TestGeometry3D::rotationTurnsVectors_data()
{
    QTest::addColumn<KbgVector3D>("axis");
    QTest::addColumn<double>("angle");
    QTest::addColumn<KbgVector3D>("vector");
    QTest::addColumn<KbgVector3D>("expected");
    QTest::newRow("quarter turn about z takes x to y")
        << KbgVector3D(0, 0, 1) << PI / 2 << KbgVector3D(1, 0, 0) << KbgVector3D(0, 1, 0);
    QTest::newRow("quarter turn about z takes y to -x")
        << KbgVector3D(0, 0, 1) << PI / 2 << KbgVector3D(0, 1, 0) << KbgVector3D(-1, 0, 0);
    QTest::newRow("unnormalised axis") << KbgVector3D(0, 0, 7) << PI / 2 << KbgVector3D(2, 0, 0)
                                       << KbgVector3D(0, 2, 0);
    QTest::newRow("half turn about x") << KbgVector3D(1, 0, 0) << PI << KbgVector3D(0, 1, 1)
                                       << KbgVector3D(0, -1, -1);
    QTest::newRow("third turn about the diagonal cycles axes")
        << KbgVector3D(1, 1, 1) << 2 * PI / 3 << KbgVector3D(1, 0, 0) << KbgVector3D(0, 1, 0);
    QTest::newRow("vector on the axis stays") << KbgVector3D(1, 2, 3) << 1.234
                                              << KbgVector3D(2, 4, 6) << KbgVector3D(2, 4, 6);
    QTest::newRow("negative angle") << KbgVector3D(1, 0, 0) << -PI / 2 << KbgVector3D(0, 1, 0)
                                    << KbgVector3D(0, 0, -1);
}

void TestGeometry3D::rotationTurnsVectors()
{
    QFETCH(KbgVector3D, axis);
    QFETCH(double, angle);
    QFETCH(KbgVector3D, vector);
    QFETCH(KbgVector3D, expected);
    const KbgRotation r(axis, angle);
    COMPARE_VEC(r.apply(vector), expected);
    // Length is kept, and the inverse undoes the turn.
    QVERIFY(std::fabs(r.apply(vector).length() - vector.length()) < 1e-9);
    COMPARE_VEC(r.inverse().apply(expected), vector);
}

void TestGeometry3D::rotationComposesAndInverts_data()
{
    QTest::addColumn<KbgRotation>("a");
    QTest::addColumn<KbgRotation>("b");
    QTest::newRow("about z then about x") << KbgRotation({1, 0, 0}, PI / 2)
                                          << KbgRotation({0, 0, 1}, PI / 2);
    QTest::newRow("oblique axes") << KbgRotation({1, 2, -1}, 0.7) << KbgRotation({-3, 0.5, 2}, 2.9);
    QTest::newRow("with the identity") << KbgRotation() << KbgRotation({0, 1, 0}, 1.0);
}

void TestGeometry3D::rotationComposesAndInverts()
{
    QFETCH(KbgRotation, a);
    QFETCH(KbgRotation, b);
    const KbgVector3D v(0.3, -1.7, 2.2);
    // b acts first.
    COMPARE_VEC((a * b).apply(v), a.apply(b.apply(v)));
    COMPARE_VEC((a * b).inverse().apply((a * b).apply(v)), v);
    QVERIFY((a * a.inverse()).fuzzyEquals(KbgRotation()));
    // The axis and angle rebuild the same turn.
    KbgVector3D axis;
    double angle = 0.0;
    (a * b).getAxisAngle(axis, angle);
    QVERIFY(angle >= 0.0 && angle <= PI);
    COMPARE_VEC(KbgRotation(axis, angle).apply(v), (a * b).apply(v));
}

void TestGeometry3D::rotationFromTwoVectors_data()
{
    QTest::addColumn<KbgVector3D>("from");
    QTest::addColumn<KbgVector3D>("to");
    QTest::addColumn<double>("angle");
    QTest::newRow("same direction") << KbgVector3D(0, 1, 0) << KbgVector3D(0, 3, 0) << 0.0;
    QTest::newRow("y to x") << KbgVector3D(0, 1, 0) << KbgVector3D(1, 0, 0) << PI / 2;
    QTest::newRow("y to -y") << KbgVector3D(0, 1, 0) << KbgVector3D(0, -1, 0) << PI;
    QTest::newRow("x to -x") << KbgVector3D(1, 0, 0) << KbgVector3D(-2, 0, 0) << PI;
    QTest::newRow("diagonal reversed") << KbgVector3D(1, 1, 1) << KbgVector3D(-1, -1, -1) << PI;
    QTest::newRow("y to -z") << KbgVector3D(0, 1, 0) << KbgVector3D(0, 0, -1) << PI / 2;
    QTest::newRow("oblique") << KbgVector3D(0.6, 0.8, 0) << KbgVector3D(0, 0.8, 0.6)
                             << std::acos(0.64);
}

void TestGeometry3D::rotationFromTwoVectors()
{
    QFETCH(KbgVector3D, from);
    QFETCH(KbgVector3D, to);
    QFETCH(double, angle);
    const KbgRotation r = KbgRotation::fromTwoVectors(from, to);
    COMPARE_VEC(r.apply(from.normalized()), to.normalized());
    KbgVector3D axis;
    double actual = -1.0;
    r.getAxisAngle(axis, actual);
    QVERIFY2(std::fabs(actual - angle) < 1e-9, qPrintable(QString::number(actual)));
}

void TestGeometry3D::planeSignedDistance_data()
{
    QTest::addColumn<KbgPlane>("plane");
    QTest::addColumn<KbgVector3D>("point");
    QTest::addColumn<double>("distance");
    const KbgPlane north(KbgVector3D(5, 10, -3), KbgVector3D(0, 2, 0));
    QTest::newRow("in front") << north << KbgVector3D(100, 13, 7) << 3.0;
    QTest::newRow("behind") << north << KbgVector3D(0, 4, 0) << -6.0;
    QTest::newRow("on the plane") << north << KbgVector3D(-8, 10, 99) << 0.0;
    QTest::newRow("flipped behind") << north.flipped() << KbgVector3D(0, 4, 0) << 6.0;
    const KbgPlane oblique(KbgVector3D(1, 1, 0), std::sqrt(2.0));
    QTest::newRow("oblique, origin") << oblique << KbgVector3D() << -std::sqrt(2.0);
    QTest::newRow("oblique, on plane") << oblique << KbgVector3D(2, 0, 5) << 0.0;
    QTest::newRow("oblique, beyond") << oblique << KbgVector3D(2, 2, 0) << std::sqrt(2.0);
}

void TestGeometry3D::planeSignedDistance()
{
    QFETCH(KbgPlane, plane);
    QFETCH(KbgVector3D, point);
    QFETCH(double, distance);
    QVERIFY(std::fabs(plane.signedDistance(point) - distance) < 1e-9);
    if (distance != 0.0)
        QCOMPARE(plane.isInHalfSpace(point), distance > 0.0);
    QVERIFY(std::fabs(plane.flipped().signedDistance(point) + distance) < 1e-9);
    QVERIFY(std::fabs(plane.signedDistance(plane.project(point))) < 1e-9);
    QVERIFY(std::fabs(plane.getNormal().length() - 1.0) < 1e-12);
}

void TestGeometry3D::planeFromPoints_data()
{
    QTest::addColumn<KbgVector3D>("a");
    QTest::addColumn<KbgVector3D>("b");
    QTest::addColumn<KbgVector3D>("c");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<KbgVector3D>("normal");
    QTest::newRow("counter-clockwise seen from above faces up")
        << KbgVector3D(0, 0, 2) << KbgVector3D(1, 0, 2) << KbgVector3D(0, 1, 2) << true
        << KbgVector3D(0, 0, 1);
    QTest::newRow("clockwise faces down") << KbgVector3D(0, 0, 2) << KbgVector3D(0, 1, 2)
                                          << KbgVector3D(1, 0, 2) << true << KbgVector3D(0, 0, -1);
    QTest::newRow("vertical at map coordinates")
        << KbgVector3D(650000, 4.8e6, 0) << KbgVector3D(650000, 4.8e6, 100)
        << KbgVector3D(650100, 4.8e6, 0) << true << KbgVector3D(0, 1, 0);
    QTest::newRow("collinear") << KbgVector3D(0, 0, 0) << KbgVector3D(1, 1, 1)
                               << KbgVector3D(3, 3, 3) << false << KbgVector3D();
    QTest::newRow("repeated point") << KbgVector3D(1, 2, 3) << KbgVector3D(1, 2, 3)
                                    << KbgVector3D(0, 0, 0) << false << KbgVector3D();
    QTest::newRow("NaN") << KbgVector3D(NaN, 0, 0) << KbgVector3D(1, 0, 0) << KbgVector3D(0, 1, 0)
                         << false << KbgVector3D();
}

void TestGeometry3D::planeFromPoints()
{
    QFETCH(KbgVector3D, a);
    QFETCH(KbgVector3D, b);
    QFETCH(KbgVector3D, c);
    QFETCH(bool, accepted);
    QFETCH(KbgVector3D, normal);
    const KbgPlane previous(KbgVector3D(1, 0, 0), 4.0);
    KbgPlane plane = previous;
    if (!accepted)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgPlane::fromPoints: "));
    QCOMPARE(KbgPlane::fromPoints(a, b, c, plane), accepted);
    if (!accepted) {
        QCOMPARE(plane, previous);
        return;
    }
    COMPARE_VEC(plane.getNormal(), normal);
    for (const KbgVector3D& p : {a, b, c})
        QVERIFY(std::fabs(plane.signedDistance(p)) < 1e-6);
}

void TestGeometry3D::boxGrowth_data()
{
    QTest::addColumn<QVector<KbgVector3D>>("points");
    QTest::addColumn<KbgVector3D>("min");
    QTest::addColumn<KbgVector3D>("max");
    QTest::newRow("one point is a flat box")
        << QVector<KbgVector3D>{{1, 2, 3}} << KbgVector3D(1, 2, 3) << KbgVector3D(1, 2, 3);
    QTest::newRow("two corners in any order")
        << QVector<KbgVector3D>{{4, -1, 3}, {1, 2, -3}} << KbgVector3D(1, -1, -3)
        << KbgVector3D(4, 2, 3);
    QTest::newRow("inner point adds nothing")
        << QVector<KbgVector3D>{{0, 0, 0}, {10, 10, 10}, {5, 5, 5}} << KbgVector3D(0, 0, 0)
        << KbgVector3D(10, 10, 10);
    QTest::newRow("non-finite point ignored")
        << QVector<KbgVector3D>{{0, 0, 0}, {INF, 0, 0}, {1, 1, 1}} << KbgVector3D(0, 0, 0)
        << KbgVector3D(1, 1, 1);
}

void TestGeometry3D::boxGrowth()
{
    QFETCH(QVector<KbgVector3D>, points);
    QFETCH(KbgVector3D, min);
    QFETCH(KbgVector3D, max);
    KbgBox box;
    for (const KbgVector3D& p : points) {
        if (!p.isFinite())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgBox::extendBy: "));
        box.extendBy(p);
    }
    QVERIFY(!box.isEmpty());
    COMPARE_VEC(box.getMin(), min);
    COMPARE_VEC(box.getMax(), max);
    COMPARE_VEC(box.center(), (min + max) / 2.0);
    COMPARE_VEC(box.size(), max - min);
    COMPARE_VEC(box.halfSize() * 2.0, max - min);
    for (const KbgVector3D& p : points)
        QCOMPARE(box.contains(p), p.isFinite());
    QVERIFY(!box.contains(max + KbgVector3D(0, 0, 1e-3)));
    // Growing by another box grows by both its corners.
    KbgBox other = box;
    other.extendBy(KbgBox(KbgVector3D(-1, -1, -1), KbgVector3D(-2, -2, -2)));
    COMPARE_VEC(other.getMin(), KbgVector3D(std::min(min.x(), -2.0), std::min(min.y(), -2.0),
                                            std::min(min.z(), -2.0)));
    COMPARE_VEC(other.getMax(), KbgVector3D(std::max(max.x(), -1.0), std::max(max.y(), -1.0),
                                            std::max(max.z(), -1.0)));
}

void TestGeometry3D::emptyBoxContainsNothing()
{
    KbgBox box;
    QVERIFY(box.isEmpty());
    QVERIFY(!box.contains(KbgVector3D()));
    box.extendBy(KbgBox());
    QVERIFY(box.isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgBox::KbgBox: "));
    QVERIFY(KbgBox(KbgVector3D(NaN, 0, 0), KbgVector3D(1, 1, 1)).isEmpty());
    box.extendBy(KbgVector3D(1, 1, 1));
    QVERIFY(box != KbgBox());
    box.makeEmpty();
    QCOMPARE(box, KbgBox());
}

void TestGeometry3D::fenceLengthAndBox_data()
{
    QTest::addColumn<QVector<KbgVector3D>>("vertices");
    QTest::addColumn<double>("extension");
    QTest::addColumn<double>("length");
    QTest::addColumn<bool>("valid");
    QTest::newRow("empty") << QVector<KbgVector3D>() << 10.0 << 0.0 << false;
    QTest::newRow("one vertex") << QVector<KbgVector3D>{{1, 1, 0}} << 10.0 << 0.0 << false;
    QTest::newRow("one panel") << QVector<KbgVector3D>{{0, 0, 0}, {3, 4, 0}} << 10.0 << 5.0 << true;
    QTest::newRow("bent") << QVector<KbgVector3D>{{0, 0, 5}, {3, 4, 5}, {3, 10, 5}} << 0.0 << 11.0
                          << true;
}

void TestGeometry3D::fenceLengthAndBox()
{
    QFETCH(QVector<KbgVector3D>, vertices);
    QFETCH(double, extension);
    QFETCH(double, length);
    QFETCH(bool, valid);
    const KbgFence fence(vertices, extension);
    QCOMPARE(fence.isValid(), valid);
    QVERIFY(std::fabs(fence.length() - length) < 1e-12);
    const KbgBox box = fence.getBoundingBox();
    QCOMPARE(box.isEmpty(), vertices.isEmpty());
    for (const KbgVector3D& v : vertices) {
        QVERIFY(box.contains(v + KbgVector3D(0, 0, extension)));
        QVERIFY(box.contains(v - KbgVector3D(0, 0, extension)));
        QVERIFY(!box.contains(v + KbgVector3D(0, 0, extension + 0.5)));
    }
}

void TestGeometry3D::fenceRefusesBadInput()
{
    KbgFence fence({{0, 0, 0}, {1, 0, 0}}, 2.0);
    const KbgFence before = fence;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgFence::addVertex: "));
    QVERIFY(!fence.addVertex(KbgVector3D(NaN, 0, 0)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgFence::setVertices: vertex 1 "));
    QVERIFY(!fence.setVertices({{0, 0, 0}, {0, INF, 0}}));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^KbgFence::setExtension: "));
    QVERIFY(!fence.setExtension(-1.0));
    QCOMPARE(fence, before);
    QVERIFY(fence.addVertex(KbgVector3D(1, 1, 0)));
    QCOMPARE(fence.getVertexCount(), 3);
    QVERIFY(fence != before);
}

QTEST_GUILESS_MAIN(TestGeometry3D)
#include "tst_geometry3d.moc"
