#pragma once

#include <atomic>

namespace lumabroom {

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
