#pragma once
// The datasets of a project that scene items draw, each under a key (the item's dataset
// key). A key holds one dataset of one kind; registering another kind under a used key is
// refused, so that an item never finds a grid where it drew points.
//
// Point sets are kept on disk, one binary VsdPointSetFile per key in
// "<database>/datasets/<key>.vpts" (the key percent-encoded where a file name could not
// hold it). Polyline sets, polygon sets and grids are kept in memory only for now: they
// are gone when the project is reopened.
//
// A point set (kept on disk) or grid that comes in holding values the views leave out of
// their colour scales and frames (NaN, infinities, values far outside the others: see
// KbcValueRange) is reported once with KbbDebug::printWarning, naming the key and the
// columns; columns that come back unchanged are not reported again.

#include <velmora_graphic_export.h>

#include <QObject>
#include <QStringList>
#include <memory>

class VsdGrid;
class VsdPointSet;
class VsdPolygonSet;
class VsdPolylineSet;
class VssProject;

class VELMORA_GRAPHIC_EXPORT VugDatasetStore : public QObject
{
    Q_OBJECT
public:
    enum class Kind { NONE, POINT_SET, POLYLINE_SET, POLYGON_SET, GRID };
    // Whether save() writes a point set, or it lives for the session only (data that can
    // be made again, such as a generated set far too large to write at every close).
    enum class Storage { ON_DISK, IN_MEMORY };

    // The longest key: its file name stays within what file systems hold.
    static constexpr int MAX_KEY_LENGTH = 80;

    // Over the project's database folder; nothing is read until load().
    explicit VugDatasetStore(const VssProject& project, QObject* parent = nullptr);
    ~VugDatasetStore() override;

    QString getDirectory() const;

    // Replace the dataset under key, or add it. A key that is empty, longer than
    // MAX_KEY_LENGTH or holds a control character, or that holds another kind, is
    // refused with a qWarning.
    bool setPointSet(const QString& key, const VsdPointSet& set, Storage storage = Storage::ON_DISK);
    bool setPolylineSet(const QString& key, const VsdPolylineSet& set);
    bool setPolygonSet(const QString& key, const VsdPolygonSet& set);
    bool setGrid(const QString& key, const VsdGrid& grid);
    bool remove(const QString& key);

    Kind kindOf(const QString& key) const;
    // How the point set under key is kept; ON_DISK for other kinds and unknown keys.
    Storage storageOf(const QString& key) const;
    bool contains(const QString& key) const { return kindOf(key) != Kind::NONE; }
    // Sorted.
    QStringList keys() const;
    QStringList keys(Kind kind) const;

    // nullptr when the key is missing or holds another kind. The dataset stays at this
    // address until its key is set again or removed.
    const VsdPointSet* pointSet(const QString& key) const;
    const VsdPolylineSet* polylineSet(const QString& key) const;
    const VsdPolygonSet* polygonSet(const QString& key) const;
    const VsdGrid* grid(const QString& key) const;

    // Writes the point sets changed since the last save or load and deletes the files of
    // those removed. Throws KbeError naming the files that could not be written; the
    // others are written, and the failed ones are tried again at the next save.
    void save();
    // Replaces the point sets by those of the folder's files; the other kinds stay. A file
    // that cannot be read is left out and moved aside ("<file>.bad"), so that nothing is
    // saved over it; once the others are in, a KbeError names it.
    void load();

    static QString fileName(const QString& key);

Q_SIGNALS:
    // The dataset under key was added or replaced.
    void datasetChanged(const QString& key);
    void datasetRemoved(const QString& key);
    // load() replaced the point sets.
    void reloaded();

private:
    std::unique_ptr<class VugDatasetStorePrivate> const _d;
};
