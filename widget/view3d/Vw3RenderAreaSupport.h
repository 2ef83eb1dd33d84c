#pragma once
// The state and input rules the render-area variants share: the render core and its
// settings, the interactor, activation, the right-click rule, the offscreen image. Internal
// to the render areas (Vw3RenderAreaBase holds one); exported only because that template
// is instantiated in its users' code.

#include <velmora_widget_export.h>

#include <SiRenderArea.h>
#include <SoRef.h>

#include <Inventor/actions/SoGLRenderAction.h>

#include <QPoint>
#include <QSharedPointer>
#include <QSurfaceFormat>

#include <functional>

class QEvent;
class QImage;
class QKeyEvent;
class QMouseEvent;
class QOpenGLContext;
class QString;
class QTouchEvent;
class QWheelEvent;
class QWidget;
class SoEvent;
class SoPickedPoint;
class SoRenderAreaCore;
class Vg3SceneInteractor;

class VELMORA_WIDGET_EXPORT Vw3RenderAreaSupport
{
public:
    // `eventWidget` is the widget whose height and device pixel ratio convert positions;
    // an area that makes it after its surface passes it to setEventWidget() instead.
    explicit Vw3RenderAreaSupport(QWidget* eventWidget = nullptr);
    ~Vw3RenderAreaSupport();
    Vw3RenderAreaSupport(const Vw3RenderAreaSupport&) = delete;
    Vw3RenderAreaSupport& operator=(const Vw3RenderAreaSupport&) = delete;

    void setEventWidget(QWidget* eventWidget) { _eventWidget = eventWidget; }

    // Compatibility profile, double-buffered, 8 bits of alpha, 24 of depth, 8 of stencil.
    static QSurfaceFormat renderFormat();

    std::function<void()> onActivated;
    std::function<void(const SoPickedPoint*, const QPoint&)> onContextMenu;

    // With the area's context current: makes the render core (replacing an earlier one),
    // picks the transparency type from the context's extensions, installs `startRender`.
    void createCore(QOpenGLContext* context, const std::function<void()>& startRender);
    // With the context current, and when a core exists: releases it.
    void releaseCore();
    SoRenderAreaCore* core() const { return _core; }
    bool isInitialized() const { return _core != nullptr; }
    // With the context current: one frame of the core; NOT_RENDERED schedules a redraw.
    SiRenderArea::RenderStatus renderFrame(qreal devicePixelRatio);
    // With the context current: the scene at width x height in a framebuffer object.
    QImage renderImage(QOpenGLContext* context, int width, int height);
    // Checks what getImage() needs before the context is touched; throws when not initialised.
    bool checkImageRequest(int width, int height, const char* className) const;
    static bool saveImage(const QImage& image, const QString& fileName, const char* className);

    void setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor);
    const QSharedPointer<Vg3SceneInteractor>& sceneInteractor() const { return _interactor; }
    void setSceneGraph(SoNode* sceneGraph);
    SoNode* sceneGraph() const { return _sceneGraph; }
    void setSize(const SbVec2i32& size);
    SbVec2i32 size() const { return _size; }
    const SbViewportRegion& viewportRegion() const;
    void setClearColor(const SbColorRGBA& color);
    SbColorRGBA clearColor() const { return _clearColor; }
    void setClearDepth(float depth);
    float clearDepth() const { return _clearDepth; }
    void setClearPolicy(SiRenderArea::ClearPolicy policy);
    SiRenderArea::ClearPolicy clearPolicy() const { return _clearPolicy; }
    void setTransparencyType(SoGLRenderAction::TransparencyType type);
    SoGLRenderAction::TransparencyType transparencyType() const { return _transparency; }

    bool activated = false;
    bool offscreenEnabled = false;

    // Input; each returns whether the scene used the event. key() and wheel() also accept
    // the event only then, so that an unused key or wheel turn reaches the parent.
    bool mousePress(QMouseEvent* event);
    bool mouseDoubleClick(QMouseEvent* event);
    bool mouseMove(QMouseEvent* event);
    bool mouseRelease(QMouseEvent* event);
    bool key(QKeyEvent* event, bool press);
    bool wheel(QWheelEvent* event);
    bool enter(QEvent* event);
    bool leave(QEvent* event);
    bool touch(QTouchEvent* event);
    // Enter, leave and touch events, which come through the surface's event(): true for a
    // touch, which stops here; false when the surface's own handling should follow.
    bool surfaceEvent(QEvent* event);

    static SoGLRenderAction::TransparencyType s_viewsTransparency;

private:
    bool _deliver(const SoEvent* event) const;
    void _updateInteractorViewport() const;
    bool _press(QMouseEvent* event, bool doubleClick);

    QWidget* _eventWidget;
    SoRef<SoRenderAreaCore> _core;
    QSharedPointer<Vg3SceneInteractor> _interactor;
    SoRef<SoNode> _sceneGraph;
    SbVec2i32 _size{0, 0};
    SbViewportRegion _viewport;
    SbColorRGBA _clearColor{0.0f, 0.0f, 0.0f, 1.0f};
    float _clearDepth = 1.0f;
    SiRenderArea::ClearPolicy _clearPolicy = SiRenderArea::COLOR_DEPTH;
    SoGLRenderAction::TransparencyType _transparency = SoGLRenderAction::SORTED_OBJECT_BLEND;
    bool _rightPressPending = false;
    QPoint _rightPressPosition;
};
