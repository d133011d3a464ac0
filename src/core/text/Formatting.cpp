#include "text/Formatting.h"

#include "host/Locale.h"
#include "text/Localization.h"

#include <cmath>
#include <cstdio>

namespace lumabroom::Formatting {

std::string bytes(std::int64_t count) {
    // The platform's table says "1 bytes".
    if (count > -1000 && count < 1000) return Localization::counted("%n 字节", count);
    const std::int64_t magnitude = count < 0 ? -(count + 1) : count;
    const int decimals = magnitude < 1'000'000 ? 0 : magnitude < 1'000'000'000 ? 1 : 2;
    return Locale::dataSize(count, decimals, rawValue(Localization::effectiveLanguage()));
}

std::string age(std::chrono::system_clock::time_point since, std::chrono::system_clock::time_point now) {
    using Seconds = std::chrono::duration<double>;
    // In floating point, so that dates centuries apart cannot overflow.
    const double seconds = Seconds(now.time_since_epoch()).count() - Seconds(since.time_since_epoch()).count();
    const double days = std::trunc(seconds / 86400.0);
    if (days < 0) return Localization::text("刚刚");
    if (days == 0) return Localization::text("今天");
    if (days == 1) return Localization::text("昨天");
    if (days < 30) return Localization::text(std::to_string(static_cast<long long>(days)) + " 天前");
    if (days < 365) return Localization::text(std::to_string(static_cast<long long>(days) / 30) + " 个月前");
    if (days < 730) return Localization::text("1 年多前");
    const double years = std::min(std::floor(days / 365.0), 1e15);
    return Localization::text(std::to_string(static_cast<long long>(years)) + " 年前");
}

std::string utcDate(std::chrono::sys_seconds time) {
    const std::chrono::year_month_day date{std::chrono::floor<std::chrono::days>(time)};
    char text[32];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

std::string utcTimestamp(std::chrono::sys_seconds time) {
    const std::chrono::hh_mm_ss clock{time - std::chrono::floor<std::chrono::days>(time)};
    char text[32];
    std::snprintf(text, sizeof text, "T%02d:%02d:%02dZ", static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return utcDate(time) + text;
}

std::string homeShortened(std::string_view path, std::string_view home) {
    if (home.size() < 2 || !path.starts_with(home)) return std::string(path);
    const std::string_view rest = path.substr(home.size());
    if (!rest.empty() && rest.front() != '/') return std::string(path);
    return std::string("~").append(rest);
}

} // namespace lumabroom::Formatting
