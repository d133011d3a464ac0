#include "clean/MaintenanceCommands.h"

#include "host/Platform.h"
#include "host/ToolPaths.h"
#include "text/Localization.h"

#include "Script.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using lumabroom::test::readFile;
using lumabroom::test::TempTree;
using lumabroom::test::writeScript;

namespace {

// Points the shell at a test's own executable for the life of the object.
class ShellOverride {
public:
    explicit ShellOverride(std::string path) { ToolPaths::setOverride(Tool::shell, std::move(path)); }
    ~ShellOverride() { ToolPaths::setOverride(Tool::shell, std::nullopt); }
    ShellOverride(const ShellOverride&) = delete;
    ShellOverride& operator=(const ShellOverride&) = delete;
};

} // namespace

TEST(MaintenanceCommands, TheFourCommandsByRuleId) {
    struct Row {
        const char* id;
        const char* command;
        const char* detailKey;
    };
    const Row rows[] = {
        {"pm.pnpm", "pnpm store prune",
         "\u5220\u9664 store \u4e2d\u4e0d\u518d\u88ab\u4efb\u4f55\u9879\u76ee\u5f15\u7528\u7684\u5305"
         "(\u5b98\u65b9\u63a8\u8350,\u53ea\u4f5c\u7528\u4e8e\u73b0\u7528\u7248\u672c)"},
        {"pm.homebrew", "brew cleanup --prune=all",
         "\u6e05\u7406\u6240\u6709\u65e7\u7248\u672c\u5b89\u88c5\u5305\u4e0e\u8fc7\u671f\u4e0b\u8f7d"},
        {"pm.go-build", "go clean -cache", "\u5b98\u65b9\u65b9\u5f0f\u6e05\u7a7a Go \u6784\u5efa\u7f13\u5b58"},
        {"xcode.simulator-devices", "xcrun simctl delete unavailable",
         "\u5220\u9664\u5df2\u5931\u6548/\u7cfb\u7edf\u7248\u672c\u8fc7\u65f6\u7684\u6a21\u62df\u5668\u8bbe\u5907,"
         "\u73b0\u5f79\u6a21\u62df\u5668\u4e0d\u53d7\u5f71\u54cd"},
    };
    EXPECT_EQ(MaintenanceCommands::registry().size(), std::size(rows));
    for (const auto& row : rows) {
        SCOPED_TRACE(row.id);
        EXPECT_EQ(MaintenanceCommands::command(row.id),
                  (MaintenanceCommand{row.id, row.command, Localization::text(row.detailKey)}));
    }
    for (const char* other : {"pm.npm", "", "PM.PNPM", "pm.pnpm ", "xcode.simulator-runtimes"}) {
        SCOPED_TRACE(other);
        EXPECT_EQ(MaintenanceCommands::command(other), std::nullopt);
    }
}

TEST(MaintenanceCommands, RunsTheLineInTheLoginShellAndTellsOnlyTheStatus) {
    TempTree t;
    auto record = t / "arguments";
    // Records how it was called, then does what the line says.
    ShellOverride shell(writeScript(t, "bin/login-shell",
                                    "printf '<%s>\\n' \"$@\" > '" + record.string() + "'\nexec /bin/sh -c \"$3\""));
    struct Case {
        const char* line;
        bool expected;
    };
    const Case cases[] = {
        {"exit 0", true},
        {"echo 'pruned 12 packages'", true},
        {"echo partial; exit 1", false},
        {"exit 7", false},
        {"printf '\\377'", false}, // not looked at, yet output that is not text fails the run
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.line);
        EXPECT_EQ(MaintenanceCommands::run({"pm.test", c.line, "detail"}), c.expected);
        EXPECT_EQ(readFile(record), std::string("<-l>\n<-c>\n<") + c.line + ">\n");
    }
}

TEST(MaintenanceCommands, ARegistryRowGoesToTheShellUnchanged) {
    TempTree t;
    auto record = t / "arguments";
    ShellOverride shell(writeScript(t, "bin/login-shell", "printf '<%s>\\n' \"$@\" > '" + record.string() + "'"));
    auto brew = MaintenanceCommands::command("pm.homebrew");
    ASSERT_TRUE(brew);
    EXPECT_TRUE(MaintenanceCommands::run(*brew));
    EXPECT_EQ(readFile(record), "<-l>\n<-c>\n<brew cleanup --prune=all>\n");
}

TEST(MaintenanceCommands, NoShellIsAFailure) {
    TempTree t;
    t.dir("folder");
    for (const auto& path : {t / "missing", t / "folder"}) {
        SCOPED_TRACE(path.string());
        ShellOverride shell(path.string());
        EXPECT_FALSE(MaintenanceCommands::run({"pm.test", "exit 0", "detail"}));
    }
}

TEST(ToolPaths, TheOverrideReplacesTheFixedPlacesUntilCleared) {
    for (Tool tool : {Tool::git, Tool::sqlite3, Tool::shell, Tool::docker, Tool::ollama, Tool::xcrun, Tool::open}) {
        auto fixed = ToolPaths::candidates(tool);
        EXPECT_FALSE(fixed.empty());
        for (const auto& place : fixed) EXPECT_TRUE(place.front() == '/' || place.rfind("~/", 0) == 0) << place;
        ToolPaths::setOverride(tool, "/test/own-tool");
        EXPECT_EQ(ToolPaths::candidates(tool), std::vector<std::string>{"/test/own-tool"});
        ToolPaths::setOverride(tool, std::nullopt);
        EXPECT_EQ(ToolPaths::candidates(tool), fixed);
    }
    // Whatever the login shell, "/bin/sh" stands behind it.
    if (!Platform::isMacOS()) {
        EXPECT_EQ(ToolPaths::candidates(Tool::shell).back(), "/bin/sh");
    }
}
