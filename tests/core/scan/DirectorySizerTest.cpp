#include "scan/DirectorySizer.h"
#include "scan/ParallelMap.h"
#include "scan/WorkerPool.h"

#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <map>

using namespace lumabroom;
using lumabroom::test::allocatedBytes;
using lumabroom::test::TempTree;
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
    EXPECT_EQ(DirectorySizer::sizes(roots, false), (std::vector<std::int64_t>{allocatedBytes(odd), allocatedBytes(a), 0, 0}));
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
    const std::vector<fs::path> roots{t.file("plain-file", 3000), t / "missing", t.dir("empty/dirs/only"), t / "wide",
                                      t / "deep", t / "wide", t / "empty"};
    // No lock: calls never overlap.
    std::map<std::size_t, std::vector<DirectoryStats>> calls;
    auto result = DirectorySizer::stats(roots, false, [&](std::size_t i, const DirectoryStats& s) {
        calls[i].push_back(s);
    });
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
