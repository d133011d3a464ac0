#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Lookups of the application's own keys: the same as the core's, with the application's table
// searched after the core's.
namespace lumabroom::AppText {

// The contexts of the application's table, one per layer that shows texts.
inline constexpr std::array<std::string_view, 5> kTableContexts{"AppModel", "Chart", "Window", "Style", "Updater"};

std::string text(std::string_view key);
std::string formatted(std::string_view key, const std::vector<std::string>& values);
std::string counted(std::string_view key, std::int64_t count, const std::vector<std::string>& values = {});

} // namespace lumabroom::AppText
