#pragma once

#include <cstdint>
#include <filesystem>

namespace lumabroom::test {

// Makes `levels` folders named "d", each inside the one before, below the existing folder `top`;
// every `fileEvery`th level holds a file "f" of 4 KiB, and every `sideEvery`th a folder "s" with
// such a file. Works by descriptors, so any depth can be made. Gives the allocated bytes of the
// files made.
std::int64_t makeFolderChain(const std::filesystem::path& top, int levels, int fileEvery, int sideEvery);

// Sets the soft limit of open files for the life of the object.
class ScopedOpenFileLimit {
public:
    explicit ScopedOpenFileLimit(std::uint64_t soft);
    ~ScopedOpenFileLimit();
    ScopedOpenFileLimit(const ScopedOpenFileLimit&) = delete;
    ScopedOpenFileLimit& operator=(const ScopedOpenFileLimit&) = delete;

private:
    std::uint64_t saved_ = 0;
};

} // namespace lumabroom::test
