#pragma once
// Makes the renderer that draws a scene item on the map, chosen by the item's rendering:
// points (0, 8 as symbols, 12 labelled), raster (1), polygons (6), grid wireframe (7),
// polylines (25), over the item's dataset and, for points and rasters, coloured by the
// variable its sub-dataset key names.

#include <velmora_widget_export.h>

#include <VwvIBasemapRenderer.h>

#include <memory>

class VugDatasetStore;
class VugSceneItem;

class VELMORA_WIDGET_EXPORT VwvBasemapRendererFactory
{
public:
    // Throws KbeProgrammingError "No 2D renderer for rendering '%1'." for a rendering the
    // map does not draw, and KbeError when the item's dataset is missing or of a kind
    // the rendering does not draw.
    static std::shared_ptr<const VwvIBasemapRenderer> create(const VugSceneItem& item,
                                                             const VugDatasetStore& datasets);

    VwvBasemapRendererFactory() = delete;
};
