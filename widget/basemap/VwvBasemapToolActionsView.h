#pragma once
// The map's view tools (group id "view"). Modes: pan (P), zoom box (Z), zoom in (+),
// zoom out (-), centre view (C), measure length (L), measure area (A); each hands its
// view mode to the view, and the view starts in pan. Commands: view all (Home, Ctrl+0),
// zoom on the current layer (Shift+Home, only while the view has a drawn current layer),
// undo zoom (Alt+Left) and redo zoom (Alt+Right), enabled by the view's zoom stack.
// Shortcuts work while the focus is in the view (see VwvABasemapToolActions); the plain
// keys are safe there because the map takes no text.

#include <velmora_widget_export.h>

#include <VwvABasemapToolActions.h>

class VELMORA_WIDGET_EXPORT VwvBasemapToolActionsView : public VwvABasemapToolActions
{
    Q_OBJECT
public:
    // Mode ids.
    static constexpr const char* PAN = "pan";
    static constexpr const char* ZOOM_BOX = "zoomBox";
    static constexpr const char* ZOOM_IN = "zoomIn";
    static constexpr const char* ZOOM_OUT = "zoomOut";
    static constexpr const char* CENTER_VIEW = "centerView";
    static constexpr const char* MEASURE_LENGTH = "measureLength";
    static constexpr const char* MEASURE_AREA = "measureArea";
    // Command ids.
    static constexpr const char* VIEW_ALL = "viewAll";
    static constexpr const char* ZOOM_ON_LAYER = "zoomOnLayer";
    static constexpr const char* UNDO_ZOOM = "undoZoom";
    static constexpr const char* REDO_ZOOM = "redoZoom";

    explicit VwvBasemapToolActionsView(QObject* parent = nullptr);
    ~VwvBasemapToolActionsView() override;

    QString getId() const override;
    QString getDefaultStartMode() const override;

protected:
    void _update() override;
};
