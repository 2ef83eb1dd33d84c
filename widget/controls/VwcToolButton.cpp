#include "VwcToolButton.h"

#include <QEvent>
#include <QStyle>

VwcToolButton::VwcToolButton(QWidget* parent)
    : QToolButton(parent)
{
    setAutoRaise(true);
    setToolButtonStyle(Qt::ToolButtonIconOnly);
    _updateIconSize();
}

VwcToolButton::~VwcToolButton() = default;

void VwcToolButton::changeEvent(QEvent* event)
{
    QToolButton::changeEvent(event);
    // A new style or style sheet may change the small-icon metric.
    if (event->type() == QEvent::StyleChange)
        _updateIconSize();
}

void VwcToolButton::_updateIconSize()
{
    const int extent = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const QSize size(extent, extent);
    if (iconSize() != size)
        setIconSize(size);
}
