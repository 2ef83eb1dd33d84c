#pragma once
// The viewer widget inside a 3D view: the render area (a GL window in a container widget),
// the scene interactor that turns its input into camera motion, the root that the
// interactor renders (the view's graph plus a fullscreen notification), and two floating
// toolbars laid over the top corners of the render area.
//
// Before the first render area of the process is made, the GL format the views need is
// requested once and what the driver gives is compared with it and logged.

#include <velmora_widget_export.h>

#include <QSharedPointer>
#include <QStringList>
#include <QWidget>
#include <memory>

class QSurfaceFormat;
class QToolBar;
class SoGroup;
class SoNode;
class SoSwitch;
class Vg3SceneInteractor;
class Vw3RenderAreaQWindow;

class VELMORA_WIDGET_EXPORT Vw3OivViewer : public QWidget
{
    Q_OBJECT
public:
    explicit Vw3OivViewer(QWidget* parent = nullptr);
    ~Vw3OivViewer() override;

    // "vw3_oiv_viewer_root", handed to the scene interactor.
    SoGroup* getRoot() const;
    // The view's graph, placed under the root before the notification (nullptr removes it).
    void setSceneGraph(SoNode* graph);
    SoNode* getSceneGraph() const;
    SoSwitch* getNotificationSwitch() const;
    // Shows or hides "Press "Alt + Return" to exit fullscreen mode".
    void showFullScreenNotification(bool show);

    Vw3RenderAreaQWindow* getRenderArea() const;
    QWidget* getRenderAreaWidget() const;
    const QSharedPointer<Vg3SceneInteractor>& getSceneInteractor() const;
    // The hidden panel beside the render area.
    QWidget* getSidePanel() const;

    // The main toolbar ("disable" unchecked) and the auxiliary one ("disable" checked).
    QToolBar* getToolbar() const;
    QToolBar* getAuxToolbar() const;
    void enableToolbar(bool enable);
    void enableAuxToolbar(bool enable);
    void forceToolbar(bool force);
    void forceAuxToolbar(bool force);
    bool isToolbarEnabled() const;
    bool isAuxToolbarEnabled() const;

    // The failures of `obtained` against the requested format, in the order they are
    // checked; empty when it is as asked. Direct rendering is not part of QSurfaceFormat.
    static QStringList compareRenderFormat(const QSurfaceFormat& obtained, bool directRendering);
    // "OpenGL pixel format check : OK", or "... : Failed" followed by the failures.
    static QString renderFormatReport(const QStringList& failures);
    // The format the 3D views ask for.
    static QSurfaceFormat requestedRenderFormat();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    static void _checkRenderFormatOnce();
    void _placeToolbars();
    void _updateToolbarVisibility(QToolBar* toolbar);
    std::unique_ptr<class Vw3OivViewerPrivate> const _d;
};
