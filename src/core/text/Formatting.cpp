#include "text/Formatting.h"

#include "host/Locale.h"
#include "text/Localization.h"

#include <cmath>

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

} // namespace lumabroom::Formatting
