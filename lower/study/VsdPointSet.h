#pragma once
// Samples of a 2D map: x, y, z and named variables kept as one array per quantity, so that a
// renderer runs over millions of samples without touching the others, and a selection of
// sample ranks. KbbGlobal::D_FFFF marks an undefined value, coordinates included.
// Implicitly shared: copies are cheap until one of them changes. VsdPointSetFile reads and
// writes them.

#include <velmora_study_export.h>

#include <KbbGlobal.h>
#include <KbiIntervalIntSmallDisjoint.h>

#include <QPointF>
#include <QPolygonF>
#include <QRectF>
#include <QSharedDataPointer>
#include <QStringList>
#include <QVector>

class VsdPointSetData;

class VELMORA_STUDY_EXPORT VsdPointSet
{
public:
    // The most samples a set holds: a column of this many doubles (1 GiB) stays within what
    // a QVector holds, and a file claiming more is refused before anything is allocated.
    static constexpr int MAX_SIZE = 1 << 27;

    VsdPointSet();
    VsdPointSet(const VsdPointSet& o);
    VsdPointSet& operator=(const VsdPointSet& o);
    ~VsdPointSet();

    int size() const;
    bool isEmpty() const { return size() == 0; }
    void reserve(int count);
    void clear();

    const QVector<double>& x() const;
    const QVector<double>& y() const;
    const QVector<double>& z() const;
    QPointF point(int rank) const;
    // The values of the sample in variable order; a wrong count is refused with a qWarning.
    // Without values every variable is undefined.
    bool append(double x, double y, double z = KbbGlobal::D_FFFF, const QVector<double>& values = {});
    // Replaces every coordinate; the three columns and the variables must keep one length, or
    // the call is refused with a qWarning. Selected ranks beyond the new size are dropped.
    bool setCoordinates(const QVector<double>& x, const QVector<double>& y, const QVector<double>& z);

    QStringList variableNames() const;
    bool hasVariable(const QString& name) const;
    // Empty for an unknown name. The vector shares the set's data: no copy is made.
    QVector<double> variable(const QString& name) const;
    // A name must be new, not empty and not one of x, y, z; values must have size() entries.
    bool addVariable(const QString& name);
    bool addVariable(const QString& name, const QVector<double>& values);
    bool setVariable(const QString& name, const QVector<double>& values);
    bool removeVariable(const QString& name);
    // Why addVariable() would refuse the name, or an empty string.
    QString variableNameProblem(const QString& name) const;

    const KbiIntervalIntSmallDisjoint& selection() const;
    bool isSelected(int rank) const;
    // Ranks outside [0, size()) are refused with a qWarning and change nothing.
    bool select(int rank);
    bool deselect(int rank);
    bool toggle(int rank);
    bool select(const KbiIntervalIntSmallDisjoint& ranks);
    bool deselect(const KbiIntervalIntSmallDisjoint& ranks);
    bool toggle(const KbiIntervalIntSmallDisjoint& ranks);
    void clearSelection();

    // Over the samples whose x and y are finite and defined; QRectF() when there is none.
    QRectF boundingRect() const;
    // What a view frames: boundingRect() without the samples whose x or y lies far outside
    // the others (KbcValueRange), so that one sample at 1e30 does not shrink the rest to a
    // dot.
    QRectF framingRect() const;
    // The nearest sample within tolerance (inclusive), the lowest rank among equals; -1 when
    // none. A negative or NaN tolerance is refused with a qWarning.
    int nearestRank(const QPointF& p, double tolerance) const;
    // Edges included; a rectangle of negative size is normalized first.
    KbiIntervalIntSmallDisjoint ranksInRect(const QRectF& rect) const;
    // Odd-even rule, edges included.
    KbiIntervalIntSmallDisjoint ranksInPolygon(const QPolygonF& polygon) const;

    // A reproducible synthetic field within extent: a smooth trend plus noise in z and in the
    // variables "Porosity" (with a few undefined samples) and "Thickness". No allocation per
    // sample. A count outside [0, MAX_SIZE] or an empty extent is refused with a qWarning and
    // gives an empty set.
    static VsdPointSet generate(int count, quint32 seed, const QRectF& extent);

private:
    bool _checkRank(int rank, const char* operation) const;
    bool _checkRanks(const KbiIntervalIntSmallDisjoint& ranks, const char* operation) const;
    bool _checkVariable(const QString& name, int count, const char* operation) const;

    QSharedDataPointer<VsdPointSetData> _d;
};
