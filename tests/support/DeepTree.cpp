#include "support/DeepTree.h"

#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumabroom::test {

namespace {
std::int64_t writeFile(int folder) {
    const int fd = ::openat(folder, "f", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const std::string block(4096, 'b');
    struct stat st {};
    const bool ok = fd >= 0 && ::write(fd, block.data(), block.size()) == 4096 && ::fstat(fd, &st) == 0;
    if (fd >= 0) ::close(fd);
    return ok ? static_cast<std::int64_t>(st.st_blocks) * 512 : -1;
}
} // namespace

std::int64_t makeFolderChain(const std::filesystem::path& top, int levels, int fileEvery, int sideEvery) {
    std::int64_t bytes = 0;
    int fd = ::open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 1; fd >= 0 && level <= levels; ++level) {
        ::mkdirat(fd, "d", 0755);
        const int next = ::openat(fd, "d", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(fd);
        fd = next;
        if (fd < 0) return -1;
        if (level % fileEvery == 0) bytes += writeFile(fd);
        if (level % sideEvery == 0) {
            ::mkdirat(fd, "s", 0755);
            const int side = ::openat(fd, "s", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            bytes += side >= 0 ? writeFile(side) : -1;
            if (side >= 0) ::close(side);
        }
    }
    if (fd >= 0) ::close(fd);
    return bytes;
}

ScopedOpenFileLimit::ScopedOpenFileLimit(std::uint64_t soft) {
    struct rlimit limit {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    saved_ = limit.rlim_cur;
    limit.rlim_cur = soft;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

ScopedOpenFileLimit::~ScopedOpenFileLimit() {
    struct rlimit limit {};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = saved_;
    ::setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace lumabroom::test
