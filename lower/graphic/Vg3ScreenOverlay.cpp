#include <Vg3ScreenOverlay.h>

#include <SoPickRay.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SoDB.h>
#include <Inventor/actions/SoAction.h>
#include <Inventor/elements/SoModelMatrixElement.h>
#include <Inventor/elements/SoViewportRegionElement.h>
#include <Inventor/misc/SoState.h>
#include <Inventor/nodes/SoAnnotation.h>
#include <Inventor/nodes/SoCallback.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoSwitch.h>

#include <utility>

Vg3ScreenOverlay::Vg3ScreenOverlay(const char* name, Place place)
    : _place(std::move(place))
{
    if (!SoDB::isInitialized())
        Vg3OpenInventor::getInstance()->init();
    _root = new SoAnnotation;
    _root->setName(name);
    // The placement depends on the window's size, read while drawing: nothing is cached.
    _root->renderCaching = SoSeparator::OFF;
    _root->boundingBoxCaching = SoSeparator::OFF;
    _visibility = new SoSwitch;
    _root->addChild(_visibility);
    _root->addChild(SoPickRay::newRestorer());
    auto group = new SoSeparator;
    _visibility->addChild(group);

    auto camera = new SoOrthographicCamera;
    camera->viewportMapping = SoCamera::LEAVE_ALONE;
    camera->position.setValue(0.0f, 0.0f, 5.0f);
    camera->height = 2.0f;
    camera->nearDistance = 1.0f;
    camera->farDistance = 10.0f;
    group->addChild(camera);
    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    group->addChild(lightModel);
    auto placement = new SoCallback;
    placement->setCallback(&Vg3ScreenOverlay::_placeCallback, this);
    group->addChild(placement);
    _content = new SoSeparator;
    group->addChild(_content);
}

Vg3ScreenOverlay::~Vg3ScreenOverlay() = default;

SoSeparator* Vg3ScreenOverlay::getRoot() const
{
    return _root;
}

SoSeparator* Vg3ScreenOverlay::getContent() const
{
    return _content;
}

void Vg3ScreenOverlay::setShown(bool shown)
{
    _visibility->whichChild = shown ? 0 : SO_SWITCH_NONE;
}

void Vg3ScreenOverlay::_placeCallback(void* data, SoAction* action)
{
    auto self = static_cast<Vg3ScreenOverlay*>(data);
    SoState* state = action->getState();
    if (!state || !state->isElementEnabled(SoModelMatrixElement::getClassStackIndex()) ||
        !state->isElementEnabled(SoViewportRegionElement::getClassStackIndex()))
        return;
    const SbVec2s pixels = SoViewportRegionElement::get(state).getViewportSizePixels();
    if (pixels[0] <= 0 || pixels[1] <= 0)
        return;
    self->_place(state, pixels);
}
