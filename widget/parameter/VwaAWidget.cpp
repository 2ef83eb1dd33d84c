#include "VwaAWidget.h"

#include <VwcAutomaticButton.h>
#include <VwcLockValueButton.h>

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
    // Follow the mode the button kept, which an invalid request leaves unchanged.
    _automaticButton->setVisible(_automaticButton->getAutomaticMode() != AUTO_SET_NONE);
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
    return _automaticButton && _automaticButton->isEnabled();
}

void VwaAWidget::setAutomaticEnabled(bool enabled)
{
    if (_automaticButton)
        _automaticButton->setEnabled(enabled);
}

bool VwaAWidget::isLockValueAvailable() const
{
    // Relative to the editor, so that the answer does not depend on the editor being shown.
    return _lockButton && _lockButton->isVisibleTo(this);
}

void VwaAWidget::setLockValueAvailable(bool available)
{
    if (_lockButton)
        _lockButton->setVisible(available);
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
    // unless it draws PE_Widget itself.
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
