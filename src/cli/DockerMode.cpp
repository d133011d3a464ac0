#include "DockerMode.h"

#include "Columns.h"

#include "text/Formatting.h"
#include "text/Strings.h"
#include "tools/DockerInventoryLister.h"
#include "tools/DockerUsageLister.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace lumabroom::DockerMode {

namespace {

using Json = nlohmann::ordered_json;

std::string dump(const Json& j) { return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace); }

Json usageJson(const std::vector<ScanEntry>& rows) {
    auto list = Json::array();
    for (const auto& row : rows) {
        const auto* label = row.label ? std::get_if<DockerUsageLabel>(&row.label->value) : nullptr;
        if (!label) continue;
        Json item;
        item["kind"] = rawValue(label->kind);
        item["size"] = row.size;
        item["count"] = label->count;
        item["reclaimable"] = label->reclaimable ? Json(*label->reclaimable) : Json(nullptr);
        list.push_back(std::move(item));
    }
    return Json{{"usage", std::move(list)}};
}

Json itemsJson(const std::vector<DockerItem>& items) {
    auto list = Json::array();
    for (const auto& i : items)
        list.push_back(Json{{"kind", rawValue(i.kind)}, {"name", i.name}, {"detail", i.detail}, {"size", i.size},
                            {"ref", i.ref}});
    return list;
}

Json inventoryJson(const std::optional<DockerInventory>& inventory) {
    if (!inventory) return Json{{"inventory", nullptr}};
    return Json{{"inventory",
                 Json{{"images", itemsJson(inventory->images)},
                      {"containers", itemsJson(inventory->containers)},
                      {"volumes", itemsJson(inventory->volumes)}}}};
}

void printItems(std::ostream& out, const char* title, const std::vector<DockerItem>& items) {
    out << title << " (" << items.size() << ")\n";
    for (const auto& i : items) {
        out << "  " << Columns::rightAligned(Formatting::bytes(i.size), 10) << "  " << Strings::quotedForTerminal(i.name);
        if (!i.detail.empty()) out << "  ·  " << Strings::quotedForTerminal(i.detail);
        out << "  [" << i.ref << "]\n";
    }
}

} // namespace

int run(bool json, std::ostream& out) {
    if (!DockerUsageLister::daemonAvailable()) {
        if (json) out << dump(Json{{"daemon", false}}) << "\n";
        else out << "The Docker daemon is not running: no socket found. Nothing was asked.\n";
        return 0;
    }
    const auto usage = DockerUsageLister::entries("docker");
    if (json) out << dump(usageJson(usage)) << "\n" << std::flush;
    const auto inventory = DockerInventoryLister::fetch();
    if (json) {
        out << dump(inventoryJson(inventory)) << "\n";
        return 0;
    }

    out << "Docker usage\n";
    if (usage.empty()) out << "  (docker gave no usage)\n";
    for (const auto& row : usage)
        out << "  " << Columns::rightAligned(Formatting::bytes(row.size), 10) << "  "
            << (row.label ? row.label->text() : "") << "\n";
    out << "\n";
    if (!inventory) {
        out << "(docker gave no inventory)\n";
        return 0;
    }
    printItems(out, "Images", inventory->images);
    printItems(out, "Containers", inventory->containers);
    printItems(out, "Volumes", inventory->volumes);
    return 0;
}

} // namespace lumabroom::DockerMode
