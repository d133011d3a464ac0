#pragma once

#include "ChartInput.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <unordered_set>
#include <vector>

namespace lumabroom::test {

inline constexpr double twoPi = 6.283185307179586;
inline constexpr double top = -twoPi / 4;

// A rule of `category` whose entries "/r/<id>/e0", "/r/<id>/e1", … have the given sizes.
RuleScanResult rule(const std::string& id, Category category, std::initializer_list<std::int64_t> sizes,
                    SafetyLevel safety = SafetyLevel::safe);
RuleScanResult rule(const std::string& id, Category category, const std::vector<std::int64_t>& sizes,
                    SafetyLevel safety = SafetyLevel::safe);
std::string entryID(const std::string& ruleID, int index);

// A model of a few results, in Chinese so that titles are their keys.
class ChartTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // The groups as the model would list them, with the present selection and route.
    ChartInput input() const;

    std::vector<RuleScanResult> results;
    std::unordered_set<std::string> selected;
    Route route = Route::overview();
};

// The fewest bytes whose span of a circle of 2^60 bytes reaches `radians`. No share times 2π gives
// 0.025 or 0.05 exactly, so this and one byte less are the two sides of a threshold.
std::int64_t bytesReaching(double radians);
inline constexpr std::int64_t circleBytes = std::int64_t(1) << 60;

} // namespace lumabroom::test
