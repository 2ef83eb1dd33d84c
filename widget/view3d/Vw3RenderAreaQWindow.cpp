#include <Vw3RenderAreaQWindow.h>

#include <KbbDebug.h>

#include <QCoreApplication>
#include <QOpenGLContext>
#include <QWidget>

class Vw3RenderAreaQWindowPrivate
{
public:
    explicit Vw3RenderAreaQWindowPrivate(QWidget* container)
        : container(container)
    {
    }

    QWidget* container;
    std::unique_ptr<QOpenGLContext> context;
};

Vw3RenderAreaQWindow::Vw3RenderAreaQWindow(QWidget* parent)
    : _d(std::make_unique<Vw3RenderAreaQWindowPrivate>(QWidget::createWindowContainer(this, parent)))
{
    const QSurfaceFormat format = Vw3RenderAreaSupport::renderFormat();
    setSurfaceType(QWindow::OpenGLSurface);
    _d->container->setFocusPolicy(Qt::StrongFocus);
    _d->container->setAcceptDrops(false);
    setFormat(format);
    create();

    _d->context = std::make_unique<QOpenGLContext>();
    _d->context->setFormat(format);
    if (!_d->context->create())
        qWarning("Vw3RenderAreaQWindow: cannot create an OpenGL context");
    _connectSupport(this, _d->container);
    _initializeGL();
}

Vw3RenderAreaQWindow::~Vw3RenderAreaQWindow()
{
    // The core's GL objects belong to this context: release them while it is current.
    if (_d->context && _support.isInitialized() && _d->context->makeCurrent(this)) {
        _support.releaseCore();
        _d->context->doneCurrent();
    }
    _support.releaseCore();
}

bool Vw3RenderAreaQWindow::_initializeGL()
{
    if (!_d->context->isValid() || !_d->context->makeCurrent(this)) {
        KbbDebug::printWarning(tr("Could not initialize 3d render area."));
        return false;
    }
    _support.createCore(_d->context.get(), [this] {
        SiRenderArea::RenderEventArg arg;
        arg.source = this;
        startRender(arg);
    });
    return true;
}

QWidget* Vw3RenderAreaQWindow::getContainerWidget() const
{
    return _d->container;
}

SiRenderArea::RenderStatus Vw3RenderAreaQWindow::render()
{
    if (!_support.offscreenEnabled && !isExposed())
        return NOT_RENDERED;
    if (!_support.isInitialized() && !_initializeGL())
        return NOT_RENDERED;
    if (!_d->context->makeCurrent(this))
        return NOT_RENDERED;
    if (_support.renderFrame(devicePixelRatio()) == NOT_RENDERED)
        return NOT_RENDERED;
    // A window that is not on screen has no buffer to show.
    if (isExposed())
        _d->context->swapBuffers(this);
    return RENDERED;
}

void Vw3RenderAreaQWindow::onStartRender()
{
    render();
}

void Vw3RenderAreaQWindow::startRender(SiRenderArea::RenderEventArg&)
{
    requestUpdate();
}

void Vw3RenderAreaQWindow::_scheduleUpdate()
{
    requestUpdate();
}

SoGLRenderAction::TransparencyType Vw3RenderAreaQWindow::getViewsTransparencyType()
{
    return Vw3RenderAreaSupport::s_viewsTransparency;
}

QImage Vw3RenderAreaQWindow::getImage(int width, int height)
{
    if (!_support.checkImageRequest(width, height, "Vw3RenderAreaQWindow"))
        return QImage();
    if (!_d->context->makeCurrent(this)) {
        qWarning("Vw3RenderAreaQWindow::getImage: cannot make the OpenGL context current");
        return QImage();
    }
    return _support.renderImage(_d->context.get(), width, height);
}

bool Vw3RenderAreaQWindow::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::UpdateRequest:
    case QEvent::Show:
        render();
        return true;
    case QEvent::Enter:
        _support.enter(event);
        if (QWidget* outer = _d->container->parentWidget())
            QCoreApplication::sendEvent(outer, event);
        return true;
    default:
        return Vw3RenderAreaBase::event(event);
    }
}

void Vw3RenderAreaQWindow::exposeEvent(QExposeEvent*)
{
    if (isExposed())
        render();
}

void Vw3RenderAreaQWindow::resizeEvent(QResizeEvent*)
{
    const qreal ratio = devicePixelRatio();
    setSize(SbVec2i32(int(width() * ratio), int(height() * ratio)));
    requestUpdate();
}
