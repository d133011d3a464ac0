#include "LanguageTestSupport.h"

#include "support/TempTree.h"
#include "text/DiskSpace.h"

#include <gtest/gtest.h>

#include <sys/statvfs.h>

using namespace lumabroom;
using namespace lumabroom::test;

TEST(DiskSpace, ReadingsGiveTheCapacityOrNothing) {
    struct Case {
        const char* what;
        Volume::Reading reading;
        std::optional<DiskSpace> expected;
        std::int64_t used;
    };
    const Case cases[] = {
        {"named", {"Data", 1000, 400}, DiskSpace{"Data", 1000, 400}, 600},
        {"all free", {"Data", 1000, 1000}, DiskSpace{"Data", 1000, 1000}, 0},
        {"more free than total", {"Data", 1000, 1500}, DiskSpace{"Data", 1000, 1000}, 0},
        {"nothing free", {"Data", 1000, 0}, DiskSpace{"Data", 1000, 0}, 1000},
        {"no total", {"Data", std::nullopt, 5}, std::nullopt, 0},
        {"empty volume", {"Data", 0, 0}, std::nullopt, 0},
        {"negative total", {"Data", -5, 0}, std::nullopt, 0},
        {"no available", {"Data", 1000, std::nullopt}, std::nullopt, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const auto disk = DiskSpace::from(c.reading);
        EXPECT_EQ(disk, c.expected);
        if (disk) {
            EXPECT_EQ(disk->used(), c.used);
        }
    }
}

TEST(DiskSpace, AVolumeWithoutANameIsTheStartupDisk) {
    const Volume::Reading unnamed{std::nullopt, 1000, 400};
    {
        LanguageScope chinese(AppLanguage::chinese);
        EXPECT_EQ(DiskSpace::from(unnamed), (DiskSpace{"启动磁盘", 1000, 400}));
    }
    LanguageScope english(AppLanguage::english);
    EXPECT_EQ(DiskSpace::from(unnamed), (DiskSpace{"Startup Disk", 1000, 400}));
}

TEST(DiskSpace, CurrentReadsTheVolumeThatHoldsThePath) {
    TempTree tree;
    const auto file = tree.file("inside/file.txt", 10);
    const auto disk = DiskSpace::current(file);
    ASSERT_TRUE(disk);
    struct statvfs volume {};
    ASSERT_EQ(::statvfs(tree.root().c_str(), &volume), 0);
    EXPECT_EQ(disk->total, static_cast<std::int64_t>(volume.f_blocks) * static_cast<std::int64_t>(volume.f_frsize));
    EXPECT_LE(disk->available, disk->total);
    EXPECT_EQ(disk->used(), disk->total - disk->available);
    EXPECT_EQ(DiskSpace::current(tree / "missing" / "deeper"), std::nullopt);
}
