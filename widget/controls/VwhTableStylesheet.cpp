#include "VwhTableStylesheet.h"

#include "VwhStylesheet.h"

#include <QtDebug>

namespace {
constexpr int frameWidth = 1;
}

void VwhTableStylesheet::setHorizontalHeaderVisible(bool visible) { _horizontalHeaderVisible = visible; }

void VwhTableStylesheet::setRowSizes(int minimum, int maximum)
{
    if (minimum < 0) {
        qWarning("VwhTableStylesheet::setRowSizes: negative minimum %d taken as 0", minimum);
        minimum = 0;
    }
    if (maximum < minimum) {
        qWarning("VwhTableStylesheet::setRowSizes: maximum %d below minimum %d taken as the minimum", maximum,
                 minimum);
        maximum = minimum;
    }
    _hasRowSizes = true;
    _minimumRowSize = minimum;
    _maximumRowSize = maximum;
}

void VwhTableStylesheet::setRowSizes(const QList<int>& sizes)
{
    if (sizes.size() == 1) {
        setRowSizes(sizes.first(), sizes.first());
    } else if (sizes.size() == 2) {
        setRowSizes(sizes.at(0), sizes.at(1));
    } else {
        qWarning("VwhTableStylesheet::setRowSizes: expected one or two sizes, got %d; row sizes unchanged",
                 int(sizes.size()));
    }
}

void VwhTableStylesheet::buildStyleSheet(Vwh::Stylesheet::Stream& stream) const
{
    namespace S = Vwh::Stylesheet;
    const QString frame = QStringLiteral("%1px solid").arg(frameWidth) + QLatin1Char(' ') + S::grayBorder;
    const QString sectionLine = QStringLiteral("%1px solid").arg(frameWidth) + QLatin1Char(' ') + S::gray2;

    // The headers draw the top and left edges of the frame, the table the other two, so
    // that no edge is drawn twice.
    const QStringList table = {QStringLiteral("gridline-color: ") + S::gray2, QStringLiteral("border: none"),
                         QStringLiteral("border-right: ") + frame, QStringLiteral("border-bottom: ") + frame};
    stream.add(QStringLiteral("QTableView#tableView"), table);
    stream.add(QStringLiteral("QTableView#tableView QTableCornerButton::section"),
               {S::bgColor(S::gray1), QStringLiteral("border: none"), QStringLiteral("border-top: ") + frame,
                QStringLiteral("border-left: ") + frame, QStringLiteral("border-right: ") + sectionLine,
                QStringLiteral("border-bottom: ") + sectionLine});
    stream.add(QStringLiteral("QHeaderView#horizontalHeaderView, QHeaderView#verticalHeaderView"),
               {S::bgColor(S::gray1), QStringLiteral("border: none")});
    stream.add(QStringLiteral("QHeaderView#horizontalHeaderView::section, QHeaderView#verticalHeaderView::section"),
               {S::bgColor(S::gray1), S::fgColor(S::grayHv), QStringLiteral("border: none"),
                QStringLiteral("border-right: ") + sectionLine, QStringLiteral("border-bottom: ") + sectionLine,
                QStringLiteral("padding-left: 0.5ex"), QStringLiteral("padding-right: 0.5ex")});
    stream.add(QStringLiteral("QHeaderView#horizontalHeaderView::section:horizontal"),
               {QStringLiteral("border-top: ") + frame});
    QStringList vertical = {QStringLiteral("border-left: ") + frame};
    if (_hasRowSizes) {
        vertical << QStringLiteral("min-height: ") + S::Length::px(_minimumRowSize)
                 << QStringLiteral("max-height: ") + S::Length::px(_maximumRowSize);
    }
    stream.add(QStringLiteral("QHeaderView#verticalHeaderView::section:vertical"), vertical);
    stream.add(QStringLiteral("QHeaderView#verticalHeaderView::section:first"),
               {QStringLiteral("border-top: ") + (_horizontalHeaderVisible ? QStringLiteral("none") : frame)});
}
