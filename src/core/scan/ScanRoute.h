#pragma once

#include "scan/ScanEntry.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace lumabroom {

// A rule's own way of finding its entries, already in display order; nothing makes the scanner
// fall back to the rule's path patterns.
using ScanRoute = std::function<std::optional<std::vector<ScanEntry>>()>;
using RouteTable = std::map<std::string, ScanRoute, std::less<>>;

} // namespace lumabroom
