#include "VwvIBasemapRenderer.h"

#include <QtNumeric>

VwvIBasemapRenderer::~VwvIBasemapRenderer() = default;

QPointF VwvIBasemapRenderer::rankPosition(int) const
{
    return QPointF(qQNaN(), qQNaN());
}
