#pragma once

#include <atomic>
#include <cstddef>
#include <functional>

namespace lumabroom {

namespace WorkerPool {
// The one pool of the process: one thread per processor, started at first use and never grown.
// Rule tasks and the parallel stages inside them share it. An `urgent` job goes ahead of the queue:
// helpers of a running stage are worth more than starting another rule. The pool is never torn
// down: the process may end while jobs run, and they are simply abandoned.
void submit(std::function<void()> job, bool urgent = false);
std::size_t threadCount();
bool isWorkerThread();
} // namespace WorkerPool

// The cancel state of the task that the current thread runs. Walks poll it and stop early,
// keeping what they have summed.
namespace Cancellation {
bool isCancelled();
const std::atomic<bool>* current();

// Makes `flag` the current thread's cancel state for the life of the scope.
class Scope {
public:
    explicit Scope(const std::atomic<bool>* flag);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    const std::atomic<bool>* saved_;
};
} // namespace Cancellation

} // namespace lumabroom
