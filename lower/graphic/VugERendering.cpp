#include "VugERendering.h"

#include <QCoreApplication>

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("VugERendering", text);
}
} // namespace

const VugERendering VugERendering::POINTS(tr("Points"), POINTS_V, "POINTS");
const VugERendering VugERendering::RASTER(tr("Raster"), RASTER_V, "RASTER");
const VugERendering VugERendering::TILED_RASTER_MAP(tr("Tiled raster map"), TILED_RASTER_MAP_V, "TILED_RASTER_MAP");
const VugERendering VugERendering::VECTOR_MAP(tr("Vector map"), VECTOR_MAP_V, "VECTOR_MAP");
const VugERendering VugERendering::POLYGONS(tr("Polygons"), POLYGONS_V, "POLYGONS");
const VugERendering VugERendering::GRID_WIRE(tr("Grid wireframe"), GRID_WIRE_V, "GRID_WIRE");
const VugERendering VugERendering::POINT_SYMBOLS(tr("Points as symbols"), POINT_SYMBOLS_V, "POINT_SYMBOLS");
const VugERendering VugERendering::POINT_LABELS(tr("Points as labels"), POINT_LABELS_V, "POINT_LABELS");
const VugERendering VugERendering::SURFACE(tr("Surface"), SURFACE_V, "SURFACE");
const VugERendering VugERendering::VOLUME_SLICES(tr("Volume slices"), VOLUME_SLICES_V, "VOLUME_SLICES");
const VugERendering VugERendering::POLYLINES(tr("Polylines"), POLYLINES_V, "POLYLINES");

VugERendering::VugERendering(const QString& label, int value, const char* key)
    : KbbAEnum(label, value, key)
{
    KbbEnumTable::registerItem(_map(), this, "VugERendering");
}

VugERendering::VugERendering()
    : KbbAEnum(POINTS)
{
}

QMap<int, VugERendering*>& VugERendering::_map()
{
    static QMap<int, VugERendering*> map;
    return map;
}

int VugERendering::count() { return _map().size(); }
VugERendering::Iterator VugERendering::createIterator() { return Iterator(_map()); }
bool VugERendering::existsValue(int value) { return _map().contains(value); }

const VugERendering& VugERendering::fromValue(int value)
{
    return KbbEnumTable::fromValue(_map(), value, Q_FUNC_INFO, "Vug");
}

const VugERendering& VugERendering::fromKey(const QString& key)
{
    return KbbEnumTable::fromKey(_map(), key, Q_FUNC_INFO, "Vug");
}

VugERendering VugERendering::fromValue(int value, const VugERendering& fallback)
{
    const VugERendering* e = _map().value(value, nullptr);
    return e ? *e : fallback;
}

VugERendering VugERendering::fromKey(const QString& key, const VugERendering& fallback)
{
    const VugERendering* e = KbbEnumTable::findKey(_map(), key);
    return e ? *e : fallback;
}

bool VugERendering::isMapRendering() const
{
    return getValue() != SURFACE_V && getValue() != VOLUME_SLICES_V;
}
