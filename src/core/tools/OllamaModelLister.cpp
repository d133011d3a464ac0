#include "tools/OllamaModelLister.h"

#include "clean/CommandRunner.h"
#include "host/DirectoryReader.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/Saturating.h"
#include "host/ToolPaths.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace lumabroom {

namespace {

using nlohmann::json;

constexpr double kRemoveTimeoutSeconds = 60;
// A manifest is a few kilobytes; a larger file below "manifests" is no manifest and is not read.
constexpr std::uintmax_t kMaxManifestBytes = 16 * 1024 * 1024;

// An integral JSON number as a signed 64-bit count; anything else is 0.
std::int64_t sizeOf(const json& object) {
    if (!object.is_object()) return 0;
    auto size = object.find("size");
    if (size == object.end()) return 0;
    if (size->is_number_integer() && !size->is_number_unsigned()) return size->get<std::int64_t>();
    if (size->is_number_unsigned()) {
        auto value = size->get<std::uint64_t>();
        return value <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())
                   ? static_cast<std::int64_t>(value)
                   : 0;
    }
    if (size->is_number_float()) {
        double value = size->get<double>();
        if (std::trunc(value) == value && value >= -9223372036854775808.0 && value < 9223372036854775808.0)
            return static_cast<std::int64_t>(value);
    }
    return 0;
}

// Depth first, each folder's items in the order the system gives them, a folder's content right
// behind the folder itself. What can't be opened is passed over. A folder is read to its end before
// any child is entered, as the reader's buffer is one per thread.
void walk(DirectoryReader& folder, const std::filesystem::path& path, std::vector<ScanEntry>& found) {
    struct Item {
        std::string name;
        bool isDirectory = false;
        bool isRegularFile = false;
    };
    std::vector<Item> items;
    folder.forEach([&](const DirectoryReader::Entry& entry) {
        items.push_back({entry.name, entry.isDirectory, !entry.isDirectory && entry.regularFile().has_value()});
        return true;
    });
    for (const auto& item : items) {
        std::filesystem::path itemPath = path / item.name;
        if (item.isDirectory) {
            DirectoryReader child = folder.openChild(item.name.c_str());
            if (child.isOpen()) walk(child, itemPath, found);
        } else if (item.isRegularFile) {
            if (auto text = FileSystem::readSmallFile(itemPath.string(), kMaxManifestBytes))
                if (auto size = OllamaModelLister::manifestSize(*text); size && *size > 0)
                    found.push_back(ScanEntry{std::move(itemPath), *size, std::nullopt});
        }
    }
}

std::string lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    auto slash = path.rfind('/');
    return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

} // namespace

namespace OllamaModelLister {

std::optional<std::int64_t> manifestSize(std::string_view text) {
    json manifest = json::parse(text, nullptr, false);
    if (!manifest.is_object()) return std::nullopt;
    std::int64_t total = 0;
    if (auto layers = manifest.find("layers"); layers != manifest.end() && layers->is_array())
        for (const auto& layer : *layers) total = saturatingAdd(total, sizeOf(layer));
    if (auto config = manifest.find("config"); config != manifest.end()) total = saturatingAdd(total, sizeOf(*config));
    return total;
}

std::optional<std::vector<ScanEntry>> entries(const std::filesystem::path& modelsDir) {
    const std::filesystem::path manifests = modelsDir / "manifests";
    DirectoryReader root(manifests.string());
    if (!root.isOpen()) return std::nullopt;
    std::vector<ScanEntry> found;
    walk(root, manifests, found);
    if (found.empty()) return std::nullopt;
    std::stable_sort(found.begin(), found.end(),
                     [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return found;
}

} // namespace OllamaModelLister

namespace OllamaModelRemover {

std::optional<std::string> modelName(const std::filesystem::path& manifest) {
    constexpr std::string_view marker = "/manifests/";
    const std::string path = manifest.string();
    const auto at = path.find(marker);
    if (at == std::string::npos) return std::nullopt;
    std::string_view name = std::string_view(path).substr(at + marker.size());
    const auto tagAt = name.rfind('/');
    if (tagAt == std::string_view::npos)
        return lastComponent(Paths::deletingLastPathComponent(path)) + ":" + lastComponent(path);
    std::string_view model = name.substr(0, tagAt);
    // Only the default registry and namespace go without saying; "alice/llama3" is not "llama3".
    for (std::string_view implied : {"registry.ollama.ai/", "library/"})
        if (model.starts_with(implied) && model.size() > implied.size()) model.remove_prefix(implied.size());
    return std::string(model) + ":" + std::string(name.substr(tagAt + 1));
}

bool remove(const std::string& model) {
    auto binary = CommandRunner::findBinary(ToolPaths::candidates(Tool::ollama));
    if (!binary) return false;
    return CommandRunner::run(*binary, {"rm", model}, kRemoveTimeoutSeconds).has_value();
}

} // namespace OllamaModelRemover
} // namespace lumabroom
