#include "agents/ClaudeProjects.h"

#include "GitRepo.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sys/stat.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kMarch2020 = 1583020800; // 2020-03-01T00:00:00Z

// A session line naming `cwd`, padded with blanks to `bytes`.
std::string line(const std::string& cwd, std::size_t bytes = 0) {
    std::string text = R"({"type":"user","cwd":")" + cwd + "\"}\n";
    text.resize(std::max(bytes, text.size()), ' ');
    return text;
}

// What the system lists in a folder, in its order.
std::vector<std::string> listed(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& e : fs::directory_iterator(folder)) names.push_back(e.path().filename());
    return names;
}

} // namespace

TEST(ClaudeProjects, FirstCwdWalksTheCharactersOfTheFirstKeyOnly) {
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {R"({"cwd" : "/a/b"})", "/a/b"},
        {"\"cwd\"\t:\n\xC2\xA0\"/x\"", "/x"},
        {R"({"cwd":"/a/\"q\"/b"})", "/a/\"q\"/b"},
        {R"({"cwd":"\/Users\/me"})", "/Users/me"},
        {R"({"cwd":"C:\\dir\n"})", "C:\\dirn"}, // an escape keeps the next character, undecoded
        {R"({"cwd":null,"x":"/y"})", std::nullopt},
        {R"({"cwd":"/a/b)", std::nullopt},
        {R"({"cwd":"/a\)", std::nullopt},
        {R"({"cwd":""})", std::nullopt},
        {R"({"field":"cwd","cwd":"/real"})", std::nullopt},
        {R"({cwd:"/a"})", std::nullopt},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(ClaudeProjects::firstCwd(text), expected) << text;
}

TEST(ClaudeProjects, HeadReadsAtMostTheGivenBytesAndRepairsUtf8) {
    TempTree t;
    writeText(t / "ten", "0123456789");
    writeText(t / "bad", "\xFF/ab");
    writeText(t / "accent", "\xC3\xA9");
    writeText(t / "empty", "");
    ASSERT_EQ(::mkfifo((t / "fifo").c_str(), 0644), 0);
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 4), "0123");
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 100), "0123456789");
    EXPECT_EQ(ClaudeProjects::head(t / "bad", 100), "\xEF\xBF\xBD/ab");
    EXPECT_EQ(ClaudeProjects::head(t / "accent", 1), "\xEF\xBF\xBD") << "a cut inside a character";
    for (const auto& nothing : {t / "empty", t / "missing", t.root(), t / "fifo"}) // a FIFO without waiting
        EXPECT_EQ(ClaudeProjects::head(nothing, 100), std::nullopt) << nothing;
}

TEST(ClaudeProjects, ProjectsAreMeasuredAndNamedByTheirNewestSession) {
    AgentHome h;
    EXPECT_TRUE(ClaudeProjects::sessionEntries().empty());
    EXPECT_TRUE(ClaudeProjects::workspaceSeeds().empty());
    const std::string home = h.home.string();
    const fs::path projects = h.home / ".claude/projects";
    auto session = [&](const std::string& relative, const std::string& text, std::int64_t mtime = kMarch2024) {
        h.write(".claude/projects/" + relative, text, mtime);
    };
    // Newest by date, not by size: the small recent file names the project.
    session("p-dated/old.jsonl", line("/srv/old", 5000), kMarch2020);
    session("p-dated/new.jsonl", line(home + "/work", 100));
    // The newest session is empty: full total, no label, older files not tried.
    session("p-empty-newest/a.jsonl", line("/srv/a", 300), kMarch2020);
    session("p-empty-newest/b.jsonl", "");
    // Only empty session files, or no session file at all: no entry.
    session("p-only-empty/a.jsonl", "");
    session("p-memory/memory/notes.md", std::string(50'000, 'x'));
    // Deeper files, other extensions and a hidden ".jsonl" are no session files.
    session("p-mixed/s.jsonl", line("/opt/tool", 2000), kMarch2020);
    for (const char* other : {"sub/deep.jsonl", "UPPER.JSONL", ".jsonl"})
        session("p-mixed/" + std::string(other), line("/srv/no", 9000));
    // The home folder itself shows as "~"; a cwd behind invalid UTF-8 is still found.
    session("p-home/s.jsonl", line(home, 1000));
    session("p-invalid/s.jsonl", "\xFF\xFE garbage " + line("/srv/inv", 989));
    // Equal times: the first listed wins.
    session("p-tie/one.jsonl", line("/srv/one", 400));
    session("p-tie/two.jsonl", line("/srv/two", 400));
    session("stray.jsonl", line("/srv/stray", 4000)); // a file at the root is no project

    auto entry = [&](const std::string& project, std::int64_t size, const std::string& label) {
        return ScanEntry{projects / project, size,
                         label.empty() ? std::nullopt : std::optional<EntryLabel>(EntryLabel{LiteralLabel{label}})};
    };
    const std::string tie = "/srv/" + listed(projects / "p-tie").front().substr(0, 3);
    const std::map<std::string, std::string> seedOf{{"p-dated", home + "/work"}, {"p-mixed", "/opt/tool"},
                                                    {"p-home", home}, {"p-invalid", "/srv/inv"}, {"p-tie", tie}};
    std::vector<ScanEntry> entries{entry("p-dated", 5100, "~/work"), entry("p-mixed", 2000, "/opt/tool")};
    std::vector<std::string> seeds;
    for (const auto& name : listed(projects)) {
        if (name == "p-home" || name == "p-invalid") // equal sizes in listing order
            entries.push_back(entry(name, 1000, name == "p-home" ? "~" : "/srv/inv"));
        if (seedOf.count(name)) seeds.push_back(seedOf.at(name));
    }
    entries.push_back(entry("p-tie", 800, tie));
    entries.push_back(entry("p-empty-newest", 300, ""));
    EXPECT_EQ(ClaudeProjects::sessionEntries(), entries);
    EXPECT_EQ(ClaudeProjects::workspaceSeeds(), seeds);
}

TEST(ClaudeProjects, RemoveSessionsTrashesOnlySessionFiles) {
    AgentHome h;
    const fs::path project = h.home / ".claude/projects/p";
    for (const char* file : {"a.jsonl", "b.jsonl", "memory/MEMORY.md", "notes.txt", "sub/c.jsonl"})
        writeText(project / file, line("/srv/a"));

    EXPECT_TRUE(ClaudeProjects::removeSessions(project));
    std::set<std::string> left;
    for (const auto& e : fs::recursive_directory_iterator(project)) left.insert(e.path().lexically_relative(project));
    EXPECT_EQ(left, (std::set<std::string>{"memory", "memory/MEMORY.md", "notes.txt", "sub", "sub/c.jsonl"}));
    const fs::path trash = h.home / ".local/share/Trash/files";
    EXPECT_TRUE(fs::exists(trash / "a.jsonl") && fs::exists(trash / "b.jsonl"));

    EXPECT_TRUE(ClaudeProjects::removeSessions(project)) << "nothing left to move is no failure";
    EXPECT_FALSE(ClaudeProjects::removeSessions(h.home / ".claude/projects/missing"));
}
