#include "VwcAutomaticButton.h"

#include <VuaResourceProvider.h>

#include <QDebug>

VwcAutomaticButton::VwcAutomaticButton(QWidget* parent)
    : VwcToolButton(parent)
{
    setObjectName(QStringLiteral("automaticButton"));
}

VwcAutomaticButton::~VwcAutomaticButton() = default;

VwaAWidget::AutoMode VwcAutomaticButton::getAutomaticMode() const
{
    return _mode;
}

void VwcAutomaticButton::setAutomaticMode(VwaAWidget::AutoMode mode)
{
    if (mode != VwaAWidget::AUTO_SET_STATE && mode != VwaAWidget::AUTO_SET_VALUE
        && mode != VwaAWidget::AUTO_SET_NONE) {
        qWarning("VwcAutomaticButton::setAutomaticMode: invalid mode %d ignored", int(mode));
        return;
    }
    if (mode == _mode)
        return;
    _mode = mode;
    // Disconnect before unchecking, so that leaving state mode does not report a change.
    disconnect(_connection);
    _connection = {};

    switch (mode) {
    case VwaAWidget::AUTO_SET_STATE:
        setCheckable(true);
        setChecked(false);
        setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconAutomaticState()));
        setToolTip(tr("Use the automatic value"));
        _connection = connect(this, &QAbstractButton::toggled, this, &VwcAutomaticButton::automaticToggled);
        break;
    case VwaAWidget::AUTO_SET_VALUE:
        setCheckable(false);
        setChecked(false);
        setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconAutomaticSetValue()));
        setToolTip(tr("Reset to the automatic value"));
        update();
        _connection = connect(this, &QAbstractButton::clicked, this, &VwcAutomaticButton::automaticClicked);
        break;
    case VwaAWidget::AUTO_SET_NONE:
        break;
    }
}

bool VwcAutomaticButton::isAutomatic() const
{
    return _mode == VwaAWidget::AUTO_SET_STATE && isChecked();
}

void VwcAutomaticButton::setAutomatic(bool automatic)
{
    if (_mode == VwaAWidget::AUTO_SET_STATE && isChecked() != automatic)
        setChecked(automatic);
}
