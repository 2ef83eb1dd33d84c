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

// Whether `label` names the number n: as digits ("20", "1000000"), with thousands
// separators ("1,000,000") or in thousands or millions ("1k", "10M"), not inside a longer
// number.
inline bool labelNamesNumber(const std::string& label, long long n)
{
    std::vector<std::string> forms{std::to_string(n)};
    std::string grouped = std::to_string(n);
    for (int at = int(grouped.size()) - 3; at > 0; at -= 3)
        grouped.insert(size_t(at), ",");
    forms.push_back(grouped);
    if (n >= 1000000 && n % 1000000 == 0)
        forms.push_back(std::to_string(n / 1000000) + "M");
    if (n >= 1000 && n % 1000 == 0) {
        forms.push_back(std::to_string(n / 1000) + "k");
        forms.push_back(std::to_string(n / 1000) + "K");
    }
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    for (const std::string& form : forms) {
        for (size_t at = label.find(form); at != std::string::npos; at = label.find(form, at + 1)) {
            const size_t end = at + form.size();
            const bool before = at > 0 && (digit(label[at - 1]) || label[at - 1] == ',' || label[at - 1] == '.');
            const bool after = end < label.size()
                               && (digit(label[end])
                                   || ((label[end] == ',' || label[end] == '.') && end + 1 < label.size()
                                       && digit(label[end + 1])));
            if (!before && !after)
                return true;
        }
    }
    return false;
}

// Whether the label of a goal names the size its benchmark measured: every argument of the
// benchmark's name ("BM_Save/20" measures 20 windows), or for a benchmark without arguments
// at least one number ("800x600 PNG export").
inline bool labelNamesSize(const std::string& name, const std::string& label)
{
    bool hasArgument = false;
    for (size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        const std::string argument = name.substr(slash + 1, name.find('/', slash + 1) - slash - 1);
        if (argument.empty() || argument.find_first_not_of("0123456789") != std::string::npos)
            continue;
        hasArgument = true;
        if (!labelNamesNumber(label, std::stoll(argument)))
            return false;
    }
    return hasArgument || label.find_first_of("0123456789") != std::string::npos;
}

// goals: benchmark name ("BM_Load/20") -> {label, highest accepted ratio}. Every label names
// the size measured ("windows.xml load, 20 windows"); a program with a label that does not is
// refused before anything runs. Returns 0 when every ratio meets its goal.
inline int runWithRatios(int argc, char** argv, const std::vector<std::pair<std::string, std::pair<std::string, double>>>& goals)
{
    int unnamed = 0;
    for (const auto& g : goals) {
        if (labelNamesSize(g.first, g.second.first))
            continue;
        std::fprintf(stderr, "the label '%s' of %s does not name the size it measures\n", g.second.first.c_str(),
                     g.first.c_str());
        ++unnamed;
    }
    if (unnamed > 0)
        return 2;
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
