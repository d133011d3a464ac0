#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct stat;

namespace lumabroom {

// What identifies an item on this machine while it exists.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};
FileIdentity identityOf(const struct stat& st);

// Opens the folder `name` below an open folder without following a link and without entering
// another file system (a mount or bind mount there). -1 with errno set on failure; EXDEV means
// `name` is a mount point.
int openFolderBelow(int parentFd, const char* name);

// The folders from a start folder down to the one being worked on, each opened from the one above
// by openFolderBelow. However deep it goes it holds at most `budget` descriptors: folders above are
// closed when needed and opened again on the way back up from the nearest open one, each checked to
// be the very folder that was left (never through ".."). Folders at indices with more trailing zero
// bits stay open longer, so a way back never starts far above.
class FolderChain {
public:
    // Borrows `startFd`, the level 0 that is never closed.
    FolderChain(int startFd, std::size_t budget);
    // Opens the folder at `startPath` as level 0, following links on the way; fd(0) is -1 if it
    // cannot.
    FolderChain(const std::string& startPath, std::size_t budget);
    FolderChain(const FolderChain&) = delete;
    FolderChain& operator=(const FolderChain&) = delete;
    ~FolderChain();

    enum class Descent {
        entered,
        mountPoint,
        notFolder, // a link or another kind of item by now
        lost,      // the deepest folder is no longer the one entered, or no descriptor is left
        failed,    // errno tells
    };
    // Opens `name` below the deepest folder as the new deepest.
    Descent descend(const char* name);
    // Leaves the deepest folder; level 0 is never left.
    void ascend();
    std::size_t depth() const { return levels_.size() - 1; }
    const std::string& name(std::size_t level) const { return levels_[level].name; }

    // The descriptor of a level at or above the deepest, opened again if it was closed; -1 if the
    // folder there is no longer the one that was entered (moved, replaced) or cannot be opened.
    int fd(std::size_t level);
    int fd() { return fd(depth()); }

private:
    struct Level {
        std::string name;
        int fd = -1;
        FileIdentity identity; // taken when the level is first closed while still in use
        bool known = false;
    };

    void keepWithinBudget(std::size_t keep);

    std::vector<Level> levels_;
    bool ownsStart_ = false;
    std::size_t budget_;
    std::vector<std::size_t> openLevels_; // levels whose descriptor is held, level 0 not counted
};

} // namespace lumabroom
