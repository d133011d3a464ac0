// The least a walker of the scan's roots must do, as a yardstick for lumabroom-scan: two threads
// share a stack of folders, read each with getdents64 (64 KiB at a time) and fstatat its regular
// files; no mount check, no path kept per file, nothing else. A root that is a link is followed,
// links below are not. Prints the allocated bytes of all roots.
//
//   bare_walk ROOTS_FILE     (the roots, each ended by NUL)
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {
struct Head {
    ino64_t ino;
    off64_t off;
    unsigned short reclen;
    unsigned char type;
};

std::mutex mutex;
std::condition_variable changed;
std::vector<std::string> folders;
int busy = 0;
std::uint64_t total = 0;

void worker() {
    alignas(8) static thread_local char buffer[64 * 1024];
    std::uint64_t bytes = 0;
    std::vector<std::string> found;
    for (;;) {
        std::string folder;
        {
            std::unique_lock lock(mutex);
            changed.wait(lock, [] { return !folders.empty() || busy == 0; });
            if (folders.empty()) break;
            folder = std::move(folders.back());
            folders.pop_back();
            ++busy;
        }
        const int fd =
            ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (folder.back() == '/' ? 0 : O_NOFOLLOW));
        if (fd >= 0) {
            for (long n; (n = ::syscall(SYS_getdents64, fd, buffer, sizeof buffer)) > 0;) {
                for (long at = 0; at < n;) {
                    const auto* head = reinterpret_cast<const Head*>(buffer + at);
                    const char* name = buffer + at + offsetof(Head, type) + 1;
                    at += head->reclen;
                    if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
                    unsigned char type = head->type;
                    struct stat st {};
                    if (type == DT_UNKNOWN || type == DT_REG) {
                        if (::fstatat(fd, name, &st, AT_SYMLINK_NOFOLLOW) != 0) continue;
                        type = S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : DT_LNK;
                    }
                    if (type == DT_REG) bytes += static_cast<std::uint64_t>(st.st_blocks) * 512;
                    else if (type == DT_DIR)
                        found.push_back((folder.back() == '/' ? folder.substr(0, folder.size() - 1) : folder) + "/"
                                        + name);
                }
            }
            ::close(fd);
        }
        {
            std::lock_guard lock(mutex);
            --busy;
            for (auto& f : found) folders.push_back(std::move(f));
        }
        found.clear();
        changed.notify_all();
    }
    std::lock_guard lock(mutex);
    total += bytes;
}
} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: bare_walk ROOTS_FILE\n");
        return 2;
    }
    std::ifstream in(argv[1], std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (std::size_t start = 0, end; (end = text.find('\0', start)) != std::string::npos; start = end + 1) {
        const std::string root = text.substr(start, end - start);
        struct stat st {};
        if (::stat(root.c_str(), &st) != 0) continue;
        if (S_ISDIR(st.st_mode)) folders.push_back(root + "/"); // a trailing slash follows a root link
        else total += static_cast<std::uint64_t>(st.st_blocks) * 512;
    }
    std::thread second(worker);
    worker();
    second.join();
    std::printf("%llu\n", static_cast<unsigned long long>(total));
}
