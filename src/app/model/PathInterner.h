#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace lumabroom {

// Numbers every path it is given, in the order they come: 0, 1, 2... A number stays with its path
// until keepOnly() renumbers. The paths are copied into blocks that never move, and the table is
// open addressing keyed by a hash the caller may have computed elsewhere, so that a lookup touches
// one slot and one path and allocates nothing.
class PathInterner {
public:
    using Key = std::uint32_t;
    // Never a path's number.
    static constexpr Key kNoKey = ~Key{0};

    static std::uint64_t hash(std::string_view path);

    std::size_t size() const { return paths_.size(); }
    std::string_view path(Key key) const { return paths_[key]; }
    std::uint64_t hashOf(Key key) const { return hashes_[key]; }
    std::optional<Key> find(std::string_view path) const { return find(path, hash(path)); }
    std::optional<Key> find(std::string_view path, std::uint64_t hash) const;
    // The path's number, and whether it was new. Inline: a rescan looks up every entry.
    std::pair<Key, bool> intern(std::string_view path, std::uint64_t hash) {
        if (2 * (paths_.size() + 1) > slots_.size()) reserve(1);
        Slot& slot = slots_[slotOf(path, hash)];
        if (slot.key != kEmpty) return {slot.key, false};
        return {add(slot, path, hash), true};
    }
    // Start loading what a lookup of the hash will read, for a caller that knows its next hashes
    // ahead: first the slot, a few lookups later the path it points to. After reserve(), so that
    // the table does not move in between.
    void prefetchSlot(std::uint64_t hash) const {
        if (!slots_.empty()) __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]);
    }
    void prefetchPath(std::uint64_t hash) const {
        if (slots_.empty()) return;
        const Slot& slot = slots_[hash & (slots_.size() - 1)];
        if (slot.hash == hash) __builtin_prefetch(slot.data);
    }
    // Room for `count` more paths without growing the table.
    void reserve(std::size_t count);
    // Forgets the paths whose flag is 0 and numbers the others again in their order; returns the
    // new number of each old one (0 for the forgotten).
    std::vector<Key> keepOnly(const std::vector<std::uint8_t>& keep);

private:
    static constexpr Key kEmpty = kNoKey;
    // The path's characters are here too, so that a lookup does not go through paths_.
    struct Slot {
        std::uint64_t hash = 0;
        const char* data = nullptr;
        std::uint32_t size = 0;
        Key key = kEmpty;
    };

    // The slot that holds the path, or the empty one where it would go.
    std::size_t slotOf(std::string_view path, std::uint64_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = slots_[i];
            if (slot.key == kEmpty || (slot.hash == hash && slot.size == path.size() && equal(slot.data, path)))
                return i;
        }
    }
    static bool equal(const char* stored, std::string_view path) {
        return path.empty() || std::memcmp(stored, path.data(), path.size()) == 0;
    }
    Key add(Slot& slot, std::string_view path, std::uint64_t hash);
    void rehash(std::size_t capacity);
    std::string_view store(std::string_view path);

    std::vector<Slot> slots_; // a power of two long, at most half full
    std::vector<std::string_view> paths_;
    std::vector<std::uint64_t> hashes_; // per key, so growing hashes nothing
    std::vector<std::unique_ptr<char[]>> blocks_;
    std::size_t blockUsed_ = 0;
    std::size_t blockSize_ = 0;
};

} // namespace lumabroom
