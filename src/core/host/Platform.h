#pragma once

#include <utility>

namespace lumabroom::Platform {

// Processors available to this process, at least 1.
int processorCount();

// Lifts the soft limit of open files to the hard limit, once; deep trees hold one descriptor per level.
void raiseOpenFileLimit();

// Ends the process at once, whatever runs: every outside process that is still running is killed,
// and the process exits with `status` without running destructors or exit handlers, so work left
// on the pool is abandoned and nothing is written after this call.
[[noreturn]] void quitNow(int status);

constexpr bool isMacOS() {
#if defined(__APPLE__)
    return true;
#else
    return false;
#endif
}

// A value that is built in place and never destroyed, for state of the process that threads still
// running at exit may touch.
template <typename T>
class Lasting {
public:
    template <typename... Args>
    explicit Lasting(Args&&... args) : value_(std::forward<Args>(args)...) {}
    ~Lasting() {}
    Lasting(const Lasting&) = delete;
    Lasting& operator=(const Lasting&) = delete;
    T& operator*() { return value_; }
    T* operator->() { return &value_; }

private:
    union {
        T value_;
    };
};

} // namespace lumabroom::Platform
