#include "VwwMessagesWindow.h"

#include <VuaResourceProvider.h>

#include <QAbstractTableModel>
#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QDateTime>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMutex>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QTreeView>
#include <algorithm>
#include <deque>

namespace {

constexpr int LevelRole = Qt::UserRole + 1;

enum Column { TimeColumn, LevelColumn, TextColumn, ColumnCount };

struct Message
{
    QDateTime time;
    KbbDebug::Level level;
    QString text;
};

// The kept messages, oldest first.
class MessagesModel : public QAbstractTableModel
{
public:
    explicit MessagesModel(QObject* parent)
        : QAbstractTableModel(parent)
        , _info(VuaResourceProvider::getIcon(Vua::Resource::iconInfo()))
        , _warning(VuaResourceProvider::getIcon(Vua::Resource::iconWarning()))
        , _error(VuaResourceProvider::getIcon(Vua::Resource::iconError()))
    {
    }

    int count() const { return int(_messages.size()); }

    void append(QVector<Message> batch)
    {
        if (batch.isEmpty())
            return;
        if (batch.size() > VwwMessagesWindow::MAX_MESSAGES)
            batch.remove(0, batch.size() - VwwMessagesWindow::MAX_MESSAGES);
        const int overflow = count() + batch.size() - VwwMessagesWindow::MAX_MESSAGES;
        if (overflow > 0) {
            beginRemoveRows(QModelIndex(), 0, overflow - 1);
            _messages.erase(_messages.begin(), _messages.begin() + overflow);
            endRemoveRows();
        }
        beginInsertRows(QModelIndex(), count(), count() + batch.size() - 1);
        for (Message& message : batch)
            _messages.push_back(std::move(message));
        endInsertRows();
    }

    void clear()
    {
        if (_messages.empty())
            return;
        beginResetModel();
        _messages.clear();
        endResetModel();
    }

    const Message& at(int row) const { return _messages[size_t(row)]; }

    int rowCount(const QModelIndex& parent = QModelIndex()) const override { return parent.isValid() ? 0 : count(); }
    int columnCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : ColumnCount;
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (!index.isValid() || index.row() >= count())
            return QVariant();
        const Message& message = at(index.row());
        if (role == LevelRole)
            return int(message.level);
        switch (index.column()) {
        case TimeColumn:
            if (role == Qt::DisplayRole)
                return message.time.toString(QStringLiteral("HH:mm:ss"));
            if (role == Qt::ToolTipRole)
                return QLocale().toString(message.time, QLocale::LongFormat);
            break;
        case LevelColumn:
            if (role == Qt::DisplayRole)
                return KbbDebug::levelName(message.level);
            if (role == Qt::DecorationRole)
                return icon(message.level);
            break;
        case TextColumn:
            if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
                return message.text;
            break;
        default: break;
        }
        return QVariant();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return QVariant();
        switch (section) {
        case TimeColumn: return QCoreApplication::translate("VwwMessagesWindow", "Time");
        case LevelColumn: return QCoreApplication::translate("VwwMessagesWindow", "Level");
        case TextColumn: return QCoreApplication::translate("VwwMessagesWindow", "Message");
        default: return QVariant();
        }
    }

private:
    QIcon icon(KbbDebug::Level level) const
    {
        switch (level) {
        case KbbDebug::Level::Error: return _error;
        case KbbDebug::Level::Warning: return _warning;
        default: return _info;
        }
    }

    std::deque<Message> _messages;
    QIcon _info;
    QIcon _warning;
    QIcon _error;
};

class LevelFilter : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    KbbDebug::Level minimum() const { return _minimum; }
    void setMinimum(KbbDebug::Level level)
    {
        _minimum = level;
        invalidateFilter();
    }

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override
    {
        const QModelIndex index = sourceModel()->index(row, 0, parent);
        return sourceModel()->data(index, LevelRole).toInt() >= int(_minimum);
    }

private:
    KbbDebug::Level _minimum = KbbDebug::Level::Info;
};

// What the KbbDebug sink reaches. Sinks run on whatever thread prints and may still run
// after removeSink() returns, so the sink holds this rather than the window; the window
// unhooks itself here under the lock before it dies.
struct MessagesSinkTarget
{
    QMutex mutex;
    VwwMessagesWindow* window = nullptr;
    QVector<Message> pending;
    std::function<void(QVector<Message>)> deliver;
};

} // namespace

class VwwMessagesWindowPrivate
{
public:
    MessagesModel* model = nullptr;
    LevelFilter* filter = nullptr;
    QTreeView* view = nullptr;
    QComboBox* levels = nullptr;
    QAction* clear = nullptr;
    QAction* copy = nullptr;
    std::shared_ptr<MessagesSinkTarget> target = std::make_shared<MessagesSinkTarget>();
    int sink = 0;

    bool scrollPending = false;

    void append(QVector<Message> batch)
    {
        QScrollBar* bar = view->verticalScrollBar();
        const bool atEnd = bar->value() == bar->maximum();
        model->append(std::move(batch));
        // Scrolling lays out every row: once per burst of messages, not once per message.
        if (atEnd && !scrollPending) {
            scrollPending = true;
            QTimer::singleShot(0, view, [this]() {
                scrollPending = false;
                view->scrollToBottom();
            });
        }
        clear->setEnabled(model->count() > 0);
    }
};

VwwMessagesWindow::VwwMessagesWindow(QWidget* parent)
    : VwwAWindow(VwwEWindowType::MESSAGES, tr("Messages"), Vua::Resource::HelpId(QStringLiteral("messages")), DOCKED,
                 QSize(640, 300), Vua::Resource::iconMessages(), parent)
    , _d(std::make_unique<VwwMessagesWindowPrivate>())
{
    _d->model = new MessagesModel(this);
    _d->filter = new LevelFilter(this);
    _d->filter->setSourceModel(_d->model);

    _d->view = new QTreeView(this);
    _d->view->setObjectName(QStringLiteral("MESSAGES_VIEW"));
    _d->view->setModel(_d->filter);
    _d->view->setRootIsDecorated(false);
    _d->view->setUniformRowHeights(true);
    _d->view->setAlternatingRowColors(true);
    _d->view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    _d->view->setSelectionBehavior(QAbstractItemView::SelectRows);
    _d->view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    _d->view->setContextMenuPolicy(Qt::ActionsContextMenu);
    _d->view->header()->setStretchLastSection(true);
    const QFontMetrics metrics = _d->view->fontMetrics();
    _d->view->setColumnWidth(TimeColumn, metrics.horizontalAdvance(QStringLiteral("00:00:00")) + 24);
    _d->view->setColumnWidth(LevelColumn, metrics.horizontalAdvance(KbbDebug::levelName(KbbDebug::Level::Info)) + 48);
    _d->view->installEventFilter(this);
    setMainView(_d->view);

    _d->levels = new QComboBox(this);
    _d->levels->setObjectName(QStringLiteral("MESSAGES_LEVEL_FILTER"));
    _d->levels->setToolTip(tr("The messages shown"));
    _d->levels->addItem(tr("All"), int(KbbDebug::Level::Info));
    _d->levels->addItem(tr("Warnings and errors"), int(KbbDebug::Level::Warning));
    _d->levels->addItem(tr("Errors"), int(KbbDebug::Level::Error));
    connect(_d->levels, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        if (index >= 0)
            setMinimumLevel(KbbDebug::Level(_d->levels->itemData(index).toInt()));
    });
    addToolbarWidget(MAIN_TOOLBAR, _d->levels);

    _d->clear = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconClear()), tr("Clear"), this);
    _d->clear->setObjectName(QStringLiteral("MESSAGES_CLEAR"));
    _d->clear->setToolTip(tr("Remove every message from the list"));
    _d->clear->setEnabled(false);
    connect(_d->clear, &QAction::triggered, this, &VwwMessagesWindow::clear);
    addToolbarAction(MAIN_TOOLBAR, _d->clear);

    // The key itself is handled in eventFilter(); the action gives the context menu entry.
    _d->copy = new QAction(tr("Copy"), this);
    _d->copy->setObjectName(QStringLiteral("MESSAGES_COPY"));
    _d->copy->setShortcut(QKeySequence::Copy);
    _d->copy->setShortcutContext(Qt::WidgetShortcut);
    connect(_d->copy, &QAction::triggered, this, &VwwMessagesWindow::copySelection);
    _d->view->addAction(_d->copy);

    // A batch goes to the GUI thread in one queued call; later messages join it until it runs.
    const std::shared_ptr<MessagesSinkTarget> target = _d->target;
    target->window = this;
    target->deliver = [this](QVector<Message> batch) { _d->append(std::move(batch)); };
    _d->sink = KbbDebug::addSink([target](KbbDebug::Level level, const QString& text) {
        if (level == KbbDebug::Level::Debug)
            return;
        QMutexLocker lock(&target->mutex);
        if (!target->window)
            return;
        target->pending.append(Message{QDateTime::currentDateTime(), level, text});
        // A busy GUI thread must not let the queue outgrow what the window keeps.
        if (target->pending.size() > VwwMessagesWindow::MAX_MESSAGES)
            target->pending.removeFirst();
        if (target->pending.size() > 1)
            return;
        QMetaObject::invokeMethod(
            target->window,
            [target]() {
                QVector<Message> batch;
                {
                    QMutexLocker lock(&target->mutex);
                    batch.swap(target->pending);
                }
                target->deliver(std::move(batch));
            },
            Qt::QueuedConnection);
    });
}

VwwMessagesWindow::~VwwMessagesWindow()
{
    KbbDebug::removeSink(_d->sink);
    QMutexLocker lock(&_d->target->mutex);
    _d->target->window = nullptr;
    _d->target->pending.clear();
}

void VwwMessagesWindow::addMessage(KbbDebug::Level level, const QString& text)
{
    if (level == KbbDebug::Level::Debug)
        return;
    _d->append({Message{QDateTime::currentDateTime(), level, text}});
}

int VwwMessagesWindow::messageCount() const
{
    return _d->model->count();
}

void VwwMessagesWindow::clear()
{
    _d->model->clear();
    _d->clear->setEnabled(false);
}

void VwwMessagesWindow::setMinimumLevel(KbbDebug::Level level)
{
    // Debug messages are never kept, so asking for them means "everything".
    if (level == KbbDebug::Level::Debug)
        level = KbbDebug::Level::Info;
    if (_d->filter->minimum() != level)
        _d->filter->setMinimum(level);
    const int index = _d->levels->findData(int(level));
    if (_d->levels->currentIndex() != index)
        _d->levels->setCurrentIndex(index);
}

KbbDebug::Level VwwMessagesWindow::minimumLevel() const
{
    return _d->filter->minimum();
}

QString VwwMessagesWindow::selectedText() const
{
    QModelIndexList rows = _d->view->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    QStringList lines;
    for (const QModelIndex& row : qAsConst(rows)) {
        const Message& message = _d->model->at(_d->filter->mapToSource(row).row());
        lines << message.time.toString(QStringLiteral("HH:mm:ss")) + QLatin1Char('\t')
                     + KbbDebug::levelName(message.level) + QLatin1Char('\t') + message.text;
    }
    return lines.join(QLatin1Char('\n'));
}

void VwwMessagesWindow::copySelection() const
{
    const QString text = selectedText();
    if (!text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

bool VwwMessagesWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _d->view && (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride)) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Copy)) {
            // Claiming the override keeps an application-wide Copy shortcut from taking the key.
            event->accept();
            if (event->type() == QEvent::KeyPress)
                copySelection();
            return true;
        }
    }
    return VwwAWindow::eventFilter(watched, event);
}

QString VwwMessagesWindow::getClassID() const
{
    return QStringLiteral("Messages");
}

bool VwwMessagesWindow::askForSave()
{
    return true;
}

void VwwMessagesWindow::projectAboutToClose() {}
void VwwMessagesWindow::saveInProject() {}
void VwwMessagesWindow::projectOpened(VssProject&) {}
