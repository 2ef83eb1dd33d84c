#pragma once
// A render area on a QOpenGLWidget, for users of the library that want a plain widget rather
// than an embedded window. Same input rules as Vw3RenderAreaQWindow: the first press
// activates (renderAreaActivated) and goes no further; keys, moves, releases and the wheel
// reach the scene once activated; a right click that moves less than 6 pixels in x and y
// emits showContextMenu on release.

#include <velmora_widget_export.h>

#include <Vw3RenderAreaBase.h>

#include <QOpenGLWidget>

class VELMORA_WIDGET_EXPORT Vw3RenderAreaQOpenGLWidget : public Vw3RenderAreaBase<QOpenGLWidget>
{
    Q_OBJECT
public:
    explicit Vw3RenderAreaQOpenGLWidget(QWidget* parent = nullptr);
    ~Vw3RenderAreaQOpenGLWidget() override;

    // Draws only while the widget is visible, or once setupForOffscreenRendering(true) and
    // its GL have been initialised.
    SiRenderArea::RenderStatus render() override;

    // As Vw3RenderAreaQWindow::getImage: throws KbeProgrammingError before GL is initialised.
    QImage getImage(int width, int height) override;

Q_SIGNALS:
    void renderAreaActivated();
    void showContextMenu(const SoPickedPoint* pickedPoint, const QPoint& globalPosition);

protected:
    void initializeGL() override;
    void resizeGL(int width, int height) override;
    void paintGL() override;
    void _scheduleUpdate() override;

private:
    SiRenderArea::RenderStatus _lastStatus = SiRenderArea::NOT_RENDERED;
};
