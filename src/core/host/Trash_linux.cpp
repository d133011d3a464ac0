#include "host/TrashPlatform.h"

#include "host/DirectoryReader.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "host/Removal.h"
#include "host/Trash.h"

#include <QByteArray>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace lumabroom::Trash {

namespace {
// The Trash of Qt 6.4 writes the original path unescaped and, when it cannot make the Trash, moves
// the item below the working folder and reports success; hence this one.

struct TrashFolder {
    std::string root;   // holds "files" and "info"
    std::string topdir; // the volume's top for a Trash there, whose records name paths relative to it
};

// Every missing folder on the way is made private, as the base-directory rules ask.
bool makeFolders(const std::string& path) {
    for (std::size_t end = 1; end <= path.size(); ++end)
        if (end == path.size() || path[end] == '/') ::mkdir(path.substr(0, end).c_str(), 0700);
    return FileSystem::isDirectory(path);
}

// A Trash at the top of a volume is shared ground: it must be a real folder of our own.
bool makeOwnTrashFolder(const std::string& root) {
    ::mkdir(root.c_str(), 0700);
    struct stat st {};
    if (::lstat(root.c_str(), &st) != 0 || !S_ISDIR(st.st_mode) || st.st_uid != ::getuid()) return false;
    return makeFolders(root + "/files") && makeFolders(root + "/info");
}

std::optional<TrashFolder> homeTrash() {
    std::string root = Paths::xdgDataHome() + "/Trash";
    if (!makeFolders(root + "/files") || !makeFolders(root + "/info")) return std::nullopt;
    return TrashFolder{root, {}};
}

bool isInside(const std::string& path, const std::string& folder) {
    return folder.size() > 1 && path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0
           && path[folder.size()] == '/';
}

std::optional<TrashFolder> topdirTrash(const std::string& folder, dev_t device) {
    std::string top = folder; // the highest folder above the item on the item's volume
    while (top != "/") {
        std::string up = Paths::deletingLastPathComponent(top);
        struct stat st {};
        if (::stat(up.c_str(), &st) != 0 || st.st_dev != device) break;
        top = up;
    }
    // The home folder's items belong in the home Trash; a Trash at the top of the system's own
    // volume would scatter them where nobody looks.
    if (top == "/") {
        const auto home = FileSystem::resolvingSymlinks(Paths::homeDirectory());
        if (home && (folder == *home || isInside(folder, *home))) return std::nullopt;
    }
    const std::string base = top == "/" ? "" : top;
    const std::string uid = std::to_string(::getuid());
    struct stat shared {};
    // "$topdir/.Trash" counts only as a real folder with the sticky bit set by the administrator.
    if (::lstat((base + "/.Trash").c_str(), &shared) == 0 && S_ISDIR(shared.st_mode) && (shared.st_mode & S_ISVTX)
        && makeOwnTrashFolder(base + "/.Trash/" + uid))
        return TrashFolder{base + "/.Trash/" + uid, top};
    if (makeOwnTrashFolder(base + "/.Trash-" + uid)) return TrashFolder{base + "/.Trash-" + uid, top};
    return std::nullopt;
}

// A URL path: bytes other than unreserved ones and "/" as %XX.
std::string escaped(std::string_view path) {
    return QByteArray(path.data(), static_cast<qsizetype>(path.size())).toPercentEncoding("/").toStdString();
}

std::string localTimestamp() {
    std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[32];
    std::size_t n = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return std::string(text, n);
}

// Room for the name in "files/" once "info/" holds it with ".trashinfo" appended.
constexpr std::size_t kLongestTrashedName = 255 - std::string_view(".trashinfo").size();

std::uint64_t digest(std::string_view text) { // FNV-1a
    std::uint64_t hash = 14695981039346656037ull;
    for (char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ull;
    return hash;
}

// The name for the `copy`th try; a name too long is cut at a character's start and made unique by a
// digest of the whole.
std::string trashedNameFor(const std::string& name, int copy) {
    std::string suffix;
    if (copy != 1) suffix.append(".").append(std::to_string(copy));
    if (name.size() + suffix.size() <= kLongestTrashedName) return name + suffix;
    char mark[20];
    std::snprintf(mark, sizeof mark, "~%016llx", static_cast<unsigned long long>(digest(name)));
    std::size_t keep = kLongestTrashedName - suffix.size() - std::strlen(mark);
    while (keep > 0 && (static_cast<unsigned char>(name[keep]) & 0xC0) == 0x80) --keep;
    return name.substr(0, keep) + mark + suffix;
}

bool writeAll(int fd, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        ssize_t n = ::write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

Outcome failed(std::string reason) { return {std::move(reason), std::nullopt}; }

Outcome claimAndMove(const std::string& item, const std::string& original, const std::string& name,
                     const TrashFolder& trash, const std::string& record, const std::optional<FileIdentity>& expected) {
    // The record is made first and exclusively, which claims the name against other trashers.
    for (int copy = 1; copy < 10000; ++copy) {
        const std::string trashedName = trashedNameFor(name, copy);
        const std::string info = trash.root + "/info/" + trashedName + ".trashinfo";
        const std::string target = trash.root + "/files/" + trashedName;
        int fd = ::open(info.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0) {
            if (errno == EEXIST) continue;
            return failed(describe(item, errno));
        }
        struct stat taken {};
        if (::lstat(target.c_str(), &taken) == 0) { // left by a trasher that wrote no record
            ::close(fd);
            ::unlink(info.c_str());
            continue;
        }
        bool written = writeAll(fd, record);
        int error = errno;
        if (::close(fd) != 0 && written) {
            written = false;
            error = errno;
        }
        if (written && ::rename(item.c_str(), target.c_str()) == 0) {
            // The name may have been swapped between the check and the move: put back what came.
            const auto moved = identityOf(target);
            if (!expected || moved == *expected) {
                if (!moved) return {}; // gone from the Trash at once: moved all the same
                return {std::nullopt, TrashedItem{original, target, info, *moved}};
            }
            ::rename(target.c_str(), item.c_str());
            ::unlink(info.c_str());
            return failed(item + ": " + Removal::kReplacedReason);
        }
        if (written) error = errno;
        ::unlink(info.c_str());
        if (error == EXDEV) return failed(item + ": " + kNoTrashReason);
        return failed(describe(item, error));
    }
    return failed(describe(item, EEXIST));
}
} // namespace

Outcome moveItem(const std::string& item, const std::optional<FileIdentity>& expected) {
    auto slash = item.rfind('/');
    std::string parent = slash == std::string::npos ? "." : slash == 0 ? "/" : item.substr(0, slash);
    std::string name = slash == std::string::npos ? item : item.substr(slash + 1);
    if (name.empty() || name == "." || name == "..") return failed(describe(item, EINVAL));
    struct stat itemStat {
    }, parentStat{};
    if (::lstat(item.c_str(), &itemStat) != 0) return failed(describe(item, errno));
    auto folder = FileSystem::resolvingSymlinks(parent);
    if (!folder || ::stat(folder->c_str(), &parentStat) != 0) return failed(describe(item, errno ? errno : ENOENT));
    const std::string original = (*folder == "/" ? "" : *folder) + "/" + name;
    if (itemStat.st_dev != parentStat.st_dev) return failed(item + ": " + Removal::kMountPointReason);

    std::optional<TrashFolder> trash = homeTrash();
    struct stat trashStat {};
    if (!trash || ::stat((trash->root + "/files").c_str(), &trashStat) != 0 || trashStat.st_dev != parentStat.st_dev)
        trash = topdirTrash(*folder, parentStat.st_dev);
    if (!trash) return failed(item + ": " + kNoTrashReason);

    std::string recorded = original;
    if (!trash->topdir.empty()) recorded = original.substr(trash->topdir == "/" ? 1 : trash->topdir.size() + 1);
    const std::string record = "[Trash Info]\nPath=" + escaped(recorded) + "\nDeletionDate=" + localTimestamp() + "\n";
    return claimAndMove(item, original, name, *trash, record, expected);
}

int moveWithoutReplacing(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL) return errno;
    // A file system that cannot refuse by itself: checked just before, which leaves a short window.
    struct stat taken {};
    if (::lstat(to.c_str(), &taken) == 0) return EEXIST;
    return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

} // namespace lumabroom::Trash
