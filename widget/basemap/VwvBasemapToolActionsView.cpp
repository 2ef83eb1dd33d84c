#include "VwvBasemapToolActionsView.h"

#include "VwvBasemapView.h"

#include <QAction>

VwvBasemapToolActionsView::VwvBasemapToolActionsView(QObject* parent)
    : VwvABasemapToolActions(parent)
{
    using namespace Vua::Resource;
    _addMode(PAN, Vw::PAN, iconZoomHand(), tr("Pan"), tr("Pan: drag the map"), QKeySequence(Qt::Key_P));
    _addMode(ZOOM_BOX, Vw::ZOOM_BOX, iconZoomBox(), tr("Zoom box"), tr("Zoom box: drag a rectangle to zoom to"),
             QKeySequence(Qt::Key_Z));
    _addMode(ZOOM_IN, Vw::ZOOM_IN, iconZoomIn(), tr("Zoom in"), tr("Zoom in: click to zoom in about a point"),
             QKeySequence(Qt::Key_Plus));
    _addMode(ZOOM_OUT, Vw::ZOOM_OUT, iconZoomOut(), tr("Zoom out"), tr("Zoom out: click to zoom out about a point"),
             QKeySequence(Qt::Key_Minus));
    _addMode(CENTER_VIEW, Vw::SELECT, iconZoomCenterView(), tr("Centre view"),
             tr("Centre view: click to centre the map on a point"), QKeySequence(Qt::Key_C));
    _addMode(MEASURE_LENGTH, Vw::MEASURE_LENGTH, iconViewerLineRuler(), tr("Measure length"),
             tr("Measure length: click the points of a line, right-click to end"), QKeySequence(Qt::Key_L));
    _addMode(MEASURE_AREA, Vw::MEASURE_AREA, iconViewerPolygonRuler(), tr("Measure area"),
             tr("Measure area: click the corners of a polygon, right-click to end"), QKeySequence(Qt::Key_A));

    QAction* all = _addAction(VIEW_ALL, iconZoomViewAll(), tr("View all"), tr("Show every layer"));
    all->setShortcuts({QKeySequence(Qt::Key_Home), QKeySequence(Qt::CTRL + Qt::Key_0)});
    all->setToolTip(tr("%1 (%2)").arg(tr("Show every layer"), all->shortcut().toString(QKeySequence::NativeText)));
    all->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    QAction* layer = _addAction(ZOOM_ON_LAYER, iconZoomOnLayer(), tr("Zoom on current layer"),
                                tr("Show the whole current layer"), QKeySequence(Qt::SHIFT + Qt::Key_Home));
    QAction* undo = _addAction(UNDO_ZOOM, iconZoomUndo(), tr("Undo zoom"), tr("Back to the previous view"),
                               QKeySequence(Qt::ALT + Qt::Key_Left));
    QAction* redo = _addAction(REDO_ZOOM, iconZoomRedo(), tr("Redo zoom"), tr("Forward to the next view"),
                               QKeySequence(Qt::ALT + Qt::Key_Right));

    // Disabled without a view, but QAction::trigger() fires a disabled action all the same.
    const auto command = [this](QAction* action, void (*run)(VwvBasemapView*)) {
        connect(action, &QAction::triggered, this, [this, action, run] {
            if (VwvBasemapView* view = getView())
                run(view);
            else
                qWarning("VwvBasemapToolActionsView: '%s' needs a map view", qUtf8Printable(action->objectName()));
        });
    };
    command(all, [](VwvBasemapView* view) { view->viewAll(); });
    command(layer, [](VwvBasemapView* view) { view->zoomToCurrentLayer(); });
    command(undo, [](VwvBasemapView* view) { view->undoZoom(); });
    command(redo, [](VwvBasemapView* view) { view->redoZoom(); });
}

VwvBasemapToolActionsView::~VwvBasemapToolActionsView() = default;

QString VwvBasemapToolActionsView::getId() const
{
    return QStringLiteral("view");
}

QString VwvBasemapToolActionsView::getDefaultStartMode() const
{
    return QLatin1String(PAN);
}

void VwvBasemapToolActionsView::_update()
{
    const VwvBasemapView* view = getView();
    getAction(ZOOM_ON_LAYER)->setEnabled(view && view->getLayer(getCurrentLayerRank()));
    getAction(UNDO_ZOOM)->setEnabled(view && view->canUndoZoom());
    getAction(REDO_ZOOM)->setEnabled(view && view->canRedoZoom());
}
