#pragma once

#include <cstddef>
#include <functional>

namespace lumabroom {

// Boost's combine: order matters, so the fields feed in a fixed order.
inline void feed(std::size_t& seed, std::size_t value) {
    seed ^= value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2);
}
template <typename T>
void feedHash(std::size_t& seed, const T& value) {
    feed(seed, std::hash<T>{}(value));
}

} // namespace lumabroom
