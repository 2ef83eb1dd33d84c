#pragma once
// The nodes and tools a 3D view shows. Each is wrapped so that it can be hidden and made
// unpickable without leaving the graph: a visibility switch, a separator carrying the pick
// style, and a pickable switch, named after the node. The set watches its nodes: one that
// is destroyed while shown leaves the graph and the maps, and the set reports it.

#include <Vg3ANode.h>

#include <QMap>

#include <functional>

class SoSeparator;
class SoSwitch;
class Vg3ATool;

class Vw3NodeSet : public Vg3INodeWatcher
{
public:
    // Nodes go under `sceneRoot`, tools under `toolsRoot`; `destroyed` hears of each node
    // destroyed while in the set, after it has left it.
    Vw3NodeSet(SoSeparator* sceneRoot, SoSeparator* toolsRoot, std::function<void(Vg3ANode*)> destroyed);
    ~Vw3NodeSet();
    Vw3NodeSet(const Vw3NodeSet&) = delete;
    Vw3NodeSet& operator=(const Vw3NodeSet&) = delete;

    // The callers refuse nodes and tools already in, or not in, the set.
    void addNode(Vg3ANode* node, bool visible);
    void removeNode(Vg3ANode* node);
    void addTool(Vg3ATool* tool, bool visible);
    void removeTool(Vg3ATool* tool);

    const QMap<Vg3ANode*, SoSwitch*>& nodes() const { return _nodes; }
    const QMap<Vg3ATool*, SoSwitch*>& tools() const { return _tools; }

    // On the visibility switch of a node or tool.
    static bool isShown(const SoSwitch* visibility);
    // True when the visibility changed.
    static bool show(SoSwitch* visibility, bool visible);
    static void setPickable(SoSwitch* visibility, bool pickable);

    void nodeDestroyed(Vg3ANode* node) override;

private:
    SoSeparator* const _sceneRoot;
    SoSeparator* const _toolsRoot;
    const std::function<void(Vg3ANode*)> _destroyed;
    QMap<Vg3ANode*, SoSwitch*> _nodes;
    QMap<Vg3ATool*, SoSwitch*> _tools;
};
