#include "DockerMode.h"

#include "Output.h"
#include "Texts.h"

#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"
#include "tools/DockerInventoryLister.h"
#include "tools/DockerUsageLister.h"

#include <ostream>

namespace lumabroom::DockerMode {

namespace {

using Output::Json;

Json usageJson(const std::vector<ScanEntry>& rows) {
    auto list = Json::array();
    for (const auto& row : rows) {
        const auto* label = row.label ? std::get_if<DockerUsageLabel>(&row.label->value) : nullptr;
        if (!label) continue;
        Json item;
        item["kind"] = rawValue(label->kind);
        item["size"] = row.size;
        item["count"] = label->count;
        item["reclaimable"] = Output::orNull(label->reclaimable);
        list.push_back(std::move(item));
    }
    return Json{{"usage", std::move(list)}};
}

Json itemsJson(const std::vector<DockerItem>& items) {
    auto list = Json::array();
    for (const auto& i : items)
        list.push_back(
            Json{{"kind", rawValue(i.kind)}, {"name", i.name}, {"detail", i.detail}, {"size", i.size}, {"ref", i.ref}});
    return list;
}

Json inventoryJson(const std::optional<DockerInventory>& inventory) {
    if (!inventory) return Json{{"inventory", nullptr}};
    return Json{{"inventory", Json{{"images", itemsJson(inventory->images)},
                                   {"containers", itemsJson(inventory->containers)},
                                   {"volumes", itemsJson(inventory->volumes)}}}};
}

std::string usageText(const std::vector<ScanEntry>& usage) {
    std::string out = Localization::text(Texts::dockerUsage) + "\n";
    if (usage.empty()) return out + "  " + Localization::text(Texts::dockerNoUsage) + "\n";
    std::vector<Output::Row> rows;
    for (const auto& row : usage) rows.push_back({{Formatting::bytes(row.size), row.label ? row.label->text() : ""}});
    return out + Output::table({Output::sizeColumn(), {}}, rows);
}

// `titleKey` holds "%n" for the number of items.
std::string itemsText(std::string_view titleKey, const std::vector<DockerItem>& items) {
    std::vector<Output::Row> rows;
    for (const auto& i : items) {
        std::string text = Strings::quotedForTerminal(i.name);
        if (!i.detail.empty()) text += "  ·  " + Strings::quotedForTerminal(i.detail);
        rows.push_back({{Formatting::bytes(i.size), text + "  [" + i.ref + "]"}});
    }
    return Localization::counted(titleKey, static_cast<std::int64_t>(items.size())) + "\n"
           + Output::table({Output::sizeColumn(), {}}, rows);
}

} // namespace

int run(bool json, std::ostream& out) {
    if (!DockerUsageLister::daemonAvailable()) {
        if (json) Output::writeJsonLine(out, Json{{"daemon", false}});
        else out << Localization::text(Texts::dockerNoDaemon) << "\n";
        return 0;
    }
    const auto usage = DockerUsageLister::entries("docker");
    if (json) Output::writeJsonLine(out, usageJson(usage));
    const auto inventory = DockerInventoryLister::fetch();
    if (json) {
        Output::writeJsonLine(out, inventoryJson(inventory));
        return 0;
    }
    out << usageText(usage) << "\n";
    if (!inventory) {
        out << Localization::text(Texts::dockerNoInventory) << "\n";
        return 0;
    }
    out << itemsText(Texts::dockerImages, inventory->images)
        << itemsText(Texts::dockerContainers, inventory->containers)
        << itemsText(Texts::dockerVolumes, inventory->volumes);
    return 0;
}

} // namespace lumabroom::DockerMode
