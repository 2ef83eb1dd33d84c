#pragma once
// The value types of the style-sheet vocabulary: lengths, colours, box lengths and
// borders, each already a text in style-sheet syntax. They only give those texts a shape
// so that declarations cannot be handed the wrong kind of value.

#include <velmora_widget_export.h>

#include <QColor>
#include <QString>

class KbbColor;

namespace Vwh {
namespace Stylesheet {

namespace Length {
VELMORA_WIDGET_EXPORT QString px(int value);
VELMORA_WIDGET_EXPORT QString pt(int value);
// Reals are written in the general floating format: 0.5em, 2em.
VELMORA_WIDGET_EXPORT QString em(double value);
VELMORA_WIDGET_EXPORT QString ex(double value);
} // namespace Length

// Base of the helpers that hold one text.
class VELMORA_WIDGET_EXPORT Helper
{
public:
    Helper() = default;
    explicit Helper(const QString& text)
        : _text(text)
    {
    }

    const QString& toString() const { return _text; }
    operator QString() const { return _text; }

protected:
    QString _text;
};

class VELMORA_WIDGET_EXPORT Color : public Helper
{
public:
    // The colour's name, "#rrggbb"; the alpha is dropped.
    Color(const QColor& color);
    // Without this overload Qt::red would pick the packed form as an integer.
    Color(Qt::GlobalColor color);
    // Taken as it stands: "transparent", "#116981", "rgb(1,2,3)".
    Color(const QString& text);
    Color(const char* text);
    // 0xAARRGGBB, written as "rgba(r,g,b,a)". Explicit so that a stray int is no colour.
    explicit Color(quint32 argb);
    // Written as "rgb(r,g,b)"; the record's alpha is not carried over.
    Color(const KbbColor& color);
};

// The style-sheet shorthand of one to four lengths: top, right, bottom, left.
class VELMORA_WIDGET_EXPORT BoxLengths : public Helper
{
public:
    BoxLengths(const QString& all);
    BoxLengths(const char* all);
    BoxLengths(const QString& vertical, const QString& horizontal);
    BoxLengths(const QString& top, const QString& horizontal, const QString& bottom);
    BoxLengths(const QString& top, const QString& right, const QString& bottom, const QString& left);
};

// One border declaration: "border[-side][-suffix]: value".
class VELMORA_WIDGET_EXPORT Border
{
public:
    // suffix: empty, "color", "style" or "width".
    Border(const QString& suffix, const QString& value);

    // Set the side in place and return the same border, so that calls chain.
    Border& left();
    Border& right();
    Border& top();
    Border& bottom();

    const QString& suffix() const { return _suffix; }
    const QString& value() const { return _value; }
    const QString& side() const { return _side; }

    QString toString() const;
    operator QString() const { return toString(); }

private:
    QString _suffix;
    QString _value;
    QString _side;
};

} // namespace Stylesheet
} // namespace Vwh
