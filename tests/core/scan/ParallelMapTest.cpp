#include "scan/ParallelMap.h"
#include "scan/WorkerPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <mutex>
#include <numeric>
#include <set>
#include <thread>

using namespace lumabroom;

TEST(ParallelMap, KeepsInputOrderAndCallsOnEachOncePerItemWithItsResult) {
    for (std::size_t n : {0u, 1u, 2u, 7u, 500u}) {
        std::vector<std::size_t> items(n), calls(n, 0), reported(n, n);
        std::iota(items.begin(), items.end(), 0);
        auto results = ParallelMap::run(items, [](std::size_t x) { return x; }, [&](std::size_t i, std::size_t r) {
            ++calls[i];
            reported[i] = r;
        });
        EXPECT_EQ(results, items) << n;
        EXPECT_EQ(reported, items) << n;
        EXPECT_EQ(calls, std::vector<std::size_t>(n, 1)) << n;
    }
}

TEST(ParallelMap, UsesOnlyTheCallerAndTheBoundedPoolAndNestedRunsStayOnTheirThread) {
    const auto caller = std::this_thread::get_id();
    std::mutex m;
    std::set<std::thread::id> threads;
    std::atomic<int> strayInner{0};
    for (int round = 0; round < 20; ++round) {
        ParallelMap::run(std::vector<int>(16), [&](int) {
            const auto here = std::this_thread::get_id();
            EXPECT_TRUE(here == caller || WorkerPool::isWorkerThread());
            ParallelMap::run(std::vector<int>(16), [&](int) { return strayInner += std::this_thread::get_id() != here; });
            EXPECT_TRUE(ParallelMap::detail::nestedFlag());
            std::lock_guard g(m);
            threads.insert(here);
            return 0;
        });
    }
    EXPECT_EQ(strayInner.load(), 0);
    EXPECT_LE(threads.size(), WorkerPool::threadCount() + 1);
    EXPECT_FALSE(ParallelMap::detail::nestedFlag());
}

TEST(ParallelMap, RunsInsidePoolTasksWithoutDeadlockAndCarriesTheCancelState) {
    // Every pool thread runs a task that itself fans out: the callers must finish alone if need be.
    const std::size_t tasks = WorkerPool::threadCount() * 3;
    std::latch done(static_cast<std::ptrdiff_t>(tasks));
    std::atomic<long> sum{0};
    for (std::size_t t = 0; t < tasks; ++t) {
        WorkerPool::submit([&] {
            for (int x : ParallelMap::run(std::vector<int>(100, 1), [](int x) { return x; })) sum += x;
            done.count_down();
        });
    }
    done.wait();
    EXPECT_EQ(sum.load(), static_cast<long>(tasks * 100));

    std::atomic<bool> cancelled{true};
    Cancellation::Scope scope(&cancelled);
    std::atomic<int> seen{0};
    ParallelMap::run(std::vector<int>(32), [&](int) { return seen += Cancellation::isCancelled(); });
    EXPECT_EQ(seen.load(), 32);
}
