#pragma once

#include "scan/Category.h"
#include "scan/SafetyLevel.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

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

} // namespace lumabroom

template <>
struct std::hash<lumabroom::CleanRule> {
    std::size_t operator()(const lumabroom::CleanRule&) const noexcept;
};
