#include "host/Trash.h"

#include "host/DirectoryReader.h"
#include "host/Paths.h"
#include "host/Removal.h"
#include "host/TrashPlatform.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace lumabroom::Trash {

namespace {
// The nearest folder at or above `path` that exists, and the missing ones below it, nearest first.
std::optional<struct stat> nearestExisting(std::string path, std::vector<std::string>* missing = nullptr) {
    for (;;) {
        struct stat st {};
        if (::stat(path.c_str(), &st) == 0) return st;
        if (errno != ENOENT || path == "/" || path.empty()) return std::nullopt;
        if (missing) missing->push_back(path);
        path = Paths::deletingLastPathComponent(path);
    }
}
} // namespace

std::string describe(const std::string& what, int error) {
    return what + ": " + std::generic_category().message(error);
}

Outcome trash(const std::string& path, const std::optional<FileIdentity>& expected) {
    std::string item = path; // "link/" would name what the link points at
    while (item.size() > 1 && item.back() == '/') item.pop_back();
    if (expected && identityOf(item) != *expected) return {item + ": " + Removal::kReplacedReason, std::nullopt};
    return moveItem(item, expected);
}

std::optional<std::string> moveToTrash(const std::string& path, const std::optional<FileIdentity>& expected) {
    return trash(path, expected).failure;
}

std::optional<std::string> restore(const TrashedItem& item) {
    const auto refused = [&](const char* reason) { return item.original + ": " + reason; };
    const auto entry = identityOf(item.location);
    if (entry != item.identity) {
        // Had the Trash only been emptied, what is left above the entry would still be on its volume.
        const auto above = nearestExisting(Paths::deletingLastPathComponent(item.location));
        if (!above || above->st_dev != item.identity.device) return refused(kVolumeGoneReason);
        return refused(kEntryGoneReason);
    }
    if (identityOf(item.original)) return refused(kPlaceTakenReason);

    std::vector<std::string> missing;
    const auto parent = nearestExisting(Paths::deletingLastPathComponent(item.original), &missing);
    if (!parent) return describe(item.original, errno);
    // A rename cannot cross volumes, and folders made there first would be left behind.
    if (parent->st_dev != item.identity.device) return refused(kVolumeGoneReason);
    for (auto folder = missing.rbegin(); folder != missing.rend(); ++folder)
        if (::mkdir(folder->c_str(), 0777) != 0 && errno != EEXIST) return describe(item.original, errno);

    switch (const int error = moveWithoutReplacing(item.location, item.original)) {
    case 0: break;
    case EEXIST:
    case ENOTEMPTY: return refused(kPlaceTakenReason);
    case ENOENT: return refused(kEntryGoneReason);
    case EXDEV: return refused(kVolumeGoneReason);
    default: return describe(item.original, error);
    }
    if (!item.record.empty()) ::unlink(item.record.c_str());
    return std::nullopt;
}

} // namespace lumabroom::Trash
