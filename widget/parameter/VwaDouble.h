#pragma once
// Editor of one real number: a spin box that shows the value in a number format with its
// unit, reads typed text back with the prefix and unit in any case, optionally accepts
// the undefined value (KbbGlobal::D_FFFF, shown as an empty field) and keeps the value
// within the bounds that are switched on.
// Keys: type and confirm with Enter or by leaving the field (Tab, Backtab, a click
// elsewhere); Escape takes back what was typed; Up/Down step once, Page Up/Page Down ten
// times.
// The wheel steps only after a click into the field.

#include <velmora_widget_export.h>

#include <KbbStringFormat.h>
#include <VwaANumeric.h>
#include <VwaNumericValue.h>

#include <QLoggingCategory>
#include <memory>

// Off unless enabled ("halvorn.widget.atomic.double.debug=true"): how typed text was read.
VELMORA_WIDGET_EXPORT Q_DECLARE_LOGGING_CATEGORY(lcVwaDouble)

class VELMORA_WIDGET_EXPORT VwaDouble : public VwaANumeric, private VwaNumericValue<double, VwaDouble>
{
    Q_OBJECT
    Q_PROPERTY(double value READ getValue WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(double minValue READ getMinimum WRITE setMinimum)
    Q_PROPERTY(double maxValue READ getMaximum WRITE setMaximum)
    Q_PROPERTY(double step READ getStep WRITE setStep)
    Q_PROPERTY(bool undefineEnabled READ isUndefineEnabled WRITE setUndefineEnabled)
    Q_PROPERTY(double autoValue READ getAutoValue WRITE setAutoValue)
    Q_PROPERTY(QString prefix READ getPrefix WRITE setPrefix)
public:
    explicit VwaDouble(QWidget* parent = nullptr);
    ~VwaDouble() override;

    double getValue() const;
    double getAutoValue() const;

    double getMinimum() const;
    void setMinimum(double minimum);
    double getMaximum() const;
    void setMaximum(double maximum);

    // KbbGlobal::D_FFFF (the default) steps by one unit of the shown number.
    double getStep() const;
    void setStep(double step);

    // `powerValue` is the power of the format's unit the value is measured in: 2 shows
    // a variance of lengths in "m²", 0 shows no unit.
    void setDisplayFormat(const KbbStringFormat& format, int powerValue = 1);
    const KbbStringFormat& getFormat() const;
    int getPowerValue() const;

    QString getPrefix() const;
    void setPrefix(const QString& prefix);

    bool isUndefineEnabled() const;
    void setUndefineEnabled(bool enabled);

public Q_SLOTS:
    void setValue(double value);
    void setAutoValue(double value);
    void selectAll();

Q_SIGNALS:
    void valueChanged(double value);
    // The user confirmed an entry with Enter (even one equal to the value).
    void valueChangedByEnter();

protected:
    void _updateSpinBox() override;
    QString _getTextFromValue() const override;
    void _validate() override;
    void _resetToAutoValue() override;

private:
    friend class VwaDoublePrivate;
    friend class VwaNumericValue<double, VwaDouble>;
    class _SpinBox;
    class _SpinBoxPrivate;

    std::unique_ptr<class VwaDoublePrivate> const _d;
};
