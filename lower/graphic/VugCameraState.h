#pragma once
// Where a 3D view's camera is, as a plain value that a window saves with the project and
// restores: position, orientation (axis and angle in radians), focal distance, the
// perspective height angle or orthographic height, and the projection.

#include <velmora_graphic_export.h>

#include <QMetaType>
#include <QString>

namespace Vug {

struct VELMORA_GRAPHIC_EXPORT CameraState
{
    double position[3] = {0.0, 0.0, 1.0};
    double axis[3] = {0.0, 0.0, 1.0};
    double angle = 0.0;
    double focalDistance = 1.0;
    // Height angle in radians for a perspective camera, height in scene units for an
    // orthographic one.
    double height = 0.785398163397448;
    bool orthographic = false;

    bool isValid() const;
    bool operator==(const CameraState& o) const;
    bool operator!=(const CameraState& o) const { return !(*this == o); }

    // "px py pz ax ay az angle focal height persp|ortho"; fromString refuses anything else
    // (or non-finite numbers) with false and leaves `state` unchanged.
    QString toString() const;
    static bool fromString(const QString& text, CameraState& state);
};

} // namespace Vug

Q_DECLARE_METATYPE(Vug::CameraState)
