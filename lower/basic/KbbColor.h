#pragma once
// A colour as the lower libraries store it: red, green, blue and alpha from 0 to 255,
// with the packed 0xAARRGGBB form used in files. Free of Qt Gui; the widgets turn it
// into a QColor.

#include <velmora_basic_export.h>

#include <QtGlobal>

class VELMORA_BASIC_EXPORT KbbColor
{
public:
    // Opaque black.
    KbbColor() = default;
    // Components outside 0..255 are clamped with a qWarning.
    KbbColor(int red, int green, int blue, int alpha = 255);
    explicit KbbColor(quint32 argb);

    int getRed() const { return _red; }
    int getGreen() const { return _green; }
    int getBlue() const { return _blue; }
    int getAlpha() const { return _alpha; }
    bool isOpaque() const { return _alpha == 255; }

    // 0xAARRGGBB.
    quint32 toRgba() const;

    bool operator==(const KbbColor& o) const
    {
        return _red == o._red && _green == o._green && _blue == o._blue && _alpha == o._alpha;
    }
    bool operator!=(const KbbColor& o) const { return !(*this == o); }

private:
    int _red = 0;
    int _green = 0;
    int _blue = 0;
    int _alpha = 255;
};
