#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumabroom {

// Outside tools that the system runs, each from fixed places (the user's PATH is never searched).
enum class Tool { git, sqlite3, shell, docker, ollama, xcrun, open };

namespace ToolPaths {

// The places where the tool is looked for, in order of preference; may begin with "~".
// git: "/usr/bin/git", then "/opt/homebrew/bin/git" on macOS, "/usr/local/bin/git" elsewhere;
// sqlite3: "/usr/bin/sqlite3"; shell: "/bin/zsh" on macOS, else the user's login shell from the
// password database, then "/bin/sh"; docker: "~/.orbstack/bin/docker", "/usr/local/bin/docker",
// "/opt/homebrew/bin/docker", and "/usr/bin/docker" off macOS; ollama: "/usr/local/bin/ollama", then
// "/opt/homebrew/bin/ollama" and the app's own copy on macOS, "/usr/bin/ollama" elsewhere; xcrun:
// "/usr/bin/xcrun"; open: "/usr/bin/open" on macOS, else "/usr/bin/xdg-open".
std::vector<std::string> candidates(Tool tool);

// Test seam, in-process only: while set, candidates(tool) gives just `path`. nullopt restores the
// fixed places. Never read from the environment.
void setOverride(Tool tool, std::optional<std::string> path);

} // namespace ToolPaths
} // namespace lumabroom
