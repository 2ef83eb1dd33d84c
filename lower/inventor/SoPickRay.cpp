#include "SoPickRay.h"

#include <Inventor/actions/SoRayPickAction.h>
#include <Inventor/nodes/SoCallback.h>

namespace {

void restore(void*, SoAction* action)
{
    if (action->isOfType(SoRayPickAction::getClassTypeId()))
        static_cast<SoRayPickAction*>(action)->computeWorldSpaceRay();
}

} // namespace

SoNode* SoPickRay::newRestorer()
{
    auto node = new SoCallback;
    node->setName("pick_ray_restorer");
    node->setCallback(&restore);
    return node;
}
