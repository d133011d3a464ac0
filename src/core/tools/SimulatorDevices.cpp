#include "tools/SimulatorDevices.h"

#include "clean/CommandRunner.h"
#include "host/FileSystem.h"
#include "host/ToolPaths.h"
#include "text/Strings.h"

#include <plist/plist.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

namespace lumabroom::SimulatorDevices {

namespace {

constexpr double kDeleteTimeoutSeconds = 120;
// A device.plist is well under a kilobyte; anything far larger is not one.
constexpr std::uintmax_t kMaxPropertyListBytes = 4 * 1024 * 1024;

bool isHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

using Plist = std::unique_ptr<std::remove_pointer_t<plist_t>, decltype(&plist_free)>;

std::optional<std::string> stringValue(plist_t dictionary, const char* key) {
    plist_t node = plist_dict_get_item(dictionary, key);
    if (!node || plist_get_node_type(node) != PLIST_STRING) return std::nullopt;
    std::uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    if (!text) return std::nullopt;
    return std::string(text, static_cast<std::size_t>(length));
}

} // namespace

std::optional<std::string> udid(const std::filesystem::path& deviceFolder) {
    std::string name = deviceFolder.filename().string();
    if (name.empty()) name = deviceFolder.parent_path().filename().string(); // a path ending in "/"
    if (name.size() != 36) return std::nullopt;
    for (std::size_t i = 0; i < name.size(); ++i) {
        bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? name[i] != '-' : !isHexDigit(name[i])) return std::nullopt;
    }
    return name;
}

bool remove(const std::string& udid) {
    auto binary = CommandRunner::findBinary(ToolPaths::candidates(Tool::xcrun));
    if (!binary) return false;
    return CommandRunner::run(*binary, {"simctl", "delete", udid}, kDeleteTimeoutSeconds).has_value();
}

std::optional<std::string> deviceNameFromPropertyList(std::string_view data) {
    if (data.empty() || data.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    plist_t root = nullptr;
    plist_from_memory(data.data(), static_cast<std::uint32_t>(data.size()), &root);
    Plist owned(root, &plist_free);
    if (!root || plist_get_node_type(root) != PLIST_DICT) return std::nullopt;

    auto name = stringValue(root, "name");
    if (!name) return std::nullopt;
    auto runtime = stringValue(root, "runtime");
    if (!runtime) return name;
    // "com.apple.CoreSimulator.SimRuntime.iOS-17-2" → "iOS 17.2"
    std::string_view last = *runtime;
    if (auto dot = last.rfind('.'); dot != std::string_view::npos) last.remove_prefix(dot + 1);
    auto pieces = Strings::splitNonEmpty(last, '-');
    if (pieces.size() < 2) return name;
    std::string result = *name + " · " + std::string(pieces[0]) + " ";
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        if (i > 1) result += '.';
        result += pieces[i];
    }
    return result;
}

std::optional<std::string> deviceName(const std::filesystem::path& deviceFolder) {
    auto data = FileSystem::readSmallFile((deviceFolder / "device.plist").string(), kMaxPropertyListBytes);
    if (!data) return std::nullopt;
    return deviceNameFromPropertyList(*data);
}

} // namespace lumabroom::SimulatorDevices
