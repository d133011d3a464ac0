#include "core/agents/GitRepo.h"
#include "support/Process.h"
#include "support/TempTree.h"
#include "support/Text.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <ctime>
#include <map>
#include <sstream>

using namespace lumabroom::test;
using nlohmann::json;
namespace fs = std::filesystem;

namespace {
std::vector<json> jsonLines(const std::string& out) {
    std::vector<json> lines;
    std::istringstream in(out);
    for (std::string line; std::getline(in, line);) lines.push_back(json::parse(line)); // throws on bad JSON
    return lines;
}

std::string isoTime(std::int64_t seconds) {
    const std::time_t t = seconds;
    std::tm utc{};
    ::gmtime_r(&t, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

// A home outside "/tmp", where discovery would ignore every seed.
struct AgentHome {
    std::unique_ptr<TempTree> tree = treeOutsideTmp();
    fs::path home = tree->dir("home");

    ProcessResult scan(std::vector<std::string> args) const {
        args.insert(args.begin(), scannerBinary());
        return runProcess(args, {{"HOME", home.string()},
                                 {"TMPDIR", tree->dir("tmp").string() + "/"},
                                 {"XDG_DATA_HOME", (home / ".local/share").string()},
                                 {"PATH", "/usr/bin:/bin"}});
    }
};

} // namespace

// The facts are checked against what git and the file system say, computed here by other means.
TEST(AgentsCli, WorktreesReportsEveryWorktreeWithGitFactsAndMeasuredSizes) {
    AgentHome h;
    const fs::path home = h.home;
    const fs::path app = home / "src/app";
    makeRepo(app);
    git(app, {"remote", "add", "origin", "https://example.invalid/app.git"});
    const fs::path safe = home / "wt/app-safe";
    git(app, {"worktree", "add", "-q", "-b", "safe", safe.string()});
    commitFile(safe, "unpushed", "1");
    const fs::path orphan = home / "wt/app orphan";
    git(app, {"worktree", "add", "-q", "--detach", orphan.string(), "main"});
    commitFile(orphan, "lost", "1");
    writeText(orphan / "scratch.txt", "unsaved");

    const fs::path lib = home / "src/lib"; // no remote, no seed: found through the Codex folder
    makeRepo(lib);
    const fs::path scanned = home / ".codex/worktrees/9f3a/lib";
    git(lib, {"worktree", "add", "-q", "-b", "topic", scanned.string()});
    writeText(scanned / "edit.txt", "new");
    writeText(scanned / "big.bin", std::string(70'000, 'b'));

    const fs::path notes = home / "src/notes"; // seeded by Claude Code only
    makeRepo(notes);
    const fs::path notesWt = home / "wt/notes-draft";
    git(notes, {"worktree", "add", "-q", "-b", "draft", notesWt.string()});

    makeStateDatabase(home / ".codex/state_5.sqlite", {app.string(), home.string(), "/tmp/elsewhere"});
    writeText(home / ".claude/projects/-src-notes/s.jsonl", R"({"cwd":")" + notes.string()
                                                                + R"("})"
                                                                  "\n");

    auto r = h.scan({"--worktrees", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    auto lines = jsonLines(r.out);

    struct Expected {
        std::string parent;
        json branch;
        int dirty, orphans;
        bool remote;
    };
    const std::map<std::string, Expected> expected{
        {safe.string(), {app.string(), "safe", 0, 0, true}},
        {orphan.string(), {app.string(), nullptr, 1, 1, true}},
        {scanned.string(), {lib.string(), "topic", 1, 0, false}},
        {notesWt.string(), {notes.string(), "draft", 0, 0, false}},
    };
    ASSERT_EQ(lines.size(), expected.size() + 2) << r.out;
    EXPECT_EQ(lines.back(), (json{{"done", true}}));
    for (std::size_t k = 0; k + 1 < lines.size(); ++k) {
        SCOPED_TRACE("report " + std::to_string(k));
        const json& report = lines[k];
        EXPECT_EQ(report["report"], k);
        ASSERT_EQ(report["worktrees"].size(), expected.size());
        std::size_t measured = 0;
        std::int64_t previous = INT64_MAX;
        bool unmeasuredSeen = false;
        for (const auto& w : report["worktrees"]) {
            const std::string path = w["path"];
            ASSERT_TRUE(expected.count(path)) << path;
            const auto& e = expected.at(path);
            EXPECT_EQ(w["parent"], e.parent);
            EXPECT_EQ(w["repoName"], fs::path(path).filename().string());
            EXPECT_EQ(w["branch"], e.branch);
            EXPECT_EQ(w["dirtyFiles"], e.dirty);
            EXPECT_EQ(w["orphanCommits"], e.orphans);
            EXPECT_EQ(w["hasRemote"], e.remote);
            if (w["size"].is_null()) {
                unmeasuredSeen = true;
                EXPECT_TRUE(w["lastModified"].is_null());
                continue;
            }
            EXPECT_FALSE(unmeasuredSeen) << "measured worktrees come first";
            ++measured;
            const TreeFacts facts = treeFacts(path);
            EXPECT_EQ(w["size"], facts.bytes);
            EXPECT_EQ(w["lastModified"], isoTime(facts.newestSeconds));
            EXPECT_LE(w["size"].get<std::int64_t>(), previous) << "largest first";
            previous = w["size"];
        }
        EXPECT_EQ(measured, k);
    }
    EXPECT_EQ(lines[expected.size()]["worktrees"][0]["path"], scanned.string()) << "the largest comes first";

    auto readable = h.scan({"--worktrees"});
    ASSERT_EQ(readable.status, 0) << readable.err;
    EXPECT_NE(readable.out.find("4 worktrees, 2 at risk"), std::string::npos) << readable.out;
    EXPECT_NE(readable.out.find("would lose 1 uncommitted file, 1 commit only here\n"), std::string::npos)
        << readable.out;
    EXPECT_NE(readable.out.find("would lose 1 uncommitted file (no remote: no copy elsewhere)\n"), std::string::npos)
        << readable.out;
    EXPECT_NE(readable.out.find("~/wt/app orphan  (of ~/src/app)"), std::string::npos) << readable.out;
}

TEST(AgentsCli, WorktreesWithNothingToFindReportsOnceThenDone) {
    AgentHome h;
    auto r = h.scan({"--worktrees", "--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "{\"report\":0,\"worktrees\":[]}\n{\"done\":true}\n");
}

TEST(AgentsCli, SessionsListTheLargestFilesOfEachAgent) {
    AgentHome h;
    const fs::path home = h.home;
    auto session = [&](const fs::path& file, std::size_t bytes, const std::string& cwd) {
        std::string text = cwd.empty() ? std::string("{}") : R"({"cwd":")" + cwd + R"("})";
        text.resize(bytes, ' ');
        writeText(file, text);
        const std::string touch = "202403011200.00";
        runProcess({"/usr/bin/touch", "-m", "-t", touch, file.string()}, {{"TZ", "UTC"}});
    };
    session(home / ".claude/projects/p/a.jsonl", 300, (home / "src/app").string());
    session(home / ".claude/projects/p/b.jsonl", 200, "");
    session(home / ".claude/projects/q/c.jsonl", 100, "/srv/c");
    session(home / ".codex/sessions/2024/03/01/rollout-1.jsonl", 500, "/srv/codex");

    auto claude = h.scan({"--sessions", "claude", "--limit", "2", "--json"});
    ASSERT_EQ(claude.status, 0) << claude.err;
    EXPECT_EQ(json::parse(claude.out), (json{{"sessions",
                                              {{{"path", (home / ".claude/projects/p/a.jsonl").string()},
                                                {"size", 300},
                                                {"label", "~/src/app · 2024-03-01"}},
                                               {{"path", (home / ".claude/projects/p/b.jsonl").string()},
                                                {"size", 200},
                                                {"label", "b · 2024-03-01"}}}}}));

    auto codex = h.scan({"--sessions", "codex", "--json"});
    ASSERT_EQ(codex.status, 0) << codex.err;
    EXPECT_EQ(json::parse(codex.out)["sessions"].size(), 1u);
    EXPECT_EQ(json::parse(codex.out)["sessions"][0]["label"], "/srv/codex · 2024-03-01");

    auto readable = h.scan({"--sessions", "claude"});
    ASSERT_EQ(readable.status, 0);
    EXPECT_NE(readable.out.find("~/src/app · 2024-03-01\n"), std::string::npos) << readable.out;
    EXPECT_NE(readable.out.find(" in 3 files\n"), std::string::npos) << readable.out;

    for (const auto& bad : std::vector<std::vector<std::string>>{{"--sessions", "gemini"},
                                                                 {"--sessions"},
                                                                 {"--limit", "3"},
                                                                 {"--sessions", "codex", "--limit", "x"},
                                                                 {"--worktrees", "--sessions", "claude"}}) {
        SCOPED_TRACE(bad[0] + (bad.size() > 1 ? " " + bad[1] : ""));
        EXPECT_EQ(h.scan(bad).status, 2);
    }
}

TEST(AgentsCli, DefaultScanNamesClaudeProjectsByTheirWorkingFolder) {
    AgentHome h;
    writeText(h.home / ".claude/projects/-src-app/s.jsonl", std::string(R"({"cwd":")") + (h.home / "src/app").string()
                                                                + R"("})"
                                                                  "\n");
    h.tree->file("home/.claude/projects/-src-app/memory/m.md", 90'000);

    auto r = h.scan({"--json"});
    ASSERT_EQ(r.status, 0) << r.err;
    bool found = false;
    for (const auto& line : jsonLines(r.out)) {
        if (!line.contains("id") || line["id"] != "code.claude-sessions") continue;
        found = true;
        const auto size = static_cast<std::int64_t>(fs::file_size(h.home / ".claude/projects/-src-app/s.jsonl"));
        EXPECT_EQ(line["entries"], (json{{{"path", (h.home / ".claude/projects/-src-app").string()},
                                          {"size", size},
                                          {"label", "~/src/app"}}}));
    }
    EXPECT_TRUE(found);
}
