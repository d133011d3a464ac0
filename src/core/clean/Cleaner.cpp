#include "clean/Cleaner.h"

#include "host/DirectoryReader.h"
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
        const std::string path = entry.url.string();
        // The scan measured a link at its target, but removing it frees the link alone.
        std::int64_t freed = entry.size;
        std::string item = path; // "link/" would name the target, but the link is what goes
        while (item.size() > 1 && item.back() == '/') item.pop_back();
        if (auto info = statNotFollowingLinks(item); info && info->isLink) freed = info->allocatedBytes;
        std::optional<std::string> failure;
        if (!dryRun && method == CleanMethod::trash) {
            auto outcome = Trash::trash(path, entry.identity);
            failure = std::move(outcome.failure);
            if (outcome.trashed) result.trashed.push_back({entry.url, freed, std::move(*outcome.trashed)});
        } else if (!dryRun) {
            failure = Removal::deleteItem(path, entry.identity);
        }
        if (failure) {
            result.failures.push_back({entry.url, std::move(*failure)});
        } else {
            result.removed.push_back(entry.url);
            result.freedBytes += freed;
        }
    }
    return result;
}

} // namespace Cleaner
} // namespace lumabroom
