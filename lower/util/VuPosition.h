#pragma once
// Where an overlay (legend, compass, ...) sits in the view: one horizontal and one
// vertical flag or-ed together, e.g. BOTTOM_RIGHT (12) for the lower right corner. The
// plain enum is what the views take; Positions serves code that tests single flags.

#include <QFlags>

namespace Vu {

enum Position {
    LEFT = 0x1,
    HCENTER = 0x2,
    RIGHT = 0x4,
    BOTTOM = 0x8,
    VCENTER = 0x10,
    TOP = 0x20,
    BOTTOM_LEFT = BOTTOM | LEFT,
    BOTTOM_RIGHT = BOTTOM | RIGHT,
    TOP_LEFT = TOP | LEFT,
    TOP_RIGHT = TOP | RIGHT,
    CENTER = VCENTER | HCENTER,
    HORIZONTAL_MASK = LEFT | HCENTER | RIGHT,
    VERTICAL_MASK = BOTTOM | VCENTER | TOP
};
Q_DECLARE_FLAGS(Positions, Position)

// Exactly one horizontal and one vertical flag, nothing else.
inline bool isValidPosition(int value)
{
    const int h = value & HORIZONTAL_MASK;
    const int v = value & VERTICAL_MASK;
    const auto single = [](int bits) { return bits != 0 && (bits & (bits - 1)) == 0; };
    return (value & ~(HORIZONTAL_MASK | VERTICAL_MASK)) == 0 && single(h) && single(v);
}

} // namespace Vu
