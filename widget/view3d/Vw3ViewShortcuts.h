#pragma once
// The single-key shortcuts of a 3D view, fed by the keyboard callback at the top of the
// view's graph (so they only act while the render area has the focus):
//   Home view all            U D E W N S   view from top, bottom, east, west, north, south
//   P / O perspective / orthographic        L view from section, Shift+L reverse the plane
//   + / - step the clip plane                Shift with + / - widen / narrow the slice
//   C knife mode             Alt+Return     leave fullscreen
// An internal helper of Vw3AView, not part of the library's interface.

class SoEventCallback;
class Vw3AView;

class Vw3ViewShortcuts
{
public:
    explicit Vw3ViewShortcuts(Vw3AView* view);

    // Acts on a key press of `node`'s keyboard event and marks the event handled when the
    // key is one of the view's; releases and other keys are left to the rest of the graph.
    void handle(SoEventCallback* node);

private:
    Vw3AView* const _view;
};
