#pragma once
// The actions of a 3D view: their texts, tool tips, icons and checkability, the exclusive
// group of interaction modes, and their wiring to the view's own methods. The view keeps
// the checkable actions in step with its state through setChecked, which does not echo back
// into the view. An internal helper of Vw3AView, not part of the library's interface.

#include <Vw3AView.h>

#include <functional>

class QAction;
class QActionGroup;
class QMenu;

class Vw3ViewActions
{
public:
    // Creates the actions as children of `view` and wires them to it. `projectionSwitched`
    // runs after the projection action has switched the camera type.
    Vw3ViewActions(Vw3AView* view, std::function<void()> projectionSwitched);

    // One unwired action with its text, tool tip, icon and checkability, owned by `parent`.
    static QAction* makeAction(Vw3AView::Action action, QObject* parent);

    // Null when out of range.
    QAction* action(int action) const;
    QAction* mode(int mode) const;

    // Checks or unchecks without calling back into the view.
    void setChecked(Vw3AView::Action action, bool checked);
    void setEnabled(Vw3AView::Action action, bool enabled);

    // The view, decoration and export actions, in groups separated by lines.
    void addContextMenuEntries(QMenu* menu) const;

private:
    void _createModes();
    void _wireActions(std::function<void()> projectionSwitched);
    void _modeTriggered(int mode);

    Vw3AView* const _view;
    QAction* _actions[Vw3AView::ACTION_COUNT] = {};
    QAction* _modes[Vw3AView::MODE_COUNT] = {};
    QActionGroup* _modeGroup = nullptr;
    // Set while setChecked runs, so that the toggled signals do not echo into the view.
    bool _syncing = false;
};
