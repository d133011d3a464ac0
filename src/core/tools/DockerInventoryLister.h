#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

struct DockerItem {
    enum class Kind { image, container, volume };

    Kind kind = Kind::image;
    std::string name;   // what the user sees
    std::string detail; // the secondary line
    std::int64_t size = 0;
    std::string ref; // what the removing docker command is given

    // "<kind>:<ref>", as in "image:0123456789ab": the same id is the same item for removal.
    std::string id() const;
    bool operator==(const DockerItem&) const = default;
};

inline constexpr std::array allDockerItemKinds{DockerItem::Kind::image, DockerItem::Kind::container,
                                               DockerItem::Kind::volume};
std::string_view rawValue(DockerItem::Kind);

// Each list largest first; equal sizes in the tool's order.
struct DockerInventory {
    std::vector<DockerItem> images;
    std::vector<DockerItem> containers;
    std::vector<DockerItem> volumes;

    // The same lists without any item of the given item's id, in the same order.
    DockerInventory removing(const DockerItem& item) const;
    bool operator==(const DockerInventory&) const = default;
};

namespace DockerInventoryLister {

// `docker system df -v`; nothing without the daemon or on any failure of the tool.
std::optional<DockerInventory> fetch();

// The tool's one JSON object. Text that is no JSON object gives nothing; any object an inventory.
// Fields are read leniently: every row of "Images", "Containers" and "Volumes" gives one item.
std::optional<DockerInventory> parse(std::string_view output);

// "sha256:0123456789abcdef…" → "0123456789ab": every "sha256:" removed, then 12 characters.
std::string shortId(std::string_view id);

} // namespace DockerInventoryLister
} // namespace lumabroom

template <>
struct std::hash<lumabroom::DockerItem> {
    std::size_t operator()(const lumabroom::DockerItem&) const noexcept;
};
