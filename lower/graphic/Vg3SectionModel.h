#pragma once
// The clipping and section state of a 3D view, and the Inventor clip planes that apply it.
// Views insert getClipNode() before their data. Half-space clipping keeps the side the
// plane normal points to (so flipPlane shows the other side); slice clipping keeps the
// slab sliceWidth thick centred on the plane. The planes are off while clipping is off or
// the section is a fence (fence sections are drawn by the section views, not clipped).
//
// Every call that changes the section emits sectionDefinitionChanged once; calls that
// change nothing emit nothing; bad values are refused with a qWarning and change nothing.
// setClipPlane and setPlane make the section a plane section, setFence a fence section;
// the other plane operations edit the plane without changing the section's type.

#include <velmora_graphic_export.h>

#include <KbgBox.h>
#include <KbgClipPlaneDefinition.h>
#include <KbgFence.h>
#include <KbgPlane.h>
#include <KbgRotation.h>
#include <KbgVector3D.h>
#include <VugSectionDefinition.h>

#include <QObject>
#include <memory>

class SoGroup;

class VELMORA_GRAPHIC_EXPORT Vg3SectionModel : public QObject
{
    Q_OBJECT

public:
    // The factor by which increase/decreaseSliceWidth widen and narrow the slice.
    static constexpr double SLICE_WIDTH_FACTOR = 1.25;

    // Inventor must be initialised first (Vg3OpenInventor::init).
    explicit Vg3SectionModel(QObject* parent = nullptr);
    ~Vg3SectionModel() override;

    const VugSectionDefinition& getSectionDefinition() const;
    const KbgClipPlaneDefinition& getClipPlaneDefinition() const;
    // Replaces the whole section (type, plane, fence and flags).
    void setSectionDefinition(const VugSectionDefinition& definition);
    void setSectionType(VugSectionDefinition::Type type);

    // Plane.
    void setClipPlane(const KbgPlane& plane);
    void setPlane(const KbgVector3D& point, const KbgVector3D& normal);
    void setClipPosition(const KbgVector3D& position);
    KbgVector3D getClipPosition() const;
    // The normal becomes the rotation applied to the local vector (0, 1, 0).
    void setClipOrientation(const KbgRotation& rotation);
    void setPlaneNormal(const KbgVector3D& normal);
    KbgVector3D getPlaneNormal() const;
    void flipPlane();
    void setClippingMode(KbgClipPlaneDefinition::Mode mode);
    void setSliceWidth(double width);
    void increaseSliceWidth();
    void decreaseSliceWidth();
    // Move the position by the step size along (forward) or against (backward) the normal.
    void stepForward();
    void stepBackward();
    void setStepSize(double step);

    void setClippingEnabled(bool enabled);
    bool isClippingEnabled() const;

    // Fence.
    void setFence(const KbgFence& fence);
    void setUnfoldFence(bool unfold);

    // The plane through the box centre facing north (0, 1, 0), a slice a tenth of the box's
    // depth along y and a step a twentieth of it (width and step kept when the box is flat
    // in y). The mode and the enabled flag are kept. An empty box is refused.
    void reset(const KbgBox& sceneBox);
    // Only moves the position to the box centre.
    void resetPosition(const KbgBox& sceneBox);

    // A group of two SoClipPlane nodes kept in step with the section, referenced for the
    // model's life: the first is the plane itself in half-space mode or the back face of
    // the slab, the second the front face of the slab (off in half-space mode).
    SoGroup* getClipNode() const;

signals:
    void sectionDefinitionChanged(const VugSectionDefinition& definition);

private:
    void _commit(const VugSectionDefinition& definition);
    void _updateClipNode();

    std::unique_ptr<class Vg3SectionModelPrivate> const _d;
};
