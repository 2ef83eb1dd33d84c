// The style-sheet vocabulary: the exact texts of values, declarations, rules and the
// ready-made sheets, and that the built sheets take effect on real widgets.

#include "DataRow.h"
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
#include <QStyleOptionSlider>
#include <QStyleOptionViewItem>
#include <QTableView>
#include <QtTest>

namespace S = Vwh::Stylesheet;

namespace {

// The selectors of a sheet in the order their rules appear.
QStringList selectors(const QString& sheet)
{
    QStringList result;
    for (const QString& line : sheet.split(QLatin1Char('\n')))
        if (line.endsWith(QStringLiteral(" {")))
            result << line.chopped(2);
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
    for (const QString& line : sheet.mid(start + opening.size(), end - start - opening.size()).split(QLatin1Char('\n')))
        if (!line.isEmpty())
            result << line.trimmed().chopped(1);
    return result;
}

// A part of a scroll bar as the style lays it out.
QRect scrollBarPart(QScrollBar* bar, QStyle::SubControl part)
{
    QStyleOptionSlider option;
    option.initFrom(bar);
    option.orientation = bar->orientation();
    if (bar->orientation() == Qt::Horizontal)
        option.state |= QStyle::State_Horizontal;
    option.minimum = bar->minimum();
    option.maximum = bar->maximum();
    option.pageStep = bar->pageStep();
    return bar->style()->subControlRect(QStyle::CC_ScrollBar, &option, part, bar);
}

} // namespace

// The column types of the tables below.
using TextsRow = Row<QString, QString>;
using TableSheetRow = Row<bool, QList<int>, QStringList, QString>;

class TestStylesheet : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void texts_data()
    {
        TextsRow::addColumns(); // actual, expected

        QTest::newRow("px of zero") << S::Length::px(0) << "0px";
        QTest::newRow("pt") << S::Length::pt(12) << "12pt";
        QTest::newRow("em of a half") << S::Length::em(0.5) << "0.5em";
        QTest::newRow("em whole has no decimals") << S::Length::em(2.0) << "2em";
        QTest::newRow("ex of a quarter") << S::Length::ex(1.25) << "1.25ex";
        QTest::newRow("colour from QColor is lower-case hex") << S::Color(QColor(0x11, 0x69, 0xAB)).toString() << "#1169ab";
        QTest::newRow("colour from QColor drops alpha") << S::Color(QColor(255, 0, 0, 128)).toString() << "#ff0000";
        QTest::newRow("colour from Qt global colour is not packed") << S::Color(Qt::blue).toString() << "#0000ff";
        QTest::newRow("colour text as it stands") << S::Color("transparent").toString() << "transparent";
        QTest::newRow("packed red with half alpha") << S::Color(quint32(0x80FF0000u)).toString() << "rgba(255,0,0,128)";
        QTest::newRow("packed components in their bytes") << S::Color(quint32(0x04010203u)).toString() << "rgba(1,2,3,4)";
        QTest::newRow("record drops alpha") << S::Color(KbbColor(10, 20, 30, 40)).toString() << "rgb(10,20,30)";
        QTest::newRow("box of two") << QString(S::BoxLengths(S::Length::px(1), S::Length::px(2))) << "1px 2px";
        QTest::newRow("box of four in order") << QString(S::BoxLengths("1px", "2pt", "3em", "4ex")) << "1px 2pt 3em 4ex";
        QTest::newRow("radius") << S::borderRadius(S::Length::px(4)) << "border-radius: 4px";
        QTest::newRow("icon size") << S::iconSize(S::Length::px(16)) << "icon-size: 16px";
        QTest::newRow("padding of two") << S::padding({"1px", "2px"}) << "padding: 1px 2px";
        QTest::newRow("border without side or suffix")
            << S::Border(QString(), QStringLiteral("2px dashed red")).toString() << "border: 2px dashed red";
        QTest::newRow("border colour on the left") << QString(S::borderColor(S::gray3).left()) << "border-left-color: #a59f9b";
        QTest::newRow("border width on top") << QString(S::borderWidth("2px").top()) << "border-top-width: 2px";
        QTest::newRow("border style at the bottom") << QString(S::borderStyle("dotted").bottom())
                                                    << "border-bottom-style: dotted";
        QTest::newRow("border shorthand on the right") << QString(S::border("1px", "solid", S::black).right())
                                                       << "border-right: 1px solid #000000";
        QTest::newRow("last side wins") << QString(S::borderColor(S::white).left().bottom()) << "border-bottom-color: #ffffff";

        QTest::newRow("rule with two declarations")
            << S::Stream().add(QStringLiteral("QLabel#title"), {S::fgColor(S::black), S::margin("1px")}).getStyleSheet()
            << "QLabel#title {\n  color: #000000;\n  margin: 1px;\n}\n";
        QTest::newRow("bare declarations have no braces")
            << S::Stream().add({S::bgColor(S::white), S::borderColor(S::gray2).top()}).getStyleSheet()
            << "background-color: #ffffff;\nborder-top-color: #d2cfcd;\n";
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
    void texts()
    {
        const auto [actual, expected] = TextsRow::fetch();
        QCOMPARE(actual, expected);
    }

    void emptyKeyWarnsAndStillWrites()
    {
        QTest::ignoreMessage(QtWarningMsg, "Vwh::Stylesheet::Stream::add(): 'key' is empty. The function "
                                           "(add(QStringList) is probably more appropriated.");
        S::Stream stream;
        stream.add(QString(), {QStringLiteral("color: red")});
        QCOMPARE(stream.getStyleSheet(), QStringLiteral(" {\n  color: red;\n}\n"));
    }

    // The scroll-bar sheet follows what the stream held, under its comment, with one rule
    // per selector; on real bars it sets the thickness, keeps the handle grabbable and
    // hides the arrow buttons.
    void scrollBarSheet()
    {
        S::Stream stream;
        stream.add(QStringLiteral("QWidget"), {S::fgColor(S::black)});
        S::createScrollbarStylesheet(stream);
        const QString sheet = stream.getStyleSheet();
        QVERIFY2(sheet.startsWith(QStringLiteral("QWidget {\n  color: #000000;\n}\n\n/*=== ScrollBars ===*/\n\n")),
                 qPrintable(sheet));
        QCOMPARE(selectors(sheet),
                 (QStringList{"QWidget", "QScrollBar", "QScrollBar:hover", "QScrollBar:vertical", "QScrollBar:horizontal",
                              "QScrollBar:vertical:hover", "QScrollBar:horizontal:hover", "QAbstractScrollArea::corner",
                              "QScrollBar::handle:vertical", "QScrollBar::handle:horizontal",
                              "QScrollBar::handle:vertical:hover, QScrollBar::handle:horizontal:hover",
                              "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical, "
                              "QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal",
                              "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical, "
                              "QScrollBar::add-page:horizontal, QScrollBar::sub-page:horizontal"}));
        QVERIFY(declarationsOf(sheet, QStringLiteral("QScrollBar:vertical")).contains(QStringLiteral("padding-left: 5px")));

        QWidget host;
        host.setStyleSheet(sheet);
        for (Qt::Orientation orientation : {Qt::Vertical, Qt::Horizontal}) {
            auto* bar = new QScrollBar(orientation, &host);
            bar->setRange(0, 1000000);
            bar->resize(orientation == Qt::Vertical ? QSize(S::scrollBarWidth, 300) : QSize(300, S::scrollBarWidth));
            bar->ensurePolished();
            const QSize hint = bar->sizeHint();
            QCOMPARE(orientation == Qt::Vertical ? hint.width() : hint.height(), S::scrollBarWidth);
            const QRect handle = scrollBarPart(bar, QStyle::SC_ScrollBarSlider);
            // 25 pixels inside the handle's one-pixel frame.
            QCOMPARE(orientation == Qt::Vertical ? handle.height() : handle.width(), 25 + 2);
            QVERIFY(scrollBarPart(bar, QStyle::SC_ScrollBarAddLine).isEmpty());
            QVERIFY(scrollBarPart(bar, QStyle::SC_ScrollBarSubLine).isEmpty());
        }
    }

    void tableSheet_data()
    {
        TableSheetRow::addColumns(); // headerVisible, rowSizes, rowHeights, firstSectionTop

        const QString frame = QStringLiteral("1px solid #999999");
        QTest::newRow("defaults leave row heights free") << true << QList<int>() << QStringList() << "border-top: none";
        QTest::newRow("hidden header lets the first row close the frame")
            << false << QList<int>() << QStringList() << "border-top: " + frame;
        QTest::newRow("one size bounds both") << true << QList<int>{22} << QStringList{"min-height: 22px", "max-height: 22px"}
                                              << "border-top: none";
        QTest::newRow("minimum and maximum") << true << QList<int>{18, 40}
                                             << QStringList{"min-height: 18px", "max-height: 40px"} << "border-top: none";
        QTest::newRow("maximum below minimum becomes the minimum")
            << true << QList<int>{37, 10} << QStringList{"min-height: 37px", "max-height: 37px"} << "border-top: none";
        QTest::newRow("three sizes are refused") << true << QList<int>{1, 2, 3} << QStringList() << "border-top: none";
    }
    void tableSheet()
    {
        const auto [headerVisible, rowSizes, rowHeights, firstSectionTop] = TableSheetRow::fetch();

        VwhTableStylesheet builder;
        builder.setHorizontalHeaderVisible(headerVisible);
        if (!rowSizes.isEmpty()) {
            if (rowSizes.size() > 2 || rowSizes.last() < rowSizes.first())
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^VwhTableStylesheet::setRowSizes: ")));
            builder.setRowSizes(rowSizes);
        }
        S::Stream stream;
        builder.buildStyleSheet(stream);
        const QString sheet = stream.getStyleSheet();

        const QStringList expectedSelectors = {
            "QTableView#tableView", "QTableView#tableView QTableCornerButton::section",
            "QHeaderView#horizontalHeaderView, QHeaderView#verticalHeaderView",
            "QHeaderView#horizontalHeaderView::section, QHeaderView#verticalHeaderView::section",
            "QHeaderView#horizontalHeaderView::section:horizontal", "QHeaderView#verticalHeaderView::section:vertical",
            "QHeaderView#verticalHeaderView::section:first"};
        QCOMPARE(selectors(sheet), expectedSelectors);
        const QStringList table = declarationsOf(sheet, expectedSelectors.at(0));
        for (const char* declaration : {"gridline-color: #d2cfcd", "border-right: 1px solid #999999",
                                        "border-bottom: 1px solid #999999"})
            QVERIFY2(table.contains(QLatin1String(declaration)), declaration);
        QCOMPARE(declarationsOf(sheet, expectedSelectors.at(3)).filter(QStringLiteral("padding")),
                 (QStringList{"padding-left: 0.5ex", "padding-right: 0.5ex"}));
        QCOMPARE(declarationsOf(sheet, expectedSelectors.at(4)), QStringList{QStringLiteral("border-top: 1px solid #999999")});
        QCOMPARE(declarationsOf(sheet, expectedSelectors.at(5)), QStringList{"border-left: 1px solid #999999"} + rowHeights);
        QCOMPARE(declarationsOf(sheet, expectedSelectors.at(6)), QStringList{firstSectionTop});

        // On a table named as the sheet expects: the grid colour, and rows at least as high as
        // the minimum (the section's bottom line lies outside the height the sheet bounds).
        QTableView view;
        view.setObjectName(QStringLiteral("tableView"));
        view.horizontalHeader()->setObjectName(QStringLiteral("horizontalHeaderView"));
        view.verticalHeader()->setObjectName(QStringLiteral("verticalHeaderView"));
        view.setModel(new QStandardItemModel(3, 2, &view));
        view.setStyleSheet(sheet);
        view.ensurePolished();
        QStyleOptionViewItem option;
        option.initFrom(&view);
        QCOMPARE(QColor::fromRgba(QRgb(view.style()->styleHint(QStyle::SH_Table_GridLineColor, &option, &view))),
                 QColor(S::gray2));
        if (!rowHeights.isEmpty())
            QVERIFY(view.verticalHeader()->sectionSizeHint(0) - 1 >= rowSizes.first());
    }

    void actionKeepsSheetAndDialogAppliesAndRestores()
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
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* d = qobject_cast<VwhStyleSheetDialog*>(w))
                dialog = d;
        QVERIFY(dialog && dialog->isVisible());
        QPointer<VwhStyleSheetDialog> guard(dialog);
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

    void dialogClosesWithItsWidget()
    {
        auto* label = new QLabel;
        QPointer<VwhStyleSheetDialog> dialog = new VwhStyleSheetDialog(label, QString());
        delete label;
        QVERIFY(dialog->target() == nullptr);
        dialog->apply();
        dialog->restore();
        QTRY_VERIFY(dialog.isNull());
    }
};

QTEST_MAIN(TestStylesheet)
#include "tst_stylesheet.moc"
