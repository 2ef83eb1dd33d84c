#pragma once
// The plot of a 2D map: map coordinates on both axes at one scale (1:1), the interaction
// tools of the map (panner, wheel magnifier, zoomer, rulers, tracker) switched by the
// view mode, a grid and axes styled from the map preferences, and axis labels that leave
// out a round offset so that large coordinates stay readable. Pans and wheel zooms go
// onto the zoom stack like any other zoom.

#include <velmora_widget_export.h>

#include <VwViewMode.h>

#include <qwt_plot.h>

#include <memory>

class KbuUnit;
class QwtPlotGrid;
class QwtPlotItem;
class VupPreferenceModif;
class VwqPlotMagnifier;
class VwqPlotMeasureArea;
class VwqPlotMeasureLine;
class VwqPlotPanner;
class VwqPlotRescaler;
class VwqPlotTracker;
class VwqPlotZoomer;

class VELMORA_WIDGET_EXPORT VwqBasemapPlot : public QwtPlot
{
    Q_OBJECT
public:
    explicit VwqBasemapPlot(QWidget* parent = nullptr);
    ~VwqBasemapPlot() override;

    VwqPlotZoomer* zoomer() const;
    VwqPlotMagnifier* magnifier() const;
    VwqPlotPanner* panner() const;
    VwqPlotMeasureLine* lengthSurveyor() const;
    VwqPlotMeasureArea* areaSurveyor() const;
    VwqPlotTracker* tracker() const;
    VwqPlotRescaler* rescaler() const;
    QwtPlotGrid* grid() const;

    // Attaches a layer's item on the map axes, scaled with the map, drawn without
    // antialiasing (layers draw thousands of marks).
    void addPlotItem(QwtPlotItem* item);

    // The scale of the axis over the canvas's full size: [height, 0] for y, [0, width] for x.
    QwtScaleMap canvasMap(int axisId) const override;
    QRectF currentViewRect() const;
    QPointF viewToPixel(const QPointF& point) const;
    QPointF pixelToView(const QPointF& pixel) const;
    QRectF viewToPixel(const QRectF& rect) const;
    QRectF pixelToView(const QRectF& rect) const;
    // Map units per pixel, and pixels per map unit.
    double getFactorPixelToSize() const;
    double getFactorSizeToPixel() const;
    // The room an axis takes beside the canvas; 0 while it is hidden.
    int getAxisMargin(int axisId) const;

    // The offset the axis leaves out of its labels.
    double getAxisOffset(int axisId) const;
    // Shows the rectangle on the axes with titles "title [unit] (+offset)" and the
    // subtitle in small italics.
    void updatePlotAxes(const QRectF& rect, const QString& title, const KbuUnit& unit,
                        const QString& subtitle = QString());

    Vw::ViewMode getMode() const;
    // Hands the mode to every tool; each takes the mouse in its own modes only.
    void setMode(Vw::ViewMode mode);

public Q_SLOTS:
    // Also stores the choice in the map preferences.
    void setGridVisible(bool visible);

Q_SIGNALS:
    void currentViewChanged(const QRectF& rect);
    void newTrackerPosition(const QPointF& position);

private:
    void _viewMovedByTool();
    void _preferenceChanged(const VupPreferenceModif& modif);
    void _updateStyles();
    void _updateAxisLabels(bool titlesChanged);

    std::unique_ptr<class VwqBasemapPlotPrivate> const _d;
};
