#pragma once
// The length ruler of the map (mode "measure length"): an open polyline whose total length
// and the azimuth of its last segment follow the mouse while the user picks.
// Mouse: a left click adds a vertex, moving drags the last one, a right click ends.
// Keys: Return adds a vertex at the cursor, Space ends, Escape abandons the measure.

#include <VwqPlotAMeasure.h>

class VELMORA_WIDGET_EXPORT VwqPlotMeasureLine : public VwqPlotAMeasure
{
    Q_OBJECT
public:
    explicit VwqPlotMeasureLine(QWidget* canvas);
    ~VwqPlotMeasureLine() override;

protected:
    // "Total Length : …" and "Azimuth : …" on two lines, each when its preference is on;
    // nothing before two vertices are picked.
    QwtText trackerTextF(const QPointF& pos) const override;

    bool _isSegmentLengthShown() const override;
    bool _isAngleShown() const override;
    int _getMinimumVertexCount() const override;
};
