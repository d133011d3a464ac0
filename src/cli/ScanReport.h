#pragma once

#include "scan/BuiltinRules.h"
#include "scan/CleanRule.h"
#include "scan/RuleScanResult.h"
#include "text/DiskSpace.h"

#include <string>
#include <vector>

namespace lumabroom::ScanReport {

// One JSON object for one rule: {"id", "name", "total", "entries": [{"path", "size", "label"?}]}, the
// name in the current language.
// Bytes of a path that are not UTF-8 become U+FFFD, so the line is always valid JSON.
std::string jsonLine(const RuleScanResult& result);
std::string doneLine(std::size_t rules, std::int64_t total, double seconds);

// The first line of the readable report: the volume's name, then its used, free and total bytes.
std::string volumeLine(const DiskSpace& disk);

// Rules grouped by category in catalogue order, each with its total and its largest entries.
std::string readable(const std::vector<RuleScanResult>& results, const std::vector<CleanRule>& catalogueOrder,
                     double seconds, std::size_t entriesPerRule = 5);

} // namespace lumabroom::ScanReport
