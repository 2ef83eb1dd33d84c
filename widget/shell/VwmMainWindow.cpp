#include "VwmMainWindow.h"

#include <VuaResourceProvider.h>
#include <VwwAWindow.h>
#include <VwwDebugWindow.h>
#include <VwwMessagesWindow.h>
#include <VwwWindowModel.h>
#include <VwwWindowRegistry.h>

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDomDocument>
#include <QDomElement>
#include <QHash>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QScreen>
#include <QSet>
#include <vector>

namespace {

// Bumped when the way docks are named or laid out changes, so that an old layout is refused.
const int kLayoutVersion = 1;
const Qt::DockWidgetArea kDockedArea = Qt::RightDockWidgetArea;
const QSize kDefaultFloatingSize(800, 600);
const int kCascadeStep = 24;

const QString kMainWindowTag = QStringLiteral("main-window");
const QString kDockTag = QStringLiteral("dock");
const QString kGeometryTag = QStringLiteral("geometry");
const QString kStateTag = QStringLiteral("state");
const QString kVersionAttr = QStringLiteral("version");
const QString kKeyAttr = QStringLiteral("key");
const QString kAreaAttr = QStringLiteral("area");
const QString kFloatingAttr = QStringLiteral("floating");
const QString kVisibleAttr = QStringLiteral("visible");

QString areaName(Qt::DockWidgetArea area)
{
    switch (area) {
    case Qt::LeftDockWidgetArea: return QStringLiteral("left");
    case Qt::RightDockWidgetArea: return QStringLiteral("right");
    case Qt::TopDockWidgetArea: return QStringLiteral("top");
    case Qt::BottomDockWidgetArea: return QStringLiteral("bottom");
    default: return QStringLiteral("none");
    }
}

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

// Keys that stay the same from one session to the next: the class id and the rank of
// the window among the registered windows of that class.
QHash<const VwwAWindow*, QString> stableKeys()
{
    QHash<const VwwAWindow*, QString> keys;
    QHash<QString, int> ranks;
    for (const auto& e : VwwWindowRegistry::getInstance()->getWindows()) {
        if (!e.second)
            continue;
        const QString classId = e.second->getClassID();
        keys.insert(e.second.data(), QStringLiteral("%1:%2").arg(classId).arg(ranks[classId]++));
    }
    return keys;
}

bool decodeBase64(const QString& text, QByteArray& bytes)
{
    const auto result = QByteArray::fromBase64Encoding(text.trimmed().toLatin1(),
                                                       QByteArray::AbortOnBase64DecodingErrors);
    bytes = result.decoded;
    return result.decodingStatus == QByteArray::Base64DecodingStatus::Ok;
}

// A dock whose close button closes its window; the window may refuse, and the dock stays.
class VwmWindowDock : public QDockWidget
{
public:
    VwmWindowDock(VwwAWindow* window, QWidget* parent)
        : QDockWidget(parent)
        , _window(window)
    {
    }
    VwwAWindow* heldWindow() const { return _window; }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        if (_window && !_window->close()) {
            event->ignore();
            return;
        }
        QDockWidget::closeEvent(event);
    }

private:
    QPointer<VwwAWindow> _window;
};

} // namespace

class VwmMainWindowPrivate
{
public:
    struct Entry
    {
        const VwwAWindow* key = nullptr; // for look-ups while the window is being destroyed
        QPointer<VwwAWindow> window;
        QPointer<VwmWindowDock> dock;
    };

    std::vector<Entry> entries; // in the order the windows came
    QPointer<QDockWidget> tabAnchor;
    QPointer<VwwAWindow> active;
    QPointer<VwwWindowModel> model;
    QLabel* placeholder = nullptr;
    QMenu* menu = nullptr;
    QAction* nextAction = nullptr;
    QAction* previousAction = nullptr;
    QAction* closeAction = nullptr;
    QList<QAction*> windowActions;
    int floatingCount = 0;
    bool destroying = false;

    int indexOf(const VwwAWindow* window) const
    {
        for (size_t i = 0; i < entries.size(); ++i)
            if (entries[i].key == window)
                return int(i);
        return -1;
    }
};

VwmMainWindow::VwmMainWindow(QWidget* parent, Qt::WindowFlags flags)
    : VwmAMainWindow(parent, flags)
    , _d(std::make_unique<VwmMainWindowPrivate>())
{
    setObjectName(QStringLiteral("MAIN_WINDOW"));
    setDockNestingEnabled(true);
    setDockOptions(AnimatedDocks | AllowNestedDocks | AllowTabbedDocks);

    // Shown only while no window is docked: a hidden central widget lets the docks fill
    // the whole window.
    _d->placeholder = new QLabel(tr("Docked windows appear here.\nOpen a window from the Window menu."), this);
    _d->placeholder->setObjectName(QStringLiteral("WORKSPACE_PLACEHOLDER"));
    _d->placeholder->setAlignment(Qt::AlignCenter);
    _d->placeholder->setEnabled(false);
    setCentralWidget(_d->placeholder);

    using namespace Vua::Resource;
    qRegisterMetaType<VwwAWindow*>();
    _d->menu = new QMenu(tr("&Window"), this);
    _d->menu->setObjectName(QStringLiteral("WINDOW_MENU"));

    _d->nextAction = _d->menu->addAction(tr("&Next Window"), this, [this] { _activateNext(1); });
    _d->nextAction->setObjectName(QStringLiteral("ACTION_NEXT_WINDOW"));
    _d->nextAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F6));
    _d->previousAction = _d->menu->addAction(tr("&Previous Window"), this, [this] { _activateNext(-1); });
    _d->previousAction->setObjectName(QStringLiteral("ACTION_PREVIOUS_WINDOW"));
    _d->previousAction->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F6));
    _d->closeAction = _d->menu->addAction(VuaResourceProvider::getIcon(iconClose()), tr("&Close Window"), this,
                                          [this] { _closeActive(); });
    _d->closeAction->setObjectName(QStringLiteral("ACTION_CLOSE_WINDOW"));
    _d->closeAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_W));
    // Added here and to every dock, so that their keys work in floating docks too.
    addActions({_d->nextAction, _d->previousAction, _d->closeAction});

    _d->menu->addSeparator();
    QAction* messages = _d->menu->addAction(VuaResourceProvider::getIcon(iconMessages()), tr("&Messages"), this, [this] {
        setActiveWindow(VwwWindowRegistry::getMessagesWindow(true));
    });
    messages->setObjectName(QStringLiteral("ACTION_MESSAGES_WINDOW"));
    QAction* debug = _d->menu->addAction(VuaResourceProvider::getIcon(iconDebug()), tr("&Debug"), this,
                                         [this] { setActiveWindow(VwwWindowRegistry::getDebugWindow()); });
    debug->setObjectName(QStringLiteral("ACTION_DEBUG_WINDOW"));
    _d->menu->addSeparator();
    connect(_d->menu, &QMenu::aboutToShow, this, &VwmMainWindow::_connectModel);

    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (QWidget* w = now; w; w = w->parentWidget()) {
            auto* window = qobject_cast<VwwAWindow*>(w);
            if (window && _d->indexOf(window) >= 0) {
                _setActive(window);
                return;
            }
        }
    });
    // Choosing a tab makes its window the active one, as the user expects Ctrl+W to close it.
    connect(this, &QMainWindow::tabifiedDockWidgetActivated, this, [this](QDockWidget* dock) {
        if (auto* windowDock = dynamic_cast<VwmWindowDock*>(dock))
            if (windowDock->heldWindow())
                _setActive(windowDock->heldWindow());
    });

    _connectModel();
    _syncWindowActions();
}

VwmMainWindow::~VwmMainWindow()
{
    _d->destroying = true;
    if (VwwWindowRegistry::getMainWindow() == this)
        VwwWindowRegistry::setMainWindow(nullptr);
    disconnect(qApp, nullptr, this, nullptr);
    if (_d->model)
        disconnect(_d->model, nullptr, this, nullptr);
    // Each window unregisters itself; with the registry detached it no longer calls back here.
    QList<QPointer<VwwAWindow>> windows;
    QList<QPointer<VwmWindowDock>> docks;
    for (const auto& entry : _d->entries) {
        windows.append(entry.window);
        docks.append(entry.dock);
    }
    _d->entries.clear();
    for (const QPointer<VwwAWindow>& window : qAsConst(windows))
        delete window.data();
    // Now, while the private part lives: QWidget's destructor would hide them first, and
    // their visibility signals would reach this half-destroyed window.
    for (const QPointer<VwmWindowDock>& dock : qAsConst(docks))
        delete dock.data();
}

VwwAWindow* VwmMainWindow::activeWindow() const
{
    return _d->active;
}

QMenu* VwmMainWindow::windowMenu() const
{
    return _d->menu;
}

void VwmMainWindow::addWindow(VwwAWindow* window, bool docked)
{
    if (!window) {
        qWarning("VwmMainWindow::addWindow: no window given");
        return;
    }
    if (_d->indexOf(window) >= 0)
        return;

    // Called from the window's constructor: only what VwwAWindow itself gives is used here.
    auto* dock = new VwmWindowDock(window, this);
    dock->setObjectName(QStringLiteral("DOCK_") + window->objectName());
    dock->setWindowTitle(window->getTitle(true));
    dock->setWindowIcon(VuaResourceProvider::getIcon(window->getIconId()));
    dock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetMovable |
                      QDockWidget::DockWidgetFloatable);
    dock->addActions({_d->nextAction, _d->previousAction, _d->closeAction});
    const QSize size = window->sizeHint().isValid() ? window->sizeHint() : kDefaultFloatingSize;
    dock->setWidget(window);

    VwmMainWindowPrivate::Entry entry;
    entry.key = window;
    entry.window = window;
    entry.dock = dock;
    _d->entries.push_back(entry);

    connect(window, &VwwAWindow::windowTitleUpdated, dock,
            [dock, window] { dock->setWindowTitle(window->getTitle(true)); });
    // A window that dies without being removed (another main window took over the registry)
    // must not leave an empty dock behind. The window is no widget any more by then.
    connect(window, &QObject::destroyed, this, [this, window] {
        const int index = _d->indexOf(window);
        if (_d->destroying || index < 0)
            return;
        QPointer<VwmWindowDock> dock = _d->entries[size_t(index)].dock;
        _d->entries.erase(_d->entries.begin() + index);
        _discardDock(dock);
        _updatePlaceholder();
        _syncWindowActions();
    });
    connect(dock, &QDockWidget::topLevelChanged, this, &VwmMainWindow::_updatePlaceholder);
    connect(dock, &QDockWidget::visibilityChanged, this, &VwmMainWindow::_updatePlaceholder);

    if (docked) {
        QDockWidget* anchor = _tabAnchor();
        addDockWidget(kDockedArea, dock);
        if (anchor)
            tabifyDockWidget(anchor, dock);
        else
            _d->tabAnchor = dock;
        dock->show();
        dock->raise();
    } else {
        addDockWidget(kDockedArea, dock);
        dock->setFloating(true);
        // The dock's own hint is the window's plus the title bar, so the window gets its size.
        _placeFloating(dock, dock->sizeHint().isValid() ? dock->sizeHint() : size);
        dock->show();
    }
    _updatePlaceholder();
    _syncWindowActions();
}

void VwmMainWindow::removeWindow(VwwAWindow* window)
{
    const int index = _d->indexOf(window);
    if (index < 0)
        return;
    QPointer<VwmWindowDock> dock = _d->entries[size_t(index)].dock;
    _d->entries.erase(_d->entries.begin() + index);
    // Out of the dock first, so that deleting the dock does not delete the window.
    if (window) {
        disconnect(window, nullptr, this, nullptr);
        window->setParent(nullptr);
    }
    _discardDock(dock);
    if (_d->active == window)
        _setActive(nullptr);
    _updatePlaceholder();
    _syncWindowActions();
}

void VwmMainWindow::setActiveWindow(VwwAWindow* window)
{
    if (!window)
        return;
    QDockWidget* dock = _dockOf(window);
    if (!dock) {
        window->show();
        window->raise();
        window->activateWindow();
        window->setFocus(Qt::OtherFocusReason);
        return;
    }
    dock->show();
    dock->raise();
    window->show();
    QWidget* top = dock->isFloating() ? static_cast<QWidget*>(dock) : static_cast<QWidget*>(this);
    top->raise();
    top->activateWindow();
    QWidget* target = window->focusWidget();
    if (!target || !window->isAncestorOf(target))
        target = window;
    target->setFocus(Qt::OtherFocusReason);
    _setActive(window);
}

void VwmMainWindow::clearHiddenWindows()
{
    const std::vector<VwmMainWindowPrivate::Entry> entries = _d->entries;
    for (const auto& entry : entries) {
        if (!entry.window) {
            const int index = _d->indexOf(entry.key);
            if (index >= 0)
                _d->entries.erase(_d->entries.begin() + index);
            _discardDock(entry.dock);
            continue;
        }
        if (entry.dock && entry.dock->isHidden() && entry.window->isRemovable()) {
            QPointer<VwwAWindow> window = entry.window;
            // close() asks the window; its deletion is only scheduled, so finish it now.
            if (window->close())
                delete window.data();
        }
    }
    _updatePlaceholder();
    _syncWindowActions();
}

void VwmMainWindow::saveWorkspaceToXml(QDomElement& workspace) const
{
    if (workspace.isNull()) {
        qWarning("VwmMainWindow::saveWorkspaceToXml: the workspace element is null");
        return;
    }
    QDomDocument document = workspace.ownerDocument();
    for (QDomElement old = workspace.firstChildElement(); !old.isNull();) {
        const QDomElement next = old.nextSiblingElement();
        if (old.tagName() == kMainWindowTag || old.tagName() == kDockTag)
            workspace.removeChild(old);
        old = next;
    }

    // saveState() names docks by object name: give them their stable keys first.
    const QHash<const VwwAWindow*, QString> keys = stableKeys();
    for (const auto& entry : _d->entries)
        if (entry.dock && keys.contains(entry.key))
            entry.dock->setObjectName(keys.value(entry.key));

    QDomElement main = document.createElement(kMainWindowTag);
    main.setAttribute(kVersionAttr, kLayoutVersion);
    QDomElement geometry = document.createElement(kGeometryTag);
    geometry.appendChild(document.createTextNode(QString::fromLatin1(saveGeometry().toBase64())));
    main.appendChild(geometry);
    QDomElement state = document.createElement(kStateTag);
    state.appendChild(document.createTextNode(QString::fromLatin1(saveState(kLayoutVersion).toBase64())));
    main.appendChild(state);
    workspace.appendChild(main);

    // A readable list of what the state holds; restoring checks it against the open windows.
    for (const auto& entry : _d->entries) {
        if (!entry.dock || !entry.window)
            continue;
        QDomElement dock = document.createElement(kDockTag);
        dock.setAttribute(kKeyAttr, entry.dock->objectName());
        dock.setAttribute(kAreaAttr, areaName(dockWidgetArea(entry.dock)));
        dock.setAttribute(kFloatingAttr, boolText(entry.dock->isFloating()));
        dock.setAttribute(kVisibleAttr, boolText(!entry.dock->isHidden()));
        workspace.appendChild(dock);
    }
}

void VwmMainWindow::restoreWorkspaceFromXml(const QDomElement& workspace)
{
    if (workspace.isNull())
        return;
    auto refuse = [](const QString& why) {
        qWarning().noquote() << QStringLiteral("VwmMainWindow::restoreWorkspaceFromXml: %1; the current layout is kept")
                                    .arg(why);
    };

    const QDomElement main = workspace.firstChildElement(kMainWindowTag);
    if (main.isNull())
        return refuse(QStringLiteral("the workspace holds no <%1> element").arg(kMainWindowTag));
    bool ok = false;
    const int version = main.attribute(kVersionAttr).toInt(&ok);
    if (!ok || version != kLayoutVersion)
        return refuse(QStringLiteral("the layout version is '%1', not %2").arg(main.attribute(kVersionAttr)).arg(kLayoutVersion));
    QByteArray geometry;
    QByteArray state;
    if (!decodeBase64(main.firstChildElement(kGeometryTag).text(), geometry))
        return refuse(QStringLiteral("the window geometry is not base64 text"));
    if (!decodeBase64(main.firstChildElement(kStateTag).text(), state) || state.isEmpty())
        return refuse(QStringLiteral("the dock state is missing or not base64 text"));

    const QHash<const VwwAWindow*, QString> keys = stableKeys();
    QSet<QString> openKeys;
    for (const auto& entry : _d->entries) {
        if (entry.dock && keys.contains(entry.key)) {
            entry.dock->setObjectName(keys.value(entry.key));
            openKeys.insert(keys.value(entry.key));
        }
    }
    QStringList savedKeys;
    for (QDomElement e = workspace.firstChildElement(kDockTag); !e.isNull(); e = e.nextSiblingElement(kDockTag))
        savedKeys.append(e.attribute(kKeyAttr));
    bool anyKnown = savedKeys.isEmpty() || openKeys.isEmpty();
    for (const QString& key : qAsConst(savedKeys))
        anyKnown = anyKnown || openKeys.contains(key);
    if (!anyKnown)
        return refuse(QStringLiteral("none of its windows (%1) is open").arg(savedKeys.join(QStringLiteral(", "))));

    const QByteArray previousGeometry = saveGeometry();
    if (!geometry.isEmpty() && !restoreGeometry(geometry))
        return refuse(QStringLiteral("the window geometry cannot be read"));
    if (!restoreState(state, kLayoutVersion)) {
        restoreGeometry(previousGeometry);
        return refuse(QStringLiteral("the dock state cannot be read"));
    }
    _d->tabAnchor = nullptr;
    _updatePlaceholder();
    _syncWindowActions();
}

void VwmMainWindow::_setActive(VwwAWindow* window)
{
    if (_d->active == window)
        return;
    _d->active = window;
    _syncWindowActions();
    if (!_d->destroying)
        Q_EMIT activeWindowChanged(window);
}

void VwmMainWindow::_activateNext(int step)
{
    QList<VwwAWindow*> windows;
    for (const auto& entry : _d->entries)
        if (entry.window && entry.dock && !entry.dock->isHidden())
            windows.append(entry.window);
    if (windows.isEmpty())
        return;
    const int current = windows.indexOf(_d->active);
    int next;
    if (current < 0)
        next = step > 0 ? 0 : windows.size() - 1;
    else
        next = (current + step + windows.size()) % windows.size();
    setActiveWindow(windows.at(next));
}

void VwmMainWindow::_closeActive()
{
    if (QDockWidget* dock = _dockOf(_d->active))
        dock->close();
    else if (_d->active)
        _d->active->close();
}

void VwmMainWindow::_connectModel()
{
    if (_d->model || _d->destroying)
        return;
    _d->model = VwwWindowRegistry::getWindowModel();
    if (!_d->model)
        return;
    VwwWindowModel* model = _d->model;
    connect(model, &QAbstractItemModel::rowsInserted, this, &VwmMainWindow::_rebuildWindowList);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &VwmMainWindow::_rebuildWindowList);
    connect(model, &QAbstractItemModel::rowsMoved, this, &VwmMainWindow::_rebuildWindowList);
    connect(model, &QAbstractItemModel::dataChanged, this, &VwmMainWindow::_rebuildWindowList);
    connect(model, &QAbstractItemModel::modelReset, this, &VwmMainWindow::_rebuildWindowList);
    connect(model, &QAbstractItemModel::layoutChanged, this, &VwmMainWindow::_rebuildWindowList);
    // The registry's clear() deletes its model and reset() makes a new one: the next one is
    // asked for once this one is gone (not while it is being deleted), and when the menu opens.
    connect(model, &QObject::destroyed, this, [this] {
        _rebuildWindowList();
        QMetaObject::invokeMethod(this, &VwmMainWindow::_connectModel, Qt::QueuedConnection);
    });
    _rebuildWindowList();
}

void VwmMainWindow::_rebuildWindowList()
{
    for (QAction* action : qAsConst(_d->windowActions)) {
        _d->menu->removeAction(action);
        // The action may be the one being triggered.
        action->deleteLater();
    }
    _d->windowActions.clear();
    if (!_d->model)
        return;
    for (int row = 0; row < _d->model->rowCount(); ++row) {
        const QModelIndex index = _d->model->index(row, 0);
        const int id = index.data(VwwWindowModel::WindowIdRole).toInt();
        QString text = index.data(Qt::DisplayRole).toString();
        text.replace(QLatin1Char('&'), QStringLiteral("&&"));
        auto* action = new QAction(qvariant_cast<QIcon>(index.data(Qt::DecorationRole)), text, _d->menu);
        action->setCheckable(true);
        action->setData(id);
        connect(action, &QAction::triggered, this, [this, id] {
            if (VwwAWindow* window = VwwWindowRegistry::getWindow(id))
                setActiveWindow(window);
            _syncWindowActions();
        });
        _d->menu->addAction(action);
        _d->windowActions.append(action);
    }
    _syncWindowActions();
}

void VwmMainWindow::_syncWindowActions()
{
    const int activeId = _d->active ? _d->active->getWindowID() : -1;
    for (QAction* action : qAsConst(_d->windowActions))
        action->setChecked(action->data().toInt() == activeId);
    bool anyWindow = false;
    for (const auto& entry : _d->entries)
        anyWindow = anyWindow || entry.window;
    _d->nextAction->setEnabled(anyWindow);
    _d->previousAction->setEnabled(anyWindow);
    _d->closeAction->setEnabled(_d->active != nullptr);
}

void VwmMainWindow::_updatePlaceholder()
{
    if (_d->destroying)
        return;
    bool anyDocked = false;
    for (const auto& entry : _d->entries)
        anyDocked = anyDocked || (entry.dock && !entry.dock->isFloating() && !entry.dock->isHidden());
    _d->placeholder->setVisible(!anyDocked);
}

void VwmMainWindow::_placeFloating(QDockWidget* dock, const QSize& size)
{
    QRect rect(QPoint(), size);
    rect.moveCenter(geometry().center());
    // Cascade, so that floating windows made one after another do not hide each other.
    const int shift = (_d->floatingCount++ % 8) * kCascadeStep;
    rect.translate(shift, shift);
    if (const QScreen* screen = this->screen()) {
        const QRect available = screen->availableGeometry();
        rect.setSize(rect.size().boundedTo(available.size()));
        if (rect.right() > available.right())
            rect.moveRight(available.right());
        if (rect.bottom() > available.bottom())
            rect.moveBottom(available.bottom());
        if (rect.left() < available.left())
            rect.moveLeft(available.left());
        if (rect.top() < available.top())
            rect.moveTop(available.top());
    }
    dock->setGeometry(rect);
}

QDockWidget* VwmMainWindow::_tabAnchor() const
{
    auto usable = [this](QDockWidget* dock) {
        return dock && !dock->isFloating() && !dock->isHidden() && dockWidgetArea(dock) == kDockedArea;
    };
    if (usable(_d->tabAnchor))
        return _d->tabAnchor;
    for (const auto& entry : _d->entries) {
        if (usable(entry.dock)) {
            _d->tabAnchor = entry.dock.data();
            return entry.dock;
        }
    }
    return nullptr;
}

void VwmMainWindow::_discardDock(QDockWidget* dock)
{
    if (!dock)
        return;
    disconnect(dock, nullptr, this, nullptr);
    removeDockWidget(dock);
    // Deleted later, as it may be in the middle of its own event; until then it must not be
    // found as a child by restoreState() (it still bears a key) nor listed in the dock menu.
    dock->setObjectName(QString());
    dock->setParent(nullptr);
    dock->deleteLater();
}

QDockWidget* VwmMainWindow::_dockOf(const VwwAWindow* window) const
{
    const int index = window ? _d->indexOf(window) : -1;
    return index < 0 ? nullptr : _d->entries[size_t(index)].dock.data();
}
