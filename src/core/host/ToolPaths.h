#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumabroom {

// Outside tools that the system runs, each from fixed places (the user's PATH is never searched).
enum class Tool { git, sqlite3, shell, docker, ollama, xcrun, open };

namespace ToolPaths {

// The places where the tool is looked for, in order of preference; may begin with "~".
// git: the command-line tools' git, Homebrew's, then the system's; sqlite3: "/usr/bin/sqlite3";
// shell: "/bin/zsh" on macOS, else the user's login shell from the password database, else "/bin/sh";
// docker: the three macOS places, then "/usr/bin/docker" elsewhere; ollama: its app and Homebrew
// places, then "/usr/local/bin/ollama", "/usr/bin/ollama"; xcrun: "/usr/bin/xcrun"; open: "/usr/bin/open"
// on macOS, else "/usr/bin/xdg-open".
std::vector<std::string> candidates(Tool tool);

// Test seam, in-process only: while set, candidates(tool) gives just `path`. nullopt restores the
// fixed places. Never read from the environment.
void setOverride(Tool tool, std::optional<std::string> path);

} // namespace ToolPaths
} // namespace lumabroom
