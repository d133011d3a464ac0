#include "clean/MaintenanceCommands.h"

#include "clean/CommandRunner.h"
#include "host/ToolPaths.h"
#include "text/Localization.h"

#include <array>

namespace lumabroom::MaintenanceCommands {

namespace {
struct Row {
    const char* id;
    const char* command;
    const char* detailKey;
};

constexpr std::array<Row, 4> kRows{{
    {"pm.pnpm", "pnpm store prune", "删除 store 中不再被任何项目引用的包(官方推荐,只作用于现用版本)"},
    {"pm.homebrew", "brew cleanup --prune=all", "清理所有旧版本安装包与过期下载"},
    {"pm.go-build", "go clean -cache", "官方方式清空 Go 构建缓存"},
    {"xcode.simulator-devices", "xcrun simctl delete unavailable",
     "删除已失效/系统版本过时的模拟器设备,现役模拟器不受影响"},
}};
} // namespace

const std::map<std::string, MaintenanceCommand, std::less<>>& registry() {
    static const auto commands = [] {
        std::map<std::string, MaintenanceCommand, std::less<>> built;
        for (const Row& row : kRows)
            built.emplace(row.id, MaintenanceCommand{row.id, row.command, Localization::text(row.detailKey)});
        return built;
    }();
    return commands;
}

std::vector<std::string_view> detailKeys() {
    std::vector<std::string_view> keys;
    for (const Row& row : kRows) keys.emplace_back(row.detailKey);
    return keys;
}

std::optional<MaintenanceCommand> command(std::string_view ruleId) {
    const auto& commands = registry();
    if (auto it = commands.find(ruleId); it != commands.end()) return it->second;
    return std::nullopt;
}

bool run(const MaintenanceCommand& command) {
    auto shell = CommandRunner::findBinary(ToolPaths::candidates(Tool::shell));
    if (!shell) return false;
    return CommandRunner::run(*shell, {"-l", "-c", command.command}, kTimeoutSeconds).has_value();
}

} // namespace lumabroom::MaintenanceCommands
