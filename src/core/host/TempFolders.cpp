#include "host/TempFolders.h"

#include "host/FileSystem.h"
#include "host/Paths.h"

#include <algorithm>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace lumabroom::TempFolders {

namespace {
// Runtime folders keep their sockets at the top (tmux-1000/default, ssh-XXXX/agent.1); deeper
// levels are not searched, so a large build tree in the temporary folder costs little.
constexpr int kSocketSearchDepth = 3;

std::string canonical(std::string path) {
    if (auto resolved = FileSystem::resolvingSymlinks(path)) return *resolved;
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

bool isAtOrBelow(const std::string& path, const std::string& folder) {
    if (folder == "/") return true;
    return path == folder || (path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/');
}

bool isSocketOrFifo(mode_t mode) { return S_ISSOCK(mode) || S_ISFIFO(mode); }

// Whether the folder open at `fd` holds a socket or FIFO within `depth` levels; closes `fd`.
bool holdsSocketOrFifo(int fd, int depth) {
    DIR* folder = ::fdopendir(fd);
    if (!folder) {
        ::close(fd);
        return false;
    }
    bool found = false;
    while (!found) {
        const dirent* entry = ::readdir(folder);
        if (!entry) break;
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat st {};
        if (::fstatat(::dirfd(folder), entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (isSocketOrFifo(st.st_mode)) found = true;
        else if (S_ISDIR(st.st_mode) && depth > 1) {
            int child = ::openat(::dirfd(folder), entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
            if (child >= 0) found = holdsSocketOrFifo(child, depth - 1);
        }
    }
    ::closedir(folder);
    return found;
}

bool holdsSocketOrFifo(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) return false;
    if (isSocketOrFifo(st.st_mode)) return true;
    if (!S_ISDIR(st.st_mode)) return false;
    int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    return fd >= 0 && holdsSocketOrFifo(fd, kSocketSearchDepth);
}

std::string linkTarget(int folder, const char* name) {
    char buffer[4096];
    ssize_t n = ::readlinkat(folder, name, buffer, sizeof buffer);
    return n > 0 ? std::string(buffer, static_cast<std::size_t>(n)) : std::string();
}

// The working folders, programs and open files of the user's other processes, as the kernel
// names them.
std::vector<std::string> pathsInUse() {
    std::vector<std::string> paths;
    DIR* proc = ::opendir("/proc");
    if (!proc) return paths;
    const uid_t user = ::getuid();
    const std::string self = std::to_string(::getpid());
    while (const dirent* entry = ::readdir(proc)) {
        const std::string_view name = entry->d_name;
        if (name.empty() || !std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; }))
            continue;
        if (name == self) continue;
        struct stat st {};
        if (::fstatat(::dirfd(proc), entry->d_name, &st, 0) != 0 || st.st_uid != user) continue;
        int process = ::openat(::dirfd(proc), entry->d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (process < 0) continue;
        for (const char* link : {"cwd", "exe"})
            if (std::string target = linkTarget(process, link); target.starts_with('/'))
                paths.push_back(std::move(target));
        int fds = ::openat(process, "fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ::close(process);
        DIR* open = fds >= 0 ? ::fdopendir(fds) : nullptr;
        if (!open) {
            if (fds >= 0) ::close(fds);
            continue;
        }
        while (const dirent* fd = ::readdir(open))
            if (std::string target = linkTarget(::dirfd(open), fd->d_name); target.starts_with('/'))
                paths.push_back(std::move(target));
        ::closedir(open);
    }
    ::closedir(proc);
    return paths;
}
} // namespace

std::vector<std::filesystem::path> offered(std::vector<std::filesystem::path> entries) {
    const std::string temporary = canonical(Paths::temporaryDirectory());
    if (isAtOrBelow(canonical(Paths::homeDirectory()), temporary)) return {};
    if (!Paths::temporaryDirectoryIsShared()) return entries;

    std::erase_if(entries, [](const auto& entry) { return !FileSystem::isOwnedByCurrentUser(entry.string()); });
    std::erase_if(entries, [](const auto& entry) { return holdsSocketOrFifo(entry.string()); });
    if (entries.empty()) return entries;
    const std::vector<std::string> inUse = pathsInUse();
    std::erase_if(entries, [&](const auto& entry) {
        // The kernel names what is open by its real path; the entry itself may be a link.
        const std::string real =
            canonical(Paths::deletingLastPathComponent(entry.string())) + "/" + entry.filename().string();
        return std::any_of(inUse.begin(), inUse.end(),
                           [&](const std::string& path) { return isAtOrBelow(path, real); });
    });
    return entries;
}

} // namespace lumabroom::TempFolders
