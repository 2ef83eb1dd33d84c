#include "Vg3SectionModel.h"

#include <SoRef.h>

#include <Inventor/SbName.h>
#include <Inventor/SbPlane.h>
#include <Inventor/nodes/SoClipPlane.h>
#include <Inventor/nodes/SoGroup.h>

#include <cmath>

class Vg3SectionModelPrivate
{
public:
    VugSectionDefinition definition;
    SoRef<SoGroup> clipNode;
    SoClipPlane* planes[2] = {nullptr, nullptr};
};

namespace {

bool isDirection(const KbgVector3D& v)
{
    const double len = v.length();
    return v.isFinite() && len > 0.0 && std::isfinite(len);
}

bool isPositive(double value)
{
    return std::isfinite(value) && value > 0.0;
}

SbPlane toSbPlane(const KbgPlane& plane)
{
    const KbgVector3D n = plane.getNormal();
    return SbPlane(SbVec3f(float(n.x()), float(n.y()), float(n.z())), float(plane.getDistance()));
}

} // namespace

Vg3SectionModel::Vg3SectionModel(QObject* parent)
    : QObject(parent), _d(std::make_unique<Vg3SectionModelPrivate>())
{
    qRegisterMetaType<VugSectionDefinition>();
    _d->clipNode = new SoGroup;
    _d->clipNode->setName(SbName("vg3_section_clip"));
    for (int i = 0; i < 2; ++i) {
        _d->planes[i] = new SoClipPlane;
        _d->planes[i]->setName(SbName(i == 0 ? "vg3_section_clip_back" : "vg3_section_clip_front"));
        _d->clipNode->addChild(_d->planes[i]);
    }
    _updateClipNode();
}

Vg3SectionModel::~Vg3SectionModel() = default;

const VugSectionDefinition& Vg3SectionModel::getSectionDefinition() const
{
    return _d->definition;
}

const KbgClipPlaneDefinition& Vg3SectionModel::getClipPlaneDefinition() const
{
    return _d->definition.getClipPlaneDefinition();
}

void Vg3SectionModel::setSectionDefinition(const VugSectionDefinition& definition)
{
    _commit(definition);
}

void Vg3SectionModel::setSectionType(VugSectionDefinition::Type type)
{
    if (type != VugSectionDefinition::CLIP_PLANE && type != VugSectionDefinition::FENCE) {
        qWarning("Vg3SectionModel::setSectionType: unknown type %d", int(type));
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.setType(type);
    _commit(d);
}

void Vg3SectionModel::setClipPlane(const KbgPlane& plane)
{
    setPlane(plane.getPoint(), plane.getNormal());
}

void Vg3SectionModel::setPlane(const KbgVector3D& point, const KbgVector3D& normal)
{
    if (!point.isFinite() || !isDirection(normal)) {
        qWarning("Vg3SectionModel::setPlane: point (%g, %g, %g) and normal (%g, %g, %g) refused",
                 point.x(), point.y(), point.z(), normal.x(), normal.y(), normal.z());
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setNormal(normal);
    d.clipPlaneDefinition().setPosition(point);
    d.setType(VugSectionDefinition::CLIP_PLANE);
    _commit(d);
}

void Vg3SectionModel::setClipPosition(const KbgVector3D& position)
{
    if (!position.isFinite()) {
        qWarning("Vg3SectionModel::setClipPosition: position (%g, %g, %g) refused", position.x(),
                 position.y(), position.z());
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setPosition(position);
    _commit(d);
}

KbgVector3D Vg3SectionModel::getClipPosition() const
{
    return getClipPlaneDefinition().getPosition();
}

void Vg3SectionModel::setClipOrientation(const KbgRotation& rotation)
{
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setOrientation(rotation);
    _commit(d);
}

void Vg3SectionModel::setPlaneNormal(const KbgVector3D& normal)
{
    if (!isDirection(normal)) {
        qWarning("Vg3SectionModel::setPlaneNormal: normal (%g, %g, %g) refused", normal.x(),
                 normal.y(), normal.z());
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setNormal(normal);
    _commit(d);
}

KbgVector3D Vg3SectionModel::getPlaneNormal() const
{
    return getClipPlaneDefinition().getNormal();
}

void Vg3SectionModel::flipPlane()
{
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().flip();
    _commit(d);
}

void Vg3SectionModel::setClippingMode(KbgClipPlaneDefinition::Mode mode)
{
    if (mode != KbgClipPlaneDefinition::HALF_SPACE && mode != KbgClipPlaneDefinition::SLICE) {
        qWarning("Vg3SectionModel::setClippingMode: unknown mode %d", int(mode));
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setMode(mode);
    _commit(d);
}

void Vg3SectionModel::setSliceWidth(double width)
{
    if (!isPositive(width)) {
        qWarning("Vg3SectionModel::setSliceWidth: width %g refused, keeping %g", width,
                 getClipPlaneDefinition().getSliceWidth());
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setSliceWidth(width);
    _commit(d);
}

void Vg3SectionModel::increaseSliceWidth()
{
    setSliceWidth(getClipPlaneDefinition().getSliceWidth() * SLICE_WIDTH_FACTOR);
}

void Vg3SectionModel::decreaseSliceWidth()
{
    setSliceWidth(getClipPlaneDefinition().getSliceWidth() / SLICE_WIDTH_FACTOR);
}

void Vg3SectionModel::stepForward()
{
    const KbgClipPlaneDefinition& clip = getClipPlaneDefinition();
    setClipPosition(clip.getPosition() + clip.getNormal() * clip.getStepSize());
}

void Vg3SectionModel::stepBackward()
{
    const KbgClipPlaneDefinition& clip = getClipPlaneDefinition();
    setClipPosition(clip.getPosition() - clip.getNormal() * clip.getStepSize());
}

void Vg3SectionModel::setStepSize(double step)
{
    if (!isPositive(step)) {
        qWarning("Vg3SectionModel::setStepSize: step %g refused, keeping %g", step,
                 getClipPlaneDefinition().getStepSize());
        return;
    }
    VugSectionDefinition d = _d->definition;
    d.clipPlaneDefinition().setStepSize(step);
    _commit(d);
}

void Vg3SectionModel::setClippingEnabled(bool enabled)
{
    VugSectionDefinition d = _d->definition;
    d.setClippingEnabled(enabled);
    _commit(d);
}

bool Vg3SectionModel::isClippingEnabled() const
{
    return _d->definition.isClippingEnabled();
}

void Vg3SectionModel::setFence(const KbgFence& fence)
{
    VugSectionDefinition d = _d->definition;
    d.setFence(fence);
    d.setType(VugSectionDefinition::FENCE);
    _commit(d);
}

void Vg3SectionModel::setUnfoldFence(bool unfold)
{
    VugSectionDefinition d = _d->definition;
    d.setFenceUnfolded(unfold);
    _commit(d);
}

void Vg3SectionModel::reset(const KbgBox& sceneBox)
{
    if (sceneBox.isEmpty()) {
        qWarning("Vg3SectionModel::reset: empty scene box, the section is unchanged");
        return;
    }
    VugSectionDefinition d = _d->definition;
    KbgClipPlaneDefinition& clip = d.clipPlaneDefinition();
    clip.setPosition(sceneBox.center());
    clip.setNormal(KbgVector3D(0.0, 1.0, 0.0));
    const double depth = sceneBox.size().y();
    if (isPositive(depth / 20.0)) {
        clip.setSliceWidth(depth / 10.0);
        clip.setStepSize(depth / 20.0);
    }
    _commit(d);
}

void Vg3SectionModel::resetPosition(const KbgBox& sceneBox)
{
    if (sceneBox.isEmpty()) {
        qWarning("Vg3SectionModel::resetPosition: empty scene box, the section is unchanged");
        return;
    }
    setClipPosition(sceneBox.center());
}

SoGroup* Vg3SectionModel::getClipNode() const
{
    return _d->clipNode;
}

void Vg3SectionModel::_commit(const VugSectionDefinition& definition)
{
    if (definition == _d->definition)
        return;
    _d->definition = definition;
    _updateClipNode();
    emit sectionDefinitionChanged(_d->definition);
}

void Vg3SectionModel::_updateClipNode()
{
    const VugSectionDefinition& d = _d->definition;
    const KbgClipPlaneDefinition& clip = d.getClipPlaneDefinition();
    const bool on = d.isClippingEnabled() && d.getType() == VugSectionDefinition::CLIP_PLANE;
    const bool slice = clip.getMode() == KbgClipPlaneDefinition::SLICE;
    // The planes keep their equations while off, so that turning clipping back on shows the
    // last cut at once; Inventor keeps the side a plane's normal points to.
    if (slice) {
        const QPair<KbgPlane, KbgPlane> faces = clip.getSlicePlanes();
        _d->planes[0]->plane.setValue(toSbPlane(faces.first));
        _d->planes[1]->plane.setValue(toSbPlane(faces.second));
    } else {
        _d->planes[0]->plane.setValue(toSbPlane(clip.getPlane()));
        _d->planes[1]->plane.setValue(toSbPlane(clip.getPlane().flipped()));
    }
    _d->planes[0]->on.setValue(on);
    _d->planes[1]->on.setValue(on && slice);
}
