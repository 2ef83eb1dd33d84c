#pragma once
// The common tool button of the library: raised only under the mouse, icon only, with the
// icon size the current style gives small icons, so that buttons placed next to editors
// line up with them. Click or Space activates it, as any QToolButton.

#include <velmora_widget_export.h>

#include <QToolButton>

class VELMORA_WIDGET_EXPORT VwcToolButton : public QToolButton
{
    Q_OBJECT
public:
    explicit VwcToolButton(QWidget* parent = nullptr);
    ~VwcToolButton() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void _updateIconSize();
};
