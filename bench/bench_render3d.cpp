// A frame of a 1,000,000- and a 2,000,000-triangle surface in an 800 x 600 window: through
// our render area (clipping planes fitted, the render core, the swap) against a bare
// SoSceneManager rendering the same scene root in the same GL context on the same window.
// Then an 800 x 600 PNG export against one frame plus 20 ms, and the first frame of a new
// scene against the steady frame. Needs OpenGL: runs on xcb (Xvfb with Mesa when headless).

#include "BenchRatio.h"

#include <Vg3GridSurfaceNode.h>
#include <Vg3OpenInventor.h>
#include <Vg3SceneInteractor.h>
#include <VsdGrid.h>
#include <VugColorScale.h>
#include <Vw3RenderAreaQWindow.h>

#include <Inventor/SoSceneManager.h>
#include <Inventor/nodes/SoSeparator.h>

#include <QApplication>
#include <QLocale>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QTemporaryDir>
#include <QTest>

#include <chrono>
#include <cmath>
#include <memory>
#include <string>

namespace {

constexpr int WIDTH = 800;
constexpr int HEIGHT = 600;
using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point from)
{
    return std::chrono::duration<double>(Clock::now() - from).count();
}

// Nodes a side of the square grid of at least `triangles` triangles, two per cell.
int nodesPerSide(int triangles)
{
    return int(std::ceil(std::sqrt(triangles / 2.0))) + 1;
}

// What a result line names: the triangles drawn and the window.
std::string size(int requested)
{
    const int cells = nodesPerSide(requested) - 1;
    const QString triangles = QLocale(QLocale::English).toString(2 * cells * cells);
    return QStringLiteral("%1 triangles, %2 x %3").arg(triangles).arg(WIDTH).arg(HEIGHT).toStdString();
}

// A surface of about `triangles` triangles, coloured by its own values.
std::unique_ptr<Vg3GridSurfaceNode> makeSurface(int triangles, quint32 seed)
{
    const int nodes = nodesPerSide(triangles);
    const VsdGrid grid = VsdGrid::generate(nodes, nodes, seed, QRectF(0, 0, 1000, 1000));
    VugColorScale scale = VugColorScale::rainbow();
    const auto range = grid.valueRange();
    scale.setRange(range.first, range.second);
    auto node = std::make_unique<Vg3GridSurfaceNode>(QStringLiteral("surface"));
    node->setData(grid, scale);
    return node;
}

// One window with our render area; the baseline renders the same root with its own scene
// manager in the area's context.
struct Window
{
    QWidget top;
    Vw3RenderAreaQWindow* area = nullptr;
    QSharedPointer<Vg3SceneInteractor> interactor{new Vg3SceneInteractor};
    std::unique_ptr<Vg3GridSurfaceNode> surface;
    SoSceneManager bare;

    explicit Window(int triangles)
    {
        area = new Vw3RenderAreaQWindow(&top);
        area->getContainerWidget()->setGeometry(0, 0, WIDTH, HEIGHT);
        top.resize(WIDTH, HEIGHT);
        area->setSceneInteractor(interactor);
        setSurface(makeSurface(triangles, 7));
        top.show();
        if (!QTest::qWaitForWindowExposed(&top))
            std::fprintf(stderr, "bench_render3d: the window was not exposed\n");
        QTest::qWait(50);
        bare.setSceneGraph(interactor->getSceneRoot());
        bare.setViewportRegion(area->getViewportRegion());
        bare.activate();
    }

    void setSurface(std::unique_ptr<Vg3GridSurfaceNode> node)
    {
        surface = std::move(node);
        interactor->setSceneGraph(surface->getRoot());
        interactor->viewAll();
    }

    static void finish()
    {
        if (QOpenGLContext* context = QOpenGLContext::currentContext())
            context->functions()->glFinish();
    }

    void oursFrame()
    {
        area->render();
        finish();
    }

    void bareFrame()
    {
        QOpenGLContext* context = QOpenGLContext::currentContext();
        bare.render(TRUE, TRUE);
        if (context)
            context->swapBuffers(area);
        finish();
    }
};

// Made on first use, let go before the application object.
std::map<int, std::unique_ptr<Window>> windows;

Window* window(int triangles)
{
    auto& w = windows[triangles];
    if (!w)
        w = std::make_unique<Window>(triangles);
    return w.get();
}

void BM_Frame(benchmark::State& state, int triangles)
{
    Window* w = window(triangles);
    w->oursFrame();
    w->bareFrame();
    measurePair(state, [w] { w->oursFrame(); }, [w] { w->bareFrame(); });
}

// ratio = export / (frame + 20 ms): at most 1 meets the goal.
void BM_ExportPng(benchmark::State& state)
{
    Window* w = window(1000000);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("view.png"));
    double exportSeconds = 0;
    double frameSeconds = 0;
    for (auto _ : state) {
        auto t = Clock::now();
        w->area->saveToFile(path);
        exportSeconds += seconds(t);
        t = Clock::now();
        w->bareFrame();
        frameSeconds += seconds(t);
    }
    const double n = double(state.iterations());
    state.counters["ours_us"] = 1e6 * exportSeconds / n;
    state.counters["baseline_us"] = 1e6 * (frameSeconds / n + 0.020);
    state.counters["ratio"] = (exportSeconds / n) / (frameSeconds / n + 0.020);
}

// A new surface each iteration (made outside the timing): its first frame builds the GL
// caches, the second is steady.
void BM_FirstFrame(benchmark::State& state)
{
    Window* w = window(1000000);
    double firstSeconds = 0;
    double steadySeconds = 0;
    quint32 seed = 100;
    for (auto _ : state) {
        state.PauseTiming();
        w->setSurface(makeSurface(1000000, ++seed));
        state.ResumeTiming();
        auto t = Clock::now();
        w->oursFrame();
        firstSeconds += seconds(t);
        t = Clock::now();
        w->oursFrame();
        steadySeconds += seconds(t);
    }
    const double n = double(state.iterations());
    state.counters["ours_us"] = 1e6 * firstSeconds / n;
    state.counters["baseline_us"] = 1e6 * steadySeconds / n;
    state.counters["ratio"] = steadySeconds > 0 ? firstSeconds / steadySeconds : 0;
}

} // namespace

int main(int argc, char** argv)
{
    // GL needs a display: bench.sh runs the programs on offscreen, so this one asks for xcb.
    if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    Vg3OpenInventor::getInstance()->init();
    // Registered here so that every line names the triangles and the window it measured.
    const std::string frame1 = "BM_Frame/" + size(1000000), frame2 = "BM_Frame/" + size(2000000);
    const std::string exportPng = "BM_ExportPng/" + size(1000000), firstFrame = "BM_FirstFrame/" + size(1000000);
    for (const auto& f : {std::make_pair(frame1, 1000000), std::make_pair(frame2, 2000000)})
        benchmark::RegisterBenchmark(f.first.c_str(), BM_Frame, f.second)->Unit(benchmark::kMillisecond)->Iterations(8)->Repetitions(3)->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark(exportPng.c_str(), BM_ExportPng)->Unit(benchmark::kMillisecond)->Iterations(6)->Repetitions(3)->ReportAggregatesOnly(true);
    benchmark::RegisterBenchmark(firstFrame.c_str(), BM_FirstFrame)->Unit(benchmark::kMillisecond)->Iterations(3)->Repetitions(3)->ReportAggregatesOnly(true);
    const int status = runWithRatios(argc, argv,
                                     {{frame1, {"frame, " + size(1000000) + ", vs bare scene manager", 1.05}},
                                      {frame2, {"frame, " + size(2000000) + ", vs bare scene manager", 1.05}},
                                      {exportPng, {"PNG export, " + size(1000000) + ", vs frame + 20 ms", 1.0}},
                                      {firstFrame, {"first frame, " + size(1000000) + ", vs steady frame", 2.0}}});
    windows.clear();
    return status;
}
