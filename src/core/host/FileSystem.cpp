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

std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    if (!in) return std::nullopt;
    std::string text(maxBytes + 1, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (in.bad() || (in.fail() && !in.eof())) return std::nullopt;
    const auto n = static_cast<std::size_t>(in.gcount());
    if (n > maxBytes) return std::nullopt;
    text.resize(n);
    return text;
}

bool isOwnedByCurrentUser(const std::string& path) {
    struct stat st {};
    return ::lstat(path.c_str(), &st) == 0 && st.st_uid == ::getuid();
}

} // namespace lumabroom::FileSystem
