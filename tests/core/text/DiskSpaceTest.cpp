#include "LanguageTestSupport.h"

#include "host/Platform.h"
#include "support/TempTree.h"
#include "text/DiskSpace.h"

#include <gtest/gtest.h>

#include <set>
#include <sys/stat.h>
#include <sys/statvfs.h>

using namespace lumabroom;
using namespace lumabroom::test;

// The English name of an unnamed volume is checked end to end by the scanner's tests.
TEST(DiskSpace, ReadingsGiveTheCapacityOrNothingAndAnUnnamedVolumeIsTheStartupDisk) {
    LanguageScope chinese(AppLanguage::chinese);
    const std::pair<Volume::Reading, std::optional<DiskSpace>> cases[] = {
        {{"Data", 1000, 400}, DiskSpace{"Data", 1000, 400}},
        {{"Data", 1000, 1500}, DiskSpace{"Data", 1000, 1000}},
        {{std::nullopt, 1000, -3}, DiskSpace{"启动磁盘", 1000, 0}},
        {{"Data", std::nullopt, 5}, std::nullopt},
        {{"Data", 0, 0}, std::nullopt},
        {{"Data", 1000, std::nullopt}, std::nullopt},
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

// Most Linux volumes have no label; their mount point names them.
TEST(Volume, ALinuxVolumeIsNamedByItsLabelElseItsMountPoint) {
    if (Platform::isMacOS()) GTEST_SKIP() << "the system names every volume";
    TempTree tree;
    const auto reading = Volume::read(tree.file("inside/file.txt", 10));
    ASSERT_TRUE(reading && reading->name);
    struct stat item {};
    ASSERT_EQ(::stat(tree.root().c_str(), &item), 0);
    std::set<std::string> names;
    std::error_code ec;
    for (const auto& label : std::filesystem::directory_iterator("/dev/disk/by-label", ec)) {
        struct stat device {};
        if (::stat(label.path().c_str(), &device) == 0 && device.st_rdev == item.st_dev)
            names.insert(label.path().filename().string());
    }
    if (names.empty()) {
        std::filesystem::path top = tree.root();
        for (struct stat above{};
             top != top.root_path() && ::stat(top.parent_path().c_str(), &above) == 0 && above.st_dev == item.st_dev;)
            top = top.parent_path();
        names.insert(top.string());
    }
    EXPECT_EQ(names.count(*reading->name), 1u) << *reading->name;
}
