#include "agents/ClaudeProjects.h"

#include "GitRepo.h"
#include "support/TempTree.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

using namespace lumabroom;
using namespace lumabroom::test;
namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kMarch2020 = 1583020800; // 2020-03-01T00:00:00Z
constexpr std::int64_t kMarch2024 = 1709294400; // 2024-03-01T12:00:00Z

std::string line(const std::string& cwd) {
    return R"({"type":"user","cwd":")" + cwd
           + R"(","message":"hi"})"
             "\n";
}

std::string padded(std::string text, std::size_t bytes) {
    text.resize(bytes, ' ');
    return text;
}

struct ClaudeHome {
    TempTree tree;
    fs::path home = tree.dir("home");
    fs::path dataHome = tree.dir("home/.local/share"); // the Trash is made inside, never the folder itself
    ScopedEnv env{{"HOME", home.string()}, {"XDG_DATA_HOME", dataHome.string()}};

    fs::path project(const std::string& name) { return tree.dir("home/.claude/projects/" + name); }
    fs::path session(const std::string& project, const std::string& name, const std::string& text, std::int64_t mtime) {
        fs::path file = this->project(project) / name;
        writeText(file, text);
        tree.setMTime(fs::relative(file, tree.root()).string(), mtime);
        return file;
    }
    // The order in which the system lists the projects.
    std::vector<std::string> listingOrder() const {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(home / ".claude/projects")) names.push_back(e.path().filename());
        return names;
    }
};

} // namespace

TEST(ClaudeProjects, FirstCwdWalksTheCharactersOfTheFirstKeyOnly) {
    struct Case {
        const char* name;
        std::string text;
        std::optional<std::string> expected;
    };
    const Case cases[] = {
        {"blank and colon before the value", R"({"cwd" : "/a/b"})", "/a/b"},
        {"tab and newline pass", "\"cwd\"\t:\n \"/x\"", "/x"},
        {"no-break space passes", "\"cwd\":\xC2\xA0\"/x\"", "/x"},
        {"null value", R"({"cwd":null,"x":"/y"})", std::nullopt},
        {"escaped quote", R"({"cwd":"/a/\"q\"/b"})", "/a/\"q\"/b"},
        {"escaped slash", R"({"cwd":"\/Users\/me"})", "/Users/me"},
        {"escaped backslash", R"({"cwd":"C:\\dir"})", "C:\\dir"},
        {"escaped n stays the letter", R"({"cwd":"/a\nb"})", "/anb"},
        {"unicode escape is not decoded", R"({"cwd":"/caf\u00e9"})", "/cafu00e9"},
        {"non-ASCII value", "{\"cwd\":\"/home/\xE9\xA1\xB9\xE7\x9B\xAE\"}", "/home/\xE9\xA1\xB9\xE7\x9B\xAE"},
        {"unterminated value", R"({"cwd":"/a/b)", std::nullopt},
        {"text ends behind a backslash", R"({"cwd":"/a\)", std::nullopt},
        {"text ends before the value", R"({"cwd": )", std::nullopt},
        {"empty value", R"({"cwd":""})", std::nullopt},
        {"key as another key's value, no second search", R"({"field":"cwd","cwd":"/real"})", std::nullopt},
        {"no key", R"({"dir":"/a"})", std::nullopt},
        {"unquoted key does not count", R"({cwd:"/a"})", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(ClaudeProjects::firstCwd(c.text), c.expected);
    }
}

TEST(ClaudeProjects, HeadReadsAtMostTheGivenBytesAndRepairsUtf8) {
    TempTree t;
    writeText(t / "ten", "0123456789");
    writeText(t / "bad", "\xFF/ab");
    writeText(t / "accent", "\xC3\xA9");
    writeText(t / "empty", "");
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 4), "0123");
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 100), "0123456789");
    EXPECT_EQ(ClaudeProjects::head(t / "bad", 100), "\xEF\xBF\xBD/ab");
    EXPECT_EQ(ClaudeProjects::head(t / "accent", 1), "\xEF\xBF\xBD") << "a cut inside a character";
    EXPECT_EQ(ClaudeProjects::head(t / "empty", 100), std::nullopt);
    EXPECT_EQ(ClaudeProjects::head(t / "missing", 100), std::nullopt);
    EXPECT_EQ(ClaudeProjects::head(t.root(), 100), std::nullopt) << "a folder";
    ASSERT_EQ(::mkfifo((t / "fifo").c_str(), 0644), 0);
    EXPECT_EQ(ClaudeProjects::head(t / "fifo", 100), std::nullopt) << "a FIFO, without waiting for a writer";
}

TEST(ClaudeProjects, SessionEntriesMeasureSessionFilesAndNameTheNewestWorkingFolder) {
    ClaudeHome h;
    const std::string home = h.home.string();
    // Newest by date, not by size: the small recent file names the project.
    h.session("p-dated", "old.jsonl", padded(line("/srv/old"), 5000), kMarch2020);
    h.session("p-dated", "new.jsonl", padded(line(home + "/work"), 100), kMarch2024);
    // The newest session is empty: full total, no label, older files not tried.
    h.session("p-empty-newest", "a.jsonl", padded(line("/srv/a"), 300), kMarch2020);
    h.session("p-empty-newest", "b.jsonl", "", kMarch2024);
    // Only empty session files, or no session file at all: no entry.
    h.session("p-only-empty", "a.jsonl", "", kMarch2024);
    h.tree.file("home/.claude/projects/p-memory/memory/notes.md", 50'000);
    h.tree.file("home/.claude/projects/p-memory/settings.json", 700);
    // Deeper files, other extensions and a hidden ".jsonl" are no session files.
    h.session("p-mixed", "s.jsonl", padded(line("/opt/tool"), 2000), kMarch2020);
    h.tree.file("home/.claude/projects/p-mixed/sub/deep.jsonl", 9000);
    h.tree.file("home/.claude/projects/p-mixed/UPPER.JSONL", 9000);
    h.tree.file("home/.claude/projects/p-mixed/.jsonl", 9000);
    // The home folder itself shows as "~"; a cwd behind invalid UTF-8 is still found.
    h.session("p-home", "s.jsonl", padded(line(home), 1000), kMarch2024);
    h.session("p-invalid", "s.jsonl", padded("\xFF\xFE garbage " + line("/srv/inv"), 1000), kMarch2024);
    h.tree.file("home/.claude/projects/stray.jsonl", 4000); // a file at the root is no project

    auto entries = ClaudeProjects::sessionEntries();

    const fs::path projects = h.home / ".claude/projects";
    auto literal = [](std::string s) { return std::optional<EntryLabel>(EntryLabel{LiteralLabel{std::move(s)}}); };
    std::vector<ScanEntry> equalPair;
    for (const auto& name : h.listingOrder()) {
        if (name == "p-home") equalPair.push_back({projects / "p-home", 1000, literal("~")});
        if (name == "p-invalid") equalPair.push_back({projects / "p-invalid", 1000, literal("/srv/inv")});
    }
    std::vector<ScanEntry> expected{
        {projects / "p-dated", 5100, literal("~/work")},
        {projects / "p-mixed", 2000, literal("/opt/tool")},
        equalPair[0],
        equalPair[1],
        {projects / "p-empty-newest", 300, std::nullopt},
    };
    EXPECT_EQ(entries, expected);
}

TEST(ClaudeProjects, SessionEntriesWithoutTheRootAreEmpty) {
    ClaudeHome h;
    EXPECT_TRUE(ClaudeProjects::sessionEntries().empty());
    EXPECT_TRUE(ClaudeProjects::workspaceSeeds().empty());
}

TEST(ClaudeProjects, WorkspaceSeedsAreFullPathsInListingOrder) {
    ClaudeHome h;
    const std::string home = h.home.string();
    h.session("a", "s.jsonl", line(home + "/proj-a"), kMarch2024);
    h.session("b", "s.jsonl", line("/srv/b"), kMarch2024);
    h.session("c", "s.jsonl", R"({"no":"cwd"})", kMarch2024);
    h.session("d", "old.jsonl", line("/srv/old"), kMarch2020);
    h.session("d", "new.jsonl", line("/srv/new"), kMarch2024);
    h.session("e", "s.jsonl", line("/srv/b"), kMarch2024); // not de-duplicated here
    h.session("f", "one.jsonl", line("/srv/one"), kMarch2024); // equal times: the first listed wins
    h.session("f", "two.jsonl", line("/srv/two"), kMarch2024);
    std::string firstOfF;
    for (const auto& e : fs::directory_iterator(h.home / ".claude/projects/f"))
        if (firstOfF.empty()) firstOfF = e.path().filename() == "one.jsonl" ? "/srv/one" : "/srv/two";

    std::vector<std::string> expected;
    for (const auto& name : h.listingOrder()) {
        if (name == "a") expected.push_back(home + "/proj-a");
        if (name == "b" || name == "e") expected.push_back("/srv/b");
        if (name == "d") expected.push_back("/srv/new");
        if (name == "f") expected.push_back(firstOfF);
    }
    EXPECT_EQ(ClaudeProjects::workspaceSeeds(), expected);
}

TEST(ClaudeProjects, RemoveSessionsTrashesOnlySessionFiles) {
    ClaudeHome h;
    auto project = h.project("p");
    h.session("p", "a.jsonl", line("/srv/a"), kMarch2024);
    h.session("p", "b.jsonl", line("/srv/b"), kMarch2024);
    auto memory = h.tree.file("home/.claude/projects/p/memory/MEMORY.md", 300);
    auto notes = h.tree.file("home/.claude/projects/p/notes.txt", 10);
    auto deep = h.tree.file("home/.claude/projects/p/sub/c.jsonl", 10);

    EXPECT_TRUE(ClaudeProjects::removeSessions(project));

    EXPECT_FALSE(fs::exists(project / "a.jsonl"));
    EXPECT_FALSE(fs::exists(project / "b.jsonl"));
    EXPECT_TRUE(fs::exists(memory));
    EXPECT_TRUE(fs::exists(notes));
    EXPECT_TRUE(fs::exists(deep));
    const fs::path trash = h.home / ".local/share/Trash";
    EXPECT_TRUE(fs::exists(trash / "files/a.jsonl"));
    EXPECT_TRUE(fs::exists(trash / "files/b.jsonl"));

    EXPECT_TRUE(ClaudeProjects::removeSessions(project)) << "nothing left to move is no failure";
    EXPECT_FALSE(ClaudeProjects::removeSessions(h.home / ".claude/projects/missing"));
}
