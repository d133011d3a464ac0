#include "scan/DirectorySizer.h"
#include "scan/ParallelMap.h"
#include "scan/WorkerPool.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <map>
#include <mutex>

using namespace lumabroom;
using lumabroom::test::allocatedBytes;
using lumabroom::test::TempTree;
namespace fs = std::filesystem;
using std::chrono::seconds;
using std::chrono::sys_seconds;

TEST(DirectorySizer, CountsAllocatedBlocksOfRegularFilesOnly) {
    TempTree t;
    auto a = t.file("root/a", 10'000);
    auto b = t.file("root/sub/b", 1);
    auto empty = t.file("root/sub/deeper/empty");
    auto sparse = t.sparseFile("root/disk.raw", 512LL * 1024 * 1024);
    t.dir("root/only/dirs/here");
    t.symlink("root/link-to-file", a);
    t.symlink("root/link-to-outside", t.file("outside/big", 200'000));
    t.symlink("root/link-to-outside-dir", t / "outside");
    t.symlink("root/loop", t / "root");
    const std::int64_t expected = allocatedBytes(a) + allocatedBytes(b) + allocatedBytes(empty) + allocatedBytes(sparse);
    ASSERT_LT(allocatedBytes(sparse), 1024 * 1024) << "the file system should keep the test file sparse";
    EXPECT_EQ(DirectorySizer::size(t / "root", false), expected);
    EXPECT_EQ(DirectorySizer::size(t / "root/only", false), 0);
}

TEST(DirectorySizer, RootsThatAreLinksAreMeasuredAtTheirTarget) {
    TempTree t;
    auto f = t.file("target/f", 5000);
    auto g = t.file("file", 7000);
    t.symlink("dirlink", t / "target");
    t.symlink("filelink", g);
    t.symlink("dangling", t / "gone");
    std::vector<fs::path> roots{t / "dirlink", t / "filelink", t / "dangling", t / "missing"};
    EXPECT_EQ(DirectorySizer::sizes(roots, false),
              (std::vector<std::int64_t>{allocatedBytes(f), allocatedBytes(g), 0, 0}));
}

TEST(DirectorySizer, HardLinksCountEachTimeUnlessExclusiveOnly) {
    TempTree t;
    auto once = t.file("store/once", 9000);
    auto twice = t.file("store/twice", 20'000);
    t.hardlink("store/twice-again", "store/twice");
    t.hardlink("project/linked", "store/twice");
    t.setMTime("store/once", 1'600'000'000);
    t.setMTime("store/twice", 1'700'000'000);
    const auto one = allocatedBytes(once), two = allocatedBytes(twice);

    auto plain = DirectorySizer::stats(std::vector{t / "store"}, false);
    EXPECT_EQ(plain[0].bytes, one + 2 * two);
    auto exclusive = DirectorySizer::stats(std::vector{t / "store", t / "store/twice"}, true);
    EXPECT_EQ(exclusive[0].bytes, one);
    EXPECT_EQ(exclusive[0].newestModification, sys_seconds(seconds(1'700'000'000)));
    EXPECT_EQ(exclusive[1].bytes, 0) << "a root file with two links counts nothing either";
}

TEST(DirectorySizer, NewestModificationIgnoresTimesAtOrBefore1970AndFolders) {
    TempTree t;
    t.file("old/a");
    t.setMTime("old/a", 0);
    t.file("old/b");
    t.setMTime("old/b", -5);
    t.file("mixed/deep/er/still/x");
    t.setMTime("mixed/deep/er/still/x", 1'650'000'000);
    t.file("mixed/y");
    t.setMTime("mixed/y", 1'500'000'000);
    t.dir("emptydirs/a/b");
    auto s = DirectorySizer::stats(std::vector{t / "old", t / "mixed", t / "emptydirs"}, false);
    EXPECT_EQ(s[0].newestModification, std::nullopt);
    EXPECT_EQ(s[1].newestModification, sys_seconds(seconds(1'650'000'000)));
    EXPECT_EQ(s[2], DirectoryStats{});
}

TEST(DirectorySizer, EveryRootCompletesExactlyOnceWithItsFinalStats) {
    TempTree t;
    std::vector<fs::path> roots;
    // Shapes that finish at different stages: files, failures, trees used up by the first levels, deep and wide trees.
    roots.push_back(t.file("plain-file", 3000));
    roots.push_back(t / "missing");
    roots.push_back(t.dir("empty"));
    t.file("shallow/a", 100);
    roots.push_back(t / "shallow");
    for (int i = 0; i < 40; ++i) t.file("wide/d" + std::to_string(i) + "/e/f", 4096);
    roots.push_back(t / "wide");
    t.file("deep/1/2/3/4/5/6/7/8/9/10/leaf", 8192);
    roots.push_back(t / "deep");
    roots.push_back(t / "wide"); // the same root twice is measured twice
    roots.push_back(t / "empty");

    std::mutex m;
    std::map<std::size_t, std::vector<DirectoryStats>> calls;
    auto result = DirectorySizer::stats(roots, false, [&](std::size_t i, const DirectoryStats& s) {
        std::lock_guard g(m);
        calls[i].push_back(s);
    });
    ASSERT_EQ(result.size(), roots.size());
    for (std::size_t i = 0; i < roots.size(); ++i) {
        SCOPED_TRACE(roots[i].string());
        ASSERT_EQ(calls[i].size(), 1u);
        EXPECT_EQ(calls[i][0], result[i]);
    }
    EXPECT_EQ(result[1].bytes, 0);
    EXPECT_EQ(result[4].bytes, 40 * allocatedBytes(t / "wide/d0/e/f"));
    EXPECT_EQ(result[6], result[4]);
    EXPECT_TRUE(DirectorySizer::stats({}, false, [&](std::size_t, const DirectoryStats&) { FAIL(); }).empty());
}

TEST(DirectorySizer, MissingRootCompletesBeforeTheWalk) {
    TempTree t;
    t.file("tree/a/b/c/d/e/f", 100);
    std::vector<std::size_t> order;
    DirectorySizer::stats(std::vector{t / "tree", t / "nope"}, false, [&](std::size_t i, const DirectoryStats&) {
        order.push_back(i);
    });
    EXPECT_EQ(order, (std::vector<std::size_t>{1, 0}));
}

TEST(DirectorySizer, UnreadableFoldersCountNothingAndStopNothing) {
    TempTree t;
    auto a = t.file("root/open/a", 5000);
    t.file("root/shut/hidden", 50'000);
    auto b = t.file("root/z/deeper/b", 6000);
    t.makeUnreadable("root/shut");
    const fs::path root = t / "root";
    long long measured = test::asUnprivileged([&] {
        // A forked child has no pool threads: keep the walk on this thread.
        bool saved = std::exchange(ParallelMap::detail::nestedFlag(), true);
        auto size = DirectorySizer::size(root, false);
        ParallelMap::detail::nestedFlag() = saved;
        return static_cast<long long>(size);
    });
    EXPECT_EQ(measured, allocatedBytes(a) + allocatedBytes(b));
}

TEST(DirectorySizer, VeryDeepPathsAndOddNamesAreWalked) {
    TempTree t;
    std::string deep = "deep";
    while (deep.size() < 4000) deep += "/segment-of-forty-characters-to-go-deep";
    auto leaf = t.file(deep + "/leaf", 4096);
    auto odd = t.file(std::string("odd/\xff\xfe bad utf8/\n newline"), 4096);
    EXPECT_EQ(DirectorySizer::size(t / "deep", false), allocatedBytes(leaf));
    EXPECT_EQ(DirectorySizer::size(t / "odd", false), allocatedBytes(odd));
}

TEST(DirectorySizer, CancelledWalkStopsAndKeepsItsPartialSum) {
    TempTree t;
    // One chain: the first levels are counted before any walk starts, the rest only by walks.
    std::string path = "chain";
    std::int64_t firstLevel = 0, total = 0;
    for (int level = 0; level < 12; ++level) {
        path += "/l" + std::to_string(level);
        auto f = t.file(path + "/file", 4096);
        total += allocatedBytes(f);
        if (level == 0) firstLevel = allocatedBytes(f);
    }
    ASSERT_EQ(DirectorySizer::size(t / "chain", false), total);
    std::atomic<bool> cancelled{true};
    Cancellation::Scope scope(&cancelled);
    const auto partial = DirectorySizer::size(t / "chain", false);
    EXPECT_GE(partial, firstLevel);
    EXPECT_LT(partial, total);
}
