#include "Vw3PickStack.h"

#include <VgpIPickHandler.h>
#include <VwwPickHandlerOverlay.h>

#include <Inventor/events/SoLocation2Event.h>
#include <Inventor/events/SoMouseButtonEvent.h>
#include <Inventor/nodes/SoEventCallback.h>
#include <Inventor/nodes/SoSeparator.h>

Vw3PickStack::Vw3PickStack(SoSeparator* slot)
    : _overlay(new VwwPickHandlerOverlay)
{
    _handlers.append(_overlay.get());
    auto events = new SoEventCallback;
    events->setName("vw3aview_pick_handlers");
    events->addEventCallback(SoMouseButtonEvent::getClassTypeId(), &Vw3PickStack::_mouseCallback, this);
    events->addEventCallback(SoLocation2Event::getClassTypeId(), &Vw3PickStack::_mouseCallback, this);
    slot->addChild(events);
    slot->addChild(_overlay->getRoot());
}

Vw3PickStack::~Vw3PickStack() = default;

void Vw3PickStack::push(VgpIPickHandler* handler)
{
    _handlers.append(handler);
    _showHelp();
}

VgpIPickHandler* Vw3PickStack::pop()
{
    if (_handlers.size() <= 1)
        return nullptr;
    VgpIPickHandler* handler = _handlers.takeLast();
    _showHelp();
    return handler;
}

void Vw3PickStack::_showHelp()
{
    VgpIPickHandler* handler = top();
    _overlay->showHelp(handler->getHelpTitle(), handler->getHelpText());
}

void Vw3PickStack::_mouseCallback(void* data, SoEventCallback* node)
{
    auto self = static_cast<Vw3PickStack*>(data);
    VgpIPickHandler* top = self->top();
    const SoEvent* event = node->getEvent();
    bool handled = false;
    if (event->isOfType(SoMouseButtonEvent::getClassTypeId())) {
        auto button = static_cast<const SoMouseButtonEvent*>(event);
        handled = button->getState() == SoButtonEvent::DOWN ? top->mousePressed(button, node->getAction())
                                                            : top->mouseReleased(button, node->getAction());
        if (!handled && self->_fallback)
            handled = self->_fallback(button, node->getAction());
    } else if (event->isOfType(SoLocation2Event::getClassTypeId())) {
        handled = top->mouseMoved(static_cast<const SoLocation2Event*>(event), node->getAction());
    }
    if (handled)
        node->setHandled();
}
