#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace lumabroom::Formatting {

// A byte count in decimal units (1 kB = 1000 bytes) in the effective language, the unit chosen by
// size and the precision by the unit: "512 bytes", "35 kB", "12.3 MB", "1.16 GB".
std::string bytes(std::int64_t count);

// How long ago `since` was, counted in whole days (truncated towards zero): "今天", "昨天", "3 天前",
// "2 个月前" (30-day months), "1 年多前", "2 年前"; "刚刚" for a day or more in the future.
std::string age(std::chrono::system_clock::time_point since, std::chrono::system_clock::time_point now);

} // namespace lumabroom::Formatting
