#pragma once

#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "scan/ScanEntry.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumabroom {

struct RuleScanResult {
    CleanRule rule;
    std::vector<ScanEntry> entries;

    const std::string& id() const { return rule.id; }
    std::int64_t totalSize() const;
};

} // namespace lumabroom
