#include "VuuCoordSystem.h"

#include <KbbGlobal.h>
#include <KbuUnitTransfo.h>

#include <QCoreApplication>
#include <QHash>
#include <QPair>
#include <algorithm>
#include <cmath>
#include <memory>
#include <proj.h>
#include <vector>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("VuuCoordSystem", text);
}

// A transformation stays cached per pair of systems until the thread ends; a program
// uses a handful of systems, so the bound only guards against a caller cycling through
// many of them.
const int MAX_CACHED_TRANSFORMATIONS = 64;

// PROJ's objects belong to the context they were made in, and a context must not be used
// by two threads at once: each thread has its own context and its own transformations.
class ProjThread
{
public:
    struct Transformation
    {
        PJ* pj = nullptr;
        QString error;
    };

    static ProjThread& current()
    {
        thread_local ProjThread thread;
        return thread;
    }

    ProjThread()
        : _context(proj_context_create())
    {
        // Grids and databases come from the installed files only.
        proj_context_set_enable_network(_context, 0);
        // PROJ prints its errors to stderr by default; keep the last one for the caller.
        proj_log_func(_context, this, &ProjThread::_log);
    }

    ~ProjThread()
    {
        _clearCache();
        proj_context_destroy(_context);
    }

    ProjThread(const ProjThread&) = delete;
    ProjThread& operator=(const ProjThread&) = delete;

    PJ_CONTEXT* context() const { return _context; }

    void resetError()
    {
        _lastLog.clear();
    }

    // The last message PROJ logged, or the text of its error number.
    QString lastError(int errorNumber) const
    {
        if (!_lastLog.isEmpty())
            return _lastLog;
        if (errorNumber != 0)
            return QString::fromUtf8(proj_context_errno_string(_context, errorNumber));
        return tr("unknown PROJ error");
    }

    const Transformation& transformation(const QString& from, const QString& to)
    {
        const QPair<QString, QString> key(from, to);
        auto it = _cache.constFind(key);
        if (it != _cache.constEnd())
            return *it;
        if (_cache.size() >= MAX_CACHED_TRANSFORMATIONS)
            _clearCache();
        return *_cache.insert(key, _create(from, to));
    }

private:
    static void _log(void* data, int level, const char* message)
    {
        if (level <= PJ_LOG_ERROR && message)
            static_cast<ProjThread*>(data)->_lastLog = QString::fromUtf8(message).trimmed();
    }

    Transformation _create(const QString& from, const QString& to)
    {
        resetError();
        Transformation t;
        PJ* operation = proj_create_crs_to_crs(_context, from.toUtf8().constData(), to.toUtf8().constData(), nullptr);
        if (!operation) {
            t.error = lastError(proj_context_errno(_context));
            return t;
        }
        // Authorities put latitude first for many geographic systems; a map wants x east.
        t.pj = proj_normalize_for_visualization(_context, operation);
        proj_destroy(operation);
        if (!t.pj)
            t.error = lastError(proj_context_errno(_context));
        return t;
    }

    void _clearCache()
    {
        for (const Transformation& t : qAsConst(_cache))
            proj_destroy(t.pj);
        _cache.clear();
    }

    PJ_CONTEXT* _context;
    QString _lastLog;
    QHash<QPair<QString, QString>, Transformation> _cache;
};

// Frees a PJ at the end of a scope.
struct PjDeleter
{
    void operator()(PJ* pj) const { proj_destroy(pj); }
};
using PjHolder = std::unique_ptr<PJ, PjDeleter>;

bool isUndefinedCoordinate(double v)
{
    return KbbGlobal::isUndefined(v) || !std::isfinite(v);
}

// The KbuUnit whose factor PROJ's axis unit has, among the units of the class.
const KbuUnit& unitWithFactor(const KbuEUnitClass& unitClass, double factor)
{
    for (const KbuUnit& u : KbuUnit::units(unitClass))
        if (std::fabs(u.getFactor() - factor) <= 1e-9 * factor)
            return KbuUnit::fromKey(u.getKey());
    return KbuUnit::none();
}

const QString LOCAL_PREFIX = QStringLiteral("local:");

} // namespace

class VuuCoordSystemData : public QSharedData
{
public:
    enum Kind { Undefined, Local, Proj };

    Kind kind = Undefined;
    // What toString() writes: the authority code, or the definition as given (kept for
    // an invalid one too, so that saving a project does not lose it).
    QString code;
    // What PROJ's transformations are built from: the horizontal part of the system.
    QString projDefinition;
    QString name;
    KbuUnit unit;
    bool geographic = false;
    QString error;

    // Fills the fields from what PROJ makes of the definition, or sets the error.
    void read(const QString& definition);
};

VuuCoordSystem::VuuCoordSystem()
    : _d(new VuuCoordSystemData)
{
}

VuuCoordSystem::VuuCoordSystem(VuuCoordSystemData* data)
    : _d(data)
{
}

VuuCoordSystem::VuuCoordSystem(const VuuCoordSystem& other) = default;
VuuCoordSystem& VuuCoordSystem::operator=(const VuuCoordSystem& other) = default;
VuuCoordSystem::~VuuCoordSystem() = default;

VuuCoordSystem::VuuCoordSystem(const QString& definition)
    : _d(new VuuCoordSystemData)
{
    _d->read(definition);
}

void VuuCoordSystemData::read(const QString& definition)
{
    const QString given = definition.trimmed();
    code = given;
    if (given.isEmpty()) {
        error = tr("No coordinate system was given.");
        return;
    }
    // A bare PROJ string describes an operation; the same string with +type=crs is the
    // system it projects to.
    QString projText = given;
    if (given.startsWith(QLatin1Char('+')) && !given.contains(QLatin1String("type=crs")))
        projText += QStringLiteral(" +type=crs");

    ProjThread& thread = ProjThread::current();
    PJ_CONTEXT* ctx = thread.context();
    thread.resetError();
    const auto fail = [this, &given](const QString& reason) {
        error = tr("'%1' is not a usable coordinate system: %2").arg(given, reason);
        unit = KbuUnit::none();
        geographic = false;
    };

    PjHolder crs(proj_create(ctx, projText.toUtf8().constData()));
    if (!crs)
        return fail(thread.lastError(proj_context_errno(ctx)));
    if (!proj_is_crs(crs.get()))
        return fail(tr("it is an operation, not a coordinate system"));

    // The horizontal part: a compound system's first component, a bound system's source
    // (its datum shift stays with the bound system, which is what is transformed).
    PjHolder horizontal;
    const PJ* base = crs.get();
    if (proj_get_type(base) == PJ_TYPE_COMPOUND_CRS) {
        horizontal.reset(proj_crs_get_sub_crs(ctx, base, 0));
        if (!horizontal)
            return fail(thread.lastError(proj_context_errno(ctx)));
        base = horizontal.get();
    }
    PjHolder source;
    const PJ* typed = base;
    if (proj_get_type(base) == PJ_TYPE_BOUND_CRS) {
        source.reset(proj_get_source_crs(ctx, base));
        if (source)
            typed = source.get();
    }
    switch (proj_get_type(typed)) {
    case PJ_TYPE_PROJECTED_CRS:
        break;
    case PJ_TYPE_GEOGRAPHIC_2D_CRS:
    case PJ_TYPE_GEOGRAPHIC_3D_CRS:
        geographic = true;
        break;
    default:
        return fail(tr("it is neither a projected nor a geographic system; use a local system for plain "
                       "coordinates"));
    }

    PjHolder cs(proj_crs_get_coordinate_system(ctx, typed));
    double factor = 0.0;
    if (!cs || !proj_cs_get_axis_info(ctx, cs.get(), 0, nullptr, nullptr, nullptr, &factor, nullptr, nullptr, nullptr))
        return fail(thread.lastError(proj_context_errno(ctx)));
    unit = unitWithFactor(geographic ? KbuEUnitClass::ANGLE : KbuEUnitClass::LENGTH, factor);

    const char* idAuthority = proj_get_id_auth_name(crs.get(), 0);
    const char* idCode = proj_get_id_code(crs.get(), 0);
    if (idAuthority && idCode)
        code = QStringLiteral("%1:%2").arg(QString::fromUtf8(idAuthority), QString::fromUtf8(idCode));
    name = QString::fromUtf8(proj_get_name(crs.get()));
    // PROJ strings make systems named "unknown"; their definition says more.
    if (name.isEmpty() || name == QLatin1String("unknown"))
        name = code;

    if (base == crs.get()) {
        projDefinition = idAuthority && idCode ? code : projText;
    } else {
        const char* subAuthority = proj_get_id_auth_name(base, 0);
        const char* subCode = proj_get_id_code(base, 0);
        if (subAuthority && subCode)
            projDefinition = QStringLiteral("%1:%2").arg(QString::fromUtf8(subAuthority), QString::fromUtf8(subCode));
        else
            projDefinition = QString::fromUtf8(proj_as_wkt(ctx, base, PJ_WKT2_2019, nullptr));
        if (projDefinition.isEmpty())
            return fail(thread.lastError(proj_context_errno(ctx)));
    }
    kind = VuuCoordSystemData::Proj;
}

VuuCoordSystem VuuCoordSystem::local(const KbuUnit& unit)
{
    auto* data = new VuuCoordSystemData;
    if (unit.belongsTo(KbuEUnitClass::LENGTH) && !unit.isNone()) {
        data->kind = VuuCoordSystemData::Local;
        data->unit = unit;
    } else {
        data->code = LOCAL_PREFIX + unit.getKey();
        data->error = tr("A local coordinate system is measured in a length unit, not in '%1'.").arg(unit.getKey());
    }
    return VuuCoordSystem(data);
}

bool VuuCoordSystem::isValid() const
{
    return _d->kind != VuuCoordSystemData::Undefined;
}

bool VuuCoordSystem::isLocal() const
{
    return _d->kind == VuuCoordSystemData::Local;
}

bool VuuCoordSystem::isGeographic() const
{
    return _d->kind == VuuCoordSystemData::Proj && _d->geographic;
}

QString VuuCoordSystem::getName() const
{
    return isLocal() ? tr("Local coordinate system") : _d->name;
}

const KbuUnit& VuuCoordSystem::getUnit() const
{
    return _d->unit;
}

QString VuuCoordSystem::getCode() const
{
    return _d->code;
}

QString VuuCoordSystem::getError() const
{
    return _d->error;
}

bool VuuCoordSystem::operator==(const VuuCoordSystem& o) const
{
    if (_d == o._d)
        return true;
    if (_d->kind != o._d->kind)
        return false;
    return _d->kind == VuuCoordSystemData::Local ? _d->unit == o._d->unit : _d->code == o._d->code;
}

QString VuuCoordSystem::toString() const
{
    return isLocal() ? LOCAL_PREFIX + _d->unit.getKey() : _d->code;
}

VuuCoordSystem VuuCoordSystem::fromString(const QString& text)
{
    const QString trimmed = text.trimmed();
    // What toString() writes for a system never chosen: not an error.
    if (trimmed.isEmpty())
        return VuuCoordSystem();
    if (!trimmed.startsWith(LOCAL_PREFIX, Qt::CaseInsensitive))
        return VuuCoordSystem(trimmed);
    const QString key = trimmed.mid(LOCAL_PREFIX.size());
    if (KbuUnit::existsKey(key))
        return local(KbuUnit::fromKey(key));
    auto* data = new VuuCoordSystemData;
    data->code = trimmed;
    data->error = tr("'%1' is not a known unit for a local coordinate system.").arg(key);
    return VuuCoordSystem(data);
}

bool VuuCoordSystem::convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QPointF& point, QString* error)
{
    double x = point.x();
    double y = point.y();
    if (_convert(from, to, &x, &y, 1, sizeof(double), error) != 0)
        return false;
    point = QPointF(x, y);
    return true;
}

bool VuuCoordSystem::convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QRectF& rect, QString* error)
{
    // Edges of a projected rectangle bend in the other system: points along them catch
    // the extremes the corners miss.
    const int perEdge = 8;
    const QRectF r = rect.normalized();
    if (isUndefinedCoordinate(r.left()) || isUndefinedCoordinate(r.right()) || isUndefinedCoordinate(r.top())
        || isUndefinedCoordinate(r.bottom())) {
        if (error)
            *error = tr("Cannot convert an undefined rectangle.");
        return false;
    }
    std::vector<double> xs;
    std::vector<double> ys;
    xs.reserve(4 * perEdge);
    ys.reserve(4 * perEdge);
    const QPointF corners[] = {r.topLeft(), r.topRight(), r.bottomRight(), r.bottomLeft()};
    for (int edge = 0; edge < 4; ++edge) {
        const QPointF a = corners[edge];
        const QPointF b = corners[(edge + 1) % 4];
        for (int i = 0; i < perEdge; ++i) {
            const double t = double(i) / perEdge;
            xs.push_back(a.x() + (b.x() - a.x()) * t);
            ys.push_back(a.y() + (b.y() - a.y()) * t);
        }
    }
    const int count = int(xs.size());
    QString why;
    const int failed = _convert(from, to, xs.data(), ys.data(), count, sizeof(double), &why);
    if (failed != 0) {
        if (error)
            *error = failed < 0 ? why
                                : tr("Part of the rectangle is outside the domain of the conversion from %1 to %2.")
                                      .arg(from.getName(), to.getName());
        return false;
    }

    if (to.isGeographic()) {
        // Walking round the perimeter, a jump of more than half a turn in longitude means
        // the rectangle crosses the antimeridian.
        const KbuUnit& unit = to.getUnit();
        const double halfTurn = unit.isNone() ? 180.0 : KbuUnit::fromKey(QStringLiteral("deg")).convert(180.0, unit);
        for (int i = 0; i < count; ++i) {
            if (std::fabs(xs[size_t(i)] - xs[size_t((i + 1) % count)]) > halfTurn) {
                if (error)
                    *error = tr("The rectangle crosses the antimeridian in %1: it has no bounding rectangle there.")
                                 .arg(to.getName());
                return false;
            }
        }
    }

    double xMin = xs[0], xMax = xs[0], yMin = ys[0], yMax = ys[0];
    for (int i = 1; i < count; ++i) {
        xMin = std::min(xMin, xs[size_t(i)]);
        xMax = std::max(xMax, xs[size_t(i)]);
        yMin = std::min(yMin, ys[size_t(i)]);
        yMax = std::max(yMax, ys[size_t(i)]);
    }
    rect = QRectF(QPointF(xMin, yMin), QPointF(xMax, yMax));
    return true;
}

bool VuuCoordSystem::convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QVector<QPointF>& points,
                             QString* error)
{
    static_assert(sizeof(QPointF) == 2 * sizeof(double), "QPointF holds two doubles");
    if (points.isEmpty())
        return _convert(from, to, nullptr, nullptr, 0, sizeof(QPointF), error) == 0;
    QPointF* data = points.data();
    return _convert(from, to, &data->rx(), &data->ry(), points.size(), sizeof(QPointF), error) == 0;
}

bool VuuCoordSystem::convert(const VuuCoordSystem& from, const VuuCoordSystem& to, double* x, double* y, int count,
                             QString* error)
{
    return _convert(from, to, x, y, count, sizeof(double), error) == 0;
}

int VuuCoordSystem::_convert(const VuuCoordSystem& from, const VuuCoordSystem& to, double* x, double* y, int count,
                             size_t stride, QString* error)
{
    const auto fail = [error](const QString& reason) {
        if (error)
            *error = reason;
        return -1;
    };
    for (const VuuCoordSystem* system : {&from, &to}) {
        if (!system->isValid()) {
            const QString why =
                system->getError().isEmpty() ? tr("no coordinate system was chosen") : system->getError();
            return fail(tr("Cannot convert coordinates: %1").arg(why));
        }
    }
    if (from.isLocal() != to.isLocal())
        return fail(tr("Cannot convert between a local coordinate system and %1: a local system has no place on "
                       "the Earth.")
                        .arg((from.isLocal() ? to : from).getName()));

    auto at = [stride](double* base, int i) -> double& {
        return *reinterpret_cast<double*>(reinterpret_cast<char*>(base) + size_t(i) * stride);
    };

    if (from == to || count <= 0)
        return 0;

    if (from.isLocal()) {
        const KbuUnitTransfo units(from.getUnit(), to.getUnit());
        for (int i = 0; i < count; ++i) {
            at(x, i) = units.apply(at(x, i));
            at(y, i) = units.apply(at(y, i));
        }
        return 0;
    }

    ProjThread& thread = ProjThread::current();
    const ProjThread::Transformation& transformation =
        thread.transformation(from._d->projDefinition, to._d->projDefinition);
    if (!transformation.pj)
        return fail(
            tr("PROJ cannot convert from %1 to %2: %3").arg(from.getName(), to.getName(), transformation.error));

    // Undefined points would come back as numbers (a projection wraps any longitude):
    // keep them out of PROJ and put them back as they were.
    std::vector<int> skipped;
    std::vector<QPointF> skippedValues;
    for (int i = 0; i < count; ++i) {
        if (isUndefinedCoordinate(at(x, i)) || isUndefinedCoordinate(at(y, i))) {
            skipped.push_back(i);
            skippedValues.emplace_back(at(x, i), at(y, i));
            at(x, i) = HUGE_VAL;
            at(y, i) = HUGE_VAL;
        }
    }

    proj_trans_generic(transformation.pj, PJ_FWD, x, stride, size_t(count), y, stride, size_t(count), nullptr, 0, 0,
                       nullptr, 0, 0);
    proj_errno_reset(transformation.pj);

    for (size_t k = 0; k < skipped.size(); ++k) {
        at(x, skipped[k]) = skippedValues[k].x();
        at(y, skipped[k]) = skippedValues[k].y();
    }
    int failed = 0;
    for (int i = 0; i < count; ++i) {
        double& px = at(x, i);
        double& py = at(y, i);
        if (px == HUGE_VAL || py == HUGE_VAL || !std::isfinite(px) || !std::isfinite(py)) {
            if (!std::binary_search(skipped.begin(), skipped.end(), i)) {
                px = KbbGlobal::D_FFFF;
                py = KbbGlobal::D_FFFF;
                ++failed;
            }
        }
    }
    if (failed > 0 && error) {
        *error = count == 1 ? tr("The point is outside the domain of the conversion from %1 to %2.")
                                  .arg(from.getName(), to.getName())
                            : tr("%1 of %2 points are outside the domain of the conversion from %3 to %4; they are "
                                 "now undefined.")
                                  .arg(failed)
                                  .arg(count)
                                  .arg(from.getName(), to.getName());
    }
    return failed;
}
