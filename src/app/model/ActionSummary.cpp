#include "ActionSummary.h"

#include "AppText.h"
#include "text/Formatting.h"

namespace lumabroom {

namespace {

std::string sentence(const ActionSummary::Cleaned& c) {
    std::string out = AppText::formatted("已清理 %1", {Formatting::bytes(c.bytes)});
    if (c.toTrash) out += AppText::text(",清空废纸篓后释放");
    if (c.failures >= 1) out += AppText::counted(",%n 项失败", c.failures);
    return out;
}
std::string sentence(const ActionSummary::Restored& c) {
    std::string out = AppText::formatted("已恢复 %1", {Formatting::bytes(c.bytes)});
    if (c.failures >= 1) out += AppText::counted(",%n 项未能恢复", c.failures);
    return out;
}
std::string sentence(const ActionSummary::MaintenanceRan& c) { return AppText::formatted("已执行 %1", {c.command}); }
std::string sentence(const ActionSummary::MaintenanceFailed& c) {
    return AppText::formatted("%1 执行失败(命令不存在或报错)", {c.command});
}
std::string sentence(const ActionSummary::SimulatorDeleted& c) {
    return AppText::formatted("已删除模拟器 %1,释放 %2", {c.name, Formatting::bytes(c.bytes)});
}
std::string sentence(const ActionSummary::SimulatorDeleteFailed& c) {
    return AppText::formatted("删除 %1 失败(可能正在运行,请先关闭模拟器)", {c.name});
}
std::string sentence(const ActionSummary::OllamaModelDeleted& c) {
    return AppText::formatted("已删除模型 %1,释放 %2", {c.name, Formatting::bytes(c.bytes)});
}
std::string sentence(const ActionSummary::OllamaModelDeleteFailed& c) {
    return AppText::formatted("删除 %1 失败:Ollama 未在运行或找不到 CLI", {c.name});
}
std::string sentence(const ActionSummary::ClaudeSessionsDeleteFailed& c) {
    return AppText::formatted("清理 %1 的会话记录失败(部分文件可能被占用)", {c.name});
}
std::string sentence(const ActionSummary::WorktreeRemoved& c) {
    return AppText::formatted("已删除 worktree %1,释放 %2", {c.name, Formatting::bytes(c.bytes)});
}
std::string sentence(const ActionSummary::WorktreeRemoveFailed& c) {
    return AppText::formatted("删除 %1 失败(git worktree remove 报错)", {c.name});
}
std::string sentence(const ActionSummary::DockerItemDeleted& c) {
    return AppText::formatted("已删除 %1,释放 %2", {c.name, Formatting::bytes(c.bytes)});
}
std::string sentence(const ActionSummary::DockerItemDeleteFailed& c) {
    return AppText::formatted("删除 %1 失败(可能正在使用)", {c.name});
}
std::string sentence(const ActionSummary::DockerPruned& c) {
    return AppText::formatted("Docker %1已清理,释放 %2", {title(c.target), c.freed});
}
std::string sentence(const ActionSummary::DockerPruneFailed& c) {
    return AppText::formatted("清理%1失败:daemon 未运行或命令出错", {title(c.target)});
}

} // namespace

std::string ActionSummary::text() const {
    return std::visit([](const auto& c) { return sentence(c); }, value);
}

} // namespace lumabroom
