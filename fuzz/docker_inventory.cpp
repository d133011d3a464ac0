#include "FuzzCheck.h"

#include "tools/DockerInventoryLister.h"

#include <algorithm>

using namespace lumabroom;

namespace {
void check(const std::vector<DockerItem>& items, DockerItem::Kind kind) {
    fuzz::require(std::is_sorted(items.begin(), items.end(),
                                 [](const DockerItem& a, const DockerItem& b) { return a.size > b.size; }),
                  "largest first");
    for (const auto& item : items) {
        fuzz::require(item.kind == kind, "each list holds its own kind");
        // The texts end up in JSON and on the screen: a short id must never cut a character.
        fuzz::require(fuzz::isValidUtf8(item.name) && fuzz::isValidUtf8(item.detail) && fuzz::isValidUtf8(item.ref),
                      "texts stay valid UTF-8");
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto inventory = DockerInventoryLister::parse(fuzz::text(data, size));
    if (!inventory) return 0;
    check(inventory->images, DockerItem::Kind::image);
    check(inventory->containers, DockerItem::Kind::container);
    check(inventory->volumes, DockerItem::Kind::volume);
    for (const auto* list : {&inventory->images, &inventory->containers, &inventory->volumes}) {
        if (list->empty()) continue;
        const DockerItem& first = list->front();
        const DockerInventory rest = inventory->removing(first);
        for (const auto* after : {&rest.images, &rest.containers, &rest.volumes})
            for (const auto& item : *after)
                fuzz::require(item.id() != first.id(), "removing drops every item of the id");
    }
    return 0;
}
