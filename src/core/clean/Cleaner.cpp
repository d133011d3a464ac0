#include "clean/Cleaner.h"

#include "host/Removal.h"
#include "host/Trash.h"

namespace lumabroom {

std::string_view rawValue(CleanMethod method) {
    switch (method) {
    case CleanMethod::trash: return "trash";
    case CleanMethod::delete_: return "delete";
    }
    return {};
}

std::optional<CleanMethod> cleanMethodFromRaw(std::string_view raw) {
    if (raw == "trash") return CleanMethod::trash;
    if (raw == "delete") return CleanMethod::delete_;
    return std::nullopt;
}

namespace Cleaner {

CleanResult clean(std::span<const ScanEntry> entries, CleanMethod method, bool dryRun) {
    CleanResult result;
    for (const auto& entry : entries) {
        std::optional<std::string> failure;
        if (!dryRun) {
            const std::string path = entry.url.string();
            failure = method == CleanMethod::trash ? Trash::moveToTrash(path) : Removal::deleteItem(path);
        }
        if (failure) {
            result.failures.push_back({entry.url, std::move(*failure)});
        } else {
            result.removed.push_back(entry.url);
            result.freedBytes += entry.size;
        }
    }
    return result;
}

} // namespace Cleaner
} // namespace lumabroom
