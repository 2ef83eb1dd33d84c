// The scene interactor driven by Inventor events as a render area sends them: wheel dolly,
// orbit and pan drags with their cursors, scene handlers that come first, framing,
// projection switches, clipping planes, seek and picking, saved camera states
// and their text.

#include "InventorScenes.h"
#include <SoCameraInteractor.h>
#include <SoMouseWheelEvent.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <VupPreferenceRegistry.h>
#include <VupPreferences3DViews.h>

#include <Inventor/SbBox3f.h>
#include <Inventor/SbLine.h>
#include <Inventor/SbPlane.h>
#include <Inventor/SbViewVolume.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <limits>

Q_DECLARE_METATYPE(Qt::CursorShape) Q_DECLARE_METATYPE(SbVec3f)

using Interactor = Vg3SceneInteractor;
using InventorScenes::text;
using InventorScenes::turned;

namespace {

const short kWidth = 400;
const short kHeight = 300;
// The box of every case: 4 x 2 x 2, centred here.
const SbVec3f kCentre(10.0f, 20.0f, 5.0f);

enum Modifier { NO_MODIFIER, CTRL, SHIFT };
const auto B1 = SoMouseButtonEvent::BUTTON1;
const auto B2 = SoMouseButtonEvent::BUTTON2;
const auto B3 = SoMouseButtonEvent::BUTTON3;

bool close(const SbVec3f& a, const SbVec3f& b, float tolerance = 1e-3f)
{
    return (a - b).length() < tolerance;
}

// The box's eight corners.
QVector<SbVec3f> corners()
{
    QVector<SbVec3f> result;
    for (int i = 0; i < 8; ++i) result << kCentre + SbVec3f(i & 1 ? 2 : -2, i & 2 ? 1 : -1, i & 4 ? 1 : -1);
    return result;
}

void handled(void*, SoEventCallback* callback)
{
    callback->setHandled();
}

} // namespace

class TstVg3SceneInteractor : public QObject
{
    Q_OBJECT

    QTemporaryDir _dir;
    SoRef<SoSeparator> _scene;
    std::unique_ptr<Interactor> _s;

    bool send(SoEvent& event, int x, int y, int modifier)
    {
        event.setPosition(SbVec2s(short(x), short(y)));
        event.setCtrlDown(modifier == CTRL);
        event.setShiftDown(modifier == SHIFT);
        return _s->processEvent(&event);
    }
    bool press(SoMouseButtonEvent::Button button, int x, int y, int modifier = NO_MODIFIER,
               SoButtonEvent::State state = SoButtonEvent::DOWN)
    {
        SoMouseButtonEvent event;
        event.setButton(button);
        event.setState(state);
        return send(event, x, y, modifier);
    }
    bool release(SoMouseButtonEvent::Button button, int x, int y, int modifier = NO_MODIFIER)
    {
        return press(button, x, y, modifier, SoButtonEvent::UP);
    }
    bool move(int x, int y, int modifier = NO_MODIFIER)
    {
        SoLocation2Event event;
        return send(event, x, y, modifier);
    }
    SbVec3f toScreen(const SbVec3f& world)
    {
        SbVec3f screen;
        SoCameraInteractor::getViewVolume(_s->getCamera(), _s->getViewportRegion()).projectToScreen(world, screen);
        return screen;
    }
    // The box centre in the middle of the view, every corner inside it, and the box not lost
    // in the distance.
    void checkFramed()
    {
        const SbVec3f centre = toScreen(kCentre);
        QVERIFY2(std::fabs(centre[0] - 0.5f) < 1e-4f && std::fabs(centre[1] - 0.5f) < 1e-4f, qPrintable(text(centre)));
        SbBox3f seen;
        for (const SbVec3f& corner : corners()) {
            const SbVec3f s = toScreen(corner);
            QVERIFY2(s[0] > 0.0f && s[0] < 1.0f && s[1] > 0.0f && s[1] < 1.0f && s[2] >= 0.0f && s[2] <= 1.0f,
                     qPrintable(text(s)));
            seen.extendBy(s);
        }
        QVERIFY2(std::max(seen.getMax()[0] - seen.getMin()[0], seen.getMax()[1] - seen.getMin()[1]) > 0.3f,
                 qPrintable(text(seen.getMax() - seen.getMin())));
    }

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
        _scene = SoRef(
            InventorScenes::separator({InventorScenes::flatBox(kCentre, SbVec3f(4, 2, 2), SbColor(1, 1, 1))}));
        _s = std::make_unique<Interactor>();
        _s->setViewportRegion(SbViewportRegion(kWidth, kHeight));
        _s->setSceneGraph(_scene.get());
        _s->viewAll();
    }

    void cleanup()
    {
        _s.reset();
        _scene.reset();
    }

    // The wheel dollies about the point of the focal plane under the cursor, which stays
    // there; an orthographic camera's height follows.
    void wheelDollies_data()
    {
        QTest::addColumn<QVector<int>>("deltas");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<bool>("inverted");
        QTest::addColumn<bool>("orthographic");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<double>("expectedRatio");
        const double step = std::pow(2.0, M_PI / 180.0);
        const QPoint centre(kWidth / 2, kHeight / 2);
        const auto row = [&](const char* name, QVector<int> deltas, double ratio, QPoint at, int modifier = NO_MODIFIER,
                             bool inverted = false, bool orthographic = false) {
            QTest::newRow(name) << deltas << modifier << inverted << orthographic << at << ratio;
        };
        row("one notch forward comes closer", {120}, 1.0 / step, centre);
        row("one notch back, upper right", {-120}, step, QPoint(320, 270));
        row("two notches, lower left", {240}, 1.0 / (step * step), QPoint(40, 75));
        row("orthographic, upper right", {120}, 1.0 / step, QPoint(320, 270), NO_MODIFIER, false, true);
        row("orthographic back, lower left", {-120}, step, QPoint(40, 75), NO_MODIFIER, false, true);
        row("inverted preference goes away", {120}, step, centre, NO_MODIFIER, true);
        row("half a notch does nothing", {60}, 1.0, centre);
        row("half a notch back does nothing", {-60}, 1.0, centre, NO_MODIFIER, true);
        row("trackpad thirds add up to a notch", {40, 40, 40}, 1.0 / step, centre);
        row("a turn back drops what was gathered", {60, -60, 60}, 1.0, centre);
        row("Ctrl makes a notch ten", {120}, std::pow(step, -10.0), centre, CTRL);
        row("a flood stops at a hundred notches", {12000000}, std::pow(step, -100.0), centre);
    }
    void wheelDollies()
    {
        QFETCH(QVector<int>, deltas);
        QFETCH(int, modifier);
        QFETCH(bool, inverted);
        QFETCH(bool, orthographic);
        QFETCH(QPoint, at);
        QFETCH(double, expectedRatio);
        VupPreferences3DViews::setValue("mouseWheelZoomDirection", inverted);
        if (orthographic) _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        SoCamera* camera = _s->getCamera();
        // The focal distance, and the height of an orthographic camera.
        const auto size = [camera, orthographic] {
            const float distance = camera->focalDistance.getValue();
            return SbVec2f(distance, orthographic ? static_cast<SoOrthographicCamera*>(camera)->height.getValue() : distance);
        };
        const SbVec2f before = size();
        SoMouseWheelEvent wheel;
        wheel.setPosition(SbVec2s(short(at.x()), short(at.y())));
        const SbVec2f cursor = wheel.getNormalizedPosition(_s->getViewportRegion());
        SbLine ray;
        SoCameraInteractor::getViewVolume(camera, _s->getViewportRegion()).projectPointToLine(cursor, ray);
        SbVec3f grabbed;
        QVERIFY(SbPlane(turned(camera, SbVec3f(0, 0, 1)), _s->getCameraInteractor()->getFocalPoint()).intersect(ray, grabbed));
        QSignalSpy changed(_s.get(), &Interactor::cameraChanged);

        bool used = false;
        for (int delta : deltas) {
            wheel.setDelta(delta);
            used = send(wheel, at.x(), at.y(), modifier);
        }
        for (int k = 0; k < 2; ++k)
            QVERIFY2(std::fabs(size()[k] / before[k] - expectedRatio) < 1e-5, qPrintable(QString::number(size()[k] / before[k])));
        const SbVec3f seen = toScreen(grabbed);
        QVERIFY2(std::fabs(seen[0] - cursor[0]) < 1e-4f && std::fabs(seen[1] - cursor[1]) < 1e-4f, qPrintable(text(seen)));
        QCOMPARE(used, expectedRatio != 1.0);
        QCOMPARE(changed.count(), expectedRatio != 1.0 ? 1 : 0);
    }

    // Dolly factors a caller computed wrongly change nothing.
    void dollyRefusesBadFactors_data()
    {
        QTest::addColumn<float>("factor");
        QTest::newRow("zero") << 0.0f;
        QTest::newRow("negative") << -2.0f;
        QTest::newRow("not a number") << std::numeric_limits<float>::quiet_NaN();
    }
    void dollyRefusesBadFactors()
    {
        QFETCH(float, factor);
        const Vug::CameraState before = _s->getCameraState();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("SoCameraInteractor::dolly: .*"));
        _s->getCameraInteractor()->dolly(factor);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("SoCameraInteractor::dollyWithZoomCenter: .*"));
        _s->getCameraInteractor()->dollyWithZoomCenter(SbVec2f(0.2f, 0.7f), factor, _s->getViewportRegion());
        QVERIFY(_s->getCameraState() == before);
    }

    // A left drag orbits about the focal point at a constant distance, with the closed hand
    // while it lasts, but only in viewing mode and when no handler of the scene takes the
    // mouse first.
    void leftDragOrbits_data()
    {
        QTest::addColumn<int>("cameraMode");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("handleMouse");
        QTest::addColumn<QPoint>("drag");
        QTest::addColumn<bool>("orbits");
        const int examiner = Interactor::EXAMINER, orbiter = Interactor::ORBITER, viewing = Interactor::VIEWING;
        QTest::newRow("examiner, sideways") << examiner << viewing << false << QPoint(80, 0) << true;
        QTest::newRow("examiner, diagonal") << examiner << viewing << false << QPoint(60, -50) << true;
        QTest::newRow("orbiter, sideways") << orbiter << viewing << false << QPoint(80, 0) << true;
        QTest::newRow("orbiter, diagonal") << orbiter << viewing << false << QPoint(-60, -40) << true;
        QTest::newRow("picking") << examiner << int(Interactor::PICKING) << false << QPoint(100, -50) << false;
        QTest::newRow("ruler") << examiner << int(Interactor::RULER) << false << QPoint(100, -50) << false;
        QTest::newRow("scene handles the mouse") << examiner << viewing << true << QPoint(100, -50) << false;
    }
    void leftDragOrbits()
    {
        QFETCH(int, cameraMode);
        QFETCH(int, mode);
        QFETCH(bool, handleMouse);
        QFETCH(QPoint, drag);
        QFETCH(bool, orbits);
        if (handleMouse) {
            auto callback = new SoEventCallback;
            callback->addEventCallback(SoMouseButtonEvent::getClassTypeId(), handled);
            callback->addEventCallback(SoLocation2Event::getClassTypeId(), handled);
            _scene->insertChild(callback, 0);
        }
        _s->setCameraMode(Interactor::CameraMode(cameraMode));
        _s->setInteractionMode(Interactor::InteractionMode(mode));
        _s->viewFromSouth();
        SoCamera* camera = _s->getCamera();
        const float distance = (camera->position.getValue() - kCentre).length();
        const Vug::CameraState before = _s->getCameraState();
        QSignalSpy changed(_s.get(), &Interactor::cameraChanged);
        QSignalSpy cursor(_s.get(), &Interactor::cursorChangeRequested);

        const int x = kWidth / 2, y = kHeight / 2;
        QCOMPARE(press(B1, x, y), orbits || handleMouse);
        QCOMPARE(move(x + drag.x() / 2, y + drag.y() / 2), orbits || handleMouse);
        move(x + drag.x(), y + drag.y());
        release(B1, x + drag.x(), y + drag.y());
        // Moving without a button afterwards is not navigation.
        QCOMPARE(move(x, y), handleMouse);
        QCOMPARE(_s->getCameraState() == before, !orbits);
        if (!orbits) return;

        // Seen from the south, dragging right swings the camera west (the near side of the
        // scene turns right) and, in examiner mode, dragging down raises it.
        const SbVec3f offset = camera->position.getValue() - kCentre;
        const bool tilts = cameraMode == Interactor::EXAMINER && drag.y() != 0;
        QVERIFY2(offset[0] * drag.x() < 0.0f && (!tilts || offset[2] * drag.y() < 0.0f), qPrintable(text(offset)));
        QVERIFY(std::fabs(offset.length() - distance) < 1e-3f * distance);
        const SbVec3f focal = _s->getCameraInteractor()->getFocalPoint();
        QVERIFY2(close(focal, kCentre, 1e-3f * distance), qPrintable(text(focal)));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(cursor.count(), 2);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), Qt::ClosedHandCursor);
        QCOMPARE(cursor.at(1).at(0).value<Qt::CursorShape>(), Qt::ArrowCursor);
        if (cameraMode == Interactor::ORBITER) {
            // The horizon stays level and z stays up.
            QVERIFY(std::fabs(turned(camera, SbVec3f(1, 0, 0))[2]) < 1e-4f);
            QVERIFY(turned(camera, SbVec3f(0, 1, 0))[2] > 0.0f);
        }
    }

    void panDragsPointUnderCursor_data()
    {
        QTest::addColumn<int>("cameraMode");
        QTest::addColumn<int>("button");
        QTest::addColumn<int>("modifier");
        QTest::addColumn<bool>("orthographic");
        const int examiner = Interactor::EXAMINER;
        QTest::newRow("right button") << examiner << int(B3) << int(NO_MODIFIER) << false;
        QTest::newRow("middle button") << examiner << int(B2) << int(NO_MODIFIER) << false;
        QTest::newRow("ctrl + left") << examiner << int(B1) << int(CTRL) << false;
        QTest::newRow("shift + left, orbiter") << int(Interactor::ORBITER) << int(B1) << int(SHIFT) << false;
        QTest::newRow("left in plane mode") << int(Interactor::PLANE) << int(B1) << int(NO_MODIFIER) << false;
        QTest::newRow("right button, orthographic") << examiner << int(B3) << int(NO_MODIFIER) << true;
    }
    void panDragsPointUnderCursor()
    {
        QFETCH(int, cameraMode);
        QFETCH(int, button);
        QFETCH(int, modifier);
        QFETCH(bool, orthographic);
        _s->setCameraMode(Interactor::CameraMode(cameraMode));
        if (orthographic) _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        _s->viewFromEast();
        SoCamera* camera = _s->getCamera();
        const SbRotation before = camera->orientation.getValue();
        // The box centre is at the focal point, in the middle of the view.
        QVERIFY(close(toScreen(kCentre), SbVec3f(0.5f, 0.5f, toScreen(kCentre)[2])));
        QSignalSpy cursor(_s.get(), &Interactor::cursorChangeRequested);

        const auto b = SoMouseButtonEvent::Button(button);
        const int x = kWidth / 2 + 100, y = kHeight / 2 - 60;
        QVERIFY(press(b, kWidth / 2, kHeight / 2, modifier));
        QVERIFY(move(kWidth / 2 + 30, kHeight / 2 + 10, modifier));
        QVERIFY(move(x, y, modifier));
        QVERIFY(release(b, x, y, modifier));

        QVERIFY(camera->orientation.getValue().equals(before, 1e-6f));
        const SbVec3f seen = toScreen(kCentre);
        QVERIFY2(std::fabs(seen[0] - float(x) / kWidth) < 2e-3f && std::fabs(seen[1] - float(y) / kHeight) < 2e-3f,
                 qPrintable(text(seen)));
        // The renderer's own picking under the cursor finds the box on the line of sight
        // through the grabbed point.
        const SoPickedPoint* picked = _s->pick(SbVec2i32(x, y), 0);
        QVERIFY(picked);
        const SbVec3f hit = picked->getPoint();
        const SbVec3f sight = orthographic ? turned(camera, SbVec3f(0, 0, -1)) : kCentre - camera->position.getValue();
        const SbVec3f onSight = SbLine(kCentre, kCentre + sight).getClosestPoint(hit);
        QVERIFY2(std::fabs(hit[0] - 12.0f) < 1e-3f && close(hit, onSight, 0.02f), qPrintable(text(hit)));
        QCOMPARE(cursor.count(), 2);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), Qt::SizeAllCursor);
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
        _s->setViewportRegion(SbViewportRegion(short(width), short(height)));
        if (orthographic) _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        _s->getCameraInteractor()->setOrientation(SbRotation(SbVec3f(1.0f, 0.5f, 0.2f), 0.9f));
        _s->getCamera()->position.setValue(500.0f, -300.0f, 80.0f);
        _s->viewAll();
        checkFramed();
        QVERIFY(close(_s->getCameraInteractor()->getRotationCenter(), kCentre));
    }

    void projectionSwitchKeepsHeight()
    {
        _s->viewFromNorth();
        _s->getCameraInteractor()->dolly(0.7f);
        // A point on the focal plane near the top edge: where it shows tells the visible height.
        const SbVec3f edge = kCentre + SbVec3f(0, 0, 1.2f);
        const SbVec3f perspective = toScreen(edge);
        const SbVec3f position = _s->getCamera()->position.getValue();
        QSignalSpy changed(_s.get(), &Interactor::cameraChanged);

        _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        QVERIFY(_s->getCamera()->isOfType(SoOrthographicCamera::getClassTypeId()));
        const SbVec3f ortho = toScreen(edge);
        QVERIFY2(std::fabs(ortho[1] - perspective[1]) < 1e-4f, qPrintable(text(ortho) + text(perspective)));
        QVERIFY(close(_s->getCamera()->position.getValue(), position));
        QCOMPARE(_s->getCameraState().orthographic, true);

        _s->getCameraInteractor()->dolly(1.3f);
        const SbVec3f orthoAfterDolly = toScreen(edge);
        _s->setProjectionType(Interactor::PERSPECTIVE);
        QVERIFY(_s->getCamera()->isOfType(SoPerspectiveCamera::getClassTypeId()));
        QVERIFY(std::fabs(toScreen(edge)[1] - orthoAfterDolly[1]) < 1e-4f);
        QCOMPARE(changed.count(), 2);
    }

    void cameraStateComesBack()
    {
        _s->viewFromWest();
        _s->getCameraInteractor()->dolly(0.8f);
        const Vug::CameraState saved = _s->getCameraState();
        _s->viewFromTop();
        _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        QSignalSpy changed(_s.get(), &Interactor::cameraChanged);
        _s->setCameraState(saved);
        QCOMPARE(_s->getProjectionType(), Interactor::PERSPECTIVE);
        const Vug::CameraState back = _s->getCameraState();
        for (int i = 0; i < 3; ++i) QVERIFY(std::fabs(back.position[i] - saved.position[i]) < 1e-4);
        QVERIFY(close(turned(_s->getCamera(), SbVec3f(0, 0, -1)), SbVec3f(1, 0, 0), 1e-5f));
        QVERIFY(changed.count() >= 1);

        // A broken state changes nothing.
        Vug::CameraState broken = back;
        broken.focalDistance = -1.0;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::setCameraState: .*"));
        _s->setCameraState(broken);
        QVERIFY(_s->getCameraState() == back);
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
        if (orthographic) _s->setProjectionType(Interactor::ORTHOGRAPHIC);
        _s->viewFromTop();
        SoCamera* camera = _s->getCamera();
        camera->position.setValue(position);
        _s->updateCameraClippingPlanes();

        const float nearDistance = camera->nearDistance.getValue();
        const float farDistance = camera->farDistance.getValue();
        QVERIFY(orthographic || nearDistance > 0.0f);
        QVERIFY(farDistance > nearDistance);
        // Every corner in front of the camera lies between the planes.
        float deepest = 0.0f;
        for (const SbVec3f& corner : corners()) {
            const float depth = position[2] - corner[2];
            deepest = std::max(deepest, depth);
            if (depth > 0.0f || orthographic) QVERIFY2(depth <= farDistance
                             && (depth >= nearDistance || (!orthographic && depth < 1.5f && nearDistance < depth)),
                         qPrintable(QString("depth %1 near %2 far %3").arg(depth).arg(nearDistance).arg(farDistance)));
        }
        // Not wasting depth precision behind the box.
        QVERIFY(farDistance < deepest * 1.05f + 0.1f);
    }

    void seek()
    {
        _s->viewFromTop();
        SoCamera* camera = _s->getCamera();
        // A pixel over the box but off its centre.
        const SbVec3f onTop(11.0f, 20.5f, 6.0f);
        const SbVec3f s = toScreen(onTop);
        const float before = (camera->position.getValue() - onTop).length();
        _s->setInteractionMode(Interactor::SEEKING);
        QSignalSpy changed(_s.get(), &Interactor::cameraChanged);
        QVERIFY(press(B1, int(s[0] * kWidth), int(s[1] * kHeight)));

        const SbVec3f centre = _s->getCameraInteractor()->getRotationCenter();
        QVERIFY2(std::fabs(centre[2] - 6.0f) < 1e-3f && (centre - onTop).length() < 0.1f, qPrintable(text(centre)));
        QVERIFY(std::fabs((camera->position.getValue() - centre).length() - 0.5f * before) < 0.05f * before);
        const SbVec3f shown = toScreen(centre);
        QVERIFY(std::fabs(shown[0] - 0.5f) < 1e-3f && std::fabs(shown[1] - 0.5f) < 1e-3f);
        QCOMPARE(changed.count(), 1);

        // Empty space: nothing moves.
        _s->viewFromTop();
        const Vug::CameraState state = _s->getCameraState();
        QVERIFY(!_s->seekToPoint(SbVec2i32(2, 2)));
        QVERIFY(_s->getCameraState() == state);
        QVERIFY(_s->pick(SbVec2i32(kWidth / 2, kHeight / 2)) != nullptr);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::pick: .*"));
        QVERIFY(_s->pick(SbVec2i32(-5, kHeight * 3)) == nullptr);
    }

    void idleCursorFollowsMode_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<Qt::CursorShape>("shape");
        QTest::newRow("picking") << int(Interactor::PICKING) << Qt::PointingHandCursor;
        QTest::newRow("seeking") << int(Interactor::SEEKING) << Qt::CrossCursor;
        QTest::newRow("ruler") << int(Interactor::RULER) << Qt::CrossCursor;
    }
    void idleCursorFollowsMode()
    {
        QFETCH(int, mode);
        QFETCH(Qt::CursorShape, shape);
        QSignalSpy cursor(_s.get(), &Interactor::cursorChangeRequested);
        QSignalSpy modes(_s.get(), &Interactor::interactionModeChanged);
        _s->setInteractionMode(Interactor::InteractionMode(mode));
        QCOMPARE(cursor.count(), 1);
        QCOMPARE(cursor.at(0).at(0).value<Qt::CursorShape>(), shape);
        QCOMPARE(modes.count(), 1);
        // A right drag pans in any mode and comes back to the mode's cursor.
        QVERIFY(press(B3, 10, 10));
        QVERIFY(release(B3, 10, 10));
        QCOMPARE(cursor.last().at(0).value<Qt::CursorShape>(), shape);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vg3SceneInteractor::setInteractionMode: .*"));
        _s->setInteractionMode(Interactor::InteractionMode(17));
        QCOMPARE(int(_s->getInteractionMode()), mode);
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

QTEST_MAIN(TstVg3SceneInteractor)
#include "tst_vg3sceneinteractor.moc"
