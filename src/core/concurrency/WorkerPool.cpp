#include "concurrency/WorkerPool.h"

#include "concurrency/Cancellation.h"
#include "concurrency/ParallelMap.h"
#include "host/Platform.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace lumabroom {

namespace {
thread_local bool tlsIsWorker = false;
thread_local bool tlsNested = false;

class Pool {
public:
    explicit Pool(std::size_t n) {
        threads_.reserve(n);
        for (std::size_t i = 0; i < n; ++i) threads_.emplace_back([this] { loop(); });
    }
    void submit(std::function<void()> job, bool urgent) {
        {
            std::lock_guard guard(mutex_);
            if (urgent) queue_.push_front(std::move(job));
            else queue_.push_back(std::move(job));
        }
        ready_.notify_one();
    }
    std::size_t size() const { return threads_.size(); }

private:
    void loop() {
        tlsIsWorker = true;
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

    std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<std::function<void()>> queue_;
    std::vector<std::thread> threads_;
};

// Never destroyed, so the end of the process does not wait for jobs that still run.
Pool& pool() {
    static Platform::Lasting<Pool> instance(static_cast<std::size_t>(Platform::processorCount()));
    return *instance;
}

// Shared by the caller and the helpers of one forEachIndex; helpers that start after the last
// item was taken find nothing to do and never touch `body`.
struct Stage {
    std::size_t count = 0;
    std::atomic<std::size_t> next{0};
    std::size_t done = 0;
    std::mutex mutex;
    std::condition_variable finished;
    const std::function<void(std::size_t)>* body = nullptr;
    const std::atomic<bool>* cancel = nullptr;
};

void work(Stage& stage) {
    Cancellation::Scope scope(stage.cancel);
    bool saved = tlsNested;
    tlsNested = true;
    for (std::size_t i; (i = stage.next.fetch_add(1)) < stage.count;) {
        (*stage.body)(i);
        std::lock_guard guard(stage.mutex);
        if (++stage.done == stage.count) stage.finished.notify_all();
    }
    tlsNested = saved;
}
} // namespace

namespace WorkerPool {
void submit(std::function<void()> job, bool urgent) { pool().submit(std::move(job), urgent); }
std::size_t threadCount() { return pool().size(); }
bool isWorkerThread() { return tlsIsWorker; }
} // namespace WorkerPool

namespace ParallelMap::detail {
bool& nestedFlag() { return tlsNested; }

void forEachIndex(std::size_t n, const std::function<void(std::size_t)>& body) {
    auto stage = std::make_shared<Stage>();
    stage->count = n;
    stage->body = &body;
    stage->cancel = Cancellation::current();
    // The caller works too, so the pool lends one thread fewer than it has: never more busy
    // threads than processors.
    const std::size_t helpers = std::min(WorkerPool::threadCount() - 1, n - 1);
    for (std::size_t h = 0; h < helpers; ++h) WorkerPool::submit([stage] { work(*stage); }, /*urgent=*/true);
    work(*stage);
    std::unique_lock guard(stage->mutex);
    stage->finished.wait(guard, [&] { return stage->done == stage->count; });
}
} // namespace ParallelMap::detail

} // namespace lumabroom
