// The 3D view's decorations as a renderer traverses them: axis ticks and the labels a user
// reads (round steps, unscaled heights, no endless loops on flat or broken ranges), hiding
// that keeps the roots in their parent graph, the gnomon and compass turning with the main
// camera, the automatic orientation helper, the corner square as the window changes size,
// and refused input.

#include "InventorScenes.h"
#include <Vg3Axes.h>
#include <Vg3Compass.h>
#include <Vg3Gnomon.h>
#include <Vg3OpenInventor.h>
#include <VuPosition.h>

#include <Inventor/SoDB.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoRotationXYZ.h>
#include <Inventor/sensors/SoSensorManager.h>

#include <QtTest>

#include <cmath>
#include <functional>

Q_DECLARE_METATYPE(SbBox3f) Q_DECLARE_METATYPE(SbVec3d) Q_DECLARE_METATYPE(SbVec3f) Q_DECLARE_METATYPE(SbVec2s)
using AxesInput = std::function<void(Vg3Axes&)>;
Q_DECLARE_METATYPE(AxesInput)

using namespace InventorScenes;

namespace {

// A camera orientation from the direction it looks toward and its up direction.
SbRotation looking(const SbVec3f& view, const SbVec3f& up)
{
    SbVec3f back = -view;
    back.normalize();
    SbVec3f right = up.cross(back);
    right.normalize();
    const SbVec3f trueUp = back.cross(right);
    // Row vectors: each row is where a camera axis goes.
    const SbMatrix m(right[0], right[1], right[2], 0.0f, trueUp[0], trueUp[1], trueUp[2], 0.0f,
                     back[0], back[1], back[2], 0.0f, 0.0f, 0.0f, 0.0f, 1.0f);
    return SbRotation(m);
}

// Angles compared on the circle, so pi and -pi agree.
bool sameAngle(double a, double b)
{
    return std::abs(std::sin(a - b)) < 1e-3 && std::cos(a - b) > 0.0;
}

SbBox3f box(float x0, float y0, float z0, float x1, float y1, float z1)
{
    return SbBox3f(x0, y0, z0, x1, y1, z1);
}

} // namespace

class TestVg3Decorations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    // Round steps giving four to nine ticks inside the range, and the labels a user reads;
    // no endless loops on flat, reversed or broken ranges.
    void ticks_data()
    {
        QTest::addColumn<double>("min");
        QTest::addColumn<double>("max");
        QTest::addColumn<double>("step");
        QTest::addColumn<QString>("labels"); // "-": not checked

        QTest::newRow("0 to 1000") << 0.0 << 1000.0 << 200.0 << "0 200 400 600 800 1000";
        QTest::newRow("inside the ends") << 431050.0 << 435990.0 << 1000.0 << "432000 433000 434000 435000";
        QTest::newRow("unit range") << 0.0 << 1.0 << 0.2 << "-";
        QTest::newRow("across zero") << -5.0 << 5.0 << 2.0 << "-";
        QTest::newRow("tenths across zero, no minus zero") << -0.3 << 0.3 << 0.1 << "-0.3 -0.2 -0.1 0.0 0.1 0.2 0.3";
        QTest::newRow("just under eight hundreds") << 0.0 << 799.0 << 100.0 << "-";
        QTest::newRow("eight hundreds") << 0.0 << 800.0 << 200.0 << "-";
        QTest::newRow("depths") << -3250.0 << -1200.0 << 500.0 << "-";
        QTest::newRow("millimetres") << 0.0 << 0.003 << 0.0005 << "-";
        QTest::newRow("zero size") << 7.0 << 7.0 << 0.0 << "7";
        QTest::newRow("reversed") << 10.0 << 0.0 << 0.0 << "";
        QTest::newRow("not a number") << qQNaN() << 1.0 << 0.0 << "";
        QTest::newRow("not a number at the end") << 0.0 << qQNaN() << 0.0 << "";
        QTest::newRow("infinite") << 0.0 << qInf() << 0.0 << "-";
        QTest::newRow("overflowing range") << -1e308 << 1e308 << 0.0 << "-";
        QTest::newRow("too narrow for doubles") << 1e16 << 1e16 + 2.0 << -1.0 << "10000000000000000";
    }

    void ticks()
    {
        QFETCH(double, min);
        QFETCH(double, max);
        QFETCH(double, step);
        QFETCH(QString, labels);
        const double found = Vg3Axes::tickStep(min, max);
        if (step >= 0.0)
            QVERIFY2(qFuzzyCompare(1.0 + found, 1.0 + step) || std::abs(found - step) <= std::abs(step) * 1e-9,
                     qPrintable(QString::number(found)));
        QStringList shown;
        for (double value : Vg3Axes::tickValues(min, max)) shown << Vg3Axes::formatTick(value, found);
        if (step > 0.0) QVERIFY2(shown.size() >= 4 && shown.size() <= 9, qPrintable(shown.join(' ')));
        if (labels != QLatin1String("-")) QCOMPARE(shown.join(' '), labels);
    }

    void axisLabels_data()
    {
        QTest::addColumn<SbBox3f>("sceneBox");
        QTest::addColumn<float>("zScale");
        QTest::addColumn<SbVec3d>("offset");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QStringList>("absent");

        const SbVec3d none(0.0, 0.0, 0.0);
        QTest::newRow("titles and eastings") << box(431000, 0, 0, 436000, 10, 10) << 1.0f << none
            << QStringList{"Easting", "Northing", "Elevation", "431000", "436000", "10"}
            << QStringList{"430000", "437000"};
        QTest::newRow("heights shown unscaled") << box(0, 0, 0, 10, 10, 2000) << 2.0f << none
            << QStringList{"0", "200", "1000"} << QStringList{"2000", "1200"};
        QTest::newRow("label offset") << box(0, 0, 0, 5000, 10, 10) << 1.0f << SbVec3d(431000.0, 0.0, 0.0)
            << QStringList{"431000", "436000"} << QStringList{"1000", "5000"};
        QTest::newRow("offset height after scale") << box(0, 0, 0, 10, 10, 100) << 10.0f << SbVec3d(0.0, 0.0, -500.0)
            << QStringList{"-500", "-490"} << QStringList{"-400", "100"};
        QTest::newRow("point box") << box(3, 4, 5, 3, 4, 5) << 1.0f << none
                                   << QStringList{"3", "4", "5", "Easting"} << QStringList{};
        QTest::newRow("empty box") << SbBox3f() << 1.0f << none << QStringList{}
                                   << QStringList{"Easting", "0"};
    }

    void axisLabels()
    {
        QFETCH(SbBox3f, sceneBox);
        QFETCH(float, zScale);
        QFETCH(SbVec3d, offset);
        QFETCH(QStringList, present);
        QFETCH(QStringList, absent);

        Vg3Axes axes;
        // Set before and after the box, so both orders rebuild the labels.
        axes.setZScale(zScale);
        axes.setBox(sceneBox);
        axes.setLabelOffset(offset);
        const QStringList labels = texts(axes.getRoot());
        for (const QString& label : present)
            QVERIFY2(labels.contains(label), qPrintable(label + " not in " + labels.join(',')));
        for (const QString& label : absent)
            QVERIFY2(!labels.contains(label), qPrintable(label + " in " + labels.join(',')));
    }

    void refusedAxisInput_data()
    {
        QTest::addColumn<AxesInput>("input");
        QTest::addColumn<QString>("warning");
        QTest::newRow("zero scale") << AxesInput([](Vg3Axes& a) { a.setZScale(0.0f); })
                                    << "Vg3Axes::setZScale: invalid vertical scale 0";
        QTest::newRow("nan scale") << AxesInput([](Vg3Axes& a) { a.setZScale(std::nanf("")); })
                                   << "Vg3Axes::setZScale: invalid vertical scale nan";
        QTest::newRow("nan box") << AxesInput([](Vg3Axes& a) { a.setBox(box(0, 0, 0, std::nanf(""), 1, 1)); })
                                 << "Vg3Axes::setBox: the box has a non-finite coordinate";
        QTest::newRow("infinite offset") << AxesInput([](Vg3Axes& a) { a.setLabelOffset(SbVec3d(qInf(), 0.0, 0.0)); })
                                         << "Vg3Axes::setLabelOffset: the offset has a non-finite coordinate";
        QTest::newRow("invalid colour") << AxesInput([](Vg3Axes& a) { a.setColor(QColor()); })
                                        << "Vg3Axes::setColor: invalid colour";
    }

    void refusedAxisInput()
    {
        QFETCH(AxesInput, input);
        QFETCH(QString, warning);
        Vg3Axes axes;
        axes.setBox(box(0, 0, 0, 1000, 1000, 1000));
        axes.setZScale(2.0f);
        const QStringList before = texts(axes.getRoot());
        QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
        input(axes);
        QCOMPARE(texts(axes.getRoot()), before);
        QCOMPARE(axes.getZScale(), 2.0f);
    }

    // Hidden, a decoration draws nothing but stays in its parent's graph, where a view put it.
    void hidingKeepsRoot()
    {
        Vg3Axes axes;
        axes.setBox(box(0, 0, 0, 10, 10, 10));
        Vg3Gnomon gnomon;
        Vg3Compass compass;
        const std::pair<SoSeparator*, std::function<void(bool)>> decorations[] = {
            {axes.getRoot(), [&](bool shown) { axes.setVisible(shown); }},
            {gnomon.getRoot(), [&](bool shown) { gnomon.setVisible(shown); }},
            {compass.getRoot(), [&](bool shown) { compass.setVisible(shown); }}};
        for (const auto& [root, setVisible] : decorations) {
            const auto parent = SoRef(separator({root}));
            QVERIFY(!texts(parent.get()).isEmpty());
            for (const bool shown : {false, true}) {
                setVisible(shown);
                QCOMPARE(parent->findChild(root), 0);
                QCOMPARE(texts(parent.get()).isEmpty(), !shown);
            }
        }
    }

    void axesGrid()
    {
        Vg3Axes axes;
        axes.setBox(box(0, 0, 0, 10, 10, 10));
        const int withoutGrid = shownCount(axes.getRoot(), SoLineSet::getClassTypeId());
        axes.setGridVisible(true);
        QCOMPARE(shownCount(axes.getRoot(), SoLineSet::getClassTypeId()), withoutGrid + 1);
        // A new box keeps the grid shown.
        axes.setBox(box(0, 0, 0, 100, 10, 10));
        QCOMPARE(shownCount(axes.getRoot(), SoLineSet::getClassTypeId()), withoutGrid + 1);
        axes.setGridVisible(false);
        QCOMPARE(shownCount(axes.getRoot(), SoLineSet::getClassTypeId()), withoutGrid);
    }

    // The gnomon shows the world axes as the camera sees them: it turns by the inverse of the
    // connected camera's orientation, turned before or after connecting.
    void gnomonCameraLifetime()
    {
        Vg3Gnomon gnomon;
        auto rotation = find<SoRotation>(gnomon.getRoot(), "vg3gnomon_rotation");
        QVERIFY(rotation);
        const auto first = SoRef(new SoPerspectiveCamera);
        auto second = SoRef(new SoPerspectiveCamera);
        const SbRotation fromSouth = looking(SbVec3f(0, 1, 0), SbVec3f(0, 0, 1));
        const SbRotation fromEast = looking(SbVec3f(-1, 0, 0), SbVec3f(0, 0, 1));

        gnomon.connectCamera(first.get());
        gnomon.connectCamera(second.get());
        // The camera left behind no longer turns the gnomon.
        first->orientation = fromSouth;
        QVERIFY(rotation->rotation.getValue().equals(SbRotation::identity(), 1e-5f));
        second->orientation = fromEast;
        QVERIFY(rotation->rotation.getValue().equals(fromEast.inverse(), 1e-5f));

        // A camera deleted while connected leaves the last orientation, and no dangling use.
        second.reset();
        QCOMPARE(gnomon.getCamera(), static_cast<SoCamera*>(nullptr));
        QVERIFY(rotation->rotation.getValue().equals(fromEast.inverse(), 1e-5f));
        gnomon.connectCamera(first.get());
        QVERIFY(rotation->rotation.getValue().equals(fromSouth.inverse(), 1e-5f));
    }

    void automaticOrientationHelper()
    {
        Vg3Gnomon gnomon;
        const auto camera = SoRef(new SoPerspectiveCamera);
        gnomon.connectCamera(camera.get());
        gnomon.setAutomaticDelay(0.0);
        gnomon.setAutomatic(true);
        // Still camera: nothing drawn.
        QVERIFY(texts(gnomon.getRoot()).isEmpty());

        camera->orientation = looking(SbVec3f(0, 1, 0), SbVec3f(0, 0, 1));
        QCOMPARE(texts(gnomon.getRoot()), (QStringList{"X", "Y", "Z"}));

        // The camera stopped: the delay (zero here) runs out on the next timer pass.
        SoDB::getSensorManager()->processTimerQueue();
        QVERIFY(texts(gnomon.getRoot()).isEmpty());

        // A hidden gnomon stays hidden while the camera turns.
        gnomon.setVisible(false);
        camera->orientation = looking(SbVec3f(-1, 0, 0), SbVec3f(0, 0, 1));
        QVERIFY(texts(gnomon.getRoot()).isEmpty());

        // Without the helper the gnomon is always there.
        gnomon.setVisible(true);
        gnomon.setAutomatic(false);
        QCOMPARE(texts(gnomon.getRoot()).size(), 3);
    }

    void compassFollowsHeading_data()
    {
        QTest::addColumn<SbVec3f>("view");
        QTest::addColumn<SbVec3f>("up");
        // Counter-clockwise on screen from the screen's up direction to the arrow.
        QTest::addColumn<double>("arrowDegrees");

        QTest::newRow("from top, north up") << SbVec3f(0, 0, -1) << SbVec3f(0, 1, 0) << 0.0;
        QTest::newRow("from top, east up") << SbVec3f(0, 0, -1) << SbVec3f(1, 0, 0) << 90.0;
        QTest::newRow("from top, south up") << SbVec3f(0, 0, -1) << SbVec3f(0, -1, 0) << 180.0;
        QTest::newRow("facing east") << SbVec3f(1, 0, 0) << SbVec3f(0, 0, 1) << 90.0;
        QTest::newRow("facing west") << SbVec3f(-1, 0, 0) << SbVec3f(0, 0, 1) << -90.0;
        QTest::newRow("facing south") << SbVec3f(0, -1, 0) << SbVec3f(0, 0, 1) << 180.0;
        QTest::newRow("north, looking down") << SbVec3f(0, 1, -1) << SbVec3f(0, 0, 1) << 0.0;
        QTest::newRow("north, looking up") << SbVec3f(0, 1, 1) << SbVec3f(0, 0, 1) << 0.0;
        QTest::newRow("north-east, looking down") << SbVec3f(1, 1, -2) << SbVec3f(0, 0, 1) << 45.0;
    }

    void compassFollowsHeading()
    {
        QFETCH(SbVec3f, view);
        QFETCH(SbVec3f, up);
        QFETCH(double, arrowDegrees);

        const auto camera = SoRef(new SoPerspectiveCamera);
        Vg3Compass compass;
        compass.connectCamera(camera.get());
        camera->orientation = looking(view, up);

        auto rotation = find<SoRotationXYZ>(compass.getRoot(), "vg3compass_rotation");
        QVERIFY(rotation);
        QCOMPARE(rotation->axis.getValue(), int(SoRotationXYZ::Z));
        const double drawn = rotation->angle.getValue();
        QVERIFY2(sameAngle(drawn, qDegreesToRadians(arrowDegrees)),
                 qPrintable(QString::number(qRadiansToDegrees(drawn))));
        QVERIFY(sameAngle(Vg3Compass::heading(looking(view, up)), qDegreesToRadians(arrowDegrees)));
    }

    void cornerViewport_data()
    {
        QTest::addColumn<SbVec2s>("windowSize");
        QTest::addColumn<QRect>("viewport");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("size");
        QTest::addColumn<QRect>("expected");

        const QRect whole(0, 0, 800, 600);
        QTest::newRow("centre") << SbVec2s(800, 600) << whole << int(Vu::HCENTER | Vu::VCENTER)
                                << 100 << QRect(350, 250, 100, 100);
        QTest::newRow("after resize, top right")
            << SbVec2s(300, 200) << QRect(0, 0, 300, 200) << int(Vu::RIGHT | Vu::TOP) << 100
            << QRect(200, 100, 100, 100);
        QTest::newRow("window smaller than the square")
            << SbVec2s(50, 40) << QRect(0, 0, 50, 40) << int(Vu::RIGHT | Vu::TOP) << 100 << QRect(10, 0, 40, 40);
        QTest::newRow("inside a sub-viewport")
            << SbVec2s(800, 600) << QRect(100, 50, 400, 300) << int(Vu::RIGHT | Vu::BOTTOM) << 100
            << QRect(400, 50, 100, 100);
    }

    void cornerViewport()
    {
        QFETCH(SbVec2s, windowSize);
        QFETCH(QRect, viewport);
        QFETCH(int, position);
        QFETCH(int, size);
        QFETCH(QRect, expected);

        SbViewportRegion window(windowSize);
        window.setViewportPixels(SbVec2s(short(viewport.x()), short(viewport.y())),
                                 SbVec2s(short(viewport.width()), short(viewport.height())));
        const SbViewportRegion corner = Vg3Gnomon::cornerViewport(window, position, size);
        const SbVec2s origin = corner.getViewportOriginPixels();
        const SbVec2s extent = corner.getViewportSizePixels();
        QCOMPARE(QRect(origin[0], origin[1], extent[0], extent[1]), expected);
        QCOMPARE(corner.getWindowSize(), windowSize);
    }

    void refusedOverlayInput_data()
    {
        QTest::addColumn<bool>("compass");
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("warning");

        QTest::newRow("gnomon, two horizontal flags") << false << int(Vu::LEFT | Vu::RIGHT | Vu::TOP) << 100
            << "Vg3Gnomon::setPosition: invalid position 37";
        QTest::newRow("gnomon, no vertical flag")
            << false << int(Vu::LEFT) << 100 << "Vg3Gnomon::setPosition: invalid position 1";
        QTest::newRow("gnomon, tiny") << false << int(Vu::RIGHT | Vu::TOP) << 3
                                      << "Vg3Gnomon::setSize: size 3 below 16 pixels";
        QTest::newRow("compass, unknown bit") << true << 0x100 << 80 << "Vg3Compass::setPosition: invalid position 256";
        QTest::newRow("compass, negative size") << true << int(Vu::LEFT | Vu::BOTTOM) << -5
                                                << "Vg3Compass::setSize: size -5 below 16 pixels";
    }

    void refusedOverlayInput()
    {
        QFETCH(bool, compass);
        QFETCH(int, position);
        QFETCH(int, size);
        QFETCH(QString, warning);
        const auto check = [&](auto& overlay) {
            const int oldPosition = overlay.getPosition();
            const int oldSize = overlay.getSize();
            QTest::ignoreMessage(QtWarningMsg, qPrintable(warning));
            overlay.setPosition(position);
            overlay.setSize(size);
            // The refused value leaves the last good one; the accepted one of the pair is taken.
            QCOMPARE(overlay.getPosition(), Vu::isValidPosition(position) ? position : oldPosition);
            QCOMPARE(overlay.getSize(), size >= 16 ? size : oldSize);
        };
        Vg3Gnomon gnomon;
        Vg3Compass north;
        if (compass) check(north);
        else check(gnomon);
    }
};

QTEST_MAIN(TestVg3Decorations)
#include "tst_vg3decorations.moc"
