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

TEST(FileSystem, SmallFilesAreReadWholeOrNotAtAllAndHeadsUpToTheirLength) {
    TempTree t;
    const std::string ten = t.file("ten", 10).string(), empty = t.file("empty").string(), folder = t.dir("d").string();
    const std::string tenBytes(10, 'x');
    struct Case {
        std::string path;
        std::size_t bytes;
        std::optional<std::string> whole, head;
    } cases[] = {
        {ten, 10, tenBytes, tenBytes},
        {ten, 9, std::nullopt, std::string(9, 'x')},
        {ten, 0, std::nullopt, std::nullopt},
        {empty, 0, "", std::nullopt},
        {empty, 5, "", std::nullopt},
        {folder, 5, std::nullopt, std::nullopt},
        {(t / "missing").string(), 5, std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.path + " " + std::to_string(c.bytes));
        EXPECT_EQ(FileSystem::readSmallFile(c.path, c.bytes), c.whole);
        EXPECT_EQ(FileSystem::readHead(c.path, c.bytes), c.head);
    }
}
