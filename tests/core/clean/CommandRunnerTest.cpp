#include "clean/CommandRunner.h"

#include "Script.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <future>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace lumabroom;
using lumabroom::test::numbered;
using lumabroom::test::readFile;
using lumabroom::test::ScopedEnv;
using lumabroom::test::TempTree;
using lumabroom::test::writeScript;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// A zombie counts as gone: whoever inherited it may not reap it at once.
bool isRunning(pid_t pid) {
    if (pid <= 0 || ::kill(pid, 0) != 0) return false;
#if defined(__linux__)
    std::string stat = readFile(numbered("/proc/", pid) + "/stat");
    auto close = stat.rfind(')');
    return close != std::string::npos && close + 2 < stat.size() && stat[close + 2] != 'Z';
#else
    return true;
#endif
}

// Signals travel asynchronously; give a killed process a moment to go.
bool goneSoon(pid_t pid) {
    for (int i = 0; i < 200 && isRunning(pid); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return !isRunning(pid);
}

pid_t pidIn(const std::filesystem::path& file) {
    std::string text = readFile(file);
    return text.empty() ? -1 : static_cast<pid_t>(std::stol(text));
}

} // namespace

TEST(CommandRunner, FindBinaryTakesTheFirstExecutableFileWithTheTildeExpanded) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    t.dir("folder");
    auto plain = t.file("plain");
    ::chmod(plain.c_str(), 0644);
    std::string tool = writeScript(t, "bin/tool", "exit 0");
    std::string homeTool = writeScript(t, "home/bin/tool", "exit 0");

    struct Case {
        const char* name;
        std::vector<std::string> candidates;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"folder and plain file fall through", {(t / "folder").string(), plain.string(), tool}, tool},
        {"tilde form", {(t / "missing").string(), "~/bin/tool", tool}, homeTool},
        {"order decides", {tool, "~/bin/tool"}, tool},
        {"none executable", {(t / "folder").string(), plain.string(), (t / "missing").string()}, std::nullopt},
        {"empty list", {}, std::nullopt},
        {"PATH is not searched", {"sh", "env"}, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(CommandRunner::findBinary(c.candidates), c.expected);
    }
}

TEST(CommandRunner, GivesStandardOutputOnlyForStatusZeroAndValidUtf8) {
    TempTree t;
    struct Case {
        const char* name;
        const char* body;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"text keeps its final newline", "echo hello", "hello\n"},
        {"no output is the empty string", "exit 0", ""},
        {"partial output then status 1", "printf 'half of it\\n'; exit 1", std::nullopt},
        {"status 3 without output", "exit 3", std::nullopt},
        {"ended by a signal", "echo before; kill -9 $$", std::nullopt},
        {"standard error is ignored", "echo err >&2; echo out; echo err >&2", "out\n"},
        {"standard error larger than a pipe", "head -c 1048576 /dev/zero >&2; echo done", "done\n"},
        {"no controlling terminal", "if (: </dev/tty) 2>/dev/null; then echo tty; else echo none; fi", "none\n"},
        {"valid multibyte text", "printf 'h\\303\\251llo \\342\\202\\254 \\360\\235\\204\\236'",
         "h\xC3\xA9llo \xE2\x82\xAC \xF0\x9D\x84\x9E"},
        {"byte FF", "printf 'ok\\377'", std::nullopt},
        {"lone continuation byte", "printf '\\200'", std::nullopt},
        {"overlong slash", "printf '\\300\\257'", std::nullopt},
        {"overlong three bytes", "printf '\\340\\200\\257'", std::nullopt},
        {"surrogate", "printf '\\355\\240\\200'", std::nullopt},
        {"above U+10FFFF", "printf '\\364\\220\\200\\200'", std::nullopt},
        {"cut short at the end", "printf 'euro \\342\\202'", std::nullopt},
    };
    int index = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string tool = writeScript(t, numbered("case", index++), c.body);
        EXPECT_EQ(CommandRunner::run(tool, {}, 30), c.expected);
    }
}

TEST(CommandRunner, AToolThatWaitsOnStandardInputMeetsItsEnd) {
    TempTree t;
    std::string asks =
        writeScript(t, "asks", "printf 'Proceed? '; if read -r a; then echo \"got $a\"; else echo eof; fi");
    std::string filter = writeScript(t, "filter", "cat; echo after");
    // Our own standard input never delivers, as a terminal nobody types into.
    int never[2];
    ASSERT_EQ(::pipe(never), 0);
    int saved = ::dup(STDIN_FILENO);
    ::dup2(never[0], STDIN_FILENO);
    auto start = Clock::now();
    auto asked = CommandRunner::run(asks, {}, 10);
    auto filtered = CommandRunner::run(filter, {}, 10);
    double seconds = secondsSince(start);
    if (saved >= 0) {
        ::dup2(saved, STDIN_FILENO);
        ::close(saved);
    } else {
        ::close(STDIN_FILENO);
    }
    ::close(never[0]);
    ::close(never[1]);
    EXPECT_EQ(asked, "Proceed? eof\n");
    EXPECT_EQ(filtered, "after\n");
    EXPECT_LT(seconds, 5);
}

TEST(CommandRunner, PassesArgumentsUnchangedWithoutAShell) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    std::string tool = writeScript(t, "bin/args", "printf '<%s>\\n' \"$0\" \"$@\"");
    std::vector<std::string> arguments{"", "two words", "'quoted'", "$HOME", "*", "a\"b", "line\nbreak", "; exit 1"};
    EXPECT_EQ(CommandRunner::run(tool, arguments, 30),
              "<" + tool + ">\n<>\n<two words>\n<'quoted'>\n<$HOME>\n<*>\n<a\"b>\n<line\nbreak>\n<; exit 1>\n");
}

TEST(CommandRunner, ReadsOutputLargerThanAPipeWhileTheChildRuns) {
    TempTree t;
    constexpr std::size_t size = 3 * 1024 * 1024 + 17;
    std::string tool = writeScript(
        t, "big", numbered("head -c 2097152 /dev/zero >&2; head -c ", size) + " /dev/zero | tr '\\000' 'a'");
    auto output = CommandRunner::run(tool, {}, 60);
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), size);
    EXPECT_EQ(output->find_first_not_of('a'), std::string::npos);
}

TEST(CommandRunner, NothingWhenTheChildCannotStart) {
    TempTree t;
    t.dir("folder");
    auto plain = t.file("plain", 10);
    ::chmod(plain.c_str(), 0644);
    std::ofstream(t / "noshebang") << "echo hi\n";
    ::chmod((t / "noshebang").c_str(), 0755);
    for (const auto& path : {t / "missing", t / "folder", plain, t / "noshebang"}) {
        SCOPED_TRACE(path.string());
        EXPECT_EQ(CommandRunner::run(path.string(), {}, 30), std::nullopt);
    }
}

TEST(CommandRunner, ChildLeadsItsOwnProcessGroup) {
    if (::access("/bin/ps", X_OK) != 0 && ::access("/usr/bin/ps", X_OK) != 0) GTEST_SKIP() << "no ps";
    TempTree t;
    std::string tool = writeScript(t, "group", "pgid=$(ps -o pgid= -p $$ | tr -d ' '); echo \"$$ $pgid\"");
    auto output = CommandRunner::run(tool, {}, 30);
    ASSERT_TRUE(output);
    auto blank = output->find(' ');
    ASSERT_NE(blank, std::string::npos);
    EXPECT_EQ(output->substr(0, blank) + "\n", output->substr(blank + 1));
}

TEST(CommandRunner, AHangEndsAtTheLimitAndTakesTheGroupAlong) {
    TempTree t;
    const double limit = 0.5;
    struct Case {
        const char* name;
        const char* body;
    };
    const Case cases[] = {
        {"waits on a child", "echo started; sleep 30 & echo $! > \"$1\"; wait"},
        {"closes its output and waits", "exec >&-; sleep 30 & echo $! > \"$1\"; wait"},
    };
    int index = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::string tool = writeScript(t, numbered("hang", index), c.body);
        auto pidFile = t / (numbered("hang", index++) + ".pid");
        auto start = Clock::now();
        EXPECT_EQ(CommandRunner::run(tool, {pidFile.string()}, limit), std::nullopt);
        // The group obeys the terminate request, so the grace period is not waited out.
        EXPECT_LT(secondsSince(start), limit + CommandRunner::kKillGraceSeconds / 2);
        EXPECT_TRUE(goneSoon(pidIn(pidFile)));
    }
}

TEST(CommandRunner, AGroupThatIgnoresTheTerminateRequestIsKilledAfterTheGrace) {
    TempTree t;
    const double limit = 0.5;
    auto log = t / "signals.log";
    auto pidFile = t / "sleeper.pid";
    std::string tool = writeScript(t, "stubborn",
                                   "trap 'echo term >> \"$1\"' TERM\n"
                                   "(trap '' TERM; exec sleep 30) & echo $! > \"$2\"\n"
                                   "echo waiting\n"
                                   "while :; do wait; done");
    auto start = Clock::now();
    EXPECT_EQ(CommandRunner::run(tool, {log.string(), pidFile.string()}, limit), std::nullopt);
    EXPECT_LT(secondsSince(start), limit + CommandRunner::kKillGraceSeconds + 1.5);
    EXPECT_EQ(readFile(log), "term\n"); // asked once, politely
    EXPECT_TRUE(goneSoon(pidIn(pidFile)));
}

TEST(CommandRunner, AGrandchildHoldingThePipeDoesNotOutlastTheLimit) {
    TempTree t;
    const double limit = 0.5;
    auto pidFile = t / "grandchild.pid";
    std::string tool = writeScript(t, "parent", "sleep 30 & echo $! > \"$1\"; echo parent done; exit 0");
    auto start = Clock::now();
    EXPECT_EQ(CommandRunner::run(tool, {pidFile.string()}, limit), std::nullopt);
    EXPECT_LT(secondsSince(start), limit + CommandRunner::kKillGraceSeconds / 2);
    EXPECT_TRUE(goneSoon(pidIn(pidFile)));
}

TEST(CommandRunner, AGrandchildThatLeftTheGroupIsNotWaitedForPastTheGrace) {
    const char* setsid = ::access("/usr/bin/setsid", X_OK) == 0 ? "/usr/bin/setsid" : nullptr;
    if (!setsid) GTEST_SKIP() << "no setsid";
    TempTree t;
    const double limit = 0.5;
    auto pidFile = t / "escaped.pid";
    std::string tool =
        writeScript(t, "parent", std::string(setsid) + " sleep 30 & echo $! > \"$1\"; echo parent done; exit 0");
    auto start = Clock::now();
    EXPECT_EQ(CommandRunner::run(tool, {pidFile.string()}, limit), std::nullopt);
    EXPECT_LT(secondsSince(start), limit + CommandRunner::kKillGraceSeconds + 1.5);
    pid_t escaped = pidIn(pidFile);
    ASSERT_GT(escaped, 0);
    ::kill(escaped, SIGKILL);
}

TEST(CommandRunner, RunsManyAtOnce) {
    TempTree t;
    std::string tool = writeScript(t, "repeat", "i=0; while [ $i -lt 2000 ]; do echo \"$1\"; i=$((i+1)); done");
    std::vector<std::future<std::optional<std::string>>> runs;
    for (int k = 0; k < 8; ++k)
        runs.push_back(std::async(std::launch::async, [&, k] {
            return CommandRunner::run(tool, {numbered("line-", k)}, 60);
        }));
    for (int k = 0; k < 8; ++k) {
        SCOPED_TRACE(k);
        std::string expected;
        for (int i = 0; i < 2000; ++i) expected += numbered("line-", k) + "\n";
        EXPECT_EQ(runs[static_cast<std::size_t>(k)].get(), expected);
    }
}
