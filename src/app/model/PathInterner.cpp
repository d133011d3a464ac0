#include "PathInterner.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace lumabroom {

namespace {

constexpr std::size_t kBlockBytes = 1 << 20;
constexpr std::size_t kFirstCapacity = 1024;

} // namespace

std::uint64_t PathInterner::hash(std::string_view path) { return std::hash<std::string_view>{}(path); }

// The slot that holds the path, or the empty one where it would go.
std::size_t PathInterner::slotOf(std::string_view path, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& slot = slots_[i];
        if (slot.key == kEmpty ||
            (slot.hash == hash && slot.size == path.size() && (path.empty() || std::memcmp(slot.data, path.data(), path.size()) == 0)))
            return i;
    }
}

std::optional<PathInterner::Key> PathInterner::find(std::string_view path, std::uint64_t hash) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[slotOf(path, hash)];
    if (slot.key == kEmpty) return std::nullopt;
    return slot.key;
}

std::pair<PathInterner::Key, bool> PathInterner::intern(std::string_view path, std::uint64_t hash) {
    reserve(1);
    Slot& slot = slots_[slotOf(path, hash)];
    if (slot.key != kEmpty) return {slot.key, false};
    const std::string_view stored = store(path);
    slot = {hash, stored.data(), static_cast<std::uint32_t>(stored.size()), static_cast<Key>(paths_.size())};
    paths_.push_back(stored);
    hashes_.push_back(hash);
    return {slot.key, true};
}

void PathInterner::prefetchSlot(std::uint64_t hash) const {
    if (!slots_.empty()) __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
}

void PathInterner::prefetchPath(std::uint64_t hash) const {
    if (slots_.empty()) return;
    const Slot& slot = slots_[hash & (slots_.size() - 1)];
    if (slot.hash == hash) __builtin_prefetch(slot.data);
}

void PathInterner::reserve(std::size_t count) {
    const std::size_t needed = 2 * (paths_.size() + count);
    if (needed <= slots_.size()) return;
    std::size_t capacity = std::max(kFirstCapacity, slots_.size());
    while (capacity < needed) capacity *= 2;
    rehash(capacity);
}

void PathInterner::rehash(std::size_t capacity) {
    slots_.assign(capacity, Slot{});
    const std::size_t mask = capacity - 1;
    for (Key key = 0; key < paths_.size(); ++key) {
        std::size_t i = hashes_[key] & mask;
        while (slots_[i].key != kEmpty) i = (i + 1) & mask;
        slots_[i] = {hashes_[key], paths_[key].data(), static_cast<std::uint32_t>(paths_[key].size()), key};
    }
}

std::string_view PathInterner::store(std::string_view path) {
    if (blocks_.empty() || blockSize_ - blockUsed_ < path.size()) {
        blockSize_ = std::max(kBlockBytes, path.size());
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
        blockUsed_ = 0;
    }
    char* at = blocks_.back().get() + blockUsed_;
    if (!path.empty()) std::memcpy(at, path.data(), path.size());
    blockUsed_ += path.size();
    return {at, path.size()};
}

std::vector<PathInterner::Key> PathInterner::keepOnly(const std::vector<std::uint8_t>& keep) {
    PathInterner kept;
    std::vector<Key> renumbered(paths_.size(), 0);
    std::size_t count = 0;
    for (Key key = 0; key < paths_.size(); ++key) count += keep[key] != 0;
    kept.reserve(count);
    for (Key key = 0; key < paths_.size(); ++key)
        if (keep[key]) renumbered[key] = kept.intern(paths_[key], hashes_[key]).first;
    *this = std::move(kept);
    return renumbered;
}

} // namespace lumabroom
