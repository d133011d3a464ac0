#pragma once

#include "scan/ScanEntry.h"

#include <string>

namespace lumabroom {

// The name an entry bears everywhere on the screen and in summaries: its label, else a short word
// made from its path. Computed at each call; a simulator's name reads its device file.
std::string displayName(const ScanEntry& entry);

} // namespace lumabroom
