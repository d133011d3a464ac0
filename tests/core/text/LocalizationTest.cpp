#include "LanguageTestSupport.h"

#include "host/Platform.h"
#include "host/Settings.h"
#include "scan/BuiltinRules.h"
#include "scan/CleanRule.h"
#include "text/Formatting.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <functional>
#include <thread>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

TEST(Localization, SystemPreferencesPickTheFirstOfEnglishAndChinese) {
    struct Case {
        std::vector<std::string> preferences;
        AppLanguage expected;
    };
    const Case cases[] = {
        {{"de-DE", "en-US"}, AppLanguage::english},
        {{"de", "en"}, AppLanguage::english},
        {{"en_GB"}, AppLanguage::english},
        {{"ja-JP"}, AppLanguage::chinese},
        {{"ja", "fr-FR"}, AppLanguage::chinese},
        {{"zh-TW"}, AppLanguage::chinese},
        {{"zh-Hant-TW", "en-US"}, AppLanguage::chinese},
        {{"fr-FR", "zh-Hans-CN", "en-US"}, AppLanguage::chinese},
        {{}, AppLanguage::chinese},
        {{"C", "", "en"}, AppLanguage::english},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.preferences));
        EXPECT_EQ(resolvedFromSystem(c.preferences), c.expected);
    }
}

TEST(Localization, StoredValuesOtherThanTheTwoLanguagesMeanSystem) {
    const std::pair<std::optional<std::string>, AppLanguage> cases[] = {
        {"zh-Hans", AppLanguage::chinese}, {"en", AppLanguage::english}, {"system", AppLanguage::system},
        {std::nullopt, AppLanguage::system}, {"", AppLanguage::system},    {"klingon", AppLanguage::system},
        {"EN", AppLanguage::system},         {"zh-hans", AppLanguage::system}, {"zh", AppLanguage::system},
    };
    for (const auto& [stored, expected] : cases) {
        SCOPED_TRACE(stored.value_or("(absent)"));
        EXPECT_EQ(Localization::languageFromStored(stored), expected);
    }
}

TEST(Localization, ChoiceIsStoredAsItsRawValueAndSystemRemovesTheKey) {
    const AppLanguage before = Localization::language();
    Localization::setLanguage(AppLanguage::english);
    EXPECT_EQ(Settings::string("LumabroomLanguage"), "en");
    EXPECT_EQ(Localization::language(), AppLanguage::english);
    EXPECT_EQ(Localization::effectiveLanguage(), AppLanguage::english);

    Localization::setLanguage(AppLanguage::chinese);
    EXPECT_EQ(Settings::string("LumabroomLanguage"), "zh-Hans");
    EXPECT_EQ(Localization::effectiveLanguage(), AppLanguage::chinese);

    Localization::setLanguage(AppLanguage::system);
    EXPECT_EQ(Settings::string("LumabroomLanguage"), std::nullopt);
    EXPECT_EQ(Localization::language(), AppLanguage::system);
    EXPECT_NE(Localization::effectiveLanguage(), AppLanguage::system);

    // The store is the sandbox's, not the user's.
    const fs::path file = settingsFolder() / "Lumabroom" / (Platform::isMacOS() ? "Lumabroom.ini" : "Lumabroom.conf");
    EXPECT_TRUE(fs::exists(file));
    Localization::setLanguageForThisRun(before);
}

TEST(Localization, ForThisRunLeavesTheStoreAlone) {
    ASSERT_TRUE(Settings::setString("LumabroomLanguage", "klingon"));
    {
        LanguageScope english(AppLanguage::english);
        EXPECT_EQ(Localization::language(), AppLanguage::english);
    }
    EXPECT_EQ(Settings::string("LumabroomLanguage"), "klingon");
    EXPECT_EQ(Localization::languageFromStored(Settings::string("LumabroomLanguage")), AppLanguage::system);
    ASSERT_TRUE(Settings::remove("LumabroomLanguage"));
}

TEST(Localization, DisplayNamesInBothLanguages) {
    struct Case {
        const char* what;
        std::function<std::string()> name;
        std::string chinese;
        std::string english;
    };
    const Case cases[] = {
        {"system", [] { return displayName(AppLanguage::system); }, "跟随系统", "Follow System"},
        {"chinese", [] { return displayName(AppLanguage::chinese); }, "简体中文", "简体中文"},
        {"english", [] { return displayName(AppLanguage::english); }, "English", "English"},
        {"code", [] { return displayName(Category::code); }, "Code & Worktrees", "Code & Worktrees"},
        {"xcode", [] { return displayName(Category::xcode); }, "Xcode 与模拟器", "Xcode & Simulators"},
        {"pm", [] { return displayName(Category::packageManager); }, "包管理器缓存", "Package Manager Caches"},
        {"report-only", [] { return displayName(SafetyLevel::reportOnly); }, "仅报告", "Report Only"},
        {"buildCache", [] { return displayName(DockerUsageKind::buildCache); }, "构建缓存", "Build Cache"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        {
            LanguageScope chinese(AppLanguage::chinese);
            EXPECT_EQ(c.name(), c.chinese);
        }
        LanguageScope english(AppLanguage::english);
        EXPECT_EQ(c.name(), c.english);
    }
}

TEST(Localization, RuleTextsFollowTheLanguageAtEachRead) {
    const CleanRule* rule = BuiltinRules::find("pm.go-build", PathTable::macOS);
    ASSERT_NE(rule, nullptr);
    LanguageScope scope(AppLanguage::chinese);
    EXPECT_EQ(rule->name(), "Go 构建缓存");
    EXPECT_EQ(rule->note(), "go build 增量缓存,等价于 go clean -cache");
    Localization::setLanguageForThisRun(AppLanguage::english);
    EXPECT_EQ(rule->name(), "Go Build Cache");
    EXPECT_EQ(rule->note(), "go build incremental cache; the same as go clean -cache");
    Localization::setLanguageForThisRun(AppLanguage::chinese);
    EXPECT_EQ(rule->name(), "Go 构建缓存");
}

TEST(Localization, EntryLabelsInBothLanguages) {
    struct Case {
        EntryLabel label;
        std::string chinese;
        std::string english;
    };
    const Case cases[] = {
        {{DockerUsageLabel{DockerUsageKind::images, "9", std::nullopt}}, "镜像 9 个", "Images: 9"},
        {{DockerUsageLabel{DockerUsageKind::volumes, "2", "1.161GB"}}, "数据卷 2 个 · 可回收 1.161GB",
         "Volumes: 2 · 1.161GB reclaimable"},
        {{DockerUsageLabel{DockerUsageKind::buildCache, "?", "3GB"}}, "构建缓存 ? 个 · 可回收 3GB",
         "Build Cache: ? · 3GB reclaimable"},
        {{DockerOtherLabel{}}, "系统与其他", "System & Other"},
        {{LiteralLabel{"镜像 9 个"}}, "镜像 9 个", "镜像 9 个"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.chinese);
        {
            LanguageScope chinese(AppLanguage::chinese);
            EXPECT_EQ(c.label.text(), c.chinese);
        }
        LanguageScope english(AppLanguage::english);
        EXPECT_EQ(c.label.text(), c.english);
    }
}

TEST(Localization, TextsBuiltAtRunTimeFallBackToTheirFormattedForm) {
    LanguageScope english(AppLanguage::english);
    const std::pair<std::string, std::string> plain[] = {
        {"今天", "today"},
        {"1 年多前", "over a year ago"},
        {"3 天前", "3 days ago"},
        {"1 个月前", "1 month ago"},
        {"12 个月前", "12 months ago"},
        {"5 年前", "5 years ago"},
        {"可回收 9.5GB", "9.5GB reclaimable"},
        {"Build Cache 12 个", "Build Cache: 12"},
        // No value where the form wants one, or no key at all: the text itself.
        {"天前", "天前"},
        {"x 天前", "x 天前"},
        {"可回收 ", "可回收 "},
        {"不在表里的键", "不在表里的键"},
        {"", ""},
    };
    for (const auto& [key, expected] : plain) {
        SCOPED_TRACE(key);
        EXPECT_EQ(Localization::text(key), expected);
    }
}

TEST(Localization, FormattedKeysTakeTheirValuesAfterTheLookup) {
    {
        LanguageScope english(AppLanguage::english);
        EXPECT_EQ(Localization::counted("%n 天前", 1), "1 day ago");
        EXPECT_EQ(Localization::counted("%n 天前", 2), "2 days ago");
        EXPECT_EQ(Localization::counted("%n 年前", 1), "1 year ago");
        EXPECT_EQ(Localization::formatted("可回收 %1", {"%1 GB"}), "%1 GB reclaimable") << "values are not read again";
        EXPECT_EQ(Localization::formatted("%1 %2 个", {"Images", "4"}), "Images: 4");
        EXPECT_EQ(Localization::formatted("没有译文的 %1 和 %2", {"a", "b"}), "没有译文的 a 和 b");
    }
    LanguageScope chinese(AppLanguage::chinese);
    EXPECT_EQ(Localization::counted("%n 天前", 1), "1 天前");
    EXPECT_EQ(Localization::formatted("可回收 %1", {"5GB"}), "可回收 5GB");
    EXPECT_EQ(Localization::formatted("%1 %2 个", {"镜像", "4"}), "镜像 4 个");
}

TEST(Localization, LanguageChangesReachEveryThreadAtItsNextRead) {
    const CleanRule& rule = *BuiltinRules::find("xcode.derived-data", PathTable::macOS);
    const std::string chinese = "DerivedData 编译产物";
    const std::string english = "DerivedData Build Products";
    const AppLanguage before = Localization::language();
    constexpr int workers = 4;
    constexpr int rounds = 40;

    // In lock step: the main thread changes the language, then every worker reads once.
    std::barrier step(workers + 1);
    std::atomic<int> wrong{0};
    {
        std::vector<std::jthread> threads;
        for (int w = 0; w < workers; ++w) {
            threads.emplace_back([&] {
                for (int round = 0; round < rounds; ++round) {
                    step.arrive_and_wait();
                    if (rule.name() != (round % 2 == 0 ? english : chinese)) ++wrong;
                    step.arrive_and_wait();
                }
            });
        }
        for (int round = 0; round < rounds; ++round) {
            Localization::setLanguage(round % 2 == 0 ? AppLanguage::english : AppLanguage::chinese);
            step.arrive_and_wait();
            step.arrive_and_wait();
        }
    }
    EXPECT_EQ(wrong.load(), 0);

    // Free running: whatever the moment, a read gives one language's whole text.
    std::atomic<bool> stop{false};
    std::atomic<int> reads{0};
    {
        std::vector<std::jthread> threads;
        for (int w = 0; w < workers; ++w) {
            threads.emplace_back([&] {
                while (!stop.load()) {
                    const std::string name = rule.name();
                    const std::string size = Formatting::bytes(2'000'000);
                    if ((name != english && name != chinese) || size != "2.0 MB") ++wrong;
                    ++reads;
                }
            });
        }
        // `system` resolves through the platform's preferences at each lookup.
        const AppLanguage cycle[] = {AppLanguage::english, AppLanguage::system, AppLanguage::chinese};
        for (int flip = 0; flip < 300 || reads.load() < 1000; ++flip) Localization::setLanguage(cycle[flip % 3]);
        stop = true;
    }
    EXPECT_EQ(wrong.load(), 0);
    Localization::setLanguage(before);
}
