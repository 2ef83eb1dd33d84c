// Building and showing a scrolled form of 1,000 value editors, against forms of plain Qt
// widgets in the same run: VwaDouble against the same widgets Qt would need for its parts
// (a QDoubleSpinBox with two hidden QToolButtons in a row on one page of a
// QStackedWidget, a hidden QLineEdit on the other), and beside that against a bare
// QDoubleSpinBox; VwaComboBox against QComboBox. Also reports the heap each editor takes.

#include "BenchRatio.h"

#include <VwaComboBox.h>
#include <VwaDouble.h>

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <QToolButton>
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

// What a plain Qt form would build for one number with an automatic and a lock button
// and a read-only presentation, as VwaDouble is built. Built the plain way, which is also
// the faster one for Qt: each page complete before it goes into the stack.
QWidget* structuredDouble(int i)
{
    auto* editor = new QWidget;
    auto* stack = new QStackedWidget;
    auto* page = new QWidget;
    auto* row = new QHBoxLayout(page);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(plainDouble(i));
    for (int b = 0; b < 2; ++b) {
        auto* button = new QToolButton;
        button->setAutoRaise(true);
        button->setCheckable(true);
        button->hide();
        row->addWidget(button);
    }
    auto* readOnly = new QLineEdit(QString::number(i * 0.5, 'f', 2));
    readOnly->setReadOnly(true);
    readOnly->setFrame(false);
    readOnly->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    stack->addWidget(page);
    stack->addWidget(readOnly);
    auto* layout = new QHBoxLayout(editor);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(stack);
    return editor;
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
    runPair(state, ourDouble, structuredDouble);
}

void BM_DoubleFormBare(benchmark::State& state)
{
    runPair(state, ourDouble, plainDouble);
}

void BM_ComboForm(benchmark::State& state)
{
    runPair(state, ourCombo, plainCombo);
}

} // namespace

BENCHMARK(BM_DoubleForm)->Arg(1000)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_DoubleFormBare)->Arg(1000)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);
BENCHMARK(BM_ComboForm)->Arg(1000)->Unit(benchmark::kMillisecond)->Repetitions(9)->ReportAggregatesOnly(true);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    return runWithRatios(
        argc, argv,
        {{"BM_DoubleForm/1000", {"form of 1,000 VwaDouble vs the same Qt widgets", 1.3}},
         {"BM_DoubleFormBare/1000", {"form of 1,000 VwaDouble vs bare QDoubleSpinBox", NO_GOAL}},
         {"BM_ComboForm/1000", {"form of 1,000 VwaComboBox vs QComboBox", 1.3}}});
}
