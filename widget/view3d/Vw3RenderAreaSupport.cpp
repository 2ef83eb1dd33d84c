#include <Vw3RenderAreaSupport.h>

#include <Vw3ImageFile.h>
#include <Vw3OivQtTimer.h>
#include <Vw3QtEventToOivEvent.h>

#include <KbeProgrammingError.h>
#include <SoMouseWheelEvent.h>
#include <SoRenderAreaCore.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>

#include <Inventor/SoPickedPoint.h>
#include <Inventor/SoSceneManager.h>
#include <Inventor/actions/SoRayPickAction.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWidget>

#include <cstdlib>
#include <limits>

namespace {

// Inventor's historical screen resolution; sizes in points follow it times the ratio.
constexpr float HISTORICAL_PIXELS_PER_INCH = 72.0f;
// A right press becomes a drag once the mouse has moved this far in x or y.
constexpr int CONTEXT_MENU_DRAG_DISTANCE = 6;
constexpr float CONTEXT_MENU_PICK_RADIUS = 10.0f;

} // namespace

QSurfaceFormat Vw3RenderAreaSupport::renderFormat()
{
    QSurfaceFormat format;
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    format.setAlphaBufferSize(8);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    return format;
}

SoGLRenderAction::TransparencyType Vw3RenderAreaSupport::s_viewsTransparency = SoGLRenderAction::SORTED_OBJECT_BLEND;

Vw3RenderAreaSupport::Vw3RenderAreaSupport(QWidget* eventWidget)
    : _eventWidget(eventWidget)
{
    Vg3OpenInventor::getInstance()->init();
    // Inventor's timer and delay sensors run from the Qt event loop from now on.
    Vw3OivQtTimer::installProcessTimer();
}

Vw3RenderAreaSupport::~Vw3RenderAreaSupport()
{
    // The core renders the graph: it goes first.
    releaseCore();
}

void Vw3RenderAreaSupport::createCore(QOpenGLContext* context, const std::function<void()>& startRender)
{
    const SoRef<SoRenderAreaCore> core = new SoRenderAreaCore;
    releaseCore();
    _core = core;
    _core->setSize(_size);
    _core->setClearColor(_clearColor);
    _core->setClearDepth(_clearDepth);
    _core->setClearPolicy(_clearPolicy);
    _core->setSceneGraph(_sceneGraph);

    // Per-pixel sorting needs image load/store, atomic counters and the 4.20 packing rules.
    const bool perPixel = context->hasExtension("GL_EXT_shader_image_load_store")
                          && context->hasExtension("GL_ARB_shader_atomic_counters")
                          && context->hasExtension("GL_ARB_shading_language_420pack");
    // Coin's SORTED_LAYERS_BLEND is the per-pixel sorted mode, SORTED_OBJECT_BLEND the
    // per-object one.
    setTransparencyType(perPixel ? SoGLRenderAction::SORTED_LAYERS_BLEND : SoGLRenderAction::SORTED_OBJECT_BLEND);
    s_viewsTransparency = _transparency;
    _core->setStartRenderHandler([startRender](SiRenderArea::RenderEventArg&) { startRender(); });
    _updateInteractorViewport();
}

void Vw3RenderAreaSupport::releaseCore()
{
    if (!_core)
        return;
    _core->setStartRenderHandler({});
    _core.reset();
}

SiRenderArea::RenderStatus Vw3RenderAreaSupport::renderFrame(qreal devicePixelRatio)
{
    if (!_core)
        return SiRenderArea::NOT_RENDERED;
    SoSceneManager* manager = _core->getSceneManager();
    // Text and line sizes follow high-density screens.
    const float pixelsPerInch = float(devicePixelRatio) * HISTORICAL_PIXELS_PER_INCH;
    if (manager->getViewportRegion().getPixelsPerInch() != pixelsPerInch) {
        SbViewportRegion region = _core->getViewportRegion();
        region.setPixelsPerInch(pixelsPerInch);
        manager->setViewportRegion(region);
        _core->getGLRenderAction()->setViewportRegion(region);
    }
    if (_interactor)
        _interactor->updateCameraClippingPlanes();
    if (_core->render() <= SiRenderArea::NOT_RENDERED) {
        manager->scheduleRedraw();
        return SiRenderArea::NOT_RENDERED;
    }
    return SiRenderArea::RENDERED;
}

bool Vw3RenderAreaSupport::checkImageRequest(int width, int height, const char* className) const
{
    if (!_core)
        throw KbeProgrammingError(
            QCoreApplication::translate("Vw3RenderAreaQWindow", "Cannot get image, render area is not initialized."));
    const int maxSide = std::numeric_limits<short>::max();
    if (width <= 0 || height <= 0 || width > maxSide || height > maxSide) {
        qWarning("%s::getImage: invalid image size %dx%d", className, width, height);
        return false;
    }
    return true;
}

QImage Vw3RenderAreaSupport::renderImage(QOpenGLContext* context, int width, int height)
{
    QOpenGLFramebufferObjectFormat format;
    format.setAttachment(QOpenGLFramebufferObject::CombinedDepthStencil);
    // No alpha channel: the image is opaque whatever the scene blends.
    format.setInternalTextureFormat(GL_RGB8);
    QOpenGLFramebufferObject framebuffer(width, height, format);
    if (!framebuffer.isValid() || !framebuffer.bind()) {
        qWarning("Vw3RenderAreaSupport::renderImage: cannot make a %dx%d framebuffer", width, height);
        return QImage();
    }
    QOpenGLFunctions* gl = context->functions();
    gl->glViewport(0, 0, width, height);
    gl->glDisable(GL_SCISSOR_TEST);
    gl->glClearColor(_clearColor[0], _clearColor[1], _clearColor[2], 1.0f);
    gl->glClearDepthf(_clearDepth);
    gl->glDepthMask(GL_TRUE);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);

    if (_sceneGraph) {
        SbViewportRegion region{short(width), short(height)};
        region.setPixelsPerInch(_core->getSceneManager()->getViewportRegion().getPixelsPerInch());
        if (_interactor)
            _interactor->updateCameraClippingPlanes();
        SoGLRenderAction action(region);
        // Same context as the area's frames: share its caches.
        action.setCacheContext(_core->getGLRenderAction()->getCacheContext());
        action.setTransparencyType(_transparency);
        action.apply(_sceneGraph);
    }
    gl->glFinish();
    framebuffer.release();
    return framebuffer.toImage().convertToFormat(QImage::Format_RGB32);
}

bool Vw3RenderAreaSupport::saveImage(const QImage& image, const QString& fileName, const char* className)
{
    if (image.isNull()) {
        qWarning("%s::saveToFile: no image to write to %s", className, qPrintable(fileName));
        return false;
    }
    QString error;
    if (!Vw3ImageFile::write(image, fileName, &error)) {
        qWarning("%s::saveToFile: cannot write %s: %s", className, qPrintable(fileName), qPrintable(error));
        return false;
    }
    return true;
}

void Vw3RenderAreaSupport::setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor)
{
    _interactor = interactor;
    setSceneGraph(_interactor ? _interactor->getSceneRoot() : nullptr);
    _updateInteractorViewport();
}

void Vw3RenderAreaSupport::_updateInteractorViewport() const
{
    // Before the first resize there is no viewport to read events against.
    if (_interactor && _size[0] > 0 && _size[1] > 0)
        _interactor->setViewportRegion(viewportRegion());
}

void Vw3RenderAreaSupport::setSceneGraph(SoNode* sceneGraph)
{
    if (sceneGraph == _sceneGraph)
        return;
    _sceneGraph = sceneGraph;
    if (_core)
        _core->setSceneGraph(_sceneGraph);
}

void Vw3RenderAreaSupport::setSize(const SbVec2i32& size)
{
    const int maxSide = std::numeric_limits<short>::max();
    if (size[0] < 0 || size[1] < 0 || size[0] > maxSide || size[1] > maxSide) {
        qWarning("Vw3RenderAreaSupport::setSize: invalid size %dx%d", int(size[0]), int(size[1]));
        return;
    }
    _size = size;
    _viewport = SbViewportRegion(short(size[0]), short(size[1]));
    if (_core)
        _core->setSize(size);
    _updateInteractorViewport();
}

const SbViewportRegion& Vw3RenderAreaSupport::viewportRegion() const
{
    return _core ? _core->getViewportRegion() : _viewport;
}

void Vw3RenderAreaSupport::setClearColor(const SbColorRGBA& color)
{
    _clearColor = color;
    if (_core)
        _core->setClearColor(color);
}

void Vw3RenderAreaSupport::setClearDepth(float depth)
{
    _clearDepth = depth;
    if (_core)
        _core->setClearDepth(depth);
}

void Vw3RenderAreaSupport::setClearPolicy(SiRenderArea::ClearPolicy policy)
{
    _clearPolicy = policy;
    if (_core)
        _core->setClearPolicy(policy);
}

void Vw3RenderAreaSupport::setTransparencyType(SoGLRenderAction::TransparencyType type)
{
    _transparency = type;
    s_viewsTransparency = type;
    if (_core)
        _core->setTransparencyType(type);
}

bool Vw3RenderAreaSupport::_deliver(const SoEvent* event) const
{
    return event && _interactor && _interactor->processEvent(event);
}

bool Vw3RenderAreaSupport::_press(QMouseEvent* event, bool doubleClick)
{
    if (!activated) {
        // The click that brings a view to the front only activates it.
        activated = true;
        if (onActivated)
            onActivated();
        return false;
    }
    if (event->button() == Qt::RightButton) {
        _rightPressPending = true;
        _rightPressPosition = event->pos();
    }
    return _deliver(doubleClick ? Vw3QtEventToOivEvent::getMouseDoubleClickEvent(event, _eventWidget)
                                : Vw3QtEventToOivEvent::getMousePressEvent(event, _eventWidget));
}

bool Vw3RenderAreaSupport::mousePress(QMouseEvent* event)
{
    return _press(event, false);
}

bool Vw3RenderAreaSupport::mouseDoubleClick(QMouseEvent* event)
{
    return _press(event, true);
}

bool Vw3RenderAreaSupport::mouseMove(QMouseEvent* event)
{
    if (_rightPressPending) {
        const QPoint moved = event->pos() - _rightPressPosition;
        if (std::abs(moved.x()) >= CONTEXT_MENU_DRAG_DISTANCE || std::abs(moved.y()) >= CONTEXT_MENU_DRAG_DISTANCE)
            _rightPressPending = false;
    }
    if (!activated)
        return false;
    return _deliver(Vw3QtEventToOivEvent::getMouseMoveEvent(event, _eventWidget));
}

bool Vw3RenderAreaSupport::mouseRelease(QMouseEvent* event)
{
    if (!activated)
        return false;
    const SoMouseButtonEvent* release = Vw3QtEventToOivEvent::getMouseReleaseEvent(event, _eventWidget);
    // Read the position before the scene sees the event: the builder refills it on reuse.
    const SbVec2s position = release ? release->getPosition() : SbVec2s(0, 0);
    const bool handled = _deliver(release);
    if (_rightPressPending && event->button() == Qt::RightButton) {
        _rightPressPending = false;
        const SoPickedPoint* picked = nullptr;
        SbViewportRegion region = _core ? _core->getSceneManager()->getViewportRegion() : _viewport;
        SoRayPickAction pick(region);
        pick.setPoint(position);
        pick.setRadius(CONTEXT_MENU_PICK_RADIUS);
        SoNode* root = _interactor ? static_cast<SoNode*>(_interactor->getSceneRoot()) : _sceneGraph.get();
        if (root && region.getViewportSizePixels()[0] > 0 && region.getViewportSizePixels()[1] > 0) {
            pick.apply(root);
            picked = pick.getPickedPoint();
        }
        if (onContextMenu)
            onContextMenu(picked, event->globalPos());
    }
    return handled;
}

bool Vw3RenderAreaSupport::key(QKeyEvent* event, bool press)
{
    const bool handled = activated
                         && _deliver(press ? Vw3QtEventToOivEvent::getKeyPressEvent(event, _eventWidget)
                                           : Vw3QtEventToOivEvent::getKeyReleaseEvent(event, _eventWidget));
    event->setAccepted(handled);
    return handled;
}

bool Vw3RenderAreaSupport::wheel(QWheelEvent* event)
{
    const bool handled = activated && _deliver(Vw3QtEventToOivEvent::getMouseWheelEvent(event, _eventWidget));
    event->setAccepted(handled);
    return handled;
}

bool Vw3RenderAreaSupport::enter(QEvent* event)
{
    return _deliver(Vw3QtEventToOivEvent::getMouseEnterEvent(event, _eventWidget));
}

bool Vw3RenderAreaSupport::leave(QEvent* event)
{
    return _deliver(Vw3QtEventToOivEvent::getMouseLeaveEvent(event, _eventWidget));
}

bool Vw3RenderAreaSupport::touch(QTouchEvent* event)
{
    bool handled = false;
    if (!_interactor)
        return false;
    for (const SoEvent* soEvent : Vw3QtEventToOivEvent::getTouchEvents(event, _eventWidget))
        handled = _interactor->processTouchEvent(soEvent) || handled;
    return handled;
}

bool Vw3RenderAreaSupport::surfaceEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        enter(event);
        return false;
    case QEvent::Leave:
        leave(event);
        return false;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        touch(static_cast<QTouchEvent*>(event));
        event->accept();
        return true;
    default:
        return false;
    }
}
