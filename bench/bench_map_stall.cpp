// With 10,000,000 points on a 1000 x 800 map, how long the GUI thread is held by each
// wheel zoom and each pan step: the layer shows its kept image moved or scaled at once and
// draws the new one on a worker thread. The map is the whole view as an application shows
// it (axes, grid, decorations) with its overview following. Reports the longest and the
// median stall. The point count is --points=N, else the environment variable
// VELMORA_MAP_POINTS, else 10,000,000; other arguments are not ours (scripts/bench.sh hands
// every benchmark the same ones) and are left alone.

#include <VsdPointSet.h>
#include <VssProject.h>
#include <VugDatasetStore.h>
#include <VugScene.h>
#include <Vwv2DOverView.h>
#include <VwqBasemapPlot.h>
#include <VwqPlotZoomer.h>
#include <VwvBasemapImageItem.h>
#include <VwvBasemapLayer.h>
#include <VwvBasemapView.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QTemporaryDir>
#include <QElapsedTimer>
#include <QThreadPool>
#include <QWheelEvent>
#include <QtTest/QTest>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr double GOAL_MS = 16.0;

double elapsedMs(const QElapsedTimer& timer)
{
    return timer.nsecsElapsed() / 1e6;
}

// 0 when the count given is not a positive number.
int pointCount(const QStringList& arguments)
{
    const QString option = QStringLiteral("--points=");
    QString given = qEnvironmentVariable("VELMORA_MAP_POINTS");
    for (const QString& argument : arguments)
        if (argument.startsWith(option))
            given = argument.mid(option.size());
    if (given.isEmpty())
        return 10000000;
    bool ok = false;
    const int count = given.toInt(&ok);
    return ok && count > 0 ? count : 0;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = pointCount(QCoreApplication::arguments());
    if (count == 0) {
        std::fprintf(stderr, "bench_map_stall: the point count (--points=N or VELMORA_MAP_POINTS) must be a positive number\n");
        return 2;
    }

    const QRectF extent(0, 0, 10000, 8000);
    QTemporaryDir folder;
    const std::unique_ptr<VssProject> project =
        VssProject::create(folder.filePath(QStringLiteral("bench")), QStringLiteral("bench"));
    VugDatasetStore datasets(*project);
    datasets.setPointSet(QStringLiteral("points"), VsdPointSet::generate(count, 7, extent),
                         VugDatasetStore::Storage::IN_MEMORY);
    VugScene scene(1);
    scene.appendItem(VugSceneItem(QStringLiteral("points"), QStringLiteral("Points"), VugERendering::POINTS,
                                  QStringLiteral("points"), QStringLiteral("Porosity")));

    QWidget window;
    auto* view = new VwvBasemapView;
    auto* overview = new Vwv2DOverView;
    auto* layout = new QHBoxLayout(&window);
    layout->addWidget(view, 1);
    layout->addWidget(overview);
    QObject::connect(view, &VwvBasemapView::currentViewChanged, overview, &Vwv2DOverView::setZoomArea);
    window.resize(1000 + 150 + 140, 800 + 80);
    view->setScene(&scene, &datasets);
    overview->setScene(&scene, &datasets);
    window.show();
    if (!QTest::qWaitForWindowExposed(&window) || !view->getLayer(0))
        return 2;
    VwqBasemapPlot& plot = *view->getPlot();
    plot.zoomer()->resetZoom(extent);
    const VwvBasemapImageItem* item = view->getLayer(0)->getPlotItem();
    // The first full drawing, before any step is measured.
    QTest::qWait(50);
    for (int waited = 0; item->isRendering() && waited < 60000; waited += 50)
        QTest::qWait(50);
    QThreadPool::globalInstance()->waitForDone();
    std::printf("%d points, canvas %d x %d\n", count, plot.canvas()->width(), plot.canvas()->height());

    std::vector<double> stalls;
    QWidget* canvas = plot.canvas();
    const auto step = [&](auto&& action) {
        QElapsedTimer timer;
        timer.start();
        action();
        QCoreApplication::processEvents(); // the repaint the step asks for, and nothing waits
        stalls.push_back(elapsedMs(timer));
        // The user's next step comes a frame later; the worker goes on meanwhile.
        QTest::qWait(16);
    };
    for (int i = 0; i < 20; ++i) {
        const QPoint at(200 + 30 * i, 300 + 10 * (i % 5));
        step([&] {
            QWheelEvent wheel(at, canvas->mapToGlobal(at), QPoint(), QPoint(0, i % 3 == 2 ? -120 : 120),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(canvas, &wheel);
        });
        step([&] { QTest::keyClick(canvas, i % 2 ? Qt::Key_Right : Qt::Key_Down, Qt::ShiftModifier); });
    }
    QThreadPool::globalInstance()->waitForDone();

    std::vector<double> sorted = stalls;
    std::sort(sorted.begin(), sorted.end());
    const double longest = sorted.back();
    const double median = sorted[sorted.size() / 2];
    std::printf("%d points, %zu steps: GUI-thread stall per step median %.2f ms, longest %.2f ms\n", count,
                stalls.size(), median, longest);
    const bool ok = longest <= GOAL_MS;
    const QByteArray label = QStringLiteral("%1 points, longest wheel or pan step").arg(count).toUtf8();
    std::printf("stall %-44s %6.2f ms (goal <= %.0f ms) %s\n", label.constData(), longest, GOAL_MS,
                ok ? "ok" : "MISSED");
    return ok ? 0 : 1;
}
