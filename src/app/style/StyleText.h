#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QString>

// Lookups of the shared look's own keys, searched after the core's and the application's tables.
namespace lumabroom::StyleText {

inline constexpr std::string_view kTableContext = "Style";

QString text(std::string_view key);
QString formatted(std::string_view key, const std::vector<std::string>& values);

} // namespace lumabroom::StyleText
