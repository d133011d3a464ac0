#pragma once

#include "Output.h"

#include "scan/BuiltinRules.h"
#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "text/DiskSpace.h"

#include <string>
#include <vector>

namespace lumabroom::ScanReport {

// The JSON object of one rule: {"id", "name", "total", "entries": [{"path", "size", "label"?}]}, the
// name in the current language.
Output::Json json(const RuleScanResult& result);
Output::Json doneJson(std::size_t rules, std::int64_t total, double seconds);

// The first line of the readable report: the volume's name, then its used, free and total bytes.
std::string volumeLine(const DiskSpace& disk);

// Rules grouped by category in catalogue order, each with its total and its largest entries.
std::string readable(const std::vector<RuleScanResult>& results, const std::vector<CleanRule>& catalogueOrder,
                     double seconds, std::size_t entriesPerRule = 5);

} // namespace lumabroom::ScanReport
