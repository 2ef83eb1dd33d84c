#include "VwvIBasemapRenderer.h"

#include <QtNumeric>

VwvIBasemapRenderer::~VwvIBasemapRenderer() = default;

QPointF VwvIBasemapRenderer::rankPosition(int) const
{
    return QPointF(qQNaN(), qQNaN());
}

KbiIntervalIntSmallDisjoint VwvIBasemapRenderer::selection() const
{
    return {};
}

std::shared_ptr<const VwvIBasemapRenderer> VwvIBasemapRenderer::withSelection(const KbiIntervalIntSmallDisjoint&) const
{
    return nullptr;
}

void VwvIBasemapRenderer::render(QImage& image, const QwtScaleMap& xMap, const QwtScaleMap& yMap, qreal) const
{
    render(image, xMap, yMap);
}
