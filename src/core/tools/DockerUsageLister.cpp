#include "tools/DockerUsageLister.h"

#include "text/Strings.h"

#include <nlohmann/json.hpp>

namespace lumabroom::DockerUsageLister {

namespace {

constexpr double kTimeoutSeconds = 20;

using nlohmann::json;

std::string countText(const json& row) {
    auto it = row.find("TotalCount");
    if (it == row.end()) return "?";
    if (it->is_string()) return it->get<std::string>();
    if (it->is_number()) return it->dump();
    return "?";
}

// "1.2GB (10%)" → "1.2GB"; "0B (0%)" and a blank text → nothing.
std::optional<std::string> reclaimableText(const json& row) {
    auto it = row.find("Reclaimable");
    if (it == row.end() || !it->is_string()) return std::nullopt;
    auto pieces = Strings::splitNonEmpty(it->get_ref<const std::string&>(), ' ');
    if (pieces.empty() || pieces.front() == "0B") return std::nullopt;
    return std::string(pieces.front());
}

std::string_view textOf(const json& row, const char* key) {
    auto it = row.find(key);
    if (it == row.end() || !it->is_string()) return {};
    return it->get_ref<const std::string&>();
}

} // namespace

std::vector<ScanEntry> parse(std::string_view output, const std::filesystem::path& pseudoBase) {
    std::vector<ScanEntry> rows;
    for (auto line : Strings::splitNonEmpty(output, '\n')) {
        json row = json::parse(line, nullptr, false);
        if (!row.is_object()) continue;
        auto type = row.find("Type");
        if (type == row.end() || !type->is_string()) continue;
        auto kind = dockerUsageKindFromDfType(type->get_ref<const std::string&>());
        if (!kind) continue;
        rows.push_back(ScanEntry{pseudoBase / std::string(rawValue(*kind)), DockerCLI::parseSize(textOf(row, "Size")),
                                 EntryLabel{DockerUsageLabel{*kind, countText(row), reclaimableText(row)}}});
    }
    return rows;
}

std::vector<ScanEntry> entries(const std::filesystem::path& pseudoBase) {
    auto output = DockerCLI::run({"system", "df", "--format", "{{json .}}"}, kTimeoutSeconds);
    if (!output) return {};
    return parse(*output, pseudoBase);
}

} // namespace lumabroom::DockerUsageLister
