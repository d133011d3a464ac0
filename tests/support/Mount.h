#pragma once

#include <filesystem>
#include <string>

namespace lumabroom::test {

// A mount for the life of the object: a fresh tmpfs, or a bind mount of a folder. Mounting needs
// root; where it fails, nothing is mounted and failure() says why, for GTEST_SKIP. Declare it after
// the TempTree that holds it, so that it goes first.
class ScopedMount {
public:
    static ScopedMount tmpfs(const std::filesystem::path& at);
    static ScopedMount bind(const std::filesystem::path& from, const std::filesystem::path& at);
    ScopedMount(ScopedMount&& other) noexcept;
    ScopedMount& operator=(ScopedMount&&) = delete;
    ~ScopedMount();

    bool mounted() const { return failure_.empty(); }
    const std::string& failure() const { return failure_; }

private:
    ScopedMount() = default;
    std::filesystem::path at_;
    std::string failure_;
};

} // namespace lumabroom::test
