#include "host/FileSystem.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace lumabroom::FileSystem {

std::optional<std::vector<std::string>> listDirectory(const std::string& path) {
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path.c_str()), ::closedir);
    if (!dir) return std::nullopt;
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = ::readdir(dir.get())) {
        const char* name = entry->d_name;
        if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
        names.emplace_back(name);
    }
    if (errno != 0) return std::nullopt;
    return names;
}

bool exists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

bool isDirectory(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool isExecutableFile(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && !S_ISDIR(st.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

std::optional<std::string> resolvingSymlinks(const std::string& path) {
    std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), std::free);
    if (!resolved) return std::nullopt;
    return std::string(resolved.get());
}

namespace {
// Up to `bytes` bytes from the start; nothing if the file cannot be read or is no regular file.
std::optional<std::string> readUpTo(const std::string& path, std::size_t bytes) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string text(bytes, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (in.bad() || (in.fail() && !in.eof())) return std::nullopt;
    text.resize(static_cast<std::size_t>(in.gcount()));
    return text;
}
} // namespace

std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes) {
    auto text = readUpTo(path, maxBytes + 1);
    if (!text || text->size() > maxBytes) return std::nullopt;
    return text;
}

std::optional<std::string> readHead(const std::string& path, std::size_t bytes) {
    if (bytes == 0) return std::nullopt;
    auto text = readUpTo(path, bytes);
    if (!text || text->empty()) return std::nullopt;
    return text;
}

bool isOwnedByCurrentUser(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && st.st_uid == ::getuid();
}

} // namespace lumabroom::FileSystem
