#pragma once
// A decoration of the map: a mark drawn over the canvas at a fixed place in pixels (a
// corner, or a point of the map), above the layers and the grid, that never takes part in
// the map's extent. Being a plot item, it shows on the canvas, in rendered pixmaps and in
// SVG exports alike; render() also draws it into any other painter.

#include <velmora_widget_export.h>

#include <qwt_plot_item.h>

class VELMORA_WIDGET_EXPORT VwoADecoration : public QwtPlotItem
{
public:
    // Above the layers (z from 1) and the grid (0 or 10000).
    static constexpr double Z = 20000.0;
    // Room left between a decoration and the canvas's edges, in logical pixels.
    static constexpr double MARGIN = 10.0;

    enum Rtti {
        RTTI_COPYRIGHT = QwtPlotItem::Rtti_PlotUserItem + 20,
        RTTI_COMPASS,
        RTTI_SCALE_BAR,
        RTTI_GPS_POSITION
    };

    ~VwoADecoration() override;

    // Draws in the painter's logical pixels, so that a scaled painter scales the
    // decoration with the rest of the picture. `canvasRect` is where the canvas lies in
    // the painter; the maps go from map coordinates to the painter's. The painter is left
    // as it was found.
    virtual void render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                        const QRectF& canvasRect) const = 0;

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvasRect) const final;

protected:
    explicit VwoADecoration(const QString& title);
};
