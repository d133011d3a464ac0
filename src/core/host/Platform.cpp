#include "host/Platform.h"

#include "host/ChildProcess.h"

#include <cstdlib>
#include <mutex>
#include <sys/resource.h>
#include <thread>
#if defined(__linux__)
#include <sched.h>
#endif

namespace lumabroom::Platform {

int processorCount() {
#if defined(__linux__)
    cpu_set_t set;
    CPU_ZERO(&set);
    if (::sched_getaffinity(0, sizeof set, &set) == 0) {
        int n = CPU_COUNT(&set);
        if (n > 0) return n;
    }
#endif
    unsigned n = std::thread::hardware_concurrency();
    return n > 0 ? static_cast<int>(n) : 1;
}

void raiseOpenFileLimit() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct rlimit limit {};
        if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
        rlim_t wanted = limit.rlim_max;
#if defined(__APPLE__)
        if (wanted == RLIM_INFINITY || wanted > 10240) wanted = 10240; // OPEN_MAX caps setrlimit there
#endif
        if (limit.rlim_cur < wanted) {
            limit.rlim_cur = wanted;
            ::setrlimit(RLIMIT_NOFILE, &limit);
        }
    });
}

void quitNow(int status) {
    ChildProcess::stopAll();
    std::_Exit(status);
}

} // namespace lumabroom::Platform
