#include "agents/WorktreeDiscovery.h"

#include "agents/ClaudeProjects.h"
#include "agents/CodexWorktreeLister.h"
#include "agents/Git.h"
#include "clean/CommandRunner.h"
#include "concurrency/ParallelMap.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/ToolPaths.h"
#include "scan/DirectorySizer.h"
#include "text/Strings.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace lumabroom::WorktreeDiscovery {

namespace {
constexpr double kSqliteTimeoutSeconds = 10;
// A worktree's ".git" file is one short line; anything much longer is no worktree of ours.
constexpr std::size_t kGitFileMaxBytes = 64 * 1024;

bool isWhitespaceOrNewline(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isBlank(char c) { return c == ' ' || c == '\t'; }

template <typename Predicate>
std::string_view trimmed(std::string_view text, Predicate drop) {
    while (!text.empty() && drop(text.front())) text.remove_prefix(1);
    while (!text.empty() && drop(text.back())) text.remove_suffix(1);
    return text;
}

// Git names worktrees by their real paths, the folder scan by the home folder's spelling, which
// may pass through a link: one worktree is one real path.
std::string identity(const std::string& path) { return FileSystem::resolvingSymlinks(path).value_or(path); }

// The working state of one run; touched only by the thread that runs `discover`.
struct Run {
    std::set<std::string> askedRepositories;
    std::set<std::string> takenWorktrees; // by identity()
    std::vector<Candidate> candidates;

    // Asks each repository not asked before for its worktrees, all at once, and takes those that
    // exist and no earlier repository claimed.
    void harvest(const std::vector<std::string>& repositories) {
        std::vector<std::string> fresh;
        for (const auto& repo : repositories)
            if (askedRepositories.insert(repo).second) fresh.push_back(repo);
        if (fresh.empty()) return;
        auto listings = ParallelMap::run(fresh, [](const std::string& repo) {
            return Git::run({"-C", repo, "worktree", "list", "--porcelain"});
        });
        for (std::size_t i = 0; i < fresh.size(); ++i) {
            if (!listings[i]) continue;
            for (auto& path : parseWorktreeList(*listings[i])) {
                if (!FileSystem::exists(path) || !takenWorktrees.insert(identity(path)).second) continue;
                candidates.push_back({std::move(path), fresh[i]});
            }
        }
    }

    // The two levels below the Codex worktree folder: each entry whose ".git" file points into a
    // repository's "/.git/worktrees/" becomes a candidate. Gives the repositories found, in order.
    std::vector<std::string> scanCodexFolder() {
        std::vector<std::string> repositories;
        const std::string base = CodexWorktreeLister::home().string();
        auto children = FileSystem::listDirectory(base);
        if (!children) return repositories;
        for (const auto& child : *children) {
            const std::string folder = base + "/" + child;
            auto entries = FileSystem::listDirectory(folder);
            if (!entries) continue;
            for (const auto& name : *entries) {
                std::string path = folder + "/" + name;
                std::string key = identity(path);
                if (takenWorktrees.count(key)) continue;
                auto repo = repositoryOfGitFile(path + "/.git");
                if (!repo) continue;
                takenWorktrees.insert(std::move(key));
                candidates.push_back({std::move(path), *repo});
                repositories.push_back(std::move(*repo));
            }
        }
        return repositories;
    }

    // A clone has a ".git" folder, which cannot be read as a file, and a submodule points into
    // "/.git/modules/": neither is a worktree.
    static std::optional<std::string> repositoryOfGitFile(const std::string& gitFile) {
        auto text = FileSystem::readSmallFile(gitFile, kGitFileMaxBytes);
        if (!text || !Strings::isValidUtf8(*text)) return std::nullopt;
        std::string_view content = trimmed(*text, isWhitespaceOrNewline);
        constexpr std::string_view prefix = "gitdir:";
        if (!content.starts_with(prefix)) return std::nullopt;
        content = trimmed(content.substr(prefix.size()), isBlank);
        const auto at = content.find("/.git/worktrees/");
        if (at == std::string_view::npos) return std::nullopt;
        return std::string(content.substr(0, at));
    }
};

bool startsWithAny(const std::string& text, std::initializer_list<std::string> prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& p) { return text.starts_with(p); });
}
} // namespace

std::vector<std::string> codexSessionSeeds() {
    const std::string database = Paths::expandingTilde("~/.codex/state_5.sqlite");
    if (!FileSystem::exists(database)) return {};
    auto sqlite = CommandRunner::findBinary(ToolPaths::candidates(Tool::sqlite3));
    if (!sqlite) return {};
    auto output =
        CommandRunner::run(*sqlite, {"-readonly", "file:" + database + "?mode=ro", "SELECT DISTINCT cwd FROM threads;"},
                           kSqliteTimeoutSeconds);
    if (!output) return {};
    std::vector<std::string> seeds;
    for (auto line : Strings::splitNonEmpty(*output, '\n')) seeds.emplace_back(line);
    return seeds;
}

std::vector<fs::path> filteredSeeds(const std::vector<std::string>& seeds, const std::string& home) {
    std::vector<fs::path> kept;
    std::set<std::string> seen;
    for (const auto& seed : seeds) {
        if (!seed.starts_with("/")) continue;
        if (seed == "/" || seed == home) continue;
        if (startsWithAny(seed, {"/tmp", "/private/tmp", "/var/folders", "/private/var/folders"})) continue;
        if (startsWithAny(seed, {home + "/.codex", home + "/Library", home + "/Documents/Codex"})) continue;
        if (!seen.insert(seed).second) continue;
        if (FileSystem::isDirectory(seed)) kept.emplace_back(seed);
    }
    return kept;
}

std::optional<fs::path> mainRepo(const fs::path& folder) {
    auto output = Git::run({"-C", folder.string(), "rev-parse", "--git-common-dir"});
    if (!output) return std::nullopt;
    const std::string_view answer = trimmed(*output, isWhitespaceOrNewline);
    if (answer.empty()) return std::nullopt;
    std::string gitDirectory =
        answer.starts_with("/") ? std::string(answer) : (folder / answer).lexically_normal().string();
    constexpr std::string_view suffix = "/.git";
    if (!gitDirectory.ends_with(suffix)) return std::nullopt;
    gitDirectory.resize(gitDirectory.size() - suffix.size());
    return fs::path(gitDirectory.empty() ? std::string("/") : gitDirectory);
}

std::vector<std::string> parseWorktreeList(std::string_view text) {
    constexpr std::string_view prefix = "worktree ";
    std::vector<std::string> paths;
    for (auto line : Strings::splitNonEmpty(text, '\n'))
        if (line.starts_with(prefix)) paths.emplace_back(line.substr(prefix.size()));
    if (!paths.empty()) paths.erase(paths.begin()); // git lists the main worktree first
    return paths;
}

std::vector<WorktreeInfo> sortedForDisplay(std::vector<WorktreeInfo> worktrees) {
    std::stable_sort(worktrees.begin(), worktrees.end(), [](const WorktreeInfo& a, const WorktreeInfo& b) {
        if (a.size && b.size) return *a.size > *b.size;
        return a.size.has_value() && !b.size.has_value();
    });
    return worktrees;
}

StatusSummary parseStatusV2(std::string_view text) {
    constexpr std::string_view headPrefix = "# branch.head ";
    constexpr std::string_view oidPrefix = "# branch.oid ";
    StatusSummary summary;
    std::optional<std::string_view> head;
    for (auto line : Strings::splitNonEmpty(text, '\n')) {
        if (line.starts_with(headPrefix)) head = line.substr(headPrefix.size());
        else if (line.starts_with(oidPrefix)) continue;
        else if (!line.starts_with("#")) ++summary.dirtyFiles;
    }
    if (head && *head != "(detached)") summary.branch = std::string(*head);
    return summary;
}

WorktreeState collectState(const fs::path& worktree) {
    WorktreeState state;
    const std::string path = worktree.string();
    if (auto status = Git::run({"-C", path, "status", "--porcelain=v2", "--branch"})) {
        auto summary = parseStatusV2(*status);
        state.branch = std::move(summary.branch);
        state.dirtyFiles = summary.dirtyFiles;
    }
    if (auto count = Git::run({"-C", path, "rev-list", "--count", "HEAD", "--not", "--branches", "--remotes"})) {
        const std::string_view digits = trimmed(*count, isWhitespaceOrNewline);
        int value = 0;
        auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
        if (!digits.empty() && error == std::errc() && end == digits.data() + digits.size())
            state.orphanCommits = value;
    }
    return state;
}

void discover(const UpdateCallback& onUpdateOrNone) {
    const UpdateCallback onUpdate = onUpdateOrNone ? onUpdateOrNone : [](const std::vector<WorktreeInfo>&) {};
    std::vector<std::string> seeds = codexSessionSeeds();
    for (auto& seed : ClaudeProjects::workspaceSeeds()) seeds.push_back(std::move(seed));
    const auto folders = filteredSeeds(seeds, Paths::homeDirectory());

    const auto repoAnswers = ParallelMap::run(folders, [](const fs::path& folder) -> std::optional<std::string> {
        if (auto repo = mainRepo(folder)) return repo->string();
        return std::nullopt;
    });
    std::set<std::string> repositories;
    for (const auto& repo : repoAnswers)
        if (repo) repositories.insert(*repo);

    Run run;
    run.harvest({repositories.begin(), repositories.end()});
    std::vector<std::string> scanned;
    for (auto& repo : run.scanCodexFolder())
        if (FileSystem::exists(repo)) scanned.push_back(std::move(repo));
    run.harvest(scanned);
    const auto& candidates = run.candidates;

    std::set<std::string> parentSet;
    for (const auto& c : candidates) parentSet.insert(c.parent);
    const std::vector<std::string> parents(parentSet.begin(), parentSet.end());
    const auto remoteAnswers = ParallelMap::run(parents, [](const std::string& repo) {
        return Git::run({"-C", repo, "remote"});
    });
    std::map<std::string, bool, std::less<>> hasRemote;
    for (std::size_t i = 0; i < parents.size(); ++i)
        hasRemote[parents[i]] = !trimmed(remoteAnswers[i].value_or(""), isWhitespaceOrNewline).empty();

    std::vector<fs::path> roots;
    roots.reserve(candidates.size());
    for (const auto& c : candidates) roots.emplace_back(c.path);
    const auto states = ParallelMap::run(roots, [](const fs::path& path) { return collectState(path); });

    std::vector<WorktreeInfo> worktrees;
    worktrees.reserve(candidates.size());
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        WorktreeInfo info;
        info.path = roots[i];
        info.repoName = roots[i].filename().string();
        info.parentRepo = candidates[i].parent;
        info.branch = states[i].branch;
        info.dirtyFiles = states[i].dirtyFiles;
        info.orphanCommits = states[i].orphanCommits;
        auto remote = hasRemote.find(candidates[i].parent);
        info.hasRemote = remote != hasRemote.end() && remote->second;
        worktrees.push_back(std::move(info));
    }
    onUpdate(sortedForDisplay(worktrees));

    // Root reports never overlap, so the list needs no lock of its own.
    DirectorySizer::stats(roots, false, [&](std::size_t root, const DirectoryStats& stats) {
        worktrees[root].size = stats.bytes;
        worktrees[root].lastModified = stats.newestModification;
        onUpdate(sortedForDisplay(worktrees));
    });
}

} // namespace lumabroom::WorktreeDiscovery
