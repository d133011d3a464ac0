#pragma once

#include "text/DiskSpace.h"

#include <array>
#include <cstdint>

namespace lumabroom {

// The used space of a volume split into what the findings can free and the rest. The three parts
// always add up to the used space: findings that overflow it are cut, cleanable first.
struct DiskBreakdown {
    DiskSpace disk;
    std::int64_t cleanable = 0;
    std::int64_t reportOnly = 0;
    std::int64_t otherUsed = 0;

    // `cleanable` and `reportOnly` as the model reports them, not yet clamped.
    static DiskBreakdown of(const DiskSpace& disk, std::int64_t cleanable, std::int64_t reportOnly);
    bool operator==(const DiskBreakdown&) const = default;
};

namespace DiskBreakdownBar {
// The widths of the bar's four segments for a bar `width` wide, left to right: other used,
// report-only, cleanable, free. A share of the total (at least 1), never negative; the 1-point
// gaps between them are not taken off.
std::array<double, 4> segmentWidths(const DiskBreakdown&, double width);
inline constexpr double kGap = 1.0;
} // namespace DiskBreakdownBar

} // namespace lumabroom
