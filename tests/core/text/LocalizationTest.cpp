#include "LanguageTestSupport.h"

#include "host/Settings.h"
#include "scan/BuiltinRules.h"
#include "scan/EntryLabel.h"
#include "text/Formatting.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace lumabroom;
using namespace lumabroom::test;

// Which language the system's preferences pick, and that a garbled setting or a language given for
// one run is never stored, are checked end to end by the scanner's tests.
TEST(Localization, OnlyTheTwoRawValuesAreStoredAndReadAsLanguages) {
    const std::pair<std::optional<std::string>, AppLanguage> cases[] = {
        {"zh-Hans", AppLanguage::chinese},   {"en", AppLanguage::english}, {"system", AppLanguage::system},
        {std::nullopt, AppLanguage::system}, {"", AppLanguage::system},    {"EN", AppLanguage::system},
        {"zh-hans", AppLanguage::system},    {"zh", AppLanguage::system},
    };
    for (const auto& [stored, expected] : cases)
        EXPECT_EQ(Localization::languageFromStored(stored), expected) << stored.value_or("(absent)");
    const LanguageScope restore(Localization::language());
    using Stored = std::pair<AppLanguage, std::optional<std::string>>;
    for (const auto& [language, stored] :
         {Stored{AppLanguage::english, "en"}, {AppLanguage::chinese, "zh-Hans"}, {AppLanguage::system, std::nullopt}}) {
        Localization::setLanguage(language);
        EXPECT_EQ(Settings::string("LumabroomLanguage"), stored);
    }
}

TEST(Localization, LabelsAndCountedTextsInBothLanguages) {
    const EntryLabel volumes{DockerUsageLabel{DockerUsageKind::volumes, "2", "1.161GB"}};
    const EntryLabel images{DockerUsageLabel{DockerUsageKind::images, "9", std::nullopt}};
    LanguageScope scope(AppLanguage::chinese);
    EXPECT_EQ(volumes.text(), "数据卷 2 个 · 可回收 1.161GB");
    EXPECT_EQ(images.text(), "镜像 9 个");
    Localization::setLanguageForThisRun(AppLanguage::english);
    EXPECT_EQ(volumes.text(), "Volumes: 2 · 1.161GB reclaimable");
    EXPECT_EQ(images.text(), "Images: 9");
    EXPECT_EQ(EntryLabel{LiteralLabel{"镜像 9 个"}}.text(), "镜像 9 个");
    EXPECT_EQ(Localization::counted("%n 天前", 1), "1 day ago");
}

// The forms of ages are checked with the formatting of ages.
TEST(Localization, TextsBuiltAtRunTimeFallBackToTheirFormattedForm) {
    LanguageScope english(AppLanguage::english);
    const std::pair<std::string, std::string> cases[] = {
        {"可回收 9.5GB", "9.5GB reclaimable"},
        {"Build Cache 12 个", "Build Cache: 12"},
        {"被 1 个容器使用", "Used by 1 container"},
        {"悬空镜像 3f2a9c1b", "Dangling image 3f2a9c1b"},
        // No value where the form wants one, or no key at all: the text itself.
        {"天前", "天前"},
        {"x 天前", "x 天前"},
        {"可回收 ", "可回收 "},
        {"不在表里的键", "不在表里的键"},
        {"", ""},
    };
    for (const auto& [key, expected] : cases) EXPECT_EQ(Localization::text(key), expected) << key;
    EXPECT_EQ(Localization::formatted("可回收 %1", {"%1 GB"}), "%1 GB reclaimable") << "values are not read again";
    EXPECT_EQ(Localization::formatted("没有译文的 %1 和 %2", {"a", "b"}), "没有译文的 a 和 b");
}

// Free running: whatever the moment, a read gives one language's whole text, and every thread sees
// each change of language at a later read.
TEST(Localization, LanguageChangesReachEveryThreadWithoutARace) {
    const CleanRule& rule = *BuiltinRules::find("xcode.derived-data", PathTable::macOS);
    const std::string chinese = "DerivedData 编译产物", english = "DerivedData Build Products";
    const AppLanguage before = Localization::language();
    constexpr int workers = 4;
    std::atomic<int> wrong{0}, sawBoth{0};
    std::atomic<bool> stop{false};
    {
        std::vector<std::jthread> threads;
        for (int w = 0; w < workers; ++w) {
            threads.emplace_back([&] {
                bool sawEnglish = false, sawChinese = false;
                while (!stop.load()) {
                    const std::string name = rule.name();
                    wrong += (name != english && name != chinese) || Formatting::bytes(2'000'000) != "2.0 MB";
                    const bool sawBothBefore = sawEnglish && sawChinese;
                    sawEnglish = sawEnglish || name == english;
                    sawChinese = sawChinese || name == chinese;
                    sawBoth += !sawBothBefore && sawEnglish && sawChinese;
                }
            });
        }
        // `system` resolves through the platform's preferences at each lookup.
        const AppLanguage cycle[] = {AppLanguage::english, AppLanguage::system, AppLanguage::chinese};
        for (int flip = 0; flip < 300 || (sawBoth.load() < workers && flip < 100'000); ++flip)
            Localization::setLanguage(cycle[flip % 3]);
        stop = true;
    }
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_EQ(sawBoth.load(), workers);
    Localization::setLanguage(before);
}
