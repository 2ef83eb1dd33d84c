#pragma once
// Editor of one integer: a spin box with prefix and suffix (read back in any case),
// optional bounds, and optionally the undefined value (KbbGlobal::I_FFFF, an empty field).
// Keys: type and confirm with Enter or by leaving the field; Up/Down step once,
// Page Up/Page Down ten times. The wheel steps only after a click into the field.

#include <velmora_widget_export.h>

#include <VwaANumeric.h>
#include <VwaNumericValue.h>

#include <memory>

class VELMORA_WIDGET_EXPORT VwaInteger : public VwaANumeric, private VwaNumericValue<int, VwaInteger>
{
    Q_OBJECT
    Q_PROPERTY(int value READ getValue WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(int minValue READ getMinimum WRITE setMinimum)
    Q_PROPERTY(int maxValue READ getMaximum WRITE setMaximum)
    Q_PROPERTY(int step READ getStep WRITE setStep)
    Q_PROPERTY(bool undefineEnabled READ isUndefineEnabled WRITE setUndefineEnabled)
    Q_PROPERTY(int autoValue READ getAutoValue WRITE setAutoValue)
    Q_PROPERTY(QString prefix READ getPrefix WRITE setPrefix)
    Q_PROPERTY(QString suffix READ getSuffix WRITE setSuffix)
public:
    explicit VwaInteger(QWidget* parent = nullptr);
    ~VwaInteger() override;

    int getValue() const;
    int getAutoValue() const;

    int getMinimum() const;
    void setMinimum(int minimum);
    int getMaximum() const;
    void setMaximum(int maximum);

    int getStep() const;
    void setStep(int step);

    QString getPrefix() const;
    void setPrefix(const QString& prefix);
    QString getSuffix() const;
    void setSuffix(const QString& suffix);

    bool isUndefineEnabled() const;
    void setUndefineEnabled(bool enabled);

public Q_SLOTS:
    void setValue(int value);
    void setAutoValue(int value);
    void selectAll();

Q_SIGNALS:
    void valueChanged(int value);
    // The user confirmed an entry with Enter (even one equal to the value).
    void valueChangedByEnter();

protected:
    void _updateSpinBox() override;
    QString _getTextFromValue() const override;
    void _validate() override;
    void _resetToAutoValue() override;

private:
    friend class VwaIntegerPrivate;
    friend class VwaNumericValue<int, VwaInteger>;
    class _SpinBox;

    std::unique_ptr<class VwaIntegerPrivate> const _d;
};
