#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lumabroom::Settings {

// The user's settings of the application (organisation and application "Lumabroom"): the user
// defaults on macOS, "$XDG_CONFIG_HOME/Lumabroom/Lumabroom.conf" elsewhere. Each call opens the
// store afresh, so any thread may call; a write is on disk when the call returns.

// The text stored under `key`; nothing if the key is absent or holds no text.
std::optional<std::string> string(std::string_view key);
// False if the store could not be written.
bool setString(std::string_view key, std::string_view value);
bool remove(std::string_view key);

// From now on keeps the settings below `folder` (on Linux the same file that XDG_CONFIG_HOME=folder
// gives a new process). Tests point the store at a temporary folder with this before first use.
void useFolder(const std::filesystem::path& folder);

} // namespace lumabroom::Settings
