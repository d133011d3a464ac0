#include "tools/OrbStackRefresher.h"

#include "host/Paths.h"
#include "tools/DockerUsageLister.h"

#include <algorithm>
#include <limits>

namespace lumabroom::OrbStackRefresher {

namespace {

// Saturating: no disk or daemon reports 2^63 bytes, but a sum of what a tool printed must never wrap.
std::int64_t plus(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(a, b, &sum)) return sum;
    return b > 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t minus(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (!__builtin_sub_overflow(a, b, &difference)) return difference;
    return b < 0 ? std::numeric_limits<std::int64_t>::max() : std::numeric_limits<std::int64_t>::min();
}

std::int64_t total(const std::vector<ScanEntry>& entries) {
    std::int64_t sum = 0;
    for (const auto& entry : entries) sum = plus(sum, entry.size);
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
        rows.push_back(ScanEntry{folder / "docker" / "other", minus(diskTotal, kindsTotal),
                                 EntryLabel{DockerOtherLabel{}}});

    std::stable_sort(rows.begin(), rows.end(), [](const ScanEntry& a, const ScanEntry& b) { return a.size > b.size; });
    return rows;
}

bool isRefined(const std::vector<ScanEntry>& entries) {
    return std::any_of(entries.begin(), entries.end(),
                       [](const ScanEntry& e) { return e.url.string().find("/docker/") != std::string::npos; });
}

} // namespace lumabroom::OrbStackRefresher
