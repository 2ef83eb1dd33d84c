#pragma once
// Reports where the mouse is over the map, in map coordinates, as it moves; it writes no
// text of its own (the view shows the position in its status bar).

#include <velmora_widget_export.h>

#include <qwt_plot_picker.h>

class VELMORA_WIDGET_EXPORT VwqPlotTracker : public QwtPlotPicker
{
    Q_OBJECT
public:
    explicit VwqPlotTracker(QWidget* canvas);
    ~VwqPlotTracker() override;

    QwtText trackerTextF(const QPointF& position) const override;

Q_SIGNALS:
    void newTrackerPosition(const QPointF& position);

protected:
    void widgetMouseMoveEvent(QMouseEvent* event) override;
};
