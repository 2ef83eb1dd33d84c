#include "KbgFence.h"

#include <QtGlobal>
#include <cmath>

KbgFence::KbgFence(const QVector<KbgVector3D>& vertices, double extension)
{
    if (!setVertices(vertices) || !setExtension(extension))
        *this = KbgFence();
}

bool KbgFence::setVertices(const QVector<KbgVector3D>& vertices)
{
    for (int i = 0; i < vertices.size(); ++i) {
        if (!vertices[i].isFinite()) {
            qWarning("KbgFence::setVertices: vertex %d is not finite, the fence is unchanged", i);
            return false;
        }
    }
    _vertices = vertices;
    return true;
}

bool KbgFence::addVertex(const KbgVector3D& vertex)
{
    if (!vertex.isFinite()) {
        qWarning("KbgFence::addVertex: the vertex is not finite, the fence is unchanged");
        return false;
    }
    _vertices.append(vertex);
    return true;
}

bool KbgFence::setExtension(double extension)
{
    if (!std::isfinite(extension) || extension < 0.0) {
        qWarning("KbgFence::setExtension: %g is not a finite, non-negative extension", extension);
        return false;
    }
    _extension = extension;
    return true;
}

double KbgFence::length() const
{
    double total = 0.0;
    for (int i = 1; i < _vertices.size(); ++i)
        total += _vertices[i - 1].distanceTo(_vertices[i]);
    return total;
}

KbgBox KbgFence::getBoundingBox() const
{
    KbgBox box;
    const KbgVector3D up(0.0, 0.0, _extension);
    for (const KbgVector3D& v : _vertices) {
        box.extendBy(v + up);
        box.extendBy(v - up);
    }
    return box;
}
