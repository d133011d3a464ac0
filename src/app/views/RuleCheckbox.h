#pragma once

#include "model/VisibleGroup.h"
#include "scan/CleanRule.h"

#include <cstdint>
#include <string_view>

namespace lumabroom {

// What a rule card's checkbox shows: the first row of the glyph table that matches.
struct RuleCheckbox {
    std::string_view glyph; // the symbol's name, "circle", "checkmark.circle.fill", …
    bool accent = false;    // drawn in the accent rather than the secondary colour
    double opacity = 1;
    bool enabled = false;

    static RuleCheckbox of(SafetyLevel safety, std::int64_t totalSize, RuleSelection selection);
};

} // namespace lumabroom
