// The ruler as a user measures with it: press on the data, move, press again, in RULER mode,
// over a slope drawn ten times exaggerated; the measures are the data's, and a press on
// nothing hides the ruler. The measure itself for the directions that matter.

#include "InventorScenes.h"
#include <Vg3OpenInventor.h>
#include <Vg3Ruler.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoFaceSet.h>

#include <QSignalSpy>
#include <QtTest>

#include <cmath>


namespace {

const double kSlope = 0.1; // the data rises 1 in 10 toward east
const float kZScale = 10.0f;
const KbgVector3D kOffset(500000.0, 6000000.0, 100.0);

// The slope z = offset.z + slope * x (data x relative to the offset) over [-50, 50]², drawn
// as the views draw data: offset taken off, z exaggerated.
SoSeparator* slope()
{
    auto face = new SoCoordinate3;
    const float z = float(kSlope * 50.0 * kZScale);
    face->point.set1Value(0, SbVec3f(-50, -50, -z));
    face->point.set1Value(1, SbVec3f(50, -50, z));
    face->point.set1Value(2, SbVec3f(50, 50, z));
    face->point.set1Value(3, SbVec3f(-50, 50, -z));
    return InventorScenes::separator({face, new SoFaceSet});
}

} // namespace

class TestVg3Ruler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void measures_data()
    {
        QTest::addColumn<KbgVector3D>("to");
        QTest::addColumn<double>("length");
        QTest::addColumn<double>("azimuth");
        QTest::addColumn<double>("dip");
        QTest::newRow("north, level") << KbgVector3D(0, 10, 0) << 10.0 << 0.0 << 0.0;
        QTest::newRow("east, down 45") << KbgVector3D(10, 0, -10) << std::sqrt(200.0) << 90.0 << 45.0;
        QTest::newRow("south-west, rising") << KbgVector3D(-3, -3, 1) << std::sqrt(19.0) << 225.0 << -13.2627;
        QTest::newRow("north-west") << KbgVector3D(-1, 1, 0) << std::sqrt(2.0) << 315.0 << 0.0;
        QTest::newRow("straight down") << KbgVector3D(0, 0, -5) << 5.0 << 0.0 << 90.0;
        QTest::newRow("nowhere") << KbgVector3D(0, 0, 0) << 0.0 << 0.0 << 0.0;
    }
    void measures()
    {
        QFETCH(KbgVector3D, to);
        QFETCH(double, length);
        QFETCH(double, azimuth);
        QFETCH(double, dip);
        const KbgVector3D from(100, 200, 300);
        const Vg3Ruler::Measure m = Vg3Ruler::measure(from, from + to);
        QVERIFY(std::fabs(m.length - length) < 1e-9);
        QVERIFY(std::fabs(m.horizontalLength - std::hypot(to.x(), to.y())) < 1e-9);
        QVERIFY2(std::fabs(m.azimuth - azimuth) < 1e-4, qPrintable(QString::number(m.azimuth)));
        QVERIFY2(std::fabs(m.dip - dip) < 1e-4, qPrintable(QString::number(m.dip)));
    }

    void pressMovePressOverAnExaggeratedSlope()
    {
        Vg3SceneInteractor interactor;
        interactor.setViewportRegion(SbViewportRegion(400, 400));
        const SoRef<SoSeparator> scene = InventorScenes::separator({slope()});
        Vg3Ruler ruler(&interactor);
        ruler.setFrame(kZScale, kOffset);
        scene->addChild(ruler.getRoot());
        interactor.setSceneGraph(scene);
        interactor.viewFromTop();
        interactor.setInteractionMode(Vg3SceneInteractor::RULER);
        QSignalSpy measured(&ruler, &Vg3Ruler::measured);
        const auto mouse = [&](int x, int y, bool press) {
            SoMouseButtonEvent button;
            SoLocation2Event location;
            SoEvent& event = press ? static_cast<SoEvent&>(button) : location;
            button.setButton(SoMouseButtonEvent::BUTTON1);
            button.setState(SoButtonEvent::DOWN);
            event.setPosition(SbVec2s(short(x), short(y)));
            return interactor.processEvent(&event);
        };

        // Start, follow the cursor east, end further east.
        QVERIFY(mouse(150, 200, true));
        QVERIFY(ruler.isDrawing() && ruler.isVisible());
        QVERIFY(mouse(200, 200, false));
        QVERIFY(mouse(250, 200, true));
        QVERIFY(!ruler.isDrawing());
        QCOMPARE(measured.count(), 3);
        const Vg3Ruler::Measure m = ruler.getMeasure();
        // In the data: a tenth up for every metre east, whatever the exaggeration on screen.
        QVERIFY2(m.horizontalLength > 10.0, qPrintable(QString::number(m.horizontalLength)));
        QVERIFY2(std::fabs(m.dip + std::atan(kSlope) * 180.0 / M_PI) < 0.01, qPrintable(QString::number(m.dip)));
        QVERIFY(std::fabs(m.azimuth - 90.0) < 0.01);
        QVERIFY(std::fabs(m.length - m.horizontalLength * std::sqrt(1.0 + kSlope * kSlope)) < 1e-6 * m.length);
        QVERIFY(std::fabs(m.from.z() - (kOffset.z() + kSlope * (m.from.x() - kOffset.x()))) < 1e-3);
        QVERIFY(std::fabs(m.from.y() - kOffset.y()) < 1.0);

        // Snapped: the end is level with the start.
        ruler.setSnap(true);
        QVERIFY(mouse(150, 200, true));
        QVERIFY(mouse(250, 200, true));
        QCOMPARE(ruler.getMeasure().dip, 0.0);

        // A point from nowhere leaves the measure as it was.
        QTest::ignoreMessage(QtWarningMsg, "Vg3Ruler: the end point is not finite");
        mouse(150, 200, true);
        ruler.moveTo(KbgVector3D(qQNaN(), 0, 0));
        QVERIFY(std::isfinite(ruler.getMeasure().length));

        // A press on nothing hides it; outside RULER mode it leaves the mouse alone.
        QVERIFY(mouse(2, 2, true));
        QVERIFY(!ruler.isVisible());
        interactor.setInteractionMode(Vg3SceneInteractor::VIEWING);
        measured.clear();
        mouse(150, 200, true);
        QCOMPARE(measured.count(), 0);
    }
};

QTEST_MAIN(TestVg3Ruler)
#include "tst_vg3ruler.moc"
