#include "DetailValues.h"

#include "DetailText.h"

#include "host/Paths.h"
#include "text/Formatting.h"

#include <algorithm>
#include <map>

namespace lumabroom::DetailValues {

bool hasDockerBreakdown(const RuleScanResult& result) {
    return std::ranges::any_of(result.entries,
                               [](const ScanEntry& e) { return e.url.string().find("/docker/") != std::string::npos; });
}

std::vector<ScanEntry> visibleEntries(const RuleScanResult& result) {
    if (result.rule.id != "sys.tmp-folders" || result.entries.size() <= kTmpFolderListLimit) return result.entries;
    std::vector<ScanEntry> large;
    std::ranges::copy_if(result.entries, std::back_inserter(large),
                         [](const ScanEntry& e) { return e.size >= kTmpFolderMinBytes; });
    return large;
}

std::optional<std::string> embeddedCommand(std::string_view note) {
    std::vector<std::string_view> pieces;
    for (std::size_t start = 0; start <= note.size();) {
        const std::size_t tick = std::min(note.find('`', start), note.size());
        if (tick > start) pieces.push_back(note.substr(start, tick - start));
        start = tick + 1;
    }
    if (pieces.size() < 2) return std::nullopt;
    return std::string(pieces[1]);
}

std::string entryDeleteMessageKey(std::string_view ruleID) {
    if (ruleID == "tool.ollama") return "将执行 ollama rm,需要时须重新下载模型。";
    if (ruleID == "code.claude-sessions")
        return "将该项目的会话 jsonl 移到废纸篓;memory/ 记忆保留。删除后无法在 Claude Code 里 resume 这些对话。";
    return "将执行 xcrun simctl delete,删除该模拟器及其全部数据(App、设置、照片等)。";
}

bool rowsHaveOwnDelete(std::string_view ruleID) {
    return ruleID == "tool.ollama" || ruleID == "xcode.simulator-devices" || ruleID == "code.claude-sessions";
}

std::optional<std::string> reclaimHint(const RuleScanResult& result, DockerPruneTarget target) {
    for (const ScanEntry& entry : result.entries) {
        if (!entry.label) continue;
        const auto* usage = std::get_if<DockerUsageLabel>(&entry.label->value);
        if (usage && usage->kind == usageKind(target) && usage->reclaimable)
            return DetailText::formatted("可回收 %1", {*usage->reclaimable}).toStdString();
    }
    return std::nullopt;
}

std::int64_t worktreeTotal(std::span<const WorktreeInfo> worktrees) {
    std::int64_t total = 0;
    for (const WorktreeInfo& w : worktrees) total += w.size.value_or(0);
    return total;
}

std::vector<WorktreeGroup> worktreeGroups(std::span<const WorktreeInfo> worktrees) {
    std::map<std::string, std::vector<WorktreeInfo>> byRepo;
    for (const WorktreeInfo& w : worktrees) byRepo[w.parentRepo.string()].push_back(w);
    std::vector<WorktreeGroup> groups;
    for (auto& [repo, items] : byRepo) {
        std::ranges::stable_sort(items, std::greater{}, [](const WorktreeInfo& w) { return w.size.value_or(-1); });
        groups.push_back({repo, std::move(items)});
    }
    std::ranges::stable_sort(groups, std::greater{}, [](const WorktreeGroup& g) { return worktreeTotal(g.items); });
    return groups;
}

std::int64_t largestWorktree(std::span<const WorktreeInfo> worktrees) {
    std::int64_t largest = 0;
    for (const WorktreeInfo& w : worktrees) largest = std::max(largest, w.size.value_or(0));
    return largest;
}

std::string worktreeDeleteWarning(const WorktreeInfo& worktree) {
    std::vector<std::string> lost;
    if (worktree.dirtyFiles > 0)
        lost.push_back(DetailText::counted("%n 个改了还没提交的文件", worktree.dirtyFiles).toStdString());
    if (worktree.orphanCommits > 0)
        lost.push_back(
            DetailText::counted("%n 个只存在于这里的提交(不在任何分支上)", worktree.orphanCommits).toStdString());
    if (lost.empty())
        return DetailText::text("没有没提交的改动,提交也都在分支上。删掉这个工作副本不会丢任何东西——分支本身不会被删。")
            .toStdString();
    std::string list;
    for (std::size_t i = 0; i < lost.size(); ++i) {
        if (i > 0) list += DetailText::text("、").toStdString();
        list += lost[i];
    }
    std::string warning = DetailText::formatted("删掉之后这些东西找不回来:%1。", {list}).toStdString();
    if (!worktree.hasRemote) warning += DetailText::text("\n这个仓库没有配远端,也就没有别处的备份。").toStdString();
    return warning;
}

std::string withTilde(const std::string& path) { return Formatting::homeShortened(path, Paths::homeDirectory()); }

double fraction(std::int64_t size, std::int64_t maxSize) {
    if (size < 1 || maxSize < 1) return 0;
    return std::min(1.0, static_cast<double>(size) / static_cast<double>(maxSize));
}

} // namespace lumabroom::DetailValues
