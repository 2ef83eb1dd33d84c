#pragma once
// The bottom of a 3D view's pick-handler stack: it uses no event itself, so the camera gets
// them, and it is the overlay that shows, in the view's top-left corner, the help title and
// text of whatever handler is on top of it ("Picker", "Press Shift to append", ...).

#include <velmora_widget_export.h>

#include <VgpIPickHandler.h>

#include <memory>

class SoNode;

class VELMORA_WIDGET_EXPORT VwwPickHandlerOverlay : public VgpIPickHandler
{
public:
    VwwPickHandlerOverlay();
    ~VwwPickHandlerOverlay() override;

    // The overlay's Inventor graph, drawn over the scene; referenced while the overlay lives.
    SoNode* getRoot() const;
    // The title on the first line, the text below it; both empty hides the overlay.
    void showHelp(const QString& title, const QString& text);
    QString getShownText() const;

    bool mousePressed(const SoMouseButtonEvent*, SoHandleEventAction*) override { return false; }
    bool mouseMoved(const SoLocation2Event*, SoHandleEventAction*) override { return false; }
    bool mouseReleased(const SoMouseButtonEvent*, SoHandleEventAction*) override { return false; }
    bool keyPressed(const SoKeyboardEvent*, SoHandleEventAction*) override { return false; }
    bool keyReleased(const SoKeyboardEvent*, SoHandleEventAction*) override { return false; }
    QString getHelpTitle() const override { return QString(); }
    QString getHelpText() const override { return QString(); }

private:
    VwwPickHandlerOverlay(const VwwPickHandlerOverlay&) = delete;
    VwwPickHandlerOverlay& operator=(const VwwPickHandlerOverlay&) = delete;
    std::unique_ptr<class Vg3Annotation> const _annotation;
};
