#include "VwaDouble.h"

#include <KbbGlobal.h>
#include <KbbUserStringFormats.h>

#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionSpinBox>

#include <cmath>

Q_LOGGING_CATEGORY(lcVwaDouble, "halvorn.widget.atomic.double", QtCriticalMsg)

namespace {

constexpr double UNDEFINED = KbbGlobal::D_FFFF;

// The unit after the number: one blank before it, except for a lone degree sign.
QString unitSuffix(const KbbStringFormat& format, int powerValue)
{
    const QString symbol = format.getDisplayUnitSymbol(powerValue);
    if (symbol.isEmpty() || symbol == QStringLiteral("\u00B0"))
        return symbol;
    return QLatin1Char(' ') + symbol;
}

// What the field and the read-only page show. The undefined value is an empty field,
// without prefix or unit, so that the format's placeholder shows through.
QString numberText(double value, const QString& prefix, const KbbStringFormat& format, int powerValue)
{
    if (value == UNDEFINED)
        return QString();
    return prefix + format.valueToString(value) + unitSuffix(format, powerValue);
}

} // namespace

// ---------------------------------------------------------------------------------------

class VwaDouble::_SpinBoxPrivate
{
public:
    double value = 0.0;
    double minimum = UNDEFINED; // undefined: no lower bound
    double maximum = UNDEFINED;
    double step = UNDEFINED;
    KbbStringFormat format;
    int powerValue = 1;
    QString prefix;
    bool undefineEnabled = false;
    // The user typed since the text was last set from the value: only then is the text
    // read back, so that leaving the field never rounds a value to its shown digits.
    bool edited = false;
    // The text is not yet made, or the format or prefix changed since it was.
    bool textStale = true;
    mutable QSize sizeHint;

    QString suffix() const { return unitSuffix(format, powerValue); }
    QString text(double v) const { return numberText(v, prefix, format, powerValue); }
    double boundedUp(double v) const { return maximum != UNDEFINED && v > maximum ? maximum : v; }
    double boundedDown(double v) const { return minimum != UNDEFINED && v < minimum ? minimum : v; }
};

// The editor's own spin box: QAbstractSpinBox with a value in the editor's units and a
// parser that knows prefixes, units and the undefined value. It reports to its editor.
class VwaDouble::_SpinBox : public QAbstractSpinBox
{
public:
    explicit _SpinBox(VwaDouble* editor);

    double value() const { return _d.value; }
    void setValue(double value);
    void setRange(double minimum, double maximum);
    void setFormat(const KbbStringFormat& format, int powerValue);
    void setStep(double step);
    const QString& prefix() const { return _d.prefix; }
    void setPrefix(const QString& prefix);
    bool isUndefineEnabled() const { return _d.undefineEnabled; }
    void setUndefineEnabled(bool enabled) { _d.undefineEnabled = enabled; }

    // Reads the field; on success `value` is the number the text stands for, already
    // corrected to the bounds when the correction mode asks for it.
    bool interpret(const QString& text, double& value) const;

    QValidator::State validate(QString& input, int& pos) const override;
    void fixup(QString& input) const override;
    void stepBy(int steps) override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void _commitText();
    void _showValue();

    VwaDouble* const _editor;
    _SpinBoxPrivate _d;
};

VwaDouble::_SpinBox::_SpinBox(VwaDouble* editor)
    : QAbstractSpinBox(editor)
    , _editor(editor)
{
    setCorrectionMode(CorrectToNearestValue);
    lineEdit()->setPlaceholderText(_d.format.getPlaceholderText());
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { _d.edited = true; });
    // The text comes with the editor's first update, in the editor's format.
}

void VwaDouble::_SpinBox::_showValue()
{
    _d.edited = false;
    _d.textStale = false;
    const QString text = _d.text(_d.value);
    if (lineEdit()->text() != text)
        lineEdit()->setText(text);
    update();
}

void VwaDouble::_SpinBox::setValue(double value)
{
    if (value == _d.value && !_d.textStale && !_d.edited)
        return;
    _d.value = value;
    _showValue();
}

void VwaDouble::_SpinBox::setRange(double minimum, double maximum)
{
    if (minimum == _d.minimum && maximum == _d.maximum)
        return;
    _d.minimum = minimum;
    _d.maximum = maximum;
    _d.sizeHint = QSize();
    updateGeometry();
}

void VwaDouble::_SpinBox::setFormat(const KbbStringFormat& format, int powerValue)
{
    if (format == _d.format && powerValue == _d.powerValue)
        return;
    _d.format = format;
    _d.powerValue = powerValue;
    _d.textStale = true;
    lineEdit()->setPlaceholderText(format.getPlaceholderText());
    _d.sizeHint = QSize();
    updateGeometry();
}

void VwaDouble::_SpinBox::setStep(double step)
{
    if (step < 0.0 && step != UNDEFINED)
        return;
    _d.step = step;
}

void VwaDouble::_SpinBox::setPrefix(const QString& prefix)
{
    _d.prefix = prefix;
    _d.textStale = true;
    _d.sizeHint = QSize();
    updateGeometry();
}

bool VwaDouble::_SpinBox::interpret(const QString& text, double& value) const
{
    QString number = text.trimmed();
    const QString prefix = _d.prefix.trimmed();
    const QString suffix = _d.suffix().trimmed();
    if (!prefix.isEmpty() && number.startsWith(prefix, Qt::CaseInsensitive))
        number.remove(0, prefix.size());
    number = number.trimmed();
    if (!suffix.isEmpty() && number.endsWith(suffix, Qt::CaseInsensitive))
        number.chop(suffix.size());
    number = number.trimmed();

    if (number == specialValueText().trimmed()) {
        // The special text (empty unless set) stands for the undefined value.
        if (!_d.undefineEnabled)
            return false;
        value = UNDEFINED;
        return true;
    }
    double v = UNDEFINED;
    if (!_d.format.stringToValue(number, v) || v == UNDEFINED)
        return false;
    if (correctionMode() == CorrectToNearestValue) {
        v = _d.boundedUp(_d.boundedDown(v));
    } else if (_d.boundedUp(_d.boundedDown(v)) != v) {
        return false;
    }
    value = v;
    return true;
}

QValidator::State VwaDouble::_SpinBox::validate(QString& input, int&) const
{
    // Anything short may still become a number while the user types; the text is read
    // when the entry is confirmed, and a text that is no number then gives way.
    if (input.size() > KbbStringFormat::MAX_TEXT_LENGTH + _d.prefix.size() + _d.suffix().size())
        return QValidator::Invalid;
    double v = 0.0;
    return interpret(input, v) ? QValidator::Acceptable : QValidator::Intermediate;
}

void VwaDouble::_SpinBox::fixup(QString& input) const
{
    double v = _d.value;
    interpret(input, v);
    input = _d.text(v);
}

void VwaDouble::_SpinBox::_commitText()
{
    if (!_d.edited)
        return;
    const QString shown = lineEdit()->text();
    double v = _d.value;
    interpret(shown, v);
    QString fixed = shown;
    fixup(fixed);
    if (fixed != shown)
        qCDebug(lcVwaDouble).noquote().nospace()
            << "_SpinBoxPrivate::interpret text '" << shown << "' >> '" << shown.trimmed() << '\'' << "' >> '"
            << fixed << '\'';
    _d.value = v;
    _showValue();
    // The editor normalises, stores and emits; it then pushes the value back here.
    _editor->_userEdited(v);
}

void VwaDouble::_SpinBox::stepBy(int steps)
{
    _commitText();
    const double start = _d.value;
    if (start == UNDEFINED || steps == 0)
        return;
    const double unit = std::pow(10.0, _d.format.getPower());
    const double step = _d.step == UNDEFINED ? unit : _d.step;
    double v = start + steps * step;
    if (wrapping() && _d.minimum != UNDEFINED && _d.maximum != UNDEFINED) {
        if (v > _d.maximum)
            v = _d.minimum;
        else if (v < _d.minimum)
            v = _d.maximum;
    } else {
        v = _d.boundedUp(_d.boundedDown(v));
    }
    // Steps of 0.1 should give 0.3, not 0.30000000000000004: keep the value as shown,
    // unless the shown digits are too few to see the step at all.
    double shown = v;
    if (_d.format.stringToValue(_d.format.valueToString(v, QLocale::c()), shown, QLocale::c()) && shown != start)
        v = shown;
    if (v != start) {
        _d.value = v;
        _showValue();
        _editor->_userEdited(v);
    }
    selectAll();
}

QAbstractSpinBox::StepEnabled VwaDouble::_SpinBox::stepEnabled() const
{
    return vwaStepEnabled(*this, _d.undefineEnabled, _d.value, _d.minimum, _d.maximum);
}

void VwaDouble::_SpinBox::keyPressEvent(QKeyEvent* event)
{
    // Escape first takes back what was typed; only then does it reach the dialog.
    if (event->key() == Qt::Key_Escape && _d.edited) {
        _showValue();
        selectAll();
        event->accept();
        return;
    }
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter)
        _commitText();
    // Enter is left ignored by the base, so a dialog's default button still sees it.
    QAbstractSpinBox::keyPressEvent(event);
    if (enter && !isReadOnly())
        emit _editor->valueChangedByEnter();
}

void VwaDouble::_SpinBox::focusOutEvent(QFocusEvent* event)
{
    _commitText();
    QAbstractSpinBox::focusOutEvent(event);
}

void VwaDouble::_SpinBox::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _d.sizeHint = QSize();
    QAbstractSpinBox::changeEvent(event);
}

QSize VwaDouble::_SpinBox::sizeHint() const
{
    if (_d.sizeHint.isValid())
        return _d.sizeHint;
    ensurePolished();
    // Wide enough for the bounds, or for a typical value where there is none; both texts
    // carry the prefix and the unit.
    const QFontMetrics metrics(font());
    int width = 0;
    for (double v : {_d.minimum != UNDEFINED ? _d.minimum : -9999.0, _d.maximum != UNDEFINED ? _d.maximum : 99999.0})
        width = std::max(width, metrics.horizontalAdvance(_d.text(v)));
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    const QSize content(width + 2, lineEdit()->sizeHint().height());
    _d.sizeHint = style()->sizeFromContents(QStyle::CT_SpinBox, &option, content, this);
    return _d.sizeHint;
}

QSize VwaDouble::_SpinBox::minimumSizeHint() const
{
    return sizeHint();
}

// ---------------------------------------------------------------------------------------

class VwaDoublePrivate
{
public:
    VwaDouble::_SpinBox* spinBox = nullptr;
    double step = UNDEFINED;
    int powerValue = 1;
    KbbStringFormat format = KbbUserStringFormats::getStringFormat(KbuEUnitClass::NONE);
};

VwaDouble::VwaDouble(QWidget* parent)
    : VwaANumeric(parent)
    , VwaNumericValue(-99.0, 99.0)
    , _d(new VwaDoublePrivate)
{
    _d->spinBox = new _SpinBox(this);
    _setSpinBox(_d->spinBox);
}

VwaDouble::~VwaDouble() = default;

double VwaDouble::getValue() const
{
    return _value;
}

void VwaDouble::setValue(double value)
{
    _setValue(value);
}

double VwaDouble::getAutoValue() const
{
    return _autoValue;
}

void VwaDouble::setAutoValue(double value)
{
    _setAutoValue(value);
}

void VwaDouble::_resetToAutoValue()
{
    _setValue(_autoValue);
}

double VwaDouble::getMinimum() const
{
    return _minimum;
}

void VwaDouble::setMinimum(double minimum)
{
    _setBound(_minimum, minimum, isMinimumDefined(), "setMinimum");
}

double VwaDouble::getMaximum() const
{
    return _maximum;
}

void VwaDouble::setMaximum(double maximum)
{
    _setBound(_maximum, maximum, isMaximumDefined(), "setMaximum");
}

double VwaDouble::getStep() const
{
    return _d->step;
}

void VwaDouble::setStep(double step)
{
    if (step == _d->step)
        return;
    _d->step = step;
    _updateWidget();
}

void VwaDouble::setDisplayFormat(const KbbStringFormat& format, int powerValue)
{
    if (format == _d->format && powerValue == _d->powerValue)
        return;
    _d->format = format;
    _d->powerValue = powerValue;
    _updateWidget();
}

const KbbStringFormat& VwaDouble::getFormat() const
{
    return _d->format;
}

int VwaDouble::getPowerValue() const
{
    return _d->powerValue;
}

QString VwaDouble::getPrefix() const
{
    return _d->spinBox->prefix();
}

void VwaDouble::setPrefix(const QString& prefix)
{
    if (prefix == _d->spinBox->prefix())
        return;
    _d->spinBox->setPrefix(prefix);
    _updateWidget();
}

bool VwaDouble::isUndefineEnabled() const
{
    return _d->spinBox->isUndefineEnabled();
}

void VwaDouble::setUndefineEnabled(bool enabled)
{
    if (enabled == _d->spinBox->isUndefineEnabled())
        return;
    _d->spinBox->setUndefineEnabled(enabled);
    if (enabled)
        _updateWidget();
    else
        _validate();
}

void VwaDouble::selectAll()
{
    _d->spinBox->selectAll();
}

void VwaDouble::_updateSpinBox()
{
    _SpinBox* spinBox = _d->spinBox;
    spinBox->setRange(isMinimumDefined() ? _minimum : UNDEFINED, isMaximumDefined() ? _maximum : UNDEFINED);
    spinBox->setFormat(_d->format, _d->powerValue);
    spinBox->setStep(_d->step);
    spinBox->setValue(_value);
}

QString VwaDouble::_getTextFromValue() const
{
    return numberText(_value, _d->spinBox->prefix(), _d->format, _d->powerValue);
}

void VwaDouble::_validate()
{
    _validateValues();
}
