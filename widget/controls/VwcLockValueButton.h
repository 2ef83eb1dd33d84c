#pragma once
// The lock button of the value editors: a checkable padlock; checked means the user has
// locked the value. What a lock means is up to whoever listens to lockToggled. Click or
// Space toggles it.

#include <velmora_widget_export.h>

#include <VwcToolButton.h>

class VELMORA_WIDGET_EXPORT VwcLockValueButton : public VwcToolButton
{
    Q_OBJECT
    Q_PROPERTY(bool isLocked READ isLocked WRITE setLocked NOTIFY lockToggled)
public:
    explicit VwcLockValueButton(QWidget* parent = nullptr);
    ~VwcLockValueButton() override;

    bool isLocked() const;
    void setLocked(bool locked);

Q_SIGNALS:
    void lockToggled(bool locked);
};
