#include "host/Trash.h"

#include "host/DirectoryReader.h"
#include "host/Removal.h"
#include "host/TrashPlatform.h"

#include <system_error>

namespace lumabroom::Trash {

std::string describe(const std::string& what, int error) {
    return what + ": " + std::generic_category().message(error);
}

std::optional<std::string> moveToTrash(const std::string& path, const std::optional<FileIdentity>& expected) {
    std::string item = path; // "link/" would name what the link points at
    while (item.size() > 1 && item.back() == '/') item.pop_back();
    if (expected && identityOf(item) != *expected) return item + ": " + Removal::kReplacedReason;
    return moveItem(item, expected);
}

} // namespace lumabroom::Trash
