#include "host/ToolPaths.h"

#include "host/Paths.h"
#include "host/Platform.h"

#include <map>
#include <mutex>

namespace lumabroom::ToolPaths {

namespace {
std::mutex overridesLock;

std::map<Tool, std::string>& overrides() {
    static std::map<Tool, std::string> paths;
    return paths;
}
} // namespace

std::vector<std::string> candidates(Tool tool) {
    {
        std::lock_guard lock(overridesLock);
        if (auto it = overrides().find(tool); it != overrides().end()) return {it->second};
    }
    constexpr bool mac = Platform::isMacOS();
    switch (tool) {
    case Tool::git: return {"/usr/bin/git", mac ? "/opt/homebrew/bin/git" : "/usr/local/bin/git"};
    case Tool::sqlite3: return {"/usr/bin/sqlite3"};
    case Tool::shell: {
        if (mac) return {"/bin/zsh"};
        std::string login = Paths::loginShell();
        if (login.empty() || login == "/bin/sh") return {"/bin/sh"};
        return {login, "/bin/sh"};
    }
    case Tool::docker:
        if (mac) return {"~/.orbstack/bin/docker", "/usr/local/bin/docker", "/opt/homebrew/bin/docker"};
        return {"~/.orbstack/bin/docker", "/usr/local/bin/docker", "/opt/homebrew/bin/docker", "/usr/bin/docker"};
    case Tool::ollama:
        if (mac)
            return {"/usr/local/bin/ollama", "/opt/homebrew/bin/ollama",
                    "/Applications/Ollama.app/Contents/Resources/ollama"};
        return {"/usr/local/bin/ollama", "/usr/bin/ollama"};
    case Tool::xcrun: return {"/usr/bin/xcrun"};
    case Tool::open: return {mac ? "/usr/bin/open" : "/usr/bin/xdg-open"};
    }
    return {};
}

void setOverride(Tool tool, std::optional<std::string> path) {
    std::lock_guard lock(overridesLock);
    if (path) overrides()[tool] = std::move(*path);
    else overrides().erase(tool);
}

} // namespace lumabroom::ToolPaths
