#include "VwwAWindow.h"

#include "VwwWindowRegistry.h"

#include <KbcAProgress.h>
#include <VuaResourceProvider.h>
#include <VupPreferenceRegistry.h>

#include <QAction>
#include <QCloseEvent>
#include <QDebug>
#include <QHBoxLayout>
#include <QLabel>
#include <QMap>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

int VwwAWindow::_count = 0;

class VwwAWindowPrivate
{
public:
    QString title;
    int id = 0;
    VwwEWindowType type;
    QSize size;
    Vua::Resource::HelpId helpId;
    Vua::Resource::IconId iconId;

    QWidget* topArea = nullptr;    // the first toolbar row
    QWidget* secondArea = nullptr; // the second toolbar row
    QWidget* mainView = nullptr;
    QStatusBar* statusBar = nullptr;
    QMap<VwwAWindow::ToolBarIdD, QPointer<QToolBar>> toolbars;
    QVBoxLayout* layout = nullptr;

    QLabel* message = nullptr;
    std::array<QLabel*, 4> indicators{};
    QPushButton* apply = nullptr;
    QToolButton* autoApply = nullptr;
    QProgressBar* progress = nullptr;
    QAction* helpAction = nullptr;
    int toolbarIconSize = 0;

    QString contentName;
    bool contentModified = false;
    bool removable = false;
    bool docked = false;
};

VwwAWindow::VwwAWindow(const VwwEWindowType& type, const QString& title, const Vua::Resource::HelpId& helpId,
                       const QFlags<WindowFlag>& flags, const QSize& size, const Vua::Resource::IconId& iconId,
                       QWidget* parent)
    : QFrame(parent, Qt::WindowFlags())
    , _d(std::make_unique<VwwAWindowPrivate>())
{
    _d->title = title;
    _d->id = ++_count;
    _d->type = type;
    _d->size = size.isValid() ? size : QSize(800, 600);
    _d->helpId = helpId;
    _d->iconId = iconId;
    _d->removable = flags.testFlag(REMOVABLE);
    _d->docked = flags.testFlag(DOCKED);

    setObjectName(QStringLiteral("WINDOW_%1_%2").arg(QString::fromLatin1(type.getKey()).toUpper()).arg(_d->id));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(_getUpdatedTitle(title));
    setWindowIcon(VuaResourceProvider::getIcon(iconId));

    _d->helpAction = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconHelp()), tr("Help"), this);
    _d->helpAction->setShortcut(QKeySequence::HelpContents);
    _d->helpAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    _d->helpAction->setEnabled(!helpId.isNull());
    connect(_d->helpAction, &QAction::triggered, this, &VwwAWindow::help);
    addAction(_d->helpAction);

    auto makeRow = [this]() {
        auto* row = new QWidget(this);
        auto* rowLayout = new QHBoxLayout(row);
        rowLayout->setContentsMargins(0, 0, 0, 0);
        rowLayout->setSpacing(0);
        rowLayout->addStretch(1);
        row->hide();
        return row;
    };
    _d->topArea = makeRow();
    _d->topArea->setObjectName(QStringLiteral("TOOLBAR_AREA"));
    _d->secondArea = makeRow();
    _d->secondArea->setObjectName(QStringLiteral("TOOLBAR_AREA_2"));

    _d->statusBar = new QStatusBar(this);
    _d->statusBar->setObjectName(QStringLiteral("STATUS_BAR"));
    _d->statusBar->setSizeGripEnabled(false);
    _d->message = new QLabel(_d->statusBar);
    _d->message->setObjectName(QStringLiteral("STATUS_MESSAGE"));
    _d->message->setTextInteractionFlags(Qt::TextBrowserInteraction);
    _d->message->setOpenExternalLinks(true);
    _d->statusBar->addWidget(_d->message, 1);
    for (size_t i = 0; i < _d->indicators.size(); ++i) {
        auto* label = new QLabel(_d->statusBar);
        label->setObjectName(QStringLiteral("STATUS_INDICATOR_%1").arg(i + 1));
        _d->statusBar->addPermanentWidget(label);
        label->hide();
        _d->indicators[i] = label;
    }
    _d->progress = new QProgressBar(_d->statusBar);
    _d->progress->setObjectName(QStringLiteral("STATUS_PROGRESS"));
    _d->progress->setMaximumWidth(160);
    _d->statusBar->addPermanentWidget(_d->progress);
    _d->progress->hide();
    _d->autoApply = new QToolButton(_d->statusBar);
    _d->autoApply->setObjectName(QStringLiteral("AUTO_APPLY_BUTTON"));
    _d->autoApply->setText(tr("Auto"));
    _d->autoApply->setToolTip(tr("Apply every change at once"));
    _d->autoApply->setCheckable(true);
    _d->statusBar->addPermanentWidget(_d->autoApply);
    _d->autoApply->hide();
    _d->apply = new QPushButton(VuaResourceProvider::getIcon(Vua::Resource::iconApply()), tr("&Apply"), _d->statusBar);
    _d->apply->setObjectName(QStringLiteral("APPLY_BUTTON"));
    _d->statusBar->addPermanentWidget(_d->apply);
    _d->apply->hide();
    connect(_d->apply, &QPushButton::clicked, this, &VwwAWindow::applyRequested);
    connect(_d->autoApply, &QToolButton::toggled, this, [this](bool on) {
        _d->apply->setEnabled(!on);
        Q_EMIT autoApplyToggled(on);
    });

    _d->layout = new QVBoxLayout(this);
    _d->layout->setContentsMargins(0, 0, 0, 0);
    _d->layout->setSpacing(0);
    _d->layout->addWidget(_d->topArea);
    _d->layout->addWidget(_d->secondArea);
    _d->layout->addWidget(_d->statusBar);

    VwwWindowRegistry::add(this, flags.testFlag(DOCKED));
    connect(VupPreferenceRegistry::getInstance(), &VupPreferenceRegistry::prefChanged, this,
            &VwwAWindow::updatePreference);
}

VwwAWindow::~VwwAWindow()
{
    VwwWindowRegistry::remove(_d->id);
}

int VwwAWindow::getWindowID() const { return _d->id; }
const VwwEWindowType& VwwAWindow::whichWindowType() const { return _d->type; }
const Vua::Resource::IconId& VwwAWindow::getIconId() const { return _d->iconId; }
const Vua::Resource::HelpId& VwwAWindow::getHelpId() const { return _d->helpId; }
bool VwwAWindow::isRemovable() const { return _d->removable; }
bool VwwAWindow::isDockedByDefault() const { return _d->docked; }
QSize VwwAWindow::sizeHint() const { return _d->size; }
QAction* VwwAWindow::getHelpAction() const { return _d->helpAction; }
QString VwwAWindow::getContentName() const { return _d->contentName; }
bool VwwAWindow::isContentModified() const { return _d->contentModified; }

QString VwwAWindow::getTitle(bool decorated) const
{
    return decorated ? _getUpdatedTitle(_d->title) : _d->title;
}

QString VwwAWindow::_getUpdatedTitle(const QString& title) const
{
    QString text = title;
    if (!_d->contentName.isEmpty())
        text = tr("%1 - %2").arg(title, _d->contentName);
    if (_d->contentModified)
        text += QLatin1Char('*');
    return text;
}

void VwwAWindow::_updateTitle()
{
    setWindowTitle(_getUpdatedTitle(_d->title));
    Q_EMIT windowTitleUpdated();
}

void VwwAWindow::setContentName(const QString& name)
{
    if (_d->contentName == name)
        return;
    _d->contentName = name;
    _updateTitle();
}

void VwwAWindow::setContentModified(bool modified)
{
    if (_d->contentModified == modified)
        return;
    _d->contentModified = modified;
    _updateTitle();
}

void VwwAWindow::setHelpId(const Vua::Resource::HelpId& helpId)
{
    _d->helpId = helpId;
    _d->helpAction->setEnabled(!helpId.isNull());
}

void VwwAWindow::help()
{
    if (!_d->helpId.isNull())
        VuaResourceProvider::showHelp(_d->helpId);
}

const Vua::Resource::HelpId& VwwAWindow::getLayerPropertiesHelpId() const
{
    static const Vua::Resource::HelpId id(QStringLiteral("layer-properties"));
    return id;
}

void VwwAWindow::setMainView(QWidget* view)
{
    if (_d->mainView == view)
        return;
    if (_d->mainView) {
        _d->layout->removeWidget(_d->mainView);
        _d->mainView->deleteLater();
    }
    _d->mainView = view;
    if (view)
        _d->layout->insertWidget(2, view, 1);
}

void VwwAWindow::setMainView(QLayout* layout)
{
    auto* view = new QWidget(this);
    view->setLayout(layout);
    setMainView(view);
}

QWidget* VwwAWindow::getMainView() const { return _d->mainView; }

QToolBar* VwwAWindow::_toolbar(ToolBarIdD id)
{
    if (QToolBar* bar = _d->toolbars.value(id))
        return bar;
    QWidget* row = id == SECOND_ROW_TOOLBAR ? _d->secondArea : _d->topArea;
    auto* bar = new QToolBar(row);
    bar->setObjectName(QStringLiteral("TOOLBAR_%1").arg(int(id)));
    if (_d->toolbarIconSize > 0)
        bar->setIconSize(QSize(_d->toolbarIconSize, _d->toolbarIconSize));
    auto* rowLayout = static_cast<QHBoxLayout*>(row->layout());
    // Toolbars sit in id order, left of the row's closing stretch.
    int pos = 0;
    for (auto it = _d->toolbars.cbegin(); it != _d->toolbars.cend(); ++it)
        if (it.key() < id && it.value() && it.value()->parentWidget() == row)
            ++pos;
    rowLayout->insertWidget(pos, bar);
    _d->toolbars.insert(id, bar);
    row->show();
    return bar;
}

QAction* VwwAWindow::addToolbarAction(ToolBarIdD id, QAction* action)
{
    _toolbar(id)->addAction(action);
    return action;
}

void VwwAWindow::addToolbarActions(ToolBarIdD id, const QList<QAction*>& actions)
{
    _toolbar(id)->addActions(actions);
}

QToolButton* VwwAWindow::addToolbarActionMenu(ToolBarIdD id, QAction* action, QMenu* menu)
{
    auto* button = new QToolButton;
    button->setDefaultAction(action);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::MenuButtonPopup);
    _toolbar(id)->addWidget(button);
    return button;
}

QAction* VwwAWindow::addToolbarSeparator(ToolBarIdD id)
{
    return _toolbar(id)->addSeparator();
}

QAction* VwwAWindow::addToolbarSpacing(ToolBarIdD id, int pixels)
{
    auto* spacer = new QWidget;
    spacer->setFixedWidth(qMax(0, pixels));
    return _toolbar(id)->addWidget(spacer);
}

QAction* VwwAWindow::addToolbarStretch(ToolBarIdD id)
{
    auto* spacer = new QWidget;
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return _toolbar(id)->addWidget(spacer);
}

QAction* VwwAWindow::addToolbarWidget(ToolBarIdD id, QWidget* widget)
{
    return _toolbar(id)->addWidget(widget);
}

QList<QAction*> VwwAWindow::getToolbarActions(ToolBarIdD id) const
{
    const QToolBar* bar = _d->toolbars.value(id);
    return bar ? bar->actions() : QList<QAction*>();
}

QWidget* VwwAWindow::getWidgetFromAction(ToolBarIdD id, QAction* action) const
{
    const QToolBar* bar = _d->toolbars.value(id);
    return bar ? bar->widgetForAction(action) : nullptr;
}

void VwwAWindow::hideToolbar(ToolBarIdD id, bool hide)
{
    if (QToolBar* bar = _d->toolbars.value(id))
        bar->setVisible(!hide);
}

QToolBar* VwwAWindow::takeToolbar(ToolBarIdD id)
{
    QToolBar* bar = _d->toolbars.take(id);
    if (bar) {
        bar->parentWidget()->layout()->removeWidget(bar);
        bar->setParent(nullptr);
    }
    return bar;
}

void VwwAWindow::setToolBarIconSize(int size)
{
    _d->toolbarIconSize = size;
    for (QToolBar* bar : qAsConst(_d->toolbars))
        if (bar)
            bar->setIconSize(QSize(size, size));
}

void VwwAWindow::enableStatusBar(bool enable)
{
    _d->statusBar->setVisible(enable);
}

void VwwAWindow::enableApply(bool enable)
{
    _d->apply->setVisible(enable);
}

void VwwAWindow::enableAutoApply(bool enable)
{
    _d->autoApply->setVisible(enable);
}

QPushButton* VwwAWindow::getApplyButton() const { return _d->apply; }
QToolButton* VwwAWindow::getAutoApplyButton() const { return _d->autoApply; }

void VwwAWindow::showStatusMessage(const QString& text, Qt::TextFormat format)
{
    _d->message->setTextFormat(format);
    _d->message->setText(text);
}

void VwwAWindow::showStatusIndicator(const QString& text, int id)
{
    if (id < 0 || id >= int(_d->indicators.size())) {
        qWarning("VwwAWindow::showStatusIndicator: bad indicator ID: %d", id);
        return;
    }
    QLabel* label = _d->indicators[size_t(id)];
    label->setText(text);
    label->setVisible(!text.isEmpty());
}

void VwwAWindow::showStatusIndicator1(const QString& text) { showStatusIndicator(text, 0); }
void VwwAWindow::showStatusIndicator2(const QString& text) { showStatusIndicator(text, 1); }
void VwwAWindow::showStatusIndicator3(const QString& text) { showStatusIndicator(text, 2); }
void VwwAWindow::showStatusIndicator4(const QString& text) { showStatusIndicator(text, 3); }

void VwwAWindow::updatePreference(const VupPreferenceModif& modif)
{
    if (modif.concerns(VupPreferenceModif::styleGroup()))
        stylePreferenceChanged();
    else if (modif.concerns(VupPreferenceModif::unitsGroup()))
        unitPreferencesChanged();
}

void VwwAWindow::postGui() {}
bool VwwAWindow::askForClose() { return true; }
bool VwwAWindow::isReadyToClose() { return true; }
VwwAWindow::Fields VwwAWindow::serialize() const { return Fields(); }
bool VwwAWindow::unserialize(const Fields&) { return true; }
void VwwAWindow::lockModifyUpdate() {}
void VwwAWindow::unlockModifyUpdate() {}
void VwwAWindow::stylePreferenceChanged() {}
void VwwAWindow::unitPreferencesChanged() {}

void VwwAWindow::calculatorHasStarted(KbcAProgress* progress)
{
    _d->progress->setFormat(progress ? progress->getTitle() + QStringLiteral(" %p%") : QStringLiteral("%p%"));
    const double fraction = progress ? progress->getFraction() : -1.0;
    if (fraction < 0) {
        _d->progress->setRange(0, 0);
    } else {
        _d->progress->setRange(0, 100);
        _d->progress->setValue(int(fraction * 100));
    }
    _d->progress->show();
}

void VwwAWindow::calculatorHasFinished()
{
    _d->progress->hide();
}

void VwwAWindow::closeEvent(QCloseEvent* event)
{
    if (!askForClose()) {
        event->ignore();
        return;
    }
    Q_EMIT closeWindow(this);
    QFrame::closeEvent(event);
}
