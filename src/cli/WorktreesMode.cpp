#include "WorktreesMode.h"

#include "Output.h"
#include "Texts.h"

#include "agents/WorktreeDiscovery.h"
#include "host/Paths.h"
#include "text/Formatting.h"
#include "text/Localization.h"
#include "text/Strings.h"

#include <algorithm>
#include <iostream>
#include <unistd.h>

namespace lumabroom::WorktreesMode {

namespace {
// What removing the worktree would lose, in the words of the confirmation.
std::string verdict(const WorktreeInfo& w) {
    if (!w.isRisky()) return Localization::text(Texts::worktreeSafe);
    std::vector<std::string> lost;
    if (w.dirtyFiles > 0) lost.push_back(Localization::counted(Texts::worktreeDirtyFiles, w.dirtyFiles));
    if (w.orphanCommits > 0) lost.push_back(Localization::counted(Texts::worktreeOrphanCommits, w.orphanCommits));
    std::string text = Localization::formatted(
        Texts::worktreeWouldLose,
        {lost.size() == 1 ? lost.front() : Localization::formatted(Texts::bothLosses, {lost[0], lost[1]})});
    if (!w.hasRemote) text.append(" ").append(Localization::text(Texts::worktreeNoRemote));
    return text;
}

std::string branch(const WorktreeInfo& w) {
    return w.branch ? Strings::quotedForTerminal(*w.branch) : Localization::text(Texts::worktreeDetached);
}

std::string summary(const std::vector<WorktreeInfo>& worktrees) {
    std::int64_t risky = 0, measured = 0, total = 0;
    for (const auto& w : worktrees) {
        if (w.isRisky()) ++risky;
        if (w.size) ++measured, total += *w.size;
    }
    const auto count = static_cast<std::int64_t>(worktrees.size());
    std::string text =
        Localization::counted(Texts::worktreesSummary, count, {std::to_string(risky), Formatting::bytes(total)});
    if (measured < count) text.append(" ").append(Localization::counted(Texts::worktreesMeasuring, count - measured));
    return text + "\n\n";
}
} // namespace

Output::Json jsonReport(std::size_t report, const std::vector<WorktreeInfo>& worktrees) {
    auto list = Output::Json::array();
    for (const auto& w : worktrees) {
        Output::Json j;
        j["path"] = w.path.string();
        j["parent"] = w.parentRepo.string();
        j["repoName"] = w.repoName;
        j["branch"] = Output::orNull(w.branch);
        j["dirtyFiles"] = w.dirtyFiles;
        j["orphanCommits"] = w.orphanCommits;
        j["hasRemote"] = w.hasRemote;
        j["size"] = Output::orNull(w.size);
        j["lastModified"] = w.lastModified ? Output::Json(Formatting::utcTimestamp(*w.lastModified)) : nullptr;
        list.push_back(std::move(j));
    }
    return Output::Json{{"report", report}, {"worktrees", std::move(list)}};
}

std::string table(const std::vector<WorktreeInfo>& worktrees, const std::string& home) {
    if (worktrees.empty()) return Localization::text(Texts::worktreesNone) + "\n";
    std::vector<Output::Row> rows;
    for (const auto& w : worktrees) {
        rows.push_back(
            {{w.size ? Formatting::bytes(*w.size) : "…", Strings::quotedForTerminal(w.repoName), branch(w), verdict(w)},
             w.isRisky() ? "! " : "  "});
        rows.push_back(
            {{"", Output::displayPath(w.path, home) + "  "
                      + Localization::formatted(Texts::worktreeOfRepo, {Output::displayPath(w.parentRepo, home)})}});
    }
    const std::vector<Output::Column> columns{Output::sizeColumn(Localization::text(Texts::columnSize)),
                                              {Localization::text(Texts::columnWorktree)},
                                              {Localization::text(Texts::columnBranch)},
                                              {Localization::text(Texts::columnState)}};
    return summary(worktrees) + Output::table(columns, rows);
}

int run(bool json, std::ostream& out) {
    const std::string home = Paths::homeDirectory();
    const bool live = !json && &out == &std::cout && ::isatty(STDOUT_FILENO) == 1;
    std::size_t report = 0;
    std::size_t drawnLines = 0;
    std::vector<WorktreeInfo> last;
    WorktreeDiscovery::discover([&](const std::vector<WorktreeInfo>& worktrees) {
        if (json) {
            Output::writeJsonLine(out, jsonReport(report++, worktrees));
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
    if (json) Output::writeJsonLine(out, Output::Json{{"done", true}});
    else if (!live) out << table(last, home);
    out.flush();
    return 0;
}

} // namespace lumabroom::WorktreesMode
