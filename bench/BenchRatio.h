#pragma once
// Runs the registered benchmarks, then prints, for each pair (ours, baseline), the ratio
// of their median real times: "name: 1.12 x baseline".

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

class BenchRatioReporter : public benchmark::ConsoleReporter
{
public:
    // Plain text: the output is read in logs and pasted into the README.
    BenchRatioReporter()
        : ConsoleReporter(OO_None)
    {
    }

    std::map<std::string, double> times; // run name -> real time (the median when repeated)

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const std::string name = run.benchmark_name();
            const bool isMedian = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if (run.run_type == Run::RT_Iteration || isMedian) {
                // "BM_X/20/repeats:5_median" -> "BM_X/20"
                std::string key = name;
                const auto median = key.rfind("_median");
                if (isMedian && median != std::string::npos)
                    key.erase(median);
                const auto repeats = key.find("/repeats:");
                if (repeats != std::string::npos)
                    key.erase(repeats);
                if (isMedian || !times.count(key))
                    times[key] = run.GetAdjustedRealTime();
            }
        }
    }
};

// pairs: {label, ours, baseline, goal}; returns 0 when every ratio meets its goal.
inline int runWithRatios(int argc, char** argv,
                         const std::vector<std::pair<std::string, std::pair<std::string, std::string>>>& pairs,
                         double goal)
{
    benchmark::Initialize(&argc, argv);
    BenchRatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    int failures = 0;
    std::printf("\n");
    for (const auto& p : pairs) {
        const auto ours = reporter.times.find(p.second.first);
        const auto base = reporter.times.find(p.second.second);
        if (ours == reporter.times.end() || base == reporter.times.end() || base->second <= 0)
            continue;
        const double ratio = ours->second / base->second;
        const bool ok = ratio <= goal;
        failures += ok ? 0 : 1;
        std::printf("ratio %-40s %6.2f x baseline (goal <= %.2f) %s\n", p.first.c_str(), ratio, goal, ok ? "ok" : "MISSED");
    }
    return failures == 0 ? 0 : 1;
}
