#include "KbgBox.h"

#include <QtGlobal>
#include <algorithm>

KbgBox::KbgBox(const KbgVector3D& corner1, const KbgVector3D& corner2)
{
    if (!corner1.isFinite() || !corner2.isFinite()) {
        qWarning("KbgBox::KbgBox: non-finite corner, the box is empty");
        return;
    }
    extendBy(corner1);
    extendBy(corner2);
}

void KbgBox::extendBy(const KbgVector3D& point)
{
    if (!point.isFinite()) {
        qWarning("KbgBox::extendBy: non-finite point (%g, %g, %g) ignored", point.x(), point.y(),
                 point.z());
        return;
    }
    if (_empty) {
        _min = _max = point;
        _empty = false;
        return;
    }
    _min = {std::min(_min.x(), point.x()), std::min(_min.y(), point.y()),
            std::min(_min.z(), point.z())};
    _max = {std::max(_max.x(), point.x()), std::max(_max.y(), point.y()),
            std::max(_max.z(), point.z())};
}

void KbgBox::extendBy(const KbgBox& box)
{
    if (box._empty)
        return;
    extendBy(box._min);
    extendBy(box._max);
}

KbgVector3D KbgBox::center() const
{
    // Halves first, so that two huge coordinates do not overflow when added.
    return _empty ? KbgVector3D() : _min / 2.0 + _max / 2.0;
}

KbgVector3D KbgBox::size() const
{
    return _empty ? KbgVector3D() : _max - _min;
}

bool KbgBox::contains(const KbgVector3D& p) const
{
    return !_empty && p.x() >= _min.x() && p.y() >= _min.y() && p.z() >= _min.z()
           && p.x() <= _max.x() && p.y() <= _max.y() && p.z() <= _max.z();
}

bool KbgBox::operator==(const KbgBox& o) const
{
    if (_empty || o._empty)
        return _empty == o._empty;
    return _min == o._min && _max == o._max;
}
