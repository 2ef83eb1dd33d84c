#include <SiRenderArea.h>

SiRenderArea::~SiRenderArea() = default;
