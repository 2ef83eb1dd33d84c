#pragma once
// Measures our code beside its baseline in the same benchmark: every iteration runs both,
// one after the other, so that drift of the machine (page cache, writeback, frequency)
// touches both alike. Each benchmark reports the counters ours_us, baseline_us and ratio;
// runWithRatios() prints the median ratio of every benchmark against its goal.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

// The goal of a figure printed only for comparison: it is never missed.
constexpr double NO_GOAL = -1.0;

template <class Ours, class Baseline>
void measurePair(benchmark::State& state, Ours&& ours, Baseline&& baseline)
{
    using Clock = std::chrono::steady_clock;
    double oursSeconds = 0;
    double baselineSeconds = 0;
    for (auto _ : state) {
        const auto t0 = Clock::now();
        ours();
        const auto t1 = Clock::now();
        baseline();
        const auto t2 = Clock::now();
        oursSeconds += std::chrono::duration<double>(t1 - t0).count();
        baselineSeconds += std::chrono::duration<double>(t2 - t1).count();
    }
    const double n = double(state.iterations());
    state.counters["ours_us"] = 1e6 * oursSeconds / n;
    state.counters["baseline_us"] = 1e6 * baselineSeconds / n;
    state.counters["ratio"] = baselineSeconds > 0 ? oursSeconds / baselineSeconds : 0;
}

class BenchRatioReporter : public benchmark::ConsoleReporter
{
public:
    // Plain text: the output is read in logs and pasted into the README.
    BenchRatioReporter()
        : ConsoleReporter(OO_Tabular)
    {
    }

    std::map<std::string, double> ratios; // benchmark name -> median ratio

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const auto counter = run.counters.find("ratio");
            if (counter == run.counters.end())
                continue;
            const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            const std::string name = run.run_name.function_name + (run.run_name.args.empty() ? "" : "/" + run.run_name.args);
            if (isMedian || (run.run_type == Run::RT_Iteration && !ratios.count(name)))
                ratios[name] = counter->second.value;
        }
    }
};

// goals: benchmark name ("BM_Load/20") -> {label, highest accepted ratio}. Returns 0 when
// every ratio meets its goal.
inline int runWithRatios(int argc, char** argv, const std::vector<std::pair<std::string, std::pair<std::string, double>>>& goals)
{
    benchmark::Initialize(&argc, argv);
    BenchRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    int missed = 0;
    std::printf("\n");
    for (const auto& g : goals) {
        const auto found = reporter.ratios.find(g.first);
        if (found == reporter.ratios.end())
            continue;
        if (g.second.second == NO_GOAL) {
            std::printf("ratio %-44s %6.2f x baseline (for comparison, no goal)\n", g.second.first.c_str(),
                        found->second);
            continue;
        }
        const bool ok = found->second <= g.second.second;
        missed += ok ? 0 : 1;
        std::printf("ratio %-44s %6.2f x baseline (goal <= %.2f) %s\n", g.second.first.c_str(), found->second,
                    g.second.second, ok ? "ok" : "MISSED");
    }
    return missed == 0 ? 0 : 1;
}
