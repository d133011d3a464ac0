#include "scan/CleanRule.h"
#include "scan/Category.h"
#include "scan/SafetyLevel.h"

#include <gtest/gtest.h>

using namespace lumabroom;

TEST(CleanRule, JsonRoundTripWithTheSevenKeysInOrder) {
    const CleanRule rule{"pm.pnpm",
                         "pnpm store",
                         "注释",
                         Category::packageManager,
                         {"~/Library/pnpm/store/*", "~/.pnpm-store/*"},
                         SafetyLevel::caution,
                         true};
    const std::string json = encode(rule);
    EXPECT_EQ(json,
              R"({"id":"pm.pnpm","nameKey":"pnpm store","noteKey":"注释","category":"pm",)"
              R"("paths":["~/Library/pnpm/store/*","~/.pnpm-store/*"],"safety":"caution","exclusiveSizeOnly":true})");
    EXPECT_EQ(decodeRule(json), rule);
}

TEST(CleanRule, DecodingRejectsMissingOrIllTypedKeysAndIgnoresExtraOnes) {
    const std::string names = R"("nameKey":"n","noteKey":"o",)";
    const std::string bad[] = {
        "not json",
        "{" + names + R"("category":"pm","paths":[],"safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x",)" + names + R"("category":"pm","paths":[],"safety":"safe"})",
        R"({"id":"x",)" + names
            + R"("category":"packageManager","paths":[],"safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x",)" + names + R"("category":"pm","paths":"~/a","safety":"safe","exclusiveSizeOnly":false})",
        R"({"id":"x",)" + names + R"("category":"pm","paths":[1],"safety":"safe","exclusiveSizeOnly":false})",
    };
    for (const std::string& text : bad) EXPECT_EQ(decodeRule(text), std::nullopt) << text;
    EXPECT_EQ(decodeRule(R"({"id":"x",)" + names
                         + R"("category":"wt","paths":[],)"
                           R"("safety":"report-only","exclusiveSizeOnly":false,"extra":1})"),
              (CleanRule{"x", "n", "o", Category::code, {}, SafetyLevel::reportOnly, false}));
}
