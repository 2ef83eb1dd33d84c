#pragma once
// A render area on a QOpenGLWidget, for users of the library that want a plain widget rather
// than an embedded window. Same input rules as Vw3RenderAreaQWindow: the first press
// activates (renderAreaActivated) and goes no further; keys, moves, releases and the wheel
// reach the scene once activated; a right click that moves less than 6 pixels in x and y
// emits showContextMenu on release.

#include <velmora_widget_export.h>

#include <SiRenderArea.h>

#include <Inventor/actions/SoGLRenderAction.h>

#include <QOpenGLWidget>
#include <QImage>
#include <QSharedPointer>

#include <memory>

class SoPickedPoint;
class Vg3SceneInteractor;

class VELMORA_WIDGET_EXPORT Vw3RenderAreaQOpenGLWidget : public QOpenGLWidget, public SiRenderArea
{
    Q_OBJECT
public:
    explicit Vw3RenderAreaQOpenGLWidget(QWidget* parent = nullptr);
    ~Vw3RenderAreaQOpenGLWidget() override;

    void setSceneInteractor(const QSharedPointer<Vg3SceneInteractor>& interactor);
    QSharedPointer<Vg3SceneInteractor> getSceneInteractor() const;

    void setSceneGraph(SoNode* sceneGraph) override;
    SoNode* getSceneGraph() const override;
    // In device pixels; a resize of the widget sets it.
    void setSize(const SbVec2i32& size) override;
    SbVec2i32 getSize() const override;
    const SbViewportRegion& getViewportRegion() const override;
    void setClearColor(const SbColorRGBA& color) override;
    SbColorRGBA getClearColor() const override;
    void setClearDepth(float depth) override;
    float getClearDepth() const override;
    void setClearPolicy(SiRenderArea::ClearPolicy policy) override;
    SiRenderArea::ClearPolicy getClearPolicy() const override;
    SiRenderArea::RenderStatus render() override;

    bool isInitialized() const;
    void setActivated(bool activated);
    bool isActivated() const;
    SoGLRenderAction::TransparencyType getTransparencyType() const;
    void setTransparencyType(SoGLRenderAction::TransparencyType type);

    // As Vw3RenderAreaQWindow::getImage: throws KbeProgrammingError before GL is initialised.
    QImage getImage(int width, int height);
    bool saveToFile(const QString& fileName);
    // Lets render() draw while the widget is hidden (once its GL has been initialised).
    void setupForOffscreenRendering(bool enabled);

Q_SIGNALS:
    void renderAreaActivated();
    void showContextMenu(const SoPickedPoint* pickedPoint, const QPoint& globalPosition);

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    bool event(QEvent* event) override;
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    std::unique_ptr<class Vw3RenderAreaQOpenGLWidgetPrivate> const _d;
};
