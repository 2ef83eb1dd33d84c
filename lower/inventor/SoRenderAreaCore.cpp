#include <SoRenderAreaCore.h>

#include <Inventor/SoSceneManager.h>
#include <Inventor/elements/SoGLCacheContextElement.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <limits>

class SoRenderAreaCorePrivate
{
public:
    static void sceneManagerWantsRender(void* data, SoSceneManager*)
    {
        auto d = static_cast<SoRenderAreaCorePrivate*>(data);
        if (!d->startRenderHandler)
            return;
        SiRenderArea::RenderEventArg arg;
        arg.source = d->owner;
        d->startRenderHandler(arg);
    }

    SoRenderAreaCore* owner = nullptr;
    SoSceneManager* sceneManager = nullptr;
    SoGLRenderAction* renderAction = nullptr;
    SbVec2i32 size{0, 0};
    SbViewportRegion viewport;
    SbColorRGBA clearColor{0.0f, 0.0f, 0.0f, 1.0f};
    float clearDepth = 1.0f;
    SiRenderArea::ClearPolicy clearPolicy = SiRenderArea::COLOR_DEPTH;
    SoRenderAreaCore::StartRenderHandler startRenderHandler;
};

SoRenderAreaCore::SoRenderAreaCore()
    : _d(std::make_unique<SoRenderAreaCorePrivate>())
{
    _d->owner = this;
    _d->renderAction = new SoGLRenderAction(_d->viewport);
    // The GL caches (display lists, textures) belong to one context: this core's.
    _d->renderAction->setCacheContext(SoGLCacheContextElement::getUniqueCacheContext());
    _d->sceneManager = new SoSceneManager;
    _d->sceneManager->setGLRenderAction(_d->renderAction);
    _d->sceneManager->setViewportRegion(_d->viewport);
    _d->sceneManager->setRenderCallback(&SoRenderAreaCorePrivate::sceneManagerWantsRender, _d.get());
    _d->sceneManager->activate();
}

SoRenderAreaCore::~SoRenderAreaCore()
{
    _d->sceneManager->setRenderCallback(nullptr, nullptr);
    _d->sceneManager->deactivate();
    // The scene manager does not own an action it was given.
    delete _d->sceneManager;
    delete _d->renderAction;
}

void SoRenderAreaCore::setSceneGraph(SoNode* sceneGraph)
{
    _d->sceneManager->setSceneGraph(sceneGraph);
}

SoNode* SoRenderAreaCore::getSceneGraph() const
{
    return _d->sceneManager->getSceneGraph();
}

void SoRenderAreaCore::setSize(const SbVec2i32& size)
{
    // Inventor's viewport is in shorts.
    const int maxSide = std::numeric_limits<short>::max();
    if (size[0] < 0 || size[1] < 0 || size[0] > maxSide || size[1] > maxSide) {
        qWarning("SoRenderAreaCore::setSize: invalid size %dx%d", int(size[0]), int(size[1]));
        return;
    }
    _d->size = size;
    _d->viewport = SbViewportRegion(short(size[0]), short(size[1]));
    _d->sceneManager->setViewportRegion(_d->viewport);
    _d->renderAction->setViewportRegion(_d->viewport);
}

SbVec2i32 SoRenderAreaCore::getSize() const
{
    return _d->size;
}

const SbViewportRegion& SoRenderAreaCore::getViewportRegion() const
{
    return _d->viewport;
}

void SoRenderAreaCore::setClearColor(const SbColorRGBA& color)
{
    _d->clearColor = color;
    _d->sceneManager->setBackgroundColor(SbColor(color[0], color[1], color[2]));
}

SbColorRGBA SoRenderAreaCore::getClearColor() const
{
    return _d->clearColor;
}

void SoRenderAreaCore::setClearDepth(float depth)
{
    _d->clearDepth = depth;
}

float SoRenderAreaCore::getClearDepth() const
{
    return _d->clearDepth;
}

void SoRenderAreaCore::setClearPolicy(ClearPolicy policy)
{
    _d->clearPolicy = policy;
}

SiRenderArea::ClearPolicy SoRenderAreaCore::getClearPolicy() const
{
    return _d->clearPolicy;
}

SiRenderArea::RenderStatus SoRenderAreaCore::render()
{
    if (!_d->sceneManager->getSceneGraph() || _d->size[0] <= 0 || _d->size[1] <= 0)
        return NOT_RENDERED;
    QOpenGLContext* context = QOpenGLContext::currentContext();
    if (!context) {
        qWarning("SoRenderAreaCore::render: no current OpenGL context");
        return NOT_RENDERED;
    }
    QOpenGLFunctions* gl = context->functions();
    GLbitfield mask = 0;
    if (_d->clearPolicy & COLOR) {
        const SbColorRGBA& c = _d->clearColor;
        gl->glClearColor(c[0], c[1], c[2], c[3]);
        mask |= GL_COLOR_BUFFER_BIT;
    }
    if (_d->clearPolicy & DEPTH) {
        gl->glClearDepthf(_d->clearDepth);
        gl->glDepthMask(GL_TRUE);
        mask |= GL_DEPTH_BUFFER_BIT;
    }
    if (mask) {
        // Clear the whole viewport and nothing else, whatever the scene left enabled.
        gl->glViewport(0, 0, _d->size[0], _d->size[1]);
        gl->glDisable(GL_SCISSOR_TEST);
        gl->glClear(mask);
    }
    // Coin leaves enabling the depth test to the window-system glue, as a GL context starts
    // with it off.
    gl->glEnable(GL_DEPTH_TEST);
    _d->sceneManager->render(FALSE, FALSE);
    return RENDERED;
}

SoSceneManager* SoRenderAreaCore::getSceneManager() const
{
    return _d->sceneManager;
}

SoGLRenderAction* SoRenderAreaCore::getGLRenderAction() const
{
    return _d->renderAction;
}

void SoRenderAreaCore::setTransparencyType(SoGLRenderAction::TransparencyType type)
{
    _d->renderAction->setTransparencyType(type);
}

SoGLRenderAction::TransparencyType SoRenderAreaCore::getTransparencyType() const
{
    return _d->renderAction->getTransparencyType();
}

void SoRenderAreaCore::setStartRenderHandler(const StartRenderHandler& handler)
{
    _d->startRenderHandler = handler;
}
