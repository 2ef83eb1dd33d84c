#include "VwaComboBoxBase.h"

#include <QAbstractItemView>
#include <QScreen>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace {
// Characters the combo is sized for: enough for most labels, and a long item added later
// does not push the form apart.
constexpr int minimumCharacters = 8;
} // namespace

VwaComboBoxBase::VwaComboBoxBase(QWidget* parent)
    : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    // Not through setSizeAdjustPolicy: that builds the popup of every combo at once, and
    // a form holds many combos that are never opened. sizeHint() does the same sum.
    setMinimumContentsLength(minimumCharacters);
}

QSize VwaComboBoxBase::sizeHint() const
{
    if (_sizeHint.isValid())
        return _sizeHint;
    ensurePolished();
    const QFontMetrics metrics(fontMetrics());
    const QSize icon = iconSize();
    QSize content(minimumContentsLength() * metrics.horizontalAdvance(QLatin1Char('X')) + icon.width() + 4,
                  qMax(metrics.height(), icon.height()));
    QStyleOptionComboBox option;
    initStyleOption(&option);
    _sizeHint = style()->sizeFromContents(QStyle::CT_ComboBox, &option, content, this);
    return _sizeHint;
}

QSize VwaComboBoxBase::minimumSizeHint() const
{
    return sizeHint();
}

void VwaComboBoxBase::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _sizeHint = QSize();
    QComboBox::changeEvent(event);
}

VwaComboBoxBase::~VwaComboBoxBase() = default;

void VwaComboBoxBase::showPopup()
{
    // The combo itself may be narrower than its items; the list shows them whole, up to
    // half the screen.
    QAbstractItemView* list = view();
    int wanted = list->sizeHintForColumn(0) + 2 * list->frameWidth();
    if (list->verticalScrollBar())
        wanted += list->verticalScrollBar()->sizeHint().width();
    const QScreen* screen = this->screen();
    const int limit = screen ? screen->availableGeometry().width() / 2 : wanted;
    list->setMinimumWidth(qMax(0, qMin(wanted, limit)));
    QComboBox::showPopup();
}

void VwaComboBoxBase::wheelEvent(QWheelEvent* event)
{
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    QComboBox::wheelEvent(event);
}
