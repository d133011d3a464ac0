#pragma once

#include "scan/ScanEntry.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Claude Code's history: "~/.claude/projects" holds one folder per project and one JSONL file per
// conversation. Only the session files (extension "jsonl", directly in a project folder) are
// measured, read or removed; "memory/" and everything else in a project folder is left alone.
namespace lumabroom::ClaudeProjects {

// Bytes read from the start of a session file to find its working folder.
inline constexpr std::size_t kHeadBytes = 262'144;

// "~/.claude/projects" with the tilde expanded.
std::filesystem::path root();

// One entry per project with session bytes (logical sizes), labelled with the working folder of
// its newest session in display form; largest first, equal sizes in listing order. The scan route
// of "code.claude-sessions".
std::vector<ScanEntry> sessionEntries();

// The full working folder of each project's newest session, in listing order, not de-duplicated.
std::vector<std::string> workspaceSeeds();

// Moves the project's session files to the Trash, never deleting them; the folder and all that is
// no session file stay. False if the folder cannot be listed or any move failed.
bool removeSessions(const std::filesystem::path& projectFolder);

// Up to `bytes` bytes from the start of the file, invalid UTF-8 replaced; nothing if the file
// cannot be read or is empty.
std::optional<std::string> head(const std::filesystem::path& file, std::size_t bytes);

// The first "cwd" value of JSONL text by a plain character walk, since the text may end inside a
// line: only the first quoted "cwd" is tried, an escape keeps the next character literally, and
// an unterminated or empty value gives nothing.
std::optional<std::string> firstCwd(std::string_view jsonl);

// The session file with the latest modification time; among equals the first listed. A file
// whose time cannot be read ranks as the distant past.
std::optional<std::filesystem::path> newestSession(const std::vector<std::filesystem::path>& sessions);

} // namespace lumabroom::ClaudeProjects
