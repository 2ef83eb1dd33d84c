#pragma once
// The colour-map legend of a 3D view: a colour legend overlay in a corner of the window,
// shown while the legend is both available (the scene has a colour-mapped variable) and
// enabled (the user wants it). Not part of the public interface of the library.

#include <velmora_widget_export.h>

#include <QColor>
#include <QString>
#include <memory>

class KbbStringFormat;
class SoSeparator;
class Vg3ColorLegend;
class VugColorScale;

class VELMORA_WIDGET_EXPORT Vw3Legend_p
{
public:
    // `alignment` is Vu::Position flags.
    Vw3Legend_p(const QColor& background, const QColor& foreground, int alignment);
    ~Vw3Legend_p();

    // Referenced for the life of the legend; holds a switch over the legend's own graph.
    SoSeparator* getRoot() const;
    Vg3ColorLegend* getColorLegend() const;

    // Makes the legend available when the scale is usable.
    void setLegend(const VugColorScale& scale, const QString& title, const KbbStringFormat& format, bool discrete);
    const QString& getTitle() const;
    // Forgets the scale: the legend becomes unavailable until set again.
    void invalidate();

    void setColors(const QColor& background, const QColor& foreground);
    // Vu::Position flags; anything else is refused with a warning.
    void setAlignment(int alignment);
    int getAlignment() const;

    void setAvailable(bool available);
    bool isAvailable() const;
    void setEnabled(bool enabled);
    bool isEnabled() const;
    // Available and enabled.
    bool isShown() const;

private:
    Vw3Legend_p(const Vw3Legend_p&) = delete;
    Vw3Legend_p& operator=(const Vw3Legend_p&) = delete;
    void _updateSwitch();
    std::unique_ptr<class Vw3LegendPrivate> const _d;
};
