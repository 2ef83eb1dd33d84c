#pragma once
// A regular 2D grid of values: node (i, j) sits at origin + (i dx, j dy), turned by the angle
// (degrees, counter-clockwise with y up) about the origin; its value is values[j nx + i],
// KbbGlobal::D_FFFF when undefined. A map draws each value as the cell centred on its node.
// Implicitly shared: copies are cheap until one of them changes.

#include <velmora_study_export.h>

#include <QPair>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSharedDataPointer>
#include <QVector>

class VsdGridData;

class VELMORA_STUDY_EXPORT VsdGrid
{
public:
    // The most nodes a grid holds: one QVector of doubles.
    static constexpr qint64 MAX_NODES = qint64(1) << 27;

    // A grid of 0 x 0 nodes.
    VsdGrid();
    // Every value undefined. Throws KbeError for a negative node count, more than MAX_NODES
    // nodes, a cell size that is not finite and positive, or a non-finite origin or angle.
    VsdGrid(const QPointF& origin, double dx, double dy, int nx, int ny, double angle = 0.0);
    VsdGrid(const VsdGrid& o);
    VsdGrid& operator=(const VsdGrid& o);
    ~VsdGrid();

    QPointF origin() const;
    double dx() const;
    double dy() const;
    int nx() const;
    int ny() const;
    double angle() const;
    bool isEmpty() const { return nx() == 0 || ny() == 0; }

    // A non-finite angle is refused with a qWarning.
    bool setAngle(double degrees);

    const QVector<double>& values() const;
    // nx ny values, or refused with a qWarning.
    bool setValues(const QVector<double>& values);
    // Undefined outside the grid.
    double value(int i, int j) const;
    // A node outside the grid is refused with a qWarning.
    bool setValue(int i, int j, double value);
    // The smallest and largest finite defined values; both D_FFFF when there is none.
    QPair<double, double> valueRange() const;

    // Also beyond the grid, where the lattice goes on.
    QPointF nodePosition(int i, int j) const;
    // The four corners of the cell centred on node (i, j), counter-clockwise before turning.
    QPolygonF cellPolygon(int i, int j) const;
    // Over all cells, turned; QRectF() for an empty grid.
    QRectF boundingRect() const;
    // The rank j nx + i of the cell holding the point, -1 outside the grid.
    int rankAt(const QPointF& p) const;

    // A reproducible smooth surface of a few bumps on a trend, with noise and an undefined
    // corner, filling extent (unit cells from the origin when extent is empty). A node count
    // out of range is refused with a qWarning and gives an empty grid.
    static VsdGrid generate(int nx, int ny, quint32 seed, const QRectF& extent = QRectF());

private:
    QPointF _toMap(double u, double v) const;

    QSharedDataPointer<VsdGridData> _d;
};
