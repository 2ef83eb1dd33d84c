// The choice editor driven as a user drives it: choices from the list, the keys and the
// wheel, typed labels in an editable combo, calls from code, and the automatic state.

#include "DataRow.h"
#include "EditorInput.h"

#include <VpaItemDef.h>
#include <VuaResourceProvider.h>
#include <VwaComboBox.h>
#include <VwcAutomaticButton.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>
#include <algorithm>
#include <functional>
#include <memory>

using Operation = std::function<void(VwaComboBox&)>;
Q_DECLARE_METATYPE(Operation)

namespace {

// Apple "a", Banana "b" (with a tooltip), Cherry 3, Damson 9 (disabled); Apple current.
std::unique_ptr<VwaComboBox> makeEditor(bool editable = false, QWidget* host = nullptr)
{
    auto editor = std::make_unique<VwaComboBox>(host);
    if (host)
        host->layout()->addWidget(editor.get());
    editor->addItem(VwaComboBox::Display(QStringLiteral("Apple"), QStringLiteral("a")));
    VwaComboBox::Display banana(QStringLiteral("Banana"), QStringLiteral("b"));
    banana.tooltip = QStringLiteral("Yellow");
    editor->addItem(banana);
    editor->addItem(VwaComboBox::Display(QStringLiteral("Cherry"), 3));
    editor->addItem(VpaItemDef(9, QStringLiteral("Damson"), false, QStringLiteral("Out of season")));
    editor->setEditable(editable);
    editor->setCurrentIndex(0);
    editor->window()->show();
    QApplication::setActiveWindow(editor->window());
    editor->setFocus();
    return editor;
}

QComboBox* comboOf(const VwaComboBox& editor)
{
    return editor.findChild<QComboBox*>(QStringLiteral("combo"));
}

// What a listener and a user see agree with what the editor says.
void checkConsistent(const VwaComboBox& editor, const QSignalSpy& keySpy)
{
    QComboBox* combo = comboOf(editor);
    const int index = editor.getCurrentIndex();
    QCOMPARE(combo->currentIndex(), index);
    QCOMPARE(combo->currentText(), index >= 0 ? combo->itemText(index) : QString());
    if (!keySpy.isEmpty())
        QCOMPARE(keySpy.last().at(0), editor.getCurrentKey());
}

void chooseInPopup(QComboBox* combo, int row)
{
    QTest::mouseClick(combo, Qt::LeftButton);
    QAbstractItemView* view = combo->view();
    QTRY_VERIFY(view->isVisible());
    const QPoint at = view->visualRect(view->model()->index(row, 0)).center();
    QTest::mouseMove(view->viewport(), at); // the list follows the pointer
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, at);
}

// Read-only gestures come last.
enum Gesture { Popup, Down, Wheel, WheelUnfocused, ReadOnlyClick, ReadOnlyDown, ReadOnlyWheel, ReadOnlyTyping };

} // namespace

Q_DECLARE_METATYPE(Gesture)

// The column types of the tables below.
using OperationsFromCodeRow = Row<Operation, QString, int, QVariant, QList<int>, int, bool>;
using UserChoosesRow = Row<Gesture, int, int, int, QString>;
using TypedTextRow = Row<bool, bool, QString, Qt::Key, int, QVariant>;

class TestVwaComboBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { VuaResourceProvider::setUseThemeIcons(false); }

    void operationsFromCode_data()
    {
        OperationsFromCodeRow::addColumns(); // operation, warning, expectedIndex, expectedKey, indexSignals, keySignals, automatic

        const QVariant a("a"), null;
        auto row = [](const char* name, Operation op, const QString& warning, int index, const QVariant& key,
                      const QList<int>& indexSignals, int keySignals, bool automatic = false) {
            QTest::newRow(name) << op << warning << index << key << indexSignals << keySignals << automatic;
        };
        auto key = [](const QVariant& k) { return Operation([k](VwaComboBox& e) { e.setCurrentKey(k); }); };
        row("text key", key("b"), {}, 1, QVariant("b"), {1}, 1);
        row("integer key", key(3), {}, 2, 3, {2}, 1);
        row("label of an integer-keyed item stores the text", key("Cherry"), {}, 2, QVariant("Cherry"), {2}, 1);
        row("label of the current item: same index, new key", key("Apple"), {}, 0, QVariant("Apple"), {}, 1);
        row("current key again", key("a"), {}, 0, a, {}, 0);
        row("unknown key", key("zz"), "setCurrentKey", 0, a, {}, 0);
        row("digits are no integer key", key("3"), "setCurrentKey", 0, a, {}, 0);
        row("null key", key(null), {}, 0, a, {}, 0);
        row("disabled item from code", key(9), {}, 3, 9, {3}, 1);
        row("index -1", [](VwaComboBox& e) { e.setCurrentIndex(-1); }, {}, -1, null, {-1}, 1);
        row("index out of range", [](VwaComboBox& e) { e.setCurrentIndex(4); }, "setCurrentIndex", 0, a, {}, 0);
        row("separator record inserted as an item before the current one",
            [](VwaComboBox& e) { e.insertItem(0, VwaComboBox::Display::separator()); }, {}, 1, a, {1}, 0);
        row("remove the current item", [](VwaComboBox& e) { e.removeItem(0); }, {}, -1, null, {-1}, 1);
        row("reset keeps a key still there", [](VwaComboBox& e) { e.reset(QStringList{"x", "a"}); }, {}, 1, a, {1}, 0);
        row("reset without the key", [](VwaComboBox& e) { e.reset(QStringList{"x"}); }, {}, -1, null, {-1}, 1);
        row("reset from an integer map, then its key",
            [](VwaComboBox& e) {
                e.reset(QMap<int, QString>{{1, "One"}, {3, "Three"}});
                e.setCurrentKey(3);
            },
            {}, 1, 3, {-1, 1}, 2);
        row("clear", [](VwaComboBox& e) { e.clear(); }, {}, -1, null, {-1}, 1);
        // The automatic key is 3 (Cherry); `automatically` makes the editor automatic first.
        auto click = [](VwaComboBox& e) {
            QTest::mouseClick(e.findChild<QWidget*>(QStringLiteral("automaticButton")), Qt::LeftButton);
        };
        auto automatically = [click](const Operation& then) {
            return Operation([=](VwaComboBox& e) {
                e.setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
                e.setAutoValue(3);
                click(e);
                then(e);
            });
        };
        const Operation choose = [](VwaComboBox& e) { chooseInPopup(comboOf(e), 1); };
        const Operation autoKey = [](VwaComboBox& e) { e.setAutoValue("b"); };
        row("automatic: the automatic key", automatically([](VwaComboBox&) {}), {}, 2, 3, {2}, 1, true);
        row("automatic: a user choice leaves it", automatically(choose), {}, 1, QVariant("b"), {2, 1}, 2);
        row("automatic: a key from code keeps it", automatically(key("b")), {}, 1, QVariant("b"), {2, 1}, 2, true);
        row("automatic: a new automatic key is followed", automatically(autoKey), {}, 1, QVariant("b"), {2, 1}, 2, true);
        row("not automatic: a new automatic key is only kept",
            [=](VwaComboBox& e) { e.setAutomaticMode(VwaAWidget::AUTO_SET_STATE); autoKey(e); }, {}, 0, a, {}, 0);
        row("reset mode: a new automatic key waits for a click",
            [=](VwaComboBox& e) { e.setAutomaticMode(VwaAWidget::AUTO_SET_VALUE); autoKey(e); click(e); }, {}, 1,
            QVariant("b"), {1}, 1);
    }
    void operationsFromCode()
    {
        const auto [operation, warning, expectedIndex, expectedKey, indexSignals, keySignals, automatic] = OperationsFromCodeRow::fetch();

        auto editor = makeEditor();
        QSignalSpy indexSpy(editor.get(), &VwaComboBox::currentIndexChanged);
        QSignalSpy keySpy(editor.get(), &VwaComboBox::currentKeyChanged);
        if (!warning.isEmpty())
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^VwaComboBox::" + warning + ": "));
        operation(*editor);

        QCOMPARE(editor->getCurrentIndex(), expectedIndex);
        QCOMPARE(editor->getCurrentKey(), expectedKey);
        QCOMPARE(editor->getCurrentKey().userType(), expectedKey.userType());
        QCOMPARE(EditorInput::firstArguments<int>(indexSpy), indexSignals);
        QCOMPARE(keySpy.count(), keySignals);
        QCOMPARE(editor->isAutomatic(), automatic);
        checkConsistent(*editor, keySpy);
        // Only the disabled record's item refuses the user; no separator slipped in.
        QComboBox* combo = comboOf(*editor);
        int refusing = 0;
        for (int i = 0; i < combo->count(); ++i)
            refusing += combo->model()->flags(combo->model()->index(i, 0)).testFlag(Qt::ItemIsEnabled) ? 0 : 1;
        QCOMPARE(refusing, editor->findKey(9) >= 0 ? 1 : 0);
    }

    void userChooses_data()
    {
        // target: row clicked, or number of Down presses
        UserChoosesRow::addColumns(); // gesture, startIndex, target, expectedIndex, expectedTooltip

        QTest::newRow("popup: another item") << Popup << 0 << 1 << 1 << "Yellow";
        QTest::newRow("popup: item without tooltip shows its label") << Popup << 0 << 2 << 2 << "Cherry";
        QTest::newRow("popup: the current item again") << Popup << 1 << 1 << 1 << "Yellow";
        QTest::newRow("popup: disabled item") << Popup << 2 << 3 << 2 << "Cherry";
        QTest::newRow("Down: next item") << Down << 0 << 1 << 1 << "Yellow";
        QTest::newRow("Down past the end stops before the disabled item") << Down << 1 << 3 << 2 << "Cherry";
        QTest::newRow("wheel while focused: next item") << Wheel << 0 << 1 << 1 << "Yellow";
        QTest::newRow("wheel without focus is left to the form") << WheelUnfocused << 0 << 1 << 0 << "Apple";
        QTest::newRow("read-only: a click opens no list") << ReadOnlyClick << 0 << 1 << 0 << "Apple";
        QTest::newRow("read-only: Down chooses nothing") << ReadOnlyDown << 0 << 1 << 0 << "Apple";
        QTest::newRow("read-only: the wheel chooses nothing") << ReadOnlyWheel << 0 << 1 << 0 << "Apple";
        QTest::newRow("read-only editable: a typed label is not taken") << ReadOnlyTyping << 0 << 1 << 0 << "Apple";
    }
    void userChooses()
    {
        const auto [gesture, startIndex, target, expectedIndex, expectedTooltip] = UserChoosesRow::fetch();

        auto editor = makeEditor(gesture == ReadOnlyTyping);
        editor->setCurrentIndex(startIndex);
        editor->setReadOnly(gesture >= ReadOnlyClick);
        QComboBox* combo = comboOf(*editor);
        QTRY_VERIFY(combo->hasFocus());
        QSignalSpy keySpy(editor.get(), &VwaComboBox::currentKeyChanged);
        switch (gesture) {
        case Popup:
            chooseInPopup(combo, target);
            if (combo->view()->isVisible())
                QTest::keyClick(combo->view(), Qt::Key_Escape);
            break;
        case Down:
        case ReadOnlyDown:
            for (int i = 0; i < target; ++i)
                QTest::keyClick(combo, Qt::Key_Down);
            break;
        case WheelUnfocused:
            combo->clearFocus();
            Q_FALLTHROUGH();
        case Wheel:
        case ReadOnlyWheel:
            QCOMPARE(EditorInput::wheel(combo, -120), gesture == Wheel);
            break;
        case ReadOnlyClick:
            QTest::mouseClick(combo, Qt::LeftButton, {}, QPoint(combo->width() - 5, combo->height() / 2));
            break;
        case ReadOnlyTyping:
            EditorInput::replaceText(combo, QStringLiteral("Cherry"));
            QTest::keyClick(combo, Qt::Key_Return);
            break;
        }
        QVERIFY(!combo->view()->isVisible());
        QCOMPARE(editor->getCurrentIndex(), expectedIndex);
        QCOMPARE(combo->toolTip(), expectedTooltip);
        QCOMPARE(keySpy.count(), expectedIndex == startIndex ? 0 : 1);
        checkConsistent(*editor, keySpy);
    }

    void typedText_data()
    {
        TypedTextRow::addColumns(); // newAccepted, noItemAccepted, typed, commit, expectedIndex, expectedKey

        const Qt::Key enter = Qt::Key_Enter, ret = Qt::Key_Return, tab = Qt::Key_Tab, none = Qt::Key_unknown;
        QTest::newRow("label + Return") << false << false << "Banana" << ret << 1 << QVariant("b");
        QTest::newRow("label in blanks + Enter") << false << false << "  Cherry " << enter << 2 << QVariant(3);
        QTest::newRow("label + Tab away") << false << false << "Banana" << tab << 1 << QVariant("b");
        QTest::newRow("unknown, new refused: label back") << false << false << "Mango" << ret << 0 << QVariant("a");
        QTest::newRow("unknown, new refused, Tab: label back") << false << false << "Mango" << tab << 0 << QVariant("a");
        QTest::newRow("unknown, new accepted: new item") << true << false << "Mango " << ret << 4 << QVariant("Mango");
        QTest::newRow("disabled label, new accepted: label back") << true << false << "Damson" << ret << 0 << QVariant("a");
        QTest::newRow("emptied, no item accepted: none at once") << false << true << "" << none << -1 << QVariant();
        QTest::newRow("emptied, no item refused: label back") << false << false << "" << ret << 0 << QVariant("a");
        QTest::newRow("blanks, no item accepted: none") << false << true << "   " << ret << -1 << QVariant();
        QTest::newRow("blanks, no item refused: label back") << true << false << "   " << tab << 0 << QVariant("a");
        QTest::newRow("other case, new refused: label back") << false << false << "APPLE" << ret << 0 << QVariant("a");
        QTest::newRow("other case, new accepted: own item") << true << false << "bANANA" << ret << 4 << QVariant("bANANA");
        const QString long4k(4096, QLatin1Char('x')), foreign = QString::fromUtf8("\xd7\xa9\xd7\x9c\xd7\x9d \xf0\x9f\x8d\x8f");
        QTest::newRow("4 KB pasted, new accepted: new item") << true << false << long4k << ret << 4 << QVariant(long4k);
        QTest::newRow("right-to-left and emoji pasted: new item") << true << false << foreign << ret << 4 << QVariant(foreign);
        QTest::newRow("control characters pasted: refused") << true << false << "Ki\x01wi\x7f" << ret << 0 << QVariant("a");
        QTest::newRow("line break pasted inside: refused") << true << false << "Ki\nwi" << tab << 0 << QVariant("a");
        QTest::newRow("only a tab pasted: label back") << true << false << "\t" << ret << 0 << QVariant("a");
    }
    void typedText()
    {
        const auto [newAccepted, noItemAccepted, typed, commit, expectedIndex, expectedKey] = TypedTextRow::fetch();

        // In a dialog whose default button must not see the Return, and takes the focus on Tab.
        QDialog dialog;
        new QVBoxLayout(&dialog);
        auto* ok = new QPushButton(QStringLiteral("OK"), &dialog);
        ok->setDefault(true);
        connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
        auto editor = makeEditor(true, &dialog);
        dialog.layout()->addWidget(ok);
        editor->setNewItemAccepted(newAccepted);
        editor->setNoItemAccepted(noItemAccepted);
        QComboBox* combo = comboOf(*editor);
        QTRY_VERIFY(combo->hasFocus());
        QSignalSpy indexSpy(editor.get(), &VwaComboBox::currentIndexChanged);
        QSignalSpy keySpy(editor.get(), &VwaComboBox::currentKeyChanged);

        EditorInput::replaceText(combo, typed);
        if (typed.trimmed().contains(QRegularExpression(QStringLiteral("\\p{Cc}"))))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("control characters refused"));
        if (commit != Qt::Key_unknown)
            QTest::keyClick(combo, commit);

        QCOMPARE(editor->getCurrentIndex(), expectedIndex);
        QCOMPARE(editor->getCurrentKey(), expectedKey);
        QCOMPARE(editor->count(), expectedIndex == 4 ? 5 : 4);
        QCOMPARE(indexSpy.count(), expectedIndex == 0 ? 0 : 1);
        QCOMPARE(keySpy.count(), expectedIndex == 0 ? 0 : 1);
        QVERIFY(dialog.isVisible());
        if (expectedIndex == 4) {
            QCOMPARE(combo->itemIcon(4).cacheKey(), editor->getNewIcon().cacheKey());
            QCOMPARE(editor->getLabels().last(), expectedKey.toString());
        }
        checkConsistent(*editor, keySpy);
    }

    // The buttons sit right of the combo, are hidden on a read-only editor, and an
    // embedded editor keeps them without spacing.
    void buttonsBesideTheCombo()
    {
        auto editor = makeEditor();
        editor->setAutomaticMode(VwaAWidget::AUTO_SET_STATE);
        editor->setLockValueAvailable(true);
        auto* automatic = editor->findChild<QWidget*>(QStringLiteral("automaticButton"));
        auto* lock = editor->findChild<QWidget*>(QStringLiteral("lockValueButton"));
        QVERIFY(automatic->isVisible() && lock->isVisible());
        QVERIFY(comboOf(*editor)->geometry().right() < automatic->geometry().left());
        QVERIFY(automatic->geometry().right() < lock->geometry().left());

        editor->setReadOnly(true);
        QVERIFY(!automatic->isVisible() && !lock->isVisible());
        editor->setReadOnly(false);
        QVERIFY(automatic->isVisible() && lock->isVisible());

        editor->setWidgetStyle(VwaAWidget::EMBEDDED);
        QCOMPARE(editor->layout()->spacing(), 0);
    }
};

QTEST_MAIN(TestVwaComboBox)
#include "tst_vwacombobox.moc"
