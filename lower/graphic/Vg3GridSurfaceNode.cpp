#include <Vg3GridSurfaceNode.h>

#include <KbcValueRange.h>
#include <VsdGrid.h>
#include <VugColorScale.h>
#include <VupPreferencesGraphic.h>

#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoMaterialBinding.h>
#include <Inventor/nodes/SoNormal.h>
#include <Inventor/nodes/SoNormalBinding.h>
#include <Inventor/nodes/SoQuadMesh.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShapeHints.h>

#include <cmath>

namespace {

SbColor toSbColor(QRgb rgb)
{
    return SbColor(qRed(rgb) / 255.0f, qGreen(rgb) / 255.0f, qBlue(rgb) / 255.0f);
}

// One normal per lattice node from the differences between its usable neighbours along
// the rows and the columns (its own position standing in for a missing one).
QVector<SbVec3f> latticeNormals(const QVector<SbVec3f>& points, const QVector<bool>& usable, int nx, int ny)
{
    QVector<SbVec3f> normals(points.size(), SbVec3f(0, 0, 1));
    const auto at = [&](int i, int j, int k) {
        const int n = j * nx + i;
        return i >= 0 && i < nx && j >= 0 && j < ny && usable[n] ? n : k;
    };
    for (int j = 0; j < ny; ++j)
        for (int i = 0; i < nx; ++i) {
            const int k = j * nx + i;
            if (!usable[k])
                continue;
            SbVec3f along = points[at(i + 1, j, k)] - points[at(i - 1, j, k)];
            SbVec3f across = points[at(i, j + 1, k)] - points[at(i, j - 1, k)];
            // No usable neighbour along a direction: taken as level that way.
            if (along.length() == 0.0f)
                along = SbVec3f(1, 0, 0);
            if (across.length() == 0.0f)
                across = SbVec3f(0, 1, 0);
            SbVec3f n = along.cross(across);
            if (n.length() > 0.0f) {
                n.normalize();
                normals[k] = n;
            }
        }
    return normals;
}

} // namespace

class Vg3GridSurfaceNodePrivate
{
public:
    VsdGrid grid;
    VsdGrid colorGrid;
    bool ownColors = true;
    // Of the grid's values at setData().
    KbcValueRange zRange;
    VugColorScale colorScale;
    float transparency = VupPreferencesGraphic::getSurfaceTransparency();
    int cellCount = 0;
};

Vg3GridSurfaceNode::Vg3GridSurfaceNode(const QString& name)
    : Vg3ANode(name)
    , _d(std::make_unique<Vg3GridSurfaceNodePrivate>())
{
}

Vg3GridSurfaceNode::~Vg3GridSurfaceNode() = default;

void Vg3GridSurfaceNode::setData(const VsdGrid& grid, const VugColorScale& colorScale)
{
    _d->grid = grid;
    _d->zRange = KbcValueRange::of(grid.values());
    _d->colorGrid = VsdGrid();
    _d->ownColors = true;
    _d->colorScale = colorScale;
    rebuild();
}

void Vg3GridSurfaceNode::setData(const VsdGrid& grid, const VsdGrid& colorGrid, const VugColorScale& colorScale)
{
    const bool matches = colorGrid.nx() == grid.nx() && colorGrid.ny() == grid.ny();
    if (!matches)
        qWarning("Vg3GridSurfaceNode::setData: the colour grid of '%s' has %dx%d nodes, not %dx%d: the surface's "
                 "own values colour it",
                 qPrintable(getName()), colorGrid.nx(), colorGrid.ny(), grid.nx(), grid.ny());
    _d->grid = grid;
    _d->zRange = KbcValueRange::of(grid.values());
    _d->colorGrid = matches ? colorGrid : VsdGrid();
    _d->ownColors = !matches;
    _d->colorScale = colorScale;
    rebuild();
}

float Vg3GridSurfaceNode::getTransparency() const
{
    return _d->transparency;
}

void Vg3GridSurfaceNode::setTransparency(float transparency)
{
    if (!(transparency >= 0.0f && transparency <= 1.0f)) {
        qWarning("Vg3GridSurfaceNode::setTransparency: %g is not within [0, 1], %g is kept", double(transparency),
                 double(_d->transparency));
        return;
    }
    _d->transparency = transparency;
    rebuild();
}

int Vg3GridSurfaceNode::getCellCount() const
{
    return _d->cellCount;
}

void Vg3GridSurfaceNode::_build(SoSeparator* parent)
{
    _d->cellCount = 0;
    const VsdGrid& grid = _d->grid;
    const int nx = grid.nx();
    const int ny = grid.ny();
    if (nx < 2 || ny < 2)
        return;
    const QVector<double>& z = grid.values();
    const QVector<double>& c = _d->ownColors ? z : _d->colorGrid.values();
    const VugColorScale& scale = _d->colorScale;
    const bool undefinedShown = qAlpha(scale.getUndefinedColor()) != 0;

    // A node is usable when it has a depth, and a colour or a visible undefined colour.
    const int count = nx * ny;
    QVector<SbVec3f> points(count, SbVec3f(0, 0, 0));
    QVector<SbColor> colors(count);
    QVector<bool> usable(count);
    for (int j = 0; j < ny; ++j) {
        for (int i = 0; i < nx; ++i) {
            const int k = j * nx + i;
            const bool hasZ = _d->zRange.contains(z[k]);
            const bool hasColor = !VugColorScale::isUndefinedValue(c[k]);
            const QPointF p = grid.nodePosition(i, j);
            // A node Coin cannot take stays at the offset, out of every face.
            const bool drawable = _toDrawable(p.x(), p.y(), hasZ ? z[k] : 0.0, points[k]);
            usable[k] = hasZ && (hasColor || undefinedShown) && drawable;
            colors[k] = toSbColor(hasColor ? scale.colorAt(c[k]) : scale.getUndefinedColor());
        }
    }
    QVector<int> cells;
    cells.reserve((nx - 1) * (ny - 1));
    for (int j = 0; j + 1 < ny; ++j)
        for (int i = 0; i + 1 < nx; ++i) {
            const int k = j * nx + i;
            if (usable[k] && usable[k + 1] && usable[k + nx] && usable[k + nx + 1])
                cells.append(k);
        }
    if (cells.isEmpty())
        return;
    _d->cellCount = cells.size();

    auto hints = new SoShapeHints;
    // Known winding and an unknown shape type give two-sided lighting: the underside of a
    // horizon is lit too.
    hints->vertexOrdering = SoShapeHints::COUNTERCLOCKWISE;
    hints->shapeType = SoShapeHints::UNKNOWN_SHAPE_TYPE;
    hints->creaseAngle = float(M_PI / 2.0);
    parent->addChild(hints);
    auto material = new SoMaterial;
    material->diffuseColor.setValues(0, colors.size(), colors.constData());
    material->transparency = _d->transparency;
    parent->addChild(material);
    auto coords = new SoCoordinate3;
    coords->point.setValues(0, points.size(), points.constData());
    parent->addChild(coords);
    // Normals made here, once per data change, by differences across the lattice: a
    // million-triangle surface would otherwise have them generated on its first frame.
    auto normal = new SoNormal;
    const QVector<SbVec3f> normals = latticeNormals(points, usable, nx, ny);
    normal->vector.setValues(0, normals.size(), normals.constData());
    parent->addChild(normal);
    auto normalBinding = new SoNormalBinding;
    parent->addChild(normalBinding);

    auto binding = new SoMaterialBinding;
    parent->addChild(binding);
    if (cells.size() == (nx - 1) * (ny - 1)) {
        // No hole: one mesh over the lattice, rows of nx nodes. Coin winds the mesh's quads
        // the other way round from the faces below, so that the lattice's upward normals
        // light its front.
        hints->vertexOrdering = SoShapeHints::CLOCKWISE;
        binding->value = SoMaterialBinding::PER_VERTEX;
        normalBinding->value = SoNormalBinding::PER_VERTEX;
        auto mesh = new SoQuadMesh;
        mesh->verticesPerRow = nx;
        mesh->verticesPerColumn = ny;
        parent->addChild(mesh);
        return;
    }
    // Holes: one counter-clockwise quad per drawn cell, colours indexed like vertices. Quads
    // rather than triangle pairs: Coin builds its vertex arrays from half as many faces and
    // does not sort quads, which halves the surface's first frame.
    binding->value = SoMaterialBinding::PER_VERTEX_INDEXED;
    normalBinding->value = SoNormalBinding::PER_VERTEX_INDEXED;
    QVector<int32_t> indices;
    indices.reserve(cells.size() * 5);
    for (const int k : cells) {
        const int32_t a = k, b = k + 1, d = k + nx, e = k + nx + 1;
        indices << a << b << e << d << -1;
    }
    auto faces = new SoIndexedFaceSet;
    faces->coordIndex.setValues(0, indices.size(), indices.constData());
    parent->addChild(faces);
}
