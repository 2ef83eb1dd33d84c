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
        return vwaStepEnabled(*this, undefineEnabled, value(), minimum, maximum);
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
    int step = 1;
};

VwaInteger::VwaInteger(QWidget* parent)
    : VwaANumeric(parent)
    , VwaNumericValue(0, 99)
    , _d(new VwaIntegerPrivate)
{
    _d->spinBox = new _SpinBox(this);
    _setSpinBox(_d->spinBox);
}

VwaInteger::~VwaInteger() = default;

int VwaInteger::getValue() const
{
    return _value;
}

void VwaInteger::setValue(int value)
{
    _setValue(value);
}

int VwaInteger::getAutoValue() const
{
    return _autoValue;
}

void VwaInteger::setAutoValue(int value)
{
    _setAutoValue(value);
}

void VwaInteger::_resetToAutoValue()
{
    _setValue(_autoValue);
}

int VwaInteger::getMinimum() const
{
    return _minimum;
}

void VwaInteger::setMinimum(int minimum)
{
    _setBound(_minimum, minimum, isMinimumDefined(), "setMinimum");
}

int VwaInteger::getMaximum() const
{
    return _maximum;
}

void VwaInteger::setMaximum(int maximum)
{
    _setBound(_maximum, maximum, isMaximumDefined(), "setMaximum");
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
    spinBox->minimum = isMinimumDefined() ? _minimum : UNDEFINED;
    spinBox->maximum = isMaximumDefined() ? _maximum : UNDEFINED;
    spinBox->updateRange();
    // A negative step would turn Up into Down.
    if (_d->step >= 0)
        spinBox->setSingleStep(_d->step);
    spinBox->setValue(_value);
    // The texts may have changed while the value did not.
    spinBox->showValue();
}

QString VwaInteger::_getTextFromValue() const
{
    return _d->spinBox->textFromValue(_value);
}

void VwaInteger::_validate()
{
    _validateValues();
}
