#include "scan/RuleScanResult.h"

#include <numeric>

namespace lumabroom {

std::int64_t RuleScanResult::totalSize() const {
    return std::accumulate(entries.begin(), entries.end(), std::int64_t{0},
                           [](std::int64_t sum, const ScanEntry& e) { return sum + e.size; });
}

} // namespace lumabroom
