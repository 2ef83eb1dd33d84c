#pragma once
// Lets the owner of a 3D view add its own entries to the view's context menu, given the
// point under the right click (nullptr when the click hit nothing).

class QMenu;
class SoPickedPoint;
class Vw3AView;

class Vw3IContextMenuCallback
{
public:
    virtual ~Vw3IContextMenuCallback() = default;
    virtual void addContextMenuEntries(Vw3AView* view, QMenu* menu, const SoPickedPoint* picked) = 0;
};
