#include "host/FolderChain.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#if defined(__linux__)
#include <linux/openat2.h>
#include <sys/syscall.h>
#endif

namespace lumabroom {

namespace {
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
} // namespace

FileIdentity identityOf(const struct stat& st) {
    return {static_cast<std::uint64_t>(st.st_dev), static_cast<std::uint64_t>(st.st_ino)};
}

int openFolderBelow(int parentFd, const char* name) {
#if defined(__linux__)
    // openat2 refuses a mount, bind mounts of the same file system too, at no extra cost.
    static std::atomic<bool> lacksOpenat2{false};
    if (!lacksOpenat2.load(std::memory_order_relaxed)) {
        open_how how{};
        how.flags = kFolderFlags;
        how.resolve = RESOLVE_NO_XDEV | RESOLVE_NO_SYMLINKS;
        const long fd = ::syscall(SYS_openat2, parentFd, name, &how, sizeof how);
        if (fd >= 0 || errno != ENOSYS) return static_cast<int>(fd);
        lacksOpenat2.store(true, std::memory_order_relaxed);
    }
#endif
    const int fd = ::openat(parentFd, name, kFolderFlags);
    if (fd < 0) return -1;
    struct stat parent {
    }, child{};
    if (::fstat(parentFd, &parent) != 0 || ::fstat(fd, &child) != 0 || parent.st_dev != child.st_dev) {
        ::close(fd);
        errno = EXDEV;
        return -1;
    }
    return fd;
}

FolderChain::FolderChain(int startFd, std::size_t budget) : budget_(std::max<std::size_t>(budget, 2)) {
    levels_.push_back({{}, startFd, {}, false});
}

FolderChain::FolderChain(const std::string& startPath, std::size_t budget) : FolderChain(-1, budget) {
    levels_[0].fd = ::open(startPath.c_str(), kFolderFlags);
    ownsStart_ = true;
}

FolderChain::~FolderChain() {
    if (ownsStart_ && levels_[0].fd >= 0) ::close(levels_[0].fd);
    for (std::size_t i = 1; i < levels_.size(); ++i)
        if (levels_[i].fd >= 0) ::close(levels_[i].fd);
}

FolderChain::Descent FolderChain::descend(const char* name) {
    const int parent = fd();
    if (parent < 0) return Descent::lost;
    const int child = openFolderBelow(parent, name);
    if (child < 0) {
        switch (errno) {
        case EXDEV: return Descent::mountPoint;
        case ELOOP:
        case ENOTDIR: return Descent::notFolder;
        case EMFILE:
        case ENFILE:
        case ENOMEM: return Descent::lost;
        default: return Descent::failed;
        }
    }
    levels_.push_back({name, child, {}, false});
    openLevels_.push_back(depth());
    keepWithinBudget(depth());
    return Descent::entered;
}

void FolderChain::ascend() {
    if (levels_.size() <= 1) return;
    if (levels_.back().fd >= 0) {
        ::close(levels_.back().fd);
        std::erase(openLevels_, depth());
    }
    levels_.pop_back();
}

int FolderChain::fd(std::size_t level) {
    if (levels_[level].fd >= 0 || level == 0) return levels_[level].fd;
    std::size_t from = level;
    while (levels_[from].fd < 0) --from; // level 0 is always open
    for (std::size_t j = from + 1; j <= level; ++j) {
        const int reopened = openFolderBelow(levels_[j - 1].fd, levels_[j].name.c_str());
        if (reopened < 0) return -1;
        struct stat st {};
        if (::fstat(reopened, &st) != 0 || !levels_[j].known || identityOf(st) != levels_[j].identity) {
            ::close(reopened);
            errno = ESTALE;
            return -1;
        }
        levels_[j].fd = reopened;
        openLevels_.push_back(j);
        keepWithinBudget(j);
    }
    return levels_[level].fd;
}

void FolderChain::keepWithinBudget(std::size_t keep) {
    while (openLevels_.size() > budget_) {
        // The deepest and `keep` are in use; of the rest, the one with the fewest trailing zero bits
        // goes first, the shallowest of those.
        std::size_t victim = 0;
        for (std::size_t i : openLevels_) {
            if (i == keep || i == depth()) continue;
            if (victim == 0 || std::countr_zero(i) < std::countr_zero(victim)
                || (std::countr_zero(i) == std::countr_zero(victim) && i < victim))
                victim = i;
        }
        if (victim == 0) return;
        Level& level = levels_[victim];
        if (!level.known) {
            struct stat st {};
            level.known = ::fstat(level.fd, &st) == 0;
            level.identity = identityOf(st);
        }
        ::close(level.fd);
        level.fd = -1;
        std::erase(openLevels_, victim);
    }
}

} // namespace lumabroom
