#include "host/FileSystem.h"
#include "host/Platform.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sys/stat.h>

using namespace lumabroom;
using lumabroom::test::TempTree;

TEST(FileSystem, ListingShowsHiddenChildrenAndReportsFailure) {
    TempTree t;
    t.file("d/.hidden");
    t.file("d/visible");
    t.dir("d/sub");
    auto names = FileSystem::listDirectory((t / "d").string());
    ASSERT_TRUE(names);
    std::sort(names->begin(), names->end());
    EXPECT_EQ(*names, (std::vector<std::string>{".hidden", "sub", "visible"}));
    EXPECT_EQ(FileSystem::listDirectory((t / "d/visible").string()), std::nullopt);
    EXPECT_EQ(FileSystem::listDirectory((t / "missing").string()), std::nullopt);
}

TEST(FileSystem, ExistenceFollowsLinks) {
    TempTree t;
    auto f = t.file("f");
    t.symlink("good", f);
    t.symlink("dangling", t / "gone");
    t.symlink("dirlink", t.dir("dir"));
    EXPECT_TRUE(FileSystem::exists((t / "good").string()));
    EXPECT_FALSE(FileSystem::exists((t / "dangling").string()));
    EXPECT_TRUE(FileSystem::isDirectory((t / "dirlink").string()));
    EXPECT_FALSE(FileSystem::isDirectory((t / "good").string()));
    EXPECT_EQ(FileSystem::resolvingSymlinks((t / "dirlink").string()), (t / "dir").string());
    EXPECT_EQ(FileSystem::resolvingSymlinks((t / "dangling").string()), std::nullopt);
}

TEST(FileSystem, ExecutableTest) {
    TempTree t;
    auto script = t.file("tool");
    ::chmod(script.c_str(), 0755);
    auto plain = t.file("plain");
    ::chmod(plain.c_str(), 0644);
    EXPECT_TRUE(FileSystem::isExecutableFile(script.string()));
    EXPECT_FALSE(FileSystem::isExecutableFile(plain.string()));
    EXPECT_FALSE(FileSystem::isExecutableFile(t.dir("folder").string()));
    EXPECT_GE(Platform::processorCount(), 1);
}
