#pragma once
// A fence: a vertical curtain along a polyline of vertices, reaching `extension` scene
// units above and below the polyline. A section along a fence needs two vertices or more.

#include <velmora_basic_export.h>

#include <KbgBox.h>
#include <KbgVector3D.h>

#include <QVector>

class VELMORA_BASIC_EXPORT KbgFence
{
public:
    KbgFence() = default;
    // Refused as by setVertices and setExtension: the fence is then empty.
    explicit KbgFence(const QVector<KbgVector3D>& vertices, double extension = 0.0);

    const QVector<KbgVector3D>& getVertices() const { return _vertices; }
    int getVertexCount() const { return _vertices.size(); }
    bool isEmpty() const { return _vertices.isEmpty(); }
    // Two vertices or more.
    bool isValid() const { return _vertices.size() >= 2; }
    // A non-finite vertex is refused with a qWarning and false, the fence unchanged.
    bool setVertices(const QVector<KbgVector3D>& vertices);
    bool addVertex(const KbgVector3D& vertex);
    void clear() { _vertices.clear(); }

    double getExtension() const { return _extension; }
    // A negative or non-finite extension is refused with a qWarning and false.
    bool setExtension(double extension);

    // The length of the polyline, 0 for fewer than two vertices.
    double length() const;
    // The vertices' box grown up and down by the extension; empty for an empty fence.
    KbgBox getBoundingBox() const;

    bool operator==(const KbgFence& o) const { return _vertices == o._vertices && _extension == o._extension; }
    bool operator!=(const KbgFence& o) const { return !(*this == o); }

private:
    QVector<KbgVector3D> _vertices;
    double _extension = 0.0;
};

Q_DECLARE_METATYPE(KbgFence)
