// The 3D view as a user and its owner meet it: its scene graph, nodes shown and hidden,
// single-key shortcuts for the camera, clip plane, modes and full screen, activation among
// views, image and file export, the render-format check, and its actions and menu.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <KbbGlobal.h>
#include <KbgClipPlaneDefinition.h>
#include <KbbStringFormat.h>
#include <KbdVariable.h>
#include <KbuUnit.h>
#include <Vg3ANode.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <VgpIPickHandler.h>
#include <VugColorScale.h>
#include <Vw3AView.h>
#include <Vw3ExaminerView.h>
#include <Vw3OivViewer.h>
#include <Vw3RenderAreaQWindow.h>

#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSwitch.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeySequence>
#include <QMenu>
#include <QSignalSpy>
#include <QSurfaceFormat>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

Q_DECLARE_METATYPE(QSurfaceFormat) Q_DECLARE_METATYPE(Vg3ANode*)
using Check = std::function<void(Vw3AView&, int)>;
Q_DECLARE_METATYPE(Check)

namespace {

using namespace InventorScenes;

// A cube of one flat colour (no lighting), so that pixels can be compared.
class CubeNode : public Vg3ANode
{
public:
    CubeNode(const QString& name, const SbVec3f& center, float size, const QColor& color) : Vg3ANode(name)
        , _cube(hold(separator({unlit(), flatBox(center, SbVec3f(size, size, size), sb(color))})))
    {
        rebuild();
    }

protected:
    void _build(SoSeparator* parent) override { parent->addChild(_cube.get()); }

private:
    Held<SoSeparator> _cube;
};

QString text(const SbVec3f& v)
{
    return QStringLiteral("%1 %2 %3").arg(v[0]).arg(v[1]).arg(v[2]);
}

SbVec3f viewDirection(const Vw3AView& view)
{
    SbVec3f direction;
    view.getSceneInteractor()->getCamera()->orientation.getValue().multVec(SbVec3f(0, 0, -1), direction);
    return direction;
}

SbVec3f focalPoint(const Vw3AView& view)
{
    SoCamera* camera = view.getSceneInteractor()->getCamera();
    SbVec3f direction;
    camera->orientation.getValue().multVec(SbVec3f(0, 0, -1), direction);
    return camera->position.getValue() + direction * camera->focalDistance.getValue();
}

// Opens the protected context-menu filling to the test.
class MenuView : public Vw3ExaminerView
{
public:
    void fill(QMenu* menu) { _fillContextMenu(menu); }
};

} // namespace

namespace {

// A picker that takes left presses and the Escape key, and counts what reaches it.
class RecordingPicker : public VgpIPickHandler
{
public:
    int presses = 0;
    int moves = 0;
    int keys = 0;
    bool mousePressed(const SoMouseButtonEvent* event, SoHandleEventAction*) override
    {
        ++presses;
        return event->getButton() == SoMouseButtonEvent::BUTTON1;
    }
    bool mouseMoved(const SoLocation2Event*, SoHandleEventAction*) override
    {
        ++moves;
        return true;
    }
    bool mouseReleased(const SoMouseButtonEvent*, SoHandleEventAction*) override { return true; }
    bool keyPressed(const SoKeyboardEvent* event, SoHandleEventAction*) override
    {
        ++keys;
        return event->getKey() == SoKeyboardEvent::ESCAPE;
    }
    bool keyReleased(const SoKeyboardEvent*, SoHandleEventAction*) override { return false; }
    QString getHelpTitle() const override { return QStringLiteral("Picker"); }
    QString getHelpText() const override { return QStringLiteral("Pick a point."); }
};

// The help of the picker on top, as drawn.
QStringList shownTexts(Vw3AView& view)
{
    SoSearchAction search;
    search.setName(SbName("pick_handler_help"));
    search.apply(view.getRoot());
    return search.getPath() ? texts(search.getPath()->getTail()) : QStringList();
}

} // namespace

class TestVw3AView : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Vw3ExaminerView> makeView()
    {
        std::unique_ptr<Vw3ExaminerView> view(new Vw3ExaminerView);
        view->resize(240, 200);
        return view;
    }
    static bool showAndWait(Vw3AView& view) { return InventorScenes::showAndWait(view, view.getViewer()->getRenderArea()); }

private Q_SLOTS:
    void initTestCase()
    {
        Vg3OpenInventor::getInstance()->init();
        qRegisterMetaType<Vg3ANode*>();
    }
    void sceneGraphNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("parent");
        QTest::addColumn<int>("index");

        const auto row = [](const char* name, const char* parent, int index) {
            QTest::newRow(name) << QByteArray(name) << QByteArray(parent) << index;
        };
        // -2: anywhere under the parent.
        row("vw3aview_shortcuts", "vw3aview_root", 0);
        row("vw3aview_inventor_slots", "vw3aview_root", 1);
        row("vw3aview_bbox_caching", "vw3aview_root", 3); // after the legend
        row("vw3aview_traversable_callback", "vw3aview_bbox_caching", 0);
        row("vw3aview_scene_root", "vw3aview_bbox_caching", 1);
        row("vw3aview_tools_root", "vw3aview_root", -2);
        row("vw3aview_root", "vw3_oiv_viewer_root", -2);
        row("notification_message_switch", "vw3_oiv_viewer_root", -2);
        row("notification_message_sep", "notification_message_switch", 0);
    }

    void sceneGraphNames()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, parent);
        QFETCH(int, index);
        auto view = makeView();
        SoNode* viewerRoot = view->getViewer()->getRoot();
        QCOMPARE(viewerRoot->getName().getString(), "vw3_oiv_viewer_root");
        SoNode* node = find(viewerRoot, name);
        QVERIFY2(node, name.constData());
        auto group = find<SoGroup>(viewerRoot, parent);
        QVERIFY2(group, parent.constData());
        const int found = group->findChild(node);
        QVERIFY(found >= 0);
        if (index >= 0) QCOMPARE(found, index);

        // The seek target always closes the view's root; the event callback listens to keys.
        SoSeparator* root = view->getRoot();
        QCOMPARE(root->getNumChildren() > 5, true);
        QCOMPARE(root->getChild(root->getNumChildren() - 1)->getName().getString(), "vw3seekinfo_target");
        QVERIFY(root->getChild(0)->isOfType(SoEventCallback::getClassTypeId()));
    }

    void notificationShowsOnlyInFullScreen()
    {
        auto view = makeView();
        auto notification = find<SoSwitch>(view->getViewer()->getRoot(), "notification_message_switch");
        QVERIFY(notification);
        QCOMPARE(notification->whichChild.getValue(), SO_SWITCH_NONE);
        QCOMPARE(texts(notification, true), QStringList{"Press \"Alt + Return\" to exit fullscreen mode"});

        view->setFullScreen(true);
        QCOMPARE(notification->whichChild.getValue(), 0);
        QVERIFY(view->getAction(Vw3AView::FULLSCREEN)->isChecked());
        view->setFullScreen(false);
        QCOMPARE(notification->whichChild.getValue(), SO_SWITCH_NONE);
        QVERIFY(!view->getAction(Vw3AView::FULLSCREEN)->isChecked());
    }

    void nodesAreWrappedHiddenAndRemoved()
    {
        auto view = makeView();
        CubeNode cube(QStringLiteral("Red cube"), SbVec3f(0, 0, 0), 1.0f, Qt::red);
        const QByteArray inv = cube.getInventorName().toLatin1();
        QSignalSpy added(view.get(), &Vw3AView::nodeAdded);
        QSignalSpy removed(view.get(), &Vw3AView::nodeRemoved);

        view->addNode(&cube);
        QCOMPARE(added.count(), 1);
        QCOMPARE(added.at(0).at(1).value<Vg3ANode*>(), static_cast<Vg3ANode*>(&cube));
        SoSeparator* root = view->getRoot();
        auto visibility = find<SoSwitch>(root, "visibility_switch_for_" + inv);
        QVERIFY(visibility);
        QVERIFY(find(root, "pick_style_sep_for_" + inv));
        auto pickable = find<SoSwitch>(root, "pickable_switch_for_" + inv);
        QVERIFY(pickable);
        QVERIFY(find(find(root, "vw3aview_scene_root"), "visibility_switch_for_" + inv));
        QCOMPARE(visibility->whichChild.getValue(), 0);
        QVERIFY(!view->getBoundingBox().isEmpty());

        view->setNodeVisibility(&cube, false);
        QCOMPARE(visibility->whichChild.getValue(), SO_SWITCH_NONE);
        QVERIFY(!view->isNodeVisible(&cube));
        QCOMPARE(view->getVisibleNodesCount(), 0);
        QCOMPARE(find(root, "visibility_switch_for_" + inv), static_cast<SoNode*>(visibility));
        QVERIFY(view->getBoundingBox().isEmpty());
        view->setNodeVisibility(&cube, true);
        QCOMPARE(visibility->whichChild.getValue(), 0);
        QCOMPARE(view->getVisibleNodesCount(), 1);

        view->setNodePickable(&cube, false);
        QCOMPARE(pickable->whichChild.getValue(), 1);
        view->setNodePickable(&cube, true);
        QCOMPARE(pickable->whichChild.getValue(), 0);

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vw3AView::addNode: .*already"));
        view->addNode(&cube);
        QCOMPARE(added.count(), 1);

        view->removeNode(&cube);
        QCOMPARE(removed.count(), 1);
        QVERIFY(!find(root, "visibility_switch_for_" + inv));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vw3AView::removeNode: "));
        view->removeNode(&cube);
        QCOMPARE(removed.count(), 1);
    }

    void lookAtBeforeShowIsPerformedOnceShown()
    {
        auto view = makeView();
        CubeNode far(QStringLiteral("far"), SbVec3f(100, 200, 50), 10.0f, Qt::green);
        CubeNode origin(QStringLiteral("origin"), SbVec3f(0, 0, 0), 10.0f, Qt::blue);
        view->addNode(&far);
        view->addNode(&origin);
        view->lookAt(KbgBox(KbgVector3D(95, 195, 45), KbgVector3D(105, 205, 55)), 0.0f);
        QVERIFY(showAndWait(*view));
        QTRY_VERIFY((focalPoint(*view) - SbVec3f(100, 200, 50)).length() < 0.5f);
        // Framed: the box fills a good part of the view but is not cut.
        const float distance = (view->getSceneInteractor()->getCamera()->position.getValue() - SbVec3f(100, 200, 50)).length();
        QVERIFY2(distance > 8.0f && distance < 60.0f, qPrintable(QString::number(distance)));
    }

    // A window restored with its project sets the camera before its view is first shown: the
    // first show's framing must not replace it.
    void cameraStateBeforeShowIsKept()
    {
        auto view = makeView();
        CubeNode cube(QStringLiteral("cube"), SbVec3f(0, 0, 0), 10.0f, Qt::blue);
        view->addNode(&cube);
        Vug::CameraState state;
        QVERIFY(Vug::CameraState::fromString(QStringLiteral("300 -40 25 0 0 1 0 250 0.785398 persp"), state));
        view->setCameraState(state);
        QVERIFY(showAndWait(*view));
        QTRY_VERIFY(view->isInitialized());
        const Vug::CameraState shown = view->getCameraState();
        QVERIFY2(std::abs(shown.position[0] - 300) < 1e-3 && std::abs(shown.position[2] - 25) < 1e-3,
                 qPrintable(shown.toString()));
    }

    void activation_data()
    {
        QTest::addColumn<bool>("always");
        QTest::addColumn<int>("clicks");
        QTest::addColumn<int>("expectedSignals");

        QTest::newRow("first click activates") << false << 1 << 1;
        QTest::newRow("second click emits nothing more") << false << 2 << 1;
        QTest::newRow("always activated emits nothing") << true << 2 << 0;
    }

    void activation()
    {
        QFETCH(bool, always);
        QFETCH(int, clicks);
        QFETCH(int, expectedSignals);
        auto view = makeView();
        view->setViewRef(QStringLiteral("view-7"));
        view->setAlwaysActivated(always);
        QVERIFY(showAndWait(*view));
        QSignalSpy spy(view.get(), &Vw3AView::viewActivated);
        Vw3RenderAreaQWindow* area = view->getViewer()->getRenderArea();
        for (int i = 0; i < clicks; ++i) QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, QPoint(50, 50));
        QCOMPARE(spy.count(), expectedSignals);
        if (expectedSignals > 0) {
            QCOMPARE(spy.at(0).at(0).toBool(), true);
            QCOMPARE(spy.at(0).at(1).toString(), QStringLiteral("view-7"));
            QVERIFY(view->isActivated());
        }
        QVERIFY(area->isActivated());

        // The same state twice: nothing the second time.
        spy.clear();
        view->setActivated(false);
        view->setActivated(false);
        QCOMPARE(spy.count(), always ? 0 : 1);
    }

    // Single keys pressed on the render area of a shown view taking keys, from an oblique
    // camera and a horizontal clip plane through the origin; the check sees the view and
    // how often the camera changed.
    void keys_data()
    {
        QTest::addColumn<QKeySequence>("keys");
        QTest::addColumn<bool>("fullScreen");
        QTest::addColumn<Check>("check");
        const auto looking = [](float x, float y, float z) {
            return Check([=](Vw3AView& view, int cameraChanges) {
                QVERIFY2((viewDirection(view) - SbVec3f(x, y, z)).length() < 1e-3f, qPrintable(text(viewDirection(view))));
                QVERIFY(cameraChanges >= 1);
            });
        };
        const auto projection = [](Vg3SceneInteractor::ProjectionType type, SoType camera) {
            return Check([=](Vw3AView& view, int) {
                QCOMPARE(view.getSceneInteractor()->getProjectionType(), type);
                QVERIFY(view.getSceneInteractor()->getCamera()->isOfType(camera));
            });
        };
        // The clip plane moved by steps and its slab widened by a factor.
        const auto clip = [](int steps, double widthFactor) {
            return Check([=](Vw3AView& view, int) {
                const KbgClipPlaneDefinition& plane = view.getSectionModel()->getClipPlaneDefinition();
                QVERIFY2(std::abs(view.getSectionModel()->getClipPosition().z() - steps * plane.getStepSize()) < 1e-9,
                         qPrintable(QString::number(view.getSectionModel()->getClipPosition().z())));
                const double width = Vg3SectionModel().getClipPlaneDefinition().getSliceWidth() * widthFactor;
                QVERIFY2(std::abs(plane.getSliceWidth() - width) < 1e-9, qPrintable(QString::number(plane.getSliceWidth())));
            });
        };
        const auto normalZ = [](double z) {
            return Check([=](Vw3AView& view, int) { QCOMPARE(view.getSectionModel()->getPlaneNormal().z(), z); });
        };
        const auto fullScreen = [](bool still) {
            return Check([=](Vw3AView& view, int) {
                QCOMPARE(view.isFullScreen(), still);
                QCOMPARE(view.getAction(Vw3AView::FULLSCREEN)->isChecked(), still);
            });
        };
        const auto row = [](const char* name, const QKeySequence& keys, const Check& check, bool full = false) {
            QTest::newRow(name) << keys << full << check;
        };
        row("U looks down", Qt::Key_U, looking(0, 0, -1));
        row("D looks up", Qt::Key_D, looking(0, 0, 1));
        row("E looks west from the east", Qt::Key_E, looking(-1, 0, 0));
        row("W looks east from the west", Qt::Key_W, looking(1, 0, 0));
        row("N looks south from the north", Qt::Key_N, looking(0, -1, 0));
        row("S looks north from the south", Qt::Key_S, looking(0, 1, 0));
        row("L looks along the plane's normal", Qt::Key_L, looking(0, 0, 1));
        row("Home frames the scene", Qt::Key_Home, [](Vw3AView& view, int) {
            QVERIFY2((focalPoint(view) - SbVec3f(10, 20, 30)).length() < 0.5f, qPrintable(text(focalPoint(view))));
        });
        row("O goes orthographic", Qt::Key_O, projection(Vg3SceneInteractor::ORTHOGRAPHIC, SoOrthographicCamera::getClassTypeId()));
        row("P comes back to perspective", QKeySequence(Qt::Key_O, Qt::Key_P),
            projection(Vg3SceneInteractor::PERSPECTIVE, SoPerspectiveCamera::getClassTypeId()));
        row("+ steps forward", Qt::Key_Plus, clip(1, 1.0));
        row("- steps backward", Qt::Key_Minus, clip(-1, 1.0));
        row("Shift + widens the slice", Qt::SHIFT + Qt::Key_Plus, clip(0, Vg3SectionModel::SLICE_WIDTH_FACTOR));
        row("Shift - narrows the slice", Qt::SHIFT + Qt::Key_Minus, clip(0, 1.0 / Vg3SectionModel::SLICE_WIDTH_FACTOR));
        row("an unbound key leaves the plane", Qt::Key_Q, clip(0, 1.0));
        row("Shift L reverses the plane", Qt::SHIFT + Qt::Key_L, normalZ(-1.0));
        row("Shift L twice turns it back", QKeySequence(Qt::SHIFT + Qt::Key_L, Qt::SHIFT + Qt::Key_L), normalZ(1.0));
        row("C switches to knife mode", Qt::Key_C, [](Vw3AView& view, int) {
            QVERIFY(view.getKnifeMode()->isChecked());
            QVERIFY(!view.getViewingMode()->isChecked());
            QCOMPARE(view.getSceneInteractor()->getInteractionMode(), Vg3SceneInteractor::PICKING);
        });
        row("Alt+Return leaves full screen", Qt::ALT + Qt::Key_Return, fullScreen(false), true);
        row("Alt+Enter leaves full screen", Qt::ALT + Qt::KeypadModifier + Qt::Key_Enter, fullScreen(false), true);
        row("Return alone stays in full screen", Qt::Key_Return, fullScreen(true), true);
    }
    void keys()
    {
        QFETCH(QKeySequence, keys);
        QFETCH(bool, fullScreen);
        QFETCH(Check, check);
        auto view = makeView();
        CubeNode cube(QStringLiteral("cube"), SbVec3f(10, 20, 30), 4.0f, Qt::red);
        view->addNode(&cube);
        view->setAlwaysActivated(true);
        view->setPlane(KbgVector3D(0, 0, 0), KbgVector3D(0, 0, 1));
        QVERIFY(showAndWait(*view));
        Vug::CameraState oblique = view->getCameraState();
        const double axis[3] = {1.0, 1.0, 0.3};
        std::copy(axis, axis + 3, oblique.axis);
        oblique.angle = 0.7;
        view->setCameraState(oblique);
        view->setFullScreen(fullScreen);
        QSignalSpy changed(view.get(), &Vw3AView::cameraChanged);
        for (int i = 0; i < keys.count(); ++i)
            QTest::keyClick(view->getViewer()->getRenderArea(), Qt::Key(keys[i] & ~Qt::KeyboardModifierMask),
                            Qt::KeyboardModifiers(keys[i] & Qt::KeyboardModifierMask));
        check(*view, changed.count());
        view->setFullScreen(false);
    }

    // Key releases alone do nothing.
    void releasesAloneDoNothing()
    {
        auto view = makeView();
        view->setAlwaysActivated(true);
        QVERIFY(showAndWait(*view));
        QTest::keyRelease(view->getViewer()->getRenderArea(), Qt::Key_Plus);
        QTest::keyRelease(view->getViewer()->getRenderArea(), Qt::Key_C);
        QCOMPARE(view->getSectionModel()->getClipPosition().z(), 0.0);
        QVERIFY(view->getViewingMode()->isChecked());
    }

    void savedAndCopiedImagesShowTheScene()
    {
        auto view = makeView();
        view->setWhiteBackground(true);
        CubeNode cube(QStringLiteral("cube"), SbVec3f(0, 0, 0), 2.0f, QColor(220, 30, 40));
        view->addNode(&cube);
        view->toggleAxes(false);
        view->toggleGnomon(false);
        view->toggleCompass(false);
        QVERIFY(showAndWait(*view));
        view->viewAll();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("view.png"));
        QVERIFY(view->saveImage(path));
        QVERIFY(view->copyToClipboard());
        for (const QImage& image : {QImage(path), QApplication::clipboard()->image()}) {
            QVERIFY(image.width() > 100);
            const QRgb centre = image.pixel(image.width() / 2, image.height() / 2);
            QVERIFY2(ImageChecks::near(centre, QColor(220, 30, 40)), qPrintable(ImageChecks::toString(centre)));
            QVERIFY2(ImageChecks::near(image.pixel(2, 2), QColor(Qt::white)), qPrintable(ImageChecks::toString(image.pixel(2, 2))));
        }
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("File system full or write protected"));
        QVERIFY(!view->saveImage(dir.filePath(QStringLiteral("missing/folder/view.png"))));
    }

    void ivFileReadsBack()
    {
        auto view = makeView();
        CubeNode cube(QStringLiteral("cube"), SbVec3f(0, 0, 0), 2.0f, Qt::red);
        view->addNode(&cube);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("scene.iv"));
        QVERIFY(view->saveToIvFile(path));
        SoInput input;
        QVERIFY(input.openFile(QFile::encodeName(path).constData()));
        SoSeparator* read = SoDB::readAll(&input);
        QVERIFY(read);
        read->ref();
        QVERIFY(find(read, "vw3aview_scene_root"));
        QVERIFY(find(read, ("visibility_switch_for_" + cube.getInventorName()).toLatin1()));
        read->unref();

        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Vw3AView::saveToIvFile: cannot write"));
        QVERIFY(!view->saveToIvFile(dir.filePath(QStringLiteral("no/such/dir/scene.iv"))));
    }

    void imageFailures()
    {
        auto view = makeView();
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Cannot get image, render area is not initialized\\."));
        QVERIFY(view->getImage(64, 64).isNull());

        QVERIFY(showAndWait(*view));
        QVERIFY(!view->getImage(64, 48).isNull());
        view->hide();
        QTRY_VERIFY(!view->getViewer()->getRenderArea()->isExposed());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("Viewer is not ready for offscreen rendering"));
        QVERIFY(view->getImage(64, 48).isNull());
        view->setupForOffscreenRendering(true);
        const QImage image = view->getImage(64, 48);
        QCOMPARE(image.size(), QSize(64, 48));

        // A view never shown draws once set up for offscreen rendering.
        auto offscreen = makeView();
        offscreen->setupForOffscreenRendering(true);
        QCOMPARE(offscreen->getImage(32, 32).size(), QSize(32, 32));
    }

    void renderFormatCheck_data()
    {
        QTest::addColumn<QSurfaceFormat>("format");
        QTest::addColumn<bool>("direct");
        QTest::addColumn<QStringList>("failures");

        const QSurfaceFormat good = Vw3OivViewer::requestedRenderFormat();
        using F = QSurfaceFormat&;
        const auto with = [&](const std::function<void(F)>& change) {
            QSurfaceFormat f = good;
            change(f);
            return f;
        };
        QTest::newRow("as requested") << good << true << QStringList();
        QTest::newRow("core profile") << with([](F f) { f.setProfile(QSurfaceFormat::CoreProfile); }) << true
                                      << QStringList{"Wrong profile"};
        QTest::newRow("single buffer") << with([](F f) { f.setSwapBehavior(QSurfaceFormat::SingleBuffer); }) << true
                                       << QStringList{"No double buffer"};
        QTest::newRow("no alpha") << with([](F f) { f.setAlphaBufferSize(0); }) << true
                                  << QStringList{"No alpha buffer", "Alpha buffer size < 8"};
        QTest::newRow("shallow depth") << with([](F f) { f.setDepthBufferSize(16); }) << true
                                       << QStringList{"Depth buffer size < 24"};
        QTest::newRow("no depth") << with([](F f) { f.setDepthBufferSize(0); }) << true
                                  << QStringList{"No depth buffer", "Depth buffer size < 24"};
        QTest::newRow("indirect") << good << false << QStringList{"No direct rendering"};
        QTest::newRow("no stencil") << with([](F f) { f.setStencilBufferSize(0); }) << true
                                    << QStringList{"No stencil buffer", "Stencil buffer size < 8"};
        QTest::newRow("16-bit colour") << with([](F f) { f.setRedBufferSize(5), f.setBlueBufferSize(5), f.setGreenBufferSize(6); })
                                       << true << QStringList{"Red buffer size < 8", "Green buffer size < 8", "Blue buffer size < 8"};
        QTest::newRow("no vsync") << with([](F f) { f.setSwapInterval(0); }) << true
                                  << QStringList{"No vertical synchronization"};
        QTest::newRow("two failures in order")
            << with([](F f) { f.setProfile(QSurfaceFormat::CoreProfile), f.setSwapInterval(0); }) << false
            << QStringList{"Wrong profile", "No direct rendering", "No vertical synchronization"};
    }

    void renderFormatCheck()
    {
        QFETCH(QSurfaceFormat, format);
        QFETCH(bool, direct);
        QFETCH(QStringList, failures);
        const QStringList found = Vw3OivViewer::compareRenderFormat(format, direct);
        QCOMPARE(found, failures);
        const QString report = Vw3OivViewer::renderFormatReport(found);
        QVERIFY(report.startsWith(QStringLiteral("OpenGL pixel format check : ")));
        QCOMPARE(report.contains(QStringLiteral("OK")), failures.isEmpty());
        QCOMPARE(report.contains(QStringLiteral("Failed")), !failures.isEmpty());
        for (const QString& text : failures) QVERIFY(report.contains(text));
    }

    void legendFollowsAvailabilityAndAction()
    {
        auto view = makeView();
        QAction* legend = view->getAction(Vw3AView::LEGEND);
        QVERIFY(!legend->isEnabled());
        QVERIFY(!view->isLegendShown());
        VugColorScale scale;
        view->setLegend(scale, QStringLiteral("Porosity"), KbbStringFormat());
        view->setLegendEnabled(true);
        QVERIFY(legend->isEnabled());
        QVERIFY(legend->isChecked());
        QVERIFY(view->isLegendShown());
        legend->trigger();
        QVERIFY(!view->isLegendShown());
        legend->trigger();
        QVERIFY(view->isLegendShown());
        view->invalidateLegend();
        QVERIFY(!view->isLegendShown());
        QVERIFY(!legend->isEnabled());
    }

    void decorationsShowInTheirCorners_data()
    {
        QTest::addColumn<bool>("gnomon");
        QTest::addColumn<bool>("compass");
        QTest::newRow("none") << false << false;
        QTest::newRow("gnomon") << true << false;
        QTest::newRow("compass") << false << true;
        QTest::newRow("both") << true << true;
    }

    void decorationsShowInTheirCorners()
    {
        QFETCH(bool, gnomon);
        QFETCH(bool, compass);
        auto view = makeView();
        view->resize(320, 320);
        view->setWhiteBackground(true);
        view->toggleAxes(false);
        view->setLegendEnabled(false);
        view->toggleGnomon(gnomon);
        view->toggleCompass(compass);
        QVERIFY(showAndWait(*view));
        const QImage image = view->getImage(1.0);
        QVERIFY(!image.isNull());
        // The pixels of a corner that are not the plain white background.
        const auto markedPixels = [&image](bool left, bool top) {
            const QSize third = image.size() / 3;
            const QPoint corner(left ? 0 : image.width() - third.width(), top ? 0 : image.height() - third.height());
            return third.width() * third.height() - ImageChecks::countNear(image.copy(QRect(corner, third)), Qt::white, 24);
        };
        // The gnomon sits bottom left, the compass top right; nothing else is drawn.
        QCOMPARE(markedPixels(true, false) > 20, gnomon);
        QCOMPARE(markedPixels(false, true) > 20, compass);
        QCOMPARE(markedPixels(true, true), 0);
    }

    // The legend of a variable is titled with its name and unit and spans its defined values.
    void legendFromAVariable_data()
    {
        QTest::addColumn<QString>("unit");
        QTest::addColumn<QString>("title");
        QTest::newRow("without unit") << "" << "Porosity";
        QTest::newRow("in metres") << "m" << "Porosity (m)";
    }

    void legendFromAVariable()
    {
        QFETCH(QString, unit);
        QFETCH(QString, title);
        auto view = makeView();
        const KbdVariable variable(QStringLiteral("Porosity"), {0.1, KbbGlobal::D_FFFF, 0.3, qQNaN(), 0.2},
                                   unit.isEmpty() ? KbuUnit() : KbuUnit::fromKey(unit));
        view->setLegend(variable);
        view->setLegendEnabled(true);
        QVERIFY(view->isLegendShown());
        const QStringList shown = texts(view->getRoot());
        QVERIFY2(shown.contains(title), qPrintable(shown.join(QStringLiteral(" | "))));
        // Ticks run from the lowest to the highest defined value, the undefined ones left out.
        QVERIFY2(shown.contains(QStringLiteral("0.1")) && shown.contains(QStringLiteral("0.3")),
                 qPrintable(shown.join(QStringLiteral(" | "))));
    }

    // While a picker is on top of the stack it gets the mouse and keys before the camera and
    // the shortcuts, and its help shows; popped, everything goes back to the camera.
    void pickHandlerTakesInputWhileOnTop()
    {
        auto view = makeView();
        CubeNode cube(QStringLiteral("cube"), SbVec3f(0, 0, 0), 4.0f, Qt::red);
        view->addNode(&cube);
        view->setAlwaysActivated(true);
        QVERIFY(showAndWait(*view));
        QWindow* area = view->getViewer()->getRenderArea();
        QTest::mouseClick(area, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5)); // activates the area
        QVERIFY(shownTexts(*view).isEmpty());

        RecordingPicker picker;
        view->pushPickHandler(&picker);
        QCOMPARE(view->topPickHandler(), &picker);
        QCOMPARE(shownTexts(*view), QStringList({"Picker", "Pick a point."}));

        const Vug::CameraState before = view->getCameraState();
        QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
        QTest::mouseMove(area, QPoint(160, 130));
        QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, QPoint(160, 130));
        QTest::keyClick(area, Qt::Key_Escape);
        QCOMPARE(picker.presses, 1);
        QVERIFY(picker.moves >= 1);
        QCOMPARE(picker.keys, 1);
        QCOMPARE(view->getCameraState(), before);
        // A key the picker leaves goes on to the shortcuts.
        QTest::keyClick(area, Qt::Key_U);
        QCOMPARE(picker.keys, 2);
        QVERIFY((viewDirection(*view) - SbVec3f(0, 0, -1)).length() < 1e-3f);

        QCOMPARE(view->popPickHandler(), &picker);
        QVERIFY(shownTexts(*view).isEmpty());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("popPickHandler: the stack is empty"));
        QVERIFY(!view->popPickHandler());
        QVERIFY(view->topPickHandler());

        // Back with the camera: a left drag orbits, with the closed hand while it lasts.
        const Vug::CameraState framed = view->getCameraState();
        QTest::mousePress(area, Qt::LeftButton, Qt::NoModifier, QPoint(100, 100));
        QTest::mouseMove(area, QPoint(160, 130));
        QCOMPARE(area->cursor().shape(), Qt::ClosedHandCursor);
        QTest::mouseRelease(area, Qt::LeftButton, Qt::NoModifier, QPoint(160, 130));
        QCOMPARE(area->cursor().shape(), Qt::ArrowCursor);
        QCOMPARE(picker.presses, 1);
        QVERIFY(view->getCameraState() != framed);
    }

    // The actions: exclusive interaction modes, checkable actions kept in step with the view
    // both ways, the section request, the context menu and unknown look-ups.
    void modesAreExclusive_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("interaction");

        QTest::newRow("viewing") << int(Vw3AView::VIEWING_MODE) << "Viewing mode" << int(Vg3SceneInteractor::VIEWING);
        QTest::newRow("picking") << int(Vw3AView::PICKING_MODE) << "Picking mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("seeking") << int(Vw3AView::SEEKING_MODE) << "Seek mode" << int(Vg3SceneInteractor::SEEKING);
        QTest::newRow("ruler") << int(Vw3AView::RULER_MODE) << "Ruler mode" << int(Vg3SceneInteractor::RULER);
        QTest::newRow("knife picks") << int(Vw3AView::KNIFE_MODE) << "Knife mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("fence picks") << int(Vw3AView::FENCE_MODE) << "Fence mode" << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("one point picks") << int(Vw3AView::PICK_1_POINT_MODE) << "Set points from picking"
                                         << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("three points pick") << int(Vw3AView::PICK_3_POINTS_MODE) << "Set the plane from points"
                                           << int(Vg3SceneInteractor::PICKING);
        QTest::newRow("several points pick") << int(Vw3AView::PICK_MULTIPLE_POINTS_MODE) << "Add fence points"
                                             << int(Vg3SceneInteractor::PICKING);
    }

    void modesAreExclusive()
    {
        QFETCH(int, mode);
        QFETCH(QString, text);
        QFETCH(int, interaction);
        Vw3ExaminerView view;
        // Start from a mode of another interaction, so that every row is a real switch.
        view.getMode(mode == Vw3AView::RULER_MODE ? Vw3AView::SEEKING_MODE : Vw3AView::RULER_MODE)->trigger();

        QAction* action = view.getMode(mode);
        QVERIFY(action);
        QCOMPARE(action->text(), text);
        action->trigger();
        QCOMPARE(int(view.getSceneInteractor()->getInteractionMode()), interaction);
        for (int m = 0; m < Vw3AView::MODE_COUNT; ++m) QCOMPARE(view.getMode(m)->isChecked(), m == mode);

        // A section mode gives way to viewing when the section modes are cancelled.
        view.cancelSectionModes();
        const bool sectionMode = mode >= Vw3AView::KNIFE_MODE;
        QCOMPARE(view.getViewingMode()->isChecked(), sectionMode || mode == Vw3AView::VIEWING_MODE);
    }

    void checkableActionsFollowTheView_data()
    {
        QTest::addColumn<int>("action");
        QTest::addColumn<bool>("fromTheView");

        for (bool fromView : {true, false}) {
            const char* how = fromView ? "set by the view" : "toggled by the user";
            QTest::addRow("axes %s", how) << int(Vw3AView::AXES) << fromView;
            QTest::addRow("axes grid %s", how) << int(Vw3AView::AXES_GRID) << fromView;
            QTest::addRow("gnomon %s", how) << int(Vw3AView::GNOMON) << fromView;
            QTest::addRow("compass %s", how) << int(Vw3AView::COMPASS) << fromView;
            QTest::addRow("inverted colours %s", how) << int(Vw3AView::INVERT_COLORS) << fromView;
        }
        QTest::newRow("section properties set by the view") << int(Vw3AView::SECTION_PROPERTIES) << true;
    }

    void checkableActionsFollowTheView()
    {
        QFETCH(int, action);
        QFETCH(bool, fromTheView);
        Vw3ExaminerView view;
        QAction* a = view.getAction(Vw3AView::Action(action));
        QVERIFY(a && a->isCheckable());
        QSignalSpy toggled(a, &QAction::toggled);
        const bool target = !a->isChecked();
        if (fromTheView) {
            switch (action) {
            case Vw3AView::AXES: view.toggleAxes(target); break;
            case Vw3AView::AXES_GRID: view.toggleAxesGrid(target); break;
            case Vw3AView::GNOMON: view.toggleGnomon(target); break;
            case Vw3AView::COMPASS: view.toggleCompass(target); break;
            case Vw3AView::INVERT_COLORS: view.setInvertColors(target); break;
            case Vw3AView::SECTION_PROPERTIES: view.toggleClippingProperties(target); break;
            default: QFAIL("no setter for this row");
            }
        } else {
            a->trigger();
        }
        QCOMPARE(a->isChecked(), target);
        QCOMPARE(toggled.count(), 1);
        // The view redraws its decorations' actions from its own state: a toggle the view did
        // not take would show here.
        view.invalidateLegend();
        QCOMPARE(a->isChecked(), target);
        if (action == Vw3AView::INVERT_COLORS) QCOMPARE(view.getInvertColors(), target);
    }

    void sectionActionRequestsTheCurrentSection()
    {
        Vw3ExaminerView view;
        view.setPlane(KbgVector3D(1, 2, 3), KbgVector3D(0, 1, 0));
        QSignalSpy requested(&view, &Vw3AView::createSectionRequest);
        view.getAction(Vw3AView::SECTION)->trigger();
        QCOMPARE(requested.count(), 1);
        const auto definition = requested.at(0).at(0).value<VugSectionDefinition>();
        QVERIFY(definition == view.getSectionModel()->getSectionDefinition());
    }

    void contextMenuListsTheViewActions()
    {
        MenuView view;
        QMenu menu;
        view.fill(&menu);
        QStringList texts;
        for (QAction* a : menu.actions()) texts << (a->isSeparator() ? QStringLiteral("|") : a->text());
        const QStringList expected = {
            "View all", "View from top (U)", "View from bottom (D)", "View from east (E)", "View from west (W)",
            "View from north (N)", "View from south (S)", "Perspective / Orthographic Projection", "|", "Show axes",
            "Show axes grid", "Show gnomon", "Show compass", "Show/hide colormap legend", "Invert colors", "|",
            "Fullscreen", "Save as image", "Copy to clipboard", "Save scene as an IV file", "Send to report.",
        };
        QCOMPARE(texts, expected);
    }

    void unknownLookupsWarnAndGiveNothing()
    {
        Vw3ExaminerView view;
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getAction: no action 29");
        QVERIFY(!view.getAction(Vw3AView::ACTION_COUNT));
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getMode: no mode -1");
        QVERIFY(!view.getMode(-1));
        QTest::ignoreMessage(QtWarningMsg, "Vw3AView::getMode: no mode 9");
        QVERIFY(!view.getMode(Vw3AView::MODE_COUNT));
        // The lookups that exist are still there afterwards.
        QVERIFY(view.getAction(Vw3AView::VIEW_ALL));
        QVERIFY(view.getMode(Vw3AView::VIEWING_MODE) == view.getViewingMode());
    }
};

QTEST_MAIN(TestVw3AView)
#include "tst_gl_vw3aview.moc"
