#include "Vw3AView.h"

#include "Vw3IContextMenuCallback.h"
#include "Vw3Legend_p.h"
#include "Vw3NodeSet.h"
#include "Vw3OivViewer.h"
#include "Vw3PickStack.h"
#include "Vw3RenderAreaQWindow.h"
#include "Vw3SeekInfo.h"
#include "Vw3ViewActions.h"
#include "Vw3ViewExport.h"
#include "Vw3ViewShortcuts.h"

#include <KbbDebug.h>
#include <KbdAVariable.h>
#include <KbeError.h>
#include <KbgFence.h>
#include <KbgPlane.h>
#include <KbgRotation.h>
#include <SoCameraInteractor.h>
#include <SoRef.h>
#include <Vg3ANode.h>
#include <Vg3ATool.h>
#include <Vg3Axes.h>
#include <Vg3Compass.h>
#include <Vg3Gnomon.h>
#include <Vg3OpenInventor.h>
#include <Vg3Ruler.h>
#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <VgpIPickHandler.h>
#include <VssProject.h>
#include <VssProjectCollection.h>
#include <VugColorScale.h>
#include <VugSectionDefinition.h>
#include <VupPreferences3DViews.h>
#include <VupPreferencesGraphic.h>
#include <VwvIAcceptDrops.h>

#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#include <Inventor/SoPath.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoHandleEventAction.h>
#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoCallback.h>
#include <Inventor/nodes/SoCamera.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/SoPickedPoint.h>

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace {

SbVec3f toSb(const KbgVector3D& v) { return SbVec3f(float(v.x()), float(v.y()), float(v.z())); }

QString colorName(const QColor& c) { return c.name(QColor::HexRgb); }

QColor inverted(const QColor& c) { return QColor(255 - c.red(), 255 - c.green(), 255 - c.blue()); }

} // namespace

class Vw3AViewPrivate
{
public:
    Vw3OivViewer* viewer = nullptr;
    SoRef<SoSeparator> root;
    SoEventCallback* shortcuts = nullptr;
    SoSeparator* inventorSlots = nullptr;
    SoSeparator* bboxCaching = nullptr;
    SoCallback* traversalCallback = nullptr;
    SoSeparator* sceneRoot = nullptr;
    SoSeparator* toolsRoot = nullptr;
    SoSeparator* decorations = nullptr;
    std::unique_ptr<Vw3NodeSet> nodeSet;

    std::unique_ptr<Vg3SectionModel> sectionModel;
    std::unique_ptr<Vg3Ruler> ruler;
    // The pick handlers, over the overlay that shows the help of the one on top.
    std::unique_ptr<Vw3PickStack> pickStack;
    std::unique_ptr<Vw3Legend_p> legend;
    std::unique_ptr<Vw3SeekInfo> seekInfo;
    std::unique_ptr<Vg3Axes> axes;
    std::unique_ptr<Vg3Gnomon> gnomon;
    std::unique_ptr<Vg3Compass> compass;
    std::unique_ptr<Vg3Annotation> title;
    std::unique_ptr<Vg3Annotation> textOverlay;

    QColor background;
    QColor foreground;
    bool invertColors = false;
    bool whiteBackground = false;
    float zScale = 1.0f;
    bool zScaleAuto = false;
    KbgVector3D offset;
    KbgBox boundingBox;
    bool nodeRebuild = true;

    bool initialized = false;
    bool pendingLookAt = false;
    // A camera state was given: the first show does not frame the scene over it.
    bool cameraSet = false;
    bool firstShowDone = false;
    bool activated = false;
    bool alwaysActivated = false;
    QString viewRef;
    QPointer<VssProject> project;
    QString reportTitle;
    QString reportDescription;

    std::unique_ptr<Vw3ViewActions> actions;
    std::unique_ptr<Vw3ViewShortcuts> keys;
    Vw3IContextMenuCallback* contextMenuCallback = nullptr;
    bool popupMenuEnabled = true;
    bool clipPlaneOnly = false;
    bool clippingProperties = false;
    bool fullScreen = false;
    bool offscreen = false;
    VwvIAcceptDrops* dropAcceptor = nullptr;
    // Null once the preferences are gone.
    VuoAObservable<VupPreferenceModif>* preferences3DViews = nullptr;
    VuoAObservable<VupPreferenceModif>* preferencesGraphic = nullptr;
};

Vw3AView::Vw3AView(QWidget* parent)
    : QWidget(parent)
    , _d(new Vw3AViewPrivate)
{
    if (!Vg3OpenInventor::getInstance()->isInitialized())
        Vg3OpenInventor::getInstance()->init();
    setObjectName(QStringLiteral("view3d"));
    setFocusPolicy(Qt::StrongFocus);
    setWhatsThis(getBindingsHelp());

    _d->background = VupPreferences3DViews::getBackgroundColor();
    _d->foreground = VupPreferences3DViews::getForegroundColor();
    _d->whiteBackground = VupPreferences3DViews::isWhiteBackground();
    _d->zScale = VupPreferencesGraphic::getZScale();
    _d->zScaleAuto = VupPreferencesGraphic::isZScaleAutomatic();
    int alignment = VupPreferences3DViews::getLegendAlignment();
    if (!Vu::isValidPosition(alignment))
        alignment = Vu::RIGHT | Vu::BOTTOM;
    _d->legend.reset(new Vw3Legend_p(_d->background, _d->foreground, alignment));
    _d->legend->setEnabled(VupPreferences3DViews::isLegendVisible());
    _d->seekInfo.reset(new Vw3SeekInfo);

    _d->viewer = new Vw3OivViewer(this);
    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_d->viewer);

    _buildGraph();
    _d->viewer->setSceneGraph(_d->root);
    _d->ruler.reset(new Vg3Ruler(getSceneInteractor()));
    _d->ruler->setFrame(_d->zScale, _d->offset);
    addTool(_d->ruler.get());

    _d->sectionModel.reset(new Vg3SectionModel);
    _d->sectionModel->setUnfoldFence(false);
    _d->sceneRoot->insertChild(_d->sectionModel->getClipNode(), 0);
    connect(_d->sectionModel.get(), &Vg3SectionModel::sectionDefinitionChanged, this,
            &Vw3AView::_sectionDefinitionChanged);

    _d->actions.reset(new Vw3ViewActions(this, [this] { _updateDecorations(); }));
    _d->keys.reset(new Vw3ViewShortcuts(this));
    _setupTools();

    Vg3SceneInteractor* interactor = getSceneInteractor();
    interactor->setProjectionType(VupPreferences3DViews::isPerspective() ? Vg3SceneInteractor::PERSPECTIVE
                                                                         : Vg3SceneInteractor::ORTHOGRAPHIC);
    connect(interactor, &Vg3SceneInteractor::cameraChanged, this, &Vw3AView::_emitCameraChanged);
    // On the GL window itself: the container widget's cursor does not reach a native child.
    connect(interactor, &Vg3SceneInteractor::cursorChangeRequested, this,
            [this](Qt::CursorShape shape) { _d->viewer->getRenderArea()->setCursor(shape); });
    Vw3RenderAreaQWindow* area = _d->viewer->getRenderArea();
    connect(area, &Vw3RenderAreaQWindow::renderAreaActivated, this, [this] {
        if (!_d->activated && !_d->alwaysActivated)
            setActivated(true);
    });
    connect(area, &Vw3RenderAreaQWindow::showContextMenu, this, &Vw3AView::_showContextMenu);
    _d->seekInfo->setStepCallback([this](bool finished) {
        if (finished)
            _emitCameraChanged();
    });

    _d->axes->setVisible(VupPreferences3DViews::isAxesVisible());
    _d->axes->setGridVisible(VupPreferences3DViews::isAxesGridVisible());
    _d->gnomon->setVisible(VupPreferences3DViews::isGnomonVisible());
    _d->compass->setVisible(VupPreferences3DViews::isCompassVisible());
    _applyColors();
    _updateDecorations();

    _d->preferences3DViews = VupPreferences3DViews::getInstance();
    _d->preferencesGraphic = VupPreferencesGraphic::getInstance();
    _d->preferences3DViews->addObserver(this);
    _d->preferencesGraphic->addObserver(this);
    _d->project = VssProjectCollection::getInstance()->getCurrentProject();
}

Vw3AView::~Vw3AView()
{
    // Nodes that outlive the view stop telling it of their end.
    _d->nodeSet.reset();
    if (_d->preferences3DViews)
        _d->preferences3DViews->removeObserver(this);
    if (_d->preferencesGraphic)
        _d->preferencesGraphic->removeObserver(this);
    _d->seekInfo->stop();
    _d->seekInfo->setStepCallback({});
    // The viewer renders the graph; it goes first, then the graph's last reference.
    _d->viewer->setSceneGraph(nullptr);
    delete _d->viewer;
    _d->viewer = nullptr;
    _d->root.reset();
}

void Vw3AView::_buildGraph()
{
    _d->root = new SoSeparator;
    _d->root->setName("vw3aview_root");

    _d->shortcuts = new SoEventCallback;
    _d->shortcuts->setName("vw3aview_shortcuts");
    _d->shortcuts->addEventCallback(SoKeyboardEvent::getClassTypeId(), &Vw3AView::_shortcutsCallback, this);
    _d->root->addChild(_d->shortcuts);

    _d->inventorSlots = new SoSeparator;
    _d->inventorSlots->setName("vw3aview_inventor_slots");
    _d->root->addChild(_d->inventorSlots);
    // The pick handlers' slot: their help overlay, and the mouse events they get before the
    // camera (keys reach them through the shortcuts callback, before the shortcuts).
    _d->pickStack.reset(new Vw3PickStack(createInventorSlot()));
    // In picking mode a left press on the data is a pick, offered to the listeners.
    _d->pickStack->setFallback([this](const SoMouseButtonEvent* event, SoHandleEventAction* action) {
        if (getSceneInteractor()->getInteractionMode() != Vg3SceneInteractor::PICKING
            || event->getButton() != SoMouseButtonEvent::BUTTON1)
            return false;
        if (event->getState() == SoButtonEvent::DOWN) {
            const Vu::SelectionFlag flag = event->wasShiftDown() ? (event->wasCtrlDown() ? Vu::DESELECT : Vu::SELECT)
                                           : event->wasCtrlDown() ? Vu::TOGGLE
                                                                  : Vu::REPLACE;
            bool handled = false;
            emit picked(flag, action->getPickedPoint(), handled);
        }
        return true;
    });

    _d->root->addChild(_d->legend->getRoot());

    _d->bboxCaching = new SoSeparator;
    _d->bboxCaching->setName("vw3aview_bbox_caching");
    // Never culled as a whole: its callback tells the view it has been drawn, even when the
    // camera looks away from the data.
    _d->bboxCaching->renderCulling = SoSeparator::OFF;
    _d->traversalCallback = new SoCallback;
    _d->traversalCallback->setName("vw3aview_traversable_callback");
    _d->traversalCallback->setCallback(&Vw3AView::_traversalCallback, this);
    _d->bboxCaching->addChild(_d->traversalCallback);
    _d->sceneRoot = new SoSeparator;
    _d->sceneRoot->setName("vw3aview_scene_root");
    _d->bboxCaching->addChild(_d->sceneRoot);
    _d->root->addChild(_d->bboxCaching);

    _d->toolsRoot = new SoSeparator;
    _d->toolsRoot->setName("vw3aview_tools_root");
    _d->root->addChild(_d->toolsRoot);
    // A node destroyed while shown leaves the view as if removed.
    _d->nodeSet.reset(new Vw3NodeSet(_d->sceneRoot, _d->toolsRoot, [this](Vg3ANode* node) {
        _updateBoundingBox();
        emit nodeRemoved(this, node);
    }));

    // Overlays after the scene, so they are drawn over it.
    _d->decorations = new SoSeparator;
    _d->decorations->setName("vw3aview_decorations");
    _d->axes.reset(new Vg3Axes);
    _d->decorations->addChild(_d->axes->getRoot());
    _d->gnomon.reset(new Vg3Gnomon);
    _d->decorations->addChild(_d->gnomon->getRoot());
    _d->compass.reset(new Vg3Compass);
    _d->decorations->addChild(_d->compass->getRoot());
    _d->title.reset(new Vg3Annotation(Vg3Annotation::TOP_CENTER));
    _d->title->setVisible(false);
    _d->decorations->addChild(_d->title->getRoot());
    _d->textOverlay.reset(new Vg3Annotation(Vg3Annotation::BOTTOM_LEFT));
    _d->textOverlay->setVisible(false);
    _d->decorations->addChild(_d->textOverlay->getRoot());
    _d->root->addChild(_d->decorations);

    _d->root->addChild(_d->seekInfo->getTargetNode());
}

void Vw3AView::_setupTools() {}

// ---- nodes and tools --------------------------------------------------------------------

void Vw3AView::addNode(Vg3ANode* node, bool visible)
{
    if (!node) {
        qWarning("Vw3AView::addNode: no node");
        return;
    }
    if (_d->nodeSet->nodes().contains(node)) {
        qWarning("Vw3AView::addNode: the node \"%s\" is already in the view", qPrintable(node->getName()));
        return;
    }
    node->setZScale(_d->zScale);
    node->setOffset(_d->offset);
    _d->nodeSet->addNode(node, visible);
    _updateBoundingBox();
    emit nodeAdded(this, node);
}

void Vw3AView::addTool(Vg3ATool* tool, bool visible)
{
    if (!tool) {
        qWarning("Vw3AView::addTool: no tool");
        return;
    }
    if (_d->nodeSet->tools().contains(tool)) {
        qWarning("Vw3AView::addTool: the tool \"%s\" is already in the view", qPrintable(tool->getName()));
        return;
    }
    _d->nodeSet->addTool(tool, visible);
}

void Vw3AView::removeNode(Vg3ANode* node)
{
    if (!_d->nodeSet->nodes().contains(node)) {
        qWarning("Vw3AView::removeNode: the node is not in the view");
        return;
    }
    _d->nodeSet->removeNode(node);
    _updateBoundingBox();
    emit nodeRemoved(this, node);
}

void Vw3AView::removeTool(Vg3ATool* tool)
{
    if (!_d->nodeSet->tools().contains(tool)) {
        qWarning("Vw3AView::removeTool: the tool is not in the view");
        return;
    }
    _d->nodeSet->removeTool(tool);
}

void Vw3AView::setNodeVisibility(Vg3ANode* node, bool visible)
{
    SoSwitch* visibility = _d->nodeSet->nodes().value(node);
    if (!visibility) {
        qWarning("Vw3AView::setNodeVisibility: the node is not in the view");
        return;
    }
    if (Vw3NodeSet::show(visibility, visible))
        _updateBoundingBox();
}

bool Vw3AView::isNodeVisible(Vg3ANode* node) const { return Vw3NodeSet::isShown(_d->nodeSet->nodes().value(node)); }

void Vw3AView::setToolVisibility(Vg3ATool* tool, bool visible)
{
    SoSwitch* visibility = _d->nodeSet->tools().value(tool);
    if (!visibility) {
        qWarning("Vw3AView::setToolVisibility: the tool is not in the view");
        return;
    }
    Vw3NodeSet::show(visibility, visible);
}

bool Vw3AView::isToolVisible(Vg3ATool* tool) const { return Vw3NodeSet::isShown(_d->nodeSet->tools().value(tool)); }

void Vw3AView::setNodePickable(Vg3IPickable* pickable, bool on)
{
    if (!pickable) {
        qWarning("Vw3AView::setNodePickable: no node");
        return;
    }
    pickable->setPickable(on);
    const auto& nodes = _d->nodeSet->nodes();
    for (auto it = nodes.cbegin(); it != nodes.cend(); ++it)
        if (static_cast<Vg3IPickable*>(it.key()) == pickable)
            Vw3NodeSet::setPickable(it.value(), on);
}

int Vw3AView::getVisibleNodesCount() const
{
    const auto& nodes = _d->nodeSet->nodes();
    return int(std::count_if(nodes.cbegin(), nodes.cend(), &Vw3NodeSet::isShown));
}

void Vw3AView::enableNodeRebuild(bool enable)
{
    if (_d->nodeRebuild == enable)
        return;
    _d->nodeRebuild = enable;
    if (enable)
        _updateBoundingBox();
}

SoSeparator* Vw3AView::_getSceneRoot() const { return _d->sceneRoot; }
SoSeparator* Vw3AView::_getToolsRoot() const { return _d->toolsRoot; }
const QMap<Vg3ANode*, SoSwitch*>& Vw3AView::_getNodes() const { return _d->nodeSet->nodes(); }
const QMap<Vg3ATool*, SoSwitch*>& Vw3AView::_getTools() const { return _d->nodeSet->tools(); }
SoSeparator* Vw3AView::getRoot() const { return _d->root; }

SoSeparator* Vw3AView::createInventorSlot()
{
    auto slot = new SoSeparator;
    _d->inventorSlots->addChild(slot);
    return slot;
}

void Vw3AView::freeInventorSlot(SoSeparator* slot)
{
    const int index = slot ? _d->inventorSlots->findChild(slot) : -1;
    if (index < 0) {
        qWarning("Vw3AView::freeInventorSlot: not a slot of this view");
        return;
    }
    _d->inventorSlots->removeChild(index);
}

void Vw3AView::_updateBoundingBox()
{
    if (!_d->nodeRebuild)
        return;
    SoGetBoundingBoxAction action(_d->viewer->getRenderArea()->getViewportRegion());
    action.apply(_d->sceneRoot);
    const SbBox3f box = action.getBoundingBox();
    KbgBox result;
    if (!box.isEmpty()) {
        const SbVec3f& lo = box.getMin();
        const SbVec3f& hi = box.getMax();
        result = KbgBox(KbgVector3D(lo[0], lo[1], lo[2]), KbgVector3D(hi[0], hi[1], hi[2]));
    }
    if (_d->zScaleAuto && !result.isEmpty()) {
        // Exaggerate flat scenes until their height is a fifth of their width.
        const KbgVector3D size = result.size();
        const double width = std::max(size.x(), size.y());
        const double height = size.z() / _d->zScale;
        const float automatic = (height > 0.0 && width > 0.0) ? float(std::max(1.0, 0.2 * width / height)) : 1.0f;
        if (std::isfinite(automatic) && std::fabs(automatic - _d->zScale) > 1e-4f * automatic) {
            _d->zScale = automatic;
            _updateNodesZScale();
            return;
        }
    }
    _d->boundingBox = result;
    _d->axes->setBox(box);
    _d->axes->setZScale(_d->zScale);
    _d->axes->setLabelOffset(SbVec3d(_d->offset.x(), _d->offset.y(), _d->offset.z()));
}

KbgBox Vw3AView::getBoundingBox() const { return _d->boundingBox; }

void Vw3AView::setZScale(float zScale)
{
    if (!std::isfinite(zScale) || zScale <= 0.0f) {
        qWarning("Vw3AView::setZScale: the vertical scale must be positive");
        return;
    }
    _d->zScaleAuto = false;
    if (zScale == _d->zScale)
        return;
    _d->zScale = zScale;
    _updateNodesZScale();
}

float Vw3AView::getZScale() const { return _d->zScale; }

void Vw3AView::setZScaleAuto(bool automatic)
{
    if (_d->zScaleAuto == automatic)
        return;
    _d->zScaleAuto = automatic;
    _updateBoundingBox();
}

bool Vw3AView::isZScaleAutomatic() const { return _d->zScaleAuto; }

void Vw3AView::_updateNodesZScale()
{
    for (Vg3ANode* node : _d->nodeSet->nodes().keys())
        node->setZScale(_d->zScale);
    _d->ruler->setFrame(_d->zScale, _d->offset);
    _updateBoundingBox();
}

KbgVector3D Vw3AView::getOffset() const { return _d->offset; }

void Vw3AView::setOffset(const KbgVector3D& offset)
{
    if (!offset.isFinite()) {
        qWarning("Vw3AView::setOffset: the offset is not finite");
        return;
    }
    if (offset == _d->offset)
        return;
    _d->offset = offset;
    // Nodes subtract the offset in double precision before Inventor's floats; a translation
    // node would come too late for map coordinates.
    for (Vg3ANode* node : _d->nodeSet->nodes().keys())
        node->setOffset(offset);
    _d->ruler->setFrame(_d->zScale, _d->offset);
    _updateBoundingBox();
    emit offsetChanged(offset);
}

// ---- camera -------------------------------------------------------------------------------

Vg3SceneInteractor* Vw3AView::getSceneInteractor() const { return _d->viewer->getSceneInteractor().data(); }
Vw3OivViewer* Vw3AView::getViewer() const { return _d->viewer; }

void Vw3AView::viewAll()
{
    _d->seekInfo->stop();
    // The data only: the axes' labels and the overlays would pull the frame off centre.
    Vg3SceneInteractor* interactor = getSceneInteractor();
    SoCameraInteractor* camera = interactor->getCameraInteractor();
    if (!camera)
        return;
    camera->viewAll(_d->bboxCaching, interactor->getViewportRegion());
    interactor->updateCameraClippingPlanes();
    _emitCameraChanged();
}

void Vw3AView::lookAt(const KbgBox& box, float duration)
{
    if (box.isEmpty()) {
        qWarning("Vw3AView::lookAt: the box is empty");
        return;
    }
    lookAt(box.center(), box.halfSize(), duration);
}

void Vw3AView::lookAt(const KbgVector3D& center, const KbgVector3D& halfSize, float duration)
{
    Vg3SceneInteractor* interactor = getSceneInteractor();
    if (!interactor || !interactor->getCamera())
        return;
    if (!center.isFinite() || !halfSize.isFinite() || !std::isfinite(duration)) {
        qWarning("Vw3AView::lookAt: the box or the duration is not finite");
        return;
    }
    Vw3SeekInfo* seek = _d->seekInfo.get();
    seek->stop();
    seek->setTarget(center);
    seek->setViewBoxSize(halfSize);
    seek->setDuration(std::max(duration, 0.0f));
    if (_d->initialized)
        _startPendingLookAt();
    else
        _d->pendingLookAt = true;
}

void Vw3AView::_startPendingLookAt()
{
    _d->pendingLookAt = false;
    Vg3SceneInteractor* interactor = getSceneInteractor();
    _d->seekInfo->setCamera(interactor->getCamera());
    _d->seekInfo->setViewportRegion(_d->viewer->getRenderArea()->getViewportRegion());
    if (interactor->getCameraInteractor())
        interactor->getCameraInteractor()->setRotationCenter(toSb(_d->seekInfo->target()));
    _d->seekInfo->start();
}

void Vw3AView::cancelPendingCameraChange()
{
    _d->pendingLookAt = false;
    _d->seekInfo->stop();
}

void Vw3AView::setCameraOrientation(const KbgRotation& rotation)
{
    SoCameraInteractor* camera = getSceneInteractor()->getCameraInteractor();
    if (!camera)
        return;
    camera->setOrientation(SbRotation(float(rotation.x()), float(rotation.y()), float(rotation.z()),
                                      float(rotation.w())));
    _emitCameraChanged();
}

Vug::CameraState Vw3AView::getCameraState() const { return getSceneInteractor()->getCameraState(); }

void Vw3AView::setCameraState(const Vug::CameraState& state)
{
    if (!state.isValid()) {
        qWarning("Vw3AView::setCameraState: the camera state is not valid");
        return;
    }
    cancelPendingCameraChange();
    _d->cameraSet = true;
    getSceneInteractor()->setCameraState(state);
}

bool Vw3AView::isInitialized() const
{
    return _d->initialized;
}

bool Vw3AView::_isCameraSet() const
{
    return _d->cameraSet;
}

void Vw3AView::resetViewer()
{
    cancelPendingCameraChange();
    getSceneInteractor()->setProjectionType(VupPreferences3DViews::isPerspective() ? Vg3SceneInteractor::PERSPECTIVE
                                                                                   : Vg3SceneInteractor::ORTHOGRAPHIC);
    getSceneInteractor()->viewFromTop();
    viewAll();
}

void Vw3AView::setViewMode(bool viewing) { getMode(viewing ? VIEWING_MODE : PICKING_MODE)->trigger(); }

void Vw3AView::_emitCameraChanged()
{
    // A projection switch replaces the camera the overlays follow.
    if (_d->gnomon->getCamera() != getSceneInteractor()->getCamera())
        _updateDecorations();
    emit cameraChanged();
    emit cameraStateChanged(getSceneInteractor()->getCameraState());
}

// ---- initialisation and activation --------------------------------------------------------

void Vw3AView::_traversalCallback(void* data, SoAction* action)
{
    auto self = static_cast<Vw3AView*>(data);
    if (!self || !action->isOfType(SoGLRenderAction::getClassTypeId()) || self->_d->initialized)
        return;
    // The first frame: the render area is ready. The camera must not change during the
    // traversal, so the rest waits for the event loop.
    QMetaObject::invokeMethod(self, [self] { self->_checkInitialized(); }, Qt::QueuedConnection);
}

void Vw3AView::_checkInitialized()
{
    if (_d->initialized || !_d->viewer->getRenderArea()->isInitialized())
        return;
    _d->initialized = true;
    _initialized();
}

void Vw3AView::_initialized()
{
    if (_d->pendingLookAt)
        _startPendingLookAt();
}

void Vw3AView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    _d->viewer->getRenderArea()->requestUpdate();
}

void Vw3AView::setActivated(bool activated)
{
    if (_d->activated == activated)
        return;
    _d->activated = activated;
    _d->viewer->getRenderArea()->setActivated(_d->alwaysActivated || _d->activated);
    // The highlight frame of the active view.
    _d->viewer->setStyleSheet(_d->activated && !_d->alwaysActivated
                                  ? QStringLiteral("Vw3OivViewer { border: 1px solid palette(highlight); }")
                                  : QString());
    QWidget::update();
    if (!_d->alwaysActivated)
        emit viewActivated(activated, _d->viewRef);
}

bool Vw3AView::isActivated() const { return _d->activated; }

void Vw3AView::setAlwaysActivated(bool always)
{
    _d->alwaysActivated = always;
    _d->viewer->getRenderArea()->setActivated(_d->alwaysActivated || _d->activated);
}

bool Vw3AView::isAlwaysActivated() const { return _d->alwaysActivated; }
void Vw3AView::setViewRef(const QString& viewRef) { _d->viewRef = viewRef; }
QString Vw3AView::getViewRef() const { return _d->viewRef; }

void Vw3AView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && !_d->activated && !_d->alwaysActivated) {
        setActivated(true);
        event->accept();
        return;
    }
    QWidget::mousePressEvent(event);
}

// ---- keys ------------------------------------------------------------------------------

void Vw3AView::_shortcutsCallback(void* data, SoEventCallback* node)
{
    auto self = static_cast<Vw3AView*>(data);
    if (!self)
        return;
    // A picker on top of the stack sees the keys first (Escape to give up, say).
    auto key = static_cast<const SoKeyboardEvent*>(node->getEvent());
    VgpIPickHandler* top = self->topPickHandler();
    const bool down = key->getState() == SoButtonEvent::DOWN;
    if (top && (down ? top->keyPressed(key, node->getAction()) : top->keyReleased(key, node->getAction()))) {
        node->setHandled();
        return;
    }
    if (self->_d->keys)
        self->_d->keys->handle(node);
}

// ---- clipping and sections -----------------------------------------------------------------

Vg3SectionModel* Vw3AView::getSectionModel() const { return _d->sectionModel.get(); }
Vg3Ruler* Vw3AView::getRuler() const { return _d->ruler.get(); }

QStringList Vw3AView::describePick(const SoPickedPoint* picked) const
{
    if (!picked)
        return {};
    const SoPath* path = picked->getPath();
    const auto& nodes = _d->nodeSet->nodes();
    for (int i = path->getLength() - 1; i >= 0; --i)
        for (auto it = nodes.cbegin(); it != nodes.cend(); ++it)
            if (it.key()->getRoot() == path->getNode(i))
                return it.key()->describe(*picked);
    return {};
}

QString Vw3AView::getClipPlaneKeysHelp()
{
    return tr("+ : Move clipping plane forward\n- : Move clipping plane backward\nShift + : Increase slice "
              "width\nShift - : Decrease slice width\nL : Section view\nShift L : Reverse Clip Plane Normal\n");
}

QString Vw3AView::getBindingsHelp()
{
    return tr("Left drag: orbit\n"
              "Right drag, or Ctrl or Shift + left drag: pan\n"
              "Wheel: zoom toward the cursor; with Ctrl, ten times faster\n"
              "Right click: the view's menu\n"
              "Picking mode: click the data to read it\n"
              "Ruler mode: click, move, click to measure; Shift keeps it level or plumb\n"
              "Home: view all\n"
              "U D E W N S: view from top, bottom, east, west, north, south\n"
              "P / O: perspective / orthographic\n"
              "+ / -: step the clip plane; with Shift, widen / narrow the slice\n"
              "L: view from the section; Shift+L: reverse the plane\n"
              "C: knife mode\n"
              "Alt+Return: leave fullscreen");
}

void Vw3AView::setClipPlane(const KbgPlane& plane) { _d->sectionModel->setClipPlane(plane); }

void Vw3AView::setPlane(const KbgVector3D& point, const KbgVector3D& normal)
{
    _d->sectionModel->setPlane(point, normal);
}

void Vw3AView::flipPlane() { _d->sectionModel->flipPlane(); }
void Vw3AView::flipClipPlane() { _d->sectionModel->flipPlane(); }
void Vw3AView::setClippingMode(KbgClipPlaneDefinition::Mode mode) { _d->sectionModel->setClippingMode(mode); }

void Vw3AView::setClipPlaneOnlyMode(bool only)
{
    _d->clipPlaneOnly = only;
    for (Action a : {FENCE, FENCE_POINTS, FENCE_PATH})
        _d->actions->setEnabled(a, !only);
}

void Vw3AView::toggleClipping(bool enabled) { _d->sectionModel->setClippingEnabled(enabled); }

void Vw3AView::toggleClippingProperties(bool shown)
{
    _d->clippingProperties = shown;
    _d->actions->setChecked(SECTION_PROPERTIES, shown);
}

void Vw3AView::toggleClippingManip() {}

void Vw3AView::resetClipping()
{
    if (_d->boundingBox.isEmpty()) {
        qWarning("Vw3AView::resetClipping: the scene is empty");
        return;
    }
    _d->sectionModel->reset(_d->boundingBox);
}

void Vw3AView::resetClippingPosition()
{
    if (_d->boundingBox.isEmpty()) {
        qWarning("Vw3AView::resetClippingPosition: the scene is empty");
        return;
    }
    _d->sectionModel->resetPosition(_d->boundingBox);
}

void Vw3AView::clipPlaneStepForward() { _d->sectionModel->stepForward(); }
void Vw3AView::clipPlaneStepBackward() { _d->sectionModel->stepBackward(); }
void Vw3AView::clipPlaneIncreaseSliceWidth() { _d->sectionModel->increaseSliceWidth(); }
void Vw3AView::clipPlaneDecreaseSliceWidth() { _d->sectionModel->decreaseSliceWidth(); }
void Vw3AView::setFence(const KbgFence& fence) { _d->sectionModel->setFence(fence); }
void Vw3AView::setSection(const VugSectionDefinition& section) { _d->sectionModel->setSectionDefinition(section); }

void Vw3AView::cancelSectionModes()
{
    for (Mode m : {KNIFE_MODE, FENCE_MODE, PICK_1_POINT_MODE, PICK_3_POINTS_MODE, PICK_MULTIPLE_POINTS_MODE}) {
        if (_d->actions->mode(m)->isChecked()) {
            _d->actions->mode(VIEWING_MODE)->trigger();
            break;
        }
    }
}

void Vw3AView::_sectionDefinitionChanged(const VugSectionDefinition& definition)
{
    emit sectionDefinitionChanged(definition);
}

// ---- decorations and colours ---------------------------------------------------------------

void Vw3AView::toggleAxes(bool shown) { _d->axes->setVisible(shown); _updateDecorations(); }
void Vw3AView::toggleAxesGrid(bool shown) { _d->axes->setGridVisible(shown); _updateDecorations(); }
void Vw3AView::toggleGnomon(bool shown) { _d->gnomon->setVisible(shown); _updateDecorations(); }
void Vw3AView::toggleCompass(bool shown) { _d->compass->setVisible(shown); _updateDecorations(); }
void Vw3AView::toggleTitle(bool shown) { _d->title->setVisible(shown); }
void Vw3AView::toggleTextOverlay(bool shown) { _d->textOverlay->setVisible(shown); }
void Vw3AView::toggleAutomaticOrientationHelper(bool automatic) { _d->gnomon->setAutomatic(automatic); }
void Vw3AView::setTitle(const QString& title) { _d->title->setText(title); }
void Vw3AView::setTitlePosition(Vg3Annotation::AnnotationPosition position) { _d->title->setPosition(position); }
void Vw3AView::setTextOverlay(const QString& text) { _d->textOverlay->setText(text); }

void Vw3AView::setTextOverlayPosition(Vg3Annotation::AnnotationPosition position)
{
    _d->textOverlay->setPosition(position);
}

void Vw3AView::setTextOverlaySize(int size)
{
    if (size <= 0) {
        qWarning("Vw3AView::setTextOverlaySize: the size must be positive");
        return;
    }
    _d->textOverlay->setSize(size);
}

void Vw3AView::setWhiteBackground(bool white)
{
    if (_d->whiteBackground == white)
        return;
    _d->whiteBackground = white;
    _applyColors();
}

void Vw3AView::setInvertColors(bool invert)
{
    if (_d->invertColors == invert)
        return;
    _d->invertColors = invert;
    _applyColors();
}

bool Vw3AView::getInvertColors() const { return _d->invertColors; }

QColor Vw3AView::getBackgroundColor() const
{
    QColor color = _d->whiteBackground ? QColor(Qt::white) : _d->background;
    return _d->invertColors ? inverted(color) : color;
}

QColor Vw3AView::getForegroundColor() const
{
    QColor color = _d->whiteBackground ? QColor(Qt::black) : _d->foreground;
    return _d->invertColors ? inverted(color) : color;
}

void Vw3AView::_applyColors()
{
    const QColor back = getBackgroundColor();
    const QColor fore = getForegroundColor();
    setStyleSheet(QStringLiteral("QWidget#view3d { background-color: %1; }").arg(colorName(back)));
    _d->viewer->getRenderArea()->setClearColor(SbColorRGBA(float(back.redF()), float(back.greenF()),
                                                           float(back.blueF()), 1.0f));
    _d->axes->setColor(fore);
    _d->compass->setColor(fore);
    _d->title->setColor(fore);
    _d->textOverlay->setColor(fore);
    _d->legend->setColors(back, fore);
    _d->actions->setChecked(INVERT_COLORS, _d->invertColors);
}

void Vw3AView::_updateDecorations()
{
    SoCamera* camera = getSceneInteractor()->getCamera();
    _d->gnomon->connectCamera(camera);
    _d->compass->connectCamera(camera);
    _d->actions->setChecked(AXES, _d->axes->isVisible());
    _d->actions->setChecked(AXES_GRID, _d->axes->isGridVisible());
    _d->actions->setChecked(GNOMON, _d->gnomon->isVisible());
    _d->actions->setChecked(COMPASS, _d->compass->isVisible());
    _d->actions->setChecked(LEGEND, _d->legend->isEnabled());
    _d->actions->setEnabled(LEGEND, _d->legend->isAvailable());
    _d->actions->setEnabled(EDIT_LEGEND, _d->legend->isAvailable());
}

// ---- legend ------------------------------------------------------------------------------------

void Vw3AView::setLegend(const KbdAVariable& variable)
{
    VugColorScale scale = VugColorScale::named(VupPreferencesGraphic::getColorScale());
    const QPair<double, double> range = variable.getRange();
    if (range.first < range.second)
        scale.setRange(range.first, range.second);
    setLegend(variable, scale);
}

void Vw3AView::setLegend(const KbdAVariable& variable, const VugColorScale& scale)
{
    setLegend(scale, variable.getTitle(), variable.getFormat());
}

void Vw3AView::setLegend(const VugColorScale& scale, const QString& title, const KbbStringFormat& format,
                         bool discrete)
{
    _d->legend->setLegend(scale, title, format, discrete);
    _updateDecorations();
}

void Vw3AView::setLegendAligment(Vu::Position alignment)
{
    if (!Vu::isValidPosition(alignment)) {
        qWarning("Vw3AView::setLegendAligment: %d is not one horizontal and one vertical position", int(alignment));
        return;
    }
    _d->legend->setAlignment(alignment);
}

void Vw3AView::setLegendAvailable(bool available)
{
    _d->legend->setAvailable(available);
    _updateDecorations();
}

void Vw3AView::setLegendEnabled(bool enabled)
{
    _d->legend->setEnabled(enabled);
    _updateDecorations();
}

bool Vw3AView::isLegendShown() const { return _d->legend->isShown(); }

void Vw3AView::invalidateLegend()
{
    _d->legend->invalidate();
    _updateDecorations();
}

// ---- picking ------------------------------------------------------------------------------

void Vw3AView::pushPickHandler(VgpIPickHandler* handler)
{
    if (!handler) {
        qWarning("Vw3AView::pushPickHandler: no handler");
        return;
    }
    _d->pickStack->push(handler);
}

VgpIPickHandler* Vw3AView::popPickHandler()
{
    VgpIPickHandler* handler = _d->pickStack->pop();
    if (!handler)
        qWarning("Vw3AView::popPickHandler: the stack is empty");
    return handler;
}

VgpIPickHandler* Vw3AView::topPickHandler() const
{
    return _d->pickStack->top();
}

void Vw3AView::requestPickPoint(int count)
{
    const Mode mode = count == 1 ? PICK_1_POINT_MODE : count == 3 ? PICK_3_POINTS_MODE : PICK_MULTIPLE_POINTS_MODE;
    _d->actions->mode(mode)->trigger();
}

void Vw3AView::setContextMenuCallback(Vw3IContextMenuCallback* callback) { _d->contextMenuCallback = callback; }
void Vw3AView::setPopupMenuEnabled(bool enabled) { _d->popupMenuEnabled = enabled; }
bool Vw3AView::isPopupMenuEnabled() const { return _d->popupMenuEnabled; }

void Vw3AView::_fillContextMenu(QMenu* menu) { _d->actions->addContextMenuEntries(menu); }

void Vw3AView::_showContextMenu(const SoPickedPoint* picked, const QPoint& globalPosition)
{
    if (!_d->popupMenuEnabled)
        return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("view3d context menu"));
    _fillContextMenu(&menu);
    if (_d->contextMenuCallback)
        _d->contextMenuCallback->addContextMenuEntries(this, &menu, picked);
    menu.exec(globalPosition);
}

// ---- actions and modes ------------------------------------------------------------------------

QAction* Vw3AView::_makeAction(Action action) { return Vw3ViewActions::makeAction(action, this); }

QAction* Vw3AView::getViewingMode() const { return _d->actions->mode(VIEWING_MODE); }
QAction* Vw3AView::getPickingMode() const { return _d->actions->mode(PICKING_MODE); }
QAction* Vw3AView::getSeekingMode() const { return _d->actions->mode(SEEKING_MODE); }
QAction* Vw3AView::getRulerMode() const { return _d->actions->mode(RULER_MODE); }
QAction* Vw3AView::getKnifeMode() const { return _d->actions->mode(KNIFE_MODE); }
QAction* Vw3AView::getFenceMode() const { return _d->actions->mode(FENCE_MODE); }
QAction* Vw3AView::getPick1PointMode() const { return _d->actions->mode(PICK_1_POINT_MODE); }
QAction* Vw3AView::getPick3PointsMode() const { return _d->actions->mode(PICK_3_POINTS_MODE); }
QAction* Vw3AView::getPickMultiplePointsMode() const { return _d->actions->mode(PICK_MULTIPLE_POINTS_MODE); }

QAction* Vw3AView::getMode(int mode) const
{
    QAction* action = _d->actions->mode(mode);
    if (!action)
        qWarning("Vw3AView::getMode: no mode %d", mode);
    return action;
}

QAction* Vw3AView::getAction(Action action) const
{
    QAction* a = _d->actions->action(action);
    if (!a)
        qWarning("Vw3AView::getAction: no action %d", int(action));
    return a;
}

// ---- toolbars -------------------------------------------------------------------------------

QToolBar* Vw3AView::getToolbar() const { return _d->viewer->getToolbar(); }
QToolBar* Vw3AView::getAuxToolbar() const { return _d->viewer->getAuxToolbar(); }
void Vw3AView::enableToolbar(bool enable) { _d->viewer->enableToolbar(enable); }
void Vw3AView::enableAuxToolbar(bool enable) { _d->viewer->enableAuxToolbar(enable); }
void Vw3AView::forceToolbar(bool force) { _d->viewer->forceToolbar(force); }
void Vw3AView::forceAuxToolbar(bool force) { _d->viewer->forceAuxToolbar(force); }
bool Vw3AView::isToolbarEnabled() const { return _d->viewer->isToolbarEnabled(); }

void Vw3AView::insertActionInToolbar(QAction* action, int index)
{
    if (!action) {
        qWarning("Vw3AView::insertActionInToolbar: no action");
        return;
    }
    QToolBar* toolbar = getToolbar();
    // The toolbar's own state actions are not buttons; count only the visible ones.
    QList<QAction*> shown;
    for (QAction* a : toolbar->actions())
        if (toolbar->widgetForAction(a))
            shown.append(a);
    if (index < 0 || index >= shown.size())
        toolbar->addAction(action);
    else
        toolbar->insertAction(shown.at(index), action);
}

// ---- images and files ------------------------------------------------------------------------

QImage Vw3AView::getImage(int width, int height)
{
    Vw3RenderAreaQWindow* area = _d->viewer->getRenderArea();
    // A shown view is ready even if its first frame is still queued.
    if (area->isInitialized() && area->isExposed())
        _checkInitialized();
    // Otherwise only a view set up for offscreen rendering can draw.
    if (!area->isInitialized() || (!_d->initialized && !_d->offscreen)) {
        qWarning().noquote() << "Vw3AView::getImage:" << tr("Cannot get image, render area is not initialized.");
        return QImage();
    }
    if (!_d->offscreen && !area->isExposed()) {
        qWarning().noquote() << "Vw3AView::getImage:" << tr("Viewer is not ready for offscreen rendering");
        return QImage();
    }
    if (width <= 0 || height <= 0) {
        qWarning("Vw3AView::getImage: invalid size %dx%d", width, height);
        return QImage();
    }
    try {
        return area->getImage(width, height);
    } catch (const KbeError& error) {
        qWarning().noquote() << "Vw3AView::getImage:" << error.what();
    }
    return QImage();
}

QImage Vw3AView::getImage(double scale)
{
    if (!std::isfinite(scale) || scale <= 0.0) {
        qWarning("Vw3AView::getImage: the scale must be positive");
        return QImage();
    }
    const SbVec2i32 size = _d->viewer->getRenderArea()->getSize();
    return getImage(int(std::lround(size[0] * scale)), int(std::lround(size[1] * scale)));
}

bool Vw3AView::saveImage(const QString& fileName) { return Vw3ViewExport::saveImage(getImage(1.0), fileName); }

void Vw3AView::saveAsImage()
{
    const QString fileName = Vw3ViewExport::askFileName(this, tr("Save the scene into an image file"),
                                                        QStringLiteral("fileDialogs/Image"),
                                                        tr("Images (*.png *.jpg *.bmp)"));
    if (!fileName.isEmpty())
        saveImage(fileName);
}

bool Vw3AView::copyToClipboard() { return Vw3ViewExport::copyImage(getImage(1.0)); }

bool Vw3AView::saveToIvFile(const QString& fileName) { return Vw3ViewExport::saveScene(_d->root, fileName); }

void Vw3AView::saveAsIvFile()
{
    const QString fileName = Vw3ViewExport::askFileName(this, tr("Save the scene into an .iv file"),
                                                        QStringLiteral("fileDialogs/IvFile"),
                                                        tr("OIV files") + QStringLiteral(" (*.iv)"));
    if (!fileName.isEmpty())
        saveToIvFile(fileName);
}

void Vw3AView::sendToReport()
{
    const QImage image = getImage(1.0);
    if (!image.isNull())
        emit reportRequested(_d->reportTitle, _d->reportDescription, image);
}

void Vw3AView::setupForOffscreenRendering(bool enabled)
{
    _d->offscreen = enabled;
    _d->viewer->getRenderArea()->setupForOffscreenRendering(enabled);
}

bool Vw3AView::isSetupForOffscreenRendering() const { return _d->offscreen; }
void Vw3AView::setReportTitle(const QString& title) { _d->reportTitle = title; }
void Vw3AView::setReportDescription(const QString& description) { _d->reportDescription = description; }
VssProject* Vw3AView::getProject() const { return _d->project; }

void Vw3AView::setFullScreen(bool fullScreen)
{
    if (_d->fullScreen == fullScreen)
        return;
    _d->fullScreen = fullScreen;
    QWidget* viewer = _d->viewer;
    if (fullScreen) {
        viewer->setParent(nullptr);
        viewer->showFullScreen();
    } else {
        viewer->showNormal();
        viewer->setParent(this);
        layout()->addWidget(viewer);
        viewer->show();
    }
    _d->viewer->showFullScreenNotification(fullScreen);
    _d->actions->setChecked(FULLSCREEN, fullScreen);
}

bool Vw3AView::isFullScreen() const { return _d->fullScreen; }

void Vw3AView::changeEvent(QEvent* event) { QWidget::changeEvent(event); }

// ---- drops ------------------------------------------------------------------------------

void Vw3AView::setEnableDrops(bool enable, VwvIAcceptDrops* acceptor)
{
    _d->dropAcceptor = enable ? acceptor : nullptr;
    setAcceptDrops(_d->dropAcceptor != nullptr);
}

void Vw3AView::dragEnterEvent(QDragEnterEvent* event)
{
    if (_d->dropAcceptor && event->mimeData() && _d->dropAcceptor->canAcceptDrop(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void Vw3AView::dragMoveEvent(QDragMoveEvent* event)
{
    if (_d->dropAcceptor && event->mimeData() && _d->dropAcceptor->canAcceptDrop(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void Vw3AView::dropEvent(QDropEvent* event)
{
    if (!_d->dropAcceptor || !event->mimeData() || !_d->dropAcceptor->canAcceptDrop(*event->mimeData())) {
        event->ignore();
        return;
    }
    // The scene point under the drop, or the point the camera looks at.
    const SbVec2i32 size = _d->viewer->getRenderArea()->getSize();
    const qreal ratio = devicePixelRatioF();
    const SbVec2i32 pixel(int(event->pos().x() * ratio), size[1] - 1 - int(event->pos().y() * ratio));
    SbVec3f point(0.0f, 0.0f, 0.0f);
    if (const SoPickedPoint* picked = getSceneInteractor()->pick(pixel))
        point = picked->getPoint();
    else if (SoCameraInteractor* camera = getSceneInteractor()->getCameraInteractor())
        point = camera->getFocalPoint();
    const QPointF mapPoint(point[0] + _d->offset.x(), point[1] + _d->offset.y());
    if (_d->dropAcceptor->acceptDrop(*event->mimeData(), mapPoint))
        event->acceptProposedAction();
    else
        event->ignore();
}

// ---- preferences ---------------------------------------------------------------------------

void Vw3AView::update(const VupPreferenceModif& modif)
{
    if (modif.concerns(VupPreferences3DViews::GROUP)) {
        _d->background = VupPreferences3DViews::getBackgroundColor();
        _d->foreground = VupPreferences3DViews::getForegroundColor();
        _d->whiteBackground = VupPreferences3DViews::isWhiteBackground();
        _d->axes->setVisible(VupPreferences3DViews::isAxesVisible());
        _d->axes->setGridVisible(VupPreferences3DViews::isAxesGridVisible());
        _d->gnomon->setVisible(VupPreferences3DViews::isGnomonVisible());
        _d->compass->setVisible(VupPreferences3DViews::isCompassVisible());
        _d->legend->setEnabled(VupPreferences3DViews::isLegendVisible());
        const int alignment = VupPreferences3DViews::getLegendAlignment();
        if (Vu::isValidPosition(alignment))
            _d->legend->setAlignment(alignment);
        _applyColors();
        _updateDecorations();
    } else if (modif.concerns(VupPreferencesGraphic::GROUP)) {
        _d->zScaleAuto = VupPreferencesGraphic::isZScaleAutomatic();
        const float zScale = VupPreferencesGraphic::getZScale();
        if (!_d->zScaleAuto && zScale != _d->zScale && std::isfinite(zScale) && zScale > 0.0f) {
            _d->zScale = zScale;
            _updateNodesZScale();
        } else {
            _updateBoundingBox();
        }
    }
}

void Vw3AView::destroyed(const VuoAObservable<VupPreferenceModif>* observable)
{
    if (observable == _d->preferences3DViews)
        _d->preferences3DViews = nullptr;
    if (observable == _d->preferencesGraphic)
        _d->preferencesGraphic = nullptr;
}
