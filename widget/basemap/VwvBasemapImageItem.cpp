#include "VwvBasemapImageItem.h"

#include <KbbDebug.h>

#include <qwt_plot.h>

#include <QCoreApplication>
#include <QMutex>
#include <QPaintDevice>
#include <QPainter>
#include <QPointer>
#include <QThreadPool>

#include <cmath>

namespace {

// Enough of a scale map to tell whether a kept image still fits the view.
struct MapKey
{
    double s1 = 0.0, s2 = 0.0, p1 = 0.0, p2 = 0.0;

    explicit MapKey(const QwtScaleMap& map = QwtScaleMap())
        : s1(map.s1())
        , s2(map.s2())
        , p1(map.p1())
        , p2(map.p2())
    {
    }
    bool operator==(const MapKey& o) const { return s1 == o.s1 && s2 == o.s2 && p1 == o.p1 && p2 == o.p2; }
    bool operator!=(const MapKey& o) const { return !(*this == o); }

    // Where a pixel of the kept image lands now: new = old * scale + shift.
    bool pixelChange(const MapKey& now, double& scale, double& shift) const
    {
        const double keptPerUnit = (p2 - p1) / (s2 - s1);
        const double nowPerUnit = (now.p2 - now.p1) / (now.s2 - now.s1);
        scale = nowPerUnit / keptPerUnit;
        shift = now.p1 + (s1 - now.s1) * nowPerUnit - p1 * scale;
        return std::isfinite(scale) && std::isfinite(shift) && scale > 0.0;
    }
};

struct Kept
{
    QImage image;
    MapKey x;
    MapKey y;
    QPointF origin; // the canvas rectangle's top-left the image was drawn for
    // Drawn by an earlier renderer: shown while the new one draws, never taken as done.
    bool stale = false;
    // The drawing for these maps failed: not tried again until the view or renderer changes.
    bool failed = false;
};

// A renderer that fails (out of memory for the image, a damaged dataset) leaves a null
// image and says why; it may run on a worker thread, where nothing may escape.
QSize deviceSize(const QSize& size, qreal ratio)
{
    return QSize(int(std::ceil(size.width() * ratio)), int(std::ceil(size.height() * ratio)));
}

// The image is in device pixels (size times ratio) and says so, so that it is drawn back
// at its logical size, sharp on a high-DPI screen.
QImage renderImage(const VwvIBasemapRenderer& renderer, const QSize& size, qreal ratio, const QwtScaleMap& xMap,
                   const QwtScaleMap& yMap, const QPointF& origin, QString& error)
{
    try {
        QImage image(deviceSize(size, ratio), QImage::Format_ARGB32_Premultiplied);
        if (image.isNull())
            throw std::bad_alloc();
        image.fill(Qt::transparent);
        // The image starts at the canvas rectangle's corner, the maps at the canvas's.
        QwtScaleMap x = xMap;
        QwtScaleMap y = yMap;
        x.setPaintInterval((xMap.p1() - origin.x()) * ratio, (xMap.p2() - origin.x()) * ratio);
        y.setPaintInterval((yMap.p1() - origin.y()) * ratio, (yMap.p2() - origin.y()) * ratio);
        renderer.render(image, x, y, ratio);
        image.setDevicePixelRatio(ratio);
        return image;
    } catch (...) {
        error = KbbDebug::describeCurrentException();
        return QImage();
    }
}

} // namespace

// What the worker threads share with the item: they post their image here, and the
// item may be gone by then.
struct VwvBasemapImageItemShared
{
    QMutex mutex;
    bool alive = true;
    QObject* receiver = nullptr; // lives in the GUI thread, deleted with the item
    int latest = 0;              // the generation of the newest request
};

class VwvBasemapImageItemPrivate
{
public:
    std::shared_ptr<const VwvIBasemapRenderer> renderer;
    bool asynchronous = true;
    mutable Kept kept;
    mutable int pending = 0; // generation being drawn, 0 when none
    mutable MapKey pendingX, pendingY;
    mutable QString reportedError; // said once per renderer

    void report(const QwtPlotItem& item, const QString& error) const
    {
        if (error == reportedError)
            return;
        reportedError = error;
        KbbDebug::printWarning(QCoreApplication::translate("VwvBasemapImageItem", "Error while drawing layer '%1': %2")
                                   .arg(item.title().text(), error));
    }
    std::shared_ptr<VwvBasemapImageItemShared> shared = std::make_shared<VwvBasemapImageItemShared>();
};

VwvBasemapImageItem::VwvBasemapImageItem(const QString& title)
    : QwtPlotItem(QwtText(title))
    , _d(new VwvBasemapImageItemPrivate)
{
    setItemAttribute(QwtPlotItem::AutoScale, true);
    _d->shared->receiver = new QObject;
}

VwvBasemapImageItem::~VwvBasemapImageItem()
{
    QMutexLocker lock(&_d->shared->mutex);
    _d->shared->alive = false;
    // Posted images not yet delivered go with it.
    delete _d->shared->receiver;
    _d->shared->receiver = nullptr;
}

int VwvBasemapImageItem::rtti() const
{
    return QwtPlotItem::Rtti_PlotUserItem + 1;
}

std::shared_ptr<const VwvIBasemapRenderer> VwvBasemapImageItem::getRenderer() const
{
    return _d->renderer;
}

void VwvBasemapImageItem::setRenderer(std::shared_ptr<const VwvIBasemapRenderer> renderer)
{
    _d->renderer = std::move(renderer);
    // The old picture stands in until the new one is drawn (a new selection, new data).
    _d->kept.stale = true;
    _d->kept.failed = false;
    _d->reportedError.clear();
    _d->pending = 0;
    {
        QMutexLocker lock(&_d->shared->mutex);
        ++_d->shared->latest; // a drawing of the old renderer is not wanted any more
    }
    itemChanged();
}

void VwvBasemapImageItem::setAsynchronous(bool asynchronous)
{
    _d->asynchronous = asynchronous;
}

bool VwvBasemapImageItem::isAsynchronous() const
{
    return _d->asynchronous;
}

bool VwvBasemapImageItem::isRendering() const
{
    return _d->pending != 0;
}

QRectF VwvBasemapImageItem::boundingRect() const
{
    const QRectF bounds = _d->renderer ? _d->renderer->boundingRect() : QRectF();
    // Qwt reads a rectangle of negative size as "no extent" when it autoscales; a single
    // location (zero size) is an extent.
    if (bounds == QRectF() || bounds.width() < 0.0 || bounds.height() < 0.0)
        return QRectF(1.0, 1.0, -2.0, -2.0);
    return bounds;
}

void VwvBasemapImageItem::draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                               const QRectF& canvasRect) const
{
    if (!_d->renderer)
        return;
    const QSize size = canvasRect.toAlignedRect().size();
    // Exports and small drawings are made on the spot, at full quality.
    const QPaintDevice* paintDevice = painter->device();
    const int device = paintDevice ? paintDevice->devType() : 0;
    const bool onScreen = device == QInternal::Widget || device == QInternal::Pixmap;
    // On screen, as many device pixels as the screen has, so that the image lands one to
    // one on them; exports draw at 1.
    const qreal screenRatio = onScreen ? paintDevice->devicePixelRatioF() : 1.0;
    const qreal ratio = std::isfinite(screenRatio) ? qBound<qreal>(1.0, screenRatio, 8.0) : 1.0;
    if (size.isEmpty())
        return;
    const MapKey kx(xMap);
    const MapKey ky(yMap);
    Kept& kept = _d->kept;
    const bool fits = !kept.stale && kept.x == kx && kept.y == ky && kept.origin == canvasRect.topLeft()
        && (kept.failed || kept.image.size() == deviceSize(size, ratio));
    if (fits) {
        if (!kept.failed)
            painter->drawImage(canvasRect.topLeft(), kept.image);
        return;
    }

    if (!_d->asynchronous || !onScreen || _d->renderer->renderCost() < SYNCHRONOUS_COST) {
        QString error;
        const QImage image = renderImage(*_d->renderer, size, ratio, xMap, yMap, canvasRect.topLeft(), error);
        if (!error.isEmpty())
            _d->report(*this, error);
        else
            painter->drawImage(canvasRect.topLeft(), image);
        if (onScreen)
            kept = Kept{image, kx, ky, canvasRect.topLeft(), false, !error.isEmpty()};
        return;
    }

    // The kept image moved and scaled to the new view, until the new one is ready.
    double sx = 1.0, dx = 0.0, sy = 1.0, dy = 0.0;
    if (!kept.image.isNull() && !kept.failed && kept.x.pixelChange(kx, sx, dx) && kept.y.pixelChange(ky, sy, dy)) {
        painter->save();
        painter->setRenderHint(QPainter::SmoothPixmapTransform, false);
        painter->setTransform(QTransform(sx, 0, 0, sy, dx, dy), true);
        painter->drawImage(kept.origin, kept.image);
        painter->restore();
    }

    if (_d->pending && _d->pendingX == kx && _d->pendingY == ky)
        return; // that drawing is already on its way
    auto shared = _d->shared;
    int generation = 0;
    {
        QMutexLocker lock(&shared->mutex);
        generation = ++shared->latest;
    }
    _d->pending = generation;
    _d->pendingX = kx;
    _d->pendingY = ky;
    const std::shared_ptr<const VwvIBasemapRenderer> renderer = _d->renderer;
    const QPointF origin = canvasRect.topLeft();
    const VwvBasemapImageItem* item = this;
    QThreadPool::globalInstance()->start([shared, renderer, size, ratio, xMap, yMap, origin, generation, kx, ky, item] {
        QString error;
        QImage image = renderImage(*renderer, size, ratio, xMap, yMap, origin, error);
        QMutexLocker lock(&shared->mutex);
        if (!shared->alive || generation != shared->latest)
            return;
        // Delivered on the GUI thread; dropped with the receiver if the item goes first.
        QMetaObject::invokeMethod(
            shared->receiver,
            [shared, image, error, generation, kx, ky, origin, item] {
                {
                    QMutexLocker check(&shared->mutex);
                    if (!shared->alive || generation != shared->latest)
                        return;
                }
                if (!error.isEmpty())
                    item->_d->report(*item, error);
                item->_d->kept = Kept{image, kx, ky, origin, false, !error.isEmpty()};
                item->_d->pending = 0;
                if (QwtPlot* plot = item->plot())
                    plot->replot();
            },
            Qt::QueuedConnection);
    });
}
