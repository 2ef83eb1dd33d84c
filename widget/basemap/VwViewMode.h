#pragma once
// The interaction modes of a 2D map view; the plot hands the current one to each of its
// tools, which switch themselves on, off or into the right form.

namespace Vw {

enum ViewMode {
    NO_MODE = 0,        // no tool takes the mouse
    PAN = 1,            // left drag pans; arrows pan by 1 pixel, 5 with Shift
    SELECT = 2,         // a click (or Return, Space) centres the map on the point
    ZOOM_IN = 3,        // a click zooms in about the point
    ZOOM_OUT = 4,       // a click zooms out about the point
    ZOOM_BOX = 5,       // a dragged rectangle is zoomed to
    MEASURE_AREA = 6,   // clicked vertices measure an area and its perimeter
    MEASURE_LENGTH = 7, // clicked vertices measure a length and the azimuth
};

} // namespace Vw
