#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace lumabroom {

// A fixed set of threads taking jobs in order; an urgent job goes ahead of the queue. Meant to live
// as long as the process and never be destroyed (keep it in a Platform::Lasting or leak it): its
// threads are never joined, so the end of the process does not wait for a job that still runs.
class ThreadPool {
public:
    // `onThreadStart`, when given, runs first on each of the pool's threads.
    explicit ThreadPool(std::size_t threads, void (*onThreadStart)() = nullptr);
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    void submit(std::function<void()> job, bool urgent = false);
    std::size_t size() const { return threads_.size(); }

private:
    [[noreturn]] void loop(void (*onThreadStart)());

    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<std::function<void()>> queue_;
    std::vector<std::thread> threads_;
};

} // namespace lumabroom
