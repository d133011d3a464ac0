#include "WorktreesMode.h"

#include "agents/WorktreeDiscovery.h"
#include "host/Paths.h"
#include "text/Formatting.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <ctime>
#include <iostream>
#include <unistd.h>

namespace lumabroom::WorktreesMode {

namespace {
std::string dump(const nlohmann::ordered_json& j) {
    return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string isoTime(std::chrono::sys_seconds time) {
    const std::time_t seconds = time.time_since_epoch().count();
    std::tm utc{};
    ::gmtime_r(&seconds, &utc);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return text;
}

std::string shortened(const std::string& path, const std::string& home) {
    if (home.size() > 1 && path.starts_with(home) && (path.size() == home.size() || path[home.size()] == '/'))
        return std::string("~").append(path, home.size());
    return path;
}

std::string padRight(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string padLeft(std::string text, std::size_t width) {
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

std::string plural(int count, const char* one, const char* many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

// What removing the worktree would lose, in the words of the confirmation.
std::string verdict(const WorktreeInfo& w) {
    if (!w.isRisky()) return "safe to delete";
    std::string lost;
    if (w.dirtyFiles > 0) lost = plural(w.dirtyFiles, "uncommitted file", "uncommitted files");
    if (w.orphanCommits > 0) {
        if (!lost.empty()) lost += ", ";
        lost += plural(w.orphanCommits, "commit only here", "commits only here");
    }
    std::string text = "would lose " + lost;
    if (!w.hasRemote) text += " (no remote: no copy elsewhere)";
    return text;
}
} // namespace

std::string jsonReport(std::size_t report, const std::vector<WorktreeInfo>& worktrees) {
    auto list = nlohmann::ordered_json::array();
    for (const auto& w : worktrees) {
        nlohmann::ordered_json j;
        j["path"] = w.path.string();
        j["parent"] = w.parentRepo.string();
        j["repoName"] = w.repoName;
        j["branch"] = w.branch ? nlohmann::ordered_json(*w.branch) : nullptr;
        j["dirtyFiles"] = w.dirtyFiles;
        j["orphanCommits"] = w.orphanCommits;
        j["hasRemote"] = w.hasRemote;
        j["size"] = w.size ? nlohmann::ordered_json(*w.size) : nullptr;
        j["lastModified"] = w.lastModified ? nlohmann::ordered_json(isoTime(*w.lastModified)) : nullptr;
        list.push_back(std::move(j));
    }
    return dump(nlohmann::ordered_json{{"report", report}, {"worktrees", std::move(list)}});
}

std::string table(const std::vector<WorktreeInfo>& worktrees, const std::string& home) {
    if (worktrees.empty()) return "No worktrees derived from the repositories the agents worked in.\n";
    std::size_t nameWidth = 8, branchWidth = 6, measured = 0;
    int risky = 0;
    std::int64_t total = 0;
    for (const auto& w : worktrees) {
        nameWidth = std::max(nameWidth, w.repoName.size());
        branchWidth = std::max(branchWidth, w.branch.value_or("(detached)").size());
        if (w.isRisky()) ++risky;
        if (w.size) ++measured, total += *w.size;
    }
    std::string out = plural(static_cast<int>(worktrees.size()), "worktree", "worktrees") + ", " + std::to_string(risky)
                      + " at risk, " + Formatting::bytes(total);
    if (measured < worktrees.size()) out += " (measuring " + std::to_string(worktrees.size() - measured) + " more…)";
    out += "\n\n";
    out += "  " + padLeft("SIZE", 10) + "  " + padRight("WORKTREE", nameWidth) + "  " + padRight("BRANCH", branchWidth)
           + "  STATE\n";
    for (const auto& w : worktrees) {
        out += w.isRisky() ? "! " : "  ";
        out += padLeft(w.size ? Formatting::bytes(*w.size) : "…", 10) + "  " + padRight(w.repoName, nameWidth) + "  "
               + padRight(w.branch.value_or("(detached)"), branchWidth) + "  " + verdict(w) + "\n";
        out += "  " + std::string(12, ' ') + shortened(w.path.string(), home) + "  (of "
               + shortened(w.parentRepo.string(), home) + ")\n";
    }
    return out;
}

int run(bool json, std::ostream& out) {
    const std::string home = Paths::homeDirectory();
    const bool live = !json && &out == &std::cout && ::isatty(STDOUT_FILENO) == 1;
    std::size_t report = 0;
    std::size_t drawnLines = 0;
    std::vector<WorktreeInfo> last;
    WorktreeDiscovery::discover([&](const std::vector<WorktreeInfo>& worktrees) {
        if (json) {
            out << jsonReport(report++, worktrees) << "\n" << std::flush;
        } else if (live) {
            // Back to the top of the previous table, then draw over it.
            if (drawnLines > 0) out << "\033[" << drawnLines << "F\033[J";
            const std::string text = table(worktrees, home);
            drawnLines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
            out << text << std::flush;
        } else {
            last = worktrees;
        }
    });
    if (json) out << dump(nlohmann::ordered_json{{"done", true}}) << "\n";
    else if (!live) out << table(last, home);
    out.flush();
    return 0;
}

} // namespace lumabroom::WorktreesMode
