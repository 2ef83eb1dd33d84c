#include "VsdPointSet.h"

#include <KbcValueRange.h>
#include <VsdGeometry.h>

#include <QSharedData>
#include <algorithm>
#include <cmath>
#include <limits>

class VsdPointSetData : public QSharedData
{
public:
    QVector<double> x;
    QVector<double> y;
    QVector<double> z;
    QStringList names;
    QVector<QVector<double>> values;
    KbiIntervalIntSmallDisjoint selection;
};

namespace {

bool usable(double x, double y)
{
    return std::isfinite(x) && std::isfinite(y) && x != KbbGlobal::D_FFFF && y != KbbGlobal::D_FFFF;
}

// Runs of consecutive ranks go into the set as one interval each, so that a large
// selection costs as many insertions as it has runs.
template<typename Inside>
KbiIntervalIntSmallDisjoint collectRanks(int n, Inside inside)
{
    KbiIntervalIntSmallDisjoint ranks;
    int runStart = -1;
    for (int i = 0; i < n; ++i) {
        if (inside(i)) {
            if (runStart < 0)
                runStart = i;
        } else if (runStart >= 0) {
            ranks.add(runStart, i - 1);
            runStart = -1;
        }
    }
    if (runStart >= 0)
        ranks.add(runStart, n - 1);
    return ranks;
}

// SplitMix64: tiny, fast and the same on every platform, unlike the standard distributions.
class Random
{
public:
    explicit Random(quint64 seed)
        : _state(seed)
    {
    }
    quint64 next()
    {
        quint64 z = (_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double uniform() { return double(next() >> 11) * (1.0 / 9007199254740992.0); }
    // Zero mean and unit variance from two uniforms (a triangle): smooth enough for noise,
    // and half the draws of a closer match to a normal.
    double noise() { return (uniform() + uniform() - 1.0) * 2.449489742783178; }

private:
    quint64 _state;
};

} // namespace

VsdPointSet::VsdPointSet()
    : _d(new VsdPointSetData)
{
}

VsdPointSet::VsdPointSet(const VsdPointSet& o) = default;
VsdPointSet& VsdPointSet::operator=(const VsdPointSet& o) = default;
VsdPointSet::~VsdPointSet() = default;

int VsdPointSet::size() const
{
    return _d->x.size();
}

void VsdPointSet::reserve(int count)
{
    if (count < 0 || count > MAX_SIZE) {
        qWarning("VsdPointSet::reserve: %d samples refused, at most %d", count, MAX_SIZE);
        return;
    }
    _d->x.reserve(count);
    _d->y.reserve(count);
    _d->z.reserve(count);
    for (QVector<double>& v : _d->values)
        v.reserve(count);
}

void VsdPointSet::clear()
{
    *this = VsdPointSet();
}

const QVector<double>& VsdPointSet::x() const
{
    return _d->x;
}

const QVector<double>& VsdPointSet::y() const
{
    return _d->y;
}

const QVector<double>& VsdPointSet::z() const
{
    return _d->z;
}

QPointF VsdPointSet::point(int rank) const
{
    if (!_checkRank(rank, "point"))
        return QPointF(KbbGlobal::D_FFFF, KbbGlobal::D_FFFF);
    return QPointF(_d->x.at(rank), _d->y.at(rank));
}

bool VsdPointSet::append(double x, double y, double z, const QVector<double>& values)
{
    const int variables = _d->names.size();
    if (!values.isEmpty() && values.size() != variables) {
        qWarning("VsdPointSet::append: %d values for %d variables refused", values.size(), variables);
        return false;
    }
    if (size() >= MAX_SIZE) {
        qWarning("VsdPointSet::append: the set is full (%d samples)", MAX_SIZE);
        return false;
    }
    _d->x.append(x);
    _d->y.append(y);
    _d->z.append(z);
    for (int v = 0; v < variables; ++v)
        _d->values[v].append(values.isEmpty() ? KbbGlobal::D_FFFF : values.at(v));
    return true;
}

bool VsdPointSet::setCoordinates(const QVector<double>& x, const QVector<double>& y, const QVector<double>& z)
{
    if (x.size() != y.size() || x.size() != z.size()) {
        qWarning("VsdPointSet::setCoordinates: columns of %d, %d and %d values refused", x.size(), y.size(), z.size());
        return false;
    }
    if (!_d->names.isEmpty() && x.size() != size()) {
        qWarning("VsdPointSet::setCoordinates: %d samples refused, the variables hold %d", x.size(), size());
        return false;
    }
    if (x.size() > MAX_SIZE) {
        qWarning("VsdPointSet::setCoordinates: %d samples refused, at most %d", x.size(), MAX_SIZE);
        return false;
    }
    _d->x = x;
    _d->y = y;
    _d->z = z;
    if (!x.isEmpty())
        _d->selection.remove(x.size(), std::numeric_limits<int>::max());
    else
        _d->selection.clear();
    return true;
}

QStringList VsdPointSet::variableNames() const
{
    return _d->names;
}

bool VsdPointSet::hasVariable(const QString& name) const
{
    return _d->names.contains(name);
}

QVector<double> VsdPointSet::variable(const QString& name) const
{
    const int index = _d->names.indexOf(name);
    return index < 0 ? QVector<double>() : _d->values.at(index);
}

bool VsdPointSet::_checkVariable(const QString& name, int count, const char* operation) const
{
    if (count != size()) {
        qWarning("VsdPointSet::%s: %d values for %d samples refused ('%s')", operation, count, size(),
                 qUtf8Printable(name));
        return false;
    }
    return true;
}

bool VsdPointSet::addVariable(const QString& name)
{
    return addVariable(name, QVector<double>(size(), KbbGlobal::D_FFFF));
}

QString VsdPointSet::variableNameProblem(const QString& name) const
{
    if (name.trimmed().isEmpty())
        return QStringLiteral("an empty name");
    // x, y and z are kept for the coordinates, so that a CSV header stays unambiguous.
    for (const char* reserved : {"x", "y", "z"})
        if (name.compare(QLatin1String(reserved), Qt::CaseInsensitive) == 0)
            return QStringLiteral("'%1' names a coordinate").arg(name);
    if (_d->names.contains(name))
        return QStringLiteral("'%1' is already a variable").arg(name);
    return QString();
}

bool VsdPointSet::addVariable(const QString& name, const QVector<double>& values)
{
    const QString problem = variableNameProblem(name);
    if (!problem.isEmpty()) {
        qWarning("VsdPointSet::addVariable: %s refused", qUtf8Printable(problem));
        return false;
    }
    if (!_checkVariable(name, values.size(), "addVariable"))
        return false;
    _d->names.append(name);
    _d->values.append(values);
    return true;
}

bool VsdPointSet::setVariable(const QString& name, const QVector<double>& values)
{
    const int index = _d->names.indexOf(name);
    if (index < 0)
        return addVariable(name, values);
    if (!_checkVariable(name, values.size(), "setVariable"))
        return false;
    _d->values[index] = values;
    return true;
}

bool VsdPointSet::removeVariable(const QString& name)
{
    const int index = _d->names.indexOf(name);
    if (index < 0) {
        qWarning("VsdPointSet::removeVariable: no variable '%s'", qUtf8Printable(name));
        return false;
    }
    _d->names.removeAt(index);
    _d->values.removeAt(index);
    return true;
}

const KbiIntervalIntSmallDisjoint& VsdPointSet::selection() const
{
    return _d->selection;
}

bool VsdPointSet::isSelected(int rank) const
{
    return _d->selection.contains(rank);
}

bool VsdPointSet::_checkRank(int rank, const char* operation) const
{
    if (rank < 0 || rank >= size()) {
        qWarning("VsdPointSet::%s: rank %d refused, the set has %d samples", operation, rank, size());
        return false;
    }
    return true;
}

bool VsdPointSet::_checkRanks(const KbiIntervalIntSmallDisjoint& ranks, const char* operation) const
{
    if (ranks.last() >= size()) {
        qWarning("VsdPointSet::%s: ranks up to %d refused, the set has %d samples", operation, ranks.last(), size());
        return false;
    }
    return true;
}

bool VsdPointSet::select(int rank)
{
    return _checkRank(rank, "select") && (_d->selection.add(rank), true);
}

bool VsdPointSet::deselect(int rank)
{
    return _checkRank(rank, "deselect") && (_d->selection.remove(rank), true);
}

bool VsdPointSet::toggle(int rank)
{
    if (!_checkRank(rank, "toggle"))
        return false;
    if (_d->selection.contains(rank))
        _d->selection.remove(rank);
    else
        _d->selection.add(rank);
    return true;
}

bool VsdPointSet::select(const KbiIntervalIntSmallDisjoint& ranks)
{
    return _checkRanks(ranks, "select") && (_d->selection |= ranks, true);
}

bool VsdPointSet::deselect(const KbiIntervalIntSmallDisjoint& ranks)
{
    return _checkRanks(ranks, "deselect") && (_d->selection -= ranks, true);
}

bool VsdPointSet::toggle(const KbiIntervalIntSmallDisjoint& ranks)
{
    if (!_checkRanks(ranks, "toggle"))
        return false;
    const KbiIntervalIntSmallDisjoint& current = _d->selection;
    _d->selection = (current - ranks) | (ranks - current);
    return true;
}

void VsdPointSet::clearSelection()
{
    if (!_d->selection.isEmpty())
        _d->selection.clear();
}

QRectF VsdPointSet::boundingRect() const
{
    const double* xs = _d->x.constData();
    const double* ys = _d->y.constData();
    double minX = HUGE_VAL, minY = HUGE_VAL, maxX = -HUGE_VAL, maxY = -HUGE_VAL;
    for (int i = 0, n = size(); i < n; ++i) {
        if (!usable(xs[i], ys[i]))
            continue;
        minX = std::min(minX, xs[i]);
        maxX = std::max(maxX, xs[i]);
        minY = std::min(minY, ys[i]);
        maxY = std::max(maxY, ys[i]);
    }
    if (minX > maxX)
        return QRectF();
    return QRectF(QPointF(minX, minY), QPointF(maxX, maxY));
}

QRectF VsdPointSet::framingRect() const
{
    return KbcValueRange::framingRect(_d->x, _d->y);
}

int VsdPointSet::nearestRank(const QPointF& p, double tolerance) const
{
    if (!(tolerance >= 0.0)) {
        qWarning("VsdPointSet::nearestRank: tolerance %g refused", tolerance);
        return -1;
    }
    if (!VsdGeometry::isFinite(p))
        return -1;
    const double* xs = _d->x.constData();
    const double* ys = _d->y.constData();
    double best = tolerance * tolerance;
    int rank = -1;
    for (int i = 0, n = size(); i < n; ++i) {
        const double dx = xs[i] - p.x();
        const double dy = ys[i] - p.y();
        const double d2 = dx * dx + dy * dy;
        // Strictly nearer after the first hit, so that the lowest rank wins a tie.
        if ((d2 < best || (rank < 0 && d2 == best)) && usable(xs[i], ys[i])) {
            best = d2;
            rank = i;
        }
    }
    return rank;
}

KbiIntervalIntSmallDisjoint VsdPointSet::ranksInRect(const QRectF& rect) const
{
    const QRectF r = rect.normalized();
    const double left = r.left(), right = r.right(), top = r.top(), bottom = r.bottom();
    const double* xs = _d->x.constData();
    const double* ys = _d->y.constData();
    return collectRanks(size(), [&](int i) {
        return xs[i] >= left && xs[i] <= right && ys[i] >= top && ys[i] <= bottom && usable(xs[i], ys[i]);
    });
}

KbiIntervalIntSmallDisjoint VsdPointSet::ranksInPolygon(const QPolygonF& polygon) const
{
    if (polygon.isEmpty())
        return {};
    if (!std::all_of(polygon.cbegin(), polygon.cend(), VsdGeometry::isFinite)) {
        qWarning("VsdPointSet::ranksInPolygon: a polygon with a non-finite vertex refused");
        return {};
    }
    const QRectF box = VsdGeometry::finiteBounds(polygon);
    const double left = box.left(), right = box.right(), top = box.top(), bottom = box.bottom();
    const double* xs = _d->x.constData();
    const double* ys = _d->y.constData();
    return collectRanks(size(), [&](int i) {
        return xs[i] >= left && xs[i] <= right && ys[i] >= top && ys[i] <= bottom && usable(xs[i], ys[i])
               && VsdGeometry::ringContains(polygon, QPointF(xs[i], ys[i]));
    });
}

VsdPointSet VsdPointSet::generate(int count, quint32 seed, const QRectF& extent)
{
    const QRectF e = extent.normalized();
    if (count < 0 || count > MAX_SIZE || e.isEmpty() || !std::isfinite(e.width()) || !std::isfinite(e.height())) {
        qWarning("VsdPointSet::generate: %d samples in a %gx%g extent refused", count, extent.width(), extent.height());
        return VsdPointSet();
    }
    VsdPointSet set;
    VsdPointSetData& d = *set._d;
    d.x.resize(count);
    d.y.resize(count);
    d.z.resize(count);
    d.names = QStringList{QStringLiteral("Porosity"), QStringLiteral("Thickness")};
    d.values = QVector<QVector<double>>{QVector<double>(count), QVector<double>(count)};
    double* xs = d.x.data();
    double* ys = d.y.data();
    double* zs = d.z.data();
    double* porosity = d.values[0].data();
    double* thickness = d.values[1].data();
    Random random(seed);
    constexpr double pi = 3.14159265358979323846;
    for (int i = 0; i < count; ++i) {
        const double u = random.uniform();
        const double v = random.uniform();
        xs[i] = e.left() + u * e.width();
        ys[i] = e.top() + v * e.height();
        const double wave = std::sin(2.0 * pi * u) * std::cos(pi * v);
        zs[i] = -1000.0 - 200.0 * u + 150.0 * v + 30.0 * wave + 5.0 * random.noise();
        // About one sample in a hundred has no porosity measured.
        porosity[i] = random.next() % 100 == 0 ? KbbGlobal::D_FFFF : 0.18 + 0.06 * wave + 0.01 * random.noise();
        thickness[i] = 20.0 + 10.0 * u * v + 3.0 * std::cos(3.0 * pi * u) + random.noise();
    }
    return set;
}
