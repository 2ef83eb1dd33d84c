#include "VwvABasemapToolActions.h"

#include "VwqBasemapPlot.h"
#include "VwqPlotZoomer.h"
#include "VwvBasemapView.h"

#include <VuaResourceProvider.h>
#include <VugScene.h>

#include <QAction>
#include <QHash>
#include <QPointer>
#include <QWidgetAction>

class VwvABasemapToolActionsPrivate
{
public:
    QPointer<VwvBasemapView> view;
    QPointer<VugScene> scene;
    QString currentLayerId;
    QStringList actionIds;
    QStringList modeIds;
    QHash<QString, QAction*> actions;
    QHash<QString, QAction*> modes;
    QHash<QString, Vw::ViewMode> viewModes;
    QString activeMode;
    QList<QMetaObject::Connection> viewConnections;
    QList<QMetaObject::Connection> sceneConnections;

    // Commands and modes, which go onto the view for their shortcuts; widget actions do not.
    QList<QAction*> shortcutActions() const
    {
        QList<QAction*> list;
        for (const QString& id : actionIds)
            if (!qobject_cast<QWidgetAction*>(actions.value(id)))
                list << actions.value(id);
        for (const QString& id : modeIds)
            list << modes.value(id);
        return list;
    }
};

namespace {

void disconnectAll(QList<QMetaObject::Connection>& connections)
{
    for (const auto& connection : qAsConst(connections))
        QObject::disconnect(connection);
    connections.clear();
}

} // namespace

VwvABasemapToolActions::VwvABasemapToolActions(QObject* parent)
    : QObject(parent)
    , _d(new VwvABasemapToolActionsPrivate)
{
}

VwvABasemapToolActions::~VwvABasemapToolActions()
{
    disconnectAll(_d->viewConnections);
    disconnectAll(_d->sceneConnections);
}

QAction* VwvABasemapToolActions::_register(const QString& id, QAction* action, bool isMode,
                                           const QKeySequence& shortcut, const QString& toolTip)
{
    if (id.isEmpty() || _d->actions.contains(id) || _d->modes.contains(id)) {
        qWarning("%s: the action id '%s' is empty or already used, the action is not made",
                 metaObject()->className(), qUtf8Printable(id));
        delete action;
        return nullptr;
    }
    action->setObjectName(id);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    const QString tip = toolTip.isEmpty() ? action->text() : toolTip;
    action->setToolTip(shortcut.isEmpty() ? tip
                                          : tr("%1 (%2)").arg(tip, shortcut.toString(QKeySequence::NativeText)));
    action->setEnabled(_d->view);
    if (isMode) {
        action->setCheckable(true);
        _d->modeIds << id;
        _d->modes.insert(id, action);
        // A click on the checked mode keeps it: activate() checks it again.
        connect(action, &QAction::triggered, this, [this, id] { activate(id); });
    } else {
        _d->actionIds << id;
        _d->actions.insert(id, action);
    }
    if (_d->view && !qobject_cast<QWidgetAction*>(action))
        _d->view->addAction(action);
    return action;
}

QAction* VwvABasemapToolActions::_addAction(const QString& id, const Vua::Resource::IconId& icon, const QString& text,
                                            const QString& toolTip, const QKeySequence& shortcut)
{
    return _register(id, new QAction(VuaResourceProvider::getIcon(icon), text, this), false, shortcut, toolTip);
}

QAction* VwvABasemapToolActions::_addMode(const QString& id, Vw::ViewMode viewMode, const Vua::Resource::IconId& icon,
                                          const QString& text, const QString& toolTip, const QKeySequence& shortcut)
{
    QAction* action =
        _register(id, new QAction(VuaResourceProvider::getIcon(icon), text, this), true, shortcut, toolTip);
    if (action)
        _d->viewModes.insert(id, viewMode);
    return action;
}

QAction* VwvABasemapToolActions::_addMode(const QString& id, const Vua::Resource::IconId& icon, const QString& text,
                                          const QString& toolTip, const QKeySequence& shortcut)
{
    return _addMode(id, Vw::NO_MODE, icon, text, toolTip, shortcut);
}

QAction* VwvABasemapToolActions::_addWidgetAction(const QString& id, QWidget* widget)
{
    if (!widget) {
        qWarning("%s::_addWidgetAction: no widget for '%s'", metaObject()->className(), qUtf8Printable(id));
        return nullptr;
    }
    auto* action = new QWidgetAction(this);
    action->setDefaultWidget(widget);
    return _register(id, action, false, QKeySequence(), widget->toolTip());
}

void VwvABasemapToolActions::setView(VwvBasemapView* view)
{
    if (view == _d->view)
        return;
    deactivate();
    disconnectAll(_d->viewConnections);
    const QList<QAction*> actions = _d->shortcutActions();
    if (_d->view)
        for (QAction* action : actions)
            _d->view->removeAction(action);
    _d->view = view;
    if (view) {
        view->addActions(actions);
        _d->viewConnections = {
            connect(view, &VwvBasemapView::currentLayerChanged, this, &VwvABasemapToolActions::_followView),
            connect(view, &VwvBasemapView::currentViewChanged, this, &VwvABasemapToolActions::_followView),
            connect(view, &VwvBasemapView::modeChanged, this, &VwvABasemapToolActions::_followView),
            // The stack can change while the view stays where it is.
            connect(view->getPlot()->zoomer(), &VwqPlotZoomer::zoomed, this, &VwvABasemapToolActions::_refresh),
            connect(view, &QObject::destroyed, this, &VwvABasemapToolActions::_viewDestroyed),
        };
    }
    _followView();
}

void VwvABasemapToolActions::_viewDestroyed()
{
    // QWidget sends destroyed() while the view is half gone: forget it before anything asks.
    disconnectAll(_d->viewConnections);
    _d->view = nullptr;
    // Quietly: whoever listens to stopped() may be going with the view.
    const QString mode = _d->activeMode;
    _d->activeMode.clear();
    if (!mode.isEmpty())
        _modeDeactivated(mode);
    _followView();
}

VwvBasemapView* VwvABasemapToolActions::getView() const
{
    return _d->view;
}

VugScene* VwvABasemapToolActions::getScene() const
{
    return _d->scene;
}

QString VwvABasemapToolActions::getCurrentLayerId() const
{
    return _d->currentLayerId;
}

int VwvABasemapToolActions::getCurrentLayerRank() const
{
    return _d->scene && !_d->currentLayerId.isEmpty() ? _d->scene->findRank(_d->currentLayerId) : -1;
}

void VwvABasemapToolActions::_followView()
{
    // The view says when its layer, zoom or mode change, not when it is given another
    // scene; that comes with the zoom it then shows, or with the next of its signals.
    VugScene* scene = _d->view ? _d->view->getScene() : nullptr;
    if (scene != _d->scene)
        _setScene(scene);
    const QString layerId = _d->view ? _d->view->getCurrentLayerId() : QString();
    if (layerId != _d->currentLayerId) {
        _currentLayerAboutToChange();
        _d->currentLayerId = layerId;
        _currentLayerChanged();
    }
    _refresh();
}

void VwvABasemapToolActions::_setScene(VugScene* scene)
{
    disconnectAll(_d->sceneConnections);
    _d->scene = scene;
    if (!scene)
        return;
    // Any change of items may add, remove or move the current layer.
    auto follow = [this] { _followView(); };
    _d->sceneConnections = {
        connect(scene, &VugScene::itemInserted, this, follow),
        connect(scene, &VugScene::itemsMoved, this, follow),
        connect(scene, &VugScene::itemsRemoved, this, follow),
        connect(scene, &VugScene::itemShown, this, follow),
        connect(scene, &VugScene::itemSourceChanged, this, follow),
        connect(scene, &VugScene::reset, this, follow),
        connect(scene, &QObject::destroyed, this, follow),
    };
}

QAction* VwvABasemapToolActions::getAction(const QString& id) const
{
    return _d->actions.value(id);
}

QStringList VwvABasemapToolActions::getActionIds() const
{
    return _d->actionIds;
}

QAction* VwvABasemapToolActions::getMode(const QString& id) const
{
    return _d->modes.value(id);
}

QStringList VwvABasemapToolActions::getModeIds() const
{
    return _d->modeIds;
}

Vw::ViewMode VwvABasemapToolActions::getModeViewMode(const QString& modeId) const
{
    return _d->viewModes.value(modeId, Vw::NO_MODE);
}

QString VwvABasemapToolActions::findModeForViewMode(Vw::ViewMode mode) const
{
    if (mode == Vw::NO_MODE)
        return QString();
    for (const QString& id : qAsConst(_d->modeIds))
        if (_d->viewModes.value(id) == mode)
            return id;
    return QString();
}

QString VwvABasemapToolActions::getDefaultStartMode() const
{
    return QString();
}

bool VwvABasemapToolActions::isActive() const
{
    return !_d->activeMode.isEmpty();
}

QString VwvABasemapToolActions::getActiveMode() const
{
    return _d->activeMode;
}

bool VwvABasemapToolActions::activate(const QString& modeId)
{
    const QString id = modeId.isEmpty() ? getDefaultStartMode() : modeId;
    if (!_d->modes.contains(id)) {
        qWarning("%s::activate: no mode '%s', the group stays as it was", metaObject()->className(),
                 qUtf8Printable(id));
        return false;
    }
    if (id == _d->activeMode) {
        _refresh();
        return true;
    }
    emit activationRequested(id);
    const bool wasActive = isActive();
    if (wasActive)
        _modeDeactivated(_d->activeMode);
    _d->activeMode = id;
    _refresh();
    // A mode of the group's own hands the view no mode, so that no map tool takes the mouse.
    if (_d->view)
        _d->view->setViewMode(getModeViewMode(id));
    _modeActivated(id);
    if (!wasActive)
        emit started();
    return true;
}

void VwvABasemapToolActions::deactivate()
{
    if (!isActive())
        return;
    const QString mode = _d->activeMode;
    _d->activeMode.clear();
    _modeDeactivated(mode);
    _refresh();
    emit stopped();
}

void VwvABasemapToolActions::_refresh()
{
    const bool attached = _d->view;
    for (QAction* action : qAsConst(_d->actions))
        action->setEnabled(attached);
    for (auto it = _d->modes.cbegin(); it != _d->modes.cend(); ++it) {
        it.value()->setEnabled(attached);
        it.value()->setChecked(it.key() == _d->activeMode);
    }
    _update();
}

void VwvABasemapToolActions::_currentLayerAboutToChange() {}
void VwvABasemapToolActions::_currentLayerChanged() {}
void VwvABasemapToolActions::_modeActivated(const QString&) {}
void VwvABasemapToolActions::_modeDeactivated(const QString&) {}
void VwvABasemapToolActions::_update() {}
