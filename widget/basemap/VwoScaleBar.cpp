#include "VwoScaleBar.h"

#include <KbcAlgorithm.h>

#include <qwt_scale_map.h>

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

const int SEGMENTS = 4;
const double BAR_HEIGHT = 6.0;
const int FONT_PIXELS = 11;
const double PADDING = 3.0;
const double SPACING = 2.0;

} // namespace

class VwoScaleBarPrivate
{
public:
    KbuUnit unit;
};

VwoScaleBar::VwoScaleBar(const KbuUnit& unit)
    : VwoADecoration(tr("Scale bar"))
    , _d(new VwoScaleBarPrivate)
{
    _d->unit = unit;
}

VwoScaleBar::~VwoScaleBar() = default;

int VwoScaleBar::rtti() const
{
    return RTTI_SCALE_BAR;
}

void VwoScaleBar::setUnit(const KbuUnit& unit)
{
    if (_d->unit == unit)
        return;
    _d->unit = unit;
    itemChanged();
}

const KbuUnit& VwoScaleBar::getUnit() const
{
    return _d->unit;
}

double VwoScaleBar::getLength(double mapUnitsPerPixel, double canvasWidth)
{
    if (!(mapUnitsPerPixel > 0.0) || !std::isfinite(mapUnitsPerPixel) || !std::isfinite(canvasWidth))
        return 0.0;
    const double pixels = std::max(canvasWidth / 5.0, MIN_PIXELS);
    if (pixels > canvasWidth - 2.0 * MARGIN)
        return 0.0;
    const double length = pixels * mapUnitsPerPixel;
    return std::isfinite(length) ? KbcAlgorithm::roundToNiceNumber(length) : 0.0;
}

QString VwoScaleBar::getLabel(double length) const
{
    if (!(length > 0.0) || !std::isfinite(length))
        return QString();
    QString symbol = _d->unit.getSymbol();
    if (_d->unit.getKey() == QLatin1String("m") && length >= 1000.0) {
        length /= 1000.0;
        symbol = KbuUnit::fromKey(QStringLiteral("km")).getSymbol();
    }
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const QString number = locale.toString(length, 'g', 6);
    if (symbol.isEmpty())
        return number;
    // A degree sign sits against its number; other symbols after a space.
    if (symbol == QStringLiteral("\u00B0"))
        return number + symbol;
    return tr("%1 %2", "length and unit of the scale bar").arg(number, symbol);
}

void VwoScaleBar::render(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap&, const QRectF& canvasRect) const
{
    const double unitsPerPixel = xMap.pDist() != 0.0 ? std::fabs(xMap.sDist() / xMap.pDist()) : 0.0;
    const double length = getLength(unitsPerPixel, canvasRect.width());
    if (length <= 0.0)
        return;
    const double barPixels = length / unitsPerPixel;
    const QString label = getLabel(length);

    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, testRenderHint(QwtPlotItem::RenderAntialiased));
    QFont font = painter->font();
    font.setPixelSize(FONT_PIXELS);
    painter->setFont(font);
    const QFontMetricsF metrics(font, painter->device());
    const QSizeF labelSize = metrics.size(Qt::TextSingleLine, label);

    // Bar and label on one light box, bottom-left, the label centred over the bar.
    const double left = canvasRect.left() + MARGIN + PADDING;
    const double bottom = canvasRect.bottom() - MARGIN - PADDING;
    const QRectF bar(left, bottom - BAR_HEIGHT, barPixels, BAR_HEIGHT);
    const QRectF labelRect(QPointF(std::max(left, bar.center().x() - labelSize.width() / 2.0),
                                   bar.top() - SPACING - labelSize.height()),
                           labelSize);
    const QRectF box = bar.united(labelRect).adjusted(-PADDING, -PADDING, PADDING, PADDING);

    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(255, 255, 255, 190));
    painter->drawRoundedRect(box, 2.0, 2.0);

    // Black under all, white segments inside a one-pixel black outline: crisp edges at
    // any length without a stroke straddling pixels.
    painter->setBrush(Qt::black);
    painter->drawRect(bar);
    painter->setBrush(Qt::white);
    const QRectF inner = bar.adjusted(1.0, 1.0, -1.0, -1.0);
    const double segment = barPixels / SEGMENTS;
    for (int i = 1; i < SEGMENTS; i += 2)
        painter->drawRect(QRectF(bar.left() + i * segment, inner.top(), segment, inner.height()) & inner);

    painter->setPen(Qt::black);
    painter->drawText(labelRect, Qt::AlignCenter, label);
    painter->restore();
}
