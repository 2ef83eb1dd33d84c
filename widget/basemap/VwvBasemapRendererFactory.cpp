#include "VwvBasemapRendererFactory.h"

#include "VwvBasemapRenderer.h"
#include "VwvBasemapRendererGridWire.h"
#include "VwvBasemapRendererPolygon.h"
#include "VwvBasemapRendererPolyline.h"
#include "VwvBasemapRendererRaster.h"

#include <KbeError.h>
#include <KbeProgrammingError.h>
#include <VugDatasetStore.h>
#include <VugERendering.h>
#include <VugSceneItem.h>

#include <QCoreApplication>

namespace {

[[noreturn]] void missing(const VugSceneItem& item, const char* kind)
{
    throw KbeError(QCoreApplication::translate("VwvBasemapRendererFactory",
                                               "The item '%1' needs the %2 '%3', which the project does not hold.")
                       .arg(item.getName(), QCoreApplication::translate("VwvBasemapRendererFactory", kind),
                            item.getDatasetKey()));
}

// The scale over the values the renderer will colour, so that the whole range shows; the
// few far outside the others take its end colours (the store reported them).
VugColorScale scaleOver(const QVector<double>& values)
{
    VugColorScale scale = VugColorScale::rainbow();
    scale.fitTo(values);
    return scale;
}

} // namespace

std::shared_ptr<const VwvIBasemapRenderer> VwvBasemapRendererFactory::create(const VugSceneItem& item,
                                                                           const VugDatasetStore& datasets)
{
    const int rendering = item.getRendering().getValue();
    switch (rendering) {
    case VugERendering::POINTS_V:
    case VugERendering::POINT_SYMBOLS_V:
    case VugERendering::POINT_LABELS_V: {
        const VsdPointSet* set = datasets.pointSet(item.getDatasetKey());
        if (!set)
            missing(item, QT_TR_NOOP("point set"));
        VwvPointRasterizer::Style style;
        // Symbols are seen one by one; plain points are many and small.
        style.size = rendering == VugERendering::POINT_SYMBOLS_V ? 5 : 3;
        const QString variable = item.getSubDatasetKey();
        return std::make_shared<VwvBasemapRenderer>(*set, variable, scaleOver(set->variable(variable)), style);
    }
    case VugERendering::RASTER_V: {
        const VsdGrid* grid = datasets.grid(item.getDatasetKey());
        if (!grid)
            missing(item, QT_TR_NOOP("grid"));
        return std::make_shared<VwvBasemapRendererRaster>(*grid, scaleOver(grid->values()));
    }
    case VugERendering::POLYGONS_V: {
        const VsdPolygonSet* set = datasets.polygonSet(item.getDatasetKey());
        if (!set)
            missing(item, QT_TR_NOOP("polygon set"));
        return std::make_shared<VwvBasemapRendererPolygon>(*set);
    }
    case VugERendering::GRID_WIRE_V: {
        const VsdGrid* grid = datasets.grid(item.getDatasetKey());
        if (!grid)
            missing(item, QT_TR_NOOP("grid"));
        return std::make_shared<VwvBasemapRendererGridWire>(*grid);
    }
    case VugERendering::POLYLINES_V: {
        const VsdPolylineSet* set = datasets.polylineSet(item.getDatasetKey());
        if (!set)
            missing(item, QT_TR_NOOP("polyline set"));
        return std::make_shared<VwvBasemapRendererPolyline>(*set);
    }
    default:
        break;
    }
    throw KbeProgrammingError(QStringLiteral("No 2D renderer for rendering '%1'.").arg(rendering));
}
