#pragma once

#include "host/FolderChain.h"

#include <optional>
#include <string>

namespace lumabroom::Trash {

// Moves the item at `path` (a link itself, not what it points at) to the user's Trash, from where
// the file manager can put it back. On macOS that is the system's Trash. Elsewhere it is the
// freedesktop.org Trash: "$XDG_DATA_HOME/Trash" (made when missing) for items on the same volume,
// else the Trash at the top of the item's volume, "$topdir/.Trash/$uid" or "$topdir/.Trash-$uid";
// the item goes to "files/" under a free name and its record to "info/<name>.trashinfo", which
// names the original path. A name too long to take ".trashinfo" is stored shortened (kept unique),
// the record keeping the full path. Nothing is copied: an item that no Trash on its volume can take
// fails with kNoTrashReason, so that it may be deleted instead. No Trash is ever made at the top of
// the root file system for an item of the home folder. With `expected`, an item that is no longer
// the one so identified is refused.
// Nothing on success; otherwise the reason, preceded by the path.
std::optional<std::string> moveToTrash(const std::string& path,
                                       const std::optional<FileIdentity>& expected = std::nullopt);

// The reason given after the path and ": " where no Trash can take the item.
inline constexpr const char* kNoTrashReason =
    "cannot be moved to the Trash, because its volume has no Trash that can take it; it can be deleted instead";

} // namespace lumabroom::Trash
