#include "ModelWork.h"

#include <algorithm>

namespace lumabroom {

namespace {

// Paths no result holds that may stay numbered before a pruning renumbers the rest.
constexpr std::size_t kSpareKeys = 4096;

} // namespace

AppModel::Key AppModel::intern(const std::string& path) {
    const auto [found, added] = keyOfPath_.try_emplace(path, static_cast<Key>(pathOfKey_.size()));
    if (!added) return found->second;
    pathOfKey_.push_back(path);
    selected_.push_back(0);
    // An id selected before any result held it becomes a flag like the others.
    if (!selectedElsewhere_.empty() && selectedElsewhere_.erase(path) > 0) setKeySelected(found->second, true);
    return found->second;
}

AppModel::Indexed AppModel::indexOf(const RuleScanResult& result, const RuleScanResult* previous,
                                    const Indexed* previousIndexed) {
    Indexed indexed;
    indexed.keys.reserve(result.entries.size());
    indexed.sizes.reserve(result.entries.size());
    for (std::size_t j = 0; j < result.entries.size(); ++j) {
        const std::string& path = result.entries[j].url.native();
        // A rescan mostly finds what the last one found, in the same places of the list: comparing
        // with the old entry there is cheaper than a lookup.
        const bool same = previous && j < previous->entries.size() && previous->entries[j].url.native() == path;
        indexed.keys.push_back(same ? previousIndexed->keys[j] : intern(path));
        const ScanEntry& entry = result.entries[j];
        indexed.sizes.push_back(entry.size);
        indexed.total += entry.size;
    }
    return indexed;
}

const AppModel::Indexed* AppModel::indexedOf(const RuleScanResult& result) const {
    if (results_.empty() || &result < results_.data() || &result >= results_.data() + results_.size()) return nullptr;
    return &indexed_[static_cast<std::size_t>(&result - results_.data())];
}

std::vector<AppModel::Key> AppModel::keysOf(const RuleScanResult& result) {
    if (const Indexed* indexed = indexedOf(result)) return indexed->keys;
    std::vector<Key> keys;
    keys.reserve(result.entries.size());
    for (const ScanEntry& entry : result.entries) keys.push_back(intern(entry.url.native()));
    return keys;
}

bool AppModel::isPathSelected(const std::string& path) const {
    const auto found = keyOfPath_.find(path);
    return found == keyOfPath_.end() ? selectedElsewhere_.count(path) > 0 : selected_[found->second] != 0;
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
    if (pathOfKey_.size() > 2 * heldCount + kSpareKeys) forgetPathsNotHeld(held);
    if (changed) Q_EMIT selectedEntryIDsChanged();
}

// Paths that no result holds any more would pile up over many scans: renumber the ones that are
// left. Only after a pruning, when no such path is selected.
void AppModel::forgetPathsNotHeld(const std::vector<std::uint8_t>& held) {
    std::vector<Key> renumbered(pathOfKey_.size(), 0);
    std::vector<std::string> paths;
    std::vector<std::uint8_t> selected;
    for (Key key = 0; key < pathOfKey_.size(); ++key) {
        if (!held[key]) continue;
        renumbered[key] = static_cast<Key>(paths.size());
        paths.push_back(std::move(pathOfKey_[key]));
        selected.push_back(selected_[key]);
    }
    keyOfPath_.clear();
    for (Key key = 0; key < paths.size(); ++key) keyOfPath_.emplace(paths[key], key);
    for (Indexed& indexed : indexed_)
        for (Key& key : indexed.keys) key = renumbered[key];
    pathOfKey_ = std::move(paths);
    selected_ = std::move(selected);
}

} // namespace lumabroom
