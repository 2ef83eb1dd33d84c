#include <Vw3RenderAreaQGLWidget.h>

#include <Vw3RenderAreaQWindow.h>

#include <KbbDebug.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QTouchEvent>
#include <QWheelEvent>

class Vw3RenderAreaQGLWidgetPrivate
{
public:
    explicit Vw3RenderAreaQGLWidgetPrivate(QWidget* widget)
        : support(widget)
    {
    }

    Vw3RenderAreaSupport support;
    SiRenderArea::RenderStatus lastStatus = SiRenderArea::NOT_RENDERED;
};

Vw3RenderAreaQGLWidget::Vw3RenderAreaQGLWidget(QWidget* parent)
    : QGLWidget(QGLFormat::fromSurfaceFormat(Vw3RenderAreaSupport::renderFormat()), parent)
    , _d(std::make_unique<Vw3RenderAreaQGLWidgetPrivate>(this))
{
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(false);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    _d->support.onActivated = [this] { Q_EMIT renderAreaActivated(); };
    _d->support.onContextMenu = [this](const SoPickedPoint* picked, const QPoint& global) {
        Q_EMIT showContextMenu(picked, global);
    };
}

SiRenderArea::RenderStatus Vw3RenderAreaQGLWidget::render()
{
    if (!_d->support.offscreenEnabled && !isVisible())
        return NOT_RENDERED;
    if (!isValid())
        return NOT_RENDERED;
    if (!_d->support.isInitialized())
        glInit();
    if (!_d->support.isInitialized())
        return NOT_RENDERED;
    makeCurrent();
    _d->lastStatus = _d->support.renderFrame(devicePixelRatioF());
    if (_d->lastStatus == RENDERED && isVisible())
        swapBuffers();
    return _d->lastStatus;
}

Vw3RenderAreaQGLWidget::~Vw3RenderAreaQGLWidget()
{
    // The core's GL objects belong to this widget's context: release them while it is current.
    if (_d->support.isInitialized() && isValid()) {
        makeCurrent();
        _d->support.releaseCore();
        doneCurrent();
    }
    _d->support.releaseCore();
}

void Vw3RenderAreaQGLWidget::setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor)
{
    _d->support.setSceneInteractor(interactor);
    update();
}

QSharedPointer<Vg3SceneInteractor> Vw3RenderAreaQGLWidget::getSceneInteractor() const
{
    return _d->support.sceneInteractor();
}

void Vw3RenderAreaQGLWidget::setSceneGraph(SoNode* sceneGraph)
{
    _d->support.setSceneGraph(sceneGraph);
    update();
}

SoNode* Vw3RenderAreaQGLWidget::getSceneGraph() const
{
    return _d->support.sceneGraph();
}

void Vw3RenderAreaQGLWidget::setSize(const SbVec2i32& size)
{
    _d->support.setSize(size);
}

SbVec2i32 Vw3RenderAreaQGLWidget::getSize() const
{
    return _d->support.size();
}

const SbViewportRegion& Vw3RenderAreaQGLWidget::getViewportRegion() const
{
    return _d->support.viewportRegion();
}

void Vw3RenderAreaQGLWidget::setClearColor(const SbColorRGBA& color)
{
    _d->support.setClearColor(color);
    update();
}

SbColorRGBA Vw3RenderAreaQGLWidget::getClearColor() const
{
    return _d->support.clearColor();
}

void Vw3RenderAreaQGLWidget::setClearDepth(float depth)
{
    _d->support.setClearDepth(depth);
}

float Vw3RenderAreaQGLWidget::getClearDepth() const
{
    return _d->support.clearDepth();
}

void Vw3RenderAreaQGLWidget::setClearPolicy(SiRenderArea::ClearPolicy policy)
{
    _d->support.setClearPolicy(policy);
}

SiRenderArea::ClearPolicy Vw3RenderAreaQGLWidget::getClearPolicy() const
{
    return _d->support.clearPolicy();
}

bool Vw3RenderAreaQGLWidget::isInitialized() const
{
    return _d->support.isInitialized();
}

void Vw3RenderAreaQGLWidget::setActivated(bool activated)
{
    _d->support.activated = activated;
}

bool Vw3RenderAreaQGLWidget::isActivated() const
{
    return _d->support.activated;
}

SoGLRenderAction::TransparencyType Vw3RenderAreaQGLWidget::getTransparencyType() const
{
    return _d->support.transparencyType();
}

void Vw3RenderAreaQGLWidget::setTransparencyType(SoGLRenderAction::TransparencyType type)
{
    _d->support.setTransparencyType(type);
    update();
}

QImage Vw3RenderAreaQGLWidget::getImage(int width, int height)
{
    if (!_d->support.checkImageRequest(width, height, "Vw3RenderAreaQGLWidget"))
        return QImage();
    makeCurrent();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        qWarning("Vw3RenderAreaQGLWidget::getImage: cannot make the OpenGL context current");
        return QImage();
    }
    const QImage image = _d->support.renderImage(context, width, height);
    doneCurrent();
    return image;
}

bool Vw3RenderAreaQGLWidget::saveToFile(const QString& fileName)
{
    const SbVec2i32 size = getSize();
    return Vw3RenderAreaSupport::saveImage(getImage(size[0], size[1]), fileName, "Vw3RenderAreaQGLWidget");
}

void Vw3RenderAreaQGLWidget::setupForOffscreenRendering(bool enabled)
{
    _d->support.offscreenEnabled = enabled;
}

void Vw3RenderAreaQGLWidget::initializeGL()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        KbbDebug::printWarning(tr("Could not initialize 3d render area."));
        return;
    }
    _d->support.createCore(context, [this] { update(); });
}

void Vw3RenderAreaQGLWidget::resizeGL(int, int)
{
    const qreal ratio = devicePixelRatioF();
    setSize(SbVec2i32(int(width() * ratio), int(height() * ratio)));
}

void Vw3RenderAreaQGLWidget::paintGL()
{
    _d->lastStatus = _d->support.renderFrame(devicePixelRatioF());
}

bool Vw3RenderAreaQGLWidget::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        _d->support.touch(static_cast<QTouchEvent*>(event));
        event->accept();
        return true;
    default:
        return QGLWidget::event(event);
    }
}

void Vw3RenderAreaQGLWidget::enterEvent(QEvent* event)
{
    _d->support.enter(event);
    QGLWidget::enterEvent(event);
}

void Vw3RenderAreaQGLWidget::leaveEvent(QEvent* event)
{
    _d->support.leave(event);
    QGLWidget::leaveEvent(event);
}

void Vw3RenderAreaQGLWidget::mousePressEvent(QMouseEvent* event)
{
    _d->support.mousePress(event);
}

void Vw3RenderAreaQGLWidget::mouseReleaseEvent(QMouseEvent* event)
{
    _d->support.mouseRelease(event);
}

void Vw3RenderAreaQGLWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    _d->support.mouseDoubleClick(event);
}

void Vw3RenderAreaQGLWidget::mouseMoveEvent(QMouseEvent* event)
{
    _d->support.mouseMove(event);
}

void Vw3RenderAreaQGLWidget::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(_d->support.key(event, true));
}

void Vw3RenderAreaQGLWidget::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(_d->support.key(event, false));
}

void Vw3RenderAreaQGLWidget::wheelEvent(QWheelEvent* event)
{
    event->setAccepted(_d->support.wheel(event));
}
