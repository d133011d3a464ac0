#pragma once

#include "host/Trash.h"
#include "scan/ScanEntry.h"

#include <cstddef>
#include <filesystem>
#include <vector>

// The largest single session files of Claude Code and Codex, for trimming one conversation at a time.
namespace lumabroom::AgentSessions {

// Session files directly inside the project folders of "~/.claude/projects"; deeper ones don't count.
std::vector<ScanEntry> largestClaudeSessions(std::size_t limit);

// Session files at any depth below "~/.codex/sessions", hidden names included.
std::vector<ScanEntry> largestCodexSessions(std::size_t limit);

// Moves the file to the Trash; it is never deleted outright. False on any failure.
bool remove(const std::filesystem::path& file);
// remove() that also tells where the file went, so that it can be put back.
Trash::Outcome moveToTrash(const std::filesystem::path& file);

// The label of one session file: the working folder in display form, or else the file name
// without its extension, then " · " and the modification date in UTC (2026-03-01) when readable.
std::string label(const std::filesystem::path& file);

} // namespace lumabroom::AgentSessions
