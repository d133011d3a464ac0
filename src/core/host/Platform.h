#pragma once

namespace lumabroom::Platform {

// Processors available to this process, at least 1.
int processorCount();

// Lifts the soft limit of open files to the hard limit, once; deep trees hold one descriptor per level.
void raiseOpenFileLimit();

constexpr bool isMacOS() {
#if defined(__APPLE__)
    return true;
#else
    return false;
#endif
}

} // namespace lumabroom::Platform
