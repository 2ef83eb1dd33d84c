#include "VwqPlotTracker.h"

#include <qwt_plot.h>
#include <qwt_text.h>

#include <QMouseEvent>
#include <cmath>

VwqPlotTracker::VwqPlotTracker(QWidget* canvas)
    : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, canvas)
{
    setTrackerMode(QwtPicker::AlwaysOn);
    setRubberBand(QwtPicker::NoRubberBand);
}

VwqPlotTracker::~VwqPlotTracker() = default;

QwtText VwqPlotTracker::trackerTextF(const QPointF&) const
{
    return QwtText();
}

void VwqPlotTracker::widgetMouseMoveEvent(QMouseEvent* event)
{
    const QPointF position = invTransform(event->pos());
    // A collapsed scale gives no position worth reporting.
    if (std::isfinite(position.x()) && std::isfinite(position.y()))
        emit newTrackerPosition(position);
    QwtPlotPicker::widgetMouseMoveEvent(event);
}
