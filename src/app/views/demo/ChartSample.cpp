#include "ChartSample.h"

#include "scan/BuiltinRules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace lumabroom {

namespace {

constexpr std::array<const char*, 12> names{"atlas", "harbor", "quill",  "meridian", "sprout", "lantern",
                                            "orbit", "tundra", "cobalt", "fable",    "ember",  "juniper"};

// A fixed sequence, so every run draws the same chart.
struct Sequence {
    std::uint64_t state = 88172645463325252ull;
    std::uint64_t next() {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }
    double unit() { return double(next() % 1000000) / 1000000.0; }
};

ScanEntry entry(const CleanRule& rule, std::size_t index, std::int64_t size) {
    std::string name(names[index % names.size()]);
    if (index >= names.size()) name += '-' + std::to_string(index);
    return ScanEntry{.url = "/Users/dev/" + rule.id + "/" + name, .size = size, .label = std::nullopt};
}

} // namespace

std::vector<VisibleGroup> visibleGroups(std::span<const RuleScanResult> results) {
    std::vector<VisibleGroup> groups;
    for (Category category : allCategories) {
        VisibleGroup group{category, {}};
        for (const RuleScanResult& r : results)
            if (r.rule.category == category && r.totalSize() > 0) group.results.push_back(&r);
        std::ranges::stable_sort(group.results, std::greater{}, &RuleScanResult::totalSize);
        if (!group.results.empty()) groups.push_back(std::move(group));
    }
    return groups;
}

ChartSample ChartSample::typical() {
    ChartSample sample;
    Sequence random;
    for (const CleanRule& rule : BuiltinRules::all(PathTable::macOS)) {
        const double weight = random.unit();
        // A few giants, many middling rules and a tail of small ones, as on a real machine.
        const auto total = std::int64_t(2e6 * std::pow(10.0, weight * weight * 4.5));
        const std::size_t count = 1 + random.next() % 60;
        RuleScanResult result{rule, {}};
        double share = 1;
        for (std::size_t i = 0; i < count; ++i) {
            share *= 0.45 + 0.5 * random.unit();
            result.entries.push_back(entry(rule, i, std::max<std::int64_t>(4096, std::int64_t(double(total) * share))));
        }
        std::ranges::stable_sort(result.entries, std::greater{}, &ScanEntry::size);
        sample.results.push_back(std::move(result));
    }
    return sample;
}

ChartSample ChartSample::worst() {
    ChartSample sample;
    for (const CleanRule& rule : BuiltinRules::all(PathTable::macOS)) {
        RuleScanResult result{rule, {}};
        for (std::size_t i = 0; i < 20; ++i) result.entries.push_back(entry(rule, i, std::int64_t(100 - 3 * i) << 24));
        sample.results.push_back(std::move(result));
    }
    return sample;
}

ChartInput ChartSample::input(ChartPalette palette) const {
    ChartInput in;
    in.groups = visibleGroups(results);
    in.results = results;
    in.isSelected = [this](const std::string& id) { return selected.contains(id); };
    in.route = route;
    in.isBusy = isBusy;
    in.scanProgressText = std::to_string(results.size()) + "/" + std::to_string(results.size() + 1);
    in.palette = palette;
    return in;
}

void ChartSample::apply(const TapDecision& decision) {
    switch (decision.action) {
    case TapDecision::Action::nothing: break;
    case TapDecision::Action::goBack:
    case TapDecision::Action::openCategory:
    case TapDecision::Action::openRule: route = decision.route; break;
    case TapDecision::Action::toggleEntry:
        if (!selected.erase(decision.entryID)) selected.insert(decision.entryID);
        break;
    }
}

} // namespace lumabroom
