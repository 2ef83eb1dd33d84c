#pragma once
// Common frame of the single-number editors: a stack ("stackWidget") of two pages, the
// editable page ("rwWidget", its row "rwLayout" holding the spin box "spinbox" with the
// automatic and lock buttons to its right) and a read-only line edit ("lineEdit") that
// shows the value as flat text; optional lower and upper bounds. The concrete editor
// supplies the spin box and its value.
// Keys: those of the spin box; Tab and Backtab always move the focus on. The mouse
// wheel changes the value only once the user has clicked into the editor.

#include <velmora_widget_export.h>

#include <VwaAWidget.h>

#include <QAbstractSpinBox>
#include <memory>

class VELMORA_WIDGET_EXPORT VwaANumeric : public VwaAWidget
{
    Q_OBJECT
    Q_PROPERTY(bool minimumDefined READ isMinimumDefined WRITE setMinimumDefined)
    Q_PROPERTY(bool maximumDefined READ isMaximumDefined WRITE setMaximumDefined)
    Q_PROPERTY(bool wrapping READ isWrapped WRITE setWrapping)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(bool frame READ hasFrame WRITE setFrame)
    Q_PROPERTY(int spacing READ getSpacing WRITE setSpacing)
public:
    ~VwaANumeric() override;

    bool isMinimumDefined() const;
    void setMinimumDefined(bool defined);
    bool isMaximumDefined() const;
    void setMaximumDefined(bool defined);

    bool isWrapped() const;
    void setWrapping(bool wrapping);

    bool isReadOnly() const;
    void setReadOnly(bool readOnly) override;

    // The spin box's frame; false while there is no spin box.
    bool hasFrame() const;
    void setFrame(bool frame);

    // The spin box's step buttons.
    bool isButtonVisible() const;
    void setButtonsVisible(bool visible);

    int getSpacing() const;
    void setSpacing(int spacing);

    // The value as the read-only page shows it.
    QString text() const;

protected:
    VwaANumeric(QWidget* parent);

    // Takes the concrete editor's spin box; called once, from its constructor.
    void _setSpinBox(QAbstractSpinBox* spinBox);
    QAbstractSpinBox* _getSpinBox() const;
    // Pushes the editor's state into the spin box and the read-only page.
    void _updateWidget();

    bool eventFilter(QObject* watched, QEvent* event) override;
    void _updateWidgetStyle() override;

protected Q_SLOTS:
    virtual void _updateSpinBox() = 0;
    virtual QString _getTextFromValue() const = 0;
    // Brings the value (and the automatic value) back within what is now allowed after a
    // bound was switched on or undefined values were switched off.
    virtual void _validate() = 0;

private:
    std::unique_ptr<class VwaANumericPrivate> const _d;
};
