#pragma once

#include "host/FolderChain.h"

#include <optional>
#include <string>

namespace lumabroom::Trash {

// Where a trashed item went: what it takes to put it back.
struct TrashedItem {
    std::string original;  // the path the item had
    std::string location;  // the item in the Trash
    std::string record;    // its ".trashinfo", removed on restore; none on macOS, where the system keeps it
    FileIdentity identity; // of the item in the Trash, so that another item of that name is never taken for it
    bool operator==(const TrashedItem&) const = default;
};

// What a move to the Trash did.
struct Outcome {
    std::optional<std::string> failure; // the reason, preceded by the path; nothing when moved
    std::optional<TrashedItem> trashed; // where it went, when moved and the platform tells
};

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
Outcome trash(const std::string& path, const std::optional<FileIdentity>& expected = std::nullopt);

// trash() for callers that need not know where the item went: nothing on success, else the reason.
std::optional<std::string> moveToTrash(const std::string& path,
                                       const std::optional<FileIdentity>& expected = std::nullopt);

// Puts a trashed item back at its original path, as it was (the same inode: content, mode, times and
// links inside untouched), making missing folders on the way. Never replaces anything: an item whose
// place is taken, whose Trash entry is gone (emptied, or restored by another program) or whose
// volume is gone stays where it is. The record is removed only once the item is back.
// Nothing on success; otherwise the reason, preceded by the original path.
std::optional<std::string> restore(const TrashedItem& item);

// The reasons given after the path and ": ".
inline constexpr const char* kNoTrashReason =
    "cannot be moved to the Trash, because its volume has no Trash that can take it; it can be deleted instead";
inline constexpr const char* kEntryGoneReason =
    "is no longer in the Trash (it was emptied, or the item was put back elsewhere)";
inline constexpr const char* kPlaceTakenReason = "cannot be put back, because another item stands at its place";
inline constexpr const char* kVolumeGoneReason = "cannot be put back, because its volume is no longer there";

} // namespace lumabroom::Trash
