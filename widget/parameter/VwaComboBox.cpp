#include "VwaComboBox.h"

#include <VpaItemDef.h>
#include <VuaResourceProvider.h>
#include <VwaComboBoxBase.h>
#include <VwhStylesheet.h>

#include <QAbstractItemModel>
#include <QCompleter>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>
#include <algorithm>

namespace {

bool isNumber(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

// Keys match exactly: a text never equals a number (QVariant alone would convert "2" to 2),
// and a null key matches nothing.
bool sameKey(const QVariant& a, const QVariant& b)
{
    if (!a.isValid() || !b.isValid())
        return false;
    if (a.userType() == b.userType() || (isNumber(a) && isNumber(b)))
        return a == b;
    return false;
}

bool keysDiffer(const QVariant& a, const QVariant& b)
{
    if (!a.isValid() && !b.isValid())
        return false;
    return !sameKey(a, b);
}

bool hasControlCharacters(const QString& text)
{
    // By code point, so that a character outside the basic plane is not taken for two
    // unprintable halves.
    const QVector<uint> codePoints = text.toUcs4();
    return std::any_of(codePoints.cbegin(), codePoints.cend(), [](uint c) { return !QChar::isPrint(c); });
}

// Without the button aspect the choice reads as text beside its arrow: no frame, no button face.
QString flatStyleSheet()
{
    using namespace Vwh::Stylesheet;
    Stream stream;
    stream.add(QStringLiteral("QComboBox"),
               {borderStyle(QStringLiteral("none")), bgColor(transparent),
                padding(BoxLengths(Length::px(0), Length::px(2)))});
    return stream.getStyleSheet();
}

} // namespace

// The drop-down itself. It keeps the editor's flags, so that its event handlers can act on
// them: read-only swallows the mouse and keys, and an editable combo hands Return, Enter
// and the loss of focus to the editor, which decides what the typed text means.
class VwaComboBox::_Combo : public VwaComboBoxBase
{
    Q_OBJECT
public:
    explicit _Combo(VwaComboBox* owner)
        : VwaComboBoxBase(owner)
        , _owner(owner)
        , _newIcon(VuaResourceProvider::getIcon(Vua::Resource::iconFileNew()))
    {
        setObjectName(QStringLiteral("combo"));
    }

    // Brings the drop-down in line with the flags.
    void refresh(bool embedded)
    {
        if (isEditable() != _editable) {
            const QSignalBlocker blocker(this);
            setEditable(_editable);
            if (_editable) {
                // The editor adds items itself, and only exact labels select one.
                setInsertPolicy(QComboBox::NoInsert);
                if (completer())
                    completer()->setCaseSensitivity(Qt::CaseSensitive);
            }
        }
        if (lineEdit())
            lineEdit()->setReadOnly(_readOnly);
        QComboBox::setFrame(_frame && !embedded);
        const QString sheet = _buttonAspect ? QString() : flatStyleSheet();
        if (styleSheet() != sheet)
            setStyleSheet(sheet);
    }

    void showPopup() override
    {
        if (!_readOnly)
            VwaComboBoxBase::showPopup();
    }

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        if (_readOnly)
            event->ignore();
        else
            VwaComboBoxBase::mousePressEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (_readOnly)
            event->ignore();
        else
            VwaComboBoxBase::mouseReleaseEvent(event);
    }
    void keyPressEvent(QKeyEvent* event) override
    {
        if (_readOnly) {
            event->ignore();
            return;
        }
        // Consumed, so that a dialog's default button does not fire on a typed label.
        if (isEditable() && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
            event->accept();
            _owner->_commitEditText();
            return;
        }
        VwaComboBoxBase::keyPressEvent(event);
    }
    void keyReleaseEvent(QKeyEvent* event) override
    {
        if (_readOnly)
            event->ignore();
        else
            VwaComboBoxBase::keyReleaseEvent(event);
    }
    void wheelEvent(QWheelEvent* event) override
    {
        if (_readOnly)
            event->ignore();
        else
            VwaComboBoxBase::wheelEvent(event);
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        // Committed before QComboBox sees the loss of focus, which would otherwise look
        // the untrimmed text up by itself. Opening the list is no loss of focus.
        if (isEditable() && !_readOnly && event->reason() != Qt::PopupFocusReason)
            _owner->_commitEditText();
        VwaComboBoxBase::focusOutEvent(event);
    }

private:
    friend class VwaComboBox;

    VwaComboBox* const _owner;
    bool _readOnly = false;
    bool _editable = false;
    bool _newItemAccepted = false;
    bool _noItemAccepted = true;
    bool _buttonAspect = true;
    bool _frame = true;
    QIcon _newIcon;
    QStringList _labels;
};

VwaComboBox::Display::Display(const QString& label_, const QVariant& key_, const QIcon& icon_, bool enabled_)
    : label(label_)
    , key(key_)
    , icon(icon_)
    , enabled(enabled_)
{
}

VwaComboBox::Display::Display(const VpaItemDef& definition)
    : label(definition.getLabel())
    , key(definition.getKey())
    , icon(VuaResourceProvider::getIcon(definition.getIcon()))
    , enabled(definition.isEnabled())
    , tooltip(definition.getTooltip())
{
}

VwaComboBox::Display VwaComboBox::Display::separator()
{
    Display display{QString()};
    display.isSeparator = true;
    return display;
}

VwaComboBox::VwaComboBox(QWidget* parent)
    : VwaAWidget(parent, true, true)
    , _combo(new _Combo(this))
{
    setSizePolicy(_combo->sizePolicy());
    _setMainWidget(_combo);
    setFocusProxy(_combo);

    // activated comes from the user only; changes made here block the combo's signals.
    connect(_combo, qOverload<int>(&QComboBox::activated), this, &VwaComboBox::_userChose);
    connect(_combo, &QComboBox::editTextChanged, this, &VwaComboBox::_editTextChanged);
    _combo->refresh(false);
}

VwaComboBox::~VwaComboBox()
{
    // Gone before this editor is: a combo with the focus loses it while it is deleted,
    // and its handler must not reach an editor already taken apart.
    delete _combo;
}

void VwaComboBox::addItem(const Display& display)
{
    if (display.isSeparator)
        addSeparator();
    else
        insertItem(count(), display);
}

void VwaComboBox::insertItem(int index, const Display& display)
{
    index = qBound(0, index, count());
    _insert(index, display);
    // The current item moves down when an item goes in before it.
    if (_currentIndex >= index)
        _setCurrentValues(_currentIndex + 1, _currentKey);
    else
        _showCurrent();
}

void VwaComboBox::addItem(const QString& text)
{
    addItem(Display(text, text));
}

void VwaComboBox::addItems(const QStringList& texts)
{
    for (const QString& text : texts)
        addItem(text);
}

void VwaComboBox::addSeparator()
{
    {
        const QSignalBlocker blocker(_combo);
        _combo->insertSeparator(count());
    }
    // An empty QComboBox makes its first row current by itself.
    _showCurrent();
}

void VwaComboBox::removeItem(int index)
{
    if (index < 0 || index >= count()) {
        qWarning("VwaComboBox::removeItem: index %d out of range [0, %d)", index, count());
        return;
    }
    if (!_isSeparator(index))
        _combo->_labels.removeAt(_labelPosition(index));
    {
        const QSignalBlocker blocker(_combo);
        _combo->removeItem(index);
    }
    // Removing the current item leaves no item rather than a neighbour nobody chose.
    if (index == _currentIndex)
        _setCurrentValues(-1, QVariant());
    else if (index < _currentIndex)
        _setCurrentValues(_currentIndex - 1, _currentKey);
    else
        _showCurrent();
}

void VwaComboBox::clear()
{
    {
        const QSignalBlocker blocker(_combo);
        _combo->clear();
    }
    _combo->_labels.clear();
    _setCurrentValues(-1, QVariant());
}

int VwaComboBox::count() const
{
    return _combo->count();
}

void VwaComboBox::reset(const QList<Display>& displays)
{
    _refill(displays);
}

void VwaComboBox::reset(const QStringList& texts)
{
    QList<Display> displays;
    displays.reserve(texts.size());
    for (const QString& text : texts)
        displays << Display(text, text);
    _refill(displays);
}

void VwaComboBox::reset(const QMap<int, QString>& labels)
{
    QList<Display> displays;
    displays.reserve(labels.size());
    for (auto it = labels.cbegin(); it != labels.cend(); ++it)
        displays << Display(it.value(), it.key());
    _refill(displays);
}

int VwaComboBox::findKey(const QVariant& key) const
{
    for (int i = 0; i < count(); ++i) {
        if (sameKey(_storedKey(i), key))
            return i;
    }
    return -1;
}

QVariant VwaComboBox::getKey(int index) const
{
    if (index < 0 || index >= count()) {
        qWarning("VwaComboBox::getKey: index %d out of range [0, %d)", index, count());
        return QVariant();
    }
    if (_isSeparator(index))
        return QVariant();
    const QVariant key = _storedKey(index);
    return key.isValid() ? key : QVariant(_combo->itemText(index));
}

QVariant VwaComboBox::getCurrentKey() const
{
    return _currentKey;
}

int VwaComboBox::getCurrentIndex() const
{
    return _currentIndex;
}

QString VwaComboBox::getCurrentLabel() const
{
    return _combo->currentText();
}

QStringList VwaComboBox::getLabels() const
{
    return _combo->_labels;
}

void VwaComboBox::setItemData(int index, const QVariant& value, int role)
{
    if (index < 0 || index >= count()) {
        qWarning("VwaComboBox::setItemData: index %d out of range [0, %d)", index, count());
        return;
    }
    _combo->setItemData(index, value, role);
    if (index == _currentIndex)
        _showCurrent();
}

QVariant VwaComboBox::getAutoValue() const
{
    return _autoValue;
}

bool VwaComboBox::isReadOnly() const
{
    return _combo->_readOnly;
}

void VwaComboBox::setReadOnly(bool readOnly)
{
    if (_combo->_readOnly == readOnly)
        return;
    _combo->_readOnly = readOnly;
    // A value the user cannot change has no automatic or lock button to offer.
    _setButtonsShown(!readOnly);
    _refreshCombo();
}

bool VwaComboBox::hasFrame() const
{
    return _combo->_frame;
}

void VwaComboBox::setFrame(bool frame)
{
    if (_combo->_frame == frame)
        return;
    _combo->_frame = frame;
    _refreshCombo();
}

bool VwaComboBox::hasButtonAspect() const
{
    return _combo->_buttonAspect;
}

void VwaComboBox::setButtonAspect(bool buttonAspect)
{
    if (_combo->_buttonAspect == buttonAspect)
        return;
    _combo->_buttonAspect = buttonAspect;
    _refreshCombo();
}

bool VwaComboBox::isEditable() const
{
    return _combo->_editable;
}

void VwaComboBox::setEditable(bool editable)
{
    if (_combo->_editable == editable)
        return;
    _combo->_editable = editable;
    _refreshCombo();
}

bool VwaComboBox::isNewItemAccepted() const
{
    return _combo->_newItemAccepted;
}

void VwaComboBox::setNewItemAccepted(bool accepted)
{
    _combo->_newItemAccepted = accepted;
}

bool VwaComboBox::isNoItemAccepted() const
{
    return _combo->_noItemAccepted;
}

void VwaComboBox::setNoItemAccepted(bool accepted)
{
    _combo->_noItemAccepted = accepted;
}

QIcon VwaComboBox::getNewIcon() const
{
    return _combo->_newIcon;
}

void VwaComboBox::setNewIcon(const QIcon& icon)
{
    _combo->_newIcon = icon;
}

void VwaComboBox::setCurrentKey(const QVariant& key)
{
    int index = findKey(key);
    if (index < 0 && key.isValid())
        index = _findLabel(key.toString());
    if (index < 0) {
        if (key.isValid())
            qWarning("VwaComboBox::setCurrentKey: no item has the key or label \"%s\"", qPrintable(key.toString()));
        return;
    }
    _setCurrentValues(index, key);
}

void VwaComboBox::setAutoValue(const QVariant& key)
{
    _autoValue = key;
    if (isAutomatic())
        setCurrentKey(key);
}

void VwaComboBox::setCurrentIndex(int index)
{
    if (index < -1 || index >= count()) {
        qWarning("VwaComboBox::setCurrentIndex: index %d out of range [-1, %d)", index, count());
        return;
    }
    if (index >= 0 && _isSeparator(index)) {
        qWarning("VwaComboBox::setCurrentIndex: item %d is a separator", index);
        return;
    }
    _setCurrentValues(index, index >= 0 ? _storedKey(index) : QVariant());
}

VwaComboBoxBase* VwaComboBox::_getCombo() const
{
    return _combo;
}

void VwaComboBox::_setCurrentValues(int index, const QVariant& key)
{
    const int oldIndex = _currentIndex;
    const bool keyChanged = keysDiffer(key, _currentKey);
    _currentIndex = index;
    _currentKey = key;
    _showCurrent();
    if (oldIndex != index)
        emit currentIndexChanged(index);
    if (keyChanged)
        emit currentKeyChanged(key);
}

void VwaComboBox::_resetToAutoValue()
{
    setCurrentKey(_autoValue);
}

void VwaComboBox::_updateWidgetStyle()
{
    _rowLayout()->setSpacing(getWidgetStyle() == EMBEDDED ? 0 : -1);
    _refreshCombo();
}

void VwaComboBox::_refreshCombo()
{
    _combo->refresh(getWidgetStyle() == EMBEDDED);
    // A new line edit starts with whatever QComboBox put into it.
    _showCurrent();
}

void VwaComboBox::_insert(int index, const Display& display)
{
    _combo->_labels.insert(_labelPosition(index), display.label);
    const QSignalBlocker blocker(_combo);
    _combo->insertItem(index, display.icon, display.label, display.key);
    if (!display.tooltip.isEmpty())
        _combo->setItemData(index, display.tooltip, Qt::ToolTipRole);
    if (!display.enabled) {
        // Qt's own convention for rows a view shows but does not let one choose: a zero
        // value under UserRole - 1 clears the enabled and selectable flags.
        _combo->setItemData(index, 0, Qt::UserRole - 1);
    }
}

void VwaComboBox::_refill(const QList<Display>& displays)
{
    const QVariant oldKey = _currentKey;
    {
        const QSignalBlocker blocker(_combo);
        _combo->clear();
    }
    _combo->_labels.clear();
    for (const Display& display : displays) {
        if (display.isSeparator) {
            const QSignalBlocker blocker(_combo);
            _combo->insertSeparator(count());
        } else {
            _insert(count(), display);
        }
    }
    int index = findKey(oldKey);
    if (index < 0 && oldKey.isValid())
        index = _findLabel(oldKey.toString());
    _setCurrentValues(index, index >= 0 ? oldKey : QVariant());
}

int VwaComboBox::_findLabel(const QString& label) const
{
    for (int i = 0; i < count(); ++i) {
        if (!_isSeparator(i) && _combo->itemText(i) == label)
            return i;
    }
    return -1;
}

QVariant VwaComboBox::_storedKey(int index) const
{
    return _combo->itemData(index, Qt::UserRole);
}

bool VwaComboBox::_isSeparator(int index) const
{
    return _combo->itemData(index, Qt::AccessibleDescriptionRole).toString() == QLatin1String("separator");
}

bool VwaComboBox::_isChoosable(int index) const
{
    if (index < 0 || index >= count() || _isSeparator(index))
        return false;
    const QAbstractItemModel* model = _combo->model();
    const Qt::ItemFlags flags = model->flags(model->index(index, _combo->modelColumn(), _combo->rootModelIndex()));
    return (flags & Qt::ItemIsEnabled) && (flags & Qt::ItemIsSelectable);
}

int VwaComboBox::_labelPosition(int index) const
{
    int position = 0;
    for (int i = 0; i < index && i < count(); ++i) {
        if (!_isSeparator(i))
            ++position;
    }
    return position;
}

void VwaComboBox::_userChose(int index)
{
    // QComboBox also activates a disabled row whose label was typed; that is no choice.
    if (!_isChoosable(index)) {
        _showCurrent();
        return;
    }
    setAutomatic(false);
    _setCurrentValues(index, _storedKey(index));
}

void VwaComboBox::_editTextChanged(const QString& text)
{
    if (!_combo->_editable || _combo->_readOnly || !_combo->_noItemAccepted || !text.isEmpty())
        return;
    if (_currentIndex == -1)
        return;
    setAutomatic(false);
    _setCurrentValues(-1, QVariant());
}

void VwaComboBox::_commitEditText()
{
    if (!_combo->_editable || _combo->_readOnly || !_combo->lineEdit())
        return;
    const QString text = _combo->lineEdit()->text().trimmed();
    if (text.isEmpty()) {
        if (_combo->_noItemAccepted && _currentIndex != -1) {
            setAutomatic(false);
            _setCurrentValues(-1, QVariant());
        } else {
            _showCurrent();
        }
        return;
    }
    if (hasControlCharacters(text)) {
        qWarning("VwaComboBox: typed text with control characters refused");
        _showCurrent();
        return;
    }
    const int index = _findLabel(text);
    if (index >= 0) {
        if (index != _currentIndex && _isChoosable(index)) {
            setAutomatic(false);
            _setCurrentValues(index, _storedKey(index));
        } else {
            _showCurrent();
        }
        return;
    }
    if (_combo->_newItemAccepted) {
        const int newIndex = count();
        _insert(newIndex, Display(text, text, _combo->_newIcon));
        setAutomatic(false);
        _setCurrentValues(newIndex, text);
        return;
    }
    _showCurrent();
}

void VwaComboBox::_showCurrent()
{
    {
        const QSignalBlocker blocker(_combo);
        if (_combo->currentIndex() != _currentIndex)
            _combo->setCurrentIndex(_currentIndex);
        if (_combo->isEditable()) {
            const QString label = _currentIndex >= 0 ? _combo->itemText(_currentIndex) : QString();
            if (_combo->currentText() != label)
                _combo->setEditText(label);
        }
    }
    const QString tooltip = _currentIndex >= 0 ? _combo->itemData(_currentIndex, Qt::ToolTipRole).toString() : QString();
    _combo->setToolTip(tooltip.isEmpty() ? _combo->currentText() : tooltip);
}

#include "VwaComboBox.moc"
