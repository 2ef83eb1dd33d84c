#include "VwvBasemapToolManager.h"

#include "VwvABasemapToolActions.h"
#include "VwvBasemapView.h"

#include <QAction>
#include <QPointer>
#include <QSet>

class VwvBasemapToolManagerPrivate
{
public:
    QPointer<VwvBasemapView> view;
    QList<QPointer<VwvABasemapToolActions>> tools;
};

namespace {

QList<QAction*> allActions(const VwvABasemapToolActions* tool)
{
    QList<QAction*> actions;
    for (const QString& id : tool->getActionIds())
        actions << tool->getAction(id);
    for (const QString& id : tool->getModeIds())
        actions << tool->getMode(id);
    return actions;
}

} // namespace

VwvBasemapToolManager::VwvBasemapToolManager(VwvBasemapView* view)
    : QObject(view)
    , _d(new VwvBasemapToolManagerPrivate)
{
    _d->view = view;
    if (!view) {
        qWarning("VwvBasemapToolManager: no view; the groups added stay without one");
        return;
    }
    connect(view, &VwvBasemapView::modeChanged, this, &VwvBasemapToolManager::_followViewMode);
}

VwvBasemapToolManager::~VwvBasemapToolManager() = default;

VwvBasemapView* VwvBasemapToolManager::getView() const
{
    return _d->view;
}

bool VwvBasemapToolManager::addTool(VwvABasemapToolActions* tool)
{
    if (!tool) {
        qWarning("VwvBasemapToolManager::addTool: no group given");
        return false;
    }
    const QList<VwvABasemapToolActions*> tools = getTools();
    if (tools.contains(tool)) {
        qWarning("VwvBasemapToolManager::addTool: the group '%s' is already there", qUtf8Printable(tool->getId()));
        return false;
    }
    const QStringList ids = tool->getActionIds() + tool->getModeIds();
    for (const VwvABasemapToolActions* other : tools) {
        QSet<QString> clash = QSet<QString>(ids.cbegin(), ids.cend());
        const QStringList otherIds = other->getActionIds() + other->getModeIds();
        clash.intersect(QSet<QString>(otherIds.cbegin(), otherIds.cend()));
        if (other->getId() == tool->getId() || !clash.isEmpty()) {
            qWarning("VwvBasemapToolManager::addTool: the group '%s' is refused, its id or the ids '%s' are used by "
                     "the group '%s'",
                     qUtf8Printable(tool->getId()), qUtf8Printable(QStringList(clash.values()).join(QLatin1String(", "))),
                     qUtf8Printable(other->getId()));
            return false;
        }
    }
    // Two actions with one shortcut on a view both stay silent: say so, the group still works.
    for (const VwvABasemapToolActions* other : tools)
        for (const QAction* mine : allActions(tool))
            for (const QAction* theirs : allActions(other))
                if (!mine->shortcut().isEmpty() && mine->shortcut() == theirs->shortcut())
                    qWarning("VwvBasemapToolManager::addTool: '%s' of '%s' and '%s' of '%s' share the shortcut %s",
                             qUtf8Printable(mine->objectName()), qUtf8Printable(tool->getId()),
                             qUtf8Printable(theirs->objectName()), qUtf8Printable(other->getId()),
                             qUtf8Printable(mine->shortcut().toString()));

    _d->tools.append(tool);
    connect(tool, &VwvABasemapToolActions::activationRequested, this, [this, tool] { _toolActivating(tool); });
    tool->setView(_d->view);
    _followViewMode();
    return true;
}

QList<VwvABasemapToolActions*> VwvBasemapToolManager::getTools() const
{
    QList<VwvABasemapToolActions*> tools;
    for (const auto& tool : qAsConst(_d->tools))
        if (tool)
            tools << tool;
    return tools;
}

QAction* VwvBasemapToolManager::getToolAction(const QString& id) const
{
    for (const VwvABasemapToolActions* tool : getTools())
        if (QAction* action = tool->getAction(id))
            return action;
    return nullptr;
}

QAction* VwvBasemapToolManager::getToolMode(const QString& id) const
{
    for (const VwvABasemapToolActions* tool : getTools())
        if (QAction* action = tool->getMode(id))
            return action;
    return nullptr;
}

VwvABasemapToolActions* VwvBasemapToolManager::getActiveTool() const
{
    for (VwvABasemapToolActions* tool : getTools())
        if (tool->isActive())
            return tool;
    return nullptr;
}

void VwvBasemapToolManager::_toolActivating(VwvABasemapToolActions* chosen)
{
    for (VwvABasemapToolActions* tool : getTools())
        if (tool != chosen && tool->isActive())
            tool->deactivate();
}

void VwvBasemapToolManager::_followViewMode()
{
    if (!_d->view)
        return;
    const Vw::ViewMode mode = _d->view->getCurrentMode();
    const VwvABasemapToolActions* active = getActiveTool();
    if (active && active->getModeViewMode(active->getActiveMode()) == mode)
        return;
    for (VwvABasemapToolActions* tool : getTools()) {
        const QString modeId = tool->findModeForViewMode(mode);
        if (!modeId.isEmpty()) {
            tool->activate(modeId);
            return;
        }
    }
    for (VwvABasemapToolActions* tool : getTools())
        tool->deactivate();
}
