#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumabroom::Git {

inline constexpr double kTimeoutSeconds = 30;

// The path of git among the fixed places, looked up once per process (again only when the test
// seam of ToolPaths changes the places). Nothing if git is not installed.
std::optional<std::string> binary();

// Runs git with `arguments` and a 30-second limit: its output, or nothing when git is missing,
// fails, or runs out of time. No process is started without git.
std::optional<std::string> run(const std::vector<std::string>& arguments);

} // namespace lumabroom::Git
