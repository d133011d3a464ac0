#include "ModelWork.h"

#include <algorithm>

namespace lumabroom {

namespace {

// Paths no result holds that may stay numbered before a pruning renumbers the rest.
constexpr std::size_t kSpareKeys = 4096;
constexpr std::size_t kPrefetchDistance = 8;

} // namespace

PreparedResult::PreparedResult(RuleScanResult scanned) : result(std::move(scanned)) {
    hashes.reserve(result.entries.size());
    sizes.reserve(result.entries.size());
    for (const ScanEntry& entry : result.entries) {
        hashes.push_back(PathInterner::hash(entry.url.native()));
        sizes.push_back(entry.size);
        total += entry.size;
    }
}

AppModel::Key AppModel::intern(std::string_view path, std::uint64_t hash) {
    const auto [key, added] = paths_.intern(path, hash);
    if (!added) return key;
    selected_.push_back(0);
    // An id selected before any result held it becomes a flag like the others.
    if (!selectedElsewhere_.empty() && selectedElsewhere_.erase(std::string(path)) > 0) setKeySelected(key, true);
    return key;
}

void AppModel::reindex(PreparedResult& prepared, Indexed& indexed) {
    const std::vector<ScanEntry>& entries = prepared.result.entries;
    const std::vector<std::uint64_t>& hashes = prepared.hashes;
    std::vector<Key>& keys = indexed.keys;
    // A rescan mostly finds what the last one found, in the same places of the list: comparing
    // with the old entry there is cheaper than a lookup, so only the others are looked up after.
    const std::size_t kept = std::min(keys.size(), entries.size());
    keys.resize(entries.size(), PathInterner::kNoKey);
    std::size_t missing = entries.size() - kept;
    for (std::size_t j = 0; j < kept; ++j) {
        if (paths_.hashOf(keys[j]) == hashes[j] && paths_.path(keys[j]) == entries[j].url.native()) continue;
        keys[j] = PathInterner::kNoKey;
        ++missing;
    }
    if (missing > 0) {
        paths_.reserve(missing);
        for (std::size_t j = 0; j < entries.size(); ++j) {
            // The table is larger than the cache: ask early for what later lookups will read.
            if (const std::size_t ahead = j + 2 * kPrefetchDistance;
                ahead < entries.size() && keys[ahead] == PathInterner::kNoKey)
                paths_.prefetchSlot(hashes[ahead]);
            if (const std::size_t ahead = j + kPrefetchDistance;
                ahead < entries.size() && keys[ahead] == PathInterner::kNoKey)
                paths_.prefetchPath(hashes[ahead]);
            if (keys[j] == PathInterner::kNoKey) keys[j] = intern(entries[j].url.native(), hashes[j]);
        }
    }
    indexed.sizes = std::move(prepared.sizes);
    indexed.total = prepared.total;
}

const AppModel::Indexed* AppModel::indexedOf(const RuleScanResult& result) const {
    if (results_.empty() || &result < results_.data() || &result >= results_.data() + results_.size()) return nullptr;
    return &indexed_[static_cast<std::size_t>(&result - results_.data())];
}

std::vector<AppModel::Key> AppModel::keysOf(const RuleScanResult& result) {
    if (const Indexed* indexed = indexedOf(result)) return indexed->keys;
    std::vector<Key> keys;
    keys.reserve(result.entries.size());
    for (const ScanEntry& entry : result.entries)
        keys.push_back(intern(entry.url.native(), PathInterner::hash(entry.url.native())));
    return keys;
}

bool AppModel::isPathSelected(const std::string& path) const {
    const auto key = paths_.find(path);
    return key ? selected_[*key] != 0 : selectedElsewhere_.count(path) > 0;
}

bool AppModel::isSelected(const std::string& entryID) const { return isPathSelected(entryID); }

void AppModel::setKeySelected(Key key, bool selected) {
    if ((selected_[key] != 0) == selected) return;
    selected_[key] = selected ? 1 : 0;
    selectedKeyCount_ += selected ? 1 : -1;
}

void AppModel::pruneSelection() {
    assertOnOwnThread();
    std::vector<std::uint8_t> held(selected_.size(), 0);
    for (const Indexed& indexed : indexed_)
        for (Key key : indexed.keys) held[key] = 1;
    bool changed = !selectedElsewhere_.empty();
    selectedElsewhere_.clear();
    std::size_t heldCount = 0;
    for (Key key = 0; key < selected_.size(); ++key) {
        heldCount += held[key];
        if (selected_[key] && !held[key]) {
            setKeySelected(key, false);
            changed = true;
        }
    }
    if (paths_.size() > 2 * heldCount + kSpareKeys) forgetPathsNotHeld(held);
    if (changed) Q_EMIT selectedEntryIDsChanged();
}

// Paths that no result holds any more would pile up over many scans: renumber the ones that are
// left. Only after a pruning, when no such path is selected.
void AppModel::forgetPathsNotHeld(const std::vector<std::uint8_t>& held) {
    const std::vector<Key> renumbered = paths_.keepOnly(held);
    std::vector<std::uint8_t> selected;
    for (Key key = 0; key < selected_.size(); ++key)
        if (held[key]) selected.push_back(selected_[key]);
    for (Indexed& indexed : indexed_)
        for (Key& key : indexed.keys) key = renumbered[key];
    selected_ = std::move(selected);
}

} // namespace lumabroom
