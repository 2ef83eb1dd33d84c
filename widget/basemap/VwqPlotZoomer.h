#pragma once
// Zooms the map plot and keeps the zooms in a stack to go back and forth in. In zoom-in
// and zoom-out modes a click zooms about the clicked point, which keeps its place on
// screen; in zoom-box mode a dragged rectangle (at least 2 pixels, grown to 11 x 11) is
// shaped to the view's aspect and zoomed to. Escape abandons a drag.

#include <velmora_widget_export.h>

#include <VwViewMode.h>

#include <qwt_plot_picker.h>

#include <QList>
#include <QVector>
#include <memory>

class VwqPlotRescaler;

class VELMORA_WIDGET_EXPORT VwqPlotZoomer : public QwtPlotPicker
{
    Q_OBJECT
public:
    explicit VwqPlotZoomer(QWidget* canvas);
    ~VwqPlotZoomer() override;

    // Zooms to the rectangle (map coordinates) after clamping it to the axis limits,
    // pushing the view as it was first when it is not on the stack.
    void zoom(const QRectF& rect);
    // Moves in the stack: -1 back, +1 forward.
    void zoom(int offset);
    // Empties the stack and starts it again with the rectangle.
    void resetZoom(const QRectF& rect);
    // The rectangle the plot shows now.
    QRectF getZoomRect() const;
    const QVector<QRectF>& getZoomStack() const;
    int getZoomRectIndex() const;

    // Widens the rectangle about its centre to the aspect of the view now shown.
    void rescaleToCurrentScale(QRectF& rect) const;

    void setAxisLimits(int axis, double minimum, double maximum);
    void setAxisLimitMin(int axis, double minimum);
    void setAxisLimitMax(int axis, double maximum);
    void setAxisNoLimit(int axis);

    // -1, the default, keeps every zoom.
    void setMaxStackDepth(int depth);
    int getMaxStackDepth() const;
    // The part of the view a click zooms by: 0.1 shows 0.9 of it after a zoom-in click.
    void setFactor(double factor);
    double getFactor() const;
    void setRescaler(VwqPlotRescaler* rescaler);

    // The modes in which the zoomer takes the mouse (zoom in, out and box by default).
    void setEnabledModes(const QList<Vw::ViewMode>& modes);
    Vw::ViewMode getMode() const;
    void setMode(Vw::ViewMode mode);

Q_SIGNALS:
    void zoomed(const QRectF& rect);
    void zoomFinished();

protected:
    bool accept(QPolygon& points) const override;

private:
    void _clicked(const QPointF& point);
    void _dragged(const QRectF& rect);
    void _push(const QRectF& rect);
    void _show(const QRectF& rect);

    std::unique_ptr<class VwqPlotZoomerPrivate> const _d;
};
