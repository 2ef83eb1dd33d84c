#include <Vw3RenderAreaQGLWidget.h>

#include <KbbDebug.h>

#include <QOpenGLContext>

Vw3RenderAreaQGLWidget::Vw3RenderAreaQGLWidget(QWidget* parent)
    : Vw3RenderAreaBase(QGLFormat::fromSurfaceFormat(Vw3RenderAreaSupport::renderFormat()), parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(false);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    _connectSupport(this, this);
}

SiRenderArea::RenderStatus Vw3RenderAreaQGLWidget::render()
{
    if (!_support.offscreenEnabled && !isVisible())
        return NOT_RENDERED;
    if (!isValid())
        return NOT_RENDERED;
    if (!_support.isInitialized())
        glInit();
    if (!_support.isInitialized())
        return NOT_RENDERED;
    makeCurrent();
    _lastStatus = _support.renderFrame(devicePixelRatioF());
    if (_lastStatus == RENDERED && isVisible())
        swapBuffers();
    return _lastStatus;
}

Vw3RenderAreaQGLWidget::~Vw3RenderAreaQGLWidget()
{
    // The core's GL objects belong to this widget's context: release them while it is current.
    if (_support.isInitialized() && isValid()) {
        makeCurrent();
        _support.releaseCore();
        doneCurrent();
    }
    _support.releaseCore();
}

QImage Vw3RenderAreaQGLWidget::getImage(int width, int height)
{
    if (!_support.checkImageRequest(width, height, "Vw3RenderAreaQGLWidget"))
        return QImage();
    makeCurrent();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        qWarning("Vw3RenderAreaQGLWidget::getImage: cannot make the OpenGL context current");
        return QImage();
    }
    const QImage image = _support.renderImage(context, width, height);
    doneCurrent();
    return image;
}

void Vw3RenderAreaQGLWidget::initializeGL()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        KbbDebug::printWarning(tr("Could not initialize 3d render area."));
        return;
    }
    _support.createCore(context, [this] { update(); });
}

void Vw3RenderAreaQGLWidget::resizeGL(int, int)
{
    const qreal ratio = devicePixelRatioF();
    setSize(SbVec2i32(int(width() * ratio), int(height() * ratio)));
}

void Vw3RenderAreaQGLWidget::paintGL()
{
    _lastStatus = _support.renderFrame(devicePixelRatioF());
}

void Vw3RenderAreaQGLWidget::_scheduleUpdate()
{
    update();
}
