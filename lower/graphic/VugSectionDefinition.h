#pragma once
// What a 3D view cuts its scene with: a clip plane or a fence, whether clipping is on,
// and whether a fence section is shown unfolded (its panels laid out flat side by side).
// Both the plane and the fence are kept whichever is in use, so that switching back and
// forth loses neither. A plain copyable value, sent with every section change.

#include <velmora_graphic_export.h>

#include <KbgClipPlaneDefinition.h>
#include <KbgFence.h>

#include <QMetaType>

class VELMORA_GRAPHIC_EXPORT VugSectionDefinition
{
public:
    enum Type { CLIP_PLANE, FENCE };

    VugSectionDefinition() = default;
    explicit VugSectionDefinition(const KbgClipPlaneDefinition& clipPlane);
    explicit VugSectionDefinition(const KbgFence& fence);

    Type getType() const { return _type; }
    void setType(Type type) { _type = type; }
    bool isFence() const { return _type == FENCE; }

    const KbgClipPlaneDefinition& getClipPlaneDefinition() const { return _clipPlane; }
    KbgClipPlaneDefinition& clipPlaneDefinition() { return _clipPlane; }
    void setClipPlaneDefinition(const KbgClipPlaneDefinition& clipPlane) { _clipPlane = clipPlane; }

    const KbgFence& getFence() const { return _fence; }
    void setFence(const KbgFence& fence) { _fence = fence; }

    bool isClippingEnabled() const { return _clippingEnabled; }
    void setClippingEnabled(bool enabled) { _clippingEnabled = enabled; }
    bool isFenceUnfolded() const { return _unfoldFence; }
    void setFenceUnfolded(bool unfold) { _unfoldFence = unfold; }

    bool operator==(const VugSectionDefinition& o) const;
    bool operator!=(const VugSectionDefinition& o) const { return !(*this == o); }

private:
    Type _type = CLIP_PLANE;
    KbgClipPlaneDefinition _clipPlane;
    KbgFence _fence;
    bool _clippingEnabled = false;
    bool _unfoldFence = false;
};

Q_DECLARE_METATYPE(VugSectionDefinition)
