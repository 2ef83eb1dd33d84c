#include "Vw3NodeSet.h"

#include <Vg3ATool.h>

#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

namespace {

SoSwitch* wrap(SoSeparator* content, const QString& inventorName, bool visible, bool pickable)
{
    const QByteArray name = inventorName.toLatin1();
    auto visibility = new SoSwitch;
    visibility->setName(SbName(("visibility_switch_for_" + name).constData()));
    visibility->whichChild = visible ? 0 : SO_SWITCH_NONE;
    auto pickSep = new SoSeparator;
    pickSep->setName(SbName(("pick_style_sep_for_" + name).constData()));
    visibility->addChild(pickSep);
    auto pickableSwitch = new SoSwitch;
    pickableSwitch->setName(SbName(("pickable_switch_for_" + name).constData()));
    // Child 0 leaves picking as it is, child 1 makes what follows unpickable.
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    pickableSwitch->addChild(new SoGroup);
    pickableSwitch->addChild(pickStyle);
    pickableSwitch->whichChild = pickable ? 0 : 1;
    pickSep->addChild(pickableSwitch);
    pickSep->addChild(content);
    return visibility;
}

} // namespace

Vw3NodeSet::Vw3NodeSet(SoSeparator* sceneRoot, SoSeparator* toolsRoot, std::function<void(Vg3ANode*)> destroyed)
    : _sceneRoot(sceneRoot)
    , _toolsRoot(toolsRoot)
    , _destroyed(std::move(destroyed))
{
}

Vw3NodeSet::~Vw3NodeSet()
{
    for (Vg3ANode* node : _nodes.keys())
        node->removeWatcher(this);
}

void Vw3NodeSet::addNode(Vg3ANode* node, bool visible)
{
    SoSwitch* visibility = wrap(node->getRoot(), node->getInventorName(), visible, node->isPickable());
    _sceneRoot->addChild(visibility);
    _nodes.insert(node, visibility);
    node->addWatcher(this);
}

void Vw3NodeSet::removeNode(Vg3ANode* node)
{
    node->removeWatcher(this);
    _sceneRoot->removeChild(_nodes.take(node));
}

void Vw3NodeSet::nodeDestroyed(Vg3ANode* node)
{
    SoSwitch* visibility = _nodes.take(node);
    if (!visibility)
        return;
    _sceneRoot->removeChild(visibility);
    if (_destroyed)
        _destroyed(node);
}

void Vw3NodeSet::addTool(Vg3ATool* tool, bool visible)
{
    SoSwitch* visibility = wrap(tool->getRoot(), tool->getInventorName(), visible, true);
    _toolsRoot->addChild(visibility);
    _tools.insert(tool, visibility);
}

void Vw3NodeSet::removeTool(Vg3ATool* tool)
{
    _toolsRoot->removeChild(_tools.take(tool));
}

bool Vw3NodeSet::isShown(const SoSwitch* visibility)
{
    return visibility && visibility->whichChild.getValue() == 0;
}

bool Vw3NodeSet::show(SoSwitch* visibility, bool visible)
{
    const int which = visible ? 0 : SO_SWITCH_NONE;
    if (visibility->whichChild.getValue() == which)
        return false;
    visibility->whichChild = which;
    return true;
}

void Vw3NodeSet::setPickable(SoSwitch* visibility, bool pickable)
{
    auto pickSep = static_cast<SoSeparator*>(visibility->getChild(0));
    static_cast<SoSwitch*>(pickSep->getChild(0))->whichChild = pickable ? 0 : 1;
}
