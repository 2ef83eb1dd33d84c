#include <Vw3OffscreenRenderer.h>

#include <Vw3ImageFile.h>
#include <Vw3RenderAreaQWindow.h>

#include <KbbDebug.h>
#include <Vg3OpenInventor.h>

#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoOffscreenRenderer.h>
#include <Inventor/actions/SoGLRenderAction.h>


#include <limits>

namespace {

int boundedSide(int side, const char* what)
{
    const int maxSide = std::numeric_limits<short>::max();
    if (side >= 1 && side <= maxSide)
        return side;
    qWarning("Vw3OffscreenRenderer::Vw3OffscreenRenderer: invalid %s %d", what, side);
    return qBound(1, side, maxSide);
}

} // namespace

class Vw3OffscreenRendererPrivate
{
public:
    Vw3OffscreenRendererPrivate(int width, int height)
        : width(width)
        , height(height)
    {
        SbViewportRegion region{short(width), short(height)};
        region.setPixelsPerInch(1.0f);
        action = new SoGLRenderAction(region);
        action->setTransparencyType(Vw3RenderAreaQWindow::getViewsTransparencyType());
        renderer = new SoOffscreenRenderer(action);
        renderer->setViewportRegion(region);
    }

    ~Vw3OffscreenRendererPrivate()
    {
        // The renderer does not own an action it was given.
        delete renderer;
        delete action;
    }

    int width;
    int height;
    SoGLRenderAction* action = nullptr;
    SoOffscreenRenderer* renderer = nullptr;
    bool rendered = false;
};

Vw3OffscreenRenderer::Vw3OffscreenRenderer(int width, int height)
    : _d((Vg3OpenInventor::getInstance()->init(),
          std::make_unique<Vw3OffscreenRendererPrivate>(boundedSide(width, "width"), boundedSide(height, "height"))))
{
}

Vw3OffscreenRenderer::~Vw3OffscreenRenderer() = default;

void Vw3OffscreenRenderer::setSceneGraph(SoNode* sceneGraph)
{
    if (!sceneGraph) {
        qWarning("Vw3OffscreenRenderer::setSceneGraph: no scene graph given");
        return;
    }
    _d->rendered = _d->renderer->render(sceneGraph);
    if (!_d->rendered)
        qWarning("Vw3OffscreenRenderer::setSceneGraph: the scene could not be rendered");
}

QImage Vw3OffscreenRenderer::getImage() const
{
    if (!_d->rendered) {
        QImage image(_d->width, _d->height, QImage::Format_RGB32);
        image.fill(Qt::black);
        return image;
    }
    const SbVec2s size = _d->renderer->getViewportRegion().getViewportSizePixels();
    const int components = int(_d->renderer->getComponents());
    const int bufferSize = int(size[0]) * int(size[1]) * components;
    return bufferToImage(_d->renderer->getBuffer(), bufferSize, components, size[0], size[1]);
}

bool Vw3OffscreenRenderer::saveToFile(const QString& fileName) const
{
    // Written through QImage rather than Coin's PNG writer, which needs an image library
    // Coin may have been built without.
    QString error;
    if (!Vw3ImageFile::write(getImage(), fileName, &error)) {
        qWarning("Vw3OffscreenRenderer::saveToFile: cannot write %s: %s", qPrintable(fileName), qPrintable(error));
        return false;
    }
    return true;
}

QImage Vw3OffscreenRenderer::bufferToImage(const unsigned char* buffer, int bufferSize, int components, int width,
                                           int height)
{
    if (width <= 0 || height <= 0)
        return QImage();
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::black);
    if (components != 3 && components != 4) {
        KbbDebug::printWarning(QStringLiteral("Wrong offscreen renderer number components"));
        components = 3;
    }
    if (!buffer || bufferSize < 1)
        return image;
    const int pixelCount = qMin(bufferSize / components, width * height);
    for (int i = 0; i < pixelCount; ++i) {
        const unsigned char* pixel = buffer + i * components;
        // The buffer's first row is the bottom one.
        const int x = i % width;
        const int y = height - 1 - i / width;
        image.setPixel(x, y, qRgb(pixel[0], pixel[1], pixel[2]));
    }
    return image;
}
