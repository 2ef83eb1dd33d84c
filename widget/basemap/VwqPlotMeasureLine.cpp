#include "VwqPlotMeasureLine.h"

#include <KbuUnit.h>
#include <VupMapPreferences.h>

#include <qwt_text.h>

#include <QStringList>
#include <cmath>

namespace {
const double DEGREES_PER_RADIAN = 180.0 / 3.14159265358979323846;
}

VwqPlotMeasureLine::VwqPlotMeasureLine(QWidget* canvas)
    : VwqPlotAMeasure(Vw::MEASURE_LENGTH, false, canvas)
{
}

VwqPlotMeasureLine::~VwqPlotMeasureLine() = default;

QwtText VwqPlotMeasureLine::trackerTextF(const QPointF&) const
{
    if (!isActive())
        return QwtText();
    const QVector<QPointF> vertices = _getVerticesInMeter();
    const int n = vertices.size();
    if (n < 2)
        return QwtText();

    QStringList lines;
    const double total = _calculateTotalLengthInMeter();
    if (VupMapPreferences::isLineRulerTotalLengthEnabled() && total > 0.0)
        lines << tr("Total Length : ") + _formatLength(total);
    // A last segment of no length has no direction.
    const QPointF d = vertices[n - 1] - vertices[n - 2];
    if (VupMapPreferences::isLineRulerAzimuthEnabled() && !d.isNull()) {
        // Clockwise from north, where the plot's angles run counter-clockwise from east.
        double azimuth = 90.0 - std::atan2(d.y(), d.x()) * DEGREES_PER_RADIAN;
        if (azimuth < 0.0)
            azimuth += 360.0;
        lines << tr("Azimuth : ")
                + QStringLiteral("%1 %2")
                      .arg(azimuth, 0, 'f', 2)
                      .arg(KbuUnit::fromKey(QStringLiteral("deg")).getSymbol());
    }
    return _makeTrackerText(lines.join(QLatin1Char('\n')));
}

bool VwqPlotMeasureLine::_isSegmentLengthShown() const
{
    return VupMapPreferences::isLineRulerLengthEnabled();
}

bool VwqPlotMeasureLine::_isAngleShown() const
{
    return VupMapPreferences::isLineRulerAngleEnabled();
}

int VwqPlotMeasureLine::_getMinimumVertexCount() const
{
    return 2;
}
