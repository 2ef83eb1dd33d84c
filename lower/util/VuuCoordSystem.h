#pragma once
// A coordinate system of the map: either a local system (a plain plane measured in a
// length unit, with no place on the Earth) or a projected or geographic system that PROJ
// knows, by an authority code ("EPSG:32631"), a PROJ string or WKT. Geographic systems
// take x as longitude and y as latitude, in degrees, whatever order the authority uses.
//
// A value type, cheap to copy and safe to pass between threads: PROJ's objects live in
// a per-thread cache inside the .cpp, never in the value. A definition PROJ refuses
// gives an invalid system whose getError() says why.

#include <velmora_util_export.h>

#include <KbuUnit.h>

#include <QMetaType>
#include <QPointF>
#include <QRectF>
#include <QSharedDataPointer>
#include <QString>
#include <QVector>

class VuuCoordSystemData;

class VELMORA_UTIL_EXPORT VuuCoordSystem
{
public:
    // Invalid, with no error: no system chosen yet.
    VuuCoordSystem();
    // A system PROJ knows: "EPSG:32631", "+proj=utm +zone=31 +datum=WGS84", WKT.
    explicit VuuCoordSystem(const QString& definition);
    VuuCoordSystem(const VuuCoordSystem& other);
    VuuCoordSystem& operator=(const VuuCoordSystem& other);
    ~VuuCoordSystem();

    // A local system in a length unit; another unit gives an invalid system.
    static VuuCoordSystem local(const KbuUnit& unit = KbuUnit::fromKey(QStringLiteral("m")));

    bool isValid() const;
    bool isLocal() const;
    bool isGeographic() const;
    // "Local coordinate system", or PROJ's name ("WGS 84 / UTM zone 31N").
    QString getName() const;
    // The unit of both axes: a length unit, degrees for a geographic system, or no unit
    // when PROJ's unit is not one of KbuUnit's.
    const KbuUnit& getUnit() const;
    // "EPSG:32631" for a system PROJ identifies, otherwise the definition as given;
    // empty for a local or undefined system.
    QString getCode() const;
    // Why the system is invalid; empty when it is valid.
    QString getError() const;

    // Equal when they denote the same definition (same code, or local in the same unit).
    bool operator==(const VuuCoordSystem& o) const;
    bool operator!=(const VuuCoordSystem& o) const { return !(*this == o); }

    // "local:ft", "EPSG:32631" or the definition; fromString(toString()) gives an equal
    // system. A text that does not read gives an invalid system with the reason.
    QString toString() const;
    static VuuCoordSystem fromString(const QString& text);

    // Conversions return false when the systems do not convert into each other or PROJ
    // cannot convert the values; `error` then says why. A single point or a rectangle is
    // left unchanged on failure. An undefined point (KbbGlobal::D_FFFF) stays undefined.
    static bool convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QPointF& point,
                        QString* error = nullptr);
    // The bounding rectangle of the corners and points along the edges. Fails when a
    // point fails, or when the result in a geographic system crosses the antimeridian
    // (its bounding rectangle would wrap the wrong way round the Earth).
    static bool convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QRectF& rect,
                        QString* error = nullptr);
    // In place, for millions of samples. When the systems do not convert, nothing
    // changes; otherwise the points PROJ cannot convert become undefined and the others
    // are converted, and false means at least one point became undefined.
    static bool convert(const VuuCoordSystem& from, const VuuCoordSystem& to, QVector<QPointF>& points,
                        QString* error = nullptr);
    // The same on separate coordinate arrays, as point sets store them.
    static bool convert(const VuuCoordSystem& from, const VuuCoordSystem& to, double* x, double* y, int count,
                        QString* error = nullptr);

private:
    explicit VuuCoordSystem(VuuCoordSystemData* data);
    // The number of points PROJ could not convert, or -1 when the systems do not convert.
    static int _convert(const VuuCoordSystem& from, const VuuCoordSystem& to, double* x, double* y, int count,
                        size_t stride, QString* error);

    QSharedDataPointer<VuuCoordSystemData> _d;
};

Q_DECLARE_METATYPE(VuuCoordSystem)
