#pragma once

#include "ChartInput.h"
#include "Sunburst.h"

#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace lumabroom {

// A stand-in for the application model, made of the catalogue's rules with invented entries.
struct ChartSample {
    std::vector<RuleScanResult> results;
    std::unordered_set<std::string> selected;
    Route route = Route::overview();
    bool isBusy = false;

    // Every rule with a few to sixty entries of varied sizes; some rules small enough to merge.
    static ChartSample typical();
    // The busiest overview: every rule shown, each with a full ring of decorations.
    static ChartSample worst();

    ChartInput input(ChartPalette palette = ChartPalette::hues) const;
    // What the model would do with a tap.
    void apply(const TapDecision&);
};

// The groups as the model lists them: catalogue order of categories, rules above zero, largest first.
std::vector<VisibleGroup> visibleGroups(std::span<const RuleScanResult> results);

} // namespace lumabroom
