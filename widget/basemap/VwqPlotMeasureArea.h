#pragma once
// The area ruler of the map (mode "measure area"): a closed polygon whose area and
// perimeter follow the mouse while the user picks. The perimeter sums the edges in picking
// order and leaves out the closing edge.
// Mouse: a left click adds a vertex, moving drags the last one, a right click ends.
// Keys: Return adds a vertex at the cursor, Space ends, Escape abandons the measure.

#include <VwqPlotAMeasure.h>

class VELMORA_WIDGET_EXPORT VwqPlotMeasureArea : public VwqPlotAMeasure
{
    Q_OBJECT
public:
    explicit VwqPlotMeasureArea(QWidget* canvas);
    ~VwqPlotMeasureArea() override;

protected:
    // "Area : …" and "Perimeter : …" on two lines, each when its preference is on;
    // nothing before three vertices are picked.
    QwtText trackerTextF(const QPointF& pos) const override;

    bool _isSegmentLengthShown() const override;
    bool _isAngleShown() const override;
    int _getMinimumVertexCount() const override;
};
