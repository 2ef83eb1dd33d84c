#pragma once
// Editor of a value chosen from a list of items, each with a label and a key; the value is
// the key of the current item. Made editable, it lets the user type a label (Return,
// Enter or leaving the field commits it) and can then accept new items or no item at all.
// Mouse and keys: those of a drop-down (click, arrows, wheel while focused), plus the
// automatic and lock buttons of the base.

#include <velmora_widget_export.h>

#include <VwaAWidget.h>

#include <QIcon>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QVariant>

class VpaItemDef;
class VwaComboBoxBase;

class VELMORA_WIDGET_EXPORT VwaComboBox : public VwaAWidget
{
    Q_OBJECT
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(bool frame READ hasFrame WRITE setFrame)
    Q_PROPERTY(bool aspectButton READ hasButtonAspect WRITE setButtonAspect)
    Q_PROPERTY(bool editable READ isEditable WRITE setEditable)
    Q_PROPERTY(bool newItemAccepted READ isNewItemAccepted WRITE setNewItemAccepted)
    Q_PROPERTY(bool noItemAccepted READ isNoItemAccepted WRITE setNoItemAccepted)
    Q_PROPERTY(QVariant autoValue READ getAutoValue WRITE setAutoValue)
public:
    // One item as the caller describes it.
    class VELMORA_WIDGET_EXPORT Display
    {
    public:
        Display(const QString& label, const QVariant& key = QVariant(), const QIcon& icon = QIcon(),
                bool enabled = true);
        // The definition's integer key becomes the key; its icon id is resolved here.
        Display(const VpaItemDef& definition);
        Display(const Display&) = default;
        Display(Display&&) = default;
        Display& operator=(const Display&) = default;
        Display& operator=(Display&&) = default;

        // A record that addItem turns into a separator line.
        static Display separator();

        QString label;
        QVariant key;
        QIcon icon;
        bool enabled = true;
        QString tooltip;
        bool isSeparator = false;
    };

    explicit VwaComboBox(QWidget* parent = nullptr);
    ~VwaComboBox() override;

    void addItem(const Display& display);
    // Always an ordinary item, even for a separator record.
    void insertItem(int index, const Display& display);
    // Label and key are both the text.
    void addItem(const QString& text);
    void addItems(const QStringList& texts);
    void addSeparator();
    void removeItem(int index);
    void clear();
    int count() const;

    // Refill the items. The current key stays current when an item still has it.
    void reset(const QList<Display>& displays);
    void reset(const QStringList& texts);
    void reset(const QMap<int, QString>& labels);

    // First item with exactly this key, or -1.
    int findKey(const QVariant& key) const;
    // An item without a key gives its label.
    QVariant getKey(int index) const;
    QVariant getCurrentKey() const;
    int getCurrentIndex() const;
    QString getCurrentLabel() const;
    // The labels added through the editor, in item order.
    QStringList getLabels() const;
    void setItemData(int index, const QVariant& value, int role = Qt::UserRole);

    QVariant getAutoValue() const;

    bool isReadOnly() const;
    void setReadOnly(bool readOnly) override;
    bool hasFrame() const;
    void setFrame(bool frame);
    bool hasButtonAspect() const;
    void setButtonAspect(bool buttonAspect);
    bool isEditable() const;
    void setEditable(bool editable);
    bool isNewItemAccepted() const;
    void setNewItemAccepted(bool accepted);
    bool isNoItemAccepted() const;
    void setNoItemAccepted(bool accepted);
    QIcon getNewIcon() const;
    // Given to the items the user creates by typing.
    void setNewIcon(const QIcon& icon);

public Q_SLOTS:
    void setCurrentKey(const QVariant& key);
    // While the editor is automatic, the new automatic key also becomes current.
    void setAutoValue(const QVariant& key);
    // -1 for no item.
    void setCurrentIndex(int index);

Q_SIGNALS:
    void currentIndexChanged(int index);
    void currentKeyChanged(const QVariant& key);

protected:
    class _Combo;
    VwaComboBoxBase* _getCombo() const;

    // The one place where the value changes.
    void _setCurrentValues(int index, const QVariant& key);

protected Q_SLOTS:
    void _resetToAutoValue() override;
    void _updateWidgetStyle() override;

private:
    void _refreshCombo();
    void _insert(int index, const Display& display);
    void _refill(const QList<Display>& displays);
    int _findLabel(const QString& label) const;
    QVariant _storedKey(int index) const;
    bool _isSeparator(int index) const;
    bool _isChoosable(int index) const;
    int _labelPosition(int index) const;
    void _userChose(int index);
    void _editTextChanged(const QString& text);
    void _commitEditText();
    void _showCurrent();

    _Combo* const _combo;
    QVariant _currentKey;
    QVariant _autoValue;
    int _currentIndex = -1;
};
