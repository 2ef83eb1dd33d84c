#include <Vg3CornerOverlay.h>

#include <SoPickRay.h>
#include <Vg3OpenInventor.h>
#include <VuPosition.h>

#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/elements/SoViewportRegionElement.h>
#include <Inventor/misc/SoState.h>
#include <Inventor/nodes/SoCallback.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>

#include <QByteArray>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QtGlobal>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMinSize = 16;

} // namespace

Vg3CornerOverlay::Vg3CornerOverlay(const char* owner, const char* prefix, int position, int size,
                                   float cameraHeight, OrientationChanged changed)
    : _owner(owner)
    , _changed(std::move(changed))
    , _position(position)
    , _size(size)
{
    // Reacts within the change itself, so the overlay is right in the very next render.
    _sensor.setPriority(0);
    _sensor.setDeleteCallback(&Vg3CornerOverlay::_cameraDeleted, this);

    _root = new SoSeparator;
    _root->setName((QByteArray(prefix) + "_root").constData());
    _visibility = new SoSwitch;
    _visibility->setName((QByteArray(prefix) + "_visibility").constData());
    _visibility->whichChild = SO_SWITCH_ALL;
    _root->addChild(_visibility);
    _root->addChild(SoPickRay::newRestorer());

    _content = new SoSeparator;
    _visibility->addChild(_content);
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    _content->addChild(pickStyle);
    auto corner = new SoCallback;
    corner->setCallback(&Vg3CornerOverlay::_cornerCallback, this);
    _content->addChild(corner);

    auto camera = new SoOrthographicCamera;
    camera->position.setValue(0.0f, 0.0f, 3.0f);
    camera->nearDistance = 1.0f;
    camera->farDistance = 5.0f;
    camera->height = cameraHeight;
    _content->addChild(camera);

    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    _content->addChild(lightModel);
    auto font = new SoFont;
    font->size = 14.0f;
    font->name = Vg3OpenInventor::getTextFontName();
    _content->addChild(font);
}

Vg3CornerOverlay::~Vg3CornerOverlay()
{
    _sensor.detach();
}

SoSeparator* Vg3CornerOverlay::getRoot() const
{
    return _root;
}

SoSeparator* Vg3CornerOverlay::getContent() const
{
    return _content;
}

void Vg3CornerOverlay::connectCamera(SoCamera* camera)
{
    if (camera == _camera)
        return;
    _sensor.detach();
    _camera = camera;
    if (camera) {
        _sensor.attach(&camera->orientation);
        _changed(camera->orientation.getValue(), false);
    }
}

SoCamera* Vg3CornerOverlay::getCamera() const
{
    return _camera;
}

void Vg3CornerOverlay::setPosition(int position)
{
    if (!Vu::isValidPosition(position)) {
        qWarning("%s::setPosition: invalid position %d", _owner, position);
        return;
    }
    if (position == _position)
        return;
    _position = position;
    _root->touch();
}

int Vg3CornerOverlay::getPosition() const
{
    return _position;
}

void Vg3CornerOverlay::setSize(int pixels)
{
    if (pixels < kMinSize) {
        qWarning("%s::setSize: size %d below %d pixels", _owner, pixels, kMinSize);
        return;
    }
    if (pixels == _size)
        return;
    _size = pixels;
    _root->touch();
}

int Vg3CornerOverlay::getSize() const
{
    return _size;
}

void Vg3CornerOverlay::setVisible(bool visible)
{
    _visible = visible;
    _updateSwitch();
}

bool Vg3CornerOverlay::isVisible() const
{
    return _visible;
}

void Vg3CornerOverlay::setSuppressed(bool suppressed)
{
    _suppressed = suppressed;
    _updateSwitch();
}

bool Vg3CornerOverlay::isShown() const
{
    return _visible && !_suppressed;
}

SbViewportRegion Vg3CornerOverlay::cornerViewport(const SbViewportRegion& window, int position, int size)
{
    const SbVec2s origin = window.getViewportOriginPixels();
    const SbVec2s available = window.getViewportSizePixels();
    const int side = std::max(0, std::min({size, int(available[0]), int(available[1])}));
    int x = origin[0];
    int y = origin[1];
    if (position & Vu::RIGHT)
        x += available[0] - side;
    else if (position & Vu::HCENTER)
        x += (available[0] - side) / 2;
    // Viewport pixels count from the bottom.
    if (position & Vu::TOP)
        y += available[1] - side;
    else if (position & Vu::VCENTER)
        y += (available[1] - side) / 2;
    SbViewportRegion corner(window.getWindowSize());
    corner.setViewportPixels(SbVec2s(short(x), short(y)), SbVec2s(short(side), short(side)));
    return corner;
}

void Vg3CornerOverlay::enterCornerViewport(SoAction* action, int position, int size)
{
    SoState* state = action ? action->getState() : nullptr;
    if (!state || !state->isElementEnabled(SoViewportRegionElement::getClassStackIndex()))
        return;
    const SbViewportRegion corner = cornerViewport(SoViewportRegionElement::get(state), position, size);
    SoViewportRegionElement::set(state, corner);
    if (!action->isOfType(SoGLRenderAction::getClassTypeId()))
        return;
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context)
        return;
    // glClear ignores the viewport; the scissor box limits it to the corner.
    QOpenGLFunctions* gl = context->functions();
    const SbVec2s origin = corner.getViewportOriginPixels();
    const SbVec2s extent = corner.getViewportSizePixels();
    GLint previousBox[4] = {0, 0, 0, 0};
    gl->glGetIntegerv(GL_SCISSOR_BOX, previousBox);
    const bool scissorWasOn = gl->glIsEnabled(GL_SCISSOR_TEST);
    gl->glEnable(GL_SCISSOR_TEST);
    gl->glScissor(origin[0], origin[1], extent[0], extent[1]);
    gl->glClear(GL_DEPTH_BUFFER_BIT);
    gl->glScissor(previousBox[0], previousBox[1], previousBox[2], previousBox[3]);
    if (!scissorWasOn)
        gl->glDisable(GL_SCISSOR_TEST);
}

void Vg3CornerOverlay::_cornerCallback(void* data, SoAction* action)
{
    auto self = static_cast<Vg3CornerOverlay*>(data);
    enterCornerViewport(action, self->_position, self->_size);
}

void Vg3CornerOverlay::_cameraChanged(void* data, SoSensor*)
{
    auto self = static_cast<Vg3CornerOverlay*>(data);
    if (self->_camera)
        self->_changed(self->_camera->orientation.getValue(), true);
}

void Vg3CornerOverlay::_cameraDeleted(void* data, SoSensor*)
{
    static_cast<Vg3CornerOverlay*>(data)->_camera = nullptr;
}

void Vg3CornerOverlay::_updateSwitch()
{
    const int which = isShown() ? SO_SWITCH_ALL : SO_SWITCH_NONE;
    if (_visibility->whichChild.getValue() != which)
        _visibility->whichChild = which;
}
