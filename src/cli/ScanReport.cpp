#include "ScanReport.h"

#include "Output.h"
#include "Texts.h"

#include "host/Paths.h"
#include "scan/Category.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace lumabroom::ScanReport {

namespace {
using Output::Row;

struct Group {
    std::vector<const RuleScanResult*> rules;
    std::int64_t total = 0;
};

// A rule's line, then its largest entries, then how many more there are.
void addRule(std::vector<Row>& rows, const RuleScanResult& r, std::size_t entriesPerRule, const std::string& home) {
    std::string name = r.rule.name();
    if (r.entries.empty()) name += "  " + Localization::text(Texts::nothingFound);
    rows.push_back(Row{{Formatting::bytes(r.totalSize()), name}});
    const std::size_t shown = std::min(entriesPerRule, r.entries.size());
    for (std::size_t i = 0; i < shown; ++i) {
        const auto& e = r.entries[i];
        const std::string text =
            e.label ? Strings::quotedForTerminal(e.label->text()) : Output::displayPath(e.url, home);
        rows.push_back(Row{{Formatting::bytes(e.size), text}, "      "});
    }
    if (r.entries.size() > shown)
        rows.push_back(
            Row{{"", Localization::counted(Texts::moreEntries, static_cast<std::int64_t>(r.entries.size() - shown))},
                "      "});
}
} // namespace

Output::Json json(const RuleScanResult& result) {
    Output::Json j;
    j["id"] = result.rule.id;
    j["name"] = result.rule.name();
    j["total"] = result.totalSize();
    auto entries = Output::Json::array();
    for (const auto& entry : result.entries) {
        Output::Json e;
        e["path"] = entry.url.string();
        e["size"] = entry.size;
        if (entry.label) e["label"] = entry.label->text();
        entries.push_back(std::move(e));
    }
    j["entries"] = std::move(entries);
    return j;
}

Output::Json doneJson(std::size_t rules, std::int64_t total, double seconds) {
    Output::Json j;
    j["done"] = true;
    j["rules"] = rules;
    j["total"] = total;
    j["seconds"] = std::round(seconds * 1000.0) / 1000.0;
    return j;
}

std::string volumeLine(const DiskSpace& disk) {
    return Strings::quotedForTerminal(disk.volumeName) + "  "
           + Localization::formatted(
               Texts::volumeUsage,
               {Formatting::bytes(disk.used()), Formatting::bytes(disk.available), Formatting::bytes(disk.total)});
}

std::string readable(const std::vector<RuleScanResult>& results, const std::vector<CleanRule>& catalogueOrder,
                     double seconds, std::size_t entriesPerRule) {
    std::map<std::string, const RuleScanResult*, std::less<>> byId;
    for (const auto& r : results) byId[r.rule.id] = &r;
    std::map<Category, Group> groups;
    for (const auto& rule : catalogueOrder) {
        auto it = byId.find(rule.id);
        if (it == byId.end()) continue;
        Group& group = groups[rule.category];
        group.rules.push_back(it->second);
        group.total += it->second->totalSize();
    }

    const std::string home = Paths::homeDirectory();
    std::string out;
    std::int64_t grandTotal = 0;
    for (Category category : allCategories) {
        auto group = groups.find(category);
        if (group == groups.end()) continue;
        grandTotal += group->second.total;
        std::vector<Row> rows;
        for (const auto* r : group->second.rules) addRule(rows, *r, entriesPerRule, home);
        out += displayName(category) + "  " + Formatting::bytes(group->second.total) + "\n";
        out += Output::table({Output::sizeColumn(), {}}, rows) + "\n";
    }
    char time[32];
    std::snprintf(time, sizeof time, "%.2f", seconds);
    out += Localization::counted(Texts::scanTotal, static_cast<std::int64_t>(results.size()),
                                 {Formatting::bytes(grandTotal), time})
           + "\n";
    return out;
}

} // namespace lumabroom::ScanReport
