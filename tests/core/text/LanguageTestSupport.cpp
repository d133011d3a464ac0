#include "host/Settings.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <optional>

namespace {
// Points the settings store at a folder of its own before the first test, so that no test reads or
// writes the user's own settings.
class SettingsSandbox : public testing::Environment {
    void SetUp() override { lumabroom::Settings::useFolder(tree.emplace().root()); }
    void TearDown() override { tree.reset(); }
    std::optional<lumabroom::test::TempTree> tree;
};

// gtest owns the environment.
[[maybe_unused]] testing::Environment* const sandbox = testing::AddGlobalTestEnvironment(new SettingsSandbox);
} // namespace
