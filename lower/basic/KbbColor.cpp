#include "KbbColor.h"

namespace {

int component(int value, const char* name)
{
    if (value < 0 || value > 255) {
        const int clamped = qBound(0, value, 255);
        qWarning("KbbColor::KbbColor: %s %d is outside 0..255, %d is used", name, value, clamped);
        return clamped;
    }
    return value;
}

} // namespace

KbbColor::KbbColor(int red, int green, int blue, int alpha)
    : _red(component(red, "red"))
    , _green(component(green, "green"))
    , _blue(component(blue, "blue"))
    , _alpha(component(alpha, "alpha"))
{
}

KbbColor::KbbColor(quint32 argb)
    : _red(int((argb >> 16) & 0xFFu))
    , _green(int((argb >> 8) & 0xFFu))
    , _blue(int(argb & 0xFFu))
    , _alpha(int((argb >> 24) & 0xFFu))
{
}

quint32 KbbColor::toRgba() const
{
    return (quint32(_alpha) << 24) | (quint32(_red) << 16) | (quint32(_green) << 8) | quint32(_blue);
}
