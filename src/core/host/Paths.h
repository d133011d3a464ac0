#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumabroom::Paths {

// HOME when it is an absolute path, else the password database's entry of the user.
std::string homeDirectory();

// The user's login shell from the password database; empty if it has none or not an absolute one.
std::string loginShell();

// The user's temporary folder, always ending in "/": on macOS the per-user folder of the system,
// elsewhere TMPDIR, else "/tmp/".
std::string temporaryDirectory();

// True where the temporary folder is shared by all users (everywhere but macOS), so that a scan of
// it must keep to what the user owns.
bool temporaryDirectoryIsShared();

// The folders of the freedesktop.org base directories: the variable when it holds an absolute
// path, else "~/.cache" and "~/.local/share".
std::string xdgCacheHome();
std::string xdgDataHome();
// XDG_RUNTIME_DIR when it holds an absolute path; it has no fallback.
std::optional<std::string> xdgRuntimeDirectory();

// "~" and "~/..." become the home folder; "~user" is left as it is.
std::string expandingTilde(std::string_view path);

// "/a/b/" → "/a", "/a" → "/", "a" → "".
std::string deletingLastPathComponent(std::string_view path);

} // namespace lumabroom::Paths
