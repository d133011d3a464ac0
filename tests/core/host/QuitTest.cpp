#include "support/Process.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <sys/stat.h>

using namespace lumabroom::test;

// Each probe leaves four seconds of work running when it ends; the process must not wait for it.
TEST(Quit, TheProcessEndsAtOnceWhateverRunsAndTheToolGoesWithIt) {
    TempTree t;
    const auto tool = t / "tool", pidFile = t / "tool.pid";
    writeText(tool, "#!/bin/sh\necho $$ > \"$1.part\"; mv \"$1.part\" \"$1\"; exec sleep 4\n");
    ::chmod(tool.c_str(), 0755);
    const std::vector<std::string> probes[] = {{"tool", tool.string(), pidFile.string()}, {"pool"}};
    for (const auto& arguments : probes) {
        SCOPED_TRACE(arguments.front());
        std::vector<std::string> argv{LUMABROOM_QUIT_PROBE_PATH};
        argv.insert(argv.end(), arguments.begin(), arguments.end());
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(runProcess(argv, {}).status, 0);
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 2.0);
    }
    const pid_t pid = static_cast<pid_t>(std::atoi(readFile(pidFile).c_str()));
    ASSERT_GT(pid, 0);
    EXPECT_TRUE(goneSoon(pid));
}
