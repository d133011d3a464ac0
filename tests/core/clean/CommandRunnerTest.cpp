#include "clean/CommandRunner.h"

#include "Script.h"
#include "support/Process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <unistd.h>

using namespace lumabroom;
using namespace lumabroom::test;

TEST(CommandRunner, FindBinaryTakesTheFirstExecutableFileWithTheTildeExpanded) {
    TempTree t;
    ScopedEnv env{{"HOME", (t / "home").string()}};
    const std::string folder = t.dir("folder").string(), plain = t.file("plain").string();
    const std::string tool = writeScript(t, "bin/tool", "exit 0"), homeTool = writeScript(t, "home/bin/tool", "exit 0");
    ::chmod(plain.c_str(), 0644);
    const std::pair<std::vector<std::string>, std::optional<std::string>> cases[] = {
        {{folder, plain, tool}, tool},
        {{(t / "missing").string(), "~/bin/tool", tool}, homeTool},
        {{folder, plain, "sh"}, std::nullopt}, // PATH is not searched
    };
    for (const auto& [candidates, expected] : cases)
        EXPECT_EQ(CommandRunner::findBinary(candidates), expected) << candidates.front();
}

TEST(CommandRunner, GivesStandardOutputOnlyForStatusZeroAndValidUtf8) {
    TempTree t;
    const std::size_t big = 3 * 1024 * 1024 + 17;
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {"exit 0", ""},
        {"printf 'half of it\\n'; exit 1", std::nullopt},
        {"echo before; kill -9 $$", std::nullopt},
        {"echo early; exec >&-; sleep 0.3; exit 0", "early\n"}, // the exit comes well after the output
        {"echo late; exec >&-; sleep 0.3; exit 3", std::nullopt},
        {"echo err >&2; echo out; echo err >&2", "out\n"},
        {"head -c 2097152 /dev/zero >&2; head -c " + std::to_string(big) + " /dev/zero | tr '\\000' a",
         std::string(big, 'a')},
        {"if (: </dev/tty) 2>/dev/null; then echo tty; else echo none; fi", "none\n"},
        {"printf 'Proceed? '; if read -r a; then echo \"got $a\"; else echo eof; fi", "Proceed? eof\n"},
        {"cat; echo after", "after\n"},
        {"printf 'h\\303\\251llo \\342\\202\\254 \\360\\235\\204\\236'", "h\xC3\xA9llo \xE2\x82\xAC \xF0\x9D\x84\x9E"},
        {"printf 'ok\\377'", std::nullopt},
        {"printf '\\300\\257'", std::nullopt},      // overlong
        {"printf '\\355\\240\\200'", std::nullopt}, // surrogate
        {"printf 'euro \\342\\202'", std::nullopt}, // cut short
    };
    // Our own standard input never delivers, as a terminal nobody types into.
    int never[2];
    ASSERT_EQ(::pipe(never), 0);
    const int saved = ::dup(STDIN_FILENO);
    ::dup2(never[0], STDIN_FILENO);
    int index = 0;
    for (const auto& [body, expected] : cases) {
        SCOPED_TRACE(body.substr(0, 60));
        EXPECT_EQ(CommandRunner::run(writeScript(t, "case" + std::to_string(index++), body), {}, 20), expected);
    }
    saved >= 0 ? ::dup2(saved, STDIN_FILENO) : ::close(STDIN_FILENO);
    for (int fd : {saved, never[0], never[1]}) ::close(fd);
}

TEST(CommandRunner, RunsTheBinaryItselfWithArgumentsUnchanged) {
    TempTree t;
    const std::string tool = writeScript(t, "bin/args", "printf '<%s>\\n' \"$0\" \"$@\"");
    EXPECT_EQ(CommandRunner::run(tool, {"", "two words", "'q'", "$HOME", "*", "line\nbreak", "; exit 1"}, 30),
              "<" + tool + ">\n<>\n<two words>\n<'q'>\n<$HOME>\n<*>\n<line\nbreak>\n<; exit 1>\n");
    std::ofstream(t / "noshebang") << "echo hi\n";
    ::chmod((t / "noshebang").c_str(), 0755);
    for (const auto& path : {t / "missing", t.dir("folder"), t.file("plain", 10), t / "noshebang"})
        EXPECT_EQ(CommandRunner::run(path.string(), {}, 30), std::nullopt) << path;
}

// Each script gets a file for the pid of what it leaves behind; one that traps the terminate
// request notes it in the same file's ".term" companion.
TEST(CommandRunner, NoCallOutlivesItsLimitAndTheGroupGoesWithIt) {
    TempTree t;
    // `soon` is well below the 20 s limit of the cases that must not wait for it.
    const double limit = 0.5, grace = CommandRunner::kKillGraceSeconds, soon = 1.5;
    struct Case {
        const char* name;
        std::string body;
        double timeout;
        std::optional<std::string> expected;
        double bound;
        const char* terms;
        bool leftAlive;
    };
    const Case cases[] = {
        {"waits on a child", "echo started; sleep 30 & echo $! > \"$1\"; wait", limit, std::nullopt, limit + grace / 2,
         "", false},
        {"closes its output and waits", "exec >&-; sleep 30 & echo $! > \"$1\"; wait", limit, std::nullopt,
         limit + grace / 2, "", false},
        {"ignores the request",
         "trap 'echo term >> \"$1.term\"' TERM\n(trap '' TERM; exec sleep 30) & echo $! > \"$1\"\n"
         "while :; do wait; done",
         limit, std::nullopt, limit + grace + 1.5, "term\n", false},
        // The leader exits in time: its output counts, and what it left in its group is ended.
        {"grandchild holds the pipe", "sleep 30 & echo $! > \"$1\"; echo done; exit 0", 20, "done\n", soon, "", false},
        {"grandchild closed the pipe", "sleep 30 >/dev/null & echo $! > \"$1\"; echo done", 20, "done\n", soon, "",
         false},
        {"grandchild ignores the request", "(trap '' TERM; exec sleep 30) >/dev/null & echo $! > \"$1\"; echo done", 20,
         "done\n", soon, "", false},
        {"grandchild left the group", "/usr/bin/setsid sleep 30 & echo $! > \"$1\"; echo done; exit 0", 20, "done\n",
         soon, "", true},
        {"endless output", "echo $$ > \"$1\"; exec yes", 20, std::nullopt, soon, "", false},
    };
    int index = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        if (c.leftAlive && ::access("/usr/bin/setsid", X_OK) != 0) continue;
        const std::string name = "hang" + std::to_string(index++);
        const auto pidFile = t / (name + ".pid");
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(CommandRunner::run(writeScript(t, name, c.body), {pidFile.string()}, c.timeout), c.expected);
        EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), c.bound);
        EXPECT_EQ(readFile(pidFile.string() + ".term"), c.terms);
        const pid_t pid = static_cast<pid_t>(std::atoi(readFile(pidFile).c_str()));
        ASSERT_GT(pid, 0);
        if (c.leftAlive) ::kill(pid, SIGKILL);
        else EXPECT_TRUE(goneSoon(pid));
    }
}

TEST(CommandRunner, OutputBeyondTheCapIsAFailure) {
    TempTree t;
    for (const std::size_t size : {CommandRunner::kMaxOutputBytes, CommandRunner::kMaxOutputBytes + 1}) {
        SCOPED_TRACE(size);
        const auto output =
            CommandRunner::run(writeScript(t, "big" + std::to_string(size),
                                           "head -c " + std::to_string(size) + " /dev/zero | tr '\\000' a"),
                               {}, 30);
        EXPECT_EQ(output,
                  size <= CommandRunner::kMaxOutputBytes ? std::optional(std::string(size, 'a')) : std::nullopt);
    }
}
