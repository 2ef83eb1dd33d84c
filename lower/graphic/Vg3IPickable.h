#pragma once
// Something of a 3D scene that the user may pick or not.

#include <velmora_graphic_export.h>

class VELMORA_GRAPHIC_EXPORT Vg3IPickable
{
public:
    virtual ~Vg3IPickable() = default;
    virtual bool isPickable() const = 0;
    virtual void setPickable(bool pickable) = 0;
};
