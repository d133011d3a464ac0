#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumabroom::FileSystem {

// Names of a folder's direct children, hidden ones too, in the order the system gives them;
// nothing if the folder is missing, unreadable or no folder.
std::optional<std::vector<std::string>> listDirectory(const std::string& path);

// These follow symbolic links: a dangling link does not exist.
bool exists(const std::string& path);
bool isDirectory(const std::string& path);
bool isExecutableFile(const std::string& path);

// The path with every symbolic link resolved, or nothing if it does not exist.
std::optional<std::string> resolvingSymlinks(const std::string& path);

// A whole small file, or nothing if it cannot be read, is no regular file (a FIFO would wait for a
// writer), or is longer than `maxBytes`.
std::optional<std::string> readSmallFile(const std::string& path, std::size_t maxBytes);
// The first `bytes` bytes of a regular file, fewer if it is shorter; nothing if it cannot be read,
// is no regular file, or is empty.
std::optional<std::string> readHead(const std::string& path, std::size_t bytes);

// Whether the item itself (not what a link points at) belongs to the user running this process.
bool isOwnedByCurrentUser(const std::string& path);

} // namespace lumabroom::FileSystem
