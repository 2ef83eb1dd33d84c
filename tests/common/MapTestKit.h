#pragma once
// What the map suites share: a shown map plot over a given view, a bare plot for a tool
// alone, a small image with the scale maps that show 0..100 map units on 100 x 100
// pixels, the user's mouse gestures on a widget (a drag gives its button on every move, as
// a window system does), rectangles compared and described with a tolerance, and pictures:
// a plot rendered as an export renders it, where two pictures differ, the drawn pixels.

#include "ImageChecks.h"
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>

#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>
#include <QtTest>
#include <cmath>
#include <memory>
#include <qwt_plot_canvas.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_map.h>

namespace MapTest {

// A map plot shown with a canvas of `canvas` pixels (axes hidden) over `view` map units.
inline std::unique_ptr<VwqBasemapPlot> showPlot(const QRectF& view, const QSize& canvas = QSize(400, 400))
{
    auto plot = std::make_unique<VwqBasemapPlot>();
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plot->enableAxis(axis, false);
    plot->canvas()->setFixedSize(canvas);
    plot->show();
    if (!QTest::qWaitForWindowExposed(plot.get()))
        return nullptr;
    plot->zoomer()->resetZoom(view);
    return plot;
}

// A bare Qwt plot for a tool alone: a frameless, white 600 x 400 canvas without axes,
// shown and active (a warning when the window system does not activate it), whose pixel
// (x, y) is the map point (x, 399 - y).
inline std::unique_ptr<QwtPlot> barePlot()
{
    auto plot = std::make_unique<QwtPlot>();
    auto* canvas = new QwtPlotCanvas;
    canvas->setFrameStyle(QFrame::NoFrame);
    canvas->setFocusPolicy(Qt::StrongFocus);
    plot->setCanvas(canvas);
    for (int axis = 0; axis < QwtPlot::axisCnt; ++axis)
        plot->enableAxis(axis, false);
    plot->plotLayout()->setCanvasMargin(0);
    plot->plotLayout()->setAlignCanvasToScales(true);
    plot->setContentsMargins(0, 0, 0, 0);
    plot->setCanvasBackground(Qt::white);
    plot->resize(600, 400);
    plot->show();
    plot->activateWindow();
    if (!QTest::qWaitForWindowActive(plot.get()))
        qWarning("MapTest::barePlot: the plot was not activated");
    plot->updateLayout();
    plot->setAxisScale(QwtPlot::xBottom, 0, canvas->width() - 1);
    plot->setAxisScale(QwtPlot::yLeft, 0, canvas->height() - 1);
    plot->replot();
    canvas->setFocus();
    return plot;
}

// 100 x 100 pixels showing 0..100 by 0..100 map units, y up: pixel (px, py) shows the map
// point (px + 0.5, 99.5 - py).
struct Canvas
{
    QImage image;
    QwtScaleMap xMap;
    QwtScaleMap yMap;

    explicit Canvas(QImage::Format format = QImage::Format_ARGB32_Premultiplied, const QColor& fill = Qt::transparent)
        : image(100, 100, format)
    {
        image.fill(fill);
        xMap.setScaleInterval(0, 100);
        xMap.setPaintInterval(0, 100);
        yMap.setScaleInterval(0, 100);
        yMap.setPaintInterval(100, 0);
    }
    // The pixel that shows a map point; not premultiplied, whatever the format.
    QRgb at(const QPointF& map) const
    {
        return image.pixelColor(int(map.x()), std::min(99, int(100 - map.y()))).rgba();
    }
};

inline void moveMouse(QWidget* widget, const QPoint& at, Qt::MouseButtons buttons = Qt::NoButton)
{
    QMouseEvent move(QEvent::MouseMove, at, widget->mapToGlobal(at), Qt::NoButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
}

inline void drag(QWidget* widget, const QPoint& from, const QPoint& to)
{
    QTest::mousePress(widget, Qt::LeftButton, Qt::NoModifier, from);
    moveMouse(widget, (from + to) / 2, Qt::LeftButton);
    moveMouse(widget, to, Qt::LeftButton);
    QTest::mouseRelease(widget, Qt::LeftButton, Qt::NoModifier, to);
}

inline void wheel(QWidget* widget, const QPoint& at, int delta)
{
    QWheelEvent event(at, widget->mapToGlobal(at), QPoint(), QPoint(0, delta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

inline bool near(const QPointF& a, const QPointF& b, double tolerance)
{
    return std::fabs(a.x() - b.x()) <= tolerance && std::fabs(a.y() - b.y()) <= tolerance;
}

inline bool near(const QRectF& a, const QRectF& b, double tolerance = 1e-6)
{
    return near(a.topLeft(), b.topLeft(), tolerance) && near(a.bottomRight(), b.bottomRight(), tolerance);
}

// For QVERIFY2's message; valid until the next call.
inline const char* describe(const QRectF& r)
{
    static QByteArray text;
    text = QStringLiteral("(%1, %2, %3 x %4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height()).toUtf8();
    return text.constData();
}

// As the view makes its pixmaps: the whole plot, on white, into an image `scale` times its size.
inline QImage rendered(QwtPlot& plot, double scale = 1.0)
{
    QImage image((QSizeF(plot.size()) * scale).toSize(), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(scale, scale);
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardCanvasFrame);
    renderer.render(&plot, &painter, QRectF(QPointF(0, 0), QSizeF(plot.size())));
    return image;
}

// The bounds of the pixels whose colours differ by more than the tolerance; empty when none do.
inline QRect changedArea(const QImage& a, const QImage& b, int tolerance = ImageChecks::kTolerance)
{
    QRect area;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x)
            if (!ImageChecks::near(a.pixel(x, y), b.pixel(x, y), tolerance))
                area |= QRect(x, y, 1, 1);
    return area;
}

// How many pixels are not wholly transparent.
inline int opaque(const QImage& image)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            n += qAlpha(image.pixel(x, y)) > 0;
    return n;
}

} // namespace MapTest
