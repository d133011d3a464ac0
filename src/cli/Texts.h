#pragma once

#include <array>
#include <string_view>

// The keys of what lumabroom-scan shows people, each with its row in the English table. A key with
// "%n" takes a count and has plural forms; "%1" to "%9" take values.
namespace lumabroom::Texts {

inline constexpr std::string_view scanning = "正在扫描… %1/%2 条规则,%3";
inline constexpr std::string_view volumeUsage = "已用 %1 · 可用 %2 · 共 %3";
inline constexpr std::string_view nothingFound = "(未找到)";
inline constexpr std::string_view moreEntries = "… 另有 %n 项";
inline constexpr std::string_view scanTotal = "共 %1,%n 条规则,用时 %2 秒";

inline constexpr std::string_view dockerNoDaemon = "Docker 守护进程没有运行:找不到它的套接字,什么也没有问。";
inline constexpr std::string_view dockerUsage = "Docker 占用";
inline constexpr std::string_view dockerNoUsage = "(docker 没有给出占用)";
inline constexpr std::string_view dockerNoInventory = "(docker 没有给出清单)";
inline constexpr std::string_view dockerImages = "镜像 (%n)";
inline constexpr std::string_view dockerContainers = "容器 (%n)";
inline constexpr std::string_view dockerVolumes = "数据卷 (%n)";

inline constexpr std::string_view modelsNone = "%1 中没有 Ollama 模型。";
inline constexpr std::string_view modelsTotal = "共 %1,%n 个模型(共用的数据块在每个模型中都计入)";

inline constexpr std::string_view sessionsNone = "没有 %1 的会话文件。";
inline constexpr std::string_view sessionsLargest = "%1 最大的会话";
inline constexpr std::string_view sessionsTotal = "共 %1,%n 个文件";

inline constexpr std::string_view simulatorsNone = "没有找到模拟器设备。";
inline constexpr std::string_view simulatorNoName = "(没有名称)";

inline constexpr std::string_view worktreesNone = "代理工作过的仓库没有派生出工作树。";
inline constexpr std::string_view worktreesSummary = "%n 个工作树,%1 个有风险,%2";
inline constexpr std::string_view worktreesMeasuring = "(还有 %n 个在测量…)";
inline constexpr std::string_view columnSize = "大小";
inline constexpr std::string_view columnWorktree = "工作树";
inline constexpr std::string_view columnBranch = "分支";
inline constexpr std::string_view columnState = "状态";
inline constexpr std::string_view worktreeSafe = "可以放心删除";
inline constexpr std::string_view worktreeWouldLose = "将丢失 %1";
inline constexpr std::string_view worktreeDirtyFiles = "%n 个未提交的文件";
inline constexpr std::string_view worktreeOrphanCommits = "%n 个只在这里的提交";
inline constexpr std::string_view bothLosses = "%1,%2";
inline constexpr std::string_view worktreeNoRemote = "(没有远程仓库:别处没有副本)";
inline constexpr std::string_view worktreeDetached = "(不在分支上)";
inline constexpr std::string_view worktreeOfRepo = "(属于 %1)";

inline constexpr std::array all{
    scanning,        volumeUsage,      nothingFound,      moreEntries,        scanTotal,          dockerNoDaemon,
    dockerUsage,     dockerNoUsage,    dockerNoInventory, dockerImages,       dockerContainers,   dockerVolumes,
    modelsNone,      modelsTotal,      sessionsNone,      sessionsLargest,    sessionsTotal,      simulatorsNone,
    simulatorNoName, worktreesNone,    worktreesSummary,  worktreesMeasuring, columnSize,         columnWorktree,
    columnBranch,    columnState,      worktreeSafe,      worktreeWouldLose,  worktreeDirtyFiles, worktreeOrphanCommits,
    bothLosses,      worktreeNoRemote, worktreeDetached,  worktreeOfRepo,
};

} // namespace lumabroom::Texts
