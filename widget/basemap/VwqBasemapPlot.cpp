#include "VwqBasemapPlot.h"

#include "VwqPlotMagnifier.h"
#include "VwqPlotMeasureArea.h"
#include "VwqPlotMeasureLine.h"
#include "VwqPlotPanner.h"
#include "VwqPlotRescaler.h"
#include "VwqPlotTracker.h"
#include "VwqPlotZoomer.h"

#include <KbcAlgorithm.h>
#include <KbuUnit.h>
#include <VupMapPreferences.h>
#include <VupPreferenceRegistry.h>

#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_draw.h>
#include <qwt_scale_widget.h>
#include <qwt_text_engine.h>

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QDesktopWidget>
#include <QMutex>
#include <QPainter>
#include <QTextDocument>
#include <QTextFrame>

#include <cmath>
#include <list>
#include <memory>

namespace {

// Tick labels less the axis offset, so that 6543210 reads 10 beside an axis titled
// "(+6543200)".
class OffsetScaleDraw : public QwtScaleDraw
{
public:
    double offset = 0.0;

    void setOffset(double value)
    {
        offset = value;
        // The labels are cached; a new offset needs new ones.
        invalidateCache();
    }

    QwtText label(double value) const override
    {
        return QwtText(QLocale::system().toString(value - offset, 'g', 6));
    }
};

// Qt rich text as Qwt's own engine draws it, with each text's layout kept: Qwt's engine
// builds and lays out a text document at every size query and every paint, which costs
// milliseconds per pan step for the four axis titles. A layout is kept until its text,
// flags or font change; the few most recently used are kept.
class KeptRichTextEngine : public QwtRichTextEngine
{
public:
    // The format the axis titles are given; the engine is registered with Qwt once.
    static QwtText::TextFormat format()
    {
        static const QwtText::TextFormat registered = [] {
            // Qwt leaves the formats above OtherFormat to applications; the enum's values
            // only reach 127, so the id stays below that.
            const auto id = QwtText::TextFormat(QwtText::OtherFormat + 17);
            QwtText::setTextEngine(id, new KeptRichTextEngine);
            return id;
        }();
        return registered;
    }

    double heightForWidth(const QFont& font, int flags, const QString& text, double width) const override
    {
        QMutexLocker lock(&_mutex);
        Layout& layout = _find(text, flags, font);
        for (const auto& known : layout.heights)
            if (known.first == width)
                return known.second;
        const double height = QwtRichTextEngine::heightForWidth(font, flags, text, width);
        layout.heights.emplace_back(width, height);
        return height;
    }

    QSizeF textSize(const QFont& font, int flags, const QString& text) const override
    {
        QMutexLocker lock(&_mutex);
        Layout& layout = _find(text, flags, font);
        if (!layout.size.isValid())
            layout.size = QwtRichTextEngine::textSize(font, flags, text);
        return layout.size;
    }

    void draw(QPainter* painter, const QRectF& rect, int flags, const QString& text) const override
    {
        // A device of another resolution than the screen (a printer, an SVG file) has the
        // font scaled for it by Qwt's own path; drawings for it are rare and not kept.
        const QPaintDevice* device = painter->device();
        if (painter->font().pixelSize() < 0 && device) {
            const QWidget* screen = QApplication::desktop();
            if (!screen || device->logicalDpiX() != screen->logicalDpiX()
                || device->logicalDpiY() != screen->logicalDpiY()) {
                QwtRichTextEngine::draw(painter, rect, flags, text);
                return;
            }
        }
        QMutexLocker lock(&_mutex);
        QTextDocument& document = _document(_find(text, flags, painter->font()));
        if (document.pageSize().width() != rect.width())
            document.setPageSize(QSizeF(rect.width(), QWIDGETSIZE_MAX));
        QAbstractTextDocumentLayout* layout = document.documentLayout();
        const double height = layout->documentSize().height();
        double y = rect.y();
        if (flags & Qt::AlignBottom)
            y += rect.height() - height;
        else if (flags & Qt::AlignVCenter)
            y += (rect.height() - height) / 2;
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, painter->pen().color());
        painter->save();
        painter->translate(rect.x(), y);
        layout->draw(painter, context);
        painter->restore();
    }

private:
    static constexpr size_t KEPT = 16;

    struct Layout
    {
        QString text;
        int flags = 0;
        QFont font;
        QSizeF size;
        std::vector<std::pair<double, double>> heights; // width -> height
        std::unique_ptr<QTextDocument> document;
    };

    Layout& _find(const QString& text, int flags, const QFont& font) const
    {
        for (auto it = _layouts.begin(); it != _layouts.end(); ++it)
            if (it->flags == flags && it->text == text && it->font == font) {
                _layouts.splice(_layouts.begin(), _layouts, it);
                return _layouts.front();
            }
        if (_layouts.size() >= KEPT)
            _layouts.pop_back();
        _layouts.push_front(Layout{text, flags, font, QSizeF(), {}, nullptr});
        return _layouts.front();
    }

    // The document as Qwt's engine sets it up: the text's font, wrapping and alignment from
    // the flags, and no margin around the root frame.
    static QTextDocument& _document(Layout& layout)
    {
        if (layout.document)
            return *layout.document;
        layout.document = std::make_unique<QTextDocument>();
        QTextDocument& document = *layout.document;
        document.setUndoRedoEnabled(false);
        document.setDefaultFont(layout.font);
        document.setHtml(layout.text);
        QTextOption option = document.defaultTextOption();
        option.setWrapMode(layout.flags & Qt::TextWordWrap ? QTextOption::WordWrap : QTextOption::NoWrap);
        option.setAlignment(Qt::Alignment(layout.flags));
        document.setDefaultTextOption(option);
        QTextFrame* root = document.rootFrame();
        QTextFrameFormat frame = root->frameFormat();
        frame.setBorder(0);
        frame.setMargin(0);
        frame.setPadding(0);
        frame.setBottomMargin(0);
        frame.setLeftMargin(0);
        root->setFrameFormat(frame);
        return document;
    }

    mutable QMutex _mutex;
    mutable std::list<Layout> _layouts;
};

bool isVertical(int axisId)
{
    return axisId == QwtPlot::yLeft || axisId == QwtPlot::yRight;
}

} // namespace

class VwqBasemapPlotPrivate
{
public:
    VwqPlotRescaler* rescaler = nullptr;
    VwqPlotPanner* panner = nullptr;
    VwqPlotMagnifier* magnifier = nullptr;
    VwqPlotZoomer* zoomer = nullptr;
    VwqPlotMeasureLine* lengthSurveyor = nullptr;
    VwqPlotMeasureArea* areaSurveyor = nullptr;
    VwqPlotTracker* tracker = nullptr;
    QwtPlotGrid* grid = nullptr;
    OffsetScaleDraw* scaleDraws[QwtPlot::axisCnt] = {};
    Vw::ViewMode mode = Vw::NO_MODE;
    // What updatePlotAxes() was last given; the titles are rebuilt when an offset changes.
    QString axisTitle;
    QString axisUnit;
    QString axisSubtitle;
    QRectF announcedView;
    // Our own preference writes, which must not come back as changes to apply.
    bool writingPreferences = false;
};

VwqBasemapPlot::VwqBasemapPlot(QWidget* parent)
    : QwtPlot(parent)
    , _d(new VwqBasemapPlotPrivate)
{
    setObjectName(QStringLiteral("BasemapPlot"));
    auto* canvas = new QwtPlotCanvas;
    canvas->setObjectName(QStringLiteral("basemapCanvas"));
    canvas->setFrameStyle(QFrame::Box | QFrame::Sunken);
    canvas->setLineWidth(1);
    canvas->setAutoFillBackground(true);
    canvas->setFocusPolicy(Qt::StrongFocus);
    setCanvas(canvas);

    _d->rescaler = new VwqPlotRescaler(canvas);
    _d->panner = new VwqPlotPanner(canvas);
    _d->magnifier = new VwqPlotMagnifier(canvas);
    _d->zoomer = new VwqPlotZoomer(canvas);
    _d->zoomer->setRescaler(_d->rescaler);
    _d->zoomer->setFactor(0.1);
    _d->zoomer->setMaxStackDepth(100);
    _d->zoomer->setRubberBandPen(QColor(Qt::darkBlue));
    _d->lengthSurveyor = new VwqPlotMeasureLine(canvas);
    _d->areaSurveyor = new VwqPlotMeasureArea(canvas);
    _d->tracker = new VwqPlotTracker(canvas);
    _d->grid = new QwtPlotGrid;
    _d->grid->attach(this);

    plotLayout()->setAlignCanvasToScales(true);
    // The plot paints its own background beside the axes, whatever its parent draws.
    setAutoFillBackground(true);
    setAutoReplot(false);
    setTitle(QString());
    for (int axis = 0; axis < axisCnt; ++axis) {
        setAxisMaxMajor(axis, 5);
        setAxisMaxMinor(axis, 4);
        _d->scaleDraws[axis] = new OffsetScaleDraw;
        setAxisScaleDraw(axis, _d->scaleDraws[axis]);
    }

    connect(_d->panner, &QwtPanner::moved, this, &VwqBasemapPlot::_viewMovedByTool);
    connect(_d->panner, &QwtPanner::panned, this, &VwqBasemapPlot::_viewMovedByTool);
    connect(_d->magnifier, &VwqPlotMagnifier::rescaled, this, &VwqBasemapPlot::_viewMovedByTool);
    for (VwqPlotAMeasure* surveyor : {static_cast<VwqPlotAMeasure*>(_d->lengthSurveyor),
                                      static_cast<VwqPlotAMeasure*>(_d->areaSurveyor)}) {
        connect(surveyor, &VwqPlotAMeasure::startPicking, _d->magnifier, &VwqPlotMagnifier::disable);
        connect(surveyor, &VwqPlotAMeasure::stopPicking, _d->magnifier, &VwqPlotMagnifier::enable);
    }
    connect(_d->tracker, &VwqPlotTracker::newTrackerPosition, this, &VwqBasemapPlot::newTrackerPosition);
    // A pan along one axis changes only that axis: both are watched, the view announced once.
    for (int axis : {int(xBottom), int(yLeft)})
        connect(axisWidget(axis), &QwtScaleWidget::scaleDivChanged, this, [this, axis] {
            // The zoomer moves the bottom and left axes only; the top and right ones mirror
            // them (Qwt lays the axes out in id order, so the mirror is taken in this pass).
            const int mirror = axis == xBottom ? xTop : yRight;
            if (axisScaleDiv(mirror) != axisScaleDiv(axis))
                setAxisScaleDiv(mirror, axisScaleDiv(axis));
            const QRectF rect = currentViewRect();
            if (rect == _d->announcedView)
                return;
            _d->announcedView = rect;
            _updateAxisLabels(false);
            emit currentViewChanged(rect);
        });
    connect(VupPreferenceRegistry::getInstance(), &VupPreferenceRegistry::prefChanged, this,
            &VwqBasemapPlot::_preferenceChanged);
    _updateStyles();
}

VwqBasemapPlot::~VwqBasemapPlot() = default;

VwqPlotZoomer* VwqBasemapPlot::zoomer() const { return _d->zoomer; }
VwqPlotMagnifier* VwqBasemapPlot::magnifier() const { return _d->magnifier; }
VwqPlotPanner* VwqBasemapPlot::panner() const { return _d->panner; }
VwqPlotMeasureLine* VwqBasemapPlot::lengthSurveyor() const { return _d->lengthSurveyor; }
VwqPlotMeasureArea* VwqBasemapPlot::areaSurveyor() const { return _d->areaSurveyor; }
VwqPlotTracker* VwqBasemapPlot::tracker() const { return _d->tracker; }
VwqPlotRescaler* VwqBasemapPlot::rescaler() const { return _d->rescaler; }
QwtPlotGrid* VwqBasemapPlot::grid() const { return _d->grid; }

void VwqBasemapPlot::addPlotItem(QwtPlotItem* item)
{
    if (!item)
        return;
    item->attach(this);
    item->setAxes(xBottom, yLeft);
    item->setItemAttribute(QwtPlotItem::AutoScale, true);
    item->setRenderHint(QwtPlotItem::RenderAntialiased, false);
}

QwtScaleMap VwqBasemapPlot::canvasMap(int axisId) const
{
    QwtScaleMap map;
    if (axisId < 0 || axisId >= axisCnt)
        return map;
    map.setTransformation(axisScaleEngine(axisId)->transformation());
    const QwtScaleDiv& div = axisScaleDiv(axisId);
    map.setScaleInterval(div.lowerBound(), div.upperBound());
    const QWidget* canvas = this->canvas();
    if (isVertical(axisId))
        map.setPaintInterval(canvas ? canvas->height() : 0, 0);
    else
        map.setPaintInterval(0, canvas ? canvas->width() : 0);
    return map;
}

QRectF VwqBasemapPlot::currentViewRect() const
{
    const QwtScaleDiv& x = axisScaleDiv(xBottom);
    const QwtScaleDiv& y = axisScaleDiv(yLeft);
    return QRectF(x.lowerBound(), y.lowerBound(), x.range(), y.range());
}

QPointF VwqBasemapPlot::viewToPixel(const QPointF& point) const
{
    return QPointF(canvasMap(xBottom).transform(point.x()), canvasMap(yLeft).transform(point.y()));
}

QPointF VwqBasemapPlot::pixelToView(const QPointF& pixel) const
{
    return QPointF(canvasMap(xBottom).invTransform(pixel.x()), canvasMap(yLeft).invTransform(pixel.y()));
}

QRectF VwqBasemapPlot::viewToPixel(const QRectF& rect) const
{
    return QRectF(viewToPixel(rect.topLeft()), viewToPixel(rect.bottomRight())).normalized();
}

QRectF VwqBasemapPlot::pixelToView(const QRectF& rect) const
{
    return QRectF(pixelToView(rect.topLeft()), pixelToView(rect.bottomRight())).normalized();
}

double VwqBasemapPlot::getFactorPixelToSize() const
{
    const QwtScaleMap map = canvasMap(xBottom);
    return map.pDist() > 0.0 ? map.sDist() / map.pDist() : 0.0;
}

double VwqBasemapPlot::getFactorSizeToPixel() const
{
    const QwtScaleMap map = canvasMap(xBottom);
    return map.sDist() > 0.0 ? map.pDist() / map.sDist() : 0.0;
}

int VwqBasemapPlot::getAxisMargin(int axisId) const
{
    if (axisId < 0 || axisId >= axisCnt || !axisEnabled(axisId))
        return 0;
    const QSize size = axisWidget(axisId)->sizeHint();
    return isVertical(axisId) ? size.width() : size.height();
}

double VwqBasemapPlot::getAxisOffset(int axisId) const
{
    return axisId >= 0 && axisId < axisCnt ? _d->scaleDraws[axisId]->offset : 0.0;
}

void VwqBasemapPlot::updatePlotAxes(const QRectF& rect, const QString& title, const KbuUnit& unit,
                                    const QString& subtitle)
{
    _d->axisTitle = title;
    _d->axisUnit = unit.getSymbol();
    _d->axisSubtitle = subtitle;
    const bool visible = VupMapPreferences::isAxesVisible();
    for (int axis = 0; axis < axisCnt; ++axis)
        enableAxis(axis, visible);
    if (rect.isValid() && std::isfinite(rect.width()) && std::isfinite(rect.height())) {
        setAxisScale(xBottom, rect.left(), rect.right());
        setAxisScale(xTop, rect.left(), rect.right());
        setAxisScale(yLeft, rect.top(), rect.bottom());
        setAxisScale(yRight, rect.top(), rect.bottom());
    }
    // Vertical axes as wide as their widest label can be (the offset keeps labels to six
    // digits), so that the canvas, and with it the scale, does not change as the labels do.
    const QString widest = QLocale::system().toString(-8888888.0, 'g', 7);
    for (int axis : {int(yLeft), int(yRight)}) {
        QwtScaleDraw* draw = _d->scaleDraws[axis];
        const double extent = draw->maxTickLength() + draw->spacing() + draw->penWidth()
            + QFontMetricsF(axisWidget(axis)->font()).horizontalAdvance(widest);
        draw->setMinimumExtent(extent);
    }
    _updateAxisLabels(true);
    replot();
}

void VwqBasemapPlot::_updateAxisLabels(bool titlesChanged)
{
    // Called again whenever the view moves: the offsets follow the shown interval.
    const QRectF rect = currentViewRect();
    const double offsets[2] = {KbcAlgorithm::getRoundedOffsetFromInterval(6, rect.left(), rect.right()),
                               KbcAlgorithm::getRoundedOffsetFromInterval(6, rect.top(), rect.bottom())};
    for (int axis = 0; axis < axisCnt; ++axis) {
        const double offset = offsets[isVertical(axis) ? 1 : 0];
        if (_d->scaleDraws[axis]->offset == offset && !titlesChanged)
            continue;
        if (_d->scaleDraws[axis]->offset != offset) {
            _d->scaleDraws[axis]->setOffset(offset);
            axisWidget(axis)->update();
        }
        // Rich text, laid out once per text by the kept engine rather than at every replot.
        QString text = _d->axisTitle.toHtmlEscaped();
        if (!_d->axisUnit.isEmpty())
            text += QStringLiteral("&nbsp;[%1]").arg(_d->axisUnit.toHtmlEscaped());
        if (offset > 0.0)
            text += QStringLiteral("&nbsp;(+%1)").arg(offset, 0, 'g', 12);
        else if (offset < 0.0)
            text += QStringLiteral("&nbsp;(%1)").arg(offset, 0, 'g', 12);
        if (!_d->axisSubtitle.isEmpty())
            text += QStringLiteral("&nbsp;&nbsp;&nbsp;<small><i>%1</i></small>").arg(_d->axisSubtitle.toHtmlEscaped());
        setAxisTitle(axis, QwtText(text, KeptRichTextEngine::format()));
    }
}

Vw::ViewMode VwqBasemapPlot::getMode() const
{
    return _d->mode;
}

void VwqBasemapPlot::setMode(Vw::ViewMode mode)
{
    _d->mode = mode;
    _d->panner->setMode(mode);
    _d->zoomer->setMode(mode);
    _d->lengthSurveyor->setMode(mode);
    _d->areaSurveyor->setMode(mode);
}

void VwqBasemapPlot::setGridVisible(bool visible)
{
    _d->grid->setVisible(visible);
    _d->writingPreferences = true;
    VupMapPreferences::setValue(QStringLiteral("gridVisible"), visible);
    _d->writingPreferences = false;
    replot();
}

void VwqBasemapPlot::_viewMovedByTool()
{
    // The view a pan or a wheel zoom leaves is a zoom like the others: it goes onto the
    // stack, and is announced as the zoomer announces its own zooms.
    const QRectF rect = currentViewRect();
    _d->zoomer->zoom(rect);
    emit _d->zoomer->zoomed(rect);
}

void VwqBasemapPlot::_preferenceChanged(const VupPreferenceModif& modif)
{
    if (!_d->writingPreferences && modif.concerns(VupMapPreferences::GROUP))
        _updateStyles();
}

void VwqBasemapPlot::_updateStyles()
{
    QPalette palette = canvas()->palette();
    palette.setColor(QPalette::Window, VupMapPreferences::getBackgroundColor());
    canvas()->setPalette(palette);

    _d->grid->setVisible(VupMapPreferences::isGridVisible());
    _d->grid->setMajorPen(VupMapPreferences::getGridColor(), 0.0, VupMapPreferences::getGridStyle());
    _d->grid->setMinorPen(VupMapPreferences::getSubGridColor(), 0.0, VupMapPreferences::getSubGridStyle());
    const bool subGrid = VupMapPreferences::isSubGridVisible();
    _d->grid->enableXMin(subGrid);
    _d->grid->enableYMin(subGrid);
    // Under the layers, or over them where it is easier to read coordinates off.
    _d->grid->setZ(VupMapPreferences::isGridInBackground() ? 0.0 : 10000.0);
    _d->magnifier->setNaturalDirection(!VupMapPreferences::isZoomWheelInverted());
    replot();
}
