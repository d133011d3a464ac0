#include "scan/DirectorySizer.h"
#include "concurrency/Cancellation.h"
#include "concurrency/ParallelMap.h"
#include "concurrency/WorkerPool.h"

#include "host/Platform.h"
#include "host/Removal.h"

#include "support/DeepTree.h"
#include "support/Mount.h"
#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <map>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

// Link loops and very deep paths are measured end to end by the scanner's tests.
TEST(DirectorySizer, CountsAllocatedBlocksOfReadableRegularFilesOnlyAndFollowsNoLinkBelowTheRoot) {
    TempTree t;
    auto a = t.file("root/a", 10'000);
    auto sparse = t.sparseFile("root/disk.raw", 512LL * 1024 * 1024);
    auto odd = t.file("root/odd/\xff\xfe bad utf8/\n newline", 4096);
    t.file("root/shut/hidden", 50'000);
    t.makeUnreadable("root/shut");
    t.symlink("root/link-to-outside", t.file("outside/big", 200'000));
    t.symlink("root/link-to-outside-dir", t / "outside");
    // A root that is a link is measured at its target.
    t.symlink("dirlink", t / "root/odd");
    t.symlink("filelink", a);
    t.symlink("dangling", t / "gone");
    ASSERT_LT(allocatedBytes(sparse), 1024 * 1024) << "the file system should keep the test file sparse";
    const long long measured = test::asUnprivileged([root = t / "root"] {
        // A forked child has no pool threads: keep the walk on this thread.
        bool saved = std::exchange(ParallelMap::detail::nestedFlag(), true);
        auto size = DirectorySizer::size(root, false);
        ParallelMap::detail::nestedFlag() = saved;
        return static_cast<long long>(size);
    });
    EXPECT_EQ(measured, allocatedBytes(a) + allocatedBytes(sparse) + allocatedBytes(odd));
    const std::vector roots{t / "dirlink", t / "filelink", t / "dangling", t / "missing"};
    EXPECT_EQ(DirectorySizer::sizes(roots, false),
              (std::vector<std::int64_t>{allocatedBytes(odd), allocatedBytes(a), 0, 0}));
}

TEST(DirectorySizer, HardLinksCountEachTimeUnlessExclusiveOnlyAndOnlyFileTimesAfter1970Count) {
    TempTree t;
    const auto once = allocatedBytes(t.file("store/once", 9000));
    const auto twice = allocatedBytes(t.file("store/deep/twice", 20'000));
    t.hardlink("store/twice-again", "store/deep/twice");
    t.file("old/a");
    t.file("old/b");
    for (const auto& [file, time] :
         {std::pair{"store/once", 1'600'000'000}, {"store/deep/twice", 1'700'000'000}, {"old/a", 0}, {"old/b", -5}})
        t.setMTime(file, time);
    EXPECT_EQ(DirectorySizer::size(t / "store", false), once + 2 * twice);
    // A file with two links counts nothing, as a root too, but its time still counts.
    const std::chrono::sys_seconds newest{std::chrono::seconds(1'700'000'000)};
    EXPECT_EQ(DirectorySizer::stats(std::vector{t / "store", t / "store/deep/twice", t / "old"}, true),
              (std::vector<DirectoryStats>{{once, newest}, {0, newest}, {}}));
}

TEST(DirectorySizer, EveryRootCompletesExactlyOnceWithItsFinalStats) {
    TempTree t;
    // Shapes that finish at different stages: files, failures, trees used up by the first levels, deep and wide trees.
    for (int i = 0; i < 40; ++i) t.file("wide/d" + std::to_string(i) + "/e/f", 4096);
    t.file("deep/1/2/3/4/5/6/7/8/9/10/leaf", 8192);
    // The same root twice is measured twice.
    const std::vector<fs::path> roots{t.file("plain-file", 3000),
                                      t / "missing",
                                      t.dir("empty/dirs/only"),
                                      t / "wide",
                                      t / "deep",
                                      t / "wide",
                                      t / "empty"};
    // No lock: calls never overlap.
    std::map<std::size_t, std::vector<DirectoryStats>> calls;
    auto result =
        DirectorySizer::stats(roots, false, [&](std::size_t i, const DirectoryStats& s) { calls[i].push_back(s); });
    ASSERT_EQ(result.size(), roots.size());
    for (std::size_t i = 0; i < roots.size(); ++i) EXPECT_EQ(calls[i], std::vector{result[i]}) << roots[i];
    EXPECT_EQ(result[3].bytes, 40 * allocatedBytes(t / "wide/d0/e/f"));
    EXPECT_EQ(result[5], result[3]);
}

TEST(DirectorySizer, CancelledWalkStopsAndKeepsItsPartialSum) {
    TempTree t;
    // One chain: the first levels are counted before any walk starts, the rest only by walks.
    std::string path = "chain";
    std::int64_t firstLevel = 0, total = 0;
    for (int level = 0; level < 12; ++level) {
        path += "/l" + std::to_string(level);
        total += allocatedBytes(t.file(path + "/file", 4096));
        if (level == 0) firstLevel = total;
    }
    ASSERT_EQ(DirectorySizer::size(t / "chain", false), total);
    std::atomic<bool> cancelled{true};
    Cancellation::Scope scope(&cancelled);
    const auto partial = DirectorySizer::size(t / "chain", false);
    EXPECT_GE(partial, firstLevel);
    EXPECT_LT(partial, total);
}

TEST(DirectorySizer, TheNewestTimeOfARootIsTheNewestOfAllItsShards) {
    TempTree t;
    // Twelve shards, below the levels that are split up front whatever the number of processors;
    // the newest file is in the smallest, which tends to finish first.
    for (int i = 0; i < 12; ++i) {
        const std::string shard = "root/s" + std::to_string(i) + "/a/b/c/d";
        for (int k = 0; k < (i == 3 ? 1 : 100); ++k) {
            const std::string file = shard + "/f" + std::to_string(k);
            t.file(file, 10);
            t.setMTime(file, i == 3 ? 1'700'000'000 : 1'600'000'000 + i);
        }
    }
    const std::vector roots{t / "root"};
    for (int round = 0; round < 3; ++round) {
        std::vector<DirectoryStats> seen;
        DirectorySizer::stats(roots, false, [&](std::size_t, const DirectoryStats& s) { seen.push_back(s); });
        ASSERT_EQ(seen.size(), 1u);
        EXPECT_EQ(seen[0].newestModification, std::chrono::sys_seconds(std::chrono::seconds(1'700'000'000)));
    }
}

TEST(DirectorySizer, StaysOnTheFileSystemOfEachRoot) {
    for (bool bind : {false, true}) {
        SCOPED_TRACE(bind ? "bind mounts of the same file system" : "tmpfs");
        TempTree t;
        const auto own =
            allocatedBytes(t.file("root/a.txt", 5000)) + allocatedBytes(t.file("root/x/1/2/3/4/5/b.txt", 7000));
        // One mount met while the first levels are split into shards, one in a walk.
        std::vector<ScopedMount> mounts;
        for (const char* at : {"root/m", "root/x/1/2/3/4/5/m"}) {
            const fs::path point = t.dir(at),
                           source = t.dir(std::string("sources/") + (mounts.empty() ? "one" : "two"));
            mounts.push_back(bind ? ScopedMount::bind(source, point) : ScopedMount::tmpfs(point));
            if (!mounts.back().mounted()) GTEST_SKIP() << mounts.back().failure();
        }
        const auto mounted = allocatedBytes(t.file("root/m/big", 300'000));
        t.file("root/x/1/2/3/4/5/m/big", 300'000);
        t.symlink("link-to-mount", t / "root/m");
        EXPECT_EQ(DirectorySizer::sizes(std::vector{t / "root", t / "root/m", t / "link-to-mount"}, false),
                  (std::vector<std::int64_t>{own, mounted, mounted}));
    }
}

TEST(DirectorySizer, AnyDepthIsMeasuredExactlyWithinALowLimitOfOpenFiles) {
    TempTree t;
    const std::int64_t expected = makeFolderChain(t.dir("deep"), 25'000, 100, 250);
    ASSERT_GT(expected, 0);
    Platform::raiseOpenFileLimit(); // done once; the limit below must hold
    std::vector<DirectoryStats> measured;
    {
        ScopedOpenFileLimit limit(1024);
        measured = DirectorySizer::stats(std::vector{t / "deep"}, false);
    }
    ASSERT_EQ(measured.size(), 1u);
    EXPECT_EQ(measured[0].bytes, expected);
    EXPECT_TRUE(measured[0].complete);
    EXPECT_EQ(Removal::deleteItem((t / "deep").string()), std::nullopt);
}

TEST(DirectorySizer, ATreeThatCannotBeWalkedWhollySaysSo) {
    if (!fs::exists("/proc/self/fd")) GTEST_SKIP() << "no /proc/self/fd to count open files";
    TempTree t;
    const std::int64_t whole = makeFolderChain(t.dir("deep"), 60, 1, 1'000);
    Platform::raiseOpenFileLimit();
    const auto open = static_cast<std::uint64_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
    // On this thread only, so that the count of open files holds.
    const bool saved = std::exchange(ParallelMap::detail::nestedFlag(), true);
    std::vector<DirectoryStats> measured;
    {
        ScopedOpenFileLimit limit(open + 4);
        measured = DirectorySizer::stats(std::vector{t / "deep"}, false);
    }
    ParallelMap::detail::nestedFlag() = saved;
    ASSERT_EQ(measured.size(), 1u);
    EXPECT_FALSE(measured[0].complete);
    EXPECT_LT(measured[0].bytes, whole);
    EXPECT_TRUE(DirectorySizer::stats(std::vector{t / "deep"}, false)[0].complete);
}
