#pragma once
// What the overlays laid out on the whole window (a title, the colour legend) have in common:
// an SoAnnotation root, so they draw after the scene and over it, a switch that hides them,
// their own camera showing [-1, 1] both ways whatever the window's shape, unlit drawing, and
// a hook that places the content from the viewport's size in pixels, which only the
// traversal knows. The owner adds its nodes under getContent().

#include <SoRef.h>

#include <Inventor/SbLinear.h>

#include <functional>

class SoAction;
class SoSeparator;
class SoState;
class SoSwitch;

class Vg3ScreenOverlay
{
public:
    // Called while traversing, before the content, with a viewport of some pixels both ways;
    // moves the model matrix where the content belongs.
    using Place = std::function<void(SoState* state, const SbVec2s& pixels)>;

    // `name` names the root node.
    Vg3ScreenOverlay(const char* name, Place place);
    ~Vg3ScreenOverlay();

    // Referenced for the life of the object.
    SoSeparator* getRoot() const;
    SoSeparator* getContent() const;

    void setShown(bool shown);

private:
    Vg3ScreenOverlay(const Vg3ScreenOverlay&) = delete;
    Vg3ScreenOverlay& operator=(const Vg3ScreenOverlay&) = delete;
    static void _placeCallback(void* data, SoAction* action);

    Place const _place;
    SoRef<SoSeparator> _root;
    SoSwitch* _visibility = nullptr;
    SoSeparator* _content = nullptr;
};
