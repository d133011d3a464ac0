#include "core/agents/GitRepo.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <ctime>
#include <sstream>

using namespace lumabroom::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {

std::string isoTime(std::int64_t seconds) {
    const std::time_t time = seconds;
    std::tm utc{};
    ::gmtime_r(&time, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

struct CliHome : AgentHome {
    ProcessResult scan(std::vector<std::string> args) const {
        args.insert(args.begin(), scannerBinary());
        return runProcess(args, {{"HOME", home.string()},
                                 {"TMPDIR", tree->dir("tmp").string() + "/"},
                                 {"XDG_DATA_HOME", (home / ".local/share").string()},
                                 {"PATH", "/usr/bin:/bin"}});
    }
    // Each line of the output parsed; a line that is no JSON fails the test.
    std::vector<json> jsonLines(std::vector<std::string> args) const {
        const auto result = scan(std::move(args));
        EXPECT_EQ(result.status, 0) << result.err;
        std::vector<json> lines;
        std::istringstream in(result.out);
        for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line));
        return lines;
    }
};

} // namespace

// The facts are checked against what git and the file system say, computed here by other means.
TEST(AgentsCli, WorktreesReportsTheFactsThenTheSizeOfEachWorktree) {
    CliHome h;
    const fs::path app = h.home / "src/app", orphan = h.home / "wt/app orphan";
    makeRepo(app);
    git(app, {"worktree", "add", "-q", "--detach", orphan.string(), "main"});
    commitFile(orphan, "lost", "1");
    writeText(orphan / "scratch.txt", "unsaved");
    makeStateDatabase(h.home / ".codex/state_5.sqlite", {app.string()});

    json worktree{{"path", orphan.string()}, {"parent", app.string()}, {"repoName", "app orphan"},
                  {"branch", nullptr},       {"dirtyFiles", 1},        {"orphanCommits", 1},
                  {"hasRemote", false},      {"size", nullptr},        {"lastModified", nullptr}};
    std::vector<json> expected{{{"report", 0}, {"worktrees", json::array({worktree})}}};
    const TreeFacts facts = treeFacts(orphan);
    worktree["size"] = facts.bytes;
    worktree["lastModified"] = isoTime(facts.newestSeconds);
    expected.push_back({{"report", 1}, {"worktrees", json::array({worktree})}});
    expected.push_back({{"done", true}});
    EXPECT_EQ(h.jsonLines({"--worktrees", "--json"}), expected);

    const std::string readable = h.scan({"--worktrees", "--language", "en"}).out;
    for (const char* text : {"1 worktree, 1 at risk", "~/wt/app orphan  (of ~/src/app)\n",
                             "would lose 1 uncommitted file, 1 commit only here (no remote: no copy elsewhere)\n"})
        EXPECT_NE(readable.find(text), std::string::npos) << text << " in\n" << readable;
}

TEST(AgentsCli, WorktreesWithNothingToFindReportsOnceThenDone) {
    CliHome h;
    const auto r = h.scan({"--worktrees", "--json"});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "{\"report\":0,\"worktrees\":[]}\n{\"done\":true}\n");
}

TEST(AgentsCli, SessionsListTheLargestFilesOfEachAgent) {
    CliHome h;
    auto session = [&](const std::string& relative, std::size_t bytes, const std::string& cwd) {
        std::string text = cwd.empty() ? std::string("{}") : R"({"cwd":")" + cwd + R"("})";
        text.resize(bytes, ' ');
        return h.write(relative, text).string();
    };
    const std::string a = session(".claude/projects/p/a.jsonl", 300, (h.home / "src/app").string());
    const std::string b = session(".claude/projects/p/b.jsonl", 200, "");
    session(".claude/projects/q/c.jsonl", 100, "/srv/c");
    const std::string codex = session(".codex/sessions/2024/03/01/rollout-1.jsonl", 500, "/srv/codex");

    const json claude = json::array({{{"path", a}, {"size", 300}, {"label", "~/src/app · 2024-03-01"}},
                                     {{"path", b}, {"size", 200}, {"label", "b · 2024-03-01"}}});
    EXPECT_EQ(h.jsonLines({"--sessions", "claude", "--limit", "2", "--json"}),
              (std::vector<json>{{{"sessions", claude}}}));
    const json codexOnly = json::array({{{"path", codex}, {"size", 500}, {"label", "/srv/codex · 2024-03-01"}}});
    EXPECT_EQ(h.jsonLines({"--sessions", "codex", "--json"}), (std::vector<json>{{{"sessions", codexOnly}}}));
    const std::string readable = h.scan({"--sessions", "claude", "--language", "en"}).out;
    EXPECT_NE(readable.find("~/src/app · 2024-03-01\n"), std::string::npos) << readable;
    EXPECT_NE(readable.find(" in 3 files\n"), std::string::npos) << readable;

    const std::vector<std::string> usageErrors[] = {{"--sessions", "gemini"},
                                                    {"--sessions"},
                                                    {"--limit", "3"},
                                                    {"--sessions", "codex", "--limit", "x"},
                                                    {"--worktrees", "--sessions", "claude"}};
    for (const auto& bad : usageErrors) EXPECT_EQ(h.scan(bad).status, 2) << bad.front() << " " << bad.back();
}

TEST(AgentsCli, TheScanNamesClaudeProjectsByTheirWorkingFolder) {
    CliHome h;
    const fs::path project = h.home / ".claude/projects/-src-app";
    writeText(project / "s.jsonl", "{\"cwd\":\"" + (h.home / "src/app").string() + "\"}\n");
    writeText(project / "memory/m.md", std::string(90'000, 'm'));
    const auto lines = h.jsonLines({"--json", "--rule", "code.claude-sessions"});
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0]["entries"], json::array({{{"path", project.string()},
                                                 {"size", fs::file_size(project / "s.jsonl")},
                                                 {"label", "~/src/app"}}}));
}
