#include "Vw3ViewActions.h"

#include <KbgRotation.h>
#include <KbgVector3D.h>
#include <Vg3SceneInteractor.h>
#include <Vg3SectionModel.h>
#include <VuaResourceProvider.h>
#include <VugSectionDefinition.h>

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>

namespace {

struct ActionText
{
    const char* text;
    const char* toolTip;
    bool checkable;
};

// In the order of Vw3AView::Action.
const ActionText kActionTexts[Vw3AView::ACTION_COUNT] = {
    {QT_TRANSLATE_NOOP("Vw3AView", "View all"), QT_TRANSLATE_NOOP("Vw3AView", "View all (Home)"), false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from top (U)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from bottom (D)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from east (E)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from west (W)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from north (N)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from south (S)"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Perspective / Orthographic Projection"),
     QT_TRANSLATE_NOOP("Vw3AView", "Perspective / Orthographic Projection (P / O)"), false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Fullscreen"),
     QT_TRANSLATE_NOOP("Vw3AView", "Toggle between windowed and fullscreen modes"), true},
    {QT_TRANSLATE_NOOP("Vw3AView", "View from section"), QT_TRANSLATE_NOOP("Vw3AView", "View from section (L)"),
     false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Invert colors"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show axes"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show axes grid"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show gnomon"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show compass"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Save scene as an IV file"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Section"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Send to report."), QT_TRANSLATE_NOOP("Vw3AView", "Send 3D view to report"),
     false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Copy to clipboard"), nullptr, false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Save as image"), QT_TRANSLATE_NOOP("Vw3AView", "Save the scene into an image file"),
     false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show/hide colormap legend"),
     QT_TRANSLATE_NOOP("Vw3AView", "Show/hide colormap legend..."), true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Edit colormap legend"), QT_TRANSLATE_NOOP("Vw3AView", "Edit colormap legend..."),
     false},
    {QT_TRANSLATE_NOOP("Vw3AView", "Show fence path"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Section properties"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Knife mode"), QT_TRANSLATE_NOOP("Vw3AView", "Knife mode (C)"), true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Fence mode"), nullptr, true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Set the plane from points"),
     QT_TRANSLATE_NOOP("Vw3AView", "Set the plane from points."), true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Add fence points"), QT_TRANSLATE_NOOP("Vw3AView", "Add fence points."), true},
    {QT_TRANSLATE_NOOP("Vw3AView", "Set points from picking"),
     QT_TRANSLATE_NOOP("Vw3AView", "Set points from picking."), true},
};

// The icons of the actions that have one; theme names only where they mean exactly that.
Vua::Resource::IconId actionIcon(Vw3AView::Action action)
{
    using Vua::Resource::IconId;
    switch (action) {
    case Vw3AView::VIEW_ALL: return Vua::Resource::iconZoomViewAll();
    case Vw3AView::VIEW_TOP: return IconId(QStringLiteral("view3d-top"), QString());
    case Vw3AView::VIEW_BOTTOM: return IconId(QStringLiteral("view3d-bottom"), QString());
    case Vw3AView::VIEW_EAST: return IconId(QStringLiteral("view3d-east"), QString());
    case Vw3AView::VIEW_WEST: return IconId(QStringLiteral("view3d-west"), QString());
    case Vw3AView::VIEW_NORTH: return IconId(QStringLiteral("view3d-north"), QString());
    case Vw3AView::VIEW_SOUTH: return IconId(QStringLiteral("view3d-south"), QString());
    case Vw3AView::PROJECTION: return IconId(QStringLiteral("view3d-projection"), QString());
    case Vw3AView::FULLSCREEN: return IconId(QStringLiteral("view3d-fullscreen"), QStringLiteral("view-fullscreen"));
    case Vw3AView::AXES: return Vua::Resource::iconViewerAxes();
    case Vw3AView::AXES_GRID: return Vua::Resource::iconViewerGrid();
    case Vw3AView::COMPASS: return Vua::Resource::iconViewerCompass();
    case Vw3AView::SECTION: return Vua::Resource::iconSection();
    case Vw3AView::REPORT: return Vua::Resource::iconReporter();
    case Vw3AView::IMAGE: return Vua::Resource::iconExport();
    case Vw3AView::SAVE_IV_FILE: return Vua::Resource::iconSave();
    case Vw3AView::CLIPBOARD: return IconId(QStringLiteral("view3d-clipboard"), QStringLiteral("edit-copy"));
    case Vw3AView::LEGEND: return IconId(QStringLiteral("view3d-legend"), QString());
    case Vw3AView::GNOMON: return IconId(QStringLiteral("view3d-gnomon"), QString());
    case Vw3AView::INVERT_COLORS: return IconId(QStringLiteral("view3d-invert"), QString());
    default: return IconId();
    }
}

const char* const kModeTexts[Vw3AView::MODE_COUNT] = {
    QT_TRANSLATE_NOOP("Vw3AView", "Viewing mode"),
    QT_TRANSLATE_NOOP("Vw3AView", "Picking mode"),
    QT_TRANSLATE_NOOP("Vw3AView", "Seek mode"),
    QT_TRANSLATE_NOOP("Vw3AView", "Ruler mode"),
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

// The texts keep the view's translation context, where the translators find them.
QString translated(const char* text) { return QCoreApplication::translate("Vw3AView", text); }

} // namespace

Vw3ViewActions::Vw3ViewActions(Vw3AView* view, std::function<void()> projectionSwitched)
    : _view(view)
{
    for (int i = 0; i < Vw3AView::ACTION_COUNT; ++i)
        _actions[i] = makeAction(Vw3AView::Action(i), view);
    _createModes();
    _wireActions(std::move(projectionSwitched));
}

QAction* Vw3ViewActions::makeAction(Vw3AView::Action action, QObject* parent)
{
    const ActionText& t = kActionTexts[action];
    auto a = new QAction(translated(t.text), parent);
    const Vua::Resource::IconId icon = actionIcon(action);
    if (!icon.isNull())
        a->setIcon(VuaResourceProvider::getIcon(icon));
    if (t.toolTip) {
        a->setToolTip(translated(t.toolTip));
        a->setStatusTip(translated(t.toolTip));
    }
    a->setCheckable(t.checkable);
    return a;
}

void Vw3ViewActions::_createModes()
{
    _modeGroup = new QActionGroup(_view);
    _modeGroup->setExclusive(true);
    for (int m = 0; m < Vw3AView::MODE_COUNT; ++m) {
        QAction* action = nullptr;
        switch (m) {
        case Vw3AView::KNIFE_MODE: action = _actions[Vw3AView::KNIFE]; break;
        case Vw3AView::FENCE_MODE: action = _actions[Vw3AView::FENCE]; break;
        case Vw3AView::PICK_1_POINT_MODE: action = _actions[Vw3AView::POINTS_FROM_PICKING]; break;
        case Vw3AView::PICK_3_POINTS_MODE: action = _actions[Vw3AView::PLANE_FROM_POINTS]; break;
        case Vw3AView::PICK_MULTIPLE_POINTS_MODE: action = _actions[Vw3AView::FENCE_POINTS]; break;
        default:
            action = new QAction(translated(kModeTexts[m]), _view);
            action->setCheckable(true);
            if (m == Vw3AView::VIEWING_MODE)
                action->setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconZoomHand()));
            else if (m == Vw3AView::PICKING_MODE)
                action->setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconInfo()));
            else if (m == Vw3AView::RULER_MODE)
                action->setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconViewerLineRuler()));
            break;
        }
        _modeGroup->addAction(action);
        _modes[m] = action;
        QObject::connect(action, &QAction::triggered, _view, [this, m] { _modeTriggered(m); });
    }
    _modes[Vw3AView::VIEWING_MODE]->setChecked(true);
}

void Vw3ViewActions::_wireActions(std::function<void()> projectionSwitched)
{
    using A = Vw3AView;
    Vw3AView* view = _view;
    Vg3SceneInteractor* interactor = view->getSceneInteractor();
    const auto on = [this](A::Action a, auto slot) { QObject::connect(_actions[a], &QAction::triggered, _view, slot); };
    on(A::VIEW_ALL, [view] { view->viewAll(); });
    on(A::VIEW_TOP, [interactor] { interactor->viewFromTop(); });
    on(A::VIEW_BOTTOM, [interactor] { interactor->viewFromBottom(); });
    on(A::VIEW_EAST, [interactor] { interactor->viewFromEast(); });
    on(A::VIEW_WEST, [interactor] { interactor->viewFromWest(); });
    on(A::VIEW_NORTH, [interactor] { interactor->viewFromNorth(); });
    on(A::VIEW_SOUTH, [interactor] { interactor->viewFromSouth(); });
    on(A::PROJECTION, [interactor, projectionSwitched] {
        interactor->setProjectionType(interactor->getProjectionType() == Vg3SceneInteractor::PERSPECTIVE
                                          ? Vg3SceneInteractor::ORTHOGRAPHIC
                                          : Vg3SceneInteractor::PERSPECTIVE);
        if (projectionSwitched)
            projectionSwitched();
    });
    on(A::FULLSCREEN, [view](bool checked) { view->setFullScreen(checked); });
    on(A::SECTION_VIEW, [view, interactor] {
        // Look along the plane normal, into the kept side, and frame the scene.
        const KbgVector3D normal = view->getSectionModel()->getPlaneNormal();
        view->setCameraOrientation(KbgRotation::fromTwoVectors(KbgVector3D(0, 0, -1), normal));
        interactor->viewAll();
    });
    const auto toggled = [this](A::Action a, auto slot) {
        QObject::connect(_actions[a], &QAction::toggled, _view, [this, slot](bool checked) {
            if (!_syncing)
                slot(checked);
        });
    };
    toggled(A::INVERT_COLORS, [view](bool c) { view->setInvertColors(c); });
    toggled(A::AXES, [view](bool c) { view->toggleAxes(c); });
    toggled(A::AXES_GRID, [view](bool c) { view->toggleAxesGrid(c); });
    toggled(A::GNOMON, [view](bool c) { view->toggleGnomon(c); });
    toggled(A::COMPASS, [view](bool c) { view->toggleCompass(c); });
    toggled(A::LEGEND, [view](bool c) { view->setLegendEnabled(c); });
    toggled(A::SECTION_PROPERTIES, [view](bool c) { view->toggleClippingProperties(c); });
    on(A::SAVE_IV_FILE, [view] { view->saveAsIvFile(); });
    on(A::SECTION, [view] { emit view->createSectionRequest(view->getSectionModel()->getSectionDefinition()); });
    on(A::REPORT, [view] { view->sendToReport(); });
    on(A::CLIPBOARD, [view] { view->copyToClipboard(); });
    on(A::IMAGE, [view] { view->saveAsImage(); });
}

void Vw3ViewActions::_modeTriggered(int mode)
{
    Vg3SceneInteractor::InteractionMode interaction = Vg3SceneInteractor::PICKING;
    switch (mode) {
    case Vw3AView::VIEWING_MODE: interaction = Vg3SceneInteractor::VIEWING; break;
    case Vw3AView::SEEKING_MODE: interaction = Vg3SceneInteractor::SEEKING; break;
    case Vw3AView::RULER_MODE: interaction = Vg3SceneInteractor::RULER; break;
    default: break;
    }
    _view->getSceneInteractor()->setInteractionMode(interaction);
}

QAction* Vw3ViewActions::action(int action) const
{
    return action >= 0 && action < Vw3AView::ACTION_COUNT ? _actions[action] : nullptr;
}

QAction* Vw3ViewActions::mode(int mode) const
{
    return mode >= 0 && mode < Vw3AView::MODE_COUNT ? _modes[mode] : nullptr;
}

void Vw3ViewActions::setChecked(Vw3AView::Action action, bool checked)
{
    _syncing = true;
    _actions[action]->setChecked(checked);
    _syncing = false;
}

void Vw3ViewActions::setEnabled(Vw3AView::Action action, bool enabled) { _actions[action]->setEnabled(enabled); }

void Vw3ViewActions::addContextMenuEntries(QMenu* menu) const
{
    using A = Vw3AView;
    for (A::Action a : {A::VIEW_ALL, A::VIEW_TOP, A::VIEW_BOTTOM, A::VIEW_EAST, A::VIEW_WEST, A::VIEW_NORTH,
                        A::VIEW_SOUTH, A::PROJECTION})
        menu->addAction(_actions[a]);
    menu->addSeparator();
    for (A::Action a : {A::AXES, A::AXES_GRID, A::GNOMON, A::COMPASS, A::LEGEND, A::INVERT_COLORS})
        menu->addAction(_actions[a]);
    menu->addSeparator();
    for (A::Action a : {A::FULLSCREEN, A::IMAGE, A::CLIPBOARD, A::SAVE_IV_FILE, A::REPORT})
        menu->addAction(_actions[a]);
}
