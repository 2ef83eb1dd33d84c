#include "VwhStylesheetStream.h"

#include <KbbDebug.h>

namespace Vwh {
namespace Stylesheet {

Stream& Stream::add(const QString& key, const QStringList& declarations)
{
    if (declarations.isEmpty())
        return *this;
    if (key.isEmpty()) {
        // The wording is kept as users of the library already know it from their logs.
        KbbDebug::printWarning(QStringLiteral("Vwh::Stylesheet::Stream::add(): 'key' is empty. "
                                              "The function (add(QStringList) is probably more appropriated."));
    }
    _text += key + QStringLiteral(" {\n");
    for (const QString& declaration : declarations)
        _text += QStringLiteral("  ") + declaration + QStringLiteral(";\n");
    _text += QStringLiteral("}\n");
    return *this;
}

Stream& Stream::add(const QStringList& declarations)
{
    for (const QString& declaration : declarations)
        _text += declaration + QStringLiteral(";\n");
    return *this;
}

Stream& Stream::comment(const QString& text)
{
    _text += QStringLiteral("\n/*=== ") + text + QStringLiteral(" ===*/\n\n");
    return *this;
}

} // namespace Stylesheet
} // namespace Vwh
