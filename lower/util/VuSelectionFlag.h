#pragma once
// How a set of sample ranks changes a selection: added to it, taken from it, each rank
// flipped, or the set becoming the whole selection.

namespace Vu {

enum SelectionFlag {
    SELECT,   // the ranks are added
    DESELECT, // the ranks are taken away
    TOGGLE,   // selected ranks are taken away, the others added
    REPLACE,  // the ranks become the whole selection
};

} // namespace Vu
