#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lumabroom::SimulatorDevices {

// The device folder's name if it is a UUID (8-4-4-4-12 hexadecimal digits, either case), unchanged.
std::optional<std::string> udid(const std::filesystem::path& deviceFolder);

// `xcrun simctl delete <udid>`; true when the tool reported success. Never deletes files itself.
bool remove(const std::string& udid);

// "Phone · iOS 17.2" from the folder's "device.plist" (binary or XML): the "name", and the platform
// and version from the last piece of "runtime" when it has one. Nothing without a readable name.
std::optional<std::string> deviceName(const std::filesystem::path& deviceFolder);

// The same from the property list's bytes.
std::optional<std::string> deviceNameFromPropertyList(std::string_view data);

} // namespace lumabroom::SimulatorDevices
