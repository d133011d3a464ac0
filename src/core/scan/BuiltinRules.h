#pragma once

#include "scan/CleanRule.h"

#include <vector>

namespace lumabroom {

// Where the catalogue's tools keep their data: the macOS locations, or the same tools' own
// locations on Linux (tools that do not exist there keep their macOS paths and find nothing).
enum class PathTable { macOS, linuxOS };

PathTable runningPathTable();
std::string_view rawValue(PathTable); // "macos", "linux"

namespace BuiltinRules {
// The 38 rules in catalogue order: xcode, packageManagers, tools, runtimeDownloads, code, system.
const std::vector<CleanRule>& all(PathTable table = runningPathTable());
const std::vector<CleanRule>& xcode(PathTable table = runningPathTable());
const std::vector<CleanRule>& packageManagers(PathTable table = runningPathTable());
const std::vector<CleanRule>& tools(PathTable table = runningPathTable());
const std::vector<CleanRule>& runtimeDownloads(PathTable table = runningPathTable());
const std::vector<CleanRule>& code(PathTable table = runningPathTable());
const std::vector<CleanRule>& system(PathTable table = runningPathTable());
// The rule with this id, if the catalogue has one.
const CleanRule* find(std::string_view id, PathTable table = runningPathTable());
} // namespace BuiltinRules

} // namespace lumabroom
