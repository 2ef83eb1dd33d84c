#pragma once
// Accumulates a style sheet rule by rule, so that widgets compose their style sheets in
// code: a selector with its declarations, bare declarations for a sheet set on one
// widget, and comments that mark the sections of a long sheet.

#include <velmora_widget_export.h>

#include "VwhStylesheetValues.h"

#include <QStringList>

namespace Vwh {
namespace Stylesheet {

class VELMORA_WIDGET_EXPORT Stream : public Helper
{
public:
    Stream() = default;

    // Appends "key {", one indented line per declaration and "}"; an empty list adds
    // nothing. An empty key is written as it is, after a warning.
    Stream& add(const QString& key, const QStringList& declarations);
    // Appends the declarations without selector or braces.
    Stream& add(const QStringList& declarations);
    Stream& comment(const QString& text);

    const QString& getStyleSheet() const { return _text; }
};

} // namespace Stylesheet
} // namespace Vwh
