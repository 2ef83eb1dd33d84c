#pragma once
// What a render area needs of Inventor, whatever the window system: a scene manager with
// its render action, the viewport in device pixels, the clearing, and a start-render handler
// called whenever the scene changed and wants a new frame (the window then schedules one).
// Made while the GL context it renders into is current; render() draws into the context
// current at that time, which must be the same one (the GL caches are tied to it).

#include <velmora_graphic_export.h>

#include <SiRenderArea.h>
#include <SoRefCounter.h>

#include <Inventor/actions/SoGLRenderAction.h>

#include <functional>
#include <memory>

class SoSceneManager;

class VELMORA_GRAPHIC_EXPORT SoRenderAreaCore : public SoRefCounter, public SiRenderArea
{
public:
    using StartRenderHandler = std::function<void(RenderEventArg&)>;

    SoRenderAreaCore();

    void setSceneGraph(SoNode* sceneGraph) override;
    SoNode* getSceneGraph() const override;
    void setSize(const SbVec2i32& size) override;
    SbVec2i32 getSize() const override;
    const SbViewportRegion& getViewportRegion() const override;
    void setClearColor(const SbColorRGBA& color) override;
    SbColorRGBA getClearColor() const override;
    void setClearDepth(float depth) override;
    float getClearDepth() const override;
    void setClearPolicy(ClearPolicy policy) override;
    ClearPolicy getClearPolicy() const override;
    // NOT_RENDERED without a scene graph or with an empty viewport; RENDERED otherwise.
    RenderStatus render() override;

    SoSceneManager* getSceneManager() const;
    SoGLRenderAction* getGLRenderAction() const;
    void setTransparencyType(SoGLRenderAction::TransparencyType type);
    SoGLRenderAction::TransparencyType getTransparencyType() const;

    // Called, on the GUI thread, each time the scene manager wants a redraw.
    void setStartRenderHandler(const StartRenderHandler& handler);

protected:
    ~SoRenderAreaCore() override;

private:
    std::unique_ptr<class SoRenderAreaCorePrivate> const _d;
};
