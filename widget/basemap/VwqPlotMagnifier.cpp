#include "VwqPlotMagnifier.h"

#include <VupMapPreferences.h>

#include <qwt_plot.h>
#include <qwt_scale_map.h>

#include <QWheelEvent>
#include <cmath>

VwqPlotMagnifier::VwqPlotMagnifier(QWidget* canvas)
    : QwtPlotMagnifier(canvas)
    , _natural(!VupMapPreferences::isZoomWheelInverted())
{
}

VwqPlotMagnifier::~VwqPlotMagnifier() = default;

bool VwqPlotMagnifier::isNaturalDirection() const
{
    return _natural;
}

void VwqPlotMagnifier::setNaturalDirection(bool natural)
{
    _natural = natural;
}

bool VwqPlotMagnifier::isDisabled() const
{
    return _disabled;
}

void VwqPlotMagnifier::enable()
{
    _disabled = false;
}

void VwqPlotMagnifier::disable()
{
    _disabled = true;
}

void VwqPlotMagnifier::widgetWheelEvent(QWheelEvent* event)
{
    _wheelPosition = event->position().toPoint();
    _wheelPending = true;
    QwtPlotMagnifier::widgetWheelEvent(event);
    _wheelPending = false;
}

void VwqPlotMagnifier::rescale(double factor)
{
    QwtPlot* plot = this->plot();
    factor = std::fabs(factor);
    if (!plot || _disabled || factor == 1.0 || factor == 0.0 || !std::isfinite(factor))
        return;
    const double f = _natural ? 1.0 / factor : factor;

    if (f > 1.0) {
        double widest = 0.0;
        for (int axis = 0; axis < QwtPlot::axisCnt; ++axis) {
            const QwtScaleMap map = plot->canvasMap(axis);
            widest = std::max(widest, std::fabs(map.s2() - map.s1()));
        }
        if (widest > MAX_RANGE)
            return;
    }

    const bool autoReplot = plot->autoReplot();
    plot->setAutoReplot(false);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis) {
        if (!isAxisEnabled(axis))
            continue;
        const QwtScaleMap map = plot->canvasMap(axis);
        const bool vertical = axis == QwtPlot::yLeft || axis == QwtPlot::yRight;
        const double length = std::fabs(map.p2() - map.p1());
        // Where the mouse is along the axis, from the lower end of the scale: the anchor
        // of the zoom. Without a wheel event (keys) the centre.
        double anchor = 0.5;
        if (_wheelPending && length > 0.0) {
            anchor = vertical ? (std::max(map.p1(), map.p2()) - _wheelPosition.y()) / length
                              : (_wheelPosition.x() - std::min(map.p1(), map.p2())) / length;
        }
        const double range = map.s2() - map.s1();
        const double lower = map.s1() + (1.0 - f) * range * anchor;
        plot->setAxisScale(axis, lower, lower + range * f);
    }
    plot->setAutoReplot(autoReplot);
    _wheelPending = false;
    _wheelPosition = QPoint();
    plot->replot();
    emit rescaled();
}
