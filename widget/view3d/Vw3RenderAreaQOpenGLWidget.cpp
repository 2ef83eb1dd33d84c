#include <Vw3RenderAreaQOpenGLWidget.h>

#include <KbbDebug.h>

#include <QOpenGLContext>

Vw3RenderAreaQOpenGLWidget::Vw3RenderAreaQOpenGLWidget(QWidget* parent)
    : Vw3RenderAreaBase(parent)
{
    setFormat(Vw3RenderAreaSupport::renderFormat());
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(false);
    setMouseTracking(true);
    setAttribute(Qt::WA_AcceptTouchEvents);
    _connectSupport(this, this);
}

SiRenderArea::RenderStatus Vw3RenderAreaQOpenGLWidget::render()
{
    if (!_support.offscreenEnabled && !isVisible())
        return NOT_RENDERED;
    // The widget makes its context when first shown; there is nothing to draw with before.
    if (!_support.isInitialized())
        return NOT_RENDERED;
    if (isVisible()) {
        // The frame goes through paintGL so that it is composed into the window.
        _lastStatus = NOT_RENDERED;
        repaint();
        return _lastStatus;
    }
    makeCurrent();
    const RenderStatus status = _support.renderFrame(devicePixelRatioF());
    doneCurrent();
    return status;
}

Vw3RenderAreaQOpenGLWidget::~Vw3RenderAreaQOpenGLWidget()
{
    // The core's GL objects belong to this widget's context: release them while it is current.
    if (_support.isInitialized() && isValid()) {
        makeCurrent();
        _support.releaseCore();
        doneCurrent();
    }
    _support.releaseCore();
}

QImage Vw3RenderAreaQOpenGLWidget::getImage(int width, int height)
{
    if (!_support.checkImageRequest(width, height, "Vw3RenderAreaQOpenGLWidget"))
        return QImage();
    makeCurrent();
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        qWarning("Vw3RenderAreaQOpenGLWidget::getImage: cannot make the OpenGL context current");
        return QImage();
    }
    const QImage image = _support.renderImage(context, width, height);
    doneCurrent();
    return image;
}

void Vw3RenderAreaQOpenGLWidget::initializeGL()
{
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        KbbDebug::printWarning(tr("Could not initialize 3d render area."));
        return;
    }
    _support.createCore(context, [this] { update(); });
}

void Vw3RenderAreaQOpenGLWidget::resizeGL(int, int)
{
    const qreal ratio = devicePixelRatioF();
    setSize(SbVec2i32(int(width() * ratio), int(height() * ratio)));
}

void Vw3RenderAreaQOpenGLWidget::paintGL()
{
    _lastStatus = _support.renderFrame(devicePixelRatioF());
}

void Vw3RenderAreaQOpenGLWidget::_scheduleUpdate()
{
    update();
}
