#pragma once
// The demo's 2D display: the map of a scene with the view tools and the decoration
// switches in its tool bars, and beside it the overview and the scene's items (tick to
// show, select to make current). The status bar shows the mode and the position under the
// mouse. "Generated points" adds a 10,000,000-point set to the scene, or takes it out; point
// files (CSV or binary) dropped on the map are added to it.

#include <VwvIAcceptDrops.h>
#include <VwwASceneWindow.h>

class QAction;
class QListWidget;
class QListWidgetItem;
class VugScene;
class Vwv2DOverView;
class VwvBasemapToolActionsView;
class VwvBasemapView;

class DemoMapWindow : public VwwASceneWindow, public VwvIAcceptDrops
{
    Q_OBJECT
public:
    static constexpr int LARGE_SET_SIZE = 10000000;

    explicit DemoMapWindow(VssProject* project, QWidget* parent = nullptr);
    ~DemoMapWindow() override;

    QString getClassID() const override;
    QRectF getZoom() const override;
    void connectGps(QObject* gpsDialog, const char* enabledSignal, const char* visibleSignal,
                    const char* centeredSignal, const char* positionSignal, bool connect) override;

    VwvBasemapView* getView() const;
    Vwv2DOverView* getOverview() const;
    // The scene's item names, top of the drawing first, as the list shows them.
    QStringList shownItems() const;

    bool canAcceptDrop(const QMimeData& data) const override;
    bool acceptDrop(const QMimeData& data, const QPointF& mapPoint) override;

public Q_SLOTS:
    // Adds the large generated point set to the scene (or makes it again).
    bool addLargePointSet(int count = LARGE_SET_SIZE);
    // Writes the map as PNG or SVG (by the file's suffix); asks for a name when empty.
    bool exportImage(QString fileName = QString());

protected:
    void _sceneChanged() override;

private:
    void _fillItemList();
    void _itemChanged(QListWidgetItem* item);
    void _showTracker(const QPointF& position);
    void _release();

    VwvBasemapView* _view = nullptr;
    Vwv2DOverView* _overview = nullptr;
    VwvBasemapToolActionsView* _tools = nullptr;
    QListWidget* _items = nullptr;
    QAction* _generate = nullptr;
    VugScene* _scene = nullptr;
    bool _filling = false;
};
