#pragma once
// The OpenGL window a 3D view draws its Inventor scene in, embedded in a container widget.
// Qt input becomes Inventor input here and goes to the scene interactor:
//   first mouse press        activates the area (renderAreaActivated) and goes no further
//   keys, moves, releases,
//   wheel                    reach the scene only once activated
//   right click              showContextMenu on release, unless the mouse moved 6 pixels
//                            or more in x or y since the press (then it was a drag)
// The first render area also installs the Qt timer that runs Inventor's sensors.

#include <velmora_widget_export.h>

#include <SiRenderArea.h>

#include <Inventor/actions/SoGLRenderAction.h>

#include <QImage>
#include <QPoint>
#include <QSharedPointer>
#include <QSurfaceFormat>
#include <QWindow>

#include <functional>
#include <memory>

class QKeyEvent;
class QMouseEvent;
class QOpenGLContext;
class QTouchEvent;
class QWheelEvent;
class QWidget;
class SoEvent;
class SoPickedPoint;
class SoRenderAreaCore;
class Vg3SceneInteractor;

class VELMORA_WIDGET_EXPORT Vw3RenderAreaQWindow : public QWindow, public SiRenderArea
{
    Q_OBJECT
public:
    explicit Vw3RenderAreaQWindow(QWidget* parent);
    ~Vw3RenderAreaQWindow() override;

    // The widget that holds this window in a widget layout; it owns the window.
    QWidget* getContainerWidget() const;

    // Receives every translated event; its scene root becomes the rendered scene graph.
    void setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor);
    QSharedPointer<Vg3SceneInteractor> getSceneInteractor() const;

    void setSceneGraph(SoNode* sceneGraph) override;
    SoNode* getSceneGraph() const override;
    // In device pixels; a resize of the window sets it.
    void setSize(const SbVec2i32& size) override;
    SbVec2i32 getSize() const override;
    const SbViewportRegion& getViewportRegion() const override;
    void setClearColor(const SbColorRGBA& color) override;
    SbColorRGBA getClearColor() const override;
    void setClearDepth(float depth) override;
    float getClearDepth() const override;
    void setClearPolicy(SiRenderArea::ClearPolicy policy) override;
    SiRenderArea::ClearPolicy getClearPolicy() const override;
    SiRenderArea::RenderStatus render() override;

    // Renders a frame now.
    void onStartRender();
    // The render core's start-render handler: schedules a frame.
    void startRender(SiRenderArea::RenderEventArg& arg);

    bool isInitialized() const;
    void setActivated(bool activated);
    bool isActivated() const;

    SoGLRenderAction::TransparencyType getTransparencyType() const;
    void setTransparencyType(SoGLRenderAction::TransparencyType type);
    // The type the 3D views chose at their last GL initialisation (per-object sorted until
    // then); offscreen renderings use it too.
    static SoGLRenderAction::TransparencyType getViewsTransparencyType();

    // The scene rendered at width x height device pixels, top row first, opaque. Throws
    // KbeProgrammingError("Cannot get image, render area is not initialized.") before the
    // first successful GL initialisation; a null image for a size out of range.
    QImage getImage(int width, int height);
    // Writes the scene at the current size as PNG; false (with a warning) on failure.
    bool saveToFile(const QString& fileName);
    // Lets render() draw while the window is not exposed.
    void setupForOffscreenRendering(bool enabled);

Q_SIGNALS:
    void renderAreaActivated();
    // `pickedPoint` (may be null) is valid during the emission only.
    void showContextMenu(const SoPickedPoint* pickedPoint, const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool _initializeGL();

    std::unique_ptr<class Vw3RenderAreaQWindowPrivate> const _d;
};

// The state and input rules the three render-area variants share: the render core and its
// settings, the interactor, activation, the right-click rule, the offscreen image. Each
// variant owns one and forwards its GL and input events to it; not meant for other users.
class VELMORA_WIDGET_EXPORT Vw3RenderAreaSupport
{
public:
    // `eventWidget` is the widget whose height and device pixel ratio convert positions.
    explicit Vw3RenderAreaSupport(QWidget* eventWidget);
    ~Vw3RenderAreaSupport();

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

    // Input; each returns whether the scene used the event.
    bool mousePress(QMouseEvent* event);
    bool mouseDoubleClick(QMouseEvent* event);
    bool mouseMove(QMouseEvent* event);
    bool mouseRelease(QMouseEvent* event);
    bool key(QKeyEvent* event, bool press);
    bool wheel(QWheelEvent* event);
    bool enter(QEvent* event);
    bool leave(QEvent* event);
    bool touch(QTouchEvent* event);

    static SoGLRenderAction::TransparencyType s_viewsTransparency;

private:
    bool _deliver(const SoEvent* event) const;
    void _updateInteractorViewport() const;
    bool _press(QMouseEvent* event, bool doubleClick);

    QWidget* _eventWidget;
    SoRenderAreaCore* _core = nullptr;
    QSharedPointer<Vg3SceneInteractor> _interactor;
    SoNode* _sceneGraph = nullptr;
    SbVec2i32 _size{0, 0};
    SbViewportRegion _viewport;
    SbColorRGBA _clearColor{0.0f, 0.0f, 0.0f, 1.0f};
    float _clearDepth = 1.0f;
    SiRenderArea::ClearPolicy _clearPolicy = SiRenderArea::COLOR_DEPTH;
    SoGLRenderAction::TransparencyType _transparency = SoGLRenderAction::SORTED_OBJECT_BLEND;
    bool _rightPressPending = false;
    QPoint _rightPressPosition;
};
