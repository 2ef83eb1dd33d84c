#pragma once
// A small second map of a scene that always shows the scene's whole extent, with a
// rectangle for the area the main map shows, so that the user sees where they are and can
// move there. Dragging the rectangle with the left button moves it; a double click centres
// it on the clicked point; once the overview has the focus, the arrow keys move it by a
// few pixels. Each of these ends with zoomAreaChanged(); setZoomArea() only follows the
// main map and emits nothing.

#include <velmora_widget_export.h>

#include <QWidget>
#include <memory>

class KbuUnit;
class VugDatasetStore;
class VugScene;
class VuuCoordSystem;

class VELMORA_WIDGET_EXPORT Vwv2DOverView : public QWidget
{
    Q_OBJECT
public:
    explicit Vwv2DOverView(QWidget* parent = nullptr);
    ~Vwv2DOverView() override;

    QSize sizeHint() const override;

    // Draws the scene's items from the datasets; both must outlive the overview or be reset.
    void setScene(VugScene* scene, VugDatasetStore* datasets);
    void setCoordinateSystem(const VuuCoordSystem& system);
    const VuuCoordSystem& getCoordSystem() const;
    const KbuUnit& getCoordinatesUnit() const;

    // In map coordinates; empty until the main map gives one.
    QRectF getZoomArea() const;

public Q_SLOTS:
    // Moves the rectangle to the area the main map shows (map coordinates). An empty,
    // invalid or non-finite rectangle is refused; while the user drags, the drag wins.
    void setZoomArea(const QRectF& rect);

Q_SIGNALS:
    // The user moved the rectangle: the area the main map should show, in map coordinates.
    void zoomAreaChanged(const QRectF& rect);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void _showWholeScene();

    std::unique_ptr<class Vwv2DOverViewPrivate> const _d;
};
