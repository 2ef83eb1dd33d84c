// Building and showing a scrolled form of 1,000 value editors, against the same form of
// plain Qt widgets in the same run: VwaDouble against QDoubleSpinBox, VwaComboBox against
// QComboBox. Also reports the heap each editor takes.

#include "BenchRatio.h"

#include <VwaComboBox.h>
#include <VwaDouble.h>

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QScrollArea>
#include <QVBoxLayout>
#include <malloc.h>

namespace {

const QStringList CHOICES{QStringLiteral("Ordinary kriging"), QStringLiteral("Simple kriging"),
                          QStringLiteral("Universal kriging"), QStringLiteral("Inverse distance"),
                          QStringLiteral("Nearest neighbour")};

QWidget* plainDouble(int i)
{
    auto* spin = new QDoubleSpinBox;
    spin->setRange(-1e6, 1e6);
    spin->setValue(i * 0.5);
    return spin;
}

QWidget* ourDouble(int i)
{
    auto* editor = new VwaDouble;
    editor->setMinimum(-1e6);
    editor->setMaximum(1e6);
    editor->setMinimumDefined(true);
    editor->setMaximumDefined(true);
    editor->setValue(i * 0.5);
    return editor;
}

QWidget* plainCombo(int i)
{
    auto* combo = new QComboBox;
    combo->addItems(CHOICES);
    combo->setCurrentIndex(i % CHOICES.size());
    return combo;
}

QWidget* ourCombo(int i)
{
    auto* editor = new VwaComboBox;
    editor->addItems(CHOICES);
    editor->setCurrentIndex(i % CHOICES.size());
    return editor;
}

// A form as a dialog shows it: the editors one under the other in a scroll area, shown,
// laid out and painted once.
class Form
{
public:
    Form(QWidget* (*make)(int), int count)
    {
        auto* content = new QWidget;
        auto* layout = new QVBoxLayout(content);
        for (int i = 0; i < count; ++i)
            layout->addWidget(make(i));
        _window.setWidget(content);
        _window.setWidgetResizable(true);
        _window.resize(400, 600);
        _window.show();
        QApplication::processEvents();
        _window.repaint();
    }

private:
    QScrollArea _window;
};

size_t heapInUse()
{
    return mallinfo2().uordblks;
}

double bytesPerEditor(QWidget* (*make)(int), int count)
{
    const size_t before = heapInUse();
    Form form(make, count);
    return double(heapInUse() - before) / count;
}

void runPair(benchmark::State& state, QWidget* (*ours)(int), QWidget* (*baseline)(int))
{
    const int count = int(state.range(0));
    // Warm the caches both sides share (fonts, style, icons) before anything is measured.
    { Form warm(ours, 10); }
    { Form warm(baseline, 10); }
    measurePair(
        state, [&] { Form form(ours, count); }, [&] { Form form(baseline, count); });
    state.counters["ours_bytes_per_editor"] = bytesPerEditor(ours, count);
    state.counters["baseline_bytes_per_editor"] = bytesPerEditor(baseline, count);
}

void BM_DoubleForm(benchmark::State& state)
{
    runPair(state, ourDouble, plainDouble);
}

void BM_ComboForm(benchmark::State& state)
{
    runPair(state, ourCombo, plainCombo);
}

} // namespace

BENCHMARK(BM_DoubleForm)->Arg(1000)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_ComboForm)->Arg(1000)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatios(argc, argv,
                         {{"BM_DoubleForm/1000", {"form of 1000 VwaDouble vs QDoubleSpinBox", 1.3}},
                          {"BM_ComboForm/1000", {"form of 1000 VwaComboBox vs QComboBox", 1.3}}});
}
