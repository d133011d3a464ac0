#include "tools/DockerInventoryLister.h"

#include "text/Localization.h"
#include "tools/DockerCLI.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace lumabroom {

namespace {

using nlohmann::json;

constexpr double kTimeoutSeconds = 30;

std::optional<std::string> textOf(const json& row, const char* key) {
    auto it = row.find(key);
    if (it == row.end() || !it->is_string()) return std::nullopt;
    return it->get<std::string>();
}

// A decimal integer from end to end, with an optional sign; "N/A", " 3" and "3.0" are none.
std::optional<std::int64_t> integerOf(const json& row, const char* key) {
    auto text = textOf(row, key);
    if (!text) return std::nullopt;
    std::string_view digits = *text;
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || digits.empty() || end != digits.data() + digits.size()) return std::nullopt;
    return value;
}

DockerItem imageItem(const json& row) {
    std::string repository = textOf(row, "Repository").value_or("<none>");
    std::string tag = textOf(row, "Tag").value_or("<none>");
    std::string ref = DockerInventoryLister::shortId(textOf(row, "ID").value_or(""));
    std::int64_t containers = integerOf(row, "Containers").value_or(0);
    std::string name = repository == "<none>" ? Localization::text("悬空镜像 " + ref) : repository + ":" + tag;
    std::string detail = containers >= 1 ? Localization::text("被 " + std::to_string(containers) + " 个容器使用")
                                         : Localization::text("未被容器使用");
    return {DockerItem::Kind::image, std::move(name), std::move(detail),
            DockerCLI::parseSize(textOf(row, "Size").value_or("")), std::move(ref)};
}

DockerItem containerItem(const json& row) {
    std::string detail;
    for (const char* key : {"Image", "Status"}) {
        if (auto text = textOf(row, key)) {
            if (!detail.empty()) detail += " · ";
            detail += *text;
        }
    }
    // "12MB (virtual 1.2GB)": the container's own layer comes first.
    std::string size = textOf(row, "Size").value_or("");
    std::string_view first = size;
    first.remove_prefix(std::min(first.find_first_not_of(' '), first.size()));
    first = first.substr(0, first.find(' '));
    if (first.empty()) first = "0B";
    return {DockerItem::Kind::container, textOf(row, "Names").value_or("?"), std::move(detail),
            DockerCLI::parseSize(first), DockerInventoryLister::shortId(textOf(row, "ID").value_or(""))};
}

DockerItem volumeItem(const json& row) {
    std::string name = textOf(row, "Name").value_or("?");
    auto links = integerOf(row, "Links");
    std::string detail = links && *links > 0 ? Localization::text("被 " + std::to_string(*links) + " 个容器挂载")
                                             : Localization::text("未被容器挂载");
    return {DockerItem::Kind::volume, name, std::move(detail), DockerCLI::parseSize(textOf(row, "Size").value_or("")),
            name};
}

std::vector<DockerItem> items(const json& object, const char* key, DockerItem (*make)(const json&)) {
    std::vector<DockerItem> list;
    auto rows = object.find(key);
    // Anything but a list of objects counts as no list.
    if (rows == object.end() || !rows->is_array()) return list;
    if (!std::all_of(rows->begin(), rows->end(), [](const json& row) { return row.is_object(); })) return list;
    for (const auto& row : *rows) list.push_back(make(row));
    std::stable_sort(list.begin(), list.end(),
                     [](const DockerItem& a, const DockerItem& b) { return a.size > b.size; });
    return list;
}

std::vector<DockerItem> without(const std::vector<DockerItem>& list, const std::string& id) {
    std::vector<DockerItem> kept;
    std::copy_if(list.begin(), list.end(), std::back_inserter(kept), [&](const DockerItem& i) { return i.id() != id; });
    return kept;
}

} // namespace

std::string_view rawValue(DockerItem::Kind kind) {
    switch (kind) {
    case DockerItem::Kind::image: return "image";
    case DockerItem::Kind::container: return "container";
    case DockerItem::Kind::volume: return "volume";
    }
    return "";
}

std::string DockerItem::id() const { return std::string(rawValue(kind)) + ":" + ref; }

DockerInventory DockerInventory::removing(const DockerItem& item) const {
    const std::string id = item.id();
    return {without(images, id), without(containers, id), without(volumes, id)};
}

namespace DockerInventoryLister {

std::string shortId(std::string_view id) {
    constexpr std::string_view kPrefix = "sha256:";
    std::string bare;
    for (auto at = id.find(kPrefix); at != std::string_view::npos; at = id.find(kPrefix)) {
        bare += id.substr(0, at);
        id.remove_prefix(at + kPrefix.size());
    }
    bare += id;
    // Twelve characters, not bytes, so that a name of other scripts is never cut inside a letter.
    std::size_t end = 0;
    for (int characters = 0; end < bare.size(); ++end) {
        if ((static_cast<unsigned char>(bare[end]) & 0xC0) != 0x80 && characters++ == 12) break;
    }
    bare.resize(end);
    return bare;
}

std::optional<DockerInventory> parse(std::string_view output) {
    json object = json::parse(output, nullptr, false);
    if (!object.is_object()) return std::nullopt;
    return DockerInventory{items(object, "Images", imageItem), items(object, "Containers", containerItem),
                           items(object, "Volumes", volumeItem)};
}

std::optional<DockerInventory> fetch() {
    auto output = DockerCLI::run({"system", "df", "-v", "--format", "{{json .}}"}, kTimeoutSeconds);
    if (!output) return std::nullopt;
    return parse(*output);
}

} // namespace DockerInventoryLister
} // namespace lumabroom

std::size_t std::hash<lumabroom::DockerItem>::operator()(const lumabroom::DockerItem& item) const noexcept {
    std::size_t seed = static_cast<std::size_t>(item.kind);
    auto feed = [&seed](std::size_t value) { seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2); };
    feed(std::hash<std::string>{}(item.name));
    feed(std::hash<std::string>{}(item.detail));
    feed(std::hash<std::int64_t>{}(item.size));
    feed(std::hash<std::string>{}(item.ref));
    return seed;
}
