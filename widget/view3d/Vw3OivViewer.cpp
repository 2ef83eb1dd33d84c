#include "Vw3OivViewer.h"

#include <Vw3RenderAreaQWindow.h>

#include <KbbDebug.h>
#include <SoRef.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <VupPreferences3DViews.h>

#include <Inventor/nodes/SoFont.h>
#include <Inventor/nodes/SoGroup.h>
#include <Inventor/nodes/SoOrthographicCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoSwitch.h>
#include <Inventor/nodes/SoText2.h>
#include <Inventor/nodes/SoTranslation.h>

#include <QAction>
#include <QApplication>
#include <QGLWidget>
#include <QHBoxLayout>
#include <QOpenGLContext>
#include <QPointer>
#include <QSurfaceFormat>
#include <QToolBar>

class Vw3OivViewerPrivate
{
public:
    SoRef<SoGroup> root;
    SoSwitch* notificationSwitch = nullptr;
    SoRef<SoNode> sceneGraph;
    QWidget* dummy = nullptr;
    QWidget* sidePanel = nullptr;
    Vw3RenderAreaQWindow* renderArea = nullptr;
    QWidget* renderAreaWidget = nullptr;
    QSharedPointer<Vg3SceneInteractor> interactor;
    QToolBar* toolbars[2] = {nullptr, nullptr};
};

namespace {

QToolBar* makeFloatingToolbar(QWidget* parent, bool disabled)
{
    auto toolbar = new QToolBar(QStringLiteral("3D Viewer toolbar"), parent);
    toolbar->setObjectName(QStringLiteral("3D Viewer toolbar"));
    toolbar->setIconSize(QSize(20, 20));
    toolbar->setAutoFillBackground(true);
    auto disable = new QAction(QStringLiteral("disable"), toolbar);
    disable->setObjectName(QStringLiteral("disable"));
    disable->setCheckable(true);
    disable->setChecked(disabled);
    auto force = new QAction(QStringLiteral("force"), toolbar);
    force->setObjectName(QStringLiteral("force"));
    force->setCheckable(true);
    // Kept as state holders, not shown as buttons.
    toolbar->QWidget::addAction(disable);
    toolbar->QWidget::addAction(force);
    toolbar->hide();
    toolbar->raise();
    return toolbar;
}

// The widget every view's GL context may share with, made once.
QPointer<QGLWidget> shared;

QAction* toolbarState(QToolBar* toolbar, const char* name)
{
    return toolbar->findChild<QAction*>(QLatin1String(name), Qt::FindDirectChildrenOnly);
}

} // namespace

Vw3OivViewer::Vw3OivViewer(QWidget* parent)
    : QWidget(parent)
    , _d(new Vw3OivViewerPrivate)
{
    if (!Vg3OpenInventor::getInstance()->isInitialized())
        Vg3OpenInventor::getInstance()->init();
    _checkRenderFormatOnce();

    _d->root = new SoGroup;
    _d->root->setName("vw3_oiv_viewer_root");
    _d->notificationSwitch = new SoSwitch;
    _d->notificationSwitch->setName("notification_message_switch");
    _d->notificationSwitch->whichChild = SO_SWITCH_NONE;
    _d->root->addChild(_d->notificationSwitch);
    auto sep = new SoSeparator;
    sep->setName("notification_message_sep");
    _d->notificationSwitch->addChild(sep);
    sep->addChild(new SoOrthographicCamera);
    // Coin has no text property node to align the text on its bottom; lifting the baseline
    // a little above the bottom edge gives the same picture.
    auto alignment = new SoTranslation;
    alignment->translation.setValue(0.0f, 0.05f, 0.0f);
    sep->addChild(alignment);
    auto translation = new SoTranslation;
    translation->translation.setValue(0.0f, -1.0f, 0.0f);
    sep->addChild(translation);
    auto font = new SoFont;
    font->size = 16.0f;
    sep->addChild(font);
    auto text = new SoText2;
    text->string.setValue(tr("Press \"Alt + Return\" to exit fullscreen mode").toUtf8().constData());
    text->justification = SoText2::CENTER;
    sep->addChild(text);

    _d->interactor.reset(new Vg3SceneInteractor);
    _d->interactor->setSceneGraph(_d->root);

    auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    _d->dummy = new QWidget(this);
    _d->dummy->setObjectName(QStringLiteral("3D Viewer dummy widget"));
    layout->addWidget(_d->dummy);
    auto dummyLayout = new QHBoxLayout(_d->dummy);
    dummyLayout->setContentsMargins(0, 0, 0, 0);
    dummyLayout->setSpacing(0);
    _d->renderArea = new Vw3RenderAreaQWindow(_d->dummy);
    _d->renderArea->setSceneInteractor(_d->interactor);
    _d->renderAreaWidget = _d->renderArea->getContainerWidget();
    dummyLayout->addWidget(_d->renderAreaWidget, 1);
    _d->sidePanel = new QWidget(_d->dummy);
    _d->sidePanel->setObjectName(QStringLiteral("3D Viewer side panel"));
    _d->sidePanel->hide();
    dummyLayout->addWidget(_d->sidePanel);

    _d->toolbars[0] = makeFloatingToolbar(this, false);
    _d->toolbars[1] = makeFloatingToolbar(this, true);
    for (QToolBar* toolbar : _d->toolbars) {
        for (const char* name : {"disable", "force"})
            connect(toolbarState(toolbar, name), &QAction::toggled, this,
                    [this, toolbar] { _updateToolbarVisibility(toolbar); });
        _updateToolbarVisibility(toolbar);
    }
}

Vw3OivViewer::~Vw3OivViewer()
{
    // The render area renders the interactor's graph: take the graph away first.
    _d->interactor->setSceneGraph(nullptr);
}

SoGroup* Vw3OivViewer::getRoot() const { return _d->root; }

void Vw3OivViewer::setSceneGraph(SoNode* graph)
{
    if (graph == _d->sceneGraph)
        return;
    // The new graph is held before the old one goes: it may live only inside the old one.
    const SoRef<SoNode> old = std::exchange(_d->sceneGraph, graph);
    if (old)
        _d->root->removeChild(old);
    if (graph)
        // First, so the notification is drawn over the scene.
        _d->root->insertChild(graph, 0);
}

SoNode* Vw3OivViewer::getSceneGraph() const { return _d->sceneGraph; }
SoSwitch* Vw3OivViewer::getNotificationSwitch() const { return _d->notificationSwitch; }

void Vw3OivViewer::showFullScreenNotification(bool show)
{
    const int which = show ? 0 : SO_SWITCH_NONE;
    if (_d->notificationSwitch->whichChild.getValue() != which)
        _d->notificationSwitch->whichChild = which;
}

Vw3RenderAreaQWindow* Vw3OivViewer::getRenderArea() const { return _d->renderArea; }
QWidget* Vw3OivViewer::getRenderAreaWidget() const { return _d->renderAreaWidget; }
const QSharedPointer<Vg3SceneInteractor>& Vw3OivViewer::getSceneInteractor() const { return _d->interactor; }
QWidget* Vw3OivViewer::getSidePanel() const { return _d->sidePanel; }
QToolBar* Vw3OivViewer::getToolbar() const { return _d->toolbars[0]; }
QToolBar* Vw3OivViewer::getAuxToolbar() const { return _d->toolbars[1]; }

void Vw3OivViewer::enableToolbar(bool enable) { toolbarState(_d->toolbars[0], "disable")->setChecked(!enable); }
void Vw3OivViewer::enableAuxToolbar(bool enable) { toolbarState(_d->toolbars[1], "disable")->setChecked(!enable); }
void Vw3OivViewer::forceToolbar(bool force) { toolbarState(_d->toolbars[0], "force")->setChecked(force); }
void Vw3OivViewer::forceAuxToolbar(bool force) { toolbarState(_d->toolbars[1], "force")->setChecked(force); }
bool Vw3OivViewer::isToolbarEnabled() const { return !toolbarState(_d->toolbars[0], "disable")->isChecked(); }
bool Vw3OivViewer::isAuxToolbarEnabled() const { return !toolbarState(_d->toolbars[1], "disable")->isChecked(); }

void Vw3OivViewer::_updateToolbarVisibility(QToolBar* toolbar)
{
    const bool enabled = !toolbarState(toolbar, "disable")->isChecked();
    const bool forced = toolbarState(toolbar, "force")->isChecked();
    const bool visible = enabled && (forced || VupPreferences3DViews::isToolbarVisible());
    toolbar->setVisible(visible);
    if (visible) {
        _placeToolbars();
        toolbar->raise();
    }
}

void Vw3OivViewer::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    _placeToolbars();
}

void Vw3OivViewer::_placeToolbars()
{
    QToolBar* main = _d->toolbars[0];
    QToolBar* aux = _d->toolbars[1];
    main->adjustSize();
    aux->adjustSize();
    main->move(0, 0);
    aux->move(qMax(0, width() - aux->width()), 0);
}

QSurfaceFormat Vw3OivViewer::requestedRenderFormat()
{
    QSurfaceFormat format;
    format.setRenderableType(QSurfaceFormat::OpenGL);
    format.setProfile(QSurfaceFormat::CompatibilityProfile);
    format.setSwapBehavior(QSurfaceFormat::DoubleBuffer);
    format.setStereo(false);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    format.setAlphaBufferSize(8);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    format.setSamples(0);
    format.setSwapInterval(1);
    return format;
}

QStringList Vw3OivViewer::compareRenderFormat(const QSurfaceFormat& obtained, bool directRendering)
{
    QStringList failures;
    // A context without profile (before GL 3.2) is a compatibility context by nature.
    if (obtained.profile() == QSurfaceFormat::CoreProfile)
        failures << QStringLiteral("Wrong profile");
    if (obtained.swapBehavior() == QSurfaceFormat::SingleBuffer)
        failures << QStringLiteral("No double buffer");
    if (obtained.alphaBufferSize() <= 0)
        failures << QStringLiteral("No alpha buffer");
    if (obtained.depthBufferSize() <= 0)
        failures << QStringLiteral("No depth buffer");
    if (!directRendering)
        failures << QStringLiteral("No direct rendering");
    if (obtained.redBufferSize() <= 0 || obtained.greenBufferSize() <= 0 || obtained.blueBufferSize() <= 0)
        failures << QStringLiteral("No RGBA buffer");
    if (obtained.stencilBufferSize() <= 0)
        failures << QStringLiteral("No stencil buffer");
    if (obtained.redBufferSize() < 8)
        failures << QStringLiteral("Red buffer size < 8");
    if (obtained.greenBufferSize() < 8)
        failures << QStringLiteral("Green buffer size < 8");
    if (obtained.blueBufferSize() < 8)
        failures << QStringLiteral("Blue buffer size < 8");
    if (obtained.alphaBufferSize() < 8)
        failures << QStringLiteral("Alpha buffer size < 8");
    if (obtained.depthBufferSize() < 24)
        failures << QStringLiteral("Depth buffer size < 24");
    if (obtained.stencilBufferSize() < 8)
        failures << QStringLiteral("Stencil buffer size < 8");
    if (obtained.swapInterval() < 1)
        failures << QStringLiteral("No vertical synchronization");
    return failures;
}

QString Vw3OivViewer::renderFormatReport(const QStringList& failures)
{
    const QString result = failures.isEmpty() ? QStringLiteral("OK")
                                              : QStringLiteral("Failed : ") + failures.join(QStringLiteral(", "));
    return QStringLiteral("OpenGL pixel format check : %1").arg(result);
}

void Vw3OivViewer::_checkRenderFormatOnce()
{
    static bool done = false;
    if (done)
        return;
    done = true;
    const QSurfaceFormat requested = requestedRenderFormat();
    QSurfaceFormat::setDefaultFormat(requested);
    QGLFormat glFormat = QGLFormat::fromSurfaceFormat(requested);
    glFormat.setDirectRendering(true);
    glFormat.setRgba(true);
    glFormat.setAccum(false);
    glFormat.setAccumBufferSize(8);
    glFormat.setSampleBuffers(false);
    glFormat.setOverlay(false);
    QGLFormat::setDefaultFormat(glFormat);

    // The shared GL widget lives as long as the process: every view's context may share
    // with it. It is a 1 by 1 tool window that never takes the focus.
    shared = new QGLWidget(glFormat, nullptr, nullptr,
                           Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    shared->setAttribute(Qt::WA_ShowWithoutActivating);
    shared->setObjectName(QStringLiteral("3D Viewer shared GL widget"));
    shared->resize(1, 1);
    // Some platforms activate every window shown, whatever it asks, a little later: the
    // user's window asks for its activation back after that, or keys would go to the 1 by 1
    // widget.
    QWidget* active = QApplication::activeWindow();
    shared->show();
    if (active)
        active->activateWindow();
    qAddPostRoutine([] { delete shared.data(); });

    // Coin reads no preference database; the compatibility-context switch is passed the
    // way Coin reads its own settings, through the environment.
    qputenv("OIV_COMPAT_CONTEXT_80", "1");

    QSurfaceFormat obtained = requested;
    bool direct = false;
    if (shared->isValid() && shared->context() && shared->context()->contextHandle()) {
        obtained = shared->context()->contextHandle()->format();
        direct = shared->format().directRendering();
    } else {
        obtained = QSurfaceFormat();
        obtained.setSwapBehavior(QSurfaceFormat::SingleBuffer);
    }
    KbbDebug::printInfo(renderFormatReport(compareRenderFormat(obtained, direct)));
}
