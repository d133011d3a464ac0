#include "LanguageTestSupport.h"

#include "support/TempTree.h"
#include "text/DiskSpace.h"

#include <gtest/gtest.h>

#include <sys/statvfs.h>

using namespace lumabroom;
using namespace lumabroom::test;

// The English name of an unnamed volume is checked end to end by the scanner's tests.
TEST(DiskSpace, ReadingsGiveTheCapacityOrNothingAndAnUnnamedVolumeIsTheStartupDisk) {
    LanguageScope chinese(AppLanguage::chinese);
    const std::pair<Volume::Reading, std::optional<DiskSpace>> cases[] = {
        {{"Data", 1000, 400}, DiskSpace{"Data", 1000, 400}}, {{"Data", 1000, 1500}, DiskSpace{"Data", 1000, 1000}},
        {{std::nullopt, 1000, -3}, DiskSpace{"启动磁盘", 1000, 0}}, {{"Data", std::nullopt, 5}, std::nullopt},
        {{"Data", 0, 0}, std::nullopt}, {{"Data", 1000, std::nullopt}, std::nullopt},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(DiskSpace::from(cases[i].first), cases[i].second) << i;
}

TEST(DiskSpace, CurrentReadsTheVolumeThatHoldsThePath) {
    TempTree tree;
    struct statvfs volume {};
    ASSERT_EQ(::statvfs(tree.root().c_str(), &volume), 0);
    EXPECT_EQ(DiskSpace::current(tree.file("inside/file.txt", 10)).value().total,
              static_cast<std::int64_t>(volume.f_blocks) * static_cast<std::int64_t>(volume.f_frsize));
    EXPECT_EQ(DiskSpace::current(tree / "missing" / "deeper"), std::nullopt);
}
