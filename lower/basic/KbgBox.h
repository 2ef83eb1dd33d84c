#pragma once
// An axis-aligned 3D box, such as the extent of the nodes a view shows. Empty until a
// point or a box is added; an empty box contains nothing and has no centre or size.

#include <velmora_basic_export.h>

#include <KbgVector3D.h>

class VELMORA_BASIC_EXPORT KbgBox
{
public:
    KbgBox() = default;
    // The box spanned by two opposite corners given in any order. Non-finite corners give
    // an empty box, with a qWarning.
    KbgBox(const KbgVector3D& corner1, const KbgVector3D& corner2);

    bool isEmpty() const { return _empty; }
    void makeEmpty() { *this = KbgBox(); }
    // Grows the box to hold the point or box. Non-finite points are ignored with a
    // qWarning; an empty box adds nothing.
    void extendBy(const KbgVector3D& point);
    void extendBy(const KbgBox& box);

    // The corners; (0, 0, 0) for an empty box.
    KbgVector3D getMin() const { return _min; }
    KbgVector3D getMax() const { return _max; }
    // (0, 0, 0) for an empty box.
    KbgVector3D center() const;
    KbgVector3D size() const;
    KbgVector3D halfSize() const { return size() / 2.0; }
    // Borders included.
    bool contains(const KbgVector3D& point) const;

    bool operator==(const KbgBox& o) const;
    bool operator!=(const KbgBox& o) const { return !(*this == o); }

private:
    KbgVector3D _min;
    KbgVector3D _max;
    bool _empty = true;
};

Q_DECLARE_METATYPE(KbgBox)
