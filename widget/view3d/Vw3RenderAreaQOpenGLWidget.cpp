#include <Vw3RenderAreaQOpenGLWidget.h>

#include <Vw3RenderAreaQWindow.h>

#include <KbbDebug.h>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QTouchEvent>
#include <QWheelEvent>

class Vw3RenderAreaQOpenGLWidgetPrivate
{
public:
    explicit Vw3RenderAreaQOpenGLWidgetPrivate(QWidget* widget)
        : support(widget)
    {
    }

    Vw3RenderAreaSupport support;
    SiRenderArea::RenderStatus lastStatus = SiRenderArea::NOT_RENDERED;
};

Vw3RenderAreaQOpenGLWidget::Vw3RenderAreaQOpenGLWidget(QWidget* parent)
    : QOpenGLWidget(parent)
    , _d(std::make_unique<Vw3RenderAreaQOpenGLWidgetPrivate>(this))
{
    setFormat(Vw3RenderAreaSupport::renderFormat());
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(false);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    _d->support.onActivated = [this] { Q_EMIT renderAreaActivated(); };
    _d->support.onContextMenu = [this](const SoPickedPoint* picked, const QPoint& global) {
        Q_EMIT showContextMenu(picked, global);
    };
}

SiRenderArea::RenderStatus Vw3RenderAreaQOpenGLWidget::render()
{
    if (!_d->support.offscreenEnabled && !isVisible())
        return NOT_RENDERED;
    // The widget makes its context when first shown; there is nothing to draw with before.
    if (!_d->support.isInitialized())
        return NOT_RENDERED;
    if (isVisible()) {
        // The frame goes through paintGL so that it is composed into the window.
        _d->lastStatus = NOT_RENDERED;
        repaint();
        return _d->lastStatus;
    }
    makeCurrent();
    const RenderStatus status = _d->support.renderFrame(devicePixelRatioF());
    doneCurrent();
    return status;
}

Vw3RenderAreaQOpenGLWidget::~Vw3RenderAreaQOpenGLWidget()
{
    // The core's GL objects belong to this widget's context: release them while it is current.
    if (_d->support.isInitialized() && isValid()) {
        makeCurrent();
        _d->support.releaseCore();
        doneCurrent();
    }
    _d->support.releaseCore();
}

void Vw3RenderAreaQOpenGLWidget::setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor)
{
    _d->support.setSceneInteractor(interactor);
    update();
}

QSharedPointer<Vg3SceneInteractor> Vw3RenderAreaQOpenGLWidget::getSceneInteractor() const
{
    return _d->support.sceneInteractor();
}

void Vw3RenderAreaQOpenGLWidget::setSceneGraph(SoNode* sceneGraph)
{
    _d->support.setSceneGraph(sceneGraph);
    update();
}

SoNode* Vw3RenderAreaQOpenGLWidget::getSceneGraph() const
{
    return _d->support.sceneGraph();
}

void Vw3RenderAreaQOpenGLWidget::setSize(const SbVec2i32& size)
{
    _d->support.setSize(size);
}

SbVec2i32 Vw3RenderAreaQOpenGLWidget::getSize() const
{
    return _d->support.size();
}

const SbViewportRegion& Vw3RenderAreaQOpenGLWidget::getViewportRegion() const
{
    return _d->support.viewportRegion();
}

void Vw3RenderAreaQOpenGLWidget::setClearColor(const SbColorRGBA& color)
{
    _d->support.setClearColor(color);
    update();
}

SbColorRGBA Vw3RenderAreaQOpenGLWidget::getClearColor() const
{
    return _d->support.clearColor();
}

void Vw3RenderAreaQOpenGLWidget::setClearDepth(float depth)
{
    _d->support.setClearDepth(depth);
}

float Vw3RenderAreaQOpenGLWidget::getClearDepth() const
{
    return _d->support.clearDepth();
}

void Vw3RenderAreaQOpenGLWidget::setClearPolicy(SiRenderArea::ClearPolicy policy)
{
    _d->support.setClearPolicy(policy);
}

SiRenderArea::ClearPolicy Vw3RenderAreaQOpenGLWidget::getClearPolicy() const
{
    return _d->support.clearPolicy();
}

bool Vw3RenderAreaQOpenGLWidget::isInitialized() const
{
    return _d->support.isInitialized();
}

void Vw3RenderAreaQOpenGLWidget::setActivated(bool activated)
{
    _d->support.activated = activated;
}

bool Vw3RenderAreaQOpenGLWidget::isActivated() const
{
    return _d->support.activated;
}

SoGLRenderAction::TransparencyType Vw3RenderAreaQOpenGLWidget::getTransparencyType() const
{
    return _d->support.transparencyType();
}

void Vw3RenderAreaQOpenGLWidget::setTransparencyType(SoGLRenderAction::TransparencyType type)
{
    _d->support.setTransparencyType(type);
    update();
}

QImage Vw3RenderAreaQOpenGLWidget::getImage(int width, int height)
{
    if (!_d->support.checkImageRequest(width, height, "Vw3RenderAreaQOpenGLWidget"))
        return QImage();
    makeCurrent();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        qWarning("Vw3RenderAreaQOpenGLWidget::getImage: cannot make the OpenGL context current");
        return QImage();
    }
    const QImage image = _d->support.renderImage(context, width, height);
    doneCurrent();
    return image;
}

bool Vw3RenderAreaQOpenGLWidget::saveToFile(const QString& fileName)
{
    const SbVec2i32 size = getSize();
    return Vw3RenderAreaSupport::saveImage(getImage(size[0], size[1]), fileName, "Vw3RenderAreaQOpenGLWidget");
}

void Vw3RenderAreaQOpenGLWidget::setupForOffscreenRendering(bool enabled)
{
    _d->support.offscreenEnabled = enabled;
}

void Vw3RenderAreaQOpenGLWidget::initializeGL()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        KbbDebug::printWarning(tr("Could not initialize 3d render area."));
        return;
    }
    _d->support.createCore(context, [this] { update(); });
}

void Vw3RenderAreaQOpenGLWidget::resizeGL(int, int)
{
    const qreal ratio = devicePixelRatioF();
    setSize(SbVec2i32(int(width() * ratio), int(height() * ratio)));
}

void Vw3RenderAreaQOpenGLWidget::paintGL()
{
    _d->lastStatus = _d->support.renderFrame(devicePixelRatioF());
}

bool Vw3RenderAreaQOpenGLWidget::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        _d->support.touch(static_cast<QTouchEvent*>(event));
        event->accept();
        return true;
    default:
        return QOpenGLWidget::event(event);
    }
}

void Vw3RenderAreaQOpenGLWidget::enterEvent(QEvent* event)
{
    _d->support.enter(event);
    QOpenGLWidget::enterEvent(event);
}

void Vw3RenderAreaQOpenGLWidget::leaveEvent(QEvent* event)
{
    _d->support.leave(event);
    QOpenGLWidget::leaveEvent(event);
}

void Vw3RenderAreaQOpenGLWidget::mousePressEvent(QMouseEvent* event)
{
    _d->support.mousePress(event);
}

void Vw3RenderAreaQOpenGLWidget::mouseReleaseEvent(QMouseEvent* event)
{
    _d->support.mouseRelease(event);
}

void Vw3RenderAreaQOpenGLWidget::mouseDoubleClickEvent(QMouseEvent* event)
{
    _d->support.mouseDoubleClick(event);
}

void Vw3RenderAreaQOpenGLWidget::mouseMoveEvent(QMouseEvent* event)
{
    _d->support.mouseMove(event);
}

void Vw3RenderAreaQOpenGLWidget::keyPressEvent(QKeyEvent* event)
{
    event->setAccepted(_d->support.key(event, true));
}

void Vw3RenderAreaQOpenGLWidget::keyReleaseEvent(QKeyEvent* event)
{
    event->setAccepted(_d->support.key(event, false));
}

void Vw3RenderAreaQOpenGLWidget::wheelEvent(QWheelEvent* event)
{
    event->setAccepted(_d->support.wheel(event));
}
