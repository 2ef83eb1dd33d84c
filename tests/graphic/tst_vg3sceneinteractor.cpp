#include <SoCameraInteractor.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <VupPreferenceRegistry.h>
#include <VupPreferences3DViews.h>

#include <Inventor/SbLine.h>
#include <Inventor/SbPlane.h>
#include <Inventor/SbViewVolume.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

Q_DECLARE_METATYPE(Qt::CursorShape)
Q_DECLARE_METATYPE(SbVec3f)

namespace {

const double kPi = 3.141592653589793;
const short kWidth = 400;
const short kHeight = 300;

enum Modifier { NO_MODIFIER, CTRL, SHIFT };

void setModifier(SoEvent& event, int modifier)
{
    event.setCtrlDown(modifier == CTRL);
    event.setShiftDown(modifier == SHIFT);
}

bool press(Vg3SceneInteractor& s, SoMouseButtonEvent::Button button, int x, int y, int modifier = NO_MODIFIER,
    SoButtonEvent::State state = SoButtonEvent::DOWN)
{
    SoMouseButtonEvent event;
    event.setButton(button);
    event.setState(state);
    event.setPosition(SbVec2s(short(x), short(y)));
    setModifier(event, modifier);
    return s.processEvent(&event);
}

bool release(Vg3SceneInteractor& s, SoMouseButtonEvent::Button button, int x, int y, int modifier = NO_MODIFIER)
{
    return press(s, button, x, y, modifier, SoButtonEvent::UP);
}

bool move(Vg3SceneInteractor& s, int x, int y, int modifier = NO_MODIFIER)
{
    SoLocation2Event event;
    event.setPosition(SbVec2s(short(x), short(y)));
    setModifier(event, modifier);
    return s.processEvent(&event);
}

bool wheel(Vg3SceneInteractor& s, int delta, int x, int y)
{
    SoMouseWheelEvent event;
    event.setDelta(delta);
    event.setPosition(SbVec2s(short(x), short(y)));
    return s.processEvent(&event);
}

SbVec3f direction(const SoCamera* camera, const SbVec3f& local)
{
    SbVec3f world;
    camera->orientation.getValue().multVec(local, world);
    return world;
}

SbVec3f toScreen(const Vg3SceneInteractor& s, const SbVec3f& world)
{
    SbVec3f screen;
    SoCameraInteractor::getViewVolume(s.getCamera(), s.getViewportRegion()).projectToScreen(world, screen);
    return screen;
}

bool close(const SbVec3f& a, const SbVec3f& b, float tolerance = 1e-3f)
{
    return (a - b).length() < tolerance;
}

QString text(const SbVec3f& v)
{
    return QString("(%1, %2, %3)").arg(v[0]).arg(v[1]).arg(v[2]);
}

// The eight corners of a box given by its centre and half size.
QVector<SbVec3f> corners(const SbVec3f& centre, const SbVec3f& half)
{
    QVector<SbVec3f> result;
    for (int i = 0; i < 8; ++i)
        result << centre + SbVec3f(i & 1 ? half[0] : -half[0], i & 2 ? half[1] : -half[1], i & 4 ? half[2] : -half[2]);
    return result;
}

void keyHandled(void*, SoEventCallback* callback)
{
    callback->setHandled();
}

} // namespace

class TstVg3SceneInteractor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        qRegisterMetaType<Qt::CursorShape>();
        QVERIFY(_dir.isValid());
        VupPreferenceRegistry::getInstance()->setStorageFile(_dir.filePath("preferences.ini"));
    }

    void init()
    {
        VupPreferences3DViews::setValue("mouseWheelZoomDirection", false);
        _scene = new SoSeparator;
        _scene->ref();
        SoTranslation* translation = new SoTranslation;
        translation->translation.setValue(10.0f, 20.0f, 5.0f);
        SoCube* cube = new SoCube;
        cube->width = 4.0f;
        _scene->addChild(translation);
        _scene->addChild(cube);
        _interactor = new Vg3SceneInteractor;
        _interactor->setViewportRegion(SbViewportRegion(kWidth, kHeight));
        _interactor->setSceneGraph(_scene);
        _interactor->viewAll();
    }

    void cleanup()
    {
        delete _interactor;
        _interactor = nullptr;
        _scene->unref();
        _scene = nullptr;
    }

    void wheelDollies_data()
    {
        QTest::addColumn<int>("delta");
        QTest::addColumn<bool>("inverted");
        QTest::addColumn<double>("expectedRatio");

        const double step = std::pow(2.0, kPi / 180.0);
        QTest::newRow("one notch forward comes closer") << 120 << false << 1.0 / step;
        QTest::newRow("one notch back goes away") << -120 << false << step;
        QTest::newRow("two notches") << 240 << false << 1.0 / (step * step);
        QTest::newRow("inverted preference goes away") << 120 << true << step;
        QTest::newRow("half a notch does nothing") << 60 << false << 1.0;
        QTest::newRow("half a notch back does nothing") << -60 << true << 1.0;
    }

    void wheelDollies()
    {
        QFETCH(int, delta);
        QFETCH(bool, inverted);
        QFETCH(double, expectedRatio);

        VupPreferences3DViews::setValue("mouseWheelZoomDirection", inverted);
        SoCamera* camera = _interactor->getCamera();
        const SbVec3f target(10.0f, 20.0f, 5.0f);
        const double before = (camera->position.getValue() - target).length();
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);

        const bool used = wheel(*_interactor, delta, kWidth / 2, kHeight / 2);

        const double after = (camera->position.getValue() - target).length();
        QVERIFY2(std::fabs(after / before - expectedRatio) < 1e-5,
            qPrintable(QString("ratio %1 instead of %2").arg(after / before, 0, 'g', 10).arg(expectedRatio, 0, 'g', 10)));
        QCOMPARE(used, expectedRatio != 1.0);
        QCOMPARE(changed.count(), expectedRatio != 1.0 ? 1 : 0);
    }

    void orbitKeepsDistance_data()
    {
        QTest::addColumn<int>("cameraMode");
        QTest::addColumn<int>("dx");
        QTest::addColumn<int>("dy");

        QTest::newRow("examiner, sideways") << int(Vg3SceneInteractor::EXAMINER) << 80 << 0;
        QTest::newRow("examiner, diagonal") << int(Vg3SceneInteractor::EXAMINER) << 60 << -50;
        QTest::newRow("orbiter, sideways") << int(Vg3SceneInteractor::ORBITER) << 80 << 0;
        QTest::newRow("orbiter, diagonal") << int(Vg3SceneInteractor::ORBITER) << -60 << -40;
    }

    void orbitKeepsDistance()
    {
        QFETCH(int, cameraMode);
        QFETCH(int, dx);
        QFETCH(int, dy);

        _interactor->setCameraMode(Vg3SceneInteractor::CameraMode(cameraMode));
        _interactor->viewFromSouth();
        SoCamera* camera = _interactor->getCamera();
        const SbVec3f centre(10.0f, 20.0f, 5.0f);
        const float distance = (camera->position.getValue() - centre).length();
        const SbRotation before = camera->orientation.getValue();
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);
        QSignalSpy cursor(_interactor, &Vg3SceneInteractor::cursorChangeRequested);

        const int x = kWidth / 2, y = kHeight / 2;
        QVERIFY(press(*_interactor, SoMouseButtonEvent::BUTTON1, x, y));
        QVERIFY(move(*_interactor, x + dx / 2, y + dy / 2));
        QVERIFY(move(*_interactor, x + dx, y + dy));
        QVERIFY(release(*_interactor, SoMouseButtonEvent::BUTTON1, x + dx, y + dy));
        // Moving without a button afterwards is not navigation.
        QVERIFY(!move(*_interactor, x, y));

        QVERIFY(!camera->orientation.getValue().equals(before, 1e-3f));
        QVERIFY(std::fabs((camera->position.getValue() - centre).length() - distance) < 1e-3f * distance);
        QVERIFY2(close(_interactor->getCameraInteractor()->getFocalPoint(), centre, 1e-3f * distance),
            qPrintable(text(_interactor->getCameraInteractor()->getFocalPoint())));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(cursor.count(), 2);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), Qt::ClosedHandCursor);
        QCOMPARE(cursor.at(1).at(0).value<Qt::CursorShape>(), Qt::ArrowCursor);
        if (cameraMode == Vg3SceneInteractor::ORBITER) {
            // The horizon stays level and z stays up.
            QVERIFY(std::fabs(direction(camera, SbVec3f(1, 0, 0))[2]) < 1e-4f);
            QVERIFY(direction(camera, SbVec3f(0, 1, 0))[2] > 0.0f);
        }
    }

    void panDragsPointUnderCursor_data()
    {
        QTest::addColumn<int>("cameraMode");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<bool>("orthographic");

        QTest::newRow("right button") << int(Vg3SceneInteractor::EXAMINER) << int(SoMouseButtonEvent::BUTTON3)
                                      << int(NO_MODIFIER) << false;
        QTest::newRow("middle button") << int(Vg3SceneInteractor::EXAMINER) << int(SoMouseButtonEvent::BUTTON2)
                                       << int(NO_MODIFIER) << false;
        QTest::newRow("ctrl + left") << int(Vg3SceneInteractor::EXAMINER) << int(SoMouseButtonEvent::BUTTON1)
                                     << int(CTRL) << false;
        QTest::newRow("shift + left, orbiter") << int(Vg3SceneInteractor::ORBITER) << int(SoMouseButtonEvent::BUTTON1)
                                               << int(SHIFT) << false;
        QTest::newRow("left in plane mode") << int(Vg3SceneInteractor::PLANE) << int(SoMouseButtonEvent::BUTTON1)
                                            << int(NO_MODIFIER) << false;
        QTest::newRow("right button, orthographic") << int(Vg3SceneInteractor::EXAMINER)
                                                    << int(SoMouseButtonEvent::BUTTON3) << int(NO_MODIFIER) << true;
    }

    void panDragsPointUnderCursor()
    {
        QFETCH(int, cameraMode);
        QFETCH(int, button);
        QFETCH(int, modifier);
        QFETCH(bool, orthographic);

        _interactor->setCameraMode(Vg3SceneInteractor::CameraMode(cameraMode));
        if (orthographic)
            _interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
        _interactor->viewFromEast();
        SoCamera* camera = _interactor->getCamera();
        const SbRotation before = camera->orientation.getValue();
        // The box centre is at the focal point, in the middle of the view.
        const SbVec3f grabbed(10.0f, 20.0f, 5.0f);
        QVERIFY(close(toScreen(*_interactor, grabbed), SbVec3f(0.5f, 0.5f, toScreen(*_interactor, grabbed)[2])));
        QSignalSpy cursor(_interactor, &Vg3SceneInteractor::cursorChangeRequested);

        const auto b = SoMouseButtonEvent::Button(button);
        QVERIFY(press(*_interactor, b, kWidth / 2, kHeight / 2, modifier));
        QVERIFY(move(*_interactor, kWidth / 2 + 30, kHeight / 2 + 10, modifier));
        QVERIFY(move(*_interactor, kWidth / 2 + 100, kHeight / 2 - 60, modifier));
        QVERIFY(release(*_interactor, b, kWidth / 2 + 100, kHeight / 2 - 60, modifier));

        QVERIFY(camera->orientation.getValue().equals(before, 1e-6f));
        const SbVec3f seen = toScreen(*_interactor, grabbed);
        QVERIFY2(std::fabs(seen[0] - (0.5f + 100.0f / kWidth)) < 2e-3f && std::fabs(seen[1] - (0.5f - 60.0f / kHeight)) < 2e-3f,
            qPrintable(text(seen)));
        // The renderer's own picking under the cursor finds the box on the line of sight through
        // the grabbed point.
        const SoPickedPoint* picked = _interactor->pick(SbVec2i32(kWidth / 2 + 100, kHeight / 2 - 60), 0);
        QVERIFY(picked);
        const SbVec3f hit = picked->getPoint();
        const SbVec3f sight = orthographic ? direction(camera, SbVec3f(0, 0, -1)) : grabbed - camera->position.getValue();
        const SbVec3f onSight = SbLine(grabbed, grabbed + sight).getClosestPoint(hit);
        QVERIFY2(std::fabs(hit[0] - 12.0f) < 1e-3f && close(hit, onSight, 0.02f), qPrintable(text(hit)));
        QCOMPARE(cursor.count(), 2);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), Qt::SizeAllCursor);
    }

    void leftButtonOutsideViewingDoesNotOrbit_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("picking") << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("ruler") << int(Vg3SceneInteractor::RULER);
    }

    void leftButtonOutsideViewingDoesNotOrbit()
    {
        QFETCH(int, mode);
        _interactor->setInteractionMode(Vg3SceneInteractor::InteractionMode(mode));
        const Vug::CameraState before = _interactor->getCameraState();
        QVERIFY(!press(*_interactor, SoMouseButtonEvent::BUTTON1, 100, 100));
        QVERIFY(!move(*_interactor, 200, 150));
        release(*_interactor, SoMouseButtonEvent::BUTTON1, 200, 150);
        QVERIFY(_interactor->getCameraState() == before);
    }

    void presets_data()
    {
        QTest::addColumn<int>("preset");
        QTest::addColumn<SbVec3f>("viewDirection");
        QTest::addColumn<SbVec3f>("up");

        QTest::newRow("top") << 0 << SbVec3f(0, 0, -1) << SbVec3f(0, 1, 0);
        QTest::newRow("bottom") << 1 << SbVec3f(0, 0, 1) << SbVec3f(0, 1, 0);
        QTest::newRow("east") << 2 << SbVec3f(-1, 0, 0) << SbVec3f(0, 0, 1);
        QTest::newRow("west") << 3 << SbVec3f(1, 0, 0) << SbVec3f(0, 0, 1);
        QTest::newRow("north") << 4 << SbVec3f(0, -1, 0) << SbVec3f(0, 0, 1);
        QTest::newRow("south") << 5 << SbVec3f(0, 1, 0) << SbVec3f(0, 0, 1);
    }

    void presets()
    {
        QFETCH(int, preset);
        QFETCH(SbVec3f, viewDirection);
        QFETCH(SbVec3f, up);

        // Start from an arbitrary, rolled camera somewhere else.
        _interactor->getCameraInteractor()->setOrientation(SbRotation(SbVec3f(0.3f, -1.0f, 0.2f), 2.0f));
        _interactor->getCamera()->position.setValue(-50.0f, 3.0f, 40.0f);
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);
        switch (preset) {
        case 0: _interactor->viewFromTop(); break;
        case 1: _interactor->viewFromBottom(); break;
        case 2: _interactor->viewFromEast(); break;
        case 3: _interactor->viewFromWest(); break;
        case 4: _interactor->viewFromNorth(); break;
        case 5: _interactor->viewFromSouth(); break;
        }
        const SoCamera* camera = _interactor->getCamera();
        QVERIFY2(close(direction(camera, SbVec3f(0, 0, -1)), viewDirection, 1e-5f),
            qPrintable(text(direction(camera, SbVec3f(0, 0, -1)))));
        QVERIFY2(close(direction(camera, SbVec3f(0, 1, 0)), up, 1e-5f), qPrintable(text(direction(camera, SbVec3f(0, 1, 0)))));
        // Framed: the box centre is in the middle of the view, every corner inside it.
        const SbVec3f centre = toScreen(*_interactor, SbVec3f(10, 20, 5));
        QVERIFY(std::fabs(centre[0] - 0.5f) < 1e-4f && std::fabs(centre[1] - 0.5f) < 1e-4f);
        for (const SbVec3f& corner : corners(SbVec3f(10, 20, 5), SbVec3f(2, 1, 1))) {
            const SbVec3f s = toScreen(*_interactor, corner);
            QVERIFY(s[0] > 0.0f && s[0] < 1.0f && s[1] > 0.0f && s[1] < 1.0f);
        }
        QVERIFY(changed.count() >= 1);
    }

    void viewAllFramesScene_data()
    {
        QTest::addColumn<bool>("orthographic");
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");

        QTest::newRow("perspective, wide") << false << 400 << 200;
        QTest::newRow("perspective, tall") << false << 150 << 400;
        QTest::newRow("orthographic, wide") << true << 400 << 200;
        QTest::newRow("orthographic, tall") << true << 150 << 400;
    }

    void viewAllFramesScene()
    {
        QFETCH(bool, orthographic);
        QFETCH(int, width);
        QFETCH(int, height);

        _interactor->setViewportRegion(SbViewportRegion(short(width), short(height)));
        if (orthographic)
            _interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
        _interactor->getCameraInteractor()->setOrientation(SbRotation(SbVec3f(1.0f, 0.5f, 0.2f), 0.9f));
        _interactor->getCamera()->position.setValue(500.0f, -300.0f, 80.0f);
        _interactor->viewAll();

        SbVec3f lowest(1, 1, 1), highest(0, 0, 0);
        for (const SbVec3f& corner : corners(SbVec3f(10, 20, 5), SbVec3f(2, 1, 1))) {
            const SbVec3f s = toScreen(*_interactor, corner);
            QVERIFY2(s[0] >= 0.0f && s[0] <= 1.0f && s[1] >= 0.0f && s[1] <= 1.0f && s[2] >= 0.0f && s[2] <= 1.0f,
                qPrintable(text(s)));
            for (int i = 0; i < 2; ++i) {
                lowest[i] = std::min(lowest[i], s[i]);
                highest[i] = std::max(highest[i], s[i]);
            }
        }
        // Framed, not lost in the distance.
        QVERIFY2(std::max(highest[0] - lowest[0], highest[1] - lowest[1]) > 0.3f, qPrintable(text(highest - lowest)));
        QVERIFY(close(_interactor->getCameraInteractor()->getRotationCenter(), SbVec3f(10, 20, 5)));
    }

    void projectionSwitchKeepsHeight()
    {
        _interactor->viewFromNorth();
        _interactor->getCameraInteractor()->dolly(0.7f);
        // A point on the focal plane near the top edge: where it shows tells the visible height.
        const SbVec3f edge(10.0f, 20.0f, 5.0f + 1.2f);
        const SbVec3f perspective = toScreen(*_interactor, edge);
        const SbVec3f position = _interactor->getCamera()->position.getValue();
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);

        _interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
        QVERIFY(_interactor->getCamera()->isOfType(SoOrthographicCamera::getClassTypeId()));
        const SbVec3f ortho = toScreen(*_interactor, edge);
        QVERIFY2(std::fabs(ortho[1] - perspective[1]) < 1e-4f, qPrintable(text(ortho) + text(perspective)));
        QVERIFY(close(_interactor->getCamera()->position.getValue(), position));
        QCOMPARE(_interactor->getCameraState().orthographic, true);

        _interactor->getCameraInteractor()->dolly(1.3f);
        const SbVec3f orthoAfterDolly = toScreen(*_interactor, edge);
        _interactor->setProjectionType(Vg3SceneInteractor::PERSPECTIVE);
        QVERIFY(_interactor->getCamera()->isOfType(SoPerspectiveCamera::getClassTypeId()));
        QVERIFY(std::fabs(toScreen(*_interactor, edge)[1] - orthoAfterDolly[1]) < 1e-4f);
        QCOMPARE(changed.count(), 2);
    }

    void sceneHandlersComeFirst_data()
    {
        QTest::addColumn<bool>("handleKeys");
        QTest::addColumn<bool>("handleMouse");

        QTest::newRow("key handler") << true << false;
        QTest::newRow("mouse handler") << false << true;
        QTest::newRow("no handler") << false << false;
    }

    void sceneHandlersComeFirst()
    {
        QFETCH(bool, handleKeys);
        QFETCH(bool, handleMouse);

        SoEventCallback* callback = new SoEventCallback;
        if (handleKeys)
            callback->addEventCallback(SoKeyboardEvent::getClassTypeId(), keyHandled);
        if (handleMouse) {
            callback->addEventCallback(SoMouseButtonEvent::getClassTypeId(), keyHandled);
            callback->addEventCallback(SoLocation2Event::getClassTypeId(), keyHandled);
        }
        _scene->insertChild(callback, 0);
        const Vug::CameraState before = _interactor->getCameraState();

        SoKeyboardEvent key;
        key.setKey(SoKeyboardEvent::T);
        key.setState(SoButtonEvent::DOWN);
        QCOMPARE(_interactor->processEvent(&key), handleKeys);

        QVERIFY(press(*_interactor, SoMouseButtonEvent::BUTTON1, 200, 150));
        QVERIFY(move(*_interactor, 300, 100));
        release(*_interactor, SoMouseButtonEvent::BUTTON1, 300, 100);
        QCOMPARE(_interactor->getCameraState() == before, handleMouse);
    }

    void cameraStateRoundTrip()
    {
        _interactor->viewFromWest();
        _interactor->getCameraInteractor()->dolly(0.8f);
        const Vug::CameraState saved = _interactor->getCameraState();
        Vug::CameraState restored;
        QVERIFY(Vug::CameraState::fromString(saved.toString(), restored));

        _interactor->viewFromTop();
        _interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);
        _interactor->setCameraState(restored);
        QCOMPARE(_interactor->getProjectionType(), Vg3SceneInteractor::PERSPECTIVE);
        const Vug::CameraState back = _interactor->getCameraState();
        for (int i = 0; i < 3; ++i)
            QVERIFY(std::fabs(back.position[i] - saved.position[i]) < 1e-4);
        QVERIFY(close(direction(_interactor->getCamera(), SbVec3f(0, 0, -1)), SbVec3f(1, 0, 0), 1e-5f));
        QVERIFY(changed.count() >= 1);

        // A broken state changes nothing.
        Vug::CameraState broken = back;
        broken.focalDistance = -1.0;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::setCameraState: .*"));
        _interactor->setCameraState(broken);
        QVERIFY(_interactor->getCameraState() == back);
    }

    void clippingPlanesEncloseScene_data()
    {
        QTest::addColumn<bool>("orthographic");
        QTest::addColumn<SbVec3f>("position");

        QTest::newRow("perspective, outside") << false << SbVec3f(10, 20, 60);
        QTest::newRow("perspective, inside the box") << false << SbVec3f(10.5f, 20, 5);
        QTest::newRow("perspective, far away") << false << SbVec3f(10, 20, 5e4f);
        QTest::newRow("orthographic, inside the box") << true << SbVec3f(10.5f, 20, 5);
    }

    void clippingPlanesEncloseScene()
    {
        QFETCH(bool, orthographic);
        QFETCH(SbVec3f, position);

        if (orthographic)
            _interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC);
        _interactor->viewFromTop();
        SoCamera* camera = _interactor->getCamera();
        camera->position.setValue(position);
        _interactor->updateCameraClippingPlanes();

        const float nearDistance = camera->nearDistance.getValue();
        const float farDistance = camera->farDistance.getValue();
        if (!orthographic)
            QVERIFY(nearDistance > 0.0f);
        QVERIFY(farDistance > nearDistance);
        // Every corner in front of the camera lies between the planes.
        float deepest = 0.0f;
        for (const SbVec3f& corner : corners(SbVec3f(10, 20, 5), SbVec3f(2, 1, 1))) {
            const float depth = position[2] - corner[2];
            deepest = std::max(deepest, depth);
            if (depth > 0.0f || orthographic)
                QVERIFY2(depth <= farDistance && (depth >= nearDistance || (!orthographic && depth > 0.0f && depth < 1.5f && nearDistance < depth)),
                    qPrintable(QString("depth %1 near %2 far %3").arg(depth).arg(nearDistance).arg(farDistance)));
        }
        // Not wasting depth precision behind the box.
        QVERIFY(farDistance < deepest * 1.05f + 0.1f);
    }

    void seek()
    {
        _interactor->viewFromTop();
        SoCamera* camera = _interactor->getCamera();
        // A pixel over the box but off its centre.
        const SbVec3f onTop(11.0f, 20.5f, 6.0f);
        const SbVec3f s = toScreen(*_interactor, onTop);
        const SbVec2i32 pixel(int(s[0] * kWidth), int(s[1] * kHeight));
        const float before = (camera->position.getValue() - onTop).length();

        _interactor->setInteractionMode(Vg3SceneInteractor::SEEKING);
        QSignalSpy changed(_interactor, &Vg3SceneInteractor::cameraChanged);
        QVERIFY(press(*_interactor, SoMouseButtonEvent::BUTTON1, pixel[0], pixel[1]));

        const SbVec3f centre = _interactor->getCameraInteractor()->getRotationCenter();
        QVERIFY2(std::fabs(centre[2] - 6.0f) < 1e-3f && (centre - onTop).length() < 0.1f, qPrintable(text(centre)));
        const float after = (camera->position.getValue() - centre).length();
        QVERIFY(std::fabs(after - 0.5f * before) < 0.05f * before);
        const SbVec3f shown = toScreen(*_interactor, centre);
        QVERIFY(std::fabs(shown[0] - 0.5f) < 1e-3f && std::fabs(shown[1] - 0.5f) < 1e-3f);
        QCOMPARE(changed.count(), 1);

        // Empty space: nothing moves.
        _interactor->viewFromTop();
        const Vug::CameraState state = _interactor->getCameraState();
        QVERIFY(!_interactor->seekToPoint(SbVec2i32(2, 2)));
        QVERIFY(_interactor->getCameraState() == state);
        QVERIFY(_interactor->pick(SbVec2i32(kWidth / 2, kHeight / 2)) != nullptr);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::pick: .*"));
        QVERIFY(_interactor->pick(SbVec2i32(-5, kHeight * 3)) == nullptr);
    }

    void idleCursorFollowsMode_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<Qt::CursorShape>("shape");

        QTest::newRow("picking") << int(Vg3SceneInteractor::PICKING) << Qt::PointingHandCursor;
        QTest::newRow("seeking") << int(Vg3SceneInteractor::SEEKING) << Qt::CrossCursor;
        QTest::newRow("ruler") << int(Vg3SceneInteractor::RULER) << Qt::CrossCursor;
    }

    void idleCursorFollowsMode()
    {
        QFETCH(int, mode);
        QFETCH(Qt::CursorShape, shape);

        QSignalSpy cursor(_interactor, &Vg3SceneInteractor::cursorChangeRequested);
        QSignalSpy modes(_interactor, &Vg3SceneInteractor::interactionModeChanged);
        _interactor->setInteractionMode(Vg3SceneInteractor::InteractionMode(mode));
        QCOMPARE(cursor.count(), 1);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), shape);
        QCOMPARE(modes.count(), 1);
        // A right drag pans in any mode and comes back to the mode's cursor.
        QVERIFY(press(*_interactor, SoMouseButtonEvent::BUTTON3, 10, 10));
        QVERIFY(release(*_interactor, SoMouseButtonEvent::BUTTON3, 10, 10));
        QCOMPARE(cursor.last().at(0).value<Qt::CursorShape>(), shape);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::setInteractionMode: .*"));
        _interactor->setInteractionMode(Vg3SceneInteractor::InteractionMode(17));
        QCOMPARE(int(_interactor->getInteractionMode()), mode);
    }

private:
    // A 4 x 2 x 2 box centred at (10, 20, 5), under an SoSeparator the tests can add to.
    SoSeparator* _scene = nullptr;
    Vg3SceneInteractor* _interactor = nullptr;
    QTemporaryDir _dir;
};

QTEST_MAIN(TstVg3SceneInteractor)
#include "tst_vg3sceneinteractor.moc"
