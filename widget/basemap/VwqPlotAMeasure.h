#pragma once
// Base of the map rulers: picks a polygon on the plot canvas in its own view mode, draws it
// with the length of every segment and the angle at every vertex, and has its subclass
// write what it measures into the tracker text while the user picks.
// Mouse: a left click adds a vertex (the first one starts the measure), moving the mouse
// drags the last vertex, a right click ends. Keys: Return adds a vertex at the cursor,
// Space ends, Escape abandons the measure.

#include <velmora_widget_export.h>

#include <VwViewMode.h>

#include <qwt_plot_picker.h>

#include <QVector>
#include <memory>

class KbuUnit;

class VELMORA_WIDGET_EXPORT VwqPlotAMeasure : public QwtPlotPicker
{
    Q_OBJECT
public:
    ~VwqPlotAMeasure() override;

    // The unit of the plot's coordinates; a length unit, metres by default.
    const KbuUnit& getViewCoordinateUnit() const;
    void setViewCoordinateUnit(const KbuUnit& unit);

    // Closed rulers draw the closing edge from the last vertex back to the first.
    bool isClosed() const;

    // Enabled, with the polygon machine, rubber band and default cursor, only in the
    // ruler's own mode; any change of mode abandons a measure in progress.
    Vw::ViewMode getMode() const;
    void setMode(Vw::ViewMode mode);

    // The polyline with its segment lengths and vertex angles, while a measure is in
    // progress; the mask covers all of it.
    void drawRubberBand(QPainter* painter) const override;
    QRegion rubberBandMask() const override;

Q_SIGNALS:
    // A measure starts and ends; the plot keeps the wheel from zooming in between.
    void startPicking();
    void stopPicking();

protected:
    VwqPlotAMeasure(Vw::ViewMode ownMode, bool closed, QWidget* canvas);

    // The picked vertices in plot coordinates converted to metres, the dragged last one
    // included. A pixel equal to the one before it, or one with no plot coordinates, is
    // left out.
    QVector<QPointF> _getVerticesInMeter() const;
    // Sum of the distances between consecutive vertices in picking order, not closed.
    double _calculateTotalLengthInMeter() const;

    // A length in metres or an area in square metres, written in the user's format of its
    // unit class with the unit symbol.
    static QString _formatLength(double meters);
    static QString _formatArea(double squareMeters);
    // The tracker text on its translucent white background; an empty text stays empty.
    static QwtText _makeTrackerText(const QString& text);

    // The preferences that switch the labels of the drawing on.
    virtual bool _isSegmentLengthShown() const = 0;
    virtual bool _isAngleShown() const = 0;
    // The fewest vertices that measure something.
    virtual int _getMinimumVertexCount() const = 0;

    void begin() override;
    bool end(bool ok = true) override;
    void append(const QPoint& pos) override;
    // Hands listeners the measured polygon without repeated pixels, and only when it
    // has enough vertices.
    bool accept(QPolygon& selection) const override;

private:
    std::unique_ptr<class VwqPlotAMeasurePrivate> const _d;
};
