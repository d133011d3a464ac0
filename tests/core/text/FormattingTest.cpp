#include "LanguageTestSupport.h"

#include "text/Formatting.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace lumabroom;
using namespace lumabroom::test;
using namespace std::chrono;

TEST(Formatting, AgeCountsWholeDaysInBothLanguages) {
    struct Case {
        seconds ago;
        std::string chinese, english;
    };
    const Case cases[] = {
        {hours(23) + minutes(59), "今天", "today"},
        {hours(24), "昨天", "yesterday"},
        {hours(48), "2 天前", "2 days ago"},
        {days(29) + hours(23), "29 天前", "29 days ago"},
        {days(30), "1 个月前", "1 month ago"},
        {days(60), "2 个月前", "2 months ago"},
        {days(364) + hours(23), "12 个月前", "12 months ago"},
        {days(365), "1 年多前", "over a year ago"},
        {days(729), "1 年多前", "over a year ago"},
        {days(730), "2 年前", "2 years ago"},
        // Less than a day ahead truncates to today; a whole day or more ahead is "just now".
        {-hours(23), "今天", "today"},
        {-hours(24), "刚刚", "just now"},
    };
    const system_clock::time_point now = sys_days{year{2025} / 6 / 1} + hours(9);
    for (const auto& c : cases) {
        for (const auto& [language, expected] :
             {std::pair{AppLanguage::chinese, c.chinese}, {AppLanguage::english, c.english}}) {
            LanguageScope scope(language);
            EXPECT_EQ(Formatting::age(now - c.ago, now), expected) << c.english;
        }
    }
    // Dates far apart must not overflow.
    LanguageScope english(AppLanguage::english);
    EXPECT_EQ(Formatting::age(system_clock::time_point::min(), system_clock::time_point::max()), "584 years ago");
    EXPECT_EQ(Formatting::age(system_clock::time_point::max(), system_clock::time_point{}), "just now");
}

TEST(Formatting, BytesInDecimalUnitsWithPrecisionByUnitInBothLanguages) {
    const std::tuple<std::int64_t, const char*, const char*> cases[] = {
        {0, "0 bytes", "0 字节"},
        {1, "1 byte", "1 字节"},
        {-1, "-1 byte", "-1 字节"},
        {999, "999 bytes", "999 字节"},
        {1000, "1 kB", "1 kB"},
        {999'999, "1,000 kB", "1,000 kB"},
        {1'000'000, "1.0 MB", "1.0 MB"},
        {12'345'678, "12.3 MB", "12.3 MB"},
        {999'999'999, "1,000.0 MB", "1,000.0 MB"},
        {1'000'000'000, "1.00 GB", "1.00 GB"},
        {2'500'000'000'000, "2.50 TB", "2.50 TB"},
        {-35'000, "-35 kB", "-35 kB"},
    };
    for (const auto& [count, english, chinese] : cases) {
        for (const auto& [language, expected] :
             {std::pair{AppLanguage::english, english}, {AppLanguage::chinese, chinese}}) {
            LanguageScope scope(language);
            EXPECT_EQ(Formatting::bytes(count), expected) << count;
        }
    }
}

TEST(Formatting, DatesInUtcAcrossDayYearAndEpochBoundaries) {
    const std::tuple<std::int64_t, const char*, const char*> cases[] = {
        {0, "1970-01-01", "1970-01-01T00:00:00Z"},          {-1, "1969-12-31", "1969-12-31T23:59:59Z"},
        {1709251199, "2024-02-29", "2024-02-29T23:59:59Z"}, {1709251200, "2024-03-01", "2024-03-01T00:00:00Z"},
        {1709294400, "2024-03-01", "2024-03-01T12:00:00Z"}, {253402300799, "9999-12-31", "9999-12-31T23:59:59Z"},
    };
    for (const auto& [epochSeconds, date, timestamp] : cases) {
        SCOPED_TRACE(epochSeconds);
        const sys_seconds time{seconds(epochSeconds)};
        EXPECT_EQ(Formatting::utcDate(time), date);
        EXPECT_EQ(Formatting::utcTimestamp(time), timestamp);
    }
}

TEST(Formatting, HomeShortensOnlyItselfAndWhatLiesBelowIt) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/home/a/x/y", "/home/a", "~/x/y"},
        {"/home/a", "/home/a", "~"},
        {"/home/a/", "/home/a", "~/"},
        {"/home/al", "/home/a", "/home/al"},
        {"/home/al/x", "/home/a", "/home/al/x"},
        {"/home", "/home/a", "/home"},
        {"/srv/home/a/x", "/home/a", "/srv/home/a/x"},
        {"relative/x", "/home/a", "relative/x"},
        {"", "/home/a", ""},
        {"/x", "/", "/x"},
        {"/", "/", "/"},
        {"/x", "", "/x"},
    };
    for (const auto& [path, home, shown] : cases) {
        SCOPED_TRACE(std::string(path) + " under " + home);
        EXPECT_EQ(Formatting::homeShortened(path, home), shown);
    }
}
