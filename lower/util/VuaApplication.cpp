#include "VuaApplication.h"

#include <atomic>

namespace {
std::atomic<bool> spawnDefault3DV{true};
}

bool VuaApplication::shouldSpawnDefault3DV() { return spawnDefault3DV; }
void VuaApplication::setSpawnDefault3DV(bool spawn) { spawnDefault3DV = spawn; }
