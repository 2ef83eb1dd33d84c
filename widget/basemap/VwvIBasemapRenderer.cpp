#include "VwvIBasemapRenderer.h"

VwvIBasemapRenderer::~VwvIBasemapRenderer() = default;
