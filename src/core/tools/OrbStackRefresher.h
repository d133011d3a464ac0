#pragma once

#include "scan/ScanEntry.h"

#include <optional>
#include <vector>

namespace lumabroom::OrbStackRefresher {

// The OrbStack rule's disk images replaced by the daemon's usage per kind, under <folder of the
// first entry>/docker/, plus a row "docker/other" for what the images hold beyond the kinds; largest
// first, equal sizes in the tool's order. Nothing when there are no disk entries or the daemon
// gives no rows, so that the caller keeps what it has.
std::optional<std::vector<ScanEntry>> refinedEntries(const std::vector<ScanEntry>& diskEntries);

// Whether the entries are already refined rows (their paths hold "/docker/").
bool isRefined(const std::vector<ScanEntry>& entries);

} // namespace lumabroom::OrbStackRefresher
