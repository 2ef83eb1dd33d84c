#pragma once
// The OpenGL window a 3D view draws its Inventor scene in, embedded in a container widget.
// Qt input becomes Inventor input here and goes to the scene interactor:
//   first mouse press        activates the area (renderAreaActivated) and goes no further
//   keys, moves, releases,
//   wheel                    reach the scene only once activated
//   right click              showContextMenu on release, unless the mouse moved 6 pixels
//                            or more in x or y since the press (then it was a drag)
// The first render area also installs the Qt timer that runs Inventor's sensors.

#include <velmora_widget_export.h>

#include <Vw3RenderAreaBase.h>

#include <QWindow>

#include <memory>

class QWidget;

class VELMORA_WIDGET_EXPORT Vw3RenderAreaQWindow : public Vw3RenderAreaBase<QWindow>
{
    Q_OBJECT
public:
    explicit Vw3RenderAreaQWindow(QWidget* parent);
    ~Vw3RenderAreaQWindow() override;

    // The widget that holds this window in a widget layout; it owns the window.
    QWidget* getContainerWidget() const;

    SiRenderArea::RenderStatus render() override;

    // Renders a frame now.
    void onStartRender();
    // The render core's start-render handler: schedules a frame.
    void startRender(SiRenderArea::RenderEventArg& arg);

    // The type the 3D views chose at their last GL initialisation (per-object sorted until
    // then); offscreen renderings use it too.
    static SoGLRenderAction::TransparencyType getViewsTransparencyType();

    QImage getImage(int width, int height) override;

Q_SIGNALS:
    void renderAreaActivated();
    // `pickedPoint` (may be null) is valid during the emission only.
    void showContextMenu(const SoPickedPoint* pickedPoint, const QPoint& globalPosition);

protected:
    bool event(QEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void _scheduleUpdate() override;

private:
    bool _initializeGL();

    std::unique_ptr<class Vw3RenderAreaQWindowPrivate> const _d;
};
