#include "agents/ClaudeProjects.h"

#include "agents/AgentFiles.h"
#include "concurrency/ParallelMap.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/Trash.h"
#include "text/Formatting.h"
#include "text/Strings.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace lumabroom::ClaudeProjects {

namespace {
// Byte length of a whitespace character at `i` (the Unicode White_Space set), or 0.
std::size_t whitespaceLength(std::string_view s, std::size_t i) {
    const auto at = [&](std::size_t k) { return i + k < s.size() ? static_cast<unsigned char>(s[i + k]) : 0u; };
    const unsigned c = at(0);
    if (c == ' ' || (c >= '\t' && c <= '\r')) return 1;
    if (c == 0xC2 && (at(1) == 0x85 || at(1) == 0xA0)) return 2;
    if (c == 0xE1 && at(1) == 0x9A && at(2) == 0x80) return 3; // U+1680
    if (c == 0xE2 && at(1) == 0x80) {                          // U+2000…200A, 2028, 2029, 202F
        const unsigned t = at(2);
        if ((t >= 0x80 && t <= 0x8A) || t == 0xA8 || t == 0xA9 || t == 0xAF) return 3;
    }
    if (c == 0xE2 && at(1) == 0x81 && at(2) == 0x9F) return 3; // U+205F
    if (c == 0xE3 && at(1) == 0x80 && at(2) == 0x80) return 3; // U+3000
    return 0;
}

// Bytes of the character that starts at `i`, so that an escape keeps a whole character.
std::size_t characterLength(std::string_view s, std::size_t i) {
    const auto lead = static_cast<unsigned char>(s[i]);
    std::size_t n = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return std::min(n, s.size() - i);
}

std::vector<fs::path> sessionFilesIn(const std::string& folder, const std::vector<std::string>& names) {
    std::vector<fs::path> files;
    for (const auto& name : names)
        if (AgentFiles::hasExtension(name, AgentFiles::kSessionExtension)) files.emplace_back(folder + "/" + name);
    return files;
}

std::optional<std::string> newestCwd(const std::vector<fs::path>& sessions) {
    auto newest = newestSession(sessions);
    if (!newest) return std::nullopt;
    auto text = head(*newest, kHeadBytes);
    if (!text) return std::nullopt;
    return firstCwd(*text);
}

// The project folders: every child of the root; one that is no folder fails its own listing.
std::optional<std::vector<std::string>> projectFolders() {
    const std::string base = root().string();
    auto names = FileSystem::listDirectory(base);
    if (!names) return std::nullopt;
    std::vector<std::string> folders;
    folders.reserve(names->size());
    for (const auto& name : *names) folders.push_back(base + "/" + name);
    return folders;
}
} // namespace

fs::path root() { return Paths::expandingTilde("~/.claude/projects"); }

std::vector<ScanEntry> sessionEntries() {
    auto folders = projectFolders();
    if (!folders) return {};
    const std::string home = Paths::homeDirectory();
    auto found = ParallelMap::run(*folders, [&home](const std::string& folder) -> std::optional<ScanEntry> {
        auto names = FileSystem::listDirectory(folder);
        if (!names) return std::nullopt;
        const auto sessions = sessionFilesIn(folder, *names);
        std::int64_t total = 0;
        for (const auto& file : sessions) total += AgentFiles::logicalSize(file).value_or(0);
        if (total <= 0) return std::nullopt;
        ScanEntry entry{fs::path(folder), total, std::nullopt};
        if (auto cwd = newestCwd(sessions))
            entry.label = EntryLabel{LiteralLabel{Formatting::homeShortened(*cwd, home)}};
        return entry;
    });
    std::vector<ScanEntry> entries;
    for (auto& entry : found)
        if (entry) entries.push_back(std::move(*entry));
    std::stable_sort(entries.begin(), entries.end(),
                     [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return entries;
}

std::vector<std::string> workspaceSeeds() {
    auto folders = projectFolders();
    if (!folders) return {};
    auto found = ParallelMap::run(*folders, [](const std::string& folder) -> std::optional<std::string> {
        auto names = FileSystem::listDirectory(folder);
        if (!names) return std::nullopt;
        return newestCwd(sessionFilesIn(folder, *names));
    });
    std::vector<std::string> seeds;
    for (auto& seed : found)
        if (seed) seeds.push_back(std::move(*seed));
    return seeds;
}

bool removeSessions(const fs::path& projectFolder) {
    const std::string folder = projectFolder.string();
    auto names = FileSystem::listDirectory(folder);
    if (!names) return false;
    bool allMoved = true;
    for (const auto& file : sessionFilesIn(folder, *names))
        if (Trash::moveToTrash(file.string())) allMoved = false; // an error text means it stayed
    return allMoved;
}

std::optional<std::string> head(const fs::path& file, std::size_t bytes) {
    auto data = FileSystem::readHead(file.string(), bytes);
    if (!data) return std::nullopt;
    return Strings::repairedUtf8(*data);
}

std::optional<std::string> firstCwd(std::string_view text) {
    constexpr std::string_view key = "\"cwd\"";
    const auto at = text.find(key);
    if (at == std::string_view::npos) return std::nullopt;

    std::size_t i = at + key.size();
    for (;;) {
        if (i >= text.size()) return std::nullopt;
        if (text[i] == '"') {
            ++i;
            break;
        }
        if (text[i] == ':') {
            ++i;
        } else if (const std::size_t blank = whitespaceLength(text, i)) {
            i += blank;
        } else {
            return std::nullopt;
        }
    }

    std::string value;
    for (;;) {
        if (i >= text.size()) return std::nullopt;
        const char c = text[i];
        if (c == '"') break;
        if (c == '\\') {
            if (++i >= text.size()) return std::nullopt;
            const std::size_t n = characterLength(text, i);
            value.append(text.substr(i, n));
            i += n;
        } else {
            value.push_back(c);
            ++i;
        }
    }
    if (value.empty()) return std::nullopt;
    return value;
}

std::optional<fs::path> newestSession(const std::vector<fs::path>& sessions) {
    if (sessions.empty()) return std::nullopt;
    std::size_t best = 0;
    auto bestTime = AgentFiles::modificationTime(sessions[0]);
    for (std::size_t i = 1; i < sessions.size(); ++i) {
        auto time = AgentFiles::modificationTime(sessions[i]);
        if (time && (!bestTime || *time > *bestTime)) {
            best = i;
            bestTime = time;
        }
    }
    return sessions[best];
}

} // namespace lumabroom::ClaudeProjects
