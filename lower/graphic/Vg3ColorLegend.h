#pragma once
// The colour-map legend drawn over a 3D scene: a vertical colour bar (classes as blocks),
// ticks labelled in the variable's format, and the title above, in the corner the alignment
// names. The bar takes a fixed share of the window's height, so the legend looks the same on
// any screen and in exported images of any size; it is drawn after the scene so that nothing
// hides it. Hidden until it is given a usable colour scale.

#include <velmora_graphic_export.h>

#include <VuPosition.h>

#include <QColor>
#include <QStringList>
#include <QVector>
#include <memory>

class KbbStringFormat;
class SoSeparator;
class VugColorScale;

class VELMORA_GRAPHIC_EXPORT Vg3ColorLegend
{
public:
    // An alignment that is not one horizontal and one vertical flag falls back to the
    // lower right corner, with a warning.
    Vg3ColorLegend(const QColor& background, const QColor& foreground,
                   Vu::Position alignment = Vu::BOTTOM_RIGHT);
    ~Vg3ColorLegend();

    // Referenced by the legend for its whole life; hand it to a view as an overlay.
    SoSeparator* getRoot() const;

    // `discrete`: the values are codes (facies, zones): each class is labelled at its middle
    // with its lower limit instead of ticks at the limits. A scale without a usable range
    // hides the legend, with a warning, until a usable one is set.
    void setColorScale(const VugColorScale& colorScale, const QString& title, const KbbStringFormat& format,
                       bool discrete);
    bool hasColorScale() const;

    Vu::Position getAlignment() const;
    // Refused with a warning unless one horizontal and one vertical flag.
    void setAlignment(Vu::Position alignment);
    bool isVisible() const;
    void setVisible(bool visible);
    // Visible and with a usable scale: what the user sees.
    bool isShown() const;
    QColor getBackgroundColor() const;
    QColor getForegroundColor() const;
    // Invalid colours are refused with a warning and both colours are kept.
    void setColors(const QColor& background, const QColor& foreground);

    // The values at the ticks, bottom to top, and their labels as drawn.
    QVector<double> getTickValues() const;
    QStringList getTickLabels() const;

    // The bar's share of the window's height.
    static constexpr float BAR_HEIGHT_FRACTION = 0.4f;

private:
    Vg3ColorLegend(const Vg3ColorLegend&) = delete;
    Vg3ColorLegend& operator=(const Vg3ColorLegend&) = delete;
    void _rebuild();

    std::unique_ptr<class Vg3ColorLegendPrivate> const _d;
};
