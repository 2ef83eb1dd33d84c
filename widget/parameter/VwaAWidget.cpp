#include "VwaAWidget.h"

#include <VwcAutomaticButton.h>
#include <VwcLockValueButton.h>

#include <QHBoxLayout>
#include <QPainter>
#include <QStyleOption>

VwaAWidget::VwaAWidget(QWidget* parent, bool withAutomaticButton, bool withLockButton)
    : QWidget(parent)
{
    if (withAutomaticButton) {
        _automaticButton = new VwcAutomaticButton(this);
        _automaticButton->hide();
        connect(_automaticButton, &VwcAutomaticButton::automaticToggled, this, &VwaAWidget::_automaticToggled);
        connect(_automaticButton, &VwcAutomaticButton::automaticClicked, this, [this] { _resetToAutoValue(); });
    }
    if (withLockButton) {
        _lockButton = new VwcLockValueButton(this);
        _lockButton->setObjectName(QStringLiteral("lockValueButton"));
        _lockButton->hide();
        connect(_lockButton, &VwcLockValueButton::lockToggled, this, &VwaAWidget::lockValueToggled);
    }
}

VwaAWidget::~VwaAWidget() = default;

VwaAWidget::WidgetStyle VwaAWidget::getWidgetStyle() const
{
    return _widgetStyle;
}

void VwaAWidget::setWidgetStyle(WidgetStyle style)
{
    if (style != NORMAL && style != EMBEDDED) {
        qWarning("VwaAWidget::setWidgetStyle: invalid style %d ignored", int(style));
        return;
    }
    if (style == _widgetStyle)
        return;
    _widgetStyle = style;
    _updateWidgetStyle();
}

VwaAWidget::AutoMode VwaAWidget::getAutomaticMode() const
{
    return _automaticButton ? _automaticButton->getAutomaticMode() : AUTO_SET_NONE;
}

void VwaAWidget::setAutomaticMode(AutoMode mode)
{
    if (!_automaticButton)
        return;
    _automaticButton->setAutomaticMode(mode);
    _setButtonsShown(_buttonsShown);
}

bool VwaAWidget::isAutomatic() const
{
    return _automaticButton && _automaticButton->isAutomatic();
}

void VwaAWidget::setAutomatic(bool automatic)
{
    if (_automaticButton)
        _automaticButton->setAutomatic(automatic);
}

bool VwaAWidget::isAutomaticEnabled() const
{
    // The button's own state, whether or not the editor around it is enabled.
    return _automaticButton && _automaticButton->isEnabledTo(this);
}

void VwaAWidget::setAutomaticEnabled(bool enabled)
{
    if (_automaticButton)
        _automaticButton->setEnabled(enabled);
}

bool VwaAWidget::isLockValueAvailable() const
{
    return _lockButton && _lockAvailable;
}

void VwaAWidget::setLockValueAvailable(bool available)
{
    if (!_lockButton)
        return;
    _lockAvailable = available;
    _setButtonsShown(_buttonsShown);
}

bool VwaAWidget::isValueLocked() const
{
    return _lockButton && _lockButton->isLocked();
}

void VwaAWidget::setValueLocked(bool locked)
{
    if (_lockButton)
        _lockButton->setLocked(locked);
}

void VwaAWidget::_setButtonsShown(bool shown)
{
    _buttonsShown = shown;
    const bool automatic = _automaticButton && shown && _automaticButton->getAutomaticMode() != AUTO_SET_NONE;
    const bool lock = _lockButton && shown && _lockAvailable;
    if (automatic)
        _placeButton(_automaticButton);
    if (lock)
        _placeButton(_lockButton);
    if (_automaticButton)
        _automaticButton->setVisible(automatic);
    if (_lockButton)
        _lockButton->setVisible(lock);
}

void VwaAWidget::_setMainWidget(QWidget* widget)
{
    if (!widget || _mainWidget) {
        qWarning("VwaAWidget::_setMainWidget: %s", widget ? "the editor has its main widget" : "no widget");
        return;
    }
    _mainWidget = widget;
    if (_row)
        _row->insertWidget(0, widget);
    else
        widget->setGeometry(rect());
}

QWidget* VwaAWidget::_getMainWidget() const
{
    return _mainWidget;
}

// A form shows hundreds of editors and most of them never show more than their field,
// which then simply fills the editor: no layout until a second widget comes.
QHBoxLayout* VwaAWidget::_getRowLayout() const
{
    return _row;
}

QHBoxLayout* VwaAWidget::_rowLayout()
{
    if (_row)
        return _row;
    _row = new QHBoxLayout(this);
    _row->setObjectName(QStringLiteral("rwLayout"));
    _row->setContentsMargins(0, 0, 0, 0);
    if (_mainWidget) {
        // The editor keeps the field's policy; inside, the field takes what it gets.
        _mainWidget->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
        _row->addWidget(_mainWidget);
    }
    return _row;
}

// A button still directly in the editor (a subclass with its own layout has taken the
// others) goes into the row as it is first shown: the automatic button right of the main
// widget, the lock button right of that.
void VwaAWidget::_placeButton(QWidget* button)
{
    if (!_mainWidget || button->parentWidget() != this)
        return;
    QHBoxLayout* row = _rowLayout();
    if (row->indexOf(button) >= 0)
        return;
    const int automaticAt = _automaticButton ? row->indexOf(_automaticButton) : -1;
    const int after = button == _lockButton && automaticAt >= 0 ? automaticAt : row->indexOf(_mainWidget);
    row->insertWidget(after + 1, button);
}

QSize VwaAWidget::sizeHint() const
{
    return !_row && _mainWidget ? _mainWidget->sizeHint() : QWidget::sizeHint();
}

QSize VwaAWidget::minimumSizeHint() const
{
    return !_row && _mainWidget ? _mainWidget->minimumSizeHint() : QWidget::minimumSizeHint();
}

void VwaAWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (!_row && _mainWidget)
        _mainWidget->setGeometry(rect());
}

bool VwaAWidget::event(QEvent* event)
{
    // Without a layout, a new size hint of the field must still reach our parent.
    if (event->type() == QEvent::LayoutRequest && !_row)
        updateGeometry();
    return QWidget::event(event);
}

void VwaAWidget::setReadOnly(bool)
{
}

QWidget* VwaAWidget::_getAutomaticButton() const
{
    return _automaticButton;
}

QWidget* VwaAWidget::_getLockValueButton() const
{
    return _lockButton;
}

void VwaAWidget::paintEvent(QPaintEvent*)
{
    // A plain QWidget subclass ignores background and border rules of a style sheet
    // unless it draws PE_Widget itself. Without a style sheet there is nothing to draw,
    // and a form of many editors saves a painter each.
    if (!testAttribute(Qt::WA_StyleSheet))
        return;
    QStyleOption option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void VwaAWidget::_updateWidgetStyle()
{
}

void VwaAWidget::_automaticToggled(bool on)
{
    emit automaticToggled(on);
    if (on)
        _resetToAutoValue();
}
