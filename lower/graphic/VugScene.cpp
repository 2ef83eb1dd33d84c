#include "VugScene.h"

#include <QSet>
#include <algorithm>
#include <cmath>
#include <vector>

namespace {

void warn(const char* operation, const QString& why)
{
    qWarning("VugScene::%s: %s", operation, qUtf8Printable(why));
}

bool isFinite(const QRectF& r)
{
    return std::isfinite(r.x()) && std::isfinite(r.y()) && std::isfinite(r.width()) && std::isfinite(r.height());
}

} // namespace

class VugScenePrivate
{
public:
    int id = 0;
    // Held by pointer so that an item keeps its address across moves.
    std::vector<std::unique_ptr<VugSceneItem>> items;
    QString selectedId;
    QRectF lastZoom;
    QString coordSystemCode;

    bool checkNewItem(const VugSceneItem& item, const char* operation) const
    {
        const QString why = item.problem();
        if (!why.isEmpty()) {
            warn(operation, why);
            return false;
        }
        for (const auto& i : items) {
            if (i->getId() == item.getId()) {
                warn(operation, QStringLiteral("the id '%1' is already used").arg(item.getId()));
                return false;
            }
        }
        return true;
    }
};

VugScene::VugScene(int id, QObject* parent)
    : QObject(parent)
    , _d(std::make_unique<VugScenePrivate>())
{
    _d->id = id;
}

VugScene::~VugScene() = default;

int VugScene::getId() const { return _d->id; }
int VugScene::count() const { return int(_d->items.size()); }

const VugSceneItem* VugScene::item(int rank) const
{
    return rank >= 0 && rank < count() ? _d->items[size_t(rank)].get() : nullptr;
}

const VugSceneItem* VugScene::findItem(const QString& itemId) const
{
    return item(findRank(itemId));
}

int VugScene::findRank(const QString& itemId) const
{
    for (int r = 0; r < count(); ++r)
        if (_d->items[size_t(r)]->getId() == itemId)
            return r;
    return -1;
}

QVector<VugSceneItem> VugScene::items() const
{
    QVector<VugSceneItem> result;
    result.reserve(count());
    for (const auto& i : _d->items)
        result.append(*i);
    return result;
}

QStringList VugScene::itemIds() const
{
    QStringList ids;
    for (const auto& i : _d->items)
        ids.append(i->getId());
    return ids;
}

QString VugScene::uniqueItemId(const QString& base) const
{
    const QString stem = base.isEmpty() ? QStringLiteral("item") : base;
    QString id = stem;
    for (int n = 2; findRank(id) >= 0; ++n)
        id = QStringLiteral("%1_%2").arg(stem).arg(n);
    return id;
}

bool VugScene::_checkRank(int rank, const char* operation) const
{
    if (rank >= 0 && rank < count())
        return true;
    warn(operation, count() == 0 ? QStringLiteral("rank %1 is invalid: the scene is empty").arg(rank)
                                 : QStringLiteral("rank %1 is out of range [0, %2]").arg(rank).arg(count() - 1));
    return false;
}

VugSceneItem* VugScene::_item(int rank, const char* operation)
{
    return _checkRank(rank, operation) ? _d->items[size_t(rank)].get() : nullptr;
}

bool VugScene::insertItem(int rank, const VugSceneItem& item)
{
    if (rank < 0 || rank > count()) {
        warn("insertItem", QStringLiteral("rank %1 is out of range [0, %2]").arg(rank).arg(count()));
        return false;
    }
    if (!_d->checkNewItem(item, "insertItem"))
        return false;
    _d->items.insert(_d->items.begin() + rank, std::make_unique<VugSceneItem>(item));
    emit itemInserted(rank);
    return true;
}

bool VugScene::appendItem(const VugSceneItem& item)
{
    return insertItem(count(), item);
}

bool VugScene::moveItem(int fromRank, int toRank)
{
    if (!_checkRank(fromRank, "moveItem") || !_checkRank(toRank, "moveItem"))
        return false;
    return moveItems({fromRank}, toRank);
}

bool VugScene::moveItems(const QList<int>& ranks, int toRank)
{
    if (ranks.isEmpty()) {
        warn("moveItems", QStringLiteral("no rank is given"));
        return false;
    }
    QList<int> sorted = ranks;
    std::sort(sorted.begin(), sorted.end());
    for (int i = 0; i < sorted.size(); ++i) {
        if (!_checkRank(sorted[i], "moveItems"))
            return false;
        if (i > 0 && sorted[i] == sorted[i - 1]) {
            warn("moveItems", QStringLiteral("rank %1 is given twice").arg(sorted[i]));
            return false;
        }
    }
    const int last = count() - sorted.size();
    if (toRank < 0 || toRank > last) {
        warn("moveItems", QStringLiteral("target rank %1 is out of range [0, %2]").arg(toRank).arg(last));
        return false;
    }

    std::vector<std::unique_ptr<VugSceneItem>> moved, rest;
    for (int r = 0; r < count(); ++r)
        (std::binary_search(sorted.begin(), sorted.end(), r) ? moved : rest).push_back(std::move(_d->items[size_t(r)]));
    QStringList movedIds;
    for (const auto& i : moved)
        movedIds.append(i->getId());
    rest.insert(rest.begin() + toRank, std::make_move_iterator(moved.begin()), std::make_move_iterator(moved.end()));
    // The block already sat there when its ranks were toRank, toRank + 1, ...
    const bool unchanged = sorted.first() == toRank && sorted.last() == toRank + sorted.size() - 1;
    _d->items = std::move(rest);
    if (!unchanged)
        emit itemsMoved(movedIds);
    return true;
}

bool VugScene::removeItems(const QList<int>& ranks)
{
    QList<int> sorted = ranks;
    std::sort(sorted.begin(), sorted.end(), std::greater<int>());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    for (int r : sorted)
        if (!_checkRank(r, "removeItems"))
            return false;
    if (sorted.isEmpty())
        return true;
    bool selectionLost = false;
    for (int r : sorted) {
        selectionLost = selectionLost || _d->items[size_t(r)]->getId() == _d->selectedId;
        _d->items.erase(_d->items.begin() + r);
    }
    emit itemsRemoved(sorted);
    if (selectionLost) {
        _d->selectedId.clear();
        emit selectionChanged(QString());
    }
    return true;
}

bool VugScene::renameItem(int rank, const QString& name)
{
    VugSceneItem* item = _item(rank, "renameItem");
    if (!item)
        return false;
    const QString why = VugSceneItem::textProblem(name, true);
    if (!why.isEmpty()) {
        warn("renameItem", QStringLiteral("the name '%1' is refused: %2").arg(name, why));
        return false;
    }
    if (item->getName() == name)
        return true;
    const QString old = item->getName();
    item->setName(name);
    emit itemRenamed(rank, old, name);
    return true;
}

bool VugScene::setItemActive(int rank, bool active)
{
    VugSceneItem* item = _item(rank, "setItemActive");
    if (!item)
        return false;
    if (item->isActive() != active) {
        item->setActive(active);
        emit itemShown(rank, active);
    }
    return true;
}

bool VugScene::setItemSource(int rank, const QString& datasetKey, const QString& subDatasetKey)
{
    VugSceneItem* item = _item(rank, "setItemSource");
    if (!item)
        return false;
    VugSceneItem changed = *item;
    changed.setDatasetKey(datasetKey);
    changed.setSubDatasetKey(subDatasetKey);
    const QString why = changed.problem();
    if (!why.isEmpty()) {
        warn("setItemSource", why);
        return false;
    }
    if (changed != *item) {
        *item = changed;
        emit itemSourceChanged(rank);
    }
    return true;
}

bool VugScene::setItemRendering(int rank, const VugERendering& rendering)
{
    VugSceneItem* item = _item(rank, "setItemRendering");
    if (!item)
        return false;
    if (item->getRendering() != rendering) {
        item->setRendering(rendering);
        emit itemSourceChanged(rank);
    }
    return true;
}

bool VugScene::setItemStyle(int rank, const QVariantMap& style)
{
    VugSceneItem* item = _item(rank, "setItemStyle");
    if (!item)
        return false;
    if (item->getStyle() != style) {
        item->setStyle(style);
        emit itemStyleChanged(rank);
    }
    return true;
}

bool VugScene::setItems(const QVector<VugSceneItem>& items)
{
    QSet<QString> ids;
    for (const VugSceneItem& item : items) {
        const QString why = item.problem();
        if (!why.isEmpty()) {
            warn("setItems", why);
            return false;
        }
        if (ids.contains(item.getId())) {
            warn("setItems", QStringLiteral("the id '%1' is used twice").arg(item.getId()));
            return false;
        }
        ids.insert(item.getId());
    }
    std::vector<std::unique_ptr<VugSceneItem>> fresh;
    fresh.reserve(size_t(items.size()));
    for (const VugSceneItem& item : items)
        fresh.push_back(std::make_unique<VugSceneItem>(item));
    _d->items = std::move(fresh);
    emit reset();
    _dropStaleSelection();
    return true;
}

void VugScene::clear()
{
    if (_d->items.empty())
        return;
    _d->items.clear();
    emit reset();
    _dropStaleSelection();
}

void VugScene::_dropStaleSelection()
{
    if (!_d->selectedId.isEmpty() && findRank(_d->selectedId) < 0) {
        _d->selectedId.clear();
        emit selectionChanged(QString());
    }
}

QString VugScene::getSelectedItemId() const { return _d->selectedId; }

bool VugScene::setSelectedItem(const QString& itemId)
{
    if (!itemId.isEmpty() && findRank(itemId) < 0) {
        warn("setSelectedItem", QStringLiteral("no item has the id '%1'").arg(itemId));
        return false;
    }
    if (_d->selectedId != itemId) {
        _d->selectedId = itemId;
        emit selectionChanged(itemId);
    }
    return true;
}

QRectF VugScene::getLastZoom() const { return _d->lastZoom; }
bool VugScene::hasLastZoom() const { return !_d->lastZoom.isNull(); }

bool VugScene::setLastZoom(const QRectF& rect)
{
    if (!isFinite(rect) || rect.isEmpty()) {
        warn("setLastZoom", QStringLiteral("the rectangle (%1, %2, %3 x %4) has no finite area")
                                .arg(rect.x())
                                .arg(rect.y())
                                .arg(rect.width())
                                .arg(rect.height()));
        return false;
    }
    _d->lastZoom = rect;
    return true;
}

void VugScene::clearLastZoom() { _d->lastZoom = QRectF(); }

QString VugScene::getCoordSystemCode() const { return _d->coordSystemCode; }

bool VugScene::setCoordSystemCode(const QString& code)
{
    const QString why = VugSceneItem::textProblem(code, false);
    if (!why.isEmpty()) {
        warn("setCoordSystemCode", QStringLiteral("the code '%1' is refused: %2").arg(code, why));
        return false;
    }
    if (_d->coordSystemCode != code) {
        _d->coordSystemCode = code;
        emit coordSystemChanged(code);
    }
    return true;
}
