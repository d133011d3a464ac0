#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace lumabroom {

enum class Category { xcode, packageManager, tool, runtimeDownloads, code, system };

inline constexpr std::array allCategories{Category::xcode, Category::packageManager,
                                          Category::tool,  Category::runtimeDownloads,
                                          Category::code,  Category::system};

std::string_view rawValue(Category);
std::optional<Category> categoryFromRaw(std::string_view);

// The localization key of the display name. `Category::code` has a fixed English name that is
// never looked up, so `displayKeyIsLiteral` says so.
std::string_view displayKey(Category);
constexpr bool displayKeyIsLiteral(Category c) { return c == Category::code; }
// Looked up in the current language at each call.
std::string displayName(Category);

} // namespace lumabroom
