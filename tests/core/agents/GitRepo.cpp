#include "GitRepo.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace lumabroom::test {

ProcessResult git(const fs::path& dir, const std::vector<std::string>& args, bool mayFail) {
    std::vector<std::string> argv{"/usr/bin/git", "-C", dir.string()};
    argv.insert(argv.end(), args.begin(), args.end());
    auto result = runProcess(argv, {{"PATH", "/usr/bin:/bin:/usr/local/bin"},
                                    {"HOME", dir.string()},
                                    {"GIT_CONFIG_NOSYSTEM", "1"},
                                    {"GIT_CONFIG_GLOBAL", "/dev/null"},
                                    {"GIT_AUTHOR_NAME", "Tester"},
                                    {"GIT_AUTHOR_EMAIL", "tester@example.com"},
                                    {"GIT_COMMITTER_NAME", "Tester"},
                                    {"GIT_COMMITTER_EMAIL", "tester@example.com"}});
    if (!mayFail) {
        EXPECT_EQ(result.status, 0) << "git " << args.front() << " in " << dir << ": " << result.err;
    }
    return result;
}

void makeRepo(const fs::path& dir, bool empty) {
    fs::create_directories(dir);
    git(dir, {"init", "-q", "-b", "main"});
    if (empty) return;
    writeText(dir / ".gitignore", "*.bin\n");
    writeText(dir / "README", "readme\n");
    git(dir, {"add", "-A"});
    git(dir, {"commit", "-q", "-m", "start"});
}

void commitFile(const fs::path& dir, const std::string& file, const std::string& text) {
    writeText(dir / file, text);
    git(dir, {"add", "--", file});
    git(dir, {"commit", "-q", "-m", "change " + file});
}

void makeStateDatabase(const fs::path& file, const std::vector<std::string>& cwds) {
    fs::create_directories(file.parent_path());
    std::string sql = "CREATE TABLE threads(id INTEGER PRIMARY KEY, cwd TEXT NOT NULL, title TEXT);";
    // The tests' paths hold no single quote.
    for (const auto& cwd : cwds) sql += "INSERT INTO threads(cwd, title) VALUES('" + cwd + "', 'x');";
    auto result = runProcess({"/usr/bin/sqlite3", file.string(), sql}, {{"PATH", "/usr/bin:/bin"}});
    ASSERT_EQ(result.status, 0) << result.err;
}

TreeFacts treeFacts(const fs::path& root) {
    TreeFacts facts;
    for (const auto& e : fs::recursive_directory_iterator(root)) {
        struct stat st {};
        if (::lstat(e.path().c_str(), &st) != 0 || !S_ISREG(st.st_mode)) continue;
        facts.bytes += static_cast<std::int64_t>(st.st_blocks) * 512;
        facts.newestSeconds = std::max<std::int64_t>(facts.newestSeconds, st.st_mtime);
    }
    return facts;
}

fs::path AgentHome::write(const std::string& relative, const std::string& text, std::int64_t mtime) {
    writeText(home / relative, text);
    tree->setMTime("home/" + relative, mtime);
    return home / relative;
}

} // namespace lumabroom::test
