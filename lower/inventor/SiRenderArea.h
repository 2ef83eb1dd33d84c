#pragma once
// The contract of a surface that Inventor renders into: a scene graph, a size in device
// pixels, the clearing of colour and depth, and a render() that says what it did. Coin
// has no such interface; the render areas of the views and SoRenderAreaCore share it.

#include <velmora_graphic_export.h>

#include <Inventor/SbColorRGBA.h>
#include <Inventor/SbVec2i32.h>
#include <Inventor/SbViewportRegion.h>

class SoNode;

class VELMORA_GRAPHIC_EXPORT SiRenderArea
{
public:
    enum ClearPolicy { NONE = 0, COLOR = 1, DEPTH = 2, COLOR_DEPTH = 3 };
    enum RenderStatus { NOT_RENDERED = 0, ABORTED = 1, RENDERED = 2 };

    // Handed to a start-render handler: the area that asks to be drawn.
    struct RenderEventArg
    {
        SiRenderArea* source = nullptr;
    };

    virtual ~SiRenderArea();

    virtual void setSceneGraph(SoNode* sceneGraph) = 0;
    virtual SoNode* getSceneGraph() const = 0;
    virtual void setSize(const SbVec2i32& size) = 0;
    virtual SbVec2i32 getSize() const = 0;
    virtual const SbViewportRegion& getViewportRegion() const = 0;
    virtual void setClearColor(const SbColorRGBA& color) = 0;
    virtual SbColorRGBA getClearColor() const = 0;
    virtual void setClearDepth(float depth) = 0;
    virtual float getClearDepth() const = 0;
    virtual void setClearPolicy(ClearPolicy policy) = 0;
    virtual ClearPolicy getClearPolicy() const = 0;
    virtual RenderStatus render() = 0;
};
