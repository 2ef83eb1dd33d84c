#pragma once
// The value rules the number editors share, over their number type: normalising a number
// to the undefined value and the bounds in force, the automatic value, and the check that
// follows a bound or the undefined value being switched on or off. Editor (VwaDouble,
// VwaInteger) derives from it privately, declares it a friend, and provides
// isUndefineEnabled(), _updateWidget() and the signal valueChanged(T).

#include <KbbGlobal.h>

#include <QAbstractSpinBox>
#include <QtGlobal>
#include <cmath>

template <class T>
constexpr T vwaUndefined();
template <>
constexpr double vwaUndefined<double>()
{
    return KbbGlobal::D_FFFF;
}
template <>
constexpr int vwaUndefined<int>()
{
    return KbbGlobal::I_FFFF;
}

// Which step buttons a number spin box offers: none while read-only or undefined, both
// when it wraps, otherwise each one while its bound (the undefined value: none) is not reached.
template <class T>
QAbstractSpinBox::StepEnabled vwaStepEnabled(const QAbstractSpinBox& spinBox, bool undefineEnabled, T value,
                                             T minimum, T maximum)
{
    if (spinBox.isReadOnly() || (undefineEnabled && value == vwaUndefined<T>()))
        return QAbstractSpinBox::StepNone;
    if (spinBox.wrapping())
        return QAbstractSpinBox::StepUpEnabled | QAbstractSpinBox::StepDownEnabled;
    QAbstractSpinBox::StepEnabled enabled = QAbstractSpinBox::StepNone;
    if (maximum == vwaUndefined<T>() || value < maximum)
        enabled |= QAbstractSpinBox::StepUpEnabled;
    if (minimum == vwaUndefined<T>() || value > minimum)
        enabled |= QAbstractSpinBox::StepDownEnabled;
    return enabled;
}

template <class T, class Editor>
class VwaNumericValue
{
protected:
    static constexpr T UNDEFINED = vwaUndefined<T>();

    VwaNumericValue(T minimum, T maximum)
        : _minimum(minimum)
        , _maximum(maximum)
    {
    }

    T _normalized(T value) const
    {
        const Editor& e = _editor();
        if (value == UNDEFINED && e.isUndefineEnabled())
            return value;
        // NaN and infinities are no values a user could see or type.
        if (value == UNDEFINED || !std::isfinite(double(value)))
            value = T(0);
        if (e.isMinimumDefined() && value < _minimum)
            value = _minimum;
        if (e.isMaximumDefined() && value > _maximum)
            value = _maximum;
        return value;
    }

    void _setValue(T value)
    {
        value = _normalized(value);
        if (value != _value)
            _store(value);
    }

    void _setAutoValue(T value)
    {
        value = _normalized(value);
        if (value == _autoValue)
            return;
        _autoValue = value;
        if (_editor().isAutomatic() && value != _value)
            _store(value);
    }

    // A value the user typed or stepped to: it leaves the automatic state.
    void _userEdited(T value)
    {
        const T before = _value;
        _editor().setAutomatic(false);
        _setValue(value);
        // Normalised back to the stored value: the field must show that one again.
        if (_value == before)
            _editor()._updateWidget();
    }

    void _setBound(T& bound, T value, bool inForce, const char* operation)
    {
        if (value == UNDEFINED || !std::isfinite(double(value))) {
            qWarning("%s::%s: the undefined value or a non-finite number is no bound, ignored",
                     Editor::staticMetaObject.className(), operation);
            return;
        }
        if (value == bound)
            return;
        bound = value;
        if (inForce)
            _validateValues();
    }

    // After a bound came into force or undefined values were switched off.
    void _validateValues()
    {
        Editor& e = _editor();
        if (e.isAutomaticEnabled() && _normalized(_autoValue) != _autoValue) {
            e.setAutomatic(false);
            e.setAutomaticEnabled(false);
        }
        const T value = _normalized(_value);
        if (value != _value)
            _store(value);
        else
            e._updateWidget();
    }

    T _value = T(0);
    T _autoValue = T(0);
    T _minimum;
    T _maximum;

private:
    void _store(T value)
    {
        _value = value;
        _editor()._updateWidget();
        emit _editor().valueChanged(value);
    }

    Editor& _editor() { return static_cast<Editor&>(*this); }
    const Editor& _editor() const { return static_cast<const Editor&>(*this); }
};
