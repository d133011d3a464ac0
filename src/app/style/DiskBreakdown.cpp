#include "DiskBreakdown.h"

#include <algorithm>

namespace lumabroom {

DiskBreakdown DiskBreakdown::of(const DiskSpace& disk, std::int64_t cleanable, std::int64_t reportOnly) {
    DiskBreakdown result{.disk = disk};
    const std::int64_t used = std::max<std::int64_t>(disk.total - disk.available, 0);
    result.cleanable = std::min(cleanable, used);
    const std::int64_t remaining = used - result.cleanable;
    result.reportOnly = std::min(reportOnly, remaining);
    result.otherUsed = remaining - result.reportOnly;
    return result;
}

namespace DiskBreakdownBar {

std::array<double, 4> segmentWidths(const DiskBreakdown& breakdown, double width) {
    const double divisor = breakdown.disk.total < 1 ? 1.0 : static_cast<double>(breakdown.disk.total);
    const auto share = [&](std::int64_t bytes) { return std::max(0.0, width * static_cast<double>(bytes) / divisor); };
    return {share(breakdown.otherUsed), share(breakdown.reportOnly), share(breakdown.cleanable),
            share(breakdown.disk.available)};
}

} // namespace DiskBreakdownBar

} // namespace lumabroom
