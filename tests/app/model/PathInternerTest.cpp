// The numbering of paths behind the model's selection.

#include "PathInterner.h"

#include <gtest/gtest.h>

#include <string>

using namespace lumabroom;

namespace {

std::string pathNumber(int i) { return "/home/u/.cache/tool/project-" + std::to_string(i) + "/build"; }

PathInterner::Key add(PathInterner& table, const std::string& path) {
    return table.intern(path, PathInterner::hash(path)).first;
}

} // namespace

TEST(PathInterner, NumbersPathsInArrivalOrderAndFindsThemAgain) {
    PathInterner table;
    const std::string paths[] = {"/a", "", "/a/b", "/A", std::string("/nul\0inside", 11)};
    for (PathInterner::Key key = 0; key < std::size(paths); ++key) {
        SCOPED_TRACE(key);
        EXPECT_EQ(table.intern(paths[key], PathInterner::hash(paths[key])), std::make_pair(key, true));
    }
    for (PathInterner::Key key = 0; key < std::size(paths); ++key) {
        SCOPED_TRACE(key);
        EXPECT_EQ(table.intern(paths[key], PathInterner::hash(paths[key])), std::make_pair(key, false));
        EXPECT_EQ(table.find(paths[key]), key);
        EXPECT_EQ(table.path(key), paths[key]);
    }
    EXPECT_EQ(table.size(), 5u);
    EXPECT_EQ(table.find("/a/"), std::nullopt);
    EXPECT_EQ(table.find(std::string("/nul", 4)), std::nullopt);
}

// The caller gives the hash, so equal hashes of different paths must still keep them apart.
TEST(PathInterner, PathsWithTheSameHashStayApart) {
    PathInterner table;
    for (int i = 0; i < 1500; ++i)
        ASSERT_EQ(table.intern(pathNumber(i), 42), std::make_pair(PathInterner::Key(i), true));
    for (int i = 0; i < 1500; i += 749) {
        SCOPED_TRACE(i);
        EXPECT_EQ(table.find(pathNumber(i), 42), PathInterner::Key(i));
        EXPECT_EQ(table.find(pathNumber(i), 43), std::nullopt);
    }
}

// Growing moves the table and fills new blocks, but a path read before keeps its characters.
TEST(PathInterner, GrowingKeepsEveryPathAndItsNumber) {
    PathInterner table;
    const std::string first = pathNumber(0);
    add(table, first);
    const std::string_view before = table.path(0);
    const std::string longPath(3'000'000, 'x'); // larger than a block
    for (int i = 1; i < 60'000; ++i) add(table, pathNumber(i));
    EXPECT_EQ(add(table, longPath), 60'000u);
    EXPECT_EQ(before.data(), table.path(0).data());
    for (int i : {0, 1, 1023, 1024, 59'999}) {
        SCOPED_TRACE(i);
        EXPECT_EQ(table.find(pathNumber(i)), PathInterner::Key(i));
        EXPECT_EQ(table.path(PathInterner::Key(i)), pathNumber(i));
    }
    EXPECT_EQ(table.find(longPath), 60'000u);
}

TEST(PathInterner, KeepOnlyRenumbersTheKeptInOrderAndForgetsTheRest) {
    PathInterner table;
    for (int i = 0; i < 5; ++i) add(table, pathNumber(i));
    EXPECT_EQ(table.keepOnly({0, 1, 0, 1, 1}), (std::vector<PathInterner::Key>{0, 0, 0, 1, 2}));
    EXPECT_EQ(table.size(), 3u);
    EXPECT_EQ(table.find(pathNumber(0)), std::nullopt);
    EXPECT_EQ(table.find(pathNumber(2)), std::nullopt);
    EXPECT_EQ(table.find(pathNumber(1)), 0u);
    EXPECT_EQ(table.find(pathNumber(4)), 2u);
    EXPECT_EQ(add(table, pathNumber(0)), 3u);
}
