#include "support/Mount.h"

#include <cerrno>
#include <cstring>
#include <sys/mount.h>
#include <utility>

namespace lumabroom::test {

namespace {
std::string why(const std::string& what) { return what + " failed (" + std::strerror(errno) + "); needs root"; }
} // namespace

ScopedMount ScopedMount::tmpfs(const std::filesystem::path& at) {
    ScopedMount m;
    if (::mount("tmpfs", at.c_str(), "tmpfs", 0, "size=16m") == 0) m.at_ = at;
    else m.failure_ = why("mounting a tmpfs");
    return m;
}

ScopedMount ScopedMount::bind(const std::filesystem::path& from, const std::filesystem::path& at) {
    ScopedMount m;
    if (::mount(from.c_str(), at.c_str(), nullptr, MS_BIND, nullptr) == 0) m.at_ = at;
    else m.failure_ = why("a bind mount");
    return m;
}

ScopedMount::ScopedMount(ScopedMount&& other) noexcept
    : at_(std::exchange(other.at_, {})),
      failure_(std::move(other.failure_)) {}

ScopedMount::~ScopedMount() {
    if (!at_.empty()) ::umount2(at_.c_str(), MNT_DETACH);
}

} // namespace lumabroom::test
