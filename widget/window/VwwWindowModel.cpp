#include "VwwWindowModel.h"

#include "VwwAWindow.h"

#include <VuaResourceProvider.h>

#include <QPointer>
#include <QVector>

namespace {

struct Entry
{
    QPointer<VwwAWindow> window;
    // The same object, kept as a bare address: by the time destroyed() arrives the guarded
    // pointer already reads null, and the address is all that identifies the row.
    const QObject* object = nullptr;
    const VwwAWindow* address = nullptr;
};

} // namespace

class VwwWindowModelPrivate
{
public:
    QVector<Entry> entries;

    int rowOfObject(const QObject* object) const
    {
        for (int row = 0; row < entries.size(); ++row)
            if (entries[row].object == object)
                return row;
        return -1;
    }
};

VwwWindowModel::VwwWindowModel(QObject* parent)
    : QAbstractListModel(parent)
    , _d(std::make_unique<VwwWindowModelPrivate>())
{
}

VwwWindowModel::~VwwWindowModel() = default;

void VwwWindowModel::addWindow(VwwAWindow* window)
{
    if (!window) {
        qWarning("VwwWindowModel::addWindow: null window");
        return;
    }
    if (rowOf(window) >= 0)
        return;

    const int row = _d->entries.size();
    beginInsertRows(QModelIndex(), row, row);
    _d->entries.append(Entry{window, window, window});
    endInsertRows();

    const QObject* object = window;
    connect(window, &VwwAWindow::windowTitleUpdated, this, [this, object]() {
        const int r = _d->rowOfObject(object);
        if (r < 0)
            return;
        const QModelIndex changed = index(r);
        Q_EMIT dataChanged(changed, changed, {Qt::DisplayRole, Qt::ToolTipRole});
    });
    // A window deleted without being removed first must not leave a dead row behind.
    connect(window, &QObject::destroyed, this, [this](QObject* dead) {
        const int r = _d->rowOfObject(dead);
        if (r < 0)
            return;
        beginRemoveRows(QModelIndex(), r, r);
        _d->entries.remove(r);
        endRemoveRows();
    });
}

void VwwWindowModel::removeWindow(VwwAWindow* window)
{
    const int row = rowOf(window);
    if (row < 0)
        return;
    disconnect(window, nullptr, this, nullptr);
    beginRemoveRows(QModelIndex(), row, row);
    _d->entries.remove(row);
    endRemoveRows();
}

VwwAWindow* VwwWindowModel::windowAt(int row) const
{
    if (row < 0 || row >= _d->entries.size())
        return nullptr;
    return _d->entries[row].window.data();
}

int VwwWindowModel::rowOf(const VwwAWindow* window) const
{
    if (!window)
        return -1;
    for (int row = 0; row < _d->entries.size(); ++row)
        if (_d->entries[row].address == window)
            return row;
    return -1;
}

int VwwWindowModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : _d->entries.size();
}

QVariant VwwWindowModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.parent().isValid() || index.column() != 0)
        return QVariant();
    const VwwAWindow* window = windowAt(index.row());
    if (!window)
        return QVariant();

    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return window->getTitle(true);
    case Qt::DecorationRole:
        return VuaResourceProvider::getIcon(window->getIconId());
    case WindowIdRole:
        return window->getWindowID();
    case WindowTypeRole:
        return QString::fromLatin1(window->whichWindowType().getKey());
    case WindowTypeLabelRole:
        return window->whichWindowType().getLabel();
    default:
        return QVariant();
    }
}

QHash<int, QByteArray> VwwWindowModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(WindowIdRole, QByteArrayLiteral("windowId"));
    names.insert(WindowTypeRole, QByteArrayLiteral("windowType"));
    names.insert(WindowTypeLabelRole, QByteArrayLiteral("windowTypeLabel"));
    return names;
}
