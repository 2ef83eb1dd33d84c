#pragma once
// The common drop-down of the library. It takes focus only by click or Tab, and the wheel
// changes its choice only while it has focus, so that scrolling a long form over it
// scrolls the form. Its size follows a few characters rather than its longest item, and
// the list opens wide enough for the items it holds.

#include <velmora_widget_export.h>

#include <QComboBox>

class VELMORA_WIDGET_EXPORT VwaComboBoxBase : public QComboBox
{
    Q_OBJECT
public:
    explicit VwaComboBoxBase(QWidget* parent = nullptr);
    ~VwaComboBoxBase() override;

    void showPopup() override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    mutable QSize _sizeHint;
};
