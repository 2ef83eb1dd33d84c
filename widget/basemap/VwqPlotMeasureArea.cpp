#include "VwqPlotMeasureArea.h"

#include <KbgGeometry.h>
#include <VupMapPreferences.h>

#include <qwt_text.h>

#include <QStringList>

VwqPlotMeasureArea::VwqPlotMeasureArea(QWidget* canvas)
    : VwqPlotAMeasure(Vw::MEASURE_AREA, true, canvas)
{
}

VwqPlotMeasureArea::~VwqPlotMeasureArea() = default;

QwtText VwqPlotMeasureArea::trackerTextF(const QPointF&) const
{
    if (!isActive())
        return QwtText();
    const QVector<QPointF> vertices = _getVerticesInMeter();
    if (vertices.size() < 3)
        return QwtText();

    QStringList lines;
    if (VupMapPreferences::isAreaRulerAreaEnabled())
        lines << tr("Area : ") + _formatArea(KbgGeometry::contourArea(vertices));
    if (VupMapPreferences::isAreaRulerPerimeterEnabled())
        lines << tr("Perimeter : ") + _formatLength(_calculateTotalLengthInMeter());
    return _makeTrackerText(lines.join(QLatin1Char('\n')));
}

bool VwqPlotMeasureArea::_isSegmentLengthShown() const
{
    return VupMapPreferences::isAreaRulerLengthEnabled();
}

bool VwqPlotMeasureArea::_isAngleShown() const
{
    return VupMapPreferences::isAreaRulerAngleEnabled();
}

int VwqPlotMeasureArea::_getMinimumVertexCount() const
{
    return 3;
}
