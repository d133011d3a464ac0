#include "scan/ParallelMap.h"
#include "scan/WorkerPool.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <latch>
#include <mutex>
#include <set>
#include <thread>

using namespace lumabroom;

TEST(ParallelMap, KeepsInputOrderAndCallsOnEachOncePerItem) {
    for (std::size_t n : {0u, 1u, 2u, 7u, 500u}) {
        SCOPED_TRACE(n);
        std::vector<int> items(n);
        for (std::size_t i = 0; i < n; ++i) items[i] = static_cast<int>(i);
        std::vector<int> seen(n, 0);
        auto results = ParallelMap::run(items, [](int x) { return x * 3; },
                                        [&](std::size_t i, int r) {
                                            ++seen[i];
                                            EXPECT_EQ(r, static_cast<int>(i) * 3);
                                        });
        ASSERT_EQ(results.size(), n);
        for (std::size_t i = 0; i < n; ++i) {
            EXPECT_EQ(results[i], static_cast<int>(i) * 3);
            EXPECT_EQ(seen[i], 1);
        }
    }
}

TEST(ParallelMap, EmptyOptionalResultsKeepTheirPlace) {
    std::vector<int> items{1, 2, 3, 4};
    auto results = ParallelMap::run(items, [](int x) -> std::optional<int> {
        return x % 2 ? std::nullopt : std::optional(x);
    });
    EXPECT_EQ(results, (std::vector<std::optional<int>>{std::nullopt, 2, std::nullopt, 4}));
}

TEST(ParallelMap, SingleItemRunsOnTheCallingThreadWithItsFlagUntouched) {
    const auto caller = std::this_thread::get_id();
    std::vector<int> one{1};
    std::thread::id ran;
    bool flagInside = true;
    ParallelMap::run(one, [&](int) {
        ran = std::this_thread::get_id();
        flagInside = ParallelMap::detail::nestedFlag();
        return 0;
    });
    EXPECT_EQ(ran, caller);
    EXPECT_FALSE(flagInside);
}

TEST(ParallelMap, NestedRunStaysOnTheOuterItemsThreadAndLeavesTheFlagSet) {
    std::vector<int> outer(8), inner(16);
    std::atomic<int> violations{0};
    std::atomic<int> flagLost{0};
    ParallelMap::run(outer, [&](int) {
        const auto here = std::this_thread::get_id();
        ParallelMap::run(inner, [&](int) {
            if (std::this_thread::get_id() != here) ++violations;
            return 0;
        });
        if (!ParallelMap::detail::nestedFlag()) ++flagLost;
        return 0;
    });
    EXPECT_EQ(violations.load(), 0);
    EXPECT_EQ(flagLost.load(), 0);
    EXPECT_FALSE(ParallelMap::detail::nestedFlag());
}

TEST(ParallelMap, UsesOnlyTheCallerAndTheBoundedPool) {
    const auto caller = std::this_thread::get_id();
    std::mutex m;
    std::set<std::thread::id> threads;
    std::vector<int> items(64);
    for (int round = 0; round < 50; ++round) {
        ParallelMap::run(items, [&](int) {
            std::lock_guard g(m);
            threads.insert(std::this_thread::get_id());
            EXPECT_TRUE(std::this_thread::get_id() == caller || WorkerPool::isWorkerThread());
            return 0;
        });
    }
    EXPECT_LE(threads.size(), WorkerPool::threadCount() + 1);
}

TEST(ParallelMap, OnEachArrivesInOrderOfCompletion) {
    if (WorkerPool::threadCount() < 2) GTEST_SKIP() << "needs two threads";
    // Item 0 cannot finish before item 1 has been reported.
    std::promise<void> secondReported;
    auto reported = secondReported.get_future();
    std::vector<std::size_t> order;
    std::vector<int> items{0, 1};
    ParallelMap::run(items, [&](int x) {
        if (x == 0) reported.wait();
        return x;
    }, [&](std::size_t i, int) {
        order.push_back(i);
        if (i == 1) secondReported.set_value();
    });
    EXPECT_EQ(order, (std::vector<std::size_t>{1, 0}));
}

TEST(ParallelMap, RunsInsidePoolTasksWithoutDeadlock) {
    // Every pool thread runs a task that itself fans out: the callers must finish alone if need be.
    const std::size_t tasks = WorkerPool::threadCount() * 3;
    std::latch done(static_cast<std::ptrdiff_t>(tasks));
    std::atomic<long> sum{0};
    for (std::size_t t = 0; t < tasks; ++t) {
        WorkerPool::submit([&] {
            std::vector<int> items(100, 1);
            auto r = ParallelMap::run(items, [](int x) { return x; });
            for (int x : r) sum += x;
            done.count_down();
        });
    }
    done.wait();
    EXPECT_EQ(sum.load(), static_cast<long>(tasks * 100));
}

TEST(ParallelMap, CancelStateReachesTheHelpers) {
    std::atomic<bool> cancelled{true};
    Cancellation::Scope scope(&cancelled);
    std::vector<int> items(32);
    std::atomic<int> seen{0};
    ParallelMap::run(items, [&](int) {
        if (Cancellation::isCancelled()) ++seen;
        return 0;
    });
    EXPECT_EQ(seen.load(), 32);
}
