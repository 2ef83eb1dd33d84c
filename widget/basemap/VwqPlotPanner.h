#pragma once
// Pans the map plot. In pan mode: drag with the left button (open hand, closed while
// dragging); Left, Right, Up, Down move the map by 1 pixel, by 5 with Shift. In select
// mode: a click, or Return or Space with the mouse over the map, centres the map on
// that point (and Return or Space brings the mouse to the centre with it). Other modes
// leave the mouse and keys to the other tools.

#include <velmora_widget_export.h>

#include <VwViewMode.h>

#include <qwt_plot_panner.h>

class VELMORA_WIDGET_EXPORT VwqPlotPanner : public QwtPlotPanner
{
    Q_OBJECT
public:
    explicit VwqPlotPanner(QWidget* canvas);
    ~VwqPlotPanner() override;

    Vw::ViewMode getMode() const;
    void setMode(Vw::ViewMode mode);

    // Moves the map so that the canvas point comes to the centre.
    void centerAt(const QPoint& canvasPoint);

protected:
    void widgetMousePressEvent(QMouseEvent* event) override;
    void widgetKeyPressEvent(QKeyEvent* event) override;

private:
    Vw::ViewMode _mode = Vw::NO_MODE;
};
