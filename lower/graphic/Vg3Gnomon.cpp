#include <Vg3Gnomon.h>

#include <Vg3CornerOverlay.h>
#include <VuPosition.h>

#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCone.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoDrawStyle.h>
#include <Inventor/nodes/SoLineSet.h>
#include <Inventor/nodes/SoRotation.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTransform.h>
#include <Inventor/nodes/SoTranslation.h>
#include <Inventor/sensors/SoAlarmSensor.h>

#include <QtGlobal>

#include <cmath>

namespace {

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
    void updateSwitch() { corner.setSuppressed(automatic && !moving); }

    // Room beyond the arrow tips for the letters, so they stay inside the square.
    Vg3CornerOverlay corner{"Vg3Gnomon", "vg3gnomon", Vu::LEFT | Vu::BOTTOM, 100, 3.0f,
                            [this](const SbRotation& orientation, bool turning) {
                                setOrientation(orientation, turning);
                            }};
    SoRotation* rotation = nullptr;
    SoAlarmSensor alarm{&Vg3GnomonPrivate::settled, this};
    SbRotation cameraOrientation = SbRotation::identity();
    double delay = 1.0;
    bool automatic = false;
    bool moving = false;
};

Vg3Gnomon::Vg3Gnomon()
    : _d(new Vg3GnomonPrivate)
{
    SoSeparator* overlay = _d->corner.getContent();
    auto drawStyle = new SoDrawStyle;
    drawStyle->lineWidth = 3.0f;
    overlay->addChild(drawStyle);

    _d->rotation = new SoRotation;
    _d->rotation->setName("vg3gnomon_rotation");
    overlay->addChild(_d->rotation);
    overlay->addChild(makeArrow(SbVec3f(1.0f, 0.0f, 0.0f), SbColor(0.9f, 0.1f, 0.1f), "X"));
    overlay->addChild(makeArrow(SbVec3f(0.0f, 1.0f, 0.0f), SbColor(0.1f, 0.8f, 0.1f), "Y"));
    overlay->addChild(makeArrow(SbVec3f(0.0f, 0.0f, 1.0f), SbColor(0.2f, 0.3f, 1.0f), "Z"));
}

Vg3Gnomon::~Vg3Gnomon()
{
    _d->alarm.unschedule();
}

SoSeparator* Vg3Gnomon::getRoot() const
{
    return _d->corner.getRoot();
}

void Vg3Gnomon::connectCamera(SoCamera* camera)
{
    _d->corner.connectCamera(camera);
}

SoCamera* Vg3Gnomon::getCamera() const
{
    return _d->corner.getCamera();
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
    _d->corner.setPosition(position);
}

int Vg3Gnomon::getPosition() const
{
    return _d->corner.getPosition();
}

void Vg3Gnomon::setSize(int pixels)
{
    _d->corner.setSize(pixels);
}

int Vg3Gnomon::getSize() const
{
    return _d->corner.getSize();
}

void Vg3Gnomon::setVisible(bool visible)
{
    _d->corner.setVisible(visible);
}

bool Vg3Gnomon::isVisible() const
{
    return _d->corner.isVisible();
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
    return _d->corner.isShown();
}

SbViewportRegion Vg3Gnomon::cornerViewport(const SbViewportRegion& window, int position, int size)
{
    return Vg3CornerOverlay::cornerViewport(window, position, size);
}

void Vg3Gnomon::enterCornerViewport(SoAction* action, int position, int size)
{
    Vg3CornerOverlay::enterCornerViewport(action, position, size);
}
