#include "LanguageTestSupport.h"

#include "host/Settings.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumabroom::test {

namespace {
class SettingsSandbox : public testing::Environment {
public:
    void SetUp() override { Settings::useFolder(tree.emplace().root()); }
    void TearDown() override { tree.reset(); }
    std::optional<TempTree> tree;
};

// gtest owns the environment.
SettingsSandbox* const sandbox =
    static_cast<SettingsSandbox*>(testing::AddGlobalTestEnvironment(new SettingsSandbox));
} // namespace

const std::filesystem::path& settingsFolder() { return sandbox->tree->root(); }

} // namespace lumabroom::test
