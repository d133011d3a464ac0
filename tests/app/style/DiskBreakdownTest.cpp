#include "DiskBreakdown.h"

#include <gtest/gtest.h>

#include <array>

namespace lumabroom {
namespace {

DiskSpace disk(std::int64_t total, std::int64_t available) {
    return {.volumeName = "Data", .total = total, .available = available};
}

TEST(DiskBreakdown, ClampsFindingsToTheUsedSpace) {
    struct Case {
        const char* name;
        DiskSpace disk;
        std::int64_t cleanable, reportOnly;
        std::int64_t expectCleanable, expectReportOnly, expectOther;
    };
    const Case cases[] = {
        {"both fit", disk(1000, 400), 100, 200, 100, 200, 300},
        {"cleanable above used", disk(1000, 400), 900, 50, 600, 0, 0},
        {"sum above used", disk(1000, 400), 500, 300, 500, 100, 0},
        {"exactly used", disk(1000, 400), 250, 350, 250, 350, 0},
        {"nothing used", disk(1000, 1000), 10, 10, 0, 0, 0},
        {"more available than total", disk(1000, 1200), 10, 10, 0, 0, 0},
        {"no findings", disk(1000, 1), 0, 0, 0, 0, 999},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const DiskBreakdown b = DiskBreakdown::of(c.disk, c.cleanable, c.reportOnly);
        EXPECT_EQ(b.disk, c.disk);
        EXPECT_EQ(b.cleanable, c.expectCleanable);
        EXPECT_EQ(b.reportOnly, c.expectReportOnly);
        EXPECT_EQ(b.otherUsed, c.expectOther);
    }
}

TEST(DiskBreakdown, SegmentWidthsShareTheTotal) {
    struct Case {
        const char* name;
        DiskSpace disk;
        std::int64_t cleanable, reportOnly;
        double width;
        std::array<double, 4> expected;
    };
    const Case cases[] = {
        {"quarters", disk(400, 100), 100, 100, 200, {50, 50, 50, 50}},
        {"all free", disk(1000, 1000), 5, 5, 150, {0, 0, 0, 150}},
        // A total below 1 divides by 1; what the volume reports still shows, never below 0.
        {"zero total", disk(0, 0), 3, 0, 10, {0, 0, 0, 0}},
        {"negative total", DiskSpace{.volumeName = "x", .total = -5, .available = 2}, 0, 0, 10, {0, 0, 0, 20}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(DiskBreakdownBar::segmentWidths(DiskBreakdown::of(c.disk, c.cleanable, c.reportOnly), c.width),
                  c.expected);
    }
}

} // namespace
} // namespace lumabroom
