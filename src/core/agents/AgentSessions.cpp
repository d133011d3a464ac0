#include "agents/AgentSessions.h"

#include "agents/AgentFiles.h"
#include "agents/ClaudeProjects.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/Trash.h"
#include "text/Formatting.h"

#include <algorithm>
#include <chrono>
#include <system_error>

namespace fs = std::filesystem;

namespace lumabroom::AgentSessions {

namespace {
// Pre-order, like a recursive enumerator: a folder's entry comes before what it holds. Links to
// folders are not entered.
void collectCodexSessions(const std::string& folder, std::vector<fs::path>& found) {
    auto names = FileSystem::listDirectory(folder);
    if (!names) return;
    for (const auto& name : *names) {
        std::string path = folder + "/" + name;
        if (AgentFiles::hasExtension(name, AgentFiles::kSessionExtension)) found.emplace_back(path);
        std::error_code ec;
        if (fs::symlink_status(path, ec).type() == fs::file_type::directory) collectCodexSessions(path, found);
    }
}

// Sizes are metadata only; heads are read just for the files that made the cut.
std::vector<ScanEntry> top(const std::vector<fs::path>& files, std::size_t limit) {
    std::vector<ScanEntry> entries;
    for (const auto& file : files)
        if (auto size = AgentFiles::logicalSize(file); size && *size >= 1)
            entries.push_back({file, *size, std::nullopt});
    std::stable_sort(entries.begin(), entries.end(),
                     [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    if (entries.size() > limit) entries.resize(limit);
    for (auto& entry : entries) entry.label = EntryLabel{LiteralLabel{label(entry.url)}};
    return entries;
}
} // namespace

std::vector<ScanEntry> largestClaudeSessions(std::size_t limit) {
    const std::string base = ClaudeProjects::root().string();
    auto projects = FileSystem::listDirectory(base);
    if (!projects) return {};
    std::vector<fs::path> files;
    for (const auto& project : *projects) {
        const std::string folder = base + "/" + project;
        auto names = FileSystem::listDirectory(folder);
        if (!names) continue;
        for (const auto& name : *names)
            if (AgentFiles::hasExtension(name, AgentFiles::kSessionExtension)) files.emplace_back(folder + "/" + name);
    }
    return top(files, limit);
}

std::vector<ScanEntry> largestCodexSessions(std::size_t limit) {
    std::vector<fs::path> files;
    collectCodexSessions(Paths::expandingTilde("~/.codex/sessions"), files);
    return top(files, limit);
}

bool remove(const fs::path& file) { return !moveToTrash(file).failure; }

Trash::Outcome moveToTrash(const fs::path& file) { return Trash::trash(file.string()); }

std::string label(const fs::path& file) {
    std::string text;
    auto head = ClaudeProjects::head(file, ClaudeProjects::kHeadBytes);
    auto cwd = head ? ClaudeProjects::firstCwd(*head) : std::nullopt;
    text = cwd ? Formatting::homeShortened(*cwd, Paths::homeDirectory()) : file.stem().string();
    if (auto time = AgentFiles::modificationTime(file))
        text += " · "
                + Formatting::utcDate(std::chrono::floor<std::chrono::seconds>(std::chrono::file_clock::to_sys(*time)));
    return text;
}

} // namespace lumabroom::AgentSessions
