#include "VwaANumeric.h"

#include <VwhStylesheet.h>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>

class VwaANumericPrivate
{
public:
    QLineEdit* lineEdit = nullptr; // the read-only page, made when first shown
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

    _setMainWidget(spinBox);
    _updateWidget();
}

QLineEdit* VwaANumeric::_readOnlyPage()
{
    if (_d->lineEdit)
        return _d->lineEdit;
    _d->lineEdit = new QLineEdit(this);
    _d->lineEdit->setObjectName(QStringLiteral("lineEdit"));
    _d->lineEdit->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    _d->lineEdit->setReadOnly(true);
    _d->lineEdit->setFrame(false);
    using namespace Vwh::Stylesheet;
    Stream sheet;
    sheet.add({bgColor(readOnlyBackground)});
    _d->lineEdit->setStyleSheet(sheet.getStyleSheet());
    // In the spin box's place: as wide as the spin box wanted, whatever the text.
    _d->lineEdit->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    if (_d->spinBox)
        _d->lineEdit->setMinimumWidth(_d->spinBox->sizeHint().width());
    _d->lineEdit->hide();
    _rowLayout()->addWidget(_d->lineEdit);
    if (_d->spinBox)
        setTabOrder(_d->spinBox, _d->lineEdit);
    return _d->lineEdit;
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
    const bool editable = !_d->readOnly && _d->spinBox;
    if (editable && !_d->lineEdit) {
        setFocusProxy(_d->spinBox);
        return;
    }
    QLineEdit* page = _readOnlyPage();
    page->setText(_getTextFromValue());
    page->setCursorPosition(0);
    if (_d->spinBox)
        _d->spinBox->setVisible(editable);
    _setButtonsShown(editable);
    page->setVisible(!editable);
    setFocusProxy(editable ? static_cast<QWidget*>(_d->spinBox) : page);
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
    // -1, the style's spacing, while the spin box is alone.
    const QHBoxLayout* row = _getRowLayout();
    return row ? row->spacing() : -1;
}

void VwaANumeric::setSpacing(int spacing)
{
    _rowLayout()->setSpacing(spacing);
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
