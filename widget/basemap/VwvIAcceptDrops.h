#pragma once
// What a map does with what is dropped on it: the view asks whether the dragged data are
// welcome while they move over it, and hands them over with the map point of the drop.

#include <QPointF>

class QMimeData;

class VwvIAcceptDrops
{
public:
    virtual ~VwvIAcceptDrops() = default;
    virtual bool canAcceptDrop(const QMimeData& data) const = 0;
    // mapPoint is in the view's coordinate system. False when nothing was taken.
    virtual bool acceptDrop(const QMimeData& data, const QPointF& mapPoint) = 0;
};
