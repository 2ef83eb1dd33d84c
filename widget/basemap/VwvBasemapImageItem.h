#pragma once
// The plot item of one map layer: its renderer draws into an image, which the item keeps.
// When the view moves or zooms, the kept image is shown moved or scaled at once, and the
// full drawing is made again on a worker thread; the plot is replotted when it is ready.
// Small drawings, and drawings for printing or export, are made on the spot.

#include <velmora_widget_export.h>

#include <VwvIBasemapRenderer.h>

#include <qwt_plot_item.h>

#include <memory>

class VELMORA_WIDGET_EXPORT VwvBasemapImageItem : public QwtPlotItem
{
public:
    // Drawings of fewer marks than this are made on the GUI thread, within one frame.
    static constexpr qint64 SYNCHRONOUS_COST = 300000;

    explicit VwvBasemapImageItem(const QString& title = QString());
    ~VwvBasemapImageItem() override;

    int rtti() const override;

    std::shared_ptr<const VwvIBasemapRenderer> getRenderer() const;
    // The kept image stands in until the new renderer's drawing is ready. A renderer that
    // fails is reported once ("Error while drawing layer '%1': %2") and draws nothing.
    void setRenderer(std::shared_ptr<const VwvIBasemapRenderer> renderer);

    // Off, every drawing is made on the spot (tests, exports).
    void setAsynchronous(bool asynchronous);
    bool isAsynchronous() const;
    // True while a drawing is being made on a worker thread.
    bool isRendering() const;

    QRectF boundingRect() const override;
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvasRect) const override;

private:
    std::unique_ptr<class VwvBasemapImageItemPrivate> const _d;
};
