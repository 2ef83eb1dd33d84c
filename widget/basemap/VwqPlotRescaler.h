#pragma once
// Keeps one map unit as long across as up on screen: when the canvas is resized or the
// view is zoomed, the y scale is expanded or shrunk to match the x scale.

#include <velmora_widget_export.h>

#include <qwt_plot_rescaler.h>

class VELMORA_WIDGET_EXPORT VwqPlotRescaler : public QwtPlotRescaler
{
public:
    explicit VwqPlotRescaler(QWidget* canvas);
    ~VwqPlotRescaler() override;
};
