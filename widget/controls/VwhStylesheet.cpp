#include "VwhStylesheet.h"

#include "VwhStyleSheetDialog.h"

#include <VuaResourceProvider.h>

#include <QAction>
#include <QCoreApplication>
#include <QPointer>
#include <QWidget>

namespace Vwh {
namespace Stylesheet {

const QString transparent = QStringLiteral("transparent");
const QString black = QStringLiteral("#000000");
const QString white = QStringLiteral("#ffffff");
const QString blueHv = QStringLiteral("#116981");
const QString grayHv = QStringLiteral("#4b4038");
const QString gray1 = QStringLiteral("#f0f0f0");
const QString gray2 = QStringLiteral("#d2cfcd");
const QString gray3 = QStringLiteral("#a59f9b");
const QString grayBorder = QStringLiteral("#999999");
const QString readOnlyBackground = gray1;

namespace {

QString declaration(const QString& key, const QString& value) { return key + QStringLiteral(": ") + value; }

} // namespace

QString bgColor(const Color& color) { return declaration(QStringLiteral("background-color"), color); }
QString fgColor(const Color& color) { return declaration(QStringLiteral("color"), color); }
QString borderRadius(const QString& radius) { return declaration(QStringLiteral("border-radius"), radius); }
QString iconSize(const QString& size) { return declaration(QStringLiteral("icon-size"), size); }
QString margin(const BoxLengths& lengths) { return declaration(QStringLiteral("margin"), lengths); }
QString padding(const BoxLengths& lengths) { return declaration(QStringLiteral("padding"), lengths); }

Border border(const QString& width, const QString& style, const Color& color)
{
    return Border(QString(), width + QLatin1Char(' ') + style + QLatin1Char(' ') + color.toString());
}

Border borderColor(const Color& color) { return Border(QStringLiteral("color"), color); }
Border borderStyle(const QString& style) { return Border(QStringLiteral("style"), style); }
Border borderWidth(const QString& width) { return Border(QStringLiteral("width"), width); }

void createScrollbarStylesheet(Stream& stream)
{
    const QString none = QStringLiteral("border: none");
    const QString thickness = Length::px(scrollBarWidth);
    const QString zeroWidth = QStringLiteral("width: 0px");
    const QString zeroHeight = QStringLiteral("height: 0px");

    stream.comment(QStringLiteral("ScrollBars"));
    stream.add(QStringLiteral("QScrollBar"), {none, bgColor(gray1)});
    stream.add(QStringLiteral("QScrollBar:hover"), {bgColor(gray2)});
    // The padding keeps the handle off the bar's edges; the wider side faces the content.
    stream.add(QStringLiteral("QScrollBar:vertical"),
               {QStringLiteral("width: ") + thickness, QStringLiteral("padding-left: 5px"),
                QStringLiteral("padding-top: 2px"), QStringLiteral("padding-right: 2px"),
                QStringLiteral("padding-bottom: 2px")});
    stream.add(QStringLiteral("QScrollBar:horizontal"),
               {QStringLiteral("height: ") + thickness, QStringLiteral("padding-left: 2px"),
                QStringLiteral("padding-top: 5px"), QStringLiteral("padding-right: 2px"),
                QStringLiteral("padding-bottom: 2px")});
    stream.add(QStringLiteral("QScrollBar:vertical:hover"), {bgColor(gray2)});
    stream.add(QStringLiteral("QScrollBar:horizontal:hover"), {bgColor(gray2)});
    stream.add(QStringLiteral("QAbstractScrollArea::corner"), {none, bgColor(gray1)});
    const QStringList handle = {bgColor(gray2), borderColor(gray3), QStringLiteral("border-width: 1px"),
                                QStringLiteral("border-style: solid")};
    stream.add(QStringLiteral("QScrollBar::handle:vertical"), handle + QStringList{QStringLiteral("min-height: 25px")});
    stream.add(QStringLiteral("QScrollBar::handle:horizontal"), handle + QStringList{QStringLiteral("min-width: 25px")});
    stream.add(QStringLiteral("QScrollBar::handle:vertical:hover, QScrollBar::handle:horizontal:hover"),
               {bgColor(gray3), borderColor(grayHv)});
    // Zero-sized lines and pages hide the arrow buttons and let the groove show through.
    stream.add(QStringLiteral("QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical, "
                              "QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal"),
               {none, zeroWidth, zeroHeight});
    stream.add(QStringLiteral("QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical, "
                              "QScrollBar::add-page:horizontal, QScrollBar::sub-page:horizontal"),
               {none, bgColor(transparent), zeroWidth, zeroHeight});
}

QAction* createStyleSheetAction(QWidget* widget)
{
    auto* action = new QAction(VuaResourceProvider::getIcon(Vua::Resource::iconStyleSheet()),
                               QCoreApplication::translate("Vwh::Stylesheet", "Style sheet..."), widget);
    const QString kept = widget ? widget->styleSheet() : QString();
    QPointer<QWidget> target(widget);
    QObject::connect(action, &QAction::triggered, action, [target, kept]() {
        if (!target)
            return;
        // No parent: a child window would inherit the very style sheet being edited.
        auto* dialog = new VwhStyleSheetDialog(target, kept);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->show();
    });
    return action;
}

} // namespace Stylesheet
} // namespace Vwh
