#pragma once
// What the render areas share whatever their surface (QWindow, QGLWidget, QOpenGLWidget):
// the SiRenderArea settings, the interactor, activation, transparency, the offscreen flag,
// saving to file and the input handlers, all kept by one Vw3RenderAreaSupport. A concrete
// area adds its GL context lifecycle, render(), getImage() and the signals.
// Input rules: the first mouse press activates the area and goes no further; keys, moves,
// releases and the wheel reach the scene only once activated; a right click that moves
// less than 6 pixels in x and y asks for the context menu on release.

#include <velmora_widget_export.h>

#include <Vw3RenderAreaSupport.h>

#include <QImage>
#include <QObject>

#include <utility>

template <class Surface>
class VELMORA_WIDGET_EXPORT Vw3RenderAreaBase : public Surface, public SiRenderArea
{
public:
    // Receives every translated event; its scene root becomes the rendered scene graph.
    void setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor)
    {
        _support.setSceneInteractor(interactor);
        _scheduleUpdate();
    }
    QSharedPointer<Vg3SceneInteractor> getSceneInteractor() const { return _support.sceneInteractor(); }

    void setSceneGraph(SoNode* sceneGraph) override
    {
        _support.setSceneGraph(sceneGraph);
        _scheduleUpdate();
    }
    SoNode* getSceneGraph() const override { return _support.sceneGraph(); }
    // In device pixels; a resize of the surface sets it.
    void setSize(const SbVec2i32& size) override { _support.setSize(size); }
    SbVec2i32 getSize() const override { return _support.size(); }
    const SbViewportRegion& getViewportRegion() const override { return _support.viewportRegion(); }
    void setClearColor(const SbColorRGBA& color) override
    {
        _support.setClearColor(color);
        _scheduleUpdate();
    }
    SbColorRGBA getClearColor() const override { return _support.clearColor(); }
    void setClearDepth(float depth) override { _support.setClearDepth(depth); }
    float getClearDepth() const override { return _support.clearDepth(); }
    void setClearPolicy(SiRenderArea::ClearPolicy policy) override { _support.setClearPolicy(policy); }
    SiRenderArea::ClearPolicy getClearPolicy() const override { return _support.clearPolicy(); }

    bool isInitialized() const { return _support.isInitialized(); }
    void setActivated(bool activated) { _support.activated = activated; }
    bool isActivated() const { return _support.activated; }

    SoGLRenderAction::TransparencyType getTransparencyType() const { return _support.transparencyType(); }
    void setTransparencyType(SoGLRenderAction::TransparencyType type)
    {
        _support.setTransparencyType(type);
        _scheduleUpdate();
    }

    // The scene rendered at width x height device pixels, top row first, opaque. Throws
    // KbeProgrammingError("Cannot get image, render area is not initialized.") before the
    // first successful GL initialisation; a null image for a size out of range.
    virtual QImage getImage(int width, int height) = 0;
    // Writes the scene at the current size as PNG; false (with a warning) on failure.
    bool saveToFile(const QString& fileName)
    {
        const SbVec2i32 size = getSize();
        return Vw3RenderAreaSupport::saveImage(getImage(size[0], size[1]), fileName,
                                               this->metaObject()->className());
    }
    // Lets render() draw while the surface is not shown.
    void setupForOffscreenRendering(bool enabled) { _support.offscreenEnabled = enabled; }

protected:
    template <class... SurfaceArguments>
    explicit Vw3RenderAreaBase(SurfaceArguments&&... arguments)
        : Surface(std::forward<SurfaceArguments>(arguments)...)
    {
    }

    // Asks the surface for a frame from the event loop.
    virtual void _scheduleUpdate() = 0;

    // For the concrete area's constructor: positions convert against `eventWidget`, and
    // activation and context-menu requests become `area`'s signals.
    template <class Area>
    void _connectSupport(Area* area, QWidget* eventWidget)
    {
        _support.setEventWidget(eventWidget);
        _support.onActivated = [area] { Q_EMIT area->renderAreaActivated(); };
        _support.onContextMenu = [area](const SoPickedPoint* picked, const QPoint& globalPosition) {
            Q_EMIT area->showContextMenu(picked, globalPosition);
        };
    }

    bool event(QEvent* event) override { return _support.surfaceEvent(event) || Surface::event(event); }
    void mousePressEvent(QMouseEvent* event) override { _support.mousePress(event); }
    void mouseReleaseEvent(QMouseEvent* event) override { _support.mouseRelease(event); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { _support.mouseDoubleClick(event); }
    void mouseMoveEvent(QMouseEvent* event) override { _support.mouseMove(event); }
    void keyPressEvent(QKeyEvent* event) override { _support.key(event, true); }
    void keyReleaseEvent(QKeyEvent* event) override { _support.key(event, false); }
    void wheelEvent(QWheelEvent* event) override { _support.wheel(event); }

    Vw3RenderAreaSupport _support;
};
