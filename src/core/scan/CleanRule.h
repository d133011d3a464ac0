#pragma once

#include "host/FolderChain.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace lumabroom {

enum class Category { xcode, packageManager, tool, runtimeDownloads, code, system };
enum class SafetyLevel { safe, caution, reportOnly };
enum class DockerUsageKind { images, containers, volumes, buildCache };

inline constexpr std::array allCategories{Category::xcode,           Category::packageManager, Category::tool,
                                          Category::runtimeDownloads, Category::code,           Category::system};
inline constexpr std::array allSafetyLevels{SafetyLevel::safe, SafetyLevel::caution, SafetyLevel::reportOnly};
inline constexpr std::array allDockerUsageKinds{DockerUsageKind::images, DockerUsageKind::containers,
                                                DockerUsageKind::volumes, DockerUsageKind::buildCache};

std::string_view rawValue(Category);
std::string_view rawValue(SafetyLevel);
std::string_view rawValue(DockerUsageKind);
std::optional<Category> categoryFromRaw(std::string_view);
std::optional<SafetyLevel> safetyFromRaw(std::string_view);
std::optional<DockerUsageKind> dockerUsageKindFromRaw(std::string_view);

// The localization key of the display name. `Category::code` has a fixed English name that is
// never looked up, so `displayKeyIsLiteral` says so.
std::string_view displayKey(Category);
std::string_view displayKey(SafetyLevel);
std::string_view displayKey(DockerUsageKind);
constexpr bool displayKeyIsLiteral(Category c) { return c == Category::code; }

// Exact match with the type column of `docker system df`; anything else is no kind.
std::optional<DockerUsageKind> dockerUsageKindFromDfType(std::string_view type);

struct CleanRule {
    std::string id;
    std::string nameKey;
    std::string noteKey;
    Category category = Category::system;
    std::vector<std::string> paths;
    SafetyLevel safety = SafetyLevel::safe;
    bool exclusiveSizeOnly = false;

    // Display texts, looked up in the current language at each call.
    std::string name() const;
    std::string note() const;

    bool operator==(const CleanRule&) const = default;
};

// JSON with the keys "id", "nameKey", "noteKey", "category", "paths", "safety", "exclusiveSizeOnly".
std::string encode(const CleanRule&);
// Every key is required; a missing or ill-typed key, or text that is not JSON, gives nothing.
std::optional<CleanRule> decodeRule(std::string_view json);

struct DockerUsageLabel {
    DockerUsageKind kind = DockerUsageKind::images;
    std::string count;
    std::optional<std::string> reclaimable;
    bool operator==(const DockerUsageLabel&) const = default;
};
struct DockerOtherLabel {
    bool operator==(const DockerOtherLabel&) const = default;
};
struct LiteralLabel {
    std::string text;
    bool operator==(const LiteralLabel&) const = default;
};

// Text that replaces the name taken from an entry's path.
struct EntryLabel {
    std::variant<DockerUsageLabel, DockerOtherLabel, LiteralLabel> value;

    std::string text() const;
    bool operator==(const EntryLabel&) const = default;
};

struct ScanEntry {
    std::filesystem::path url;
    std::int64_t size = 0;
    std::optional<EntryLabel> label;
    // The item itself (a link, not its target) as the scan found it, where the scan looked; removal
    // refuses an item that no longer matches. Not part of what an entry shows, so not compared.
    std::optional<FileIdentity> identity = std::nullopt;

    std::string id() const { return url.string(); }
    bool operator==(const ScanEntry& other) const {
        return url == other.url && size == other.size && label == other.label;
    }
};

struct RuleScanResult {
    CleanRule rule;
    std::vector<ScanEntry> entries;

    const std::string& id() const { return rule.id; }
    std::int64_t totalSize() const;
};

} // namespace lumabroom

template <>
struct std::hash<lumabroom::CleanRule> {
    std::size_t operator()(const lumabroom::CleanRule&) const noexcept;
};
template <>
struct std::hash<lumabroom::EntryLabel> {
    std::size_t operator()(const lumabroom::EntryLabel&) const noexcept;
};
template <>
struct std::hash<lumabroom::ScanEntry> {
    std::size_t operator()(const lumabroom::ScanEntry&) const noexcept;
};
