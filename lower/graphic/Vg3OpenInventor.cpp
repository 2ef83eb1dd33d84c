#include <Vg3OpenInventor.h>

#include <SoMouseWheelEvent.h>

#include <Inventor/C/glue/gl.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInteraction.h>
#include <Inventor/nodekits/SoNodeKit.h>

#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QPointer>
#include <QThread>

namespace {

// One offscreen canvas of Coin: a hidden surface, its own context and the framebuffer
// object the pictures are drawn into. Coin asks for the canvas, makes it current around
// each render and gives the previous context back afterwards.
struct OffscreenCanvas
{
    // Coin's size-limit query (cc_glglue_context_max_dimensions, on the first offscreen
    // rendering of a process) passes its probe canvas to its own GLX code even with these
    // hooks installed, which reads it as its GLX context record (88 bytes in Coin 4.0): a
    // non-zero int at byte 64 sends the pointers at bytes 72 and 80 to glXGetFBConfigAttrib,
    // which Coin binds once a view has drawn. These zeros read as "not a pbuffer"; without
    // them those bytes lay past the canvas, in whatever the heap held, and crashed.
    unsigned char coinGlxRecord[128] = {};
    QSize size;
    QOffscreenSurface* surface = nullptr;
    QOpenGLContext* context = nullptr;
    QOpenGLFramebufferObject* fbo = nullptr;
    // What was current before make_current, given back by reinstate_previous. The context
    // may be deleted meanwhile, hence the guarded pointer.
    QPointer<QOpenGLContext> previousContext;
    QSurface* previousSurface = nullptr;
};

bool onGuiThread()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) &&
           QThread::currentThread() == QCoreApplication::instance()->thread();
}

cc_glglue_offscreen_data createOffscreen(unsigned int width, unsigned int height)
{
    if (!onGuiThread()) {
        qWarning("Vg3OpenInventor::createOffscreen: offscreen rendering needs the GUI thread");
        return nullptr;
    }
    if (width == 0 || height == 0 || width > 16384 || height > 16384) {
        qWarning("Vg3OpenInventor::createOffscreen: invalid size %ux%u", width, height);
        return nullptr;
    }
    QSurfaceFormat format = QSurfaceFormat::defaultFormat();
    // Coin draws with the fixed-function pipeline.
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setDepthBufferSize(qMax(format.depthBufferSize(), 24));
    format.setStencilBufferSize(qMax(format.stencilBufferSize(), 8));

    auto canvas = new OffscreenCanvas;
    canvas->size = QSize(int(width), int(height));
    canvas->surface = new QOffscreenSurface;
    canvas->surface->setFormat(format);
    canvas->surface->create();
    canvas->context = new QOpenGLContext;
    canvas->context->setFormat(format);
    if (QOpenGLContext* share = QOpenGLContext::globalShareContext())
        canvas->context->setShareContext(share);
    if (!canvas->surface->isValid() || !canvas->context->create()) {
        qWarning("Vg3OpenInventor::createOffscreen: no OpenGL context for offscreen rendering");
        delete canvas->context;
        delete canvas->surface;
        delete canvas;
        return nullptr;
    }
    return canvas;
}

SbBool makeCurrent(cc_glglue_offscreen_data data)
{
    auto canvas = static_cast<OffscreenCanvas*>(data);
    if (!canvas)
        return FALSE;
    QOpenGLContext* current = QOpenGLContext::currentContext();
    if (current != canvas->context) {
        canvas->previousContext = current;
        canvas->previousSurface = current ? current->surface() : nullptr;
    }
    if (!canvas->context->makeCurrent(canvas->surface)) {
        qWarning("Vg3OpenInventor::makeCurrent: the offscreen context cannot be made current");
        return FALSE;
    }
    // The framebuffer object needs a current context, so it is made on first use.
    if (!canvas->fbo) {
        canvas->fbo = new QOpenGLFramebufferObject(canvas->size, QOpenGLFramebufferObject::CombinedDepthStencil);
        if (!canvas->fbo->isValid()) {
            qWarning("Vg3OpenInventor::makeCurrent: no framebuffer object of %dx%d", canvas->size.width(),
                     canvas->size.height());
            delete canvas->fbo;
            canvas->fbo = nullptr;
            return FALSE;
        }
    }
    // bind() binds GL_FRAMEBUFFER: both the drawing and the glReadPixels of the result go
    // to the framebuffer object.
    canvas->fbo->bind();
    return TRUE;
}

void reinstatePrevious(cc_glglue_offscreen_data data)
{
    auto canvas = static_cast<OffscreenCanvas*>(data);
    if (!canvas)
        return;
    if (QOpenGLContext::currentContext() == canvas->context)
        QOpenGLFramebufferObject::bindDefault();
    if (canvas->previousContext && canvas->previousSurface)
        canvas->previousContext->makeCurrent(canvas->previousSurface);
    else if (QOpenGLContext::currentContext() == canvas->context)
        canvas->context->doneCurrent();
    canvas->previousContext = nullptr;
    canvas->previousSurface = nullptr;
}

void destructOffscreen(cc_glglue_offscreen_data data)
{
    auto canvas = static_cast<OffscreenCanvas*>(data);
    if (!canvas)
        return;
    // Coin may let its canvases go at exit, after the application: the window system is
    // gone then, and what is left is left to the process's end.
    if (!onGuiThread())
        return;
    QOpenGLContext* previous = QOpenGLContext::currentContext();
    QSurface* previousSurface = previous ? previous->surface() : nullptr;
    if (canvas->fbo && canvas->context->makeCurrent(canvas->surface))
        delete canvas->fbo;
    canvas->fbo = nullptr;
    if (previous && previous != canvas->context && previousSurface)
        previous->makeCurrent(previousSurface);
    else
        canvas->context->doneCurrent();
    delete canvas->context;
    delete canvas->surface;
    delete canvas;
}

cc_glglue_offscreen_cb_functions offscreenFunctions = {createOffscreen, makeCurrent, reinstatePrevious,
                                                       destructOffscreen};

} // namespace

Vg3OpenInventor* Vg3OpenInventor::getInstance()
{
    static Vg3OpenInventor instance;
    return &instance;
}

void Vg3OpenInventor::init()
{
    if (_initialized)
        return;
    _initialized = true;
    SoDB::init();
    SoNodeKit::init();
    SoInteraction::init();
    SoMouseWheelEvent::initClass();

    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
        cc_glglue_context_set_offscreen_cb_functions(&offscreenFunctions);
    else
        qWarning("Vg3OpenInventor::init: no QGuiApplication yet, offscreen rendering is left to Coin");
}

bool Vg3OpenInventor::isInitialized() const
{
    return _initialized;
}
