#pragma once
// A grid drawn as a surface: each node at its value as z, coloured per vertex through a
// colour scale by the same values or by those of a second grid of the same lattice. A cell
// with an undefined corner is left out, so holes in the data stay holes; a corner whose
// colour value is undefined leaves its cell out too while the scale's undefined colour is
// fully transparent. A node whose value lies far outside the others (KbcValueRange: 1e30
// written for "missing") counts as undefined: left in, it would stretch the view's frame
// until the surface shows as a line. Normals are generated, smooth across gentle slopes.

#include <velmora_graphic_export.h>

#include <Vg3ANode.h>

#include <memory>

class VsdGrid;
class VugColorScale;

class VELMORA_GRAPHIC_EXPORT Vg3GridSurfaceNode : public Vg3ANode
{
public:
    explicit Vg3GridSurfaceNode(const QString& name);
    ~Vg3GridSurfaceNode() override;

    // Surface and colours from one grid.
    void setData(const VsdGrid& grid, const VugColorScale& colorScale);
    // Colours from a second grid; one with other node counts is refused with a warning and
    // the surface's own values colour it.
    void setData(const VsdGrid& grid, const VsdGrid& colorGrid, const VugColorScale& colorScale);

    // 0 opaque .. 1 invisible; the graphic preference until set. Values outside are refused
    // with a warning.
    float getTransparency() const;
    void setTransparency(float transparency);

    // The cells drawn (two triangles each).
    int getCellCount() const;

protected:
    void _build(SoSeparator* parent) override;

private:
    std::unique_ptr<class Vg3GridSurfaceNodePrivate> const _d;
};
