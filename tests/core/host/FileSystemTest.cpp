#include "host/FileSystem.h"

#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using lumabroom::test::TempTree;

TEST(FileSystem, LinksAreFollowedAndFailuresAreResults) {
    TempTree t;
    auto file = t.file("f");
    t.symlink("good", file);
    t.symlink("dangling", t / "gone");
    t.symlink("dirlink", t.dir("dir"));
    EXPECT_FALSE(FileSystem::exists((t / "dangling").string()));
    EXPECT_FALSE(FileSystem::isDirectory((t / "good").string()));
    EXPECT_EQ(FileSystem::resolvingSymlinks((t / "dirlink").string()), (t / "dir").string());
    EXPECT_EQ(FileSystem::resolvingSymlinks((t / "dangling").string()), std::nullopt);
    EXPECT_EQ(FileSystem::listDirectory(file.string()), std::nullopt);
    EXPECT_EQ(FileSystem::listDirectory((t / "missing").string()), std::nullopt);
}
