#include "tools/OrbStackRefresher.h"

#include "host/Paths.h"
#include "host/Saturating.h"
#include "tools/DockerUsageLister.h"

#include <algorithm>
#include <limits>

namespace lumabroom::OrbStackRefresher {

namespace {

std::int64_t total(const std::vector<ScanEntry>& entries) {
    std::int64_t sum = 0;
    for (const auto& entry : entries) sum = saturatingAdd(sum, entry.size);
    return sum;
}

} // namespace

std::optional<std::vector<ScanEntry>> refinedEntries(const std::vector<ScanEntry>& diskEntries) {
    if (diskEntries.empty()) return std::nullopt;
    const std::filesystem::path folder = Paths::deletingLastPathComponent(diskEntries.front().url.string());
    const std::int64_t diskTotal = total(diskEntries);

    std::vector<ScanEntry> rows = DockerUsageLister::entries(folder / "docker");
    if (rows.empty()) return std::nullopt;
    const std::int64_t kindsTotal = total(rows);
    if (kindsTotal < diskTotal)
        rows.push_back(ScanEntry{folder / "docker" / "other", saturatingSubtract(diskTotal, kindsTotal),
                                 EntryLabel{DockerOtherLabel{}}});

    std::stable_sort(rows.begin(), rows.end(), [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return rows;
}

bool isRefined(const std::vector<ScanEntry>& entries) {
    return std::any_of(entries.begin(), entries.end(),
                       [](const ScanEntry& e) { return e.url.string().find("/docker/") != std::string::npos; });
}

} // namespace lumabroom::OrbStackRefresher
