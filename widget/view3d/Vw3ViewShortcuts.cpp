#include "Vw3ViewShortcuts.h"

#include <Vw3AView.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/events/SoKeyboardEvent.h>
#include <Inventor/nodes/SoEventCallback.h>

#include <QAction>

Vw3ViewShortcuts::Vw3ViewShortcuts(Vw3AView* view)
    : _view(view)
{
}

void Vw3ViewShortcuts::handle(SoEventCallback* node)
{
    auto event = static_cast<const SoKeyboardEvent*>(node->getEvent());
    if (!event || event->getState() != SoButtonEvent::DOWN)
        return;
    Vg3SceneInteractor* interactor = _view->getSceneInteractor();
    const bool shift = event->wasShiftDown();
    bool handled = true;
    switch (event->getKey()) {
    case SoKeyboardEvent::HOME: _view->viewAll(); break;
    case SoKeyboardEvent::U: interactor->viewFromTop(); break;
    case SoKeyboardEvent::D: interactor->viewFromBottom(); break;
    case SoKeyboardEvent::E: interactor->viewFromEast(); break;
    case SoKeyboardEvent::W: interactor->viewFromWest(); break;
    case SoKeyboardEvent::N: interactor->viewFromNorth(); break;
    case SoKeyboardEvent::S: interactor->viewFromSouth(); break;
    case SoKeyboardEvent::P: interactor->setProjectionType(Vg3SceneInteractor::PERSPECTIVE); break;
    case SoKeyboardEvent::O: interactor->setProjectionType(Vg3SceneInteractor::ORTHOGRAPHIC); break;
    case SoKeyboardEvent::L:
        if (shift)
            _view->flipClipPlane();
        else
            _view->getAction(Vw3AView::SECTION_VIEW)->trigger();
        break;
    case SoKeyboardEvent::C: _view->getKnifeMode()->trigger(); break;
    case SoKeyboardEvent::PAD_ADD:
        if (shift)
            _view->clipPlaneIncreaseSliceWidth();
        else
            _view->clipPlaneStepForward();
        break;
    case SoKeyboardEvent::MINUS:
    case SoKeyboardEvent::PAD_SUBTRACT:
        if (shift)
            _view->clipPlaneDecreaseSliceWidth();
        else
            _view->clipPlaneStepBackward();
        break;
    case SoKeyboardEvent::RETURN:
    case SoKeyboardEvent::PAD_ENTER:
        if (event->wasAltDown() && _view->isFullScreen())
            _view->setFullScreen(false);
        else
            handled = false;
        break;
    default: handled = false; break;
    }
    if (handled)
        node->setHandled();
}
