#pragma once
// The items of a scene in drawing order (rank 0 is drawn lowest), with the scene's last
// zoom and coordinate system. Views show it and listen to its signals; every change goes
// through the operations here, which refuse bad input with a qWarning and change nothing.
// Signals are sent once per operation, after the change, so a listener sees the new state.
// VugSceneStore keeps scenes in the project.

#include <velmora_graphic_export.h>

#include <VugSceneItem.h>

#include <QList>
#include <QObject>
#include <QRectF>
#include <QStringList>
#include <QVector>
#include <memory>

class VELMORA_GRAPHIC_EXPORT VugScene : public QObject
{
    Q_OBJECT
public:
    // id is the scene's id in the project's scene model (VsmModelScene); it names the
    // scene's file.
    explicit VugScene(int id = 0, QObject* parent = nullptr);
    ~VugScene() override;

    int getId() const;

    int count() const;
    bool isEmpty() const { return count() == 0; }
    // nullptr for a rank out of range. The item stays at this address, whatever its rank,
    // until it is removed or the scene is reset.
    const VugSceneItem* item(int rank) const;
    const VugSceneItem* findItem(const QString& itemId) const;
    // -1 when no item has that id.
    int findRank(const QString& itemId) const;
    QVector<VugSceneItem> items() const;
    QStringList itemIds() const;
    // base itself when no item uses it, else base_2, base_3, ...; "item" for an empty base.
    QString uniqueItemId(const QString& base) const;

    // rank in [0, count()]. The id must be new to the scene and the item valid
    // (VugSceneItem::problem()).
    bool insertItem(int rank, const VugSceneItem& item);
    bool appendItem(const VugSceneItem& item);
    // The item ends at toRank, in [0, count() - 1].
    bool moveItem(int fromRank, int toRank);
    // The items at ranks keep their relative order and end as one block whose first item
    // is at toRank, in [0, count() - ranks.size()]. Ranks must be distinct and valid.
    bool moveItems(const QList<int>& ranks, int toRank);
    // Repeated ranks count once. An empty list does nothing.
    bool removeItems(const QList<int>& ranks);
    bool removeItem(int rank) { return removeItems({rank}); }
    bool renameItem(int rank, const QString& name);
    bool setItemActive(int rank, bool active);
    bool setItemSource(int rank, const QString& datasetKey, const QString& subDatasetKey);
    bool setItemRendering(int rank, const VugERendering& rendering);
    bool setItemStyle(int rank, const QVariantMap& style);
    // Replaces every item (reset() is sent); refused as a whole when one item is invalid
    // or two share an id.
    bool setItems(const QVector<VugSceneItem>& items);
    // Removes every item (reset() is sent when there was one).
    void clear();

    // The item the user works on; an empty id when none. Removing it clears the selection.
    QString getSelectedItemId() const;
    // An empty id clears the selection; an unknown id is refused.
    bool setSelectedItem(const QString& itemId);

    // The rectangle the scene was last seen through, in the project's coordinates;
    // QRectF() when there is none.
    QRectF getLastZoom() const;
    bool hasLastZoom() const;
    // A rectangle with a non-finite coordinate or no area is refused.
    bool setLastZoom(const QRectF& rect);
    void clearLastZoom();

    // The code of the coordinate system the scene is drawn in; empty for the project's.
    QString getCoordSystemCode() const;
    // A code with a control character is refused.
    bool setCoordSystemCode(const QString& code);

Q_SIGNALS:
    void itemInserted(int rank);
    // The ids of the items that were moved, in their new order.
    void itemsMoved(const QStringList& movedItemIds);
    // The ranks the items had, highest first, so that a listener removing its own entries
    // one by one in that order keeps the other ranks right.
    void itemsRemoved(const QList<int>& ranks);
    void itemRenamed(int rank, const QString& oldName, const QString& newName);
    void itemShown(int rank, bool shown);
    // The item's dataset, sub-dataset or rendering changed: what it draws must be rebuilt.
    void itemSourceChanged(int rank);
    void itemStyleChanged(int rank);
    // Every item may have changed: listeners rebuild from the scene.
    void reset();
    void selectionChanged(const QString& itemId);
    void coordSystemChanged(const QString& code);

private:
    bool _checkRank(int rank, const char* operation) const;
    VugSceneItem* _item(int rank, const char* operation);
    void _dropStaleSelection();

    std::unique_ptr<class VugScenePrivate> const _d;
};
