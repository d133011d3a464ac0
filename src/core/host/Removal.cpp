#include "host/Removal.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace lumabroom::Removal {

namespace {
constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

std::string describe(const std::string& what, int error) {
    return what + ": " + std::generic_category().message(error);
}

// Removes one tree below an open parent folder, depth first, holding one open folder per level.
class TreeRemover {
public:
    explicit TreeRemover(int parentFd) : parentFd_(parentFd) {}
    TreeRemover(const TreeRemover&) = delete;
    TreeRemover& operator=(const TreeRemover&) = delete;
    ~TreeRemover() {
        for (auto& level : levels_) ::closedir(level.stream);
    }

    std::optional<std::string> remove(const std::string& name, const std::string& shownPath) {
        removeChild(parentFd_, name.c_str(), DT_UNKNOWN, shownPath);
        while (!levels_.empty()) step();
        return firstError_;
    }

private:
    struct Level {
        DIR* stream = nullptr;
        int fd = -1;
        std::string name;      // in the parent folder
        std::string shownPath; // for messages only, never opened
        std::size_t removedThisPass = 0;
    };

    void fail(const std::string& shownPath, int error) {
        if (!firstError_) firstError_ = describe(shownPath, error);
    }

    void countRemoved() {
        if (!levels_.empty()) ++levels_.back().removedThisPass;
    }

    // Removes a child that is not a folder, or opens a folder to be emptied as the next level. The
    // type from the listing may be stale, so the calls themselves decide: opening refuses a link, and
    // unlinking refuses a folder.
    void removeChild(int folderFd, const char* name, unsigned char listedType, const std::string& shownPath) {
        if (listedType != DT_DIR && listedType != DT_UNKNOWN) {
            if (::unlinkat(folderFd, name, 0) == 0) return countRemoved();
            if (errno != EISDIR && errno != EPERM) return fail(shownPath, errno);
        }
        int fd = ::openat(folderFd, name, kFolderFlags);
        if (fd < 0) {
            int error = errno;
            if (error == ENOTDIR || error == ELOOP) { // a link or a file by now: it goes itself
                if (::unlinkat(folderFd, name, 0) == 0) return countRemoved();
                error = errno;
            }
            return fail(shownPath, error);
        }
        DIR* stream = ::fdopendir(fd);
        if (!stream) {
            fail(shownPath, errno);
            ::close(fd);
            return;
        }
        levels_.push_back({stream, fd, name, shownPath, 0});
    }

    void step() {
        Level& level = levels_.back();
        errno = 0;
        if (const dirent* entry = ::readdir(level.stream)) {
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) return;
            removeChild(level.fd, name, entry->d_type, level.shownPath + "/" + name);
            return;
        }
        bool readFailed = errno != 0;
        if (readFailed) fail(level.shownPath, errno);

        int parentFd = levels_.size() >= 2 ? levels_[levels_.size() - 2].fd : parentFd_;
        if (::unlinkat(parentFd, level.name.c_str(), AT_REMOVEDIR) == 0) {
            finishLevel();
            countRemoved();
            return;
        }
        int error = errno;
        // Some file systems skip names when a folder changes while it is read: go round again as
        // long as each round removes something.
        if ((error == ENOTEMPTY || error == EEXIST) && !readFailed && level.removedThisPass > 0) {
            ::rewinddir(level.stream);
            level.removedThisPass = 0;
            return;
        }
        fail(level.shownPath, error);
        finishLevel();
    }

    void finishLevel() {
        ::closedir(levels_.back().stream);
        levels_.pop_back();
    }

    int parentFd_;
    std::vector<Level> levels_;
    std::optional<std::string> firstError_;
};
} // namespace

std::optional<std::string> deleteItem(const std::string& path) {
    std::string item = path;
    while (item.size() > 1 && item.back() == '/') item.pop_back();
    auto slash = item.rfind('/');
    std::string parent = slash == std::string::npos ? "." : slash == 0 ? "/" : item.substr(0, slash);
    std::string name = slash == std::string::npos ? item : item.substr(slash + 1);
    if (name.empty() || name == "." || name == "..") return describe(path, EINVAL);

    // The way to the item is the caller's; from its parent on, nothing is followed.
    int parentFd = ::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parentFd < 0) return describe(item, errno);
    auto result = TreeRemover(parentFd).remove(name, item);
    ::close(parentFd);
    return result;
}

} // namespace lumabroom::Removal
