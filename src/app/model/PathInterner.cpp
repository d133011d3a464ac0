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

std::optional<PathInterner::Key> PathInterner::find(std::string_view path, std::uint64_t hash) const {
    if (slots_.empty()) return std::nullopt;
    const Slot& slot = slots_[slotOf(path, hash)];
    if (slot.key == kEmpty) return std::nullopt;
    return slot.key;
}

PathInterner::Key PathInterner::add(Slot& slot, std::string_view path, std::uint64_t hash) {
    const std::string_view stored = store(path);
    slot = {hash, stored.data(), static_cast<std::uint32_t>(stored.size()), static_cast<Key>(paths_.size())};
    paths_.push_back(stored);
    hashes_.push_back(hash);
    return slot.key;
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
