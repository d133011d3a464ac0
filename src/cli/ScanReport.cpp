#include "ScanReport.h"

#include "Columns.h"

#include "host/Paths.h"
#include "scan/Category.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>

namespace lumabroom::ScanReport {

namespace {
std::string dump(const nlohmann::ordered_json& j) { return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace); }

// Paths below the home folder read shorter with "~" in its place.
std::string displayPath(const std::filesystem::path& path, const std::string& home) {
    const std::string text = path.string();
    if (home.size() > 1 && text.size() > home.size() && text.compare(0, home.size(), home) == 0 && text[home.size()] == '/')
        return std::string(1, '~').append(text, home.size(), std::string::npos);
    return text;
}

std::string sizeColumn(std::int64_t bytes) { return Columns::rightAligned(Formatting::bytes(bytes), 10); }
} // namespace

std::string jsonLine(const RuleScanResult& result) {
    nlohmann::ordered_json j;
    j["id"] = result.rule.id;
    j["name"] = result.rule.name();
    j["total"] = result.totalSize();
    auto entries = nlohmann::ordered_json::array();
    for (const auto& entry : result.entries) {
        nlohmann::ordered_json e;
        e["path"] = entry.url.string();
        e["size"] = entry.size;
        if (entry.label) e["label"] = entry.label->text();
        entries.push_back(std::move(e));
    }
    j["entries"] = std::move(entries);
    return dump(j);
}

std::string doneLine(std::size_t rules, std::int64_t total, double seconds) {
    nlohmann::ordered_json j;
    j["done"] = true;
    j["rules"] = rules;
    j["total"] = total;
    j["seconds"] = std::round(seconds * 1000.0) / 1000.0;
    return dump(j);
}

std::string volumeLine(const DiskSpace& disk) {
    return Strings::quotedForTerminal(disk.volumeName) + "  "
           + Localization::formatted("已用 %1 · 可用 %2 · 共 %3", {Formatting::bytes(disk.used()),
                                                                  Formatting::bytes(disk.available),
                                                                  Formatting::bytes(disk.total)});
}

std::string readable(const std::vector<RuleScanResult>& results, const std::vector<CleanRule>& catalogueOrder,
                     double seconds, std::size_t entriesPerRule) {
    std::map<std::string, const RuleScanResult*, std::less<>> byId;
    for (const auto& r : results) byId[r.rule.id] = &r;
    const std::string home = Paths::homeDirectory();

    std::string out;
    std::int64_t grandTotal = 0;
    for (Category category : allCategories) {
        std::vector<const RuleScanResult*> rows;
        std::int64_t categoryTotal = 0;
        for (const auto& rule : catalogueOrder) {
            auto it = byId.find(rule.id);
            if (rule.category != category || it == byId.end()) continue;
            rows.push_back(it->second);
            categoryTotal += it->second->totalSize();
        }
        if (rows.empty()) continue;
        grandTotal += categoryTotal;
        out += displayName(category) + "  " + Formatting::bytes(categoryTotal) + "\n";
        for (const auto* r : rows) {
            out += "  " + sizeColumn(r->totalSize()) + "  " + r->rule.name();
            if (r->entries.empty()) out += "  " + Localization::text("(未找到)");
            out += "\n";
            std::size_t shown = std::min(entriesPerRule, r->entries.size());
            for (std::size_t i = 0; i < shown; ++i) {
                const auto& e = r->entries[i];
                out += "      " + sizeColumn(e.size) + "  "
                       + Strings::quotedForTerminal(e.label ? e.label->text() : displayPath(e.url, home)) + "\n";
            }
            if (r->entries.size() > shown)
                out += "      " + Columns::rightAligned("", 10) + "  "
                       + Localization::counted("… 另有 %n 项", static_cast<std::int64_t>(r->entries.size() - shown)) + "\n";
        }
        out += "\n";
    }
    char time[32];
    std::snprintf(time, sizeof time, "%.2f", seconds);
    out += Localization::counted("共 %1,%n 条规则,用时 %2 秒", static_cast<std::int64_t>(results.size()),
                                 {Formatting::bytes(grandTotal), time})
           + "\n";
    return out;
}

} // namespace lumabroom::ScanReport
