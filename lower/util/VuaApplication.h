#pragma once
// Application-wide choices the library asks about.

#include <velmora_util_export.h>

class VELMORA_UTIL_EXPORT VuaApplication
{
public:
    // Whether opening a project without a 3D display creates an empty one.
    static bool shouldSpawnDefault3DV();
    static void setSpawnDefault3DV(bool spawn);

    VuaApplication() = delete;
};
