#include "agents/ClaudeProjects.h"

#include "GitRepo.h"

#include <gtest/gtest.h>

#include <set>
#include <sys/stat.h>
#include <tuple>

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

} // namespace

TEST(ClaudeProjects, FirstCwdWalksTheCharactersOfTheFirstKeyOnly) {
    const std::pair<std::string, std::optional<std::string>> cases[] = {
        {R"({"cwd" : "/a/b"})", "/a/b"},
        {"\"cwd\"\t:\n\xC2\xA0\"/x\"", "/x"},
        {R"({"cwd":"/a/\"q\"/b"})", "/a/\"q\"/b"},
        {R"({"cwd":"\/Users\/me"})", "/Users/me"},
        {R"({"cwd":"C:\\dir\n"})", "C:\\dirn"}, // an escape keeps the next character, undecoded
        {R"({"cwd":null,"x":"/y"})", std::nullopt},
        {R"({"field":"cwd","cwd":"/real"})", std::nullopt}, // only the first "cwd" is tried
        {R"({"cwd":"/a/b)", std::nullopt},
        {R"({"cwd":"/a\)", std::nullopt},
        {R"({"cwd":""})", std::nullopt},
    };
    for (const auto& [text, expected] : cases) EXPECT_EQ(ClaudeProjects::firstCwd(text), expected) << text;
}

TEST(ClaudeProjects, HeadReadsAtMostTheGivenBytesAndRepairsUtf8) {
    TempTree t;
    writeText(t / "ten", "0123456789");
    writeText(t / "accent", "\xC3\xA9");
    ASSERT_EQ(::mkfifo((t / "fifo").c_str(), 0644), 0);
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 4), "0123");
    EXPECT_EQ(ClaudeProjects::head(t / "ten", 100), "0123456789");
    EXPECT_EQ(ClaudeProjects::head(t / "accent", 1), "\xEF\xBF\xBD") << "a cut inside a character";
    for (const auto& nothing : {t.file("empty"), t / "missing", t.root(), t / "fifo"}) // a FIFO without waiting
        EXPECT_EQ(ClaudeProjects::head(nothing, 100), std::nullopt) << nothing;
}

TEST(ClaudeProjects, ProjectsAreMeasuredNamedAndTrimmedByTheirSessionFilesOnly) {
    AgentHome h;
    const std::string home = h.home.string();
    const fs::path projects = h.home / ".claude/projects";
    auto session = [&](const std::string& relative, const std::string& text, std::int64_t mtime = kMarch2024) {
        return h.write(".claude/projects/" + relative, text, mtime);
    };
    // Newest by date, not by size: the small recent file names the project.
    session("p-dated/old.jsonl", line("/srv/old", 5000), kMarch2020);
    const auto dated = session("p-dated/new.jsonl", line(home + "/work", 100));
    // The newest session is empty: full total, no label, older files not tried.
    session("p-empty-newest/a.jsonl", line("/srv/a", 300), kMarch2020);
    session("p-empty-newest/b.jsonl", "");
    session("p-only-empty/a.jsonl", ""); // no session bytes: no entry
    // Deeper files, other extensions, a hidden ".jsonl" and "memory/" are no session files.
    session("p-mixed/s.jsonl", line("/opt/tool", 2000), kMarch2020);
    const char* notSessions[] = {"sub/deep.jsonl", "UPPER.JSONL", ".jsonl", "memory/MEMORY.md"};
    for (const char* other : notSessions) session("p-mixed/" + std::string(other), line("/srv/no", 9000));
    const auto atHome = session("p-home/s.jsonl", line(home, 1000));
    EXPECT_EQ(ClaudeProjects::newestSession({atHome, dated}), atHome) << "equal times: the first listed wins";

    std::vector<std::tuple<std::string, std::int64_t, std::string>> found;
    for (const auto& e : ClaudeProjects::sessionEntries())
        found.emplace_back(e.url.lexically_relative(projects), e.size, e.label ? e.label->text() : "none");
    EXPECT_EQ(found, (decltype(found){{"p-dated", 5100, "~/work"},
                                      {"p-mixed", 2000, "/opt/tool"},
                                      {"p-home", 1000, "~"},
                                      {"p-empty-newest", 300, "none"}}));
    const auto seeds = ClaudeProjects::workspaceSeeds();
    EXPECT_EQ(std::multiset<std::string>(seeds.begin(), seeds.end()),
              (std::multiset<std::string>{home + "/work", "/opt/tool", home}));

    EXPECT_TRUE(ClaudeProjects::removeSessions(projects / "p-mixed"));
    for (const char* other : notSessions) EXPECT_TRUE(fs::exists(projects / "p-mixed" / other)) << other;
    EXPECT_TRUE(fs::exists(h.home / ".local/share/Trash/files/s.jsonl"));
    EXPECT_FALSE(ClaudeProjects::removeSessions(projects / "missing"));
}
