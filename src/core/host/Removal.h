#pragma once

#include <optional>
#include <string>

namespace lumabroom::Removal {

// Deletes the item at `path` and everything below it. Works through folder descriptors and never
// follows a symbolic link below the item's parent: a link is removed itself, never what it points
// at, also when a folder is swapped for a link while this runs, so nothing outside the item's own
// tree is touched. An item that is a link removes the link only. Goes on past an item that cannot be
// removed and takes away what it can.
// Nothing when the item is gone; otherwise the platform's description of the first error, preceded
// by the path of what failed.
std::optional<std::string> deleteItem(const std::string& path);

} // namespace lumabroom::Removal
