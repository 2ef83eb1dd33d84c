#pragma once
// One drawable thing of a 3D scene: a name and the Inventor sub-graph that draws it. The
// sub-graph root is made at construction (empty) and filled by rebuild(); views hold and
// wrap getRoot() and never change what is under it. The vertical scale is applied inside the
// sub-graph, so a view can exaggerate depths without touching the data. Inventor draws in
// single precision, which at map coordinates (millions of metres) leaves half a metre of
// resolution: nodes subtract the view's offset in double precision before they make floats,
// and the vertical scale works about the offset too.

#include <velmora_graphic_export.h>

#include <KbgVector3D.h>
#include <SoRef.h>
#include <Vg3IPickable.h>

#include <Inventor/SbBox3f.h>

#include <QString>
#include <QStringList>

#include <cmath>
#include <vector>

class SoPickedPoint;
class SoScale;
class SoSeparator;
class Vg3ANode;

// What holds a node it does not own (a view showing it) and must forget it when it dies.
class Vg3INodeWatcher
{
public:
    // Called from the node's destructor: its own data is gone and its sub-graph root is
    // still there. Use the node only as a key from here on.
    virtual void nodeDestroyed(Vg3ANode* node) = 0;

protected:
    ~Vg3INodeWatcher() = default;
};

class VELMORA_GRAPHIC_EXPORT Vg3ANode : public Vg3IPickable
{
public:
    explicit Vg3ANode(const QString& name);
    ~Vg3ANode() override;

    // The name the user sees.
    const QString& getName() const { return _name; }
    // The name as a valid Inventor identifier (letters, digits, '_'; never starting with a
    // digit), used to name the sub-graph root and the nodes views wrap it in.
    QString getInventorName() const;
    // The same conversion for any name: invalid characters become '_', and a name that is
    // empty or starts with a digit gets a leading '_'.
    static QString toInventorName(const QString& name);

    // Referenced by the node for its whole life.
    SoSeparator* getRoot() const { return _root; }
    // Empty until rebuild() has filled the sub-graph; in scene coordinates with the
    // vertical scale applied.
    SbBox3f getBoundingBox() const;

    // Refills the sub-graph from the node's data; the root itself stays the same object.
    void rebuild();
    float getZScale() const { return _zScale; }
    // Non-positive or non-finite scales are refused with a warning.
    void setZScale(float zScale);

    const KbgVector3D& getOffset() const { return _offset; }
    // Rebuilds a built node when the offset changes; non-finite offsets are refused with a
    // warning.
    void setOffset(const KbgVector3D& offset);

    bool isPickable() const override { return _pickable; }
    void setPickable(bool pickable) override { _pickable = pickable; }

    // What a pick on the node reads, one "what: value" a line: the node's name and the
    // picked point in the data's coordinates; nodes add what they know of the place.
    virtual QStringList describe(const SoPickedPoint& picked) const;
    // The data's coordinates of a point of the sub-graph (offset added back, vertical
    // scale taken out); the static form for any scale and offset a view uses.
    KbgVector3D toData(const SbVec3f& local) const { return toData(local, _zScale, _offset); }
    static KbgVector3D toData(const SbVec3f& scene, float zScale, const KbgVector3D& offset)
    {
        return KbgVector3D(scene[0] + offset.x(), scene[1] + offset.y(), scene[2] / zScale + offset.z());
    }

    // A watcher is told once, when the node is destroyed; adding one twice adds it once.
    void addWatcher(Vg3INodeWatcher* watcher);
    void removeWatcher(Vg3INodeWatcher* watcher);

protected:
    // Adds the drawing under `parent`, which is inside the vertical scale.
    virtual void _build(SoSeparator* parent) = 0;
    // Coin squares single-precision coordinates for bounding spheres and clipping planes;
    // beyond this they overflow, and a view framing an infinite box shows nothing.
    static constexpr double MAX_LOCAL_COORDINATE = 1.0e18;
    // A data point in the sub-graph's single-precision coordinates, when it is finite and,
    // offset, within MAX_LOCAL_COORDINATE: what a node may hand to Coin. Checked before the
    // conversion, which is undefined for a double beyond what a float holds.
    bool _toDrawable(double x, double y, double z, SbVec3f& local) const
    {
        const double d[3] = {x - _offset.x(), y - _offset.y(), z - _offset.z()};
        for (const double v : d)
            if (!(std::fabs(v) <= MAX_LOCAL_COORDINATE))
                return false;
        local.setValue(float(d[0]), float(d[1]), float(d[2]));
        return true;
    }

private:
    Vg3ANode(const Vg3ANode&) = delete;
    Vg3ANode& operator=(const Vg3ANode&) = delete;
    QString _name;
    SoRef<SoSeparator> _root;
    SoScale* _scale = nullptr;
    SoSeparator* _content = nullptr;
    KbgVector3D _offset;
    float _zScale = 1.0f;
    bool _pickable = true;
    std::vector<Vg3INodeWatcher*> _watchers;
};
