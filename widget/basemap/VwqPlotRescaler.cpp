#include "VwqPlotRescaler.h"

#include <qwt_plot.h>

VwqPlotRescaler::VwqPlotRescaler(QWidget* canvas)
    : QwtPlotRescaler(canvas, QwtPlot::xBottom, QwtPlotRescaler::Expanding)
{
    setAspectRatio(QwtPlot::yLeft, 1.0);
    setAspectRatio(QwtPlot::yRight, 0.0);
    setAspectRatio(QwtPlot::xTop, 0.0);
    // A resize keeps the centre of the map where it was.
    setExpandingDirection(QwtPlotRescaler::ExpandBoth);
}

VwqPlotRescaler::~VwqPlotRescaler() = default;
