#include "concurrency/ThreadPool.h"

namespace lumabroom {

ThreadPool::ThreadPool(std::size_t threads, void (*onThreadStart)()) {
    threads_.reserve(threads);
    for (std::size_t i = 0; i < threads; ++i) threads_.emplace_back([this, onThreadStart] { loop(onThreadStart); });
}

void ThreadPool::submit(std::function<void()> job, bool urgent) {
    {
        std::lock_guard guard(mutex_);
        if (urgent) queue_.push_front(std::move(job));
        else queue_.push_back(std::move(job));
    }
    ready_.notify_one();
}

void ThreadPool::loop(void (*onThreadStart)()) {
    if (onThreadStart) onThreadStart();
    for (;;) {
        std::function<void()> job;
        {
            std::unique_lock guard(mutex_);
            ready_.wait(guard, [this] { return !queue_.empty(); });
            job = std::move(queue_.front());
            queue_.pop_front();
        }
        job();
    }
}

} // namespace lumabroom
