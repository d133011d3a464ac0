#include "agents/AgentSessions.h"
#include "agents/ClaudeProjects.h"

#include "GitRepo.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kLeapDayLastSecond = 1709251199; // 2024-02-29T23:59:59Z

// A session file of `bytes` that names `cwd` (an empty one names none).
fs::path session(AgentHome& h, const std::string& relative, std::size_t bytes, const std::string& cwd = {},
                 std::int64_t mtime = kMarch2024) {
    std::string text = R"({"cwd":")" + cwd + R"("})";
    text.resize(bytes, ' ');
    return h.write(relative, text, mtime);
}

using Rows = std::vector<std::tuple<fs::path, std::int64_t, std::string>>;

Rows rows(const std::vector<ScanEntry>& entries) {
    Rows out;
    for (const auto& e : entries) out.emplace_back(e.url, e.size, e.label ? e.label->text() : "");
    return out;
}

} // namespace

// Labels, limits and the Codex cwd label are covered end to end in AgentsCliTest.
TEST(AgentSessions, ClaudeLooksOneLevelDeepCodexAtAnyDepthButNotThroughLinks) {
    AgentHome h;
    const auto big = session(h, ".claude/projects/p1/big.jsonl", 900, "/srv/x");
    const auto noCwd = session(h, ".claude/projects/p2/plain.name.jsonl", 500, {}, kLeapDayLastSecond);
    session(h, ".claude/projects/p2/sub/deeper.jsonl", 5000, "/srv/deep");
    session(h, ".claude/projects/p2/empty.jsonl", 0);
    session(h, ".claude/projects/p2/notes.txt", 8000);
    EXPECT_EQ(rows(AgentSessions::largestClaudeSessions(10)),
              (Rows{{big, 900, "/srv/x · 2024-03-01"}, {noCwd, 500, "plain.name · 2024-02-29"}}));

    const auto deep = session(h, ".codex/sessions/2025/01/02/03/rollout-deep.jsonl", 3000);
    const auto hidden = session(h, ".codex/sessions/.hidden/h.jsonl", 2000, "/srv/h");
    session(h, ".codex/sessions/2025/01/empty.jsonl", 0);
    session(h, ".codex/sessions/2025/01/x.json", 5000);
    h.tree->symlink("home/.codex/sessions/linked", h.home / ".codex/sessions/2025");
    EXPECT_EQ(rows(AgentSessions::largestCodexSessions(10)),
              (Rows{{deep, 3000, "rollout-deep · 2024-03-01"}, {hidden, 2000, "/srv/h · 2024-03-01"}}));

    EXPECT_TRUE(AgentSessions::remove(deep));
    EXPECT_TRUE(fs::exists(h.home / ".local/share/Trash/files/rollout-deep.jsonl"));
    EXPECT_FALSE(AgentSessions::remove(deep)) << "a file that no longer exists";
}

// A session file that stays where it was is never reported as removed. The folder that holds it
// cannot be written, by this user or, as root, by the unprivileged child.
TEST(AgentSessions, AFileThatDidNotGoToTheTrashIsNotRemoved) {
    AgentHome h;
    for (const char* folder : {"home/.local/share/Trash/files", "home/.local/share/Trash/info"})
        ::chmod(h.tree->dir(folder).c_str(), 0777);
    const auto claude = session(h, ".claude/projects/p1/s.jsonl", 100);
    const auto codex = session(h, ".codex/sessions/2025/01/r.jsonl", 100);
    ::chmod(claude.parent_path().c_str(), 0555);
    ::chmod(codex.parent_path().c_str(), 0555);
    EXPECT_EQ(asUnprivileged([&] {
                  return static_cast<long long>(ClaudeProjects::removeSessions(claude.parent_path())) * 10
                         + static_cast<long long>(AgentSessions::remove(codex));
              }),
              0);
    EXPECT_TRUE(fs::exists(claude) && fs::exists(codex));
    EXPECT_TRUE(fs::is_empty(h.home / ".local/share/Trash/files"));
}
