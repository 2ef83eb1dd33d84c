#pragma once
// Writes the 3D views' pictures: atomically (written aside and renamed, so a failure leaves
// an earlier file whole), in the format the file's suffix names (PNG without one). PNG is
// written with one row filter and fast compression, since a view is saved while the user
// waits; an image with an alpha channel keeps it.

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
