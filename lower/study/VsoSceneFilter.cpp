#include "VsoSceneFilter.h"

#include "VsoSceneIdentifier.h"

bool VsoSceneFilter::check(const VsoSceneIdentifier& scene) const
{
    if (!scene.exists())
        return false;
    return _types.isEmpty() || _types.contains(scene.getSceneType());
}
