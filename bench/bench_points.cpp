// Drawing a point set into a 1000 x 800 view: our rasterizer against a QwtPlotCurve with
// the same points (dots, and 5-pixel circles as QwtSymbol ellipses), and against a plain
// loop that writes the pixels into a QImage, the floor any drawing has to pay.

#include "BenchRatio.h"

#include <VwvPointRasterizer.h>

#include <QApplication>
#include <QPainter>
#include <qwt_plot_curve.h>
#include <qwt_scale_map.h>
#include <qwt_symbol.h>

#include <random>

namespace {

constexpr int WIDTH = 1000;
constexpr int HEIGHT = 800;

struct Points
{
    std::vector<double> x;
    std::vector<double> y;
    QwtPlotCurve curve;

    explicit Points(int count)
        : x(size_t(count))
        , y(size_t(count))
    {
        std::mt19937 random(42);
        std::uniform_real_distribution<double> ux(0.0, WIDTH);
        std::uniform_real_distribution<double> uy(0.0, HEIGHT);
        for (int i = 0; i < count; ++i) {
            x[size_t(i)] = ux(random);
            y[size_t(i)] = uy(random);
        }
        curve.setRawSamples(x.data(), y.data(), count);
        curve.setPen(Qt::black, 0.0);
        curve.setStyle(QwtPlotCurve::Dots);
    }
};

struct View
{
    QImage image{WIDTH, HEIGHT, QImage::Format_ARGB32_Premultiplied};
    QwtScaleMap xMap;
    QwtScaleMap yMap;

    View()
    {
        xMap.setScaleInterval(0.0, WIDTH);
        xMap.setPaintInterval(0.0, WIDTH);
        yMap.setScaleInterval(0.0, HEIGHT);
        yMap.setPaintInterval(HEIGHT, 0.0);
    }
};

void drawOurs(View& view, const Points& points, int size)
{
    view.image.fill(Qt::white);
    VwvPointRasterizer rasterizer;
    VwvPointRasterizer::Style style;
    style.size = size;
    rasterizer.setStyle(style);
    rasterizer.setPoints(points.x.data(), points.y.data(), int(points.x.size()));
    rasterizer.draw(view.image, view.xMap, view.yMap);
    benchmark::DoNotOptimize(view.image.constBits());
}

void drawCurve(View& view, const Points& points)
{
    view.image.fill(Qt::white);
    QPainter painter(&view.image);
    points.curve.draw(&painter, view.xMap, view.yMap, QRectF(0, 0, WIDTH, HEIGHT));
}

void drawFloor(View& view, const Points& points)
{
    view.image.fill(Qt::white);
    auto* bits = reinterpret_cast<QRgb*>(view.image.bits());
    const QRgb black = qRgb(0, 0, 0);
    const size_t n = points.x.size();
    for (size_t i = 0; i < n; ++i) {
        const int px = int(points.x[i]);
        const int py = int(HEIGHT - points.y[i]);
        if (px >= 0 && px < WIDTH && py >= 0 && py < HEIGHT)
            bits[py * WIDTH + px] = black;
    }
    benchmark::DoNotOptimize(view.image.constBits());
}

Points& pointsFor(int count)
{
    static std::map<int, std::unique_ptr<Points>> cache;
    auto& entry = cache[count];
    if (!entry)
        entry = std::make_unique<Points>(count);
    return *entry;
}

void BM_DotsVsCurve(benchmark::State& state)
{
    Points& points = pointsFor(int(state.range(0)));
    points.curve.setStyle(QwtPlotCurve::Dots);
    points.curve.setSymbol(nullptr);
    View view;
    measurePair(
        state, [&] { drawOurs(view, points, 1); }, [&] { drawCurve(view, points); });
}

void BM_DotsVsFloor(benchmark::State& state)
{
    Points& points = pointsFor(int(state.range(0)));
    View view;
    measurePair(
        state, [&] { drawOurs(view, points, 1); }, [&] { drawFloor(view, points); });
}

void BM_CirclesVsSymbols(benchmark::State& state)
{
    Points& points = pointsFor(int(state.range(0)));
    points.curve.setStyle(QwtPlotCurve::NoCurve);
    points.curve.setSymbol(new QwtSymbol(QwtSymbol::Ellipse, QBrush(Qt::black), QPen(Qt::black), QSize(5, 5)));
    View view;
    measurePair(
        state, [&] { drawOurs(view, points, 5); }, [&] { drawCurve(view, points); });
}

} // namespace

BENCHMARK(BM_DotsVsCurve)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond)->Iterations(3)->Repetitions(3)->ReportAggregatesOnly(true);
BENCHMARK(BM_DotsVsFloor)->Arg(1000000)->Arg(10000000)->Unit(benchmark::kMillisecond)->Iterations(5)->Repetitions(5)->ReportAggregatesOnly(true);
BENCHMARK(BM_CirclesVsSymbols)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3)->Repetitions(3)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatios(argc, argv,
                         {{"BM_DotsVsCurve/1000000", {"1000000 dots 1000x800 vs QwtPlotCurve Dots", 1.0 / 3.0}},
                          {"BM_DotsVsCurve/10000000", {"10000000 dots 1000x800 vs QwtPlotCurve Dots", 1.0 / 3.0}},
                          {"BM_DotsVsFloor/1000000", {"1000000 dots 1000x800 vs plain pixel loop", 1.5}},
                          {"BM_DotsVsFloor/10000000", {"10000000 dots 1000x800 vs plain pixel loop", 1.5}},
                          {"BM_CirclesVsSymbols/1000000", {"1000000 5-px discs 1000x800 vs QwtSymbol", 0.25}}});
}
