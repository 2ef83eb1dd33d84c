#pragma once
// The automatic button of the value editors. In state mode it is a toggle: checked means
// the value is automatic (automaticToggled). In set-value mode it is a push button that
// asks for the automatic value once (automaticClicked). In no mode it says nothing.
// Click or Space activates it.

#include <velmora_widget_export.h>

#include <VwaAWidget.h>
#include <VwcToolButton.h>

class VELMORA_WIDGET_EXPORT VwcAutomaticButton : public VwcToolButton
{
    Q_OBJECT
    Q_PROPERTY(VwaAWidget::AutoMode automaticMode READ getAutomaticMode WRITE setAutomaticMode)
    Q_PROPERTY(bool isAutomatic READ isAutomatic WRITE setAutomatic NOTIFY automaticToggled)
public:
    explicit VwcAutomaticButton(QWidget* parent = nullptr);
    ~VwcAutomaticButton() override;

    VwaAWidget::AutoMode getAutomaticMode() const;
    void setAutomaticMode(VwaAWidget::AutoMode mode);

    // True only in state mode and when checked.
    bool isAutomatic() const;
    // Only in state mode; elsewhere the button has no state to set.
    void setAutomatic(bool automatic);

Q_SIGNALS:
    void automaticToggled(bool automatic);
    void automaticClicked();

private:
    VwaAWidget::AutoMode _mode = VwaAWidget::AUTO_SET_NONE;
    // The one connection the current mode made, so that a mode change drops it.
    QMetaObject::Connection _connection;
};
