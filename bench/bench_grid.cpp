// Drawing a 1000 x 1000 grid of values into a 1000 x 800 view: our raster renderer against
// a QwtPlotSpectrogram over a QwtMatrixRasterData holding the same values, with a colour
// map of the same stops, both into a transparent image of the same size.

#include "BenchRatio.h"

#include <VsdGrid.h>
#include <VugColorScale.h>
#include <VwvBasemapRendererRaster.h>

#include <QApplication>
#include <QPainter>
#include <qwt_color_map.h>
#include <qwt_matrix_raster_data.h>
#include <qwt_plot_spectrogram.h>
#include <qwt_scale_map.h>

#include <memory>
#include <string>

namespace {

constexpr int NODES = 1000;
constexpr int WIDTH = 1000;
constexpr int HEIGHT = 800;

struct Scene
{
    VsdGrid grid = VsdGrid::generate(NODES, NODES, 7, QRectF(0, 0, NODES, NODES));
    VugColorScale scale = VugColorScale::rainbow();
    std::unique_ptr<VwvBasemapRendererRaster> ours;
    QwtPlotSpectrogram spectrogram;

    Scene()
    {
        const auto range = grid.valueRange();
        scale.setRange(range.first, range.second);
        ours = std::make_unique<VwvBasemapRendererRaster>(grid, scale);

        // The same values, undefined ones as NaN, which the spectrogram leaves transparent.
        QVector<double> values = grid.values();
        for (double& v : values)
            if (VugColorScale::isUndefinedValue(v))
                v = std::nan("");
        auto* data = new QwtMatrixRasterData;
        data->setValueMatrix(values, NODES);
        data->setInterval(Qt::XAxis, QwtInterval(0, NODES));
        data->setInterval(Qt::YAxis, QwtInterval(0, NODES));
        data->setInterval(Qt::ZAxis, QwtInterval(range.first, range.second));
        const QVector<VugColorScale::Stop>& stops = scale.getStops();
        auto* colorMap = new QwtLinearColorMap(QColor(stops.first().color), QColor(stops.last().color));
        for (int k = 1; k + 1 < stops.size(); ++k)
            colorMap->addColorStop((stops.at(k).value - range.first) / (range.second - range.first), QColor(stops.at(k).color));
        spectrogram.setData(data);
        spectrogram.setColorMap(colorMap);
        spectrogram.setRenderThreadCount(1); // one thread, as ours
    }
};

struct View
{
    QImage image{WIDTH, HEIGHT, QImage::Format_ARGB32_Premultiplied};
    QwtScaleMap xMap;
    QwtScaleMap yMap;

    // The whole grid, its width filling the view: 1.25 cells per pixel across and down.
    View()
    {
        xMap.setScaleInterval(0, NODES);
        xMap.setPaintInterval(0, WIDTH);
        yMap.setScaleInterval(0, NODES);
        yMap.setPaintInterval(HEIGHT, 0);
    }
};

void BM_RasterVsSpectrogram(benchmark::State& state)
{
    static Scene scene;
    View view;
    measurePair(
        state,
        [&] {
            view.image.fill(Qt::transparent);
            scene.ours->render(view.image, view.xMap, view.yMap);
            benchmark::DoNotOptimize(view.image.constBits());
        },
        [&] {
            view.image.fill(Qt::transparent);
            QPainter painter(&view.image);
            scene.spectrogram.draw(&painter, view.xMap, view.yMap, QRectF(0, 0, WIDTH, HEIGHT));
        });
}

} // namespace

// The argument only names the grid size on the result lines.
BENCHMARK(BM_RasterVsSpectrogram)->Arg(NODES)->Unit(benchmark::kMillisecond)->Iterations(10)->Repetitions(5)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatios(argc, argv,
                         {{"BM_RasterVsSpectrogram/" + std::to_string(NODES), {"1000x1000 grid 1000x800 vs Spectrogram", 0.2}}});
}
