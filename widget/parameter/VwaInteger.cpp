#include "VwaInteger.h"

#include <KbbGlobal.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QSpinBox>

#include <limits>

namespace {

constexpr int UNDEFINED = KbbGlobal::I_FFFF;
constexpr int MAX_TEXT_LENGTH = 64;

} // namespace

// A QSpinBox that keeps prefix and suffix itself, so that they can be read back in any
// case and left out around the undefined value, which it shows as an empty field.
class VwaInteger::_SpinBox : public QSpinBox
{
public:
    explicit _SpinBox(VwaInteger* editor)
        : QSpinBox(editor)
        , _editor(editor)
    {
        connect(this, QOverload<int>::of(&QSpinBox::valueChanged), this, [this](int v) { _editor->_userEdited(v); });
    }

    QString prefix;
    QString suffix;
    bool undefineEnabled = false;
    int minimum = UNDEFINED; // undefined: no lower bound
    int maximum = UNDEFINED;

    // The QSpinBox's own range lets through everything the editor may hold; the editor
    // normalises what comes out.
    void updateRange()
    {
        const int low = undefineEnabled ? UNDEFINED : minimum != UNDEFINED ? minimum : UNDEFINED + 1;
        setRange(low, maximum != UNDEFINED ? maximum : std::numeric_limits<int>::max());
    }

    void showValue() { lineEdit()->setText(textFromValue(value())); }

    bool parse(const QString& text, int& value) const
    {
        QString number = text.trimmed();
        if (!prefix.isEmpty() && number.startsWith(prefix.trimmed(), Qt::CaseInsensitive))
            number.remove(0, prefix.trimmed().size());
        number = number.trimmed();
        if (!suffix.isEmpty() && number.endsWith(suffix.trimmed(), Qt::CaseInsensitive))
            number.chop(suffix.trimmed().size());
        number = number.trimmed();
        if (number.isEmpty()) {
            if (!undefineEnabled)
                return false;
            value = UNDEFINED;
            return true;
        }
        bool ok = false;
        qint64 v = locale().toLongLong(number, &ok);
        if (!ok)
            v = QLocale::c().toLongLong(number, &ok);
        if (!ok)
            return false;
        // Too big for an int still means "as far as it goes", which fixup then bounds.
        value = int(qBound<qint64>(UNDEFINED + 1, v, std::numeric_limits<int>::max()));
        return true;
    }

    QString textFromValue(int value) const override
    {
        if (value == UNDEFINED)
            return QString();
        QLocale loc = locale();
        loc.setNumberOptions(loc.numberOptions() | QLocale::OmitGroupSeparator);
        return prefix + loc.toString(value) + suffix;
    }

    int valueFromText(const QString& text) const override
    {
        int v = value();
        parse(text, v);
        return v;
    }

    QValidator::State validate(QString& input, int&) const override
    {
        if (input.size() > MAX_TEXT_LENGTH + prefix.size() + suffix.size())
            return QValidator::Invalid;
        int v = 0;
        if (!parse(input, v))
            return QValidator::Intermediate;
        return v >= QSpinBox::minimum() && v <= QSpinBox::maximum() ? QValidator::Acceptable
                                                                     : QValidator::Intermediate;
    }

    // A number out of range becomes the nearest bound; anything else stays for the spin
    // box to put back the previous value.
    void fixup(QString& input) const override
    {
        int v = 0;
        if (parse(input, v))
            input = textFromValue(qBound(QSpinBox::minimum(), v, QSpinBox::maximum()));
    }

    StepEnabled stepEnabled() const override
    {
        const int v = value();
        if (isReadOnly() || (undefineEnabled && v == UNDEFINED))
            return StepNone;
        if (wrapping())
            return StepUpEnabled | StepDownEnabled;
        StepEnabled enabled = StepNone;
        if (maximum == UNDEFINED || v < maximum)
            enabled |= StepUpEnabled;
        if (minimum == UNDEFINED || v > minimum)
            enabled |= StepDownEnabled;
        return enabled;
    }

    void stepBy(int steps) override
    {
        interpretText();
        const int start = value();
        if (start == UNDEFINED || steps == 0)
            return;
        const qint64 low = minimum != UNDEFINED ? minimum : UNDEFINED + 1;
        const qint64 high = maximum != UNDEFINED ? maximum : std::numeric_limits<int>::max();
        qint64 v = qint64(start) + qint64(steps) * singleStep();
        if (wrapping() && minimum != UNDEFINED && maximum != UNDEFINED)
            v = v > high ? low : v < low ? high : v;
        else
            v = qBound(low, v, high);
        setValue(int(v));
        selectAll();
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        QSpinBox::keyPressEvent(event);
        if (enter && !isReadOnly())
            emit _editor->valueChangedByEnter();
    }

private:
    VwaInteger* const _editor;
};

class VwaIntegerPrivate
{
public:
    VwaInteger::_SpinBox* spinBox = nullptr;
    int value = 0;
    int autoValue = 0;
    int minimum = 0;
    int maximum = 99;
    int step = 1;
};

VwaInteger::VwaInteger(QWidget* parent)
    : VwaANumeric(parent)
    , _d(new VwaIntegerPrivate)
{
    _d->spinBox = new _SpinBox(this);
    _setSpinBox(_d->spinBox);
}

VwaInteger::~VwaInteger() = default;

int VwaInteger::_normalized(int value) const
{
    if (value == UNDEFINED && _d->spinBox->undefineEnabled)
        return value;
    if (value == UNDEFINED)
        value = 0;
    if (isMinimumDefined() && value < _d->minimum)
        value = _d->minimum;
    if (isMaximumDefined() && value > _d->maximum)
        value = _d->maximum;
    return value;
}

void VwaInteger::_storeValue(int value)
{
    _d->value = value;
    _updateWidget();
    emit valueChanged(value);
}

void VwaInteger::_userEdited(int value)
{
    setAutomatic(false);
    setValue(value);
    if (_d->spinBox->value() != _d->value)
        _updateWidget();
}

int VwaInteger::getValue() const
{
    return _d->value;
}

void VwaInteger::setValue(int value)
{
    value = _normalized(value);
    if (value == _d->value)
        return;
    _storeValue(value);
}

int VwaInteger::getAutoValue() const
{
    return _d->autoValue;
}

void VwaInteger::setAutoValue(int value)
{
    value = _normalized(value);
    if (value == _d->autoValue)
        return;
    _d->autoValue = value;
    if (isAutomatic() && value != _d->value)
        _storeValue(value);
}

void VwaInteger::_resetToAutoValue()
{
    setValue(_d->autoValue);
}

int VwaInteger::getMinimum() const
{
    return _d->minimum;
}

void VwaInteger::setMinimum(int minimum)
{
    if (minimum == UNDEFINED) {
        qWarning("VwaInteger::setMinimum: the undefined value is no bound, ignored");
        return;
    }
    if (minimum == _d->minimum)
        return;
    _d->minimum = minimum;
    if (isMinimumDefined())
        _validate();
}

int VwaInteger::getMaximum() const
{
    return _d->maximum;
}

void VwaInteger::setMaximum(int maximum)
{
    if (maximum == UNDEFINED) {
        qWarning("VwaInteger::setMaximum: the undefined value is no bound, ignored");
        return;
    }
    if (maximum == _d->maximum)
        return;
    _d->maximum = maximum;
    if (isMaximumDefined())
        _validate();
}

int VwaInteger::getStep() const
{
    return _d->step;
}

void VwaInteger::setStep(int step)
{
    if (step == _d->step)
        return;
    _d->step = step;
    _updateWidget();
}

QString VwaInteger::getPrefix() const
{
    return _d->spinBox->prefix;
}

void VwaInteger::setPrefix(const QString& prefix)
{
    if (prefix == _d->spinBox->prefix)
        return;
    _d->spinBox->prefix = prefix;
    _updateWidget();
}

QString VwaInteger::getSuffix() const
{
    return _d->spinBox->suffix;
}

void VwaInteger::setSuffix(const QString& suffix)
{
    if (suffix == _d->spinBox->suffix)
        return;
    _d->spinBox->suffix = suffix;
    _updateWidget();
}

bool VwaInteger::isUndefineEnabled() const
{
    return _d->spinBox->undefineEnabled;
}

void VwaInteger::setUndefineEnabled(bool enabled)
{
    if (enabled == _d->spinBox->undefineEnabled)
        return;
    _d->spinBox->undefineEnabled = enabled;
    if (enabled)
        _updateWidget();
    else
        _validate();
}

void VwaInteger::selectAll()
{
    _d->spinBox->selectAll();
}

void VwaInteger::_updateSpinBox()
{
    _SpinBox* spinBox = _d->spinBox;
    spinBox->minimum = isMinimumDefined() ? _d->minimum : UNDEFINED;
    spinBox->maximum = isMaximumDefined() ? _d->maximum : UNDEFINED;
    spinBox->updateRange();
    // A negative step would turn Up into Down.
    if (_d->step >= 0)
        spinBox->setSingleStep(_d->step);
    spinBox->setValue(_d->value);
    // The texts may have changed while the value did not.
    spinBox->showValue();
}

QString VwaInteger::_getTextFromValue() const
{
    return _d->spinBox->textFromValue(_d->value);
}

void VwaInteger::_validate()
{
    if (isAutomaticEnabled() && _normalized(_d->autoValue) != _d->autoValue) {
        setAutomatic(false);
        setAutomaticEnabled(false);
    }
    const int value = _normalized(_d->value);
    if (value != _d->value)
        _storeValue(value);
    else
        _updateWidget();
}
