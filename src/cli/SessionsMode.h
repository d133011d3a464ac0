#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string_view>

namespace lumabroom::SessionsMode {

enum class Agent { claude, codex };

inline constexpr std::size_t kDefaultLimit = 10;

// "claude" or "codex"; nothing for any other name.
std::optional<Agent> agentFromName(std::string_view name);

// `--sessions claude|codex`: the largest session files, largest first, at most `limit`. With
// `json`, one line {"sessions": [{"path", "size", "label"}]}.
int run(Agent agent, std::size_t limit, bool json, std::ostream& out);

} // namespace lumabroom::SessionsMode
