#include <SoCameraInteractor.h>
#include <Vg3OpenInventor.h>
#include <VugCameraState.h>

#include <Inventor/SbLine.h>
#include <Inventor/SbPlane.h>
#include <Inventor/SbViewVolume.h>
#include <Inventor/SbViewportRegion.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>

#include <QtTest>

#include <cmath>
#include <limits>

namespace {

SbVec3f toScreen(SoCamera* camera, const SbViewportRegion& region, const SbVec3f& world)
{
    SbVec3f screen;
    SoCameraInteractor::getViewVolume(camera, region).projectToScreen(world, screen);
    return screen;
}

SoCamera* makeCamera(bool orthographic)
{
    SoCamera* camera = orthographic ? static_cast<SoCamera*>(new SoOrthographicCamera)
                                    : static_cast<SoCamera*>(new SoPerspectiveCamera);
    camera->position.setValue(0.0f, 0.0f, 10.0f);
    camera->focalDistance.setValue(10.0f);
    if (orthographic) static_cast<SoOrthographicCamera*>(camera)->height.setValue(8.0f);
    return camera;
}

} // namespace

class TstCameraInteractor : public QObject
{
    Q_OBJECT private Q_SLOTS:
    void initTestCase() { Vg3OpenInventor::getInstance()->init(); }

    void dolly_data()
    {
        QTest::addColumn<bool>("orthographic");
        QTest::addColumn<float>("factor");
        QTest::addColumn<float>("expectedDistance");

        const float nan = std::numeric_limits<float>::quiet_NaN();
        QTest::newRow("perspective closer") << false << 0.5f << 5.0f;
        QTest::newRow("orthographic closer") << true << 0.5f << 5.0f;
        QTest::newRow("zero refused") << false << 0.0f << 10.0f;
        QTest::newRow("negative refused") << true << -2.0f << 10.0f;
        QTest::newRow("not a number refused") << false << nan << 10.0f;
    }

    void dolly()
    {
        QFETCH(bool, orthographic);
        QFETCH(float, factor);
        QFETCH(float, expectedDistance);

        SoCamera* camera = makeCamera(orthographic);
        SoCameraInteractor interactor(camera);
        const bool refused = !(factor > 0.0f) || !std::isfinite(factor);
        if (refused) QTest::ignoreMessage(QtWarningMsg, QRegularExpression("SoCameraInteractor::dolly: .*"));
        interactor.dolly(factor);

        // The focal point stays where it was; the camera moves along its view direction.
        QCOMPARE(interactor.getFocalPoint()[2], 0.0f);
        QVERIFY(std::fabs(camera->position.getValue()[2] - expectedDistance) < 1e-4f);
        QVERIFY(std::fabs(camera->focalDistance.getValue() - expectedDistance) < 1e-4f);
        if (orthographic) {
            const float height = static_cast<SoOrthographicCamera*>(camera)->height.getValue();
            QVERIFY(std::fabs(height - 8.0f * expectedDistance / 10.0f) < 1e-4f);
        }
    }

    void dollyKeepsPointUnderCursor_data()
    {
        QTest::addColumn<bool>("orthographic");
        QTest::addColumn<float>("x");
        QTest::addColumn<float>("y");
        QTest::addColumn<float>("factor");

        QTest::newRow("perspective, upper right, in") << false << 0.8f << 0.9f << 0.8f;
        QTest::newRow("perspective, lower left, out") << false << 0.1f << 0.25f << 1.3f;
        QTest::newRow("orthographic, upper right, in") << true << 0.8f << 0.9f << 0.8f;
        QTest::newRow("orthographic, lower left, out") << true << 0.1f << 0.25f << 1.3f;
    }

    void dollyKeepsPointUnderCursor()
    {
        QFETCH(bool, orthographic);
        QFETCH(float, x);
        QFETCH(float, y);
        QFETCH(float, factor);

        SoCamera* camera = makeCamera(orthographic);
        SoCameraInteractor interactor(camera);
        const SbViewportRegion region(400, 300);
        SbVec3f point;
        SbLine ray;
        SoCameraInteractor::getViewVolume(camera, region).projectPointToLine(SbVec2f(x, y), ray);
        QVERIFY(SbPlane(SbVec3f(0, 0, 1), 0.0f).intersect(ray, point));

        interactor.dollyWithZoomCenter(SbVec2f(x, y), factor, region);

        const SbVec3f after = toScreen(camera, region, point);
        QVERIFY2(std::fabs(after[0] - x) < 1e-4f && std::fabs(after[1] - y) < 1e-4f,
            qPrintable(QString("moved to %1 %2").arg(after[0]).arg(after[1])));
        QVERIFY(std::fabs(camera->focalDistance.getValue() - 10.0f * factor) < 1e-4f);
        // The point at the centre of the screen must have moved, or nothing zoomed.
        const SbVec3f centre = toScreen(camera, region, SbVec3f(0, 0, 0));
        QVERIFY(std::fabs(centre[0] - 0.5f) > 1e-3f);
    }

    // Saved states come back exactly, awkward numbers and both projections alike.
    void cameraStateRoundTrip()
    {
        Vug::CameraState odd;
        odd.position[0] = 0.1;
        odd.position[1] = -123456.789012345678;
        odd.position[2] = 1e-300;
        odd.axis[0] = 0.3;
        odd.axis[1] = -0.7;
        odd.axis[2] = 1.0 / 3.0;
        odd.angle = 2.0943951023931957;
        odd.focalDistance = 1e12;
        for (const bool orthographic : {false, true}) {
            odd.orthographic = orthographic;
            odd.height = orthographic ? 12345.5 : 0.5;
            QVERIFY(odd.isValid());
            Vug::CameraState read;
            read.angle = 9.0;
            QVERIFY(Vug::CameraState::fromString(odd.toString(), read));
            QVERIFY2(read == odd, qPrintable(odd.toString()));
        }
    }

    void cameraStateRefusesBadText_data()
    {
        QTest::addColumn<QString>("text");

        QTest::newRow("empty") << QString();
        QTest::newRow("nine fields") << "0 0 10 0 0 1 0 10 0.78";
        QTest::newRow("eleven fields") << "0 0 10 0 0 1 0 10 0.78 persp 1";
        QTest::newRow("word for a number") << "0 zero 10 0 0 1 0 10 0.78 persp";
        QTest::newRow("not a number") << "0 nan 10 0 0 1 0 10 0.78 persp";
        QTest::newRow("infinite") << "0 0 inf 0 0 1 0 10 0.78 persp";
        QTest::newRow("unknown projection") << "0 0 10 0 0 1 0 10 0.78 fisheye";
        QTest::newRow("zero focal distance") << "0 0 10 0 0 1 0 0 0.78 persp";
        QTest::newRow("negative height") << "0 0 10 0 0 1 0 10 -2 ortho";
        QTest::newRow("zero axis") << "0 0 10 0 0 0 0.5 10 0.78 persp";
        QTest::newRow("half-turn view angle") << "0 0 10 0 0 1 0 10 3.2 persp";
    }

    void cameraStateRefusesBadText()
    {
        QFETCH(QString, text);
        Vug::CameraState state;
        state.position[0] = 42.0;
        const Vug::CameraState before = state;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vug::CameraState::fromString: .*"));
        QVERIFY(!Vug::CameraState::fromString(text, state));
        QVERIFY(state == before);
    }
};

QTEST_MAIN(TstCameraInteractor)
#include "tst_camerainteractor.moc"
