#pragma once
// Renders an Inventor scene graph without a window at a fixed pixel size, for images that
// are saved or put in reports. The scene brings its own camera and background; the
// transparency follows the 3D views.

#include <velmora_widget_export.h>

#include <QImage>
#include <QString>

#include <memory>

class SoNode;

class VELMORA_WIDGET_EXPORT Vw3OffscreenRenderer
{
public:
    // Sizes are clamped to 1..32767 pixels, with a warning.
    Vw3OffscreenRenderer(int width, int height);
    ~Vw3OffscreenRenderer();

    // Renders `sceneGraph` at once; a null graph is refused with a warning.
    void setSceneGraph(SoNode* sceneGraph);
    // The last rendering, top row first, opaque; black before the first one.
    QImage getImage() const;
    // Writes the last rendering as PNG; false, with a warning, when it cannot.
    bool saveToFile(const QString& fileName) const;

    // A bottom-up buffer of `components` bytes a pixel (3 or 4; other counts are logged
    // and read as 3) as a top-down opaque image of width x height; `bufferSize` bytes are
    // read at most.
    static QImage bufferToImage(const unsigned char* buffer, int bufferSize, int components, int width, int height);

private:
    Vw3OffscreenRenderer(const Vw3OffscreenRenderer&) = delete;
    Vw3OffscreenRenderer& operator=(const Vw3OffscreenRenderer&) = delete;
    std::unique_ptr<class Vw3OffscreenRendererPrivate> const _d;
};
