#pragma once

#include "host/FolderChain.h"

#include <optional>
#include <string>

namespace lumabroom::Removal {

// Deletes the item at `path` and everything below it. Works through folder descriptors and never
// follows a symbolic link below the item's parent: a link is removed itself, never what it points
// at, also when a folder is swapped for a link while this runs, so nothing outside the item's own
// tree is touched. Never leaves the item's file system: a mount below the item (a bind mount too)
// is left in place and reported, and an item that is itself a mount point is refused. Any depth is
// handled with a bounded number of open descriptors. With `expected`, an item that is no longer the
// one so identified (replaced, or reached through a folder swapped for a link) is refused. An item
// that is a link removes the link only. Goes on past an item that cannot be removed and takes away
// what it can.
// Nothing when the item is gone; otherwise one line per thing that failed (the first few), each
// starting with its path.
std::optional<std::string> deleteItem(const std::string& path,
                                      const std::optional<FileIdentity>& expected = std::nullopt);

// The reasons given for refusing an item, after its path and ": ".
inline constexpr const char* kMountPointReason = "is a mount point of another file system and is left in place";
inline constexpr const char* kReplacedReason =
    "is no longer the item that was found (it was replaced, or a folder on its way was moved); left in place";

} // namespace lumabroom::Removal
