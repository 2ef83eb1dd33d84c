// The 3D view as a user and its owner meet it: its scene graph, nodes shown and hidden,
// single-key shortcuts for the camera, clip plane, modes and full screen, activation among
// views, image and file export, and its actions and menu.

#include "ImageChecks.h"
#include "InventorScenes.h"
#include <KbbGlobal.h>
#include <KbgClipPlaneDefinition.h>
#include <KbdVariable.h>
#include <KbuUnit.h>
#include <SoCameraInteractor.h>
#include <Vg3ANode.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <VgpIPickHandler.h>
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
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

using Check = std::function<void(Vw3AView&, int)>;
Q_DECLARE_METATYPE(Check)

namespace {

using namespace InventorScenes;

// A cube of one flat colour (no lighting), so that pixels can be compared.
class CubeNode : public Vg3ANode
{
public:
    CubeNode(const QString& name, const SbVec3f& center, float size, const QColor& color) : Vg3ANode(name)
        , _cube(SoRef(separator({unlit(), flatBox(center, SbVec3f(size, size, size), sb(color))})))
    {
        rebuild();
    }

protected:
    void _build(SoSeparator* parent) override { parent->addChild(_cube.get()); }

private:
    SoRef<SoSeparator> _cube;
};

SbVec3f viewDirection(const Vw3AView& view)
{
    return turned(view.getSceneInteractor()->getCamera(), SbVec3f(0, 0, -1));
}

SbVec3f focalPoint(const Vw3AView& view)
{
    SoCamera* camera = view.getSceneInteractor()->getCamera();
    return camera->position.getValue() + viewDirection(view) * camera->focalDistance.getValue();
}

// The checkable actions and the view's own setters of what they show.
const struct
{
    const char* name;
    Vw3AView::Action action;
    void (Vw3AView::*set)(bool);
} kToggles[] = {{"axes", Vw3AView::AXES, &Vw3AView::toggleAxes},
                {"axes grid", Vw3AView::AXES_GRID, &Vw3AView::toggleAxesGrid},
                {"gnomon", Vw3AView::GNOMON, &Vw3AView::toggleGnomon},
                {"compass", Vw3AView::COMPASS, &Vw3AView::toggleCompass},
                {"inverted colours", Vw3AView::INVERT_COLORS, &Vw3AView::setInvertColors},
                {"section properties", Vw3AView::SECTION_PROPERTIES, &Vw3AView::toggleClippingProperties}};

// Opens the protected context-menu filling to the test.
class MenuView : public Vw3ExaminerView
{
public:
    void fill(QMenu* menu) { _fillContextMenu(menu); }
};

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
    SoNode* help = find(view.getRoot(), "pick_handler_help");
    return help ? texts(help) : QStringList();
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
    // The named nodes that helpers outside the view look for, each under its parent (at its
    // rank where one is given).
    void sceneGraphNames()
    {
        auto view = makeView();
        SoNode* viewerRoot = view->getViewer()->getRoot();
        QCOMPARE(viewerRoot->getName().getString(), "vw3_oiv_viewer_root");
        const struct
        {
            const char* name;
            const char* parent;
            int index;
        } nodes[] = {{"vw3aview_shortcuts", "vw3aview_root", 0},
                     {"vw3aview_inventor_slots", "vw3aview_root", 1},
                     {"vw3aview_bbox_caching", "vw3aview_root", 3}, // after the legend
                     {"vw3aview_traversable_callback", "vw3aview_bbox_caching", 0},
                     {"vw3aview_scene_root", "vw3aview_bbox_caching", 1},
                     {"vw3aview_tools_root", "vw3aview_root", -1},
                     {"vw3aview_root", "vw3_oiv_viewer_root", -1},
                     {"notification_message_switch", "vw3_oiv_viewer_root", -1},
                     {"notification_message_sep", "notification_message_switch", 0}};
        for (const auto& n : nodes) {
            auto group = find<SoGroup>(viewerRoot, n.parent);
            SoNode* node = find(viewerRoot, n.name);
            QVERIFY2(group && node, n.name);
            const int found = group->findChild(node);
            QVERIFY2(found >= 0 && (n.index < 0 || found == n.index), n.name);
        }
        // The seek target always closes the view's root; the event callback listens to keys.
        SoSeparator* root = view->getRoot();
        QCOMPARE(root->getChild(root->getNumChildren() - 1)->getName().getString(), "vw3seekinfo_target");
        QVERIFY(root->getChild(0)->isOfType(SoEventCallback::getClassTypeId()));
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
        auto pickable = find<SoSwitch>(root, "pickable_switch_for_" + inv);
        QVERIFY(visibility && pickable && find(root, "pick_style_sep_for_" + inv));
        QVERIFY(find(find(root, "vw3aview_scene_root"), "visibility_switch_for_" + inv));
        QCOMPARE(visibility->whichChild.getValue(), 0);
        QVERIFY(!view->getBoundingBox().isEmpty());

        view->setNodeVisibility(&cube, false);
        QCOMPARE(visibility->whichChild.getValue(), SO_SWITCH_NONE);
        QVERIFY(!view->isNodeVisible(&cube));
        QCOMPARE(view->getVisibleNodesCount(), 0);
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
    }

    // A framing asked for, or a camera restored with a project, before the view is first
    // shown: the first show's own framing must not replace it.
    void cameraSetBeforeShowIsKept()
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

        auto restored = makeView();
        CubeNode cube(QStringLiteral("cube"), SbVec3f(0, 0, 0), 10.0f, Qt::blue);
        restored->addNode(&cube);
        Vug::CameraState state;
        QVERIFY(Vug::CameraState::fromString(QStringLiteral("300 -40 25 0 0 1 0 250 0.785398 persp"), state));
        restored->setCameraState(state);
        QVERIFY(showAndWait(*restored));
        const Vug::CameraState shown = restored->getCameraState();
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
            QCOMPARE(spy.at(0), (QVariantList{true, QStringLiteral("view-7")}));
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
        // Looking along `direction`; a preset also turns `up` up and brings the cube into view.
        const auto looking = [](const SbVec3f& direction, const SbVec3f& up = SbVec3f(0, 0, 0)) {
            return Check([=](Vw3AView& view, int cameraChanges) {
                QVERIFY2((viewDirection(view) - direction).length() < 1e-3f, qPrintable(text(viewDirection(view))));
                QVERIFY(cameraChanges >= 1);
                const SbVec3f shownUp = turned(view.getSceneInteractor()->getCamera(), SbVec3f(0, 1, 0));
                QVERIFY2(up.length() == 0.0f || (shownUp - up).length() < 1e-3f, qPrintable(text(shownUp)));
                SbVec3f cube;
                const Vg3SceneInteractor* interactor = view.getSceneInteractor();
                SoCameraInteractor::getViewVolume(interactor->getCamera(), interactor->getViewportRegion())
                    .projectToScreen(SbVec3f(10, 20, 30), cube);
                QVERIFY2(up.length() == 0.0f || (cube[0] > 0.1f && cube[0] < 0.9f && cube[1] > 0.1f && cube[1] < 0.9f),
                         qPrintable(text(cube)));
            });
        };
        const auto projection = [](SoType camera) {
            return Check([=](Vw3AView& view, int) { QVERIFY(view.getSceneInteractor()->getCamera()->isOfType(camera)); });
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
        // The action and the notice telling how to leave follow full screen.
        const auto fullScreen = [](bool still) {
            return Check([=](Vw3AView& view, int) {
                QCOMPARE(view.isFullScreen(), still);
                QCOMPARE(view.getAction(Vw3AView::FULLSCREEN)->isChecked(), still);
                auto notice = find<SoSwitch>(view.getViewer()->getRoot(), "notification_message_switch");
                QCOMPARE(texts(notice), still ? QStringList{"Press \"Alt + Return\" to exit fullscreen mode"} : QStringList());
            });
        };
        const auto row = [](const char* name, const QKeySequence& keys, const Check& check, bool full = false) {
            QTest::newRow(name) << keys << full << check;
        };
        const SbVec3f north(0, 1, 0), zenith(0, 0, 1);
        row("U looks down", Qt::Key_U, looking({0, 0, -1}, north));
        row("D looks up", Qt::Key_D, looking({0, 0, 1}, north));
        row("E looks west from the east", Qt::Key_E, looking({-1, 0, 0}, zenith));
        row("W looks east from the west", Qt::Key_W, looking({1, 0, 0}, zenith));
        row("N looks south from the north", Qt::Key_N, looking({0, -1, 0}, zenith));
        row("S looks north from the south", Qt::Key_S, looking({0, 1, 0}, zenith));
        row("L looks along the plane's normal", Qt::Key_L, looking({0, 0, 1}));
        row("Home frames the scene", Qt::Key_Home, [](Vw3AView& view, int) {
            QVERIFY2((focalPoint(view) - SbVec3f(10, 20, 30)).length() < 0.5f, qPrintable(text(focalPoint(view))));
        });
        row("O goes orthographic", Qt::Key_O, projection(SoOrthographicCamera::getClassTypeId()));
        row("P comes back to perspective", QKeySequence(Qt::Key_O, Qt::Key_P), projection(SoPerspectiveCamera::getClassTypeId()));
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
        oblique.axis[0] = oblique.axis[1] = 1.0;
        oblique.axis[2] = 0.3;
        oblique.angle = 0.7;
        view->setCameraState(oblique);
        view->setFullScreen(fullScreen);
        QSignalSpy changed(view.get(), &Vw3AView::cameraChanged);
        const auto sendKeys = [&](void (*send)(QWindow*, Qt::Key, Qt::KeyboardModifiers, int)) {
            for (int i = 0; i < keys.count(); ++i)
                send(view->getViewer()->getRenderArea(), Qt::Key(keys[i] & ~Qt::KeyboardModifierMask),
                     Qt::KeyboardModifiers(keys[i] & Qt::KeyboardModifierMask), -1);
        };
        // Releases alone do nothing: the press is what counts.
        const Vug::CameraState camera = view->getCameraState();
        const VugSectionDefinition section = view->getSectionModel()->getSectionDefinition();
        sendKeys(&QTest::keyRelease);
        QCOMPARE(view->getCameraState(), camera);
        QVERIFY(view->getSectionModel()->getSectionDefinition() == section);
        QVERIFY(view->getViewingMode()->isChecked());
        QCOMPARE(view->isFullScreen(), fullScreen);
        sendKeys(&QTest::keyClick);
        check(*view, changed.count());
        view->setFullScreen(false);
    }

    void exportsShowTheScene()
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
        // The usual words, then the system's own reason.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("File system full or write protected\\?\\n.*No such file"));
        QVERIFY(!view->saveImage(dir.filePath(QStringLiteral("missing/folder/view.png"))));

        // The scene saved as an Inventor file reads back with the view's own graph.
        const QString ivPath = dir.filePath(QStringLiteral("scene.iv"));
        QVERIFY(view->saveToIvFile(ivPath));
        SoInput input;
        QVERIFY(input.openFile(QFile::encodeName(ivPath).constData()));
        SoSeparator* readBack = SoDB::readAll(&input);
        QVERIFY(readBack);
        const auto read = SoRef(readBack);
        QVERIFY(find(read.get(), "vw3aview_scene_root"));
        QVERIFY(find(read.get(), ("visibility_switch_for_" + cube.getInventorName()).toLatin1()));
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
        QCOMPARE(view->getImage(64, 48).size(), QSize(64, 48));
    }

    // The gnomon sits bottom left, the compass top right, each drawn only while asked for.
    void decorationsShowInTheirCorners()
    {
        auto view = makeView();
        view->resize(320, 320);
        view->setWhiteBackground(true);
        view->toggleAxes(false);
        view->setLegendEnabled(false);
        QVERIFY(showAndWait(*view));
        for (const bool gnomon : {true, false}) {
            view->toggleGnomon(gnomon);
            view->toggleCompass(!gnomon);
            const QImage image = view->getImage(1.0);
            // The pixels of a corner that are not the plain white background.
            const auto markedPixels = [&image](bool left, bool top) {
                const QSize third = image.size() / 3;
                const QPoint corner(left ? 0 : image.width() - third.width(), top ? 0 : image.height() - third.height());
                return third.width() * third.height() - ImageChecks::countNear(image.copy(QRect(corner, third)), Qt::white, 24);
            };
            QCOMPARE(markedPixels(true, false) > 20, gnomon);
            QCOMPARE(markedPixels(false, true) > 20, !gnomon);
            QCOMPARE(markedPixels(true, true), 0);
        }
    }

    // The legend of a variable is titled with its name and unit and spans its defined values;
    // its action is there only while a legend is, and shows and hides it.
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
        QAction* action = view->getAction(Vw3AView::LEGEND);
        QVERIFY(!action->isEnabled());
        const KbdVariable variable(QStringLiteral("Porosity"), {0.1, KbbGlobal::D_FFFF, 0.3, qQNaN(), 0.2},
                                   unit.isEmpty() ? KbuUnit() : KbuUnit::fromKey(unit));
        view->setLegend(variable);
        view->setLegendEnabled(true);
        QVERIFY(view->isLegendShown());
        QVERIFY(action->isEnabled() && action->isChecked());
        const QStringList shown = texts(view->getRoot());
        QVERIFY2(shown.contains(title), qPrintable(shown.join(QStringLiteral(" | "))));
        // Ticks run from the lowest to the highest defined value, the undefined ones left out.
        QVERIFY2(shown.contains(QStringLiteral("0.1")) && shown.contains(QStringLiteral("0.3")),
                 qPrintable(shown.join(QStringLiteral(" | "))));
        action->trigger();
        QVERIFY(!view->isLegendShown() && !texts(view->getRoot()).contains(title));
        action->trigger();
        QVERIFY(view->isLegendShown());
        view->invalidateLegend();
        QVERIFY(!view->isLegendShown());
        QVERIFY(!action->isEnabled());
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

        const auto row = [](const char* name, int mode, const char* text, int interaction = Vg3SceneInteractor::PICKING) {
            QTest::newRow(name) << mode << QString::fromUtf8(text) << interaction;
        };
        row("viewing", Vw3AView::VIEWING_MODE, "Viewing mode", Vg3SceneInteractor::VIEWING);
        row("picking", Vw3AView::PICKING_MODE, "Picking mode");
        row("seeking", Vw3AView::SEEKING_MODE, "Seek mode", Vg3SceneInteractor::SEEKING);
        row("ruler", Vw3AView::RULER_MODE, "Ruler mode", Vg3SceneInteractor::RULER);
        row("knife picks", Vw3AView::KNIFE_MODE, "Knife mode");
        row("fence picks", Vw3AView::FENCE_MODE, "Fence mode");
        row("one point picks", Vw3AView::PICK_1_POINT_MODE, "Set points from picking");
        row("three points pick", Vw3AView::PICK_3_POINTS_MODE, "Set the plane from points");
        row("several points pick", Vw3AView::PICK_MULTIPLE_POINTS_MODE, "Add fence points");
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
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("fromTheView");
        for (int row = 0; row < int(std::size(kToggles)); ++row) {
            QTest::addRow("%s set by the view", kToggles[row].name) << row << true;
            if (kToggles[row].action != Vw3AView::SECTION_PROPERTIES)
                QTest::addRow("%s toggled by the user", kToggles[row].name) << row << false;
        }
    }

    void checkableActionsFollowTheView()
    {
        QFETCH(int, row);
        QFETCH(bool, fromTheView);
        const int action = kToggles[row].action;
        Vw3ExaminerView view;
        QAction* a = view.getAction(Vw3AView::Action(action));
        QVERIFY(a && a->isCheckable());
        QSignalSpy toggled(a, &QAction::toggled);
        const bool target = !a->isChecked();
        if (fromTheView) (view.*kToggles[row].set)(target);
        else a->trigger();
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
    }
};

QTEST_MAIN(TestVw3AView)
#include "tst_gl_vw3aview.moc"
