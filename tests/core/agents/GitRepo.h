#pragma once

#include "support/Process.h"
#include "support/TempTree.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Agents' homes, real git repositories and state databases in known states, made with the
// installed tools.
namespace lumabroom::test {

inline constexpr std::int64_t kMarch2024 = 1709294400; // 2024-03-01T12:00:00Z

// git with a fixed identity and no user or system configuration; fails the test on a nonzero status
// unless `mayFail`.
ProcessResult git(const std::filesystem::path& dir, const std::vector<std::string>& args, bool mayFail = false);

// A repository on "main"; unless `empty`, with one commit of README and a ".gitignore" that ignores
// "*.bin", so that ballast files give a worktree size without making it dirty.
void makeRepo(const std::filesystem::path& dir, bool empty = false);
// Writes `file` (relative to `dir`) and commits it.
void commitFile(const std::filesystem::path& dir, const std::string& file, const std::string& text);

// A Codex state database whose table "threads" holds these working folders, one row each.
void makeStateDatabase(const std::filesystem::path& file, const std::vector<std::string>& cwds);

// Allocated bytes of all regular files below `root` and their newest modification time (0 if
// none), walked without following links: what deleting the folder would give back.
struct TreeFacts {
    std::int64_t bytes = 0;
    std::int64_t newestSeconds = 0;
};
TreeFacts treeFacts(const std::filesystem::path& root);

// A home folder, set as HOME with its Trash inside for the life of the object, in a tree outside
// "/tmp": worktree discovery ignores seeds there by design.
struct AgentHome {
    std::unique_ptr<TempTree> tree = [] {
        ScopedEnv base{{"TMPDIR", "/var/tmp"}};
        return std::make_unique<TempTree>();
    }();
    std::filesystem::path home = tree->dir("home");
    ScopedEnv env{{"HOME", home.string()}, {"XDG_DATA_HOME", (home / ".local/share").string()}};

    // Writes `text` to `relative` below the home folder, last modified at `mtime`.
    std::filesystem::path write(const std::string& relative, const std::string& text, std::int64_t mtime = kMarch2024);
};

} // namespace lumabroom::test
