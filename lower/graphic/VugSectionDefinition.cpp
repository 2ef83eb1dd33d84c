#include "VugSectionDefinition.h"

VugSectionDefinition::VugSectionDefinition(const KbgClipPlaneDefinition& clipPlane)
    : _type(CLIP_PLANE), _clipPlane(clipPlane)
{
}

VugSectionDefinition::VugSectionDefinition(const KbgFence& fence) : _type(FENCE), _fence(fence)
{
}

bool VugSectionDefinition::operator==(const VugSectionDefinition& o) const
{
    return _type == o._type && _clipPlane == o._clipPlane && _fence == o._fence
           && _clippingEnabled == o._clippingEnabled && _unfoldFence == o._unfoldFence;
}
