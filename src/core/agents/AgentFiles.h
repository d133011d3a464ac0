#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// Small file and text services shared by the readers of what coding agents leave on disk.
namespace lumabroom::AgentFiles {

// Both agents keep one conversation per file with this extension.
inline constexpr std::string_view kSessionExtension = "jsonl";

// Logical length in bytes, following a link; nothing for a folder or what cannot be asked.
std::optional<std::int64_t> logicalSize(const std::filesystem::path& file);

// Content modification time, following a link; nothing if it cannot be read.
std::optional<std::filesystem::file_time_type> modificationTime(const std::filesystem::path& file);

// Whether the last path component has exactly this extension (without the dot), compared
// case-sensitively. A hidden name such as ".jsonl" has no extension.
bool hasExtension(std::string_view name, std::string_view extension);

} // namespace lumabroom::AgentFiles
