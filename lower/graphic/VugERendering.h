#pragma once
// How a scene item is drawn. The value picks the renderer that draws the item: a map
// view draws the 2D renderings and refuses the others (SURFACE, VOLUME_SLICES), which
// only a 3D view draws. Values are stored in scene files: never renumber them.

#include <velmora_graphic_export.h>

#include <KbbAEnum.h>

class VELMORA_GRAPHIC_EXPORT VugERendering : public KbbAEnum
{
public:
    enum EValue {
        POINTS_V = 0,
        RASTER_V = 1,
        TILED_RASTER_MAP_V = 2,
        VECTOR_MAP_V = 3,
        POLYGONS_V = 6,
        GRID_WIRE_V = 7,
        POINT_SYMBOLS_V = 8,
        POINT_LABELS_V = 12,
        SURFACE_V = 16,
        VOLUME_SLICES_V = 17,
        POLYLINES_V = 25
    };
    using Iterator = KbbEnumIterator<VugERendering>;

    static const VugERendering POINTS;
    static const VugERendering RASTER;
    static const VugERendering TILED_RASTER_MAP;
    static const VugERendering VECTOR_MAP;
    static const VugERendering POLYGONS;
    static const VugERendering GRID_WIRE;
    static const VugERendering POINT_SYMBOLS;
    static const VugERendering POINT_LABELS;
    static const VugERendering SURFACE;
    static const VugERendering VOLUME_SLICES;
    static const VugERendering POLYLINES;

    // POINTS.
    VugERendering();

    static int count();
    static Iterator createIterator();
    static bool existsValue(int value);
    // Both throw KbeProgrammingError for an unknown value or key.
    static const VugERendering& fromValue(int value);
    static const VugERendering& fromKey(const QString& key);
    static VugERendering fromValue(int value, const VugERendering& fallback);
    static VugERendering fromKey(const QString& key, const VugERendering& fallback);

    // Whether a 2D map view has a renderer for it.
    bool isMapRendering() const;

    EValue toEnum() const { return EValue(getValue()); }
    bool operator==(const VugERendering& o) const { return getValue() == o.getValue(); }
    bool operator!=(const VugERendering& o) const { return getValue() != o.getValue(); }

private:
    VugERendering(const QString& label, int value, const char* key);
    static QMap<int, VugERendering*>& _map();
};
