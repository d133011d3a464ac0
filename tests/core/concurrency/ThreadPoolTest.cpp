#include "concurrency/ThreadPool.h"

#include <gtest/gtest.h>

#include <latch>
#include <mutex>
#include <set>
#include <string>
#include <thread>

using namespace lumabroom;

namespace {
thread_local bool tlsStarted = false;
}

// One thread, held busy while the queue fills: the urgent job jumps the queue, the others keep
// their order, and every job runs on a thread that went through the start hook.
TEST(ThreadPool, RunsUrgentJobsFirstAndOthersInOrderOnItsStartedThreads) {
    static ThreadPool& pool = *new ThreadPool(1, [] { tlsStarted = true; });
    std::latch holding(1), release(1), done(4);
    std::mutex mutex;
    std::string order;
    bool allStarted = true;
    const auto job = [&](char name) {
        return [&, name] {
            std::lock_guard guard(mutex);
            order += name;
            allStarted = allStarted && tlsStarted;
            done.count_down();
        };
    };
    pool.submit([&] {
        holding.count_down();
        release.wait();
    });
    holding.wait();
    pool.submit(job('a'));
    pool.submit(job('b'));
    pool.submit(job('u'), /*urgent=*/true);
    pool.submit(job('c'));
    release.count_down();
    done.wait();
    EXPECT_EQ(order, "uabc");
    EXPECT_TRUE(allStarted);
    EXPECT_FALSE(tlsStarted); // not the caller's thread
    EXPECT_EQ(pool.size(), 1u);
}
