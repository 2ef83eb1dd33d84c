#include <Vg3Compass.h>

#include <Vg3Gnomon.h>
#include <VuPosition.h>

#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCallback.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoFaceSet.h>
#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoPickStyle.h>
#include <Inventor/nodes/SoRotationXYZ.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>
#include <Inventor/sensors/SoFieldSensor.h>

#include <QCoreApplication>

#include <cmath>

namespace {

constexpr int kMinSize = 16;

// The horizontal direction the camera looks toward. Looking straight down, the screen's up
// direction is what the user reads as "ahead"; the weight -d.z blends the two so that the
// heading does not jump as the camera tilts. False when the blend vanishes (an upside-down
// camera at one exact tilt).
bool horizontalAhead(const SbRotation& orientation, float& ahead_x, float& ahead_y)
{
    SbVec3f view;
    SbVec3f up;
    orientation.multVec(SbVec3f(0.0f, 0.0f, -1.0f), view);
    orientation.multVec(SbVec3f(0.0f, 1.0f, 0.0f), up);
    ahead_x = view[0] - view[2] * up[0];
    ahead_y = view[1] - view[2] * up[1];
    return std::hypot(ahead_x, ahead_y) > 1e-6f;
}

} // namespace

class Vg3CompassPrivate
{
public:
    static void cornerCallback(void* data, SoAction* action)
    {
        auto d = static_cast<Vg3CompassPrivate*>(data);
        Vg3Gnomon::enterCornerViewport(action, d->position, d->size);
    }
    static void cameraChanged(void* data, SoSensor*)
    {
        auto d = static_cast<Vg3CompassPrivate*>(data);
        if (d->camera)
            d->setOrientation(d->camera->orientation.getValue());
    }
    static void cameraDeleted(void* data, SoSensor*)
    {
        static_cast<Vg3CompassPrivate*>(data)->camera = nullptr;
    }

    void setOrientation(const SbRotation& orientation)
    {
        float x = 0.0f;
        float y = 0.0f;
        // Keep the last arrow when the heading is undefined.
        if (!horizontalAhead(orientation, x, y))
            return;
        // Facing a bearing h, north is seen h counter-clockwise from the screen's up.
        const float angle = std::atan2(x, y);
        if (rotation->angle.getValue() != angle)
            rotation->angle = angle;
    }

    SoSeparator* root = nullptr;
    SoSwitch* visibility = nullptr;
    SoRotationXYZ* rotation = nullptr;
    SoBaseColor* baseColor = nullptr;
    SoCamera* camera = nullptr;
    SoFieldSensor sensor{&Vg3CompassPrivate::cameraChanged, this};
    QColor color = Qt::white;
    int position = Vu::RIGHT | Vu::TOP;
    int size = 80;
    bool visible = true;
};

Vg3Compass::Vg3Compass()
    : _d(new Vg3CompassPrivate)
{
    _d->sensor.setPriority(0);
    _d->sensor.setDeleteCallback(&Vg3CompassPrivate::cameraDeleted, _d.get());

    _d->root = new SoSeparator;
    _d->root->ref();
    _d->root->setName("vg3compass_root");
    _d->visibility = new SoSwitch;
    _d->visibility->setName("vg3compass_visibility");
    _d->visibility->whichChild = SO_SWITCH_ALL;
    _d->root->addChild(_d->visibility);

    auto overlay = new SoSeparator;
    _d->visibility->addChild(overlay);
    auto pickStyle = new SoPickStyle;
    pickStyle->style = SoPickStyle::UNPICKABLE;
    overlay->addChild(pickStyle);
    auto corner = new SoCallback;
    corner->setCallback(&Vg3CompassPrivate::cornerCallback, _d.get());
    overlay->addChild(corner);

    auto camera = new SoOrthographicCamera;
    camera->position.setValue(0.0f, 0.0f, 3.0f);
    camera->nearDistance = 1.0f;
    camera->farDistance = 5.0f;
    camera->height = 2.4f;
    overlay->addChild(camera);

    auto lightModel = new SoLightModel;
    lightModel->model = SoLightModel::BASE_COLOR;
    overlay->addChild(lightModel);
    _d->baseColor = new SoBaseColor;
    overlay->addChild(_d->baseColor);
    auto font = new SoFont;
    font->size = 14.0f;
    overlay->addChild(font);

    _d->rotation = new SoRotationXYZ;
    _d->rotation->setName("vg3compass_rotation");
    _d->rotation->axis = SoRotationXYZ::Z;
    overlay->addChild(_d->rotation);

    // Two triangles make a notched arrow pointing up (north when unrotated).
    const SbVec3f arrow[6] = {
        {0.0f, 0.6f, 0.0f}, {-0.3f, -0.6f, 0.0f}, {0.0f, -0.3f, 0.0f},
        {0.0f, 0.6f, 0.0f}, {0.0f, -0.3f, 0.0f},  {0.3f, -0.6f, 0.0f},
    };
    auto coords = new SoCoordinate3;
    coords->point.setValues(0, 6, arrow);
    auto faces = new SoFaceSet;
    faces->numVertices.set1Value(0, 3);
    faces->numVertices.set1Value(1, 3);
    overlay->addChild(coords);
    overlay->addChild(faces);

    auto translation = new SoTranslation;
    translation->translation.setValue(0.0f, 0.7f, 0.0f);
    auto north = new SoText2;
    north->string = QCoreApplication::translate("Vg3Compass", "N").toUtf8().constData();
    north->justification = SoText2::CENTER;
    overlay->addChild(translation);
    overlay->addChild(north);

    setColor(_d->color);
}

Vg3Compass::~Vg3Compass()
{
    _d->sensor.detach();
    _d->root->unref();
}

SoSeparator* Vg3Compass::getRoot() const
{
    return _d->root;
}

void Vg3Compass::connectCamera(SoCamera* camera)
{
    if (camera == _d->camera)
        return;
    _d->sensor.detach();
    _d->camera = camera;
    if (camera) {
        _d->sensor.attach(&camera->orientation);
        _d->setOrientation(camera->orientation.getValue());
    }
}

SoCamera* Vg3Compass::getCamera() const
{
    return _d->camera;
}

void Vg3Compass::setCameraOrientation(const SbRotation& orientation)
{
    _d->setOrientation(orientation);
}

float Vg3Compass::getArrowAngle() const
{
    return _d->rotation->angle.getValue();
}

float Vg3Compass::heading(const SbRotation& orientation)
{
    float x = 0.0f;
    float y = 0.0f;
    if (!horizontalAhead(orientation, x, y))
        return 0.0f;
    return std::atan2(x, y);
}

void Vg3Compass::setPosition(int position)
{
    if (!Vu::isValidPosition(position)) {
        qWarning("Vg3Compass::setPosition: invalid position %d", position);
        return;
    }
    if (position == _d->position)
        return;
    _d->position = position;
    _d->root->touch();
}

int Vg3Compass::getPosition() const
{
    return _d->position;
}

void Vg3Compass::setSize(int pixels)
{
    if (pixels < kMinSize) {
        qWarning("Vg3Compass::setSize: size %d below %d pixels", pixels, kMinSize);
        return;
    }
    if (pixels == _d->size)
        return;
    _d->size = pixels;
    _d->root->touch();
}

int Vg3Compass::getSize() const
{
    return _d->size;
}

void Vg3Compass::setVisible(bool visible)
{
    _d->visible = visible;
    _d->visibility->whichChild = visible ? SO_SWITCH_ALL : SO_SWITCH_NONE;
}

bool Vg3Compass::isVisible() const
{
    return _d->visible;
}

void Vg3Compass::setColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3Compass::setColor: invalid colour");
        return;
    }
    _d->color = color;
    _d->baseColor->rgb.setValue(float(color.redF()), float(color.greenF()),
                                float(color.blueF()));
}

QColor Vg3Compass::getColor() const
{
    return _d->color;
}
