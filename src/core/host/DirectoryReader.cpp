#include "host/DirectoryReader.h"

#include "host/FileSystem.h"

#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#if defined(__linux__)
#include <sys/syscall.h>
#endif

namespace lumabroom {

namespace {
constexpr int kOpenFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

FileInfo infoOf(const struct stat& st) {
    return {static_cast<std::int64_t>(st.st_blocks) * 512, static_cast<std::uint64_t>(st.st_nlink),
            static_cast<std::int64_t>(st.st_mtime), S_ISDIR(st.st_mode), S_ISLNK(st.st_mode)};
}

bool isDotOrDotDot(const char* name) {
    return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

#if defined(__linux__)
// One buffer per thread: a reader is read to its end before another is read on the same thread.
constexpr int kBufferSize = 64 * 1024;
alignas(8) thread_local char tlsBuffer[kBufferSize];

// The fixed head of a getdents64 record; the name follows it.
struct LinuxDirent64Head {
    ino64_t d_ino;
    off64_t d_off;
    unsigned short d_reclen;
    unsigned char d_type;
};
constexpr std::size_t kNameOffset = offsetof(LinuxDirent64Head, d_type) + 1;
#endif
} // namespace

std::optional<FileInfo> statFollowingLinks(const std::string& path) {
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) return std::nullopt;
    return infoOf(st);
}

std::optional<FileInfo> statNotFollowingLinks(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) return std::nullopt;
    return infoOf(st);
}

std::optional<FileIdentity> identityOf(const std::string& path) {
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) return std::nullopt;
    return identityOf(st);
}

std::optional<std::string> resolvedPath(const std::string& path) { return FileSystem::resolvingSymlinks(path); }

std::optional<FileInfo> DirectoryReader::Entry::regularFile() const {
    if (known) return known;
    if (type != DT_REG) return std::nullopt;
    struct stat st {};
    if (::fstatat(folder, name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    return infoOf(st);
}

DirectoryReader::DirectoryReader(DirectoryReader&& other) noexcept { *this = std::move(other); }

DirectoryReader& DirectoryReader::operator=(DirectoryReader&& other) noexcept {
    if (this != &other) {
        close();
        fd_ = std::exchange(other.fd_, -1);
        owned_ = std::exchange(other.owned_, true);
        dir_ = std::exchange(other.dir_, nullptr);
        bufferUsed_ = std::exchange(other.bufferUsed_, 0);
        bufferPosition_ = std::exchange(other.bufferPosition_, 0);
    }
    return *this;
}

void DirectoryReader::open(const std::string& path) {
    close();
    fd_ = ::open(path.c_str(), kOpenFlags);
}

DirectoryReader DirectoryReader::borrowing(int fd) {
    DirectoryReader reader;
#if defined(__linux__)
    reader.fd_ = fd;
    reader.owned_ = false;
    ::lseek(fd, 0, SEEK_SET);
#else
    reader.fd_ = ::dup(fd); // the stream would own it
    if (reader.fd_ >= 0) ::lseek(reader.fd_, 0, SEEK_SET);
#endif
    return reader;
}

DirectoryReader DirectoryReader::openChild(const char* name) const {
    DirectoryReader child;
    if (fd_ >= 0) child.fd_ = openFolderBelow(fd_, name);
    return child;
}

bool DirectoryReader::isMountPointBelow(const char* name) const {
    const int child = openFolderBelow(fd_, name);
    if (child < 0) return errno == EXDEV;
    ::close(child);
    return false;
}

void DirectoryReader::close() {
#if !defined(__linux__)
    if (dir_) {
        ::closedir(static_cast<DIR*>(dir_));
        dir_ = nullptr;
        fd_ = -1;
    }
#endif
    if (fd_ >= 0 && owned_) ::close(fd_);
    fd_ = -1;
    owned_ = true;
    bufferUsed_ = bufferPosition_ = 0;
}

bool DirectoryReader::next(Entry& entry) {
    if (fd_ < 0) return false;
    const char* name = nullptr;
    unsigned char type = DT_UNKNOWN;
#if defined(__linux__)
    for (;;) {
        if (bufferPosition_ >= bufferUsed_) {
            long n = ::syscall(SYS_getdents64, fd_, tlsBuffer, kBufferSize);
            if (n <= 0) return false;
            bufferUsed_ = static_cast<int>(n);
            bufferPosition_ = 0;
        }
        const char* record = tlsBuffer + bufferPosition_;
        const auto* head = reinterpret_cast<const LinuxDirent64Head*>(record);
        bufferPosition_ += head->d_reclen;
        if (isDotOrDotDot(record + kNameOffset)) continue;
        name = record + kNameOffset;
        type = head->d_type;
        break;
    }
#else
    if (!dir_) {
        dir_ = ::fdopendir(fd_);
        if (!dir_) return false;
    }
    for (;;) {
        const dirent* d = ::readdir(static_cast<DIR*>(dir_));
        if (!d) return false;
        if (isDotOrDotDot(d->d_name)) continue;
        name = d->d_name;
        type = d->d_type;
        break;
    }
#endif
    entry.name = name;
    entry.folder = fd_;
    entry.known.reset();
    if (type == DT_UNKNOWN) {
        struct stat st {};
        if (::fstatat(fd_, name, &st, AT_SYMLINK_NOFOLLOW) == 0) {
            type = S_ISDIR(st.st_mode) ? DT_DIR : S_ISREG(st.st_mode) ? DT_REG : DT_LNK;
            if (type == DT_REG) entry.known = infoOf(st);
        } else {
            type = DT_LNK; // gone or unreadable: counts nothing
        }
    }
    entry.type = type;
    entry.isDirectory = type == DT_DIR;
    return true;
}

} // namespace lumabroom
