#include "host/Removal.h"

#include "host/DirectoryReader.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace lumabroom::Removal {

namespace {
constexpr std::size_t kOpenFolderBudget = 96;
constexpr std::size_t kListedFailures = 10;
constexpr const char* kLostReason = "was moved or replaced while it was being removed; left in place";

std::string reasonFor(int error) { return error == ESTALE ? kLostReason : std::generic_category().message(error); }

// Empties and removes the deepest folder of a chain whose level 1 is the item, depth first.
class TreeRemover {
public:
    TreeRemover(FolderChain& chain, std::string shownItem) : chain_(chain), shownItem_(std::move(shownItem)) {}

    std::optional<std::string> run() {
        levels_.resize(2);
        read(levels_[1]);
        while (chain_.depth() >= 1) step();
        if (failed_ == 0) return std::nullopt;
        if (failed_ > lines_.size()) lines_.push_back("(and " + std::to_string(failed_ - lines_.size()) + " more)");
        std::string report;
        for (const auto& line : lines_) report += (report.empty() ? "" : "\n") + line;
        return report;
    }

private:
    struct Level {
        std::string subfolders; // names, each ended by NUL
        std::size_t position = 0;
        std::size_t removedThisPass = 0;
        bool childFailed = false;
    };

    void fail(std::size_t level, const char* child, const std::string& reason) {
        if (++failed_ > kListedFailures) return;
        std::string shown = shownItem_;
        for (std::size_t k = 2; k <= level; ++k) shown += "/" + chain_.name(k);
        if (child) shown += std::string("/") + child;
        lines_.push_back(shown + ": " + reason);
    }

    // Takes away what is no folder at once; folders wait until the listing is done.
    void read(Level& level) {
        level.subfolders.clear();
        level.position = 0;
        level.removedThisPass = 0;
        const int fd = chain_.fd();
        DirectoryReader::borrowing(fd).forEach([&](const DirectoryReader::Entry& entry) {
            if (entry.isDirectory) {
                level.subfolders.append(entry.name);
                level.subfolders.push_back('\0');
            } else if (::unlinkat(fd, entry.name, 0) == 0) {
                ++level.removedThisPass;
            } else if (errno == EISDIR || errno == EPERM) { // a folder by now, or a system that says so
                level.subfolders.append(entry.name);
                level.subfolders.push_back('\0');
            } else {
                fail(chain_.depth(), entry.name, reasonFor(errno));
                level.childFailed = true;
            }
            return true;
        });
    }

    void step() {
        const std::size_t depth = chain_.depth();
        Level& level = levels_[depth];
        if (level.position < level.subfolders.size()) {
            const char* name = level.subfolders.data() + level.position;
            level.position += std::strlen(name) + 1;
            return removeChild(level, name);
        }
        const int parent = chain_.fd(depth - 1);
        if (parent >= 0 && ::unlinkat(parent, chain_.name(depth).c_str(), AT_REMOVEDIR) == 0) {
            chain_.ascend();
            ++levels_[depth - 1].removedThisPass;
            return;
        }
        const int error = parent >= 0 ? errno : ESTALE;
        // Some file systems skip names when a folder changes while it is read: go round again as
        // long as each round removes something.
        if ((error == ENOTEMPTY || error == EEXIST) && !level.childFailed && level.removedThisPass > 0)
            return read(level);
        if (!level.childFailed) fail(depth, nullptr, reasonFor(error));
        levels_[depth - 1].childFailed = true;
        chain_.ascend();
    }

    void removeChild(Level& level, const char* name) {
        const std::size_t depth = chain_.depth();
        switch (chain_.descend(name)) {
        case FolderChain::Descent::entered:
            if (levels_.size() <= depth + 1) levels_.emplace_back();
            levels_[depth + 1] = {};
            return read(levels_[depth + 1]);
        case FolderChain::Descent::notFolder: // a link or a file by now: it goes itself
            if (::unlinkat(chain_.fd(), name, 0) == 0) {
                ++level.removedThisPass;
                return;
            }
            fail(depth, name, reasonFor(errno));
            break;
        case FolderChain::Descent::mountPoint: fail(depth, name, kMountPointReason); break;
        case FolderChain::Descent::lost:
            fail(depth, nullptr, reasonFor(errno == EMFILE || errno == ENFILE || errno == ENOMEM ? errno : ESTALE));
            level.position = level.subfolders.size();
            break;
        case FolderChain::Descent::failed: fail(depth, name, reasonFor(errno)); break;
        }
        level.childFailed = true;
    }

    FolderChain& chain_;
    std::string shownItem_;
    std::vector<Level> levels_;
    std::vector<std::string> lines_;
    std::size_t failed_ = 0;
};

std::optional<std::string> deleteBelow(int parentFd, const std::string& name, const std::string& item,
                                       const std::optional<FileIdentity>& expected) {
    struct stat st {};
    if (::fstatat(parentFd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0) return item + ": " + reasonFor(errno);
    if (expected && identityOf(st) != *expected) return item + ": " + kReplacedReason;
    if (!S_ISDIR(st.st_mode)) {
        struct stat parent {};
        if (::fstat(parentFd, &parent) == 0 && parent.st_dev != st.st_dev) return item + ": " + kMountPointReason;
        if (::unlinkat(parentFd, name.c_str(), 0) == 0) return std::nullopt;
        return item + ": " + reasonFor(errno);
    }
    FolderChain chain(parentFd, kOpenFolderBudget);
    switch (chain.descend(name.c_str())) {
    case FolderChain::Descent::entered: break;
    case FolderChain::Descent::mountPoint: return item + ": " + kMountPointReason;
    case FolderChain::Descent::notFolder: return item + ": " + kReplacedReason;
    case FolderChain::Descent::lost:
    case FolderChain::Descent::failed: return item + ": " + reasonFor(errno);
    }
    // The folder now held is the one emptied: check that one, not the name.
    if (::fstat(chain.fd(), &st) != 0) return item + ": " + reasonFor(errno);
    if (expected && identityOf(st) != *expected) return item + ": " + kReplacedReason;
    return TreeRemover(chain, item).run();
}
} // namespace

std::optional<std::string> deleteItem(const std::string& path, const std::optional<FileIdentity>& expected) {
    std::string item = path;
    while (item.size() > 1 && item.back() == '/') item.pop_back();
    auto slash = item.rfind('/');
    std::string parent = slash == std::string::npos ? "." : slash == 0 ? "/" : item.substr(0, slash);
    std::string name = slash == std::string::npos ? item : item.substr(slash + 1);
    if (name.empty() || name == "." || name == "..") return path + ": " + reasonFor(EINVAL);

    // The way to the item is the caller's; from its parent on, nothing is followed.
    int parentFd = ::open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parentFd < 0) return item + ": " + reasonFor(errno);
    auto result = deleteBelow(parentFd, name, item, expected);
    ::close(parentFd);
    return result;
}

} // namespace lumabroom::Removal
