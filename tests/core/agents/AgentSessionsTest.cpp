#include "agents/AgentSessions.h"

#include "GitRepo.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kLeapDayLastSecond = 1709251199; // 2024-02-29T23:59:59Z
constexpr std::int64_t kMarchFirstNoon = 1709294400;    // 2024-03-01T12:00:00Z

struct SessionsHome {
    TempTree tree;
    fs::path home = tree.dir("home");
    fs::path dataHome = tree.dir("home/.local/share"); // the Trash is made inside, never the folder itself
    ScopedEnv env{{"HOME", home.string()}, {"XDG_DATA_HOME", dataHome.string()}};

    fs::path file(const std::string& relative, std::size_t bytes, const std::string& cwd = {},
                  std::int64_t mtime = kMarchFirstNoon) {
        std::string text = cwd.empty() ? std::string(R"({"type":"session_meta"})") : R"({"cwd":")" + cwd + R"("})";
        text.resize(bytes, ' ');
        fs::path p = home / relative;
        writeText(p, text);
        tree.setMTime(fs::relative(p, tree.root()).string(), mtime);
        return p;
    }
};

std::vector<std::pair<std::string, std::int64_t>> pathsAndSizes(const std::vector<ScanEntry>& entries) {
    std::vector<std::pair<std::string, std::int64_t>> out;
    for (const auto& e : entries) out.emplace_back(e.url.string(), e.size);
    return out;
}

std::vector<std::string> labels(const std::vector<ScanEntry>& entries) {
    std::vector<std::string> out;
    for (const auto& e : entries) out.push_back(e.label ? e.label->text() : "<none>");
    return out;
}

} // namespace

TEST(AgentSessions, ClaudeSessionsOneLevelDeepLargestFirstWithLabels) {
    SessionsHome h;
    const std::string home = h.home.string();
    auto big = h.file(".claude/projects/p1/big.jsonl", 900, home + "/src/app");
    auto noCwd = h.file(".claude/projects/p1/plain.name.jsonl", 500, {}, kLeapDayLastSecond);
    auto outside = h.file(".claude/projects/p2/other.jsonl", 700, "/srv/x");
    h.file(".claude/projects/p2/sub/deeper.jsonl", 5000, "/srv/deep"); // only one level is looked at
    h.file(".claude/projects/p2/empty.jsonl", 0);
    h.file(".claude/projects/p2/notes.txt", 8000);

    auto all = AgentSessions::largestClaudeSessions(10);
    EXPECT_EQ(pathsAndSizes(all), (std::vector<std::pair<std::string, std::int64_t>>{
                                      {big.string(), 900}, {outside.string(), 700}, {noCwd.string(), 500}}));
    EXPECT_EQ(labels(all),
              (std::vector<std::string>{"~/src/app · 2024-03-01", "/srv/x · 2024-03-01", "plain.name · 2024-02-29"}));

    EXPECT_EQ(pathsAndSizes(AgentSessions::largestClaudeSessions(2)),
              (std::vector<std::pair<std::string, std::int64_t>>{{big.string(), 900}, {outside.string(), 700}}));
    EXPECT_TRUE(AgentSessions::largestClaudeSessions(0).empty());
}

TEST(AgentSessions, CodexSessionsAtAnyDepthEqualSizesInListingOrder) {
    SessionsHome h;
    EXPECT_TRUE(AgentSessions::largestCodexSessions(10).empty()) << "no .codex folder";

    auto deep = h.file(".codex/sessions/2025/01/02/03/rollout-deep.jsonl", 3000);
    auto hidden = h.file(".codex/sessions/.hidden/h.jsonl", 2000, "/srv/h");
    auto a = h.file(".codex/sessions/2025/01/a.jsonl", 1000);
    auto b = h.file(".codex/sessions/2025/01/b.jsonl", 1000);
    h.file(".codex/sessions/2025/01/empty.jsonl", 0);
    h.file(".codex/sessions/2025/01/x.json", 5000);
    h.tree.symlink("home/.codex/sessions/linked", h.home / ".codex/sessions/2025"); // not entered

    std::vector<std::pair<std::string, std::int64_t>> expected{{deep.string(), 3000}, {hidden.string(), 2000}};
    for (const auto& e : fs::directory_iterator(h.home / ".codex/sessions/2025/01"))
        if (e.path() == a || e.path() == b) expected.emplace_back(e.path().string(), 1000);

    auto all = AgentSessions::largestCodexSessions(10);
    EXPECT_EQ(pathsAndSizes(all), expected);
    EXPECT_EQ(labels(all)[0], "rollout-deep · 2024-03-01");
    EXPECT_EQ(labels(all)[1], "/srv/h · 2024-03-01");

    auto three = AgentSessions::largestCodexSessions(3);
    expected.resize(3);
    EXPECT_EQ(pathsAndSizes(three), expected);
}

TEST(AgentSessions, RemoveMovesTheFileToTheTrash) {
    SessionsHome h;
    auto file = h.file(".codex/sessions/2025/01/r.jsonl", 100);

    EXPECT_TRUE(AgentSessions::remove(file));

    EXPECT_FALSE(fs::exists(file));
    const fs::path trash = h.home / ".local/share/Trash";
    EXPECT_TRUE(fs::exists(trash / "files/r.jsonl"));
    std::ifstream info(trash / "info/r.jsonl.trashinfo");
    std::string record((std::istreambuf_iterator<char>(info)), std::istreambuf_iterator<char>());
    EXPECT_NE(record.find("Path=" + file.string()), std::string::npos) << record;

    EXPECT_FALSE(AgentSessions::remove(file)) << "a file that no longer exists";
}
