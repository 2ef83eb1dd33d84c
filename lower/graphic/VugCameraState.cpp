#include "VugCameraState.h"

#include <QStringList>
#include <QtGlobal>

#include <cmath>

namespace Vug {

bool CameraState::isValid() const
{
    const double numbers[] = {position[0], position[1], position[2], axis[0], axis[1], axis[2], angle,
        focalDistance, height};
    for (double v : numbers) {
        if (!std::isfinite(v))
            return false;
    }
    if (!(focalDistance > 0.0) || !(height > 0.0))
        return false;
    // A perspective height angle must open less than a half turn.
    if (!orthographic && height >= M_PI)
        return false;
    return axis[0] != 0.0 || axis[1] != 0.0 || axis[2] != 0.0;
}

bool CameraState::operator==(const CameraState& o) const
{
    for (int i = 0; i < 3; ++i) {
        if (position[i] != o.position[i] || axis[i] != o.axis[i])
            return false;
    }
    return angle == o.angle && focalDistance == o.focalDistance && height == o.height
        && orthographic == o.orthographic;
}

QString CameraState::toString() const
{
    QStringList parts;
    const double numbers[] = {position[0], position[1], position[2], axis[0], axis[1], axis[2], angle,
        focalDistance, height};
    for (double v : numbers)
        parts << QString::number(v, 'g', 17);
    parts << (orthographic ? QStringLiteral("ortho") : QStringLiteral("persp"));
    return parts.join(QLatin1Char(' '));
}

bool CameraState::fromString(const QString& text, CameraState& state)
{
    const QStringList parts = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    if (parts.size() != 10) {
        qWarning("Vug::CameraState::fromString: \"%s\" has %d fields instead of 10, ignored",
            qPrintable(text.left(200)), int(parts.size()));
        return false;
    }
    double numbers[9];
    for (int i = 0; i < 9; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toDouble(&ok);
        if (!ok || !std::isfinite(numbers[i])) {
            qWarning("Vug::CameraState::fromString: field %d \"%s\" is not a finite number, ignored", i + 1,
                qPrintable(parts[i].left(40)));
            return false;
        }
    }
    CameraState read;
    if (parts[9] == QLatin1String("ortho")) {
        read.orthographic = true;
    } else if (parts[9] == QLatin1String("persp")) {
        read.orthographic = false;
    } else {
        qWarning("Vug::CameraState::fromString: projection \"%s\" is neither persp nor ortho, ignored",
            qPrintable(parts[9].left(40)));
        return false;
    }
    for (int i = 0; i < 3; ++i) {
        read.position[i] = numbers[i];
        read.axis[i] = numbers[3 + i];
    }
    read.angle = numbers[6];
    read.focalDistance = numbers[7];
    read.height = numbers[8];
    if (!read.isValid()) {
        qWarning("Vug::CameraState::fromString: \"%s\" is not a usable camera, ignored", qPrintable(text.left(200)));
        return false;
    }
    state = read;
    return true;
}

} // namespace Vug
