#include "VsdGrid.h"

#include <KbbGlobal.h>
#include <KbeError.h>
#include <VsdGeometry.h>

#include <QCoreApplication>
#include <QSharedData>
#include <algorithm>
#include <cmath>

class VsdGridData : public QSharedData
{
public:
    QPointF origin;
    double dx = 1.0;
    double dy = 1.0;
    int nx = 0;
    int ny = 0;
    double angle = 0.0;
    // The turn's cosine and sine, computed once per angle change rather than per node.
    double cosA = 1.0;
    double sinA = 0.0;
    QVector<double> values;

    void setAngle(double degrees)
    {
        angle = degrees;
        const double radians = degrees * (3.14159265358979323846 / 180.0);
        cosA = std::cos(radians);
        sinA = std::sin(radians);
    }
};

VsdGrid::VsdGrid()
    : _d(new VsdGridData)
{
}

VsdGrid::VsdGrid(const QPointF& origin, double dx, double dy, int nx, int ny, double angle)
    : _d(new VsdGridData)
{
    const auto error = [](const QString& reason) {
        return KbeError(QCoreApplication::translate("VsdGrid", "A grid cannot be made: %1.").arg(reason));
    };
    if (nx < 0 || ny < 0)
        throw error(QStringLiteral("%1 x %2 nodes").arg(nx).arg(ny));
    if (qint64(nx) * ny > MAX_NODES)
        throw error(QStringLiteral("%1 x %2 nodes, more than %3").arg(nx).arg(ny).arg(MAX_NODES));
    if (!(std::isfinite(dx) && dx > 0.0 && std::isfinite(dy) && dy > 0.0))
        throw error(QStringLiteral("cells of %1 x %2").arg(dx).arg(dy));
    if (!VsdGeometry::isFinite(origin) || !std::isfinite(angle))
        throw error(QStringLiteral("origin (%1, %2) turned by %3 degrees").arg(origin.x()).arg(origin.y()).arg(angle));
    _d->origin = origin;
    _d->dx = dx;
    _d->dy = dy;
    _d->nx = nx;
    _d->ny = ny;
    _d->setAngle(angle);
    _d->values.fill(KbbGlobal::D_FFFF, nx * ny);
}

VsdGrid::VsdGrid(const VsdGrid& o) = default;
VsdGrid& VsdGrid::operator=(const VsdGrid& o) = default;
VsdGrid::~VsdGrid() = default;

QPointF VsdGrid::origin() const
{
    return _d->origin;
}

double VsdGrid::dx() const
{
    return _d->dx;
}

double VsdGrid::dy() const
{
    return _d->dy;
}

int VsdGrid::nx() const
{
    return _d->nx;
}

int VsdGrid::ny() const
{
    return _d->ny;
}

double VsdGrid::angle() const
{
    return _d->angle;
}

bool VsdGrid::setAngle(double degrees)
{
    if (!std::isfinite(degrees)) {
        qWarning("VsdGrid::setAngle: angle %g refused", degrees);
        return false;
    }
    if (degrees != _d->angle)
        _d->setAngle(degrees);
    return true;
}

const QVector<double>& VsdGrid::values() const
{
    return _d->values;
}

bool VsdGrid::setValues(const QVector<double>& values)
{
    if (values.size() != _d->values.size()) {
        qWarning("VsdGrid::setValues: %d values for %d x %d nodes refused", values.size(), nx(), ny());
        return false;
    }
    _d->values = values;
    return true;
}

double VsdGrid::value(int i, int j) const
{
    if (i < 0 || j < 0 || i >= nx() || j >= ny())
        return KbbGlobal::D_FFFF;
    return _d->values.at(j * nx() + i);
}

bool VsdGrid::setValue(int i, int j, double value)
{
    if (i < 0 || j < 0 || i >= nx() || j >= ny()) {
        qWarning("VsdGrid::setValue: node (%d, %d) refused, the grid has %d x %d nodes", i, j, nx(), ny());
        return false;
    }
    _d->values[j * nx() + i] = value;
    return true;
}

QPair<double, double> VsdGrid::valueRange() const
{
    double low = HUGE_VAL;
    double high = -HUGE_VAL;
    for (double v : _d->values) {
        if (!std::isfinite(v) || v == KbbGlobal::D_FFFF)
            continue;
        low = std::min(low, v);
        high = std::max(high, v);
    }
    if (low > high)
        return {KbbGlobal::D_FFFF, KbbGlobal::D_FFFF};
    return {low, high};
}

QPointF VsdGrid::_toMap(double u, double v) const
{
    return _d->origin + QPointF(u * _d->cosA - v * _d->sinA, u * _d->sinA + v * _d->cosA);
}

QPointF VsdGrid::nodePosition(int i, int j) const
{
    return _toMap(i * _d->dx, j * _d->dy);
}

QPolygonF VsdGrid::cellPolygon(int i, int j) const
{
    const double u0 = (i - 0.5) * _d->dx;
    const double u1 = (i + 0.5) * _d->dx;
    const double v0 = (j - 0.5) * _d->dy;
    const double v1 = (j + 0.5) * _d->dy;
    return QPolygonF(QVector<QPointF>{_toMap(u0, v0), _toMap(u1, v0), _toMap(u1, v1), _toMap(u0, v1)});
}

QRectF VsdGrid::boundingRect() const
{
    if (isEmpty())
        return QRectF();
    const double u0 = -0.5 * _d->dx;
    const double u1 = (nx() - 0.5) * _d->dx;
    const double v0 = -0.5 * _d->dy;
    const double v1 = (ny() - 0.5) * _d->dy;
    const QVector<QPointF> corners{_toMap(u0, v0), _toMap(u1, v0), _toMap(u1, v1), _toMap(u0, v1)};
    return VsdGeometry::finiteBounds(QPolygonF(corners));
}

int VsdGrid::rankAt(const QPointF& p) const
{
    if (isEmpty() || !VsdGeometry::isFinite(p))
        return -1;
    const QPointF d = p - _d->origin;
    const double u = d.x() * _d->cosA + d.y() * _d->sinA;
    const double v = -d.x() * _d->sinA + d.y() * _d->cosA;
    const double i = std::floor(u / _d->dx + 0.5);
    const double j = std::floor(v / _d->dy + 0.5);
    if (!(i >= 0.0 && i < nx() && j >= 0.0 && j < ny()))
        return -1;
    return int(j) * nx() + int(i);
}

VsdGrid VsdGrid::generate(int nx, int ny, quint32 seed, const QRectF& extent)
{
    if (nx < 0 || ny < 0 || qint64(nx) * ny > MAX_NODES) {
        qWarning("VsdGrid::generate: %d x %d nodes refused", nx, ny);
        return VsdGrid();
    }
    if (nx == 0 || ny == 0)
        return VsdGrid(QPointF(), 1.0, 1.0, nx, ny);
    const QRectF e = extent.normalized();
    const bool fits = !e.isEmpty() && std::isfinite(e.width()) && std::isfinite(e.height());
    VsdGrid grid = fits ? VsdGrid(e.topLeft(), e.width() / nx, e.height() / ny, nx, ny)
                        : VsdGrid(QPointF(), 1.0, 1.0, nx, ny);
    if (fits) // nodes at cell centres, so that the cells fill the extent
        grid._d->origin += QPointF(grid.dx() / 2.0, grid.dy() / 2.0);

    // A linear congruential sequence for the bump layout and the noise: the same everywhere.
    quint64 state = seed * 6364136223846793005ull + 1442695040888963407ull;
    const auto uniform = [&state]() {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return double(state >> 11) * (1.0 / 9007199254740992.0);
    };
    struct Bump
    {
        double u, v, height, width;
    };
    Bump bumps[4];
    for (Bump& b : bumps)
        b = Bump{uniform(), uniform(), 20.0 + 40.0 * uniform(), 0.08 + 0.15 * uniform()};

    double* values = grid._d->values.data();
    for (int j = 0; j < ny; ++j) {
        const double v = ny > 1 ? double(j) / (ny - 1) : 0.5;
        for (int i = 0; i < nx; ++i) {
            const double u = nx > 1 ? double(i) / (nx - 1) : 0.5;
            double& value = values[j * nx + i];
            if (u + v < 0.15) { // an unsurveyed corner
                value = KbbGlobal::D_FFFF;
                continue;
            }
            double z = -1000.0 + 80.0 * u - 50.0 * v;
            for (const Bump& b : bumps) {
                const double du = (u - b.u) / b.width;
                const double dv = (v - b.v) / b.width;
                z += b.height * std::exp(-(du * du + dv * dv));
            }
            value = z + (uniform() - 0.5);
        }
    }
    return grid;
}
