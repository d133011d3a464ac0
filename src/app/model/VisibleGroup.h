#pragma once

#include "scan/Category.h"
#include "scan/RuleScanResult.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumabroom {

// One category as the overview lists it: its results with a total above 0 (or all of them when
// empty rules are shown), largest first. The results are borrowed from the model's list, which is
// read per frame: they stay valid until the model's results next change.
struct VisibleGroup {
    Category category = Category::system;
    std::vector<const RuleScanResult*> results;
    // The totals of `results` in the same order, as the model knew them, so that reading a group
    // per frame walks no entries. Left empty, they are summed from the entries.
    std::vector<std::int64_t> totals{};

    std::int64_t total() const;
    // The one line a collapsed group shows: up to three rule names with sizes, then the rest counted.
    std::string summary() const;
};

// How much of one rule is selected.
enum class RuleSelection { none, partial, all };

} // namespace lumabroom
