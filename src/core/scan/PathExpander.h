#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::PathExpander {

// The pattern with its variable prefix and leading tilde expanded; touches no file.
// Prefixes: "$TMPDIR" (the temporary folder), "$DARWIN_CACHE" (the temporary folder's parent + "/C"),
// "$XDG_CACHE_HOME" and "$XDG_DATA_HOME" (the freedesktop.org folders, for the Linux catalogue).
std::string resolve(std::string_view pattern);

// All existing locations that the pattern denotes. Segments with `*`, `?` or `[` match the names of
// one folder like fnmatch with FNM_PERIOD; other segments are literal. Never fails: what cannot be
// read contributes nothing. Neither sorted nor deduplicated.
std::vector<std::filesystem::path> expand(std::string_view pattern);

} // namespace lumabroom::PathExpander
