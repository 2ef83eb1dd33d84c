#pragma once
// Inventor scenes the 3D suites build again and again: flat-coloured boxes under an unlit
// light model and an orthographic camera, so that pixels show the colours set; offscreen
// renders as top-down images; look-ups of nodes and of the texts a render would draw; and
// the wait until a shown render area has drawn.

#include <SoRef.h>

#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoOffscreenRenderer.h>
#include <Inventor/SoPath.h>
#include <Inventor/actions/SoSearchAction.h>
#include <Inventor/nodes/SoBaseColor.h>
#include <Inventor/nodes/SoCube.h>
#include <Inventor/nodes/SoLightModel.h>
#include <Inventor/nodes/SoMaterial.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QImage>
#include <QString>
#include <QStringList>
#include <QTest>
#include <initializer_list>
#include <memory>

namespace InventorScenes {

// Looking down -z from `position`, `height` units high.
inline SoOrthographicCamera* orthoCamera(const SbVec3f& position, float height)
{
    auto camera = new SoOrthographicCamera;
    camera->position = position;
    camera->height = height;
    camera->nearDistance = 1.0f;
    camera->farDistance = 20.0f;
    return camera;
}

// A box of one colour centred at `centre`; `color` receives its colour node.
inline SoSeparator* flatBox(const SbVec3f& centre, const SbVec3f& size, const SbColor& rgb,
                            float transparency = 0.0f, SoBaseColor** color = nullptr)
{
    auto box = new SoSeparator;
    auto material = new SoMaterial;
    material->transparency = transparency;
    auto base = new SoBaseColor;
    base->rgb = rgb;
    auto translation = new SoTranslation;
    translation->translation = centre;
    auto cube = new SoCube;
    cube->width = size[0];
    cube->height = size[1];
    cube->depth = size[2];
    for (SoNode* node : std::initializer_list<SoNode*>{material, base, translation, cube})
        box->addChild(node);
    if (color)
        *color = base;
    return box;
}

inline SbColor sb(const QColor& c)
{
    return SbColor(float(c.redF()), float(c.greenF()), float(c.blueF()));
}

inline SoSeparator* separator(std::initializer_list<SoNode*> children)
{
    auto root = new SoSeparator;
    for (SoNode* child : children)
        root->addChild(child);
    return root;
}

// A direction of the camera's own frame in the world: (0, 0, -1) is where it looks.
inline SbVec3f turned(const SoCamera* camera, const SbVec3f& local)
{
    SbVec3f world;
    camera->orientation.getValue().multVec(local, world);
    return world;
}

inline QString text(const SbVec3f& v)
{
    return QStringLiteral("(%1, %2, %3)").arg(v[0]).arg(v[1]).arg(v[2]);
}

// Unlit: the pixels show the colours themselves.
inline SoLightModel* unlit()
{
    auto light = new SoLightModel;
    light->model = SoLightModel::BASE_COLOR;
    return light;
}

// A camera (or another node that comes first) and children, unlit.
inline SoSeparator* unlitScene(SoNode* first, std::initializer_list<SoNode*> children)
{
    auto root = separator({first, unlit()});
    for (SoNode* child : children)
        root->addChild(child);
    return root;
}

// Rendered offscreen on `background`, top-down; null when rendering failed.
inline QImage render(SoNode* root, const QSize& size, const SbColor& background = SbColor(0, 0, 0))
{
    SoOffscreenRenderer renderer{SbViewportRegion(short(size.width()), short(size.height()))};
    renderer.setComponents(SoOffscreenRenderer::RGB);
    renderer.setBackgroundColor(background);
    if (!renderer.render(root))
        return QImage();
    // Coin's rows run bottom to top.
    return QImage(renderer.getBuffer(), size.width(), size.height(), 3 * size.width(), QImage::Format_RGB888)
        .mirrored();
}

// The first node of type T (and of that name when given), behind switches too.
template <class T = SoNode> T* find(SoNode* root, const char* name = nullptr)
{
    SoSearchAction search;
    if (name)
        search.setName(SbName(name));
    else
        search.setType(T::getClassTypeId());
    search.setSearchingAll(true);
    search.apply(root);
    return search.getPath() ? dynamic_cast<T*>(search.getPath()->getTail()) : nullptr;
}

template <class T = SoNode> T* find(SoNode* root, const QByteArray& name)
{
    return find<T>(root, name.constData());
}

// How many nodes of `type` a render traverses.
inline int shownCount(SoNode* root, SoType type)
{
    SoSearchAction search;
    search.setType(type);
    search.setInterest(SoSearchAction::ALL);
    search.apply(root);
    return search.getPaths().getLength();
}

// The lines of text a render draws (switches followed as set), or all of them.
inline QStringList texts(SoNode* root, bool behindSwitches = false)
{
    QStringList lines;
    if (!root)
        return lines;
    SoSearchAction search;
    search.setType(SoText2::getClassTypeId());
    search.setInterest(SoSearchAction::ALL);
    search.setSearchingAll(behindSwitches);
    search.apply(root);
    for (int i = 0; i < search.getPaths().getLength(); ++i) {
        const SoMFString& string = static_cast<SoText2*>(search.getPaths()[i]->getTail())->string;
        for (int k = 0; k < string.getNum(); ++k)
            lines << QString::fromUtf8(string[k].getString());
    }
    return lines;
}

// Shows a 3D view (or a host of render areas) and waits until `area` has drawn.
template <class Window, class Area> bool showAndWait(Window& window, Area* area)
{
    window.show();
    return QTest::qWaitForWindowExposed(&window) && QTest::qWaitFor([area] { return area->isInitialized(); });
}

} // namespace InventorScenes
