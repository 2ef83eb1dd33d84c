#pragma once
// Base of every value editor. Each subclass keeps its own typed value; the base gives the
// common frame: an optional automatic button (toggle for "automatic", or push to reset to
// the automatic value), an optional lock button, the widget style, read-only switching and
// style-sheet painting. Mouse and keys: those of the two buttons (click or Space).
// The buttons asked for exist, hidden, from construction, so that style sheets and
// findChild reach them by name ("automaticButton", "lockValueButton").

#include <velmora_widget_export.h>

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class VwcAutomaticButton;
class VwcLockValueButton;

class VELMORA_WIDGET_EXPORT VwaAWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(WidgetStyle widgetStyle READ getWidgetStyle WRITE setWidgetStyle)
    Q_PROPERTY(AutoMode automaticMode READ getAutomaticMode WRITE setAutomaticMode)
    Q_PROPERTY(bool automaticEnabled READ isAutomaticEnabled WRITE setAutomaticEnabled)
    Q_PROPERTY(bool isAutomatic READ isAutomatic WRITE setAutomatic NOTIFY automaticToggled)
    Q_PROPERTY(bool lockAvailable READ isLockValueAvailable WRITE setLockValueAvailable)
    Q_PROPERTY(bool isValueLocked READ isValueLocked WRITE setValueLocked NOTIFY lockValueToggled)
public:
    enum WidgetStyle : qint32 {
        NORMAL = 0,
        // Inside a table cell or a composite editor: subclasses drop frames and spacing.
        EMBEDDED = 1
    };
    Q_ENUM(WidgetStyle)

    enum AutoMode : qint32 {
        AUTO_SET_STATE = 0, // checkable: checked means the value is automatic
        AUTO_SET_VALUE = 1, // push: each click resets the value to the automatic one
        AUTO_SET_NONE = 2   // no automatic behaviour, button hidden
    };
    Q_ENUM(AutoMode)

    ~VwaAWidget() override;

    WidgetStyle getWidgetStyle() const;
    void setWidgetStyle(WidgetStyle style);

    // AUTO_SET_NONE when there is no automatic button.
    AutoMode getAutomaticMode() const;
    // Also shows the button for the two active modes and hides it for AUTO_SET_NONE.
    void setAutomaticMode(AutoMode mode);

    bool isAutomatic() const;
    void setAutomatic(bool automatic);

    bool isAutomaticEnabled() const;
    void setAutomaticEnabled(bool enabled);

    bool isLockValueAvailable() const;
    void setLockValueAvailable(bool available);

    bool isValueLocked() const;
    void setValueLocked(bool locked);

public Q_SLOTS:
    virtual void setReadOnly(bool readOnly);

Q_SIGNALS:
    void automaticToggled(bool automatic);
    void lockValueToggled(bool locked);

protected:
    VwaAWidget(QWidget* parent, bool withAutomaticButton, bool withLockButton);

    // The widget that fills the editor (a spin box's stack, a combo). Alone, it is sized
    // to the editor without a layout; it becomes the first widget of the row layout once
    // a button that is still the editor's own child is shown beside it. The editor's size
    // policy is the subclass's to set.
    void _setMainWidget(QWidget* widget);
    QWidget* _getMainWidget() const;
    // The row: main widget, automatic button, lock button, then what the subclass adds.
    // Made on first use; _getRowLayout() is null until then.
    QHBoxLayout* _rowLayout();
    QHBoxLayout* _getRowLayout() const;

    // For a subclass that lays the buttons out itself; null when the editor was built
    // without them.
    QWidget* _getAutomaticButton() const;
    QWidget* _getLockValueButton() const;
    // Hides both buttons (a read-only editor offers none), or shows those the state asks for.
    void _setButtonsShown(bool shown);

    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

public:
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected Q_SLOTS:
    virtual void _resetToAutoValue() = 0;
    virtual void _updateWidgetStyle();

private:
    void _automaticToggled(bool on);
    void _placeButton(QWidget* button);

    WidgetStyle _widgetStyle = NORMAL;
    bool _lockAvailable = false;
    bool _buttonsShown = true;
    VwcAutomaticButton* _automaticButton = nullptr;
    VwcLockValueButton* _lockButton = nullptr;
    QPointer<QWidget> _mainWidget;
    QHBoxLayout* _row = nullptr;
};
