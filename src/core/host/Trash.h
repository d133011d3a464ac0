#pragma once

#include <optional>
#include <string>

namespace lumabroom::Trash {

// Moves the item at `path` (a link itself, not what it points at) to the user's Trash, from where
// the file manager can put it back. On macOS that is the system's Trash. Elsewhere it is the
// freedesktop.org Trash: "$XDG_DATA_HOME/Trash" (made when missing) for items on the same volume,
// else the Trash at the top of the item's volume, "$topdir/.Trash/$uid" or "$topdir/.Trash-$uid";
// the item goes to "files/" under a free name and its record to "info/<name>.trashinfo", which
// names the original path. Nothing is copied: an item that no Trash on its volume can take fails.
// Nothing on success; otherwise the platform's description of the error, preceded by the path.
std::optional<std::string> moveToTrash(const std::string& path);

} // namespace lumabroom::Trash
