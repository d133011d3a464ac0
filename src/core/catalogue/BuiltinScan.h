#pragma once

#include "scan/CacheScanner.h"

#include <vector>

namespace lumabroom::CacheScanner {

// The scan with the routes of the built-in rules.
ScanStream scan(std::vector<CleanRule> rules);
RuleScanResult scanRule(const CleanRule& rule);

} // namespace lumabroom::CacheScanner
