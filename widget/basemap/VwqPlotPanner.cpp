#include "VwqPlotPanner.h"

#include <VuaResourceProvider.h>

#include <QKeyEvent>
#include <QMouseEvent>

VwqPlotPanner::VwqPlotPanner(QWidget* canvas)
    : QwtPlotPanner(canvas)
{
    setMouseButton(Qt::LeftButton);
    setCursor(Qt::ClosedHandCursor);
    setEnabled(false);
}

VwqPlotPanner::~VwqPlotPanner() = default;

Vw::ViewMode VwqPlotPanner::getMode() const
{
    return _mode;
}

void VwqPlotPanner::setMode(Vw::ViewMode mode)
{
    _mode = mode;
    setEnabled(mode == Vw::PAN || mode == Vw::SELECT);
    if (!parentWidget())
        return;
    if (mode == Vw::PAN)
        parentWidget()->setCursor(Qt::OpenHandCursor);
    else if (mode == Vw::SELECT)
        parentWidget()->setCursor(VuaResourceProvider::getCursor(Vua::Resource::cursorSelectVisor()));
}

void VwqPlotPanner::centerAt(const QPoint& canvasPoint)
{
    const QWidget* canvas = parentWidget();
    if (!canvas)
        return;
    const QPoint offset = canvas->rect().center() - canvasPoint;
    // As a finished drag would: the plot moves, and whoever follows pans hears of it.
    if (!offset.isNull())
        emit panned(offset.x(), offset.y());
}

void VwqPlotPanner::widgetMousePressEvent(QMouseEvent* event)
{
    if (_mode == Vw::SELECT) {
        if (event->button() == Qt::LeftButton)
            centerAt(event->pos());
        return;
    }
    QwtPlotPanner::widgetMousePressEvent(event);
}

void VwqPlotPanner::widgetKeyPressEvent(QKeyEvent* event)
{
    if (_mode == Vw::PAN) {
        const int step = event->modifiers() & Qt::ShiftModifier ? 5 : 1;
        int dx = 0;
        int dy = 0;
        switch (event->key()) {
        case Qt::Key_Left: dx = -step; break;
        case Qt::Key_Right: dx = step; break;
        case Qt::Key_Up: dy = -step; break;
        case Qt::Key_Down: dy = step; break;
        default: break;
        }
        if (dx || dy) {
            emit panned(dx, dy);
            event->accept();
            return;
        }
    } else if (_mode == Vw::SELECT && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Space)) {
        QWidget* canvas = parentWidget();
        const QPoint mouse = canvas->mapFromGlobal(QCursor::pos());
        if (canvas->rect().contains(mouse)) {
            centerAt(mouse);
            QCursor::setPos(canvas->mapToGlobal(canvas->rect().center()));
        }
        event->accept();
        return;
    }
    QwtPlotPanner::widgetKeyPressEvent(event);
}
