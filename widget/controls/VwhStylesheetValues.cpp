#include "VwhStylesheetValues.h"

#include <KbbColor.h>

namespace Vwh {
namespace Stylesheet {

namespace Length {
QString px(int value) { return QStringLiteral("%1px").arg(value); }
QString pt(int value) { return QStringLiteral("%1pt").arg(value); }
QString em(double value) { return QStringLiteral("%1em").arg(value, 0, 'g'); }
QString ex(double value) { return QStringLiteral("%1ex").arg(value, 0, 'g'); }
} // namespace Length

Color::Color(const QColor& color)
    : Helper(color.name())
{
}

Color::Color(Qt::GlobalColor color)
    : Color(QColor(color))
{
}

Color::Color(const QString& text)
    : Helper(text)
{
}

Color::Color(const char* text)
    : Helper(QString::fromUtf8(text))
{
}

Color::Color(quint32 argb)
    : Helper(QStringLiteral("rgba(%1,%2,%3,%4)")
                 .arg((argb >> 16) & 0xffu)
                 .arg((argb >> 8) & 0xffu)
                 .arg(argb & 0xffu)
                 .arg((argb >> 24) & 0xffu))
{
}

Color::Color(const KbbColor& color)
    : Helper(QStringLiteral("rgb(%1,%2,%3)").arg(color.getRed()).arg(color.getGreen()).arg(color.getBlue()))
{
}

BoxLengths::BoxLengths(const QString& all)
    : Helper(all)
{
}

BoxLengths::BoxLengths(const char* all)
    : Helper(QString::fromUtf8(all))
{
}

BoxLengths::BoxLengths(const QString& vertical, const QString& horizontal)
    : Helper(vertical + QLatin1Char(' ') + horizontal)
{
}

BoxLengths::BoxLengths(const QString& top, const QString& horizontal, const QString& bottom)
    : Helper(top + QLatin1Char(' ') + horizontal + QLatin1Char(' ') + bottom)
{
}

BoxLengths::BoxLengths(const QString& top, const QString& right, const QString& bottom, const QString& left)
    : Helper(top + QLatin1Char(' ') + right + QLatin1Char(' ') + bottom + QLatin1Char(' ') + left)
{
}

Border::Border(const QString& suffix, const QString& value)
    : _suffix(suffix)
    , _value(value)
{
}

Border& Border::left()
{
    _side = QStringLiteral("left");
    return *this;
}

Border& Border::right()
{
    _side = QStringLiteral("right");
    return *this;
}

Border& Border::top()
{
    _side = QStringLiteral("top");
    return *this;
}

Border& Border::bottom()
{
    _side = QStringLiteral("bottom");
    return *this;
}

QString Border::toString() const
{
    QString key = QStringLiteral("border");
    if (!_side.isEmpty())
        key += QLatin1Char('-') + _side;
    if (!_suffix.isEmpty())
        key += QLatin1Char('-') + _suffix;
    return key + QStringLiteral(": ") + _value;
}

} // namespace Stylesheet
} // namespace Vwh
