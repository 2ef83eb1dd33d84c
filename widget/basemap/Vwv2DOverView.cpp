#include "Vwv2DOverView.h"

#include "VwqBasemapPlot.h"
#include "VwqPlotMagnifier.h"
#include "VwqPlotRescaler.h"
#include "VwqPlotZoomer.h"
#include "VwvBasemapSceneLayers.h"

#include <KbuUnit.h>
#include <VuuCoordSystem.h>

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include <cmath>
#include <functional>

namespace {

constexpr double MARGIN = 0.05;  // part of the scene's extent left free on each side
constexpr double MIN_SIDE = 7.0; // logical pixels the rectangle keeps, to stay visible and grabbable
constexpr double BORDER = 2.0;   // logical pixels
constexpr double KEY_STEP = 5.0; // logical pixels an arrow key moves the rectangle by

bool isFinite(const QRectF& r)
{
    return std::isfinite(r.left()) && std::isfinite(r.top()) && std::isfinite(r.width()) && std::isfinite(r.height());
}

// The zoom area over the whole canvas: it draws the rectangle and takes the mouse and the
// keys that move it. The area is kept in map coordinates and mapped through the plot's
// maps at each use, so it follows resizes and new extents.
class ZoomAreaFrame : public QWidget
{
public:
    ZoomAreaFrame(VwqBasemapPlot* plot, QWidget* canvas)
        : QWidget(canvas)
        , _plot(plot)
    {
        setObjectName(QStringLiteral("zoomAreaFrame"));
        setMouseTracking(true);
        setFocusPolicy(Qt::StrongFocus);
        setGeometry(canvas->rect());
    }

    // Called with the area in map coordinates once the user has moved it.
    std::function<void(const QRectF&)> moved;

    const QRectF& area() const { return _area; }
    void setArea(const QRectF& area)
    {
        _area = area;
        update();
    }
    bool isDragging() const { return _dragging; }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QRectF r = _drawnRect();
        if (r.isEmpty())
            return;
        // Far beyond the canvas the border would not be seen anyway; clipping keeps huge
        // pixel coordinates out of the painter.
        r = r.intersected(QRectF(rect()).adjusted(-2 * BORDER, -2 * BORDER, 2 * BORDER, 2 * BORDER));
        if (r.isEmpty())
            return;
        QPainter painter(this);
        const QColor colour = palette().color(QPalette::Highlight);
        QColor fill = colour;
        fill.setAlpha(60);
        painter.setPen(QPen(colour, BORDER, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.setBrush(fill);
        painter.drawRect(r.adjusted(BORDER / 2, BORDER / 2, -BORDER / 2, -BORDER / 2));
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!_dragging) {
            _updateCursor(event->localPos());
            return;
        }
        QRectF r = _pressRect;
        r.moveTopLeft(event->localPos() + _grabOffset);
        const QPointF centre = _plot->pixelToView(r.center());
        if (!std::isfinite(centre.x()) || !std::isfinite(centre.y()))
            return;
        _area.moveCenter(centre);
        update();
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        const QRectF r = _drawnRect();
        if (event->button() != Qt::LeftButton || !r.contains(event->localPos())) {
            event->ignore();
            return;
        }
        _dragging = true;
        _pressRect = r;
        _grabOffset = r.topLeft() - event->localPos();
        setCursor(Qt::ClosedHandCursor);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton || !_dragging) {
            event->ignore();
            return;
        }
        _dragging = false;
        _updateCursor(event->localPos());
        // Every drag ends with the area, also one that came back to where it started.
        _emitMoved();
    }

    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton || _area.isEmpty()) {
            event->ignore();
            return;
        }
        const QPointF centre = _plot->pixelToView(event->localPos());
        if (!std::isfinite(centre.x()) || !std::isfinite(centre.y()))
            return;
        _dragging = false;
        _area.moveCenter(centre);
        update();
        _updateCursor(event->localPos());
        _emitMoved();
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        QPointF step;
        switch (event->key()) {
        case Qt::Key_Left: step = QPointF(-KEY_STEP, 0); break;
        case Qt::Key_Right: step = QPointF(KEY_STEP, 0); break;
        case Qt::Key_Up: step = QPointF(0, -KEY_STEP); break;
        case Qt::Key_Down: step = QPointF(0, KEY_STEP); break;
        default: QWidget::keyPressEvent(event); return;
        }
        if (_dragging || _area.isEmpty())
            return;
        const QPointF pixel = _plot->viewToPixel(_area.center()) + step;
        const QPointF centre = _plot->pixelToView(pixel);
        if (!std::isfinite(centre.x()) || !std::isfinite(centre.y()))
            return;
        _area.moveCenter(centre);
        update();
        _emitMoved();
    }

private:
    // The area on the canvas, grown about its centre to the smallest size drawn.
    QRectF _drawnRect() const
    {
        if (_area.isEmpty())
            return QRectF();
        QRectF r = _plot->viewToPixel(_area);
        if (!isFinite(r))
            return QRectF();
        const QPointF centre = r.center();
        r.setSize(QSizeF(std::max(r.width(), MIN_SIDE), std::max(r.height(), MIN_SIDE)));
        r.moveCenter(centre);
        return r;
    }

    void _updateCursor(const QPointF& position)
    {
        setCursor(_drawnRect().contains(position) ? Qt::OpenHandCursor : Qt::ArrowCursor);
    }

    void _emitMoved()
    {
        if (moved)
            moved(_area);
    }

    VwqBasemapPlot* const _plot;
    QRectF _area;
    bool _dragging = false;
    QRectF _pressRect;  // on the canvas, when the drag started
    QPointF _grabOffset; // from the mouse to the drawn rectangle's top-left
};

} // namespace

class Vwv2DOverViewPrivate
{
public:
    VwqBasemapPlot* plot = nullptr;
    VwvBasemapSceneLayers* layers = nullptr;
    ZoomAreaFrame* frame = nullptr;
};

Vwv2DOverView::Vwv2DOverView(QWidget* parent)
    : QWidget(parent)
    , _d(new Vwv2DOverViewPrivate)
{
    _d->plot = new VwqBasemapPlot(this);
    _d->plot->setObjectName(QStringLiteral("GeographicOverview"));
    _d->plot->setMode(Vw::NO_MODE);
    _d->plot->magnifier()->disable();
    _d->plot->magnifier()->setEnabled(false);
    // The overview fits the whole scene itself after each resize; the rescaler would
    // otherwise stretch the last fit about its centre.
    _d->plot->rescaler()->setEnabled(false);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        _d->plot->enableAxis(axis, false);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(_d->plot);

    QWidget* canvas = _d->plot->canvas();
    _d->frame = new ZoomAreaFrame(_d->plot, canvas);
    _d->frame->moved = [this](const QRectF& rect) { emit zoomAreaChanged(rect); };
    // Keys go to the rectangle; the canvas itself has none to take.
    canvas->setFocusPolicy(Qt::NoFocus);
    setFocusProxy(_d->frame);
    canvas->installEventFilter(this);

    _d->layers = new VwvBasemapSceneLayers(_d->plot, this);
    connect(_d->layers, &VwvBasemapSceneLayers::layersChanged, this, &Vwv2DOverView::_showWholeScene);
}

Vwv2DOverView::~Vwv2DOverView()
{
    _d->plot->canvas()->removeEventFilter(this);
    // The layers hold items of the plot: they go first.
    delete _d->layers;
}

QSize Vwv2DOverView::sizeHint() const
{
    return QSize(150, 150);
}

void Vwv2DOverView::setScene(VugScene* scene, VugDatasetStore* datasets)
{
    _d->layers->setScene(scene, datasets);
}

void Vwv2DOverView::setCoordinateSystem(const VuuCoordSystem& system)
{
    _d->layers->setCoordinateSystem(system);
    _showWholeScene();
}

const VuuCoordSystem& Vwv2DOverView::getCoordSystem() const
{
    return _d->layers->getCoordSystem();
}

const KbuUnit& Vwv2DOverView::getCoordinatesUnit() const
{
    return getCoordSystem().getUnit();
}

QRectF Vwv2DOverView::getZoomArea() const
{
    return _d->frame->area();
}

void Vwv2DOverView::setZoomArea(const QRectF& rect)
{
    if (!isFinite(rect) || !rect.isValid()) {
        qWarning("Vwv2DOverView::setZoomArea: an empty, invalid or non-finite rectangle is ignored");
        return;
    }
    if (_d->frame->isDragging() || rect == _d->frame->area())
        return;
    _d->frame->setArea(rect);
}

bool Vwv2DOverView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _d->plot->canvas() && event->type() == QEvent::Resize) {
        _d->frame->setGeometry(_d->plot->canvas()->rect());
        _showWholeScene();
    }
    return QWidget::eventFilter(watched, event);
}

void Vwv2DOverView::_showWholeScene()
{
    QRectF extent;
    if (!_d->layers->extent(&extent, false))
        return;
    // A little room on each side; a single location still gets a view around it.
    const double dx = extent.width() > 0.0 ? extent.width() * MARGIN : 1.0;
    const double dy = extent.height() > 0.0 ? extent.height() * MARGIN : 1.0;
    extent.adjust(-dx, -dy, dx, dy);
    // The zoomer shapes the rectangle to the canvas, one map unit as long across as up.
    _d->plot->zoomer()->resetZoom(extent);
    _d->frame->update();
}
