// Tests of the style-sheet vocabulary: the exact texts of values, declarations, rules and
// the ready-made sheets, and that the built sheets take effect on real widgets.

#include <VwhStyleSheetDialog.h>
#include <VwhStylesheet.h>
#include <VwhTableStylesheet.h>

#include <KbbColor.h>

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPointer>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>
#include <QTableView>
#include <QtTest>

namespace S = Vwh::Stylesheet;

namespace {

// The selectors of a sheet in the order their rules appear.
QStringList selectors(const QString& sheet)
{
    QStringList result;
    for (const QString& line : sheet.split(QLatin1Char('\n'))) {
        if (line.endsWith(QStringLiteral(" {")))
            result << line.chopped(2);
    }
    return result;
}

// The declarations of the rule for exactly this selector.
QStringList declarationsOf(const QString& sheet, const QString& selector)
{
    const QString opening = selector + QStringLiteral(" {\n");
    const int start = sheet.indexOf(opening);
    if (start < 0)
        return {};
    const int end = sheet.indexOf(QStringLiteral("}\n"), start);
    QStringList result;
    for (QString line : sheet.mid(start + opening.size(), end - start - opening.size()).split(QLatin1Char('\n'))) {
        if (!line.isEmpty())
            result << line.trimmed().chopped(1);
    }
    return result;
}

std::unique_ptr<QTableView> makeTable(const QString& styleSheet)
{
    auto view = std::make_unique<QTableView>();
    view->setObjectName(QStringLiteral("tableView"));
    view->horizontalHeader()->setObjectName(QStringLiteral("horizontalHeaderView"));
    view->verticalHeader()->setObjectName(QStringLiteral("verticalHeaderView"));
    auto* model = new QStandardItemModel(3, 2, view.get());
    view->setModel(model);
    view->setStyleSheet(styleSheet);
    view->ensurePolished();
    return view;
}

} // namespace

class TestStylesheet : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void texts_data();
    void texts();
    void streamRules_data();
    void streamRules();
    void emptyKeyWarnsAndStillWrites();
    void colorsReachTheLabelPalette_data();
    void colorsReachTheLabelPalette();
    void scrollBarSheet();
    void scrollBarSheetSizesTheBars();
    void tableSheet_data();
    void tableSheet();
    void tableSheetReachesTheView();
    void actionKeepsSheetAndDialogAppliesAndRestores();
    void dialogClosesWithItsWidget();
};

void TestStylesheet::texts_data()
{
    QTest::addColumn<QString>("actual");
    QTest::addColumn<QString>("expected");

    QTest::newRow("px of zero") << S::Length::px(0) << "0px";
    QTest::newRow("pt") << S::Length::pt(12) << "12pt";
    QTest::newRow("em of a half") << S::Length::em(0.5) << "0.5em";
    QTest::newRow("em whole has no decimals") << S::Length::em(2.0) << "2em";
    QTest::newRow("ex of a quarter") << S::Length::ex(1.25) << "1.25ex";

    QTest::newRow("colour from QColor is lower-case hex")
        << S::Color(QColor(0x11, 0x69, 0xAB)).toString() << "#1169ab";
    QTest::newRow("colour from QColor drops alpha") << S::Color(QColor(255, 0, 0, 128)).toString() << "#ff0000";
    QTest::newRow("colour from Qt global colour is not packed") << S::Color(Qt::blue).toString() << "#0000ff";
    QTest::newRow("colour text as it stands") << S::Color("transparent").toString() << "transparent";
    QTest::newRow("packed red with half alpha")
        << S::Color(quint32(0x80FF0000u)).toString() << "rgba(255,0,0,128)";
    QTest::newRow("packed components in their bytes")
        << S::Color(quint32(0x04010203u)).toString() << "rgba(1,2,3,4)";
    QTest::newRow("record drops alpha") << S::Color(KbbColor(10, 20, 30, 40)).toString() << "rgb(10,20,30)";

    QTest::newRow("box of two") << QString(S::BoxLengths(S::Length::px(1), S::Length::px(2))) << "1px 2px";
    QTest::newRow("box of four in order") << QString(S::BoxLengths("1px", "2pt", "3em", "4ex")) << "1px 2pt 3em 4ex";

    QTest::newRow("background") << S::bgColor(S::gray1) << "background-color: #f0f0f0";
    QTest::newRow("foreground") << S::fgColor(QColor(Qt::white)) << "color: #ffffff";
    QTest::newRow("radius") << S::borderRadius(S::Length::px(4)) << "border-radius: 4px";
    QTest::newRow("icon size") << S::iconSize(S::Length::px(16)) << "icon-size: 16px";
    QTest::newRow("margin of one") << S::margin(S::Length::px(0)) << "margin: 0px";
    QTest::newRow("padding of two") << S::padding({"1px", "2px"}) << "padding: 1px 2px";

    QTest::newRow("border without side or suffix")
        << S::Border(QString(), QStringLiteral("2px dashed red")).toString() << "border: 2px dashed red";
    QTest::newRow("border shorthand") << S::border(S::Length::px(1), "solid", S::grayBorder).toString()
                                      << "border: 1px solid #999999";
    QTest::newRow("border colour on the left") << QString(S::borderColor(S::gray3).left())
                                               << "border-left-color: #a59f9b";
    QTest::newRow("border width on top") << QString(S::borderWidth("2px").top()) << "border-top-width: 2px";
    QTest::newRow("border style at the bottom") << QString(S::borderStyle("dotted").bottom())
                                                << "border-bottom-style: dotted";
    QTest::newRow("border shorthand on the right") << QString(S::border("1px", "solid", S::black).right())
                                                   << "border-right: 1px solid #000000";
    QTest::newRow("last side wins") << QString(S::borderColor(S::white).left().bottom())
                                    << "border-bottom-color: #ffffff";
}

void TestStylesheet::texts()
{
    QFETCH(QString, actual);
    QFETCH(QString, expected);
    QCOMPARE(actual, expected);
}

void TestStylesheet::streamRules_data()
{
    QTest::addColumn<QString>("actual");
    QTest::addColumn<QString>("expected");

    QTest::newRow("fresh stream is empty") << S::Stream().getStyleSheet() << QString();
    QTest::newRow("key with empty list adds nothing")
        << S::Stream().add(QStringLiteral("QLabel"), QStringList()).getStyleSheet() << QString();
    QTest::newRow("rule with two declarations")
        << S::Stream().add(QStringLiteral("QLabel#title"), {S::fgColor(S::black), S::margin("1px")}).getStyleSheet()
        << "QLabel#title {\n  color: #000000;\n  margin: 1px;\n}\n";
    QTest::newRow("bare declarations have no braces")
        << S::Stream().add({S::bgColor(S::white), S::borderColor(S::gray2).top()}).getStyleSheet()
        << "background-color: #ffffff;\nborder-top-color: #d2cfcd;\n";
    QTest::newRow("comment") << S::Stream().comment(QStringLiteral("Tables")).getStyleSheet()
                             << "\n/*=== Tables ===*/\n\n";
    QTest::newRow("pieces append in order")
        << S::Stream()
               .comment(QStringLiteral("A"))
               .add(QStringLiteral("QWidget"), {S::bgColor(S::transparent)})
               .add(QStringLiteral("QFrame"), QStringList())
               .add({S::padding("0px")})
               .getStyleSheet()
        << "\n/*=== A ===*/\n\nQWidget {\n  background-color: transparent;\n}\npadding: 0px;\n";

    S::Stream original;
    original.add({S::fgColor(S::grayHv)});
    S::Stream copy;
    copy = original;
    copy.add({S::bgColor(S::gray1)});
    QTest::newRow("assigned copy grows alone") << original.getStyleSheet() << "color: #4b4038;\n";
}

void TestStylesheet::streamRules()
{
    QFETCH(QString, actual);
    QFETCH(QString, expected);
    QCOMPARE(actual, expected);
}

void TestStylesheet::emptyKeyWarnsAndStillWrites()
{
    QTest::ignoreMessage(QtWarningMsg, "Vwh::Stylesheet::Stream::add(): 'key' is empty. The function "
                                       "(add(QStringList) is probably more appropriated.");
    S::Stream stream;
    stream.add(QString(), {QStringLiteral("color: red")});
    QCOMPARE(stream.getStyleSheet(), QStringLiteral(" {\n  color: red;\n}\n"));
}

void TestStylesheet::colorsReachTheLabelPalette_data()
{
    QTest::addColumn<QString>("background");
    QTest::addColumn<QString>("foreground");
    QTest::addColumn<QColor>("expectedBackground");
    QTest::addColumn<QColor>("expectedForeground");

    QTest::newRow("palette constants") << S::bgColor(S::blueHv) << S::fgColor(S::white) << QColor(0x11, 0x69, 0x81)
                                       << QColor(Qt::white);
    QTest::newRow("packed value keeps its alpha")
        << S::bgColor(S::Color(quint32(0x80FF0000u))) << S::fgColor(S::grayHv) << QColor(255, 0, 0, 128)
        << QColor(0x4b, 0x40, 0x38);
    QTest::newRow("colour record") << S::bgColor(KbbColor(10, 20, 30)) << S::fgColor(Qt::yellow)
                                   << QColor(10, 20, 30) << QColor(Qt::yellow);
}

void TestStylesheet::colorsReachTheLabelPalette()
{
    QFETCH(QString, background);
    QFETCH(QString, foreground);
    QFETCH(QColor, expectedBackground);
    QFETCH(QColor, expectedForeground);

    QLabel label(QStringLiteral("text"));
    label.setStyleSheet(S::Stream().add({background, foreground}).getStyleSheet());
    label.ensurePolished();
    QCOMPARE(label.palette().color(QPalette::Window), expectedBackground);
    QCOMPARE(label.palette().color(QPalette::WindowText), expectedForeground);
}

void TestStylesheet::scrollBarSheet()
{
    S::Stream stream;
    stream.add(QStringLiteral("QWidget"), {S::fgColor(S::black)});
    S::createScrollbarStylesheet(stream);
    const QString sheet = stream.getStyleSheet();

    QVERIFY2(sheet.startsWith(QStringLiteral("QWidget {\n  color: #000000;\n}\n\n/*=== ScrollBars ===*/\n\n")),
             qPrintable(sheet));
    const QStringList expectedSelectors = {
        QStringLiteral("QWidget"),
        QStringLiteral("QScrollBar"),
        QStringLiteral("QScrollBar:hover"),
        QStringLiteral("QScrollBar:vertical"),
        QStringLiteral("QScrollBar:horizontal"),
        QStringLiteral("QScrollBar:vertical:hover"),
        QStringLiteral("QScrollBar:horizontal:hover"),
        QStringLiteral("QAbstractScrollArea::corner"),
        QStringLiteral("QScrollBar::handle:vertical"),
        QStringLiteral("QScrollBar::handle:horizontal"),
        QStringLiteral("QScrollBar::handle:vertical:hover, QScrollBar::handle:horizontal:hover"),
        QStringLiteral("QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical, "
                       "QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal"),
        QStringLiteral("QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical, "
                       "QScrollBar::add-page:horizontal, QScrollBar::sub-page:horizontal"),
    };
    QCOMPARE(selectors(sheet), expectedSelectors);
    QCOMPARE(sheet.count(QLatin1Char('{')), sheet.count(QLatin1Char('}')));

    const QStringList vertical = declarationsOf(sheet, QStringLiteral("QScrollBar:vertical"));
    QVERIFY(vertical.contains(QStringLiteral("width: 15px")));
    QVERIFY(vertical.contains(QStringLiteral("padding-left: 5px")));
    QVERIFY(declarationsOf(sheet, QStringLiteral("QScrollBar:horizontal")).contains(QStringLiteral("height: 15px")));
    const QStringList handle = declarationsOf(sheet, QStringLiteral("QScrollBar::handle:vertical"));
    QVERIFY(handle.contains(QStringLiteral("min-height: 25px")));
    QVERIFY(declarationsOf(sheet, QStringLiteral("QScrollBar::handle:horizontal"))
                .contains(QStringLiteral("min-width: 25px")));
    QVERIFY(sheet.contains(QStringLiteral("  width: 0px;\n  height: 0px;\n")));
}

void TestStylesheet::scrollBarSheetSizesTheBars()
{
    S::Stream stream;
    S::createScrollbarStylesheet(stream);
    QWidget host;
    host.setStyleSheet(stream.getStyleSheet());
    auto* vertical = new QScrollBar(Qt::Vertical, &host);
    auto* horizontal = new QScrollBar(Qt::Horizontal, &host);
    vertical->ensurePolished();
    horizontal->ensurePolished();
    QCOMPARE(vertical->sizeHint().width(), S::scrollBarWidth);
    QCOMPARE(horizontal->sizeHint().height(), S::scrollBarWidth);
}

void TestStylesheet::tableSheet_data()
{
    QTest::addColumn<bool>("headerVisible");
    QTest::addColumn<QList<int>>("rowSizes");
    QTest::addColumn<QStringList>("verticalSection");
    QTest::addColumn<QString>("firstSectionTop");

    const QString frame = QStringLiteral("1px solid #999999");
    QTest::newRow("defaults leave row heights free")
        << true << QList<int>() << QStringList{"border-left: " + frame} << "border-top: none";
    QTest::newRow("hidden header lets the first row close the frame")
        << false << QList<int>() << QStringList{"border-left: " + frame} << "border-top: " + frame;
    QTest::newRow("one size bounds both")
        << true << QList<int>{22} << QStringList{"border-left: " + frame, "min-height: 22px", "max-height: 22px"}
        << "border-top: none";
    QTest::newRow("minimum and maximum")
        << true << QList<int>{18, 40} << QStringList{"border-left: " + frame, "min-height: 18px", "max-height: 40px"}
        << "border-top: none";
    QTest::newRow("maximum below minimum becomes the minimum")
        << true << QList<int>{30, 10} << QStringList{"border-left: " + frame, "min-height: 30px", "max-height: 30px"}
        << "border-top: none";
    QTest::newRow("three sizes are refused")
        << true << QList<int>{1, 2, 3} << QStringList{"border-left: " + frame} << "border-top: none";
}

void TestStylesheet::tableSheet()
{
    QFETCH(bool, headerVisible);
    QFETCH(QList<int>, rowSizes);
    QFETCH(QStringList, verticalSection);
    QFETCH(QString, firstSectionTop);

    VwhTableStylesheet builder;
    builder.setHorizontalHeaderVisible(headerVisible);
    if (!rowSizes.isEmpty()) {
        const bool invalid = rowSizes.size() > 2 || rowSizes.first() < 0 || rowSizes.last() < rowSizes.first();
        if (invalid)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwhTableStylesheet::setRowSizes: ")));
        builder.setRowSizes(rowSizes);
    }
    S::Stream stream;
    builder.buildStyleSheet(stream);
    const QString sheet = stream.getStyleSheet();

    const QStringList expectedSelectors = {
        QStringLiteral("QTableView#tableView"),
        QStringLiteral("QTableView#tableView QTableCornerButton::section"),
        QStringLiteral("QHeaderView#horizontalHeaderView, QHeaderView#verticalHeaderView"),
        QStringLiteral("QHeaderView#horizontalHeaderView::section, QHeaderView#verticalHeaderView::section"),
        QStringLiteral("QHeaderView#horizontalHeaderView::section:horizontal"),
        QStringLiteral("QHeaderView#verticalHeaderView::section:vertical"),
        QStringLiteral("QHeaderView#verticalHeaderView::section:first"),
    };
    QCOMPARE(selectors(sheet), expectedSelectors);

    const QStringList table = declarationsOf(sheet, expectedSelectors.at(0));
    QVERIFY(table.contains(QStringLiteral("gridline-color: #d2cfcd")));
    QVERIFY(table.contains(QStringLiteral("border-right: 1px solid #999999")));
    QVERIFY(table.contains(QStringLiteral("border-bottom: 1px solid #999999")));
    const QStringList sections = declarationsOf(sheet, expectedSelectors.at(3));
    QVERIFY(sections.contains(QStringLiteral("padding-left: 0.5ex")));
    QVERIFY(sections.contains(QStringLiteral("padding-right: 0.5ex")));
    QCOMPARE(declarationsOf(sheet, expectedSelectors.at(4)), QStringList{QStringLiteral("border-top: 1px solid #999999")});
    QCOMPARE(declarationsOf(sheet, expectedSelectors.at(5)), verticalSection);
    QCOMPARE(declarationsOf(sheet, expectedSelectors.at(6)), QStringList{firstSectionTop});
}

void TestStylesheet::tableSheetReachesTheView()
{
    VwhTableStylesheet builder;
    builder.setRowSizes(37, 37);
    S::Stream stream;
    builder.buildStyleSheet(stream);
    const auto view = makeTable(stream.getStyleSheet());

    QStyleOptionViewItem option;
    option.initFrom(view.get());
    const QRgb grid = QRgb(view->style()->styleHint(QStyle::SH_Table_GridLineColor, &option, view.get()));
    QCOMPARE(QColor::fromRgba(grid), QColor(0xd2, 0xcf, 0xcd));
    // The section's bottom line lies outside the content height the sheet bounds.
    QCOMPARE(view->verticalHeader()->sectionSizeHint(0), 37 + 1);
}

void TestStylesheet::actionKeepsSheetAndDialogAppliesAndRestores()
{
    const QString kept = S::Stream().add({S::bgColor(S::gray1)}).getStyleSheet();
    const QString later = S::Stream().add({S::bgColor(S::gray3)}).getStyleSheet();
    const QString edited = S::Stream().add({S::bgColor(S::blueHv)}).getStyleSheet();

    QLabel label(QStringLiteral("text"));
    label.setStyleSheet(kept);
    QAction* action = S::createStyleSheetAction(&label);
    QCOMPARE(action->parent(), &label);
    label.setStyleSheet(later);

    action->trigger();
    VwhStyleSheetDialog* dialog = nullptr;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (auto* d = qobject_cast<VwhStyleSheetDialog*>(w))
            dialog = d;
    }
    QVERIFY(dialog);
    QPointer<VwhStyleSheetDialog> guard(dialog);
    QVERIFY(dialog->isVisible());
    QCOMPARE(dialog->target(), &label);
    QCOMPARE(dialog->editedStyleSheet(), later);
    QCOMPARE(dialog->keptStyleSheet(), kept);
    // The dialog must not take on the sheet it edits.
    QVERIFY(dialog->styleSheet().isEmpty());

    dialog->setEditedStyleSheet(edited);
    QCOMPARE(label.styleSheet(), later);
    dialog->apply();
    QCOMPARE(label.styleSheet(), edited);
    label.ensurePolished();
    QCOMPARE(label.palette().color(QPalette::Window), QColor(0x11, 0x69, 0x81));

    dialog->restore();
    QCOMPARE(label.styleSheet(), kept);
    QCOMPARE(dialog->editedStyleSheet(), kept);
    label.ensurePolished();
    QCOMPARE(label.palette().color(QPalette::Window), QColor(0xf0, 0xf0, 0xf0));

    dialog->close();
    QTRY_VERIFY(guard.isNull());
}

void TestStylesheet::dialogClosesWithItsWidget()
{
    auto* label = new QLabel;
    QPointer<VwhStyleSheetDialog> dialog = new VwhStyleSheetDialog(label, QString());
    delete label;
    QVERIFY(dialog->target() == nullptr);
    dialog->apply();
    dialog->restore();
    QTRY_VERIFY(dialog.isNull());
}

QTEST_MAIN(TestStylesheet)
#include "tst_stylesheet.moc"
