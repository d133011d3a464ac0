#include "host/Paths.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>
#if defined(__APPLE__)
#include <climits>
#endif

namespace lumabroom::Paths {

namespace {
std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? std::string(value) : std::string();
}

std::string withTrailingSlash(std::string path) {
    if (path.empty() || path.back() != '/') path.push_back('/');
    return path;
}

struct Account {
    std::string home;
    std::string shell;
};

Account passwordDatabaseEntry() {
    long hint = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(hint > 0 ? static_cast<std::size_t>(hint) : 16384);
    struct passwd entry {};
    struct passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found) return {};
    return {found->pw_dir ? found->pw_dir : "", found->pw_shell ? found->pw_shell : ""};
}
} // namespace

std::string homeDirectory() {
    std::string home = environment("HOME");
    // A relative HOME would make every path depend on the working folder.
    if (!home.starts_with('/')) home = passwordDatabaseEntry().home;
    while (home.size() > 1 && home.back() == '/') home.pop_back();
    return home.empty() ? std::string(1, '/') : home;
}

std::string loginShell() {
    Account account = passwordDatabaseEntry();
    return account.shell.starts_with('/') ? account.shell : std::string();
}

std::string temporaryDirectory() {
#if defined(__APPLE__)
    char buffer[PATH_MAX];
    if (std::size_t n = ::confstr(_CS_DARWIN_USER_TEMP_DIR, buffer, sizeof buffer); n > 0 && n <= sizeof buffer)
        return withTrailingSlash(buffer);
#endif
    std::string tmp = environment("TMPDIR");
    return withTrailingSlash(tmp.empty() ? std::string("/tmp") : tmp);
}

bool temporaryDirectoryIsShared() {
#if defined(__APPLE__)
    return false;
#else
    return true;
#endif
}

std::string xdgCacheHome() {
    std::string value = environment("XDG_CACHE_HOME");
    return !value.empty() && value.front() == '/' ? value : homeDirectory() + "/.cache";
}

std::string xdgDataHome() {
    std::string value = environment("XDG_DATA_HOME");
    return !value.empty() && value.front() == '/' ? value : homeDirectory() + "/.local/share";
}

std::optional<std::string> xdgRuntimeDirectory() {
    std::string value = environment("XDG_RUNTIME_DIR");
    if (value.empty() || value.front() != '/') return std::nullopt;
    return value;
}

std::string expandingTilde(std::string_view path) {
    if (path.empty() || path.front() != '~') return std::string(path);
    if (path.size() > 1 && path[1] != '/') return std::string(path);
    std::string home = homeDirectory();
    std::string_view rest = path.substr(1);
    if (home == "/" && !rest.empty()) return std::string(rest);
    return home + std::string(rest);
}

std::string deletingLastPathComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    auto slash = path.rfind('/');
    if (slash == std::string_view::npos) return "";
    if (slash == 0) return "/";
    std::string_view parent = path.substr(0, slash);
    while (parent.size() > 1 && parent.back() == '/') parent.remove_suffix(1);
    return std::string(parent);
}

} // namespace lumabroom::Paths
