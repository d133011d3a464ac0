#pragma once

#include "SunburstPalette.h"
#include "model/Route.h"
#include "model/VisibleGroup.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace lumabroom {

// What the chart reads from the model for one evaluation. The results, and the groups' pointers into
// them, are borrowed: nothing in it is kept past the call that received it.
struct ChartInput {
    std::vector<VisibleGroup> groups;
    std::span<const RuleScanResult> results;
    // Whether an entry id (its path) is selected for cleaning; empty means nothing is.
    std::function<bool(const std::string&)> isSelected;
    Route route = Route::overview();
    bool isBusy = false;
    std::string scanProgressText;
    ChartPalette palette = ChartPalette::hues;

    bool selected(const std::string& entryID) const { return isSelected && isSelected(entryID); }
};

} // namespace lumabroom
