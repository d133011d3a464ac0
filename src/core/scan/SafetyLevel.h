#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace lumabroom {

enum class SafetyLevel { safe, caution, reportOnly };

inline constexpr std::array allSafetyLevels{SafetyLevel::safe, SafetyLevel::caution, SafetyLevel::reportOnly};

std::string_view rawValue(SafetyLevel);
std::optional<SafetyLevel> safetyFromRaw(std::string_view);

// The localization key of the display name, and the name looked up in the current language.
std::string_view displayKey(SafetyLevel);
std::string displayName(SafetyLevel);

} // namespace lumabroom
