#include "VwcLockValueButton.h"

#include <VuaResourceProvider.h>

VwcLockValueButton::VwcLockValueButton(QWidget* parent)
    : VwcToolButton(parent)
{
    setObjectName(QStringLiteral("lockValueButton"));
    setCheckable(true);
    setChecked(false);
    setIcon(VuaResourceProvider::getIcon(Vua::Resource::iconLockState()));
    setToolTip(tr("Lock the value"));
    connect(this, &QAbstractButton::toggled, this, &VwcLockValueButton::lockToggled);
}

VwcLockValueButton::~VwcLockValueButton() = default;

bool VwcLockValueButton::isLocked() const
{
    return isChecked();
}

void VwcLockValueButton::setLocked(bool locked)
{
    if (isChecked() != locked)
        setChecked(locked);
}
