#include "VwoCopyright.h"

#include <QFontMetricsF>
#include <QPainter>

namespace {

const int FONT_PIXELS = 10;
const double PADDING = 3.0;

} // namespace

class VwoCopyrightPrivate
{
public:
    QString text;
};

VwoCopyright::VwoCopyright(const QString& text)
    : VwoADecoration(tr("Attribution"))
    , _d(new VwoCopyrightPrivate)
{
    _d->text = text;
}

VwoCopyright::~VwoCopyright() = default;

int VwoCopyright::rtti() const
{
    return RTTI_COPYRIGHT;
}

void VwoCopyright::setText(const QString& text)
{
    if (_d->text == text)
        return;
    _d->text = text;
    itemChanged();
}

const QString& VwoCopyright::getText() const
{
    return _d->text;
}

void VwoCopyright::render(QPainter* painter, const QwtScaleMap&, const QwtScaleMap&, const QRectF& canvasRect) const
{
    if (_d->text.trimmed().isEmpty())
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing, testRenderHint(QwtPlotItem::RenderAntialiased));
    QFont font = painter->font();
    font.setPixelSize(FONT_PIXELS);
    painter->setFont(font);
    const int flags = Qt::AlignRight | Qt::AlignBottom;
    // Measured on the target device: a printer's or an SVG's metrics differ from the screen's.
    const QFontMetricsF metrics(font, painter->device());
    const double inset = MARGIN + PADDING;
    const QRectF area = canvasRect.adjusted(inset, inset, -inset, -inset);
    QRectF textRect = metrics.boundingRect(area, flags, _d->text);
    textRect &= area;
    const QRectF box = textRect.adjusted(-PADDING, -PADDING, PADDING, PADDING);

    painter->setPen(Qt::NoPen);
    painter->setBrush(QColor(255, 255, 255, 190));
    painter->drawRoundedRect(box, 2.0, 2.0);
    painter->setPen(QColor(40, 40, 40));
    painter->drawText(textRect, flags, _d->text);
    painter->restore();
}
