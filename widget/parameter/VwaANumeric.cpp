#include "VwaANumeric.h"

#include <VwhStylesheet.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QStackedWidget>

class VwaANumericPrivate
{
public:
    QStackedWidget* stack = nullptr;
    QWidget* rwWidget = nullptr;
    QHBoxLayout* rwLayout = nullptr;
    QLineEdit* lineEdit = nullptr;
    // The read-only page takes its style sheet when first shown: a sheet of its own makes
    // a widget's polish many times dearer, and most editors are never read-only.
    bool lineEditStyled = false;
    QPointer<QAbstractSpinBox> spinBox;
    bool minimumDefined = false;
    bool maximumDefined = false;
    bool wrapping = false;
    bool readOnly = false;
    QAbstractSpinBox::ButtonSymbols buttonSymbols = QAbstractSpinBox::UpDownArrows;
};

VwaANumeric::VwaANumeric(QWidget* parent)
    : VwaAWidget(parent, true, true)
    , _d(new VwaANumericPrivate)
{
    setFocusPolicy(Qt::StrongFocus);
}

VwaANumeric::~VwaANumeric() = default;

void VwaANumeric::_setSpinBox(QAbstractSpinBox* spinBox)
{
    if (!spinBox || _d->spinBox) {
        qWarning("VwaANumeric::_setSpinBox: %s", spinBox ? "the editor already has its spin box" : "no spin box");
        return;
    }
    _d->spinBox = spinBox;
    spinBox->setObjectName(QStringLiteral("spinbox"));
    spinBox->setKeyboardTracking(false);
    // Not WheelFocus: a wheel turned over the field must not take the focus (and then
    // the value) on its own.
    spinBox->setFocusPolicy(Qt::StrongFocus);
    spinBox->installEventFilter(this);
    _d->buttonSymbols = spinBox->buttonSymbols();
    // Size policies before the layouts: a policy set on a widget in a layout asks that
    // layout to be done again.
    setSizePolicy(spinBox->sizePolicy());
    spinBox->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);

    // The pages go into the stack while they are empty: a page added to a stack is shown,
    // and showing a page with its spin box would size the spin box before its editor has
    // given it its range and format.
    _d->stack = new QStackedWidget(this);
    _d->stack->setObjectName(QStringLiteral("stackWidget"));
    _d->rwWidget = new QWidget;
    _d->rwWidget->setObjectName(QStringLiteral("rwWidget"));
    _d->rwWidget->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    _d->stack->addWidget(_d->rwWidget);
    // The read-only page: the value as flat text in the spin box's place.
    _d->lineEdit = new QLineEdit;
    _d->lineEdit->setObjectName(QStringLiteral("lineEdit"));
    _d->lineEdit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    _d->lineEdit->setReadOnly(true);
    _d->lineEdit->setFrame(false);
    _d->lineEdit->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    _d->stack->addWidget(_d->lineEdit);

    // The editable page: the spin box with the buttons to its right.
    _d->rwLayout = new QHBoxLayout(_d->rwWidget);
    _d->rwLayout->setObjectName(QStringLiteral("rwLayout"));
    _d->rwLayout->setContentsMargins(0, 0, 0, 0);
    _d->rwLayout->addWidget(spinBox);
    for (QWidget* button : {_getAutomaticButton(), _getLockValueButton()})
        if (button)
            _d->rwLayout->addWidget(button);
    _d->rwWidget->setFocusProxy(spinBox);

    // The stack fills the editor.
    _setMainWidget(_d->stack);
    setTabOrder(spinBox, _d->lineEdit);
    _updateWidget();
}

QAbstractSpinBox* VwaANumeric::_getSpinBox() const
{
    return _d->spinBox;
}

void VwaANumeric::_updateWidget()
{
    if (QAbstractSpinBox* spinBox = _d->spinBox) {
        const bool blocked = spinBox->blockSignals(true);
        _updateSpinBox();
        // setReadOnly repaints and notifies even when nothing changes.
        if (spinBox->isReadOnly() != _d->readOnly)
            spinBox->setReadOnly(_d->readOnly);
        spinBox->setWrapping(_d->wrapping);
        spinBox->blockSignals(blocked);
    }
    QLineEdit* lineEdit = _d->lineEdit;
    if (!lineEdit)
        return;
    // A line edit lays its text out again on every setText, equal or not.
    const QString text = _getTextFromValue();
    if (lineEdit->text() != text) {
        lineEdit->setText(text);
        lineEdit->setCursorPosition(0);
    }
    const bool editable = !_d->readOnly && _d->spinBox;
    if (!editable && !_d->lineEditStyled) {
        _d->lineEditStyled = true;
        using namespace Vwh::Stylesheet;
        Stream sheet;
        sheet.add({bgColor(readOnlyBackground)});
        lineEdit->setStyleSheet(sheet.getStyleSheet());
    }
    QWidget* page = editable ? _d->rwWidget : static_cast<QWidget*>(lineEdit);
    _d->stack->setCurrentWidget(page);
    if (focusProxy() != page)
        setFocusProxy(page);
}

bool VwaANumeric::isMinimumDefined() const
{
    return _d->minimumDefined;
}

void VwaANumeric::setMinimumDefined(bool defined)
{
    if (defined == _d->minimumDefined)
        return;
    _d->minimumDefined = defined;
    if (defined)
        _validate();
    else
        _updateWidget();
}

bool VwaANumeric::isMaximumDefined() const
{
    return _d->maximumDefined;
}

void VwaANumeric::setMaximumDefined(bool defined)
{
    if (defined == _d->maximumDefined)
        return;
    _d->maximumDefined = defined;
    if (defined)
        _validate();
    else
        _updateWidget();
}

bool VwaANumeric::isWrapped() const
{
    return _d->wrapping;
}

void VwaANumeric::setWrapping(bool wrapping)
{
    if (wrapping == _d->wrapping)
        return;
    _d->wrapping = wrapping;
    _updateWidget();
}

bool VwaANumeric::isReadOnly() const
{
    return _d->readOnly;
}

void VwaANumeric::setReadOnly(bool readOnly)
{
    if (readOnly == _d->readOnly)
        return;
    _d->readOnly = readOnly;
    _updateWidget();
}

bool VwaANumeric::hasFrame() const
{
    return _d->spinBox && _d->spinBox->hasFrame();
}

void VwaANumeric::setFrame(bool frame)
{
    if (_d->spinBox)
        _d->spinBox->setFrame(frame);
}

bool VwaANumeric::isButtonVisible() const
{
    return _d->spinBox && _d->spinBox->buttonSymbols() != QAbstractSpinBox::NoButtons;
}

void VwaANumeric::setButtonsVisible(bool visible)
{
    if (!_d->spinBox)
        return;
    _d->spinBox->setButtonSymbols(visible ? _d->buttonSymbols : QAbstractSpinBox::NoButtons);
}

int VwaANumeric::getSpacing() const
{
    return _d->rwLayout ? _d->rwLayout->spacing() : -1;
}

void VwaANumeric::setSpacing(int spacing)
{
    if (_d->rwLayout)
        _d->rwLayout->setSpacing(spacing);
}

QString VwaANumeric::text() const
{
    return _getTextFromValue();
}

void VwaANumeric::_updateWidgetStyle()
{
    // Inside a table cell the cell draws the frame and there is no room for spacing.
    const bool embedded = getWidgetStyle() == EMBEDDED;
    setFrame(!embedded);
    setSpacing(embedded ? 0 : -1);
}

bool VwaANumeric::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _d->spinBox) {
        switch (event->type()) {
        case QEvent::KeyPress: {
            // Ignored, so that the key travels up to the parents and they move the focus.
            const int key = static_cast<QKeyEvent*>(event)->key();
            if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
                event->ignore();
                return true;
            }
            break;
        }
        case QEvent::Wheel:
            // A form scrolled with the wheel must not change the values it passes over.
            if (!_d->spinBox->hasFocus()) {
                event->ignore();
                return true;
            }
            break;
        default:
            break;
        }
    }
    return VwaAWidget::eventFilter(watched, event);
}
