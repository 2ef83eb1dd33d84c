#pragma once
// Writes the 3D views' pictures: atomically (written aside and renamed, so a failure leaves
// an earlier file whole), in the format the file's suffix names (PNG without one), and PNG
// at a fast compression, since a view is saved while the user waits.

#include <velmora_widget_export.h>

#include <QString>

class QImage;

class VELMORA_WIDGET_EXPORT Vw3ImageFile
{
public:
    // False with the reason in `error` (when given) for a null image, an unknown format or
    // a file that cannot be written.
    static bool write(const QImage& image, const QString& fileName, QString* error = nullptr);

    Vw3ImageFile() = delete;
};
