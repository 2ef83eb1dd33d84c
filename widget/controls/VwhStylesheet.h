#pragma once
// The style-sheet vocabulary the library's widgets style themselves with: the library
// palette, functions that turn typed values into single declarations, the flat
// scroll-bar style, and an action that lets a user inspect a widget's style sheet.

#include <velmora_widget_export.h>

#include "VwhStylesheetStream.h"
#include "VwhStylesheetValues.h"

#include <QString>

class QAction;
class QWidget;

namespace Vwh {
namespace Stylesheet {

// The library palette.
VELMORA_WIDGET_EXPORT extern const QString transparent;
VELMORA_WIDGET_EXPORT extern const QString black;
VELMORA_WIDGET_EXPORT extern const QString white;
VELMORA_WIDGET_EXPORT extern const QString blueHv;
VELMORA_WIDGET_EXPORT extern const QString grayHv;
VELMORA_WIDGET_EXPORT extern const QString gray1;
VELMORA_WIDGET_EXPORT extern const QString gray2;
VELMORA_WIDGET_EXPORT extern const QString gray3;
VELMORA_WIDGET_EXPORT extern const QString grayBorder;
// Background of values shown but not editable, such as a read-only editor's text.
VELMORA_WIDGET_EXPORT extern const QString readOnlyBackground;

// Thickness of the flat scroll bars, in pixels.
constexpr int scrollBarWidth = 15;

// Single declarations, "key: value" without the closing semicolon.
VELMORA_WIDGET_EXPORT QString bgColor(const Color& color);
VELMORA_WIDGET_EXPORT QString fgColor(const Color& color);
VELMORA_WIDGET_EXPORT QString borderRadius(const QString& radius);
VELMORA_WIDGET_EXPORT QString iconSize(const QString& size);
VELMORA_WIDGET_EXPORT QString margin(const BoxLengths& lengths);
VELMORA_WIDGET_EXPORT QString padding(const BoxLengths& lengths);

// Borders; chain a side before turning them into text: borderColor(gray3).left().
VELMORA_WIDGET_EXPORT Border border(const QString& width, const QString& style, const Color& color);
VELMORA_WIDGET_EXPORT Border borderColor(const Color& color);
VELMORA_WIDGET_EXPORT Border borderStyle(const QString& style);
VELMORA_WIDGET_EXPORT Border borderWidth(const QString& width);

// Appends the library's flat scroll bars without arrow buttons.
VELMORA_WIDGET_EXPORT void createScrollbarStylesheet(Stream& stream);

// An action, owned by the widget, that opens the style-sheet inspection dialog on it.
// The widget's style sheet at this call is kept, so the dialog can put it back.
VELMORA_WIDGET_EXPORT QAction* createStyleSheetAction(QWidget* widget);

} // namespace Stylesheet
} // namespace Vwh
