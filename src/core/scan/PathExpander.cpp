#include "scan/PathExpander.h"

#include "host/FileSystem.h"
#include "host/Paths.h"

#include <fnmatch.h>

namespace lumabroom::PathExpander {

namespace {
bool startsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

bool isWildcard(std::string_view segment) { return segment.find_first_of("*?[") != std::string_view::npos; }

std::string appending(const std::string& base, std::string_view name) {
    std::string path = base;
    if (path.empty() || path.back() != '/') path.push_back('/');
    path.append(name);
    return path;
}
} // namespace

std::string resolve(std::string_view pattern) {
    std::string text;
    if (startsWith(pattern, "$TMPDIR")) {
        text = Paths::temporaryDirectory() + std::string(pattern.substr(7));
    } else if (startsWith(pattern, "$DARWIN_CACHE")) {
        text = Paths::deletingLastPathComponent(Paths::temporaryDirectory()) + "/C" + std::string(pattern.substr(13));
    } else if (startsWith(pattern, "$XDG_CACHE_HOME")) {
        text = Paths::xdgCacheHome() + std::string(pattern.substr(15));
    } else if (startsWith(pattern, "$XDG_DATA_HOME")) {
        text = Paths::xdgDataHome() + std::string(pattern.substr(14));
    } else {
        text = pattern;
    }
    return Paths::expandingTilde(text);
}

std::vector<std::filesystem::path> expand(std::string_view pattern) {
    const std::string resolved = resolve(pattern);
    std::vector<std::string> current{"/"};
    std::string_view rest = resolved;
    while (!rest.empty()) {
        auto slash = rest.find('/');
        std::string_view segment = rest.substr(0, slash);
        rest = slash == std::string_view::npos ? std::string_view{} : rest.substr(slash + 1);
        if (segment.empty()) continue;

        std::vector<std::string> next;
        if (isWildcard(segment)) {
            const std::string glob(segment);
            for (const auto& location : current) {
                auto names = FileSystem::listDirectory(location);
                if (!names) continue;
                for (const auto& name : *names)
                    if (::fnmatch(glob.c_str(), name.c_str(), FNM_PERIOD) == 0)
                        next.push_back(appending(location, name));
            }
        } else {
            next.reserve(current.size());
            for (const auto& location : current) next.push_back(appending(location, segment));
        }
        if (next.empty()) return {};
        current = std::move(next);
    }

    std::vector<std::filesystem::path> found;
    for (auto& location : current)
        if (FileSystem::exists(location)) found.emplace_back(std::move(location));
    return found;
}

} // namespace lumabroom::PathExpander
