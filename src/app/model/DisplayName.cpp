#include "DisplayName.h"

#include "AppText.h"
#include "tools/OllamaModelLister.h"
#include "tools/SimulatorDevices.h"

#include <algorithm>

namespace lumabroom {

namespace {

bool contains(const std::string& text, std::string_view part) { return text.find(part) != std::string::npos; }

// A build folder whose name ends in a long lowercase hash shows without it.
std::string withoutHashSuffix(const std::string& name) {
    const auto dash = name.rfind('-');
    if (dash == std::string::npos) return name;
    const std::string_view suffix = std::string_view(name).substr(dash + 1);
    const bool hashLike = std::all_of(suffix.begin(), suffix.end(),
                                      [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); });
    if (suffix.size() < 20 || !hashLike) return name;
    return name.substr(0, dash);
}

} // namespace

std::string displayName(const ScanEntry& entry) {
    if (entry.label) return entry.label->text();
    const std::string path = entry.url.string();
    const std::string last = entry.url.filename().string();
    const std::string parent = entry.url.parent_path().filename().string();

    if (contains(path, "/CoreSimulator/") || contains(path, "/XCTestDevices/") || contains(path, "/Previews/")) {
        if (auto name = SimulatorDevices::deviceName(entry.url)) return *name;
    }
    // The model's own name, so that "alice/llama3:8b" never reads as the library's "llama3:8b".
    if (contains(path, "/.ollama/") && contains(path, "/manifests/"))
        return OllamaModelRemover::modelName(entry.url).value_or(parent + ":" + last);
    if (last == "data.img.raw") return AppText::text("虚拟磁盘镜像 · 启动 OrbStack 后重扫可细分");
    if (contains(path, "/.codex/sessions/")) return parent + "-" + last;
    return withoutHashSuffix(last);
}

} // namespace lumabroom
