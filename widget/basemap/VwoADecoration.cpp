#include "VwoADecoration.h"

#include <QPainter>

#include <cmath>

VwoADecoration::VwoADecoration(const QString& title)
    : QwtPlotItem(QwtText(title))
{
    setZ(Z);
    setRenderHint(QwtPlotItem::RenderAntialiased, true);
    // A decoration sits on the screen, not on the map: it must never widen the extent
    // the plot autoscales to, nor show in a legend.
    setItemAttribute(QwtPlotItem::AutoScale, false);
    setItemAttribute(QwtPlotItem::Legend, false);
}

VwoADecoration::~VwoADecoration() = default;

void VwoADecoration::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                          const QRectF& canvasRect) const
{
    const bool finite = std::isfinite(canvasRect.x()) && std::isfinite(canvasRect.y()) &&
                        std::isfinite(canvasRect.width()) && std::isfinite(canvasRect.height());
    if (!painter || !finite || canvasRect.isEmpty())
        return;
    render(painter, xMap, yMap, canvasRect);
}
