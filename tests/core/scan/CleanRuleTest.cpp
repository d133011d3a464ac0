#include "scan/CleanRule.h"
#include "text/Localization.h"

#include <gtest/gtest.h>

#include <unordered_set>

using namespace lumabroom;

namespace {
CleanRule sample() {
    return CleanRule{"pm.pnpm", "pnpm store", "注释", Category::packageManager,
                     {"~/Library/pnpm/store/*", "~/.pnpm-store/*"}, SafetyLevel::caution, true};
}
} // namespace

TEST(CleanRule, JsonRoundTripWithTheSevenKeysInOrder) {
    const std::string json = encode(sample());
    EXPECT_EQ(json, R"({"id":"pm.pnpm","nameKey":"pnpm store","noteKey":"注释","category":"pm",)"
                    R"("paths":["~/Library/pnpm/store/*","~/.pnpm-store/*"],"safety":"caution","exclusiveSizeOnly":true})");
    EXPECT_EQ(decodeRule(json), sample());
}

TEST(CleanRule, DecodingRejectsMissingOrIllTypedKeys) {
    const char* bad[] = {
        "",
        "not json",
        "[]",
        R"({"nameKey":"n","noteKey":"o","category":"pm","paths":[],"safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"pm","paths":[],"safety":"safe"})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"packageManager","paths":[],"safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"pm","paths":[],"safety":"reportOnly","exclusiveSizeOnly":false})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"pm","paths":"~/a","safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"pm","paths":[1],"safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x","nameKey":"n","noteKey":"o","category":"pm","paths":[],"safety":"safe","exclusiveSizeOnly":"no"})",
        R"({"id":7,"nameKey":"n","noteKey":"o","category":"pm","paths":[],"safety":"safe","exclusiveSizeOnly":false})",
    };
    for (const char* text : bad) {
        SCOPED_TRACE(text);
        EXPECT_EQ(decodeRule(text), std::nullopt);
    }
    EXPECT_TRUE(decodeRule(R"({"id":"x","nameKey":"n","noteKey":"o","category":"wt","paths":[],)"
                           R"("safety":"report-only","exclusiveSizeOnly":false,"extra":1})"));
}

TEST(CleanRule, RawValuesRoundTripAndDockerTypesMatchExactly) {
    for (auto c : allCategories) EXPECT_EQ(categoryFromRaw(rawValue(c)), c);
    for (auto s : allSafetyLevels) EXPECT_EQ(safetyFromRaw(rawValue(s)), s);
    EXPECT_EQ(rawValue(Category::code), "wt");
    EXPECT_EQ(rawValue(SafetyLevel::reportOnly), "report-only");
    EXPECT_EQ(dockerUsageKindFromDfType("Images"), DockerUsageKind::images);
    EXPECT_EQ(dockerUsageKindFromDfType("Local Volumes"), DockerUsageKind::volumes);
    EXPECT_EQ(dockerUsageKindFromDfType("Build Cache"), DockerUsageKind::buildCache);
    EXPECT_EQ(dockerUsageKindFromDfType("images"), std::nullopt);
    EXPECT_EQ(dockerUsageKindFromDfType("Volumes"), std::nullopt);
}

TEST(CleanRule, EntriesWithOnePathShareAnIdButDifferBySizeAndLabel) {
    ScanEntry a{"/x/y", 10, std::nullopt};
    ScanEntry b{"/x/y", 11, std::nullopt};
    ScanEntry c{"/x/y", 10, EntryLabel{LiteralLabel{""}}};
    EXPECT_EQ(a.id(), b.id());
    EXPECT_NE(a, b);
    EXPECT_NE(a, c);
    EXPECT_EQ(c, (ScanEntry{"/x/y", 10, EntryLabel{LiteralLabel{""}}}));
    std::unordered_set<ScanEntry> set{a, b, c, a};
    EXPECT_EQ(set.size(), 3u);
    std::unordered_set<CleanRule> rules{sample(), sample()};
    EXPECT_EQ(rules.size(), 1u);
}

TEST(CleanRule, LabelTextsAndTotals) {
    Localization::setLanguageForThisRun(AppLanguage::chinese);
    EXPECT_EQ((EntryLabel{DockerUsageLabel{DockerUsageKind::images, "9", std::nullopt}}).text(), "镜像 9 个");
    EXPECT_EQ((EntryLabel{DockerUsageLabel{DockerUsageKind::volumes, "2", "1.161GB"}}).text(), "数据卷 2 个 · 可回收 1.161GB");
    EXPECT_EQ((EntryLabel{DockerOtherLabel{}}).text(), "系统与其他");
    EXPECT_EQ((EntryLabel{LiteralLabel{"as is"}}).text(), "as is");
    EXPECT_EQ((RuleScanResult{sample(), {}}).totalSize(), 0);
    EXPECT_EQ((RuleScanResult{sample(), {{"/a", 5, {}}, {"/b", 7, {}}}}).totalSize(), 12);
}
