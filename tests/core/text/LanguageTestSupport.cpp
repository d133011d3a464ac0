#include "LanguageTestSupport.h"

#include "host/Settings.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <optional>

namespace lumabroom::test {

namespace {
class SettingsSandbox : public testing::Environment {
public:
    void SetUp() override {
        tree_.emplace();
        Settings::useFolder(tree_->root());
    }
    void TearDown() override { tree_.reset(); }
    const std::filesystem::path& folder() const { return tree_->root(); }

private:
    std::optional<TempTree> tree_;
};

// gtest owns the environment.
SettingsSandbox* const sandbox =
    static_cast<SettingsSandbox*>(testing::AddGlobalTestEnvironment(new SettingsSandbox));
} // namespace

const std::filesystem::path& settingsFolder() { return sandbox->folder(); }

} // namespace lumabroom::test
