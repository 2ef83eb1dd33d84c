#pragma once
// File-system helpers for the files of a user's project: opening for reading without
// ever blocking on something that is not a file, and keeping aside a file that could not
// be read so that nothing writes over it.

#include <velmora_util_export.h>

#include <QIODevice>
#include <QString>

class QFile;

class VELMORA_UTIL_EXPORT VusFileUtils
{
public:
    // Removes a file, or a folder (with its content when recursive). True when nothing
    // is left at the path, also when nothing was there.
    static bool removePath(const QString& path, bool recursive);

    // Opens file (by its fileName()) for reading when the path is a regular file or a
    // link to one. A FIFO, device, socket or folder is refused before anything could wait
    // on it. Throws KbeError naming the file and, on a failed open, the system's reason.
    static void openForReading(QFile& file, QIODevice::OpenMode extra = QIODevice::NotOpen);

    // Whether path is a regular file or a link to one (a FIFO or folder is not).
    static bool isRegularFile(const QString& path);

    // Moves the regular file at path to "<path>.bad", or "<path>.bad.2" and on when that
    // name is taken, so that the next save writes a new file and the unreadable one stays
    // for the user. Returns the new path; empty (with a qWarning) when path is not a
    // regular file or cannot be moved: the caller must then not write over it.
    static QString keepAside(const QString& path);

    VusFileUtils() = delete;
};
