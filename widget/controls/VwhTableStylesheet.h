#pragma once
// Builds the style sheet of the library's tables: a table view named "tableView" with its
// headers "horizontalHeaderView" and "verticalHeaderView", flat sections, a thin frame
// and, when set, fixed bounds on the row heights.

#include <velmora_widget_export.h>

#include <QList>

namespace Vwh {
namespace Stylesheet {
class Stream;
}
} // namespace Vwh

class VELMORA_WIDGET_EXPORT VwhTableStylesheet
{
public:
    VwhTableStylesheet() = default;

    // A hidden horizontal header leaves the first row to close the frame at the top.
    void setHorizontalHeaderVisible(bool visible);
    bool isHorizontalHeaderVisible() const { return _horizontalHeaderVisible; }

    // Minimum and maximum row height in pixels. Negative heights are taken as 0, and a
    // maximum below the minimum as the minimum, each with a warning.
    void setRowSizes(int minimum, int maximum);
    // One entry gives both bounds, two give minimum and maximum; other lists are refused.
    void setRowSizes(const QList<int>& sizes);
    bool hasRowSizes() const { return _hasRowSizes; }
    int minimumRowSize() const { return _minimumRowSize; }
    int maximumRowSize() const { return _maximumRowSize; }

    void buildStyleSheet(Vwh::Stylesheet::Stream& stream) const;

private:
    bool _horizontalHeaderVisible = true;
    bool _hasRowSizes = false;
    int _minimumRowSize = 0;
    int _maximumRowSize = 0;
};
