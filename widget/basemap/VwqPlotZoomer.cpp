#include "VwqPlotZoomer.h"

#include "VwqPlotRescaler.h"

#include <VuaResourceProvider.h>

#include <qwt_picker_machine.h>
#include <qwt_plot.h>
#include <qwt_scale_div.h>

#include <QPointer>
#include <cmath>

namespace {

constexpr int MIN_DRAG = 2;  // pixels a drag must reach in one direction at least
constexpr int MIN_BOX = 11;  // pixels a zoom box has at least in both directions

bool isFinite(const QRectF& r)
{
    return std::isfinite(r.left()) && std::isfinite(r.top()) && std::isfinite(r.width()) && std::isfinite(r.height());
}

struct Limit
{
    bool hasMin = false;
    bool hasMax = false;
    double min = 0.0;
    double max = 0.0;
};

} // namespace

class VwqPlotZoomerPrivate
{
public:
    QVector<QRectF> stack;
    int index = -1;
    int maxDepth = -1;
    double factor = 0.1;
    QPointer<VwqPlotRescaler> rescaler;
    Limit limits[QwtPlot::axisCnt];
    QList<Vw::ViewMode> enabledModes{Vw::ZOOM_IN, Vw::ZOOM_OUT, Vw::ZOOM_BOX};
    Vw::ViewMode mode = Vw::NO_MODE;
};

VwqPlotZoomer::VwqPlotZoomer(QWidget* canvas)
    : QwtPlotPicker(QwtPlot::xBottom, QwtPlot::yLeft, canvas)
    , _d(new VwqPlotZoomerPrivate)
{
    setTrackerMode(QwtPicker::AlwaysOff);
    setEnabled(false);
    connect(this, qOverload<const QPointF&>(&QwtPlotPicker::selected), this, &VwqPlotZoomer::_clicked);
    connect(this, qOverload<const QRectF&>(&QwtPlotPicker::selected), this, &VwqPlotZoomer::_dragged);
}

VwqPlotZoomer::~VwqPlotZoomer() = default;

QRectF VwqPlotZoomer::getZoomRect() const
{
    const QwtPlot* plot = this->plot();
    if (!plot)
        return QRectF();
    const QwtScaleDiv& x = plot->axisScaleDiv(xAxis());
    const QwtScaleDiv& y = plot->axisScaleDiv(yAxis());
    return QRectF(x.lowerBound(), y.lowerBound(), x.range(), y.range()).normalized();
}

const QVector<QRectF>& VwqPlotZoomer::getZoomStack() const
{
    return _d->stack;
}

int VwqPlotZoomer::getZoomRectIndex() const
{
    return _d->index;
}

void VwqPlotZoomer::zoom(const QRectF& requested)
{
    if (!plot() || !isFinite(requested)) {
        qWarning("VwqPlotZoomer::zoom: a rectangle with a non-finite coordinate is ignored");
        return;
    }
    QRectF rect = requested.normalized();
    const Limit& lx = _d->limits[xAxis()];
    const Limit& ly = _d->limits[yAxis()];
    // Each side is held inside its limit; a rectangle wholly outside comes out empty.
    if (lx.hasMin && rect.left() < lx.min)
        rect.setLeft(lx.min);
    if (lx.hasMax && rect.right() > lx.max)
        rect.setRight(lx.max);
    if (ly.hasMin && rect.top() < ly.min)
        rect.setTop(ly.min);
    if (ly.hasMax && rect.bottom() > ly.max)
        rect.setBottom(ly.max);
    if (!rect.isValid() || rect.isEmpty())
        return;

    const QRectF current = getZoomRect();
    if (_d->index < 0 || _d->stack.at(_d->index) != current)
        _push(current);
    if (rect != current) {
        _push(rect);
        _show(rect);
    }
}

void VwqPlotZoomer::zoom(int offset)
{
    if (_d->stack.isEmpty())
        return;
    const int index = qBound(0, _d->index + offset, _d->stack.size() - 1);
    if (index == _d->index)
        return;
    _d->index = index;
    _show(_d->stack.at(index));
}

void VwqPlotZoomer::resetZoom(const QRectF& rect)
{
    if (!isFinite(rect) || rect.normalized().isEmpty()) {
        qWarning("VwqPlotZoomer::resetZoom: an empty or non-finite rectangle is ignored");
        return;
    }
    _d->stack.clear();
    _d->index = -1;
    _push(rect.normalized());
    _show(rect.normalized());
}

void VwqPlotZoomer::_push(const QRectF& rect)
{
    // A new zoom drops the ones that were undone.
    _d->stack.resize(_d->index + 1);
    if (_d->maxDepth >= 0) {
        while (!_d->stack.isEmpty() && _d->index >= _d->maxDepth) {
            _d->stack.removeFirst();
            --_d->index;
        }
    }
    _d->stack.append(rect);
    ++_d->index;
}

void VwqPlotZoomer::_show(const QRectF& rect)
{
    QwtPlot* plot = this->plot();
    if (!plot)
        return;
    QRectF fitted = rect;
    const QWidget* canvas = this->canvas();
    if (_d->rescaler && canvas && canvas->width() > 0 && canvas->height() > 0) {
        // One map unit as long across as up: the rectangle grows about its centre along
        // the axis that has room to spare. Fitting a fitted rectangle changes nothing, so
        // going back and forth in the stack finds the same views.
        const double perPixel = std::max(rect.width() / canvas->width(), rect.height() / canvas->height());
        const QPointF centre = rect.center();
        fitted.setSize(QSizeF(perPixel * canvas->width(), perPixel * canvas->height()));
        fitted.moveCenter(centre);
    }
    const bool autoReplot = plot->autoReplot();
    plot->setAutoReplot(false);
    plot->setAxisScale(xAxis(), fitted.left(), fitted.right());
    plot->setAxisScale(yAxis(), fitted.top(), fitted.bottom());
    plot->setAutoReplot(autoReplot);
    plot->replot();
    // The rescaler may have widened the rectangle to the view's shape: the stack and the
    // listeners get what is shown, so that going back and forth finds it again.
    const QRectF shown = getZoomRect();
    if (_d->index >= 0 && _d->index < _d->stack.size() && _d->stack.at(_d->index) == rect)
        _d->stack[_d->index] = shown;
    emit zoomed(shown);
    emit zoomFinished();
}

void VwqPlotZoomer::rescaleToCurrentScale(QRectF& rect) const
{
    const QWidget* canvas = this->canvas();
    const QRectF current = getZoomRect();
    if (!canvas || canvas->width() <= 0 || canvas->height() <= 0 || current.isEmpty() || rect.isEmpty())
        return;
    // Map units per pixel, now, along each axis; the rectangle gets the same ratio.
    const double aspect = (current.width() / canvas->width()) / (current.height() / canvas->height());
    const double wanted = rect.height() * aspect * canvas->width() / canvas->height();
    const QPointF centre = rect.center();
    if (wanted > rect.width())
        rect.setWidth(wanted);
    else
        rect.setHeight(rect.width() / (aspect * canvas->width() / canvas->height()));
    rect.moveCenter(centre);
}

void VwqPlotZoomer::setAxisLimits(int axis, double minimum, double maximum)
{
    setAxisLimitMin(axis, minimum);
    setAxisLimitMax(axis, maximum);
}

void VwqPlotZoomer::setAxisLimitMin(int axis, double minimum)
{
    if (axis < 0 || axis >= QwtPlot::axisCnt || !std::isfinite(minimum)) {
        qWarning("VwqPlotZoomer::setAxisLimitMin: axis %d, limit %g refused", axis, minimum);
        return;
    }
    _d->limits[axis].hasMin = true;
    _d->limits[axis].min = minimum;
}

void VwqPlotZoomer::setAxisLimitMax(int axis, double maximum)
{
    if (axis < 0 || axis >= QwtPlot::axisCnt || !std::isfinite(maximum)) {
        qWarning("VwqPlotZoomer::setAxisLimitMax: axis %d, limit %g refused", axis, maximum);
        return;
    }
    _d->limits[axis].hasMax = true;
    _d->limits[axis].max = maximum;
}

void VwqPlotZoomer::setAxisNoLimit(int axis)
{
    if (axis >= 0 && axis < QwtPlot::axisCnt)
        _d->limits[axis] = Limit();
}

void VwqPlotZoomer::setMaxStackDepth(int depth)
{
    _d->maxDepth = depth < 0 ? -1 : depth;
}

int VwqPlotZoomer::getMaxStackDepth() const
{
    return _d->maxDepth;
}

void VwqPlotZoomer::setFactor(double factor)
{
    if (!(factor > 0.0 && factor < 1.0)) {
        qWarning("VwqPlotZoomer::setFactor: %g is not between 0 and 1, ignored", factor);
        return;
    }
    _d->factor = factor;
}

double VwqPlotZoomer::getFactor() const
{
    return _d->factor;
}

void VwqPlotZoomer::setRescaler(VwqPlotRescaler* rescaler)
{
    _d->rescaler = rescaler;
}

void VwqPlotZoomer::setEnabledModes(const QList<Vw::ViewMode>& modes)
{
    _d->enabledModes = modes;
    setMode(_d->mode);
}

Vw::ViewMode VwqPlotZoomer::getMode() const
{
    return _d->mode;
}

void VwqPlotZoomer::setMode(Vw::ViewMode mode)
{
    _d->mode = mode;
    // A new state machine also abandons a selection in progress.
    const bool enabled = _d->enabledModes.contains(mode);
    setEnabled(enabled);
    if (!enabled)
        return;
    QWidget* canvas = this->canvas();
    using namespace Vua::Resource;
    switch (mode) {
    case Vw::ZOOM_IN:
    case Vw::ZOOM_OUT:
        setStateMachine(new QwtPickerClickPointMachine);
        setRubberBand(QwtPicker::NoRubberBand);
        if (canvas)
            canvas->setCursor(VuaResourceProvider::getCursor(mode == Vw::ZOOM_IN ? cursorZoomIn() : cursorZoomOut()));
        break;
    case Vw::ZOOM_BOX:
        setStateMachine(new QwtPickerDragRectMachine);
        setRubberBand(QwtPicker::RectRubberBand);
        if (canvas)
            canvas->setCursor(VuaResourceProvider::getCursor(cursorZoomBox()));
        break;
    default:
        break;
    }
}

bool VwqPlotZoomer::accept(QPolygon& points) const
{
    if (_d->mode == Vw::ZOOM_IN || _d->mode == Vw::ZOOM_OUT)
        return points.size() == 1;
    if (_d->mode != Vw::ZOOM_BOX || points.size() < 2)
        return false;
    // Sizes as distances dragged: a drag of one pixel each way is a shaky click.
    const QPoint a = points.first();
    const QPoint b = points.last();
    const int width = std::abs(b.x() - a.x());
    const int height = std::abs(b.y() - a.y());
    if (width < MIN_DRAG && height < MIN_DRAG)
        return false;
    const int left = std::min(a.x(), b.x()) - std::max(0, MIN_BOX - width) / 2;
    const int top = std::min(a.y(), b.y()) - std::max(0, MIN_BOX - height) / 2;
    points.resize(2);
    points[0] = QPoint(left, top);
    points[1] = QPoint(left + std::max(width, MIN_BOX), top + std::max(height, MIN_BOX));
    return true;
}

void VwqPlotZoomer::_clicked(const QPointF& point)
{
    if (_d->mode != Vw::ZOOM_IN && _d->mode != Vw::ZOOM_OUT)
        return;
    const QRectF current = getZoomRect();
    const double k = _d->mode == Vw::ZOOM_IN ? 1.0 - _d->factor : 1.0 + _d->factor;
    QRectF rect(0.0, 0.0, current.width() * k, current.height() * k);
    // The clicked point keeps its place: the centre moves towards it by the same scale.
    rect.moveCenter(point + (current.center() - point) * k);
    zoom(rect);
}

void VwqPlotZoomer::_dragged(const QRectF& dragged)
{
    if (_d->mode != Vw::ZOOM_BOX)
        return;
    QRectF rect = dragged.normalized();
    rescaleToCurrentScale(rect);
    zoom(rect);
}
