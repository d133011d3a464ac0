#include "concurrency/ParallelMap.h"
#include "concurrency/Cancellation.h"
#include "concurrency/WorkerPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <numeric>
#include <thread>

using namespace lumabroom;

TEST(ParallelMap, KeepsInputOrderAndCallsOnEachOncePerItemWithItsResult) {
    for (std::size_t n : {0u, 1u, 2u, 7u, 500u}) {
        std::vector<std::size_t> items(n), reported(n, 0);
        std::iota(items.begin(), items.end(), 0);
        // Results start at one, so that a missing or a second call shows.
        auto results = ParallelMap::run(
            items, [](std::size_t x) { return x + 1; }, [&](std::size_t i, std::size_t r) { reported[i] += r; });
        std::iota(items.begin(), items.end(), 1);
        EXPECT_EQ(results, items) << n;
        EXPECT_EQ(reported, items) << n;
    }
}

TEST(ParallelMap, UsesOnlyTheCallerAndThePoolAndNestedRunsStayOnTheirThreadWithTheCancelState) {
    const auto caller = std::this_thread::get_id();
    std::atomic<int> strayInner{0};
    std::atomic<bool> cancelled{true};
    Cancellation::Scope scope(&cancelled);
    for (int round = 0; round < 20; ++round) {
        ParallelMap::run(std::vector<int>(16), [&](int) {
            const auto here = std::this_thread::get_id();
            EXPECT_TRUE(here == caller || WorkerPool::isWorkerThread());
            ParallelMap::run(std::vector<int>(16), [&](int) {
                return strayInner += std::this_thread::get_id() != here || !Cancellation::isCancelled();
            });
            EXPECT_TRUE(ParallelMap::detail::nestedFlag());
            return 0;
        });
    }
    EXPECT_EQ(strayInner.load(), 0);
    EXPECT_FALSE(ParallelMap::detail::nestedFlag());
}

TEST(ParallelMap, RunsInsidePoolTasksWithoutDeadlock) {
    // Every pool thread runs a task that itself fans out, so no helper can start: the callers must finish alone.
    const auto tasks = static_cast<std::ptrdiff_t>(WorkerPool::threadCount());
    std::latch allBusy(tasks), done(tasks);
    std::atomic<long> sum{0};
    for (std::ptrdiff_t t = 0; t < tasks; ++t) {
        WorkerPool::submit([&] {
            allBusy.arrive_and_wait();
            for (int x : ParallelMap::run(std::vector<int>(100, 1), [](int x) { return x; })) sum += x;
            done.count_down();
        });
    }
    done.wait();
    EXPECT_EQ(sum.load(), tasks * 100);
}
