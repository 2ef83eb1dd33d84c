#include "VugDatasetStore.h"

#include "VugSceneItem.h"

#include <KbbDebug.h>
#include <KbcValueRange.h>
#include <KbeError.h>
#include <VsdGrid.h>
#include <VsdPointSet.h>
#include <VsdPointSetFile.h>
#include <VsdPolygonSet.h>
#include <VsdPolylineSet.h>
#include <VssProject.h>
#include <VusFileUtils.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QUrl>
#include <algorithm>
#include <cstring>
#include <map>
#include <type_traits>

namespace {

const QString kSuffix = QStringLiteral(".vpts");

const char* kindName(VugDatasetStore::Kind kind)
{
    switch (kind) {
    case VugDatasetStore::Kind::POINT_SET: return "a point set";
    case VugDatasetStore::Kind::POLYLINE_SET: return "a polyline set";
    case VugDatasetStore::Kind::POLYGON_SET: return "a polygon set";
    case VugDatasetStore::Kind::GRID: return "a grid";
    case VugDatasetStore::Kind::NONE: break;
    }
    return "nothing";
}

struct Entry
{
    VugDatasetStore::Kind kind = VugDatasetStore::Kind::NONE;
    std::unique_ptr<VsdPointSet> points;
    std::unique_ptr<VsdPolylineSet> lines;
    std::unique_ptr<VsdPolygonSet> polygons;
    std::unique_ptr<VsdGrid> grid;
};

// The member of an entry (const or not) that holds datasets of type T.
template <class T, class E>
auto& slot(E& e)
{
    if constexpr (std::is_same_v<T, VsdPointSet>)
        return e.points;
    else if constexpr (std::is_same_v<T, VsdPolylineSet>)
        return e.lines;
    else if constexpr (std::is_same_v<T, VsdPolygonSet>)
        return e.polygons;
    else
        return e.grid;
}

// A dataset's columns of values by the names the user knows them by. Polyline and
// polygon sets refuse non-finite vertices when they are made: they have none to check.
using Columns = QVector<QPair<QString, QVector<double>>>;

Columns columnsOf(const VsdPointSet& set)
{
    Columns columns{{QStringLiteral("x"), set.x()}, {QStringLiteral("y"), set.y()}, {QStringLiteral("z"), set.z()}};
    for (const QString& name : set.variableNames())
        columns.append({name, set.variable(name)});
    return columns;
}

Columns columnsOf(const VsdGrid& grid)
{
    return {{QString(), grid.values()}};
}

template <class T>
Columns columnsOf(const T&)
{
    return {};
}

// Tells the user once, as a dataset comes in, of the values that views leave out of their
// colour scales and frames (KbcValueRange), so that a map that looks wrong can be traced
// to its data. Columns the key held before unchanged (a new selection shares them, a
// reload reads them again) are not told twice.
void reportLeftOut(const QString& key, const Columns& columns, const Columns& before)
{
    QStringList found;
    for (const auto& column : columns) {
        // Bit for bit: a NaN read back equals the NaN written, though not by ==.
        const bool told = std::any_of(before.cbegin(), before.cend(), [&column](const auto& b) {
            return b.first == column.first && b.second.size() == column.second.size()
                && (b.second.constData() == column.second.constData()
                    || std::memcmp(b.second.constData(), column.second.constData(),
                                   size_t(b.second.size()) * sizeof(double)) == 0);
        });
        const KbcValueRange range = told ? KbcValueRange() : KbcValueRange::of(column.second);
        if (range.hasLeftOut())
            found << (columns.size() == 1 ? range.describeLeftOut()
                                          : QCoreApplication::translate("VugDatasetStore", "in %1, %2")
                                                .arg(column.first, range.describeLeftOut()));
    }
    if (!found.isEmpty())
        KbbDebug::printWarning(QCoreApplication::translate("VugDatasetStore", "Dataset '%1': %2. Colour scales and "
                                                                              "the views' frames leave them out.")
                                   .arg(key, found.join(QLatin1String("; "))));
}

} // namespace

class VugDatasetStorePrivate
{
public:
    QString directory;
    // A node-based map: a dataset keeps its address while other keys come and go.
    std::map<QString, Entry> entries;
    // Point sets to write at the next save, and keys whose file is to be deleted.
    QSet<QString> dirty;
    QSet<QString> stale;
    // Point sets that live for the session only.
    QSet<QString> inMemory;

    const Entry* find(const QString& key) const
    {
        const auto it = entries.find(key);
        return it == entries.end() ? nullptr : &it->second;
    }

    template <class T>
    bool set(VugDatasetStore* q, const QString& key, VugDatasetStore::Kind kind, const T& value, const char* operation,
             bool fromOutside = true)
    {
        QString why = VugSceneItem::textProblem(key, true);
        if (why.isEmpty() && key.size() > VugDatasetStore::MAX_KEY_LENGTH)
            why = QStringLiteral("it is longer than %1 characters").arg(VugDatasetStore::MAX_KEY_LENGTH);
        const Entry* old = find(key);
        if (why.isEmpty() && old && old->kind != kind)
            why = QStringLiteral("it holds %1; remove that first").arg(QLatin1String(kindName(old->kind)));
        if (!why.isEmpty()) {
            qWarning("VugDatasetStore::%s: the key '%s' is refused: %s", operation, qUtf8Printable(key),
                     qUtf8Printable(why));
            return false;
        }
        const Columns before = old ? columnsOf(*slot<T>(*old)) : Columns();
        Entry entry;
        entry.kind = kind;
        slot<T>(entry) = std::make_unique<T>(value);
        entries[key] = std::move(entry);
        if (fromOutside)
            reportLeftOut(key, columnsOf(value), before);
        if (kind == VugDatasetStore::Kind::POINT_SET) {
            dirty.insert(key);
            stale.remove(key);
        }
        emit q->datasetChanged(key);
        return true;
    }

    template <class T>
    const T* get(const QString& key, VugDatasetStore::Kind kind) const
    {
        const Entry* e = find(key);
        return e && e->kind == kind ? slot<T>(*e).get() : nullptr;
    }
};

VugDatasetStore::VugDatasetStore(const VssProject& project, QObject* parent)
    : QObject(parent)
    , _d(std::make_unique<VugDatasetStorePrivate>())
{
    _d->directory = QDir(project.getDatabaseDirectory()).filePath(QStringLiteral("datasets"));
}

VugDatasetStore::~VugDatasetStore() = default;

QString VugDatasetStore::getDirectory() const { return _d->directory; }

QString VugDatasetStore::fileName(const QString& key)
{
    // Unreserved URL characters stay; a leading dot is encoded too, so no file is hidden.
    QString name = QString::fromLatin1(QUrl::toPercentEncoding(key));
    if (name.startsWith(QLatin1Char('.')))
        name.replace(0, 1, QStringLiteral("%2E"));
    return name + kSuffix;
}

bool VugDatasetStore::setPointSet(const QString& key, const VsdPointSet& set, Storage storage)
{
    // What lives in memory only is made by the program, not read from outside: it is not
    // checked, which spares generated millions of samples a few passes.
    if (!_d->set(this, key, Kind::POINT_SET, set, "setPointSet", storage == Storage::ON_DISK))
        return false;
    if (storage == Storage::IN_MEMORY) {
        // Any file of an earlier set under the key would come back at the next load.
        _d->dirty.remove(key);
        _d->stale.insert(key);
        _d->inMemory.insert(key);
    } else {
        _d->inMemory.remove(key);
    }
    return true;
}

bool VugDatasetStore::setPolylineSet(const QString& key, const VsdPolylineSet& set)
{
    return _d->set(this, key, Kind::POLYLINE_SET, set, "setPolylineSet");
}

bool VugDatasetStore::setPolygonSet(const QString& key, const VsdPolygonSet& set)
{
    return _d->set(this, key, Kind::POLYGON_SET, set, "setPolygonSet");
}

bool VugDatasetStore::setGrid(const QString& key, const VsdGrid& grid)
{
    return _d->set(this, key, Kind::GRID, grid, "setGrid");
}

bool VugDatasetStore::remove(const QString& key)
{
    const auto it = _d->entries.find(key);
    if (it == _d->entries.end())
        return false;
    if (it->second.kind == Kind::POINT_SET) {
        _d->dirty.remove(key);
        _d->stale.insert(key);
    }
    _d->entries.erase(it);
    _d->inMemory.remove(key);
    emit datasetRemoved(key);
    return true;
}

VugDatasetStore::Storage VugDatasetStore::storageOf(const QString& key) const
{
    return _d->inMemory.contains(key) && kindOf(key) == Kind::POINT_SET ? Storage::IN_MEMORY : Storage::ON_DISK;
}

VugDatasetStore::Kind VugDatasetStore::kindOf(const QString& key) const
{
    const Entry* e = _d->find(key);
    return e ? e->kind : Kind::NONE;
}

QStringList VugDatasetStore::keys() const
{
    QStringList result;
    for (const auto& e : _d->entries)
        result.append(e.first);
    return result;
}

QStringList VugDatasetStore::keys(Kind kind) const
{
    QStringList result;
    for (const auto& e : _d->entries)
        if (e.second.kind == kind)
            result.append(e.first);
    return result;
}

const VsdPointSet* VugDatasetStore::pointSet(const QString& key) const
{
    return _d->get<VsdPointSet>(key, Kind::POINT_SET);
}

const VsdPolylineSet* VugDatasetStore::polylineSet(const QString& key) const
{
    return _d->get<VsdPolylineSet>(key, Kind::POLYLINE_SET);
}

const VsdPolygonSet* VugDatasetStore::polygonSet(const QString& key) const
{
    return _d->get<VsdPolygonSet>(key, Kind::POLYGON_SET);
}

const VsdGrid* VugDatasetStore::grid(const QString& key) const
{
    return _d->get<VsdGrid>(key, Kind::GRID);
}

void VugDatasetStore::save()
{
    QStringList problems;
    const QDir dir(_d->directory);
    if (!QDir().mkpath(_d->directory))
        throw KbeError(tr("The folder '%1' cannot be created.").arg(QDir::toNativeSeparators(_d->directory)));
    for (const QString& key : QSet<QString>(_d->stale)) {
        QFile file(dir.filePath(fileName(key)));
        if (file.exists() && !file.remove())
            problems << tr("'%1' cannot be deleted: %2").arg(QDir::toNativeSeparators(file.fileName()), file.errorString());
        else
            _d->stale.remove(key);
    }
    for (const QString& key : QSet<QString>(_d->dirty)) {
        const VsdPointSet* set = pointSet(key);
        if (!set) {
            _d->dirty.remove(key);
            continue;
        }
        try {
            VsdPointSetFile::write(*set, dir.filePath(fileName(key)), VsdPointSetFile::Format::Binary);
            _d->dirty.remove(key);
        } catch (const KbeError& e) {
            problems << e.getMessage();
        }
    }
    if (!problems.isEmpty()) {
        problems.sort();
        throw KbeError(problems.join(QLatin1Char('\n')));
    }
}

void VugDatasetStore::load()
{
    QStringList problems;
    std::map<QString, VsdPointSet> loaded;
    const QDir dir(_d->directory);
    const QStringList files =
        dir.entryList({QStringLiteral("*") + kSuffix}, QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString& file : files) {
        const QString key = QUrl::fromPercentEncoding(file.left(file.size() - kSuffix.size()).toLatin1());
        const Entry* other = _d->find(key);
        if (key.isEmpty() || fileName(key) != file) {
            qWarning("VugDatasetStore::load: '%s' is not a dataset file of this store and is left alone",
                     qUtf8Printable(QDir::toNativeSeparators(dir.filePath(file))));
        } else if (other && other->kind != Kind::POINT_SET) {
            problems << tr("'%1' is not read: its key holds %2.")
                            .arg(QDir::toNativeSeparators(dir.filePath(file)), QLatin1String(kindName(other->kind)));
        } else {
            try {
                loaded[key] = VsdPointSetFile::read(dir.filePath(file));
            } catch (const KbeError& e) {
                // Aside, so that a set saved again under its key does not write over it.
                const QString kept = VusFileUtils::keepAside(dir.filePath(file));
                problems << (kept.isEmpty() ? e.getMessage()
                                            : tr("%1 It is kept as '%2'.").arg(e.getMessage(), QDir::toNativeSeparators(kept)));
            }
        }
    }
    for (const auto& l : loaded) {
        const VsdPointSet* before = pointSet(l.first);
        reportLeftOut(l.first, columnsOf(l.second), before ? columnsOf(*before) : Columns());
    }
    for (auto it = _d->entries.begin(); it != _d->entries.end();)
        it = it->second.kind == Kind::POINT_SET ? _d->entries.erase(it) : std::next(it);
    for (auto& l : loaded) {
        Entry entry;
        entry.kind = Kind::POINT_SET;
        entry.points = std::make_unique<VsdPointSet>(std::move(l.second));
        _d->entries[l.first] = std::move(entry);
    }
    _d->dirty.clear();
    _d->stale.clear();
    _d->inMemory.clear();
    emit reloaded();
    if (!problems.isEmpty())
        throw KbeError(problems.join(QLatin1Char('\n')));
}
