#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace lumabroom {

// The value whose raw form is `raw`, among all values of an enumeration.
template <typename Enum, std::size_t N>
std::optional<Enum> fromRaw(const std::array<Enum, N>& all, std::string_view raw) {
    for (Enum e : all)
        if (rawValue(e) == raw) return e;
    return std::nullopt;
}

} // namespace lumabroom
