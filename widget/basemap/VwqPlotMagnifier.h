#pragma once
// Zooms the map plot with the mouse wheel about the point under the mouse, which stays
// where it is on screen; the keys of the plot library's magnifier (+ and -) zoom about
// the centre. Zooming out stops once the view spans 7e9 map units. While a ruler is
// being drawn the map disables it (disable()/enable()), so that the wheel leaves the
// view alone.

#include <velmora_widget_export.h>

#include <qwt_plot_magnifier.h>

#include <QPoint>

class VELMORA_WIDGET_EXPORT VwqPlotMagnifier : public QwtPlotMagnifier
{
    Q_OBJECT
public:
    // Views wider than this (in map units) are not zoomed out further: beyond it the
    // plot's scale arithmetic loses the map.
    static constexpr double MAX_RANGE = 7.0e9;

    explicit VwqPlotMagnifier(QWidget* canvas);
    ~VwqPlotMagnifier() override;

    // On (the default), turning the wheel away from the user zooms in.
    bool isNaturalDirection() const;
    void setNaturalDirection(bool natural);
    bool isDisabled() const;

public Q_SLOTS:
    void enable();
    void disable();

Q_SIGNALS:
    void rescaled();

protected:
    void widgetWheelEvent(QWheelEvent* event) override;
    void rescale(double factor) override;

private:
    QPoint _wheelPosition;
    bool _wheelPending = false;
    bool _natural = true;
    bool _disabled = false;
};
