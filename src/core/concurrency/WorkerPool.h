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

} // namespace lumabroom
