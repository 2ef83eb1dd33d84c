#include <Vg3Compass.h>

#include <Vg3CornerOverlay.h>
#include <VuPosition.h>

#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoFaceSet.h>
#include <Inventor/nodes/SoRotationXYZ.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QCoreApplication>

#include <cmath>

namespace {

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

    // The arrow and its letter fill most of the square.
    Vg3CornerOverlay corner{"Vg3Compass", "vg3compass", Vu::RIGHT | Vu::TOP, 80, 2.4f,
                            [this](const SbRotation& orientation, bool) { setOrientation(orientation); }};
    SoRotationXYZ* rotation = nullptr;
    SoBaseColor* baseColor = nullptr;
    QColor color = Qt::white;
};

Vg3Compass::Vg3Compass()
    : _d(new Vg3CompassPrivate)
{
    SoSeparator* overlay = _d->corner.getContent();
    _d->baseColor = new SoBaseColor;
    overlay->addChild(_d->baseColor);

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

Vg3Compass::~Vg3Compass() = default;

SoSeparator* Vg3Compass::getRoot() const
{
    return _d->corner.getRoot();
}

void Vg3Compass::connectCamera(SoCamera* camera)
{
    _d->corner.connectCamera(camera);
}

SoCamera* Vg3Compass::getCamera() const
{
    return _d->corner.getCamera();
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
    _d->corner.setPosition(position);
}

int Vg3Compass::getPosition() const
{
    return _d->corner.getPosition();
}

void Vg3Compass::setSize(int pixels)
{
    _d->corner.setSize(pixels);
}

int Vg3Compass::getSize() const
{
    return _d->corner.getSize();
}

void Vg3Compass::setVisible(bool visible)
{
    _d->corner.setVisible(visible);
}

bool Vg3Compass::isVisible() const
{
    return _d->corner.isVisible();
}

void Vg3Compass::setColor(const QColor& color)
{
    if (!color.isValid()) {
        qWarning("Vg3Compass::setColor: invalid colour");
        return;
    }
    _d->color = color;
    _d->baseColor->rgb.setValue(float(color.redF()), float(color.greenF()), float(color.blueF()));
}

QColor Vg3Compass::getColor() const
{
    return _d->color;
}
