#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace lumabroom::Formatting {

// A byte count in decimal units (1 kB = 1000 bytes) in the effective language, the unit chosen by
// size and the precision by the unit: "512 bytes", "35 kB", "12.3 MB", "1.16 GB".
std::string bytes(std::int64_t count);

// How long ago `since` was, counted in whole days (truncated towards zero): "今天", "昨天", "3 天前",
// "2 个月前" (30-day months), "1 年多前", "2 年前"; "刚刚" for a day or more in the future.
std::string age(std::chrono::system_clock::time_point since, std::chrono::system_clock::time_point now);

// The calendar day of `time` in UTC: "2026-03-01".
std::string utcDate(std::chrono::sys_seconds time);
// The moment `time` in UTC to the second: "2026-03-01T12:00:00Z".
std::string utcTimestamp(std::chrono::sys_seconds time);

// `path` with "~" in place of `home` (given without a trailing "/") when it is the home or lies
// below it: "/home/a" gives "~", "/home/a/x" gives "~/x", and "/home/al" stays as it is. A home of
// "/" shortens nothing, since "~" followed by every absolute path names nothing useful.
std::string homeShortened(std::string_view path, std::string_view home);

} // namespace lumabroom::Formatting
