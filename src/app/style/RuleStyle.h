#pragma once

#include "Theme.h"
#include "scan/CleanRule.h"

#include <string>

namespace lumabroom {

// The symbol and colour of a rule's row.
struct RuleStyle {
    std::string symbol; // a name of Symbols' table
    NamedColor color = NamedColor::blue;
    bool operator==(const RuleStyle&) const = default;

    // The rule's own row, or else the style of its category.
    static RuleStyle of(const CleanRule&);
    static RuleStyle of(std::string_view ruleId, Category);
};

} // namespace lumabroom
