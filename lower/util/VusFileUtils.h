#pragma once
// File-system helpers.

#include <velmora_util_export.h>

#include <QString>

class VELMORA_UTIL_EXPORT VusFileUtils
{
public:
    // Removes a file, or a folder (with its content when recursive). True when nothing
    // is left at the path, also when nothing was there.
    static bool removePath(const QString& path, bool recursive);

    VusFileUtils() = delete;
};
