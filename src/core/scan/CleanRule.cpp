#include "scan/CleanRule.h"

#include "text/Localization.h"

#include <nlohmann/json.hpp>

#include <numeric>

namespace lumabroom {

namespace {
template <typename Enum, std::size_t N>
std::optional<Enum> fromRaw(const std::array<Enum, N>& all, std::string_view raw) {
    for (Enum e : all)
        if (rawValue(e) == raw) return e;
    return std::nullopt;
}

// Boost's combine: order matters, so the fields feed in a fixed order.
void feed(std::size_t& seed, std::size_t value) { seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2); }
template <typename T>
void feedHash(std::size_t& seed, const T& value) { feed(seed, std::hash<T>{}(value)); }
} // namespace

std::string_view rawValue(Category c) {
    switch (c) {
    case Category::xcode: return "xcode";
    case Category::packageManager: return "pm";
    case Category::tool: return "tool";
    case Category::runtimeDownloads: return "rt";
    case Category::code: return "wt";
    case Category::system: return "sys";
    }
    return "";
}

std::string_view rawValue(SafetyLevel s) {
    switch (s) {
    case SafetyLevel::safe: return "safe";
    case SafetyLevel::caution: return "caution";
    case SafetyLevel::reportOnly: return "report-only";
    }
    return "";
}

std::string_view rawValue(DockerUsageKind k) {
    switch (k) {
    case DockerUsageKind::images: return "images";
    case DockerUsageKind::containers: return "containers";
    case DockerUsageKind::volumes: return "volumes";
    case DockerUsageKind::buildCache: return "buildCache";
    }
    return "";
}

std::optional<Category> categoryFromRaw(std::string_view raw) { return fromRaw(allCategories, raw); }
std::optional<SafetyLevel> safetyFromRaw(std::string_view raw) { return fromRaw(allSafetyLevels, raw); }
std::optional<DockerUsageKind> dockerUsageKindFromRaw(std::string_view raw) { return fromRaw(allDockerUsageKinds, raw); }

std::string_view displayKey(Category c) {
    switch (c) {
    case Category::xcode: return "Xcode 与模拟器";
    case Category::packageManager: return "包管理器缓存";
    case Category::tool: return "容器与虚拟机";
    case Category::runtimeDownloads: return "浏览器与运行时下载";
    case Category::code: return "Code & Worktrees";
    case Category::system: return "系统与下载";
    }
    return "";
}

std::string_view displayKey(SafetyLevel s) {
    switch (s) {
    case SafetyLevel::safe: return "安全";
    case SafetyLevel::caution: return "谨慎";
    case SafetyLevel::reportOnly: return "仅报告";
    }
    return "";
}

std::string_view displayKey(DockerUsageKind k) {
    switch (k) {
    case DockerUsageKind::images: return "镜像";
    case DockerUsageKind::containers: return "容器";
    case DockerUsageKind::volumes: return "数据卷";
    case DockerUsageKind::buildCache: return "构建缓存";
    }
    return "";
}

std::optional<DockerUsageKind> dockerUsageKindFromDfType(std::string_view type) {
    if (type == "Images") return DockerUsageKind::images;
    if (type == "Containers") return DockerUsageKind::containers;
    if (type == "Local Volumes") return DockerUsageKind::volumes;
    if (type == "Build Cache") return DockerUsageKind::buildCache;
    return std::nullopt;
}

std::string CleanRule::name() const { return Localization::text(nameKey); }
std::string CleanRule::note() const { return Localization::text(noteKey); }

std::string encode(const CleanRule& rule) {
    nlohmann::ordered_json j;
    j["id"] = rule.id;
    j["nameKey"] = rule.nameKey;
    j["noteKey"] = rule.noteKey;
    j["category"] = rawValue(rule.category);
    j["paths"] = rule.paths;
    j["safety"] = rawValue(rule.safety);
    j["exclusiveSizeOnly"] = rule.exclusiveSizeOnly;
    return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<CleanRule> decodeRule(std::string_view text) {
    auto j = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!j.is_object()) return std::nullopt;
    auto string = [&](const char* key) -> const std::string* {
        auto it = j.find(key);
        return it != j.end() && it->is_string() ? it->get_ptr<const std::string*>() : nullptr;
    };
    const std::string* id = string("id");
    const std::string* nameKey = string("nameKey");
    const std::string* noteKey = string("noteKey");
    const std::string* category = string("category");
    const std::string* safety = string("safety");
    auto paths = j.find("paths");
    auto exclusive = j.find("exclusiveSizeOnly");
    if (!id || !nameKey || !noteKey || !category || !safety || paths == j.end() || !paths->is_array()
        || exclusive == j.end() || !exclusive->is_boolean())
        return std::nullopt;
    auto cat = categoryFromRaw(*category);
    auto level = safetyFromRaw(*safety);
    if (!cat || !level) return std::nullopt;
    CleanRule rule{*id, *nameKey, *noteKey, *cat, {}, *level, exclusive->get<bool>()};
    for (const auto& p : *paths) {
        if (!p.is_string()) return std::nullopt;
        rule.paths.push_back(p.get<std::string>());
    }
    return rule;
}

std::string EntryLabel::text() const {
    if (auto* usage = std::get_if<DockerUsageLabel>(&value)) {
        std::string key = Localization::text(displayKey(usage->kind)) + " " + usage->count + " 个";
        std::string text = Localization::text(key);
        if (usage->reclaimable) text += " · " + Localization::text("可回收 " + *usage->reclaimable);
        return text;
    }
    if (auto* literal = std::get_if<LiteralLabel>(&value)) return literal->text;
    return Localization::text("系统与其他");
}

std::int64_t RuleScanResult::totalSize() const {
    return std::accumulate(entries.begin(), entries.end(), std::int64_t{0},
                           [](std::int64_t sum, const ScanEntry& e) { return sum + e.size; });
}

} // namespace lumabroom

using namespace lumabroom;

std::size_t std::hash<CleanRule>::operator()(const CleanRule& r) const noexcept {
    std::size_t seed = 0;
    feedHash(seed, r.id);
    feedHash(seed, r.nameKey);
    feedHash(seed, r.noteKey);
    feedHash(seed, std::string(rawValue(r.category)));
    feed(seed, r.paths.size());
    for (const auto& p : r.paths) feedHash(seed, p);
    feedHash(seed, std::string(rawValue(r.safety)));
    feed(seed, r.exclusiveSizeOnly ? 1 : 0);
    return seed;
}

std::size_t std::hash<EntryLabel>::operator()(const EntryLabel& l) const noexcept {
    std::size_t seed = 0;
    feed(seed, l.value.index());
    if (auto* usage = std::get_if<DockerUsageLabel>(&l.value)) {
        feedHash(seed, std::string(rawValue(usage->kind)));
        feedHash(seed, usage->count);
        feed(seed, usage->reclaimable ? 1 : 0);
        if (usage->reclaimable) feedHash(seed, *usage->reclaimable);
    } else if (auto* literal = std::get_if<LiteralLabel>(&l.value)) {
        feedHash(seed, literal->text);
    }
    return seed;
}

std::size_t std::hash<ScanEntry>::operator()(const ScanEntry& e) const noexcept {
    std::size_t seed = 0;
    feedHash(seed, e.url.string());
    feed(seed, static_cast<std::size_t>(e.size));
    feed(seed, e.label ? 1 : 0);
    if (e.label) feedHash(seed, *e.label);
    return seed;
}
