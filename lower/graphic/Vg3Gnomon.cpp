#include <Vg3Gnomon.h>

#include <VuPosition.h>

#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/elements/SoViewportRegionElement.h>
#include <Inventor/misc/SoState.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCallback.h>
#include <Inventor/nodes/SoCone.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTransform.h>
#include <Inventor/nodes/SoTranslation.h>
#include <Inventor/sensors/SoAlarmSensor.h>
#include <Inventor/sensors/SoFieldSensor.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QtGlobal>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMinSize = 16;

SoSeparator* makeArrow(const SbVec3f& direction, const SbColor& color, const char* letter)
{
    auto arrow = new SoSeparator;
    auto baseColor = new SoBaseColor;
    baseColor->rgb = color;
    arrow->addChild(baseColor);

    auto coords = new SoCoordinate3;
    coords->point.set1Value(0, SbVec3f(0.0f, 0.0f, 0.0f));
    coords->point.set1Value(1, direction * 0.75f);
    arrow->addChild(coords);
    arrow->addChild(new SoLineSet);

    auto head = new SoSeparator;
    auto transform = new SoTransform;
    transform->translation = direction * 0.875f;
    // Cones point along +y.
    transform->rotation = SbRotation(SbVec3f(0.0f, 1.0f, 0.0f), direction);
    auto cone = new SoCone;
    cone->bottomRadius = 0.09f;
    cone->height = 0.25f;
    head->addChild(transform);
    head->addChild(cone);
    arrow->addChild(head);

    auto translation = new SoTranslation;
    translation->translation = direction * 1.1f;
    auto text = new SoText2;
    text->string = letter;
    text->justification = SoText2::CENTER;
    arrow->addChild(translation);
    arrow->addChild(text);
    return arrow;
}

} // namespace

class Vg3GnomonPrivate
{
public:
    static void cornerCallback(void* data, SoAction* action)
    {
        auto d = static_cast<Vg3GnomonPrivate*>(data);
        Vg3Gnomon::enterCornerViewport(action, d->position, d->size);
    }
    static void cameraChanged(void* data, SoSensor*)
    {
        auto d = static_cast<Vg3GnomonPrivate*>(data);
        if (d->camera)
            d->setOrientation(d->camera->orientation.getValue(), true);
    }
    static void cameraDeleted(void* data, SoSensor*)
    {
        static_cast<Vg3GnomonPrivate*>(data)->camera = nullptr;
    }
    static void settled(void* data, SoSensor*)
    {
        auto d = static_cast<Vg3GnomonPrivate*>(data);
        d->moving = false;
        d->updateSwitch();
    }

    void setOrientation(const SbRotation& orientation, bool turning)
    {
        cameraOrientation = orientation;
        // The triad shows the world axes as the main camera sees them.
        rotation->rotation = orientation.inverse();
        if (turning && automatic) {
            moving = true;
            alarm.unschedule();
            alarm.setTimeFromNow(SbTime(delay));
            alarm.schedule();
        }
        updateSwitch();
    }
    bool shown() const { return visible && (!automatic || moving); }
    void updateSwitch()
    {
        const int which = shown() ? SO_SWITCH_ALL : SO_SWITCH_NONE;
        if (visibility->whichChild.getValue() != which)
            visibility->whichChild = which;
    }

    SoSeparator* root = nullptr;
    SoSwitch* visibility = nullptr;
    SoRotation* rotation = nullptr;
    SoCamera* camera = nullptr;
    SoFieldSensor sensor{&Vg3GnomonPrivate::cameraChanged, this};
    SoAlarmSensor alarm{&Vg3GnomonPrivate::settled, this};
    SbRotation cameraOrientation = SbRotation::identity();
    int position = Vu::LEFT | Vu::BOTTOM;
    int size = 100;
    double delay = 1.0;
    bool visible = true;
    bool automatic = false;
    bool moving = false;
};

Vg3Gnomon::Vg3Gnomon()
    : _d(new Vg3GnomonPrivate)
{
    // Reacts within the change itself, so the triad is right in the very next render.
    _d->sensor.setPriority(0);
    _d->sensor.setDeleteCallback(&Vg3GnomonPrivate::cameraDeleted, _d.get());

    _d->root = new SoSeparator;
    _d->root->ref();
    _d->root->setName("vg3gnomon_root");
    _d->visibility = new SoSwitch;
    _d->visibility->setName("vg3gnomon_visibility");
    _d->visibility->whichChild = SO_SWITCH_ALL;
    _d->root->addChild(_d->visibility);

    auto overlay = new SoSeparator;
    _d->visibility->addChild(overlay);
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    overlay->addChild(pickStyle);
    auto corner = new SoCallback;
    corner->setCallback(&Vg3GnomonPrivate::cornerCallback, _d.get());
    overlay->addChild(corner);

    auto camera = new SoOrthographicCamera;
    camera->position.setValue(0.0f, 0.0f, 3.0f);
    camera->nearDistance = 1.0f;
    camera->farDistance = 5.0f;
    // Room beyond the arrow tips for the letters, so they stay inside the square.
    camera->height = 3.0f;
    overlay->addChild(camera);

    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    overlay->addChild(lightModel);
    auto drawStyle = new SoDrawStyle;
    drawStyle->lineWidth = 3.0f;
    overlay->addChild(drawStyle);
    auto font = new SoFont;
    font->size = 14.0f;
    overlay->addChild(font);

    _d->rotation = new SoRotation;
    _d->rotation->setName("vg3gnomon_rotation");
    overlay->addChild(_d->rotation);
    overlay->addChild(makeArrow(SbVec3f(1.0f, 0.0f, 0.0f), SbColor(0.9f, 0.1f, 0.1f), "X"));
    overlay->addChild(makeArrow(SbVec3f(0.0f, 1.0f, 0.0f), SbColor(0.1f, 0.8f, 0.1f), "Y"));
    overlay->addChild(makeArrow(SbVec3f(0.0f, 0.0f, 1.0f), SbColor(0.2f, 0.3f, 1.0f), "Z"));
}

Vg3Gnomon::~Vg3Gnomon()
{
    _d->sensor.detach();
    _d->alarm.unschedule();
    _d->root->unref();
}

SoSeparator* Vg3Gnomon::getRoot() const
{
    return _d->root;
}

void Vg3Gnomon::connectCamera(SoCamera* camera)
{
    if (camera == _d->camera)
        return;
    _d->sensor.detach();
    _d->camera = camera;
    if (camera) {
        _d->sensor.attach(&camera->orientation);
        _d->setOrientation(camera->orientation.getValue(), false);
    }
}

SoCamera* Vg3Gnomon::getCamera() const
{
    return _d->camera;
}

void Vg3Gnomon::setCameraOrientation(const SbRotation& orientation)
{
    _d->setOrientation(orientation, true);
}

SbRotation Vg3Gnomon::getCameraOrientation() const
{
    return _d->cameraOrientation;
}

void Vg3Gnomon::setPosition(int position)
{
    if (!Vu::isValidPosition(position)) {
        qWarning("Vg3Gnomon::setPosition: invalid position %d", position);
        return;
    }
    if (position == _d->position)
        return;
    _d->position = position;
    _d->root->touch();
}

int Vg3Gnomon::getPosition() const
{
    return _d->position;
}

void Vg3Gnomon::setSize(int pixels)
{
    if (pixels < kMinSize) {
        qWarning("Vg3Gnomon::setSize: size %d below %d pixels", pixels, kMinSize);
        return;
    }
    if (pixels == _d->size)
        return;
    _d->size = pixels;
    _d->root->touch();
}

int Vg3Gnomon::getSize() const
{
    return _d->size;
}

void Vg3Gnomon::setVisible(bool visible)
{
    _d->visible = visible;
    _d->updateSwitch();
}

bool Vg3Gnomon::isVisible() const
{
    return _d->visible;
}

void Vg3Gnomon::setAutomatic(bool automatic)
{
    if (automatic == _d->automatic)
        return;
    _d->automatic = automatic;
    _d->moving = false;
    _d->alarm.unschedule();
    _d->updateSwitch();
}

bool Vg3Gnomon::isAutomatic() const
{
    return _d->automatic;
}

void Vg3Gnomon::setAutomaticDelay(double delaySeconds)
{
    if (!(delaySeconds >= 0.0) || !std::isfinite(delaySeconds)) {
        qWarning("Vg3Gnomon::setAutomaticDelay: invalid delay %g", delaySeconds);
        return;
    }
    _d->delay = delaySeconds;
}

bool Vg3Gnomon::isShown() const
{
    return _d->shown();
}

SbViewportRegion Vg3Gnomon::cornerViewport(const SbViewportRegion& window, int position, int size)
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

void Vg3Gnomon::enterCornerViewport(SoAction* action, int position, int size)
{
    SoState* state = action ? action->getState() : nullptr;
    if (!state || !state->isElementEnabled(SoViewportRegionElement::getClassStackIndex()))
        return;
    const SbViewportRegion corner =
        cornerViewport(SoViewportRegionElement::get(state), position, size);
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
