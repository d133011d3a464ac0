#include "concurrency/WorkerPool.h"

#include "concurrency/Cancellation.h"
#include "concurrency/ParallelMap.h"
#include "concurrency/ThreadPool.h"
#include "host/Platform.h"

#include <algorithm>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace lumabroom {

namespace {
thread_local bool tlsIsWorker = false;
thread_local bool tlsNested = false;

ThreadPool& pool() {
    static Platform::Lasting<ThreadPool> instance(static_cast<std::size_t>(Platform::processorCount()),
                                                  [] { tlsIsWorker = true; });
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
