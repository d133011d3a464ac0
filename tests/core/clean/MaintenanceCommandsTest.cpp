#include "clean/MaintenanceCommands.h"

#include "host/ToolPaths.h"

#include "Script.h"

#include <gtest/gtest.h>

using namespace lumabroom;
using namespace lumabroom::test;

namespace {

// Points the shell at a test's own executable for the life of the object.
struct ShellOverride {
    explicit ShellOverride(std::string path) { ToolPaths::setOverride(Tool::shell, std::move(path)); }
    ~ShellOverride() { ToolPaths::setOverride(Tool::shell, std::nullopt); }
};

} // namespace

TEST(MaintenanceCommands, RunsTheLineInTheLoginShellAndTellsOnlyTheStatus) {
    TempTree t;
    const auto record = t / "arguments";
    // Records how it was called, then does what the line says.
    ShellOverride shell(writeScript(t, "bin/login-shell",
                                    "printf '<%s>\\n' \"$@\" > '" + record.string() + "'\nexec /bin/sh -c \"$3\""));
    const std::pair<std::string, bool> cases[] = {
        {"echo 'pruned 12 packages'", true},
        {"echo partial; exit 1", false},
        {"printf '\\377'", false}, // not looked at, yet output that is not text fails the run
    };
    for (const auto& [line, expected] : cases) {
        SCOPED_TRACE(line);
        EXPECT_EQ(MaintenanceCommands::run({"pm.test", line, "detail"}), expected);
        EXPECT_EQ(readFile(record), "<-l>\n<-c>\n<" + line + ">\n");
    }
    for (const auto& path : {t / "missing", t.dir("folder")}) {
        ShellOverride none(path.string());
        EXPECT_FALSE(MaintenanceCommands::run({"pm.test", "exit 0", "detail"})) << path;
    }
}
