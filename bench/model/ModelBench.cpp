// The model as the window uses it: 38 results with 200,000 entries in all, 50,000 of them selected.
// Everything is in memory; no file is touched.

#include "AppModel.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <string>

using namespace lumabroom;

namespace {

constexpr int kRules = 38;
constexpr int kEntries = 200'000;
constexpr int kLargeRuleEntries = 50'000; // the first rule's

CleanRule benchRule(int index) {
    CleanRule rule;
    rule.id = "bench.rule-" + std::to_string(index);
    rule.nameKey = rule.id;
    rule.noteKey = rule.id;
    rule.category = allCategories[static_cast<std::size_t>(index) % allCategories.size()];
    rule.safety = index % 7 == 6 ? SafetyLevel::reportOnly : SafetyLevel::safe;
    return rule;
}

RuleScanResult benchResult(int index) {
    const int count = index == 0 ? kLargeRuleEntries
                                 : (kEntries - kLargeRuleEntries) / (kRules - 1)
                                       + (index <= (kEntries - kLargeRuleEntries) % (kRules - 1) ? 1 : 0);
    RuleScanResult result{benchRule(index), {}};
    result.entries.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        result.entries.push_back({"/Users/developer/Library/Caches/rule-" + std::to_string(index) + "/project-"
                                      + std::to_string(i) + "/build-output",
                                  4096 + i,
                                  {}});
    return result;
}

ModelServices noServices() {
    ModelServices services;
    for (int i = 0; i < kRules; ++i) services.scanRules.push_back(benchRule(i));
    return services;
}

// Every third entry of the rules after the first: 50,000 selected.
struct Filled {
    AppModel model{noServices()};
    Filled() {
        AppModel::IDSet selected;
        for (int i = 0; i < kRules; ++i) {
            RuleScanResult result = benchResult(i);
            for (std::size_t j = 0; i > 0 && j < result.entries.size(); j += 3) selected.insert(result.entries[j].id());
            model.apply(std::move(result));
        }
        while (selected.size() > 50'000) selected.erase(selected.begin());
        model.setSelectedEntryIDs(selected);
    }
};

Filled& filled() {
    static Filled shared;
    return shared;
}

void BM_PerFrameReads(benchmark::State& state) {
    AppModel& model = filled().model;
    for (auto _ : state) {
        std::int64_t sum =
            model.totalBytes() + model.directlyCleanableBytes() + model.selectedBytes() + model.selectedEntryCount();
        for (Category category : allCategories) sum += model.categoryBytes(category);
        for (const VisibleGroup& group : model.visibleGroups())
            sum += group.total() + static_cast<std::int64_t>(group.summary().size());
        for (const RuleScanResult& result : model.results()) sum += static_cast<std::int64_t>(model.selection(result));
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(model.scanProgressText());
    }
    state.counters["selected"] = static_cast<double>(model.selectedEntryCount());
}
BENCHMARK(BM_PerFrameReads)->Unit(benchmark::kMillisecond);

// Two toggles per iteration, so that the selection is the same at the start of each: the first
// selects the whole rule of 50,000 entries, the second clears it.
void BM_ToggleLargeRuleTwice(benchmark::State& state) {
    AppModel& model = filled().model;
    const RuleScanResult& large = model.results().front();
    for (auto _ : state) {
        model.toggleRule(large);
        model.toggleRule(large);
    }
    state.counters["entries"] = static_cast<double>(large.entries.size());
}
BENCHMARK(BM_ToggleLargeRuleTwice)->Unit(benchmark::kMillisecond);

// A rescan's result replacing the rule's old one, for the typical rule and the rule of 50,000
// entries: with the same entries as before (range 1 = 0), or with every path other than the last
// time (range 1 = 1: two lists that take turns). The scan's worker prepares the result before it
// reaches the main thread, so the preparing is not timed here; the second row times it too.
void BM_ApplyReplacingResult(benchmark::State& state) {
    AppModel& model = filled().model;
    const int index = static_cast<int>(state.range(0));
    const bool changed = state.range(1) != 0;
    RuleScanResult fresh[2] = {benchResult(index), benchResult(index)};
    if (changed)
        for (ScanEntry& entry : fresh[1].entries) entry.url += "-moved";
    std::size_t turn = 0;
    for (auto _ : state) {
        state.PauseTiming();
        PreparedResult copy(fresh[changed ? turn++ % 2 : 0]);
        state.ResumeTiming();
        model.apply(std::move(copy));
    }
    model.apply(fresh[0]);
    state.counters["entries"] = static_cast<double>(fresh[0].entries.size());
}
BENCHMARK(BM_ApplyReplacingResult)
    ->Args({1, 0})
    ->Args({0, 0})
    ->Args({1, 1})
    ->Args({0, 1})
    ->Unit(benchmark::kMillisecond);

// The same with every path new, preparing included, as when a result is applied as it comes.
void BM_ApplyUnpreparedResult(benchmark::State& state) {
    AppModel& model = filled().model;
    RuleScanResult fresh[2] = {benchResult(0), benchResult(0)};
    for (ScanEntry& entry : fresh[1].entries) entry.url += "-moved";
    std::size_t turn = 0;
    for (auto _ : state) {
        state.PauseTiming();
        RuleScanResult copy = fresh[turn++ % 2];
        state.ResumeTiming();
        model.apply(std::move(copy));
    }
    model.apply(fresh[0]);
}
BENCHMARK(BM_ApplyUnpreparedResult)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
