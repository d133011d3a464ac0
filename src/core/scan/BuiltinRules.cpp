#include "scan/BuiltinRules.h"

#include "host/Platform.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumabroom {

PathTable runningPathTable() { return Platform::isMacOS() ? PathTable::macOS : PathTable::linuxOS; }

std::string_view rawValue(PathTable table) {
    switch (table) {
    case PathTable::macOS: return "macos";
    case PathTable::linuxOS: return "linux";
    }
    return {};
}

namespace {

using Patterns = std::vector<std::string>;

struct Row {
    std::string_view id;
    std::string_view nameKey;
    std::string_view noteKey;
    SafetyLevel safety;
    Patterns macOS;
    // Absent where the tool keeps its data in the same place on Linux, or does not exist there
    // (then the macOS places simply find nothing).
    std::optional<Patterns> linuxOS;
    bool exclusiveSizeOnly = false;
    // Where the note of the macOS places would mislead on Linux.
    std::string_view linuxNoteKey = {};
};

constexpr auto safe = SafetyLevel::safe;
constexpr auto caution = SafetyLevel::caution;
constexpr auto reportOnly = SafetyLevel::reportOnly;

constexpr std::string_view browserCacheNote =
    "网页与代码缓存,删后自动重建,不含 Cookie/登录态;浏览器开着时个别文件可能占用失败,建议先退出";

// The rows are laid out by hand, one rule to a group of lines.
// clang-format off
std::vector<Row> xcodeRows() {
    return {
        {"xcode.derived-data", "DerivedData 编译产物", "各项目的中间编译产物与索引,重新编译即可再生", safe,
         {"~/Library/Developer/Xcode/DerivedData/*"}, std::nullopt},
        {"xcode.device-support", "设备支持文件 (DeviceSupport)", "按系统版本缓存的调试符号,连接设备时会自动重新生成",
         safe,
         {"~/Library/Developer/Xcode/iOS DeviceSupport/*", "~/Library/Developer/Xcode/watchOS DeviceSupport/*",
          "~/Library/Developer/Xcode/tvOS DeviceSupport/*"},
         std::nullopt},
        {"xcode.archives", "Archives 打包归档", "包含已发布版本的 dSYM,删了将无法符号化对应版本的崩溃日志", caution,
         {"~/Library/Developer/Xcode/Archives/*/*"}, std::nullopt},
        {"xcode.simulator-caches", "模拟器缓存", "模拟器 dyld 缓存,自动重建", safe,
         {"~/Library/Developer/CoreSimulator/Caches"}, std::nullopt},
        {"xcode.xcode-caches", "Xcode 自身缓存", "Xcode 的下载与索引缓存", safe, {"~/Library/Caches/com.apple.dt.Xcode"},
         std::nullopt},
        {"xcode.previews", "SwiftUI 预览缓存", "SwiftUI Canvas 预览用的模拟器数据,按预览设备列出", safe,
         {"~/Library/Developer/Xcode/UserData/Previews/*/*"}, std::nullopt},
        {"xcode.xctest-devices", "XCTest 测试设备", "跑 UI 测试时克隆出的临时模拟器", safe,
         {"~/Library/Developer/XCTestDevices/*"}, std::nullopt},
        {"xcode.doc-cache", "文档缓存", "Xcode 文档索引缓存", safe, {"~/Library/Developer/Xcode/DocumentationCache"},
         std::nullopt},
        {"xcode.simulator-devices", "模拟器设备数据",
         "按设备列出,行尾垃圾桶单台删除(simctl delete);下方命令一键清理全部失效设备", reportOnly,
         // Raw, so that no compiler reads "??-" as a trigraph.
         {R"(~/Library/Developer/CoreSimulator/Devices/????????-????-????-????-????????????)"}, std::nullopt},
    };
}

std::vector<Row> packageManagerRows() {
    return {
        {"pm.swiftpm", "Swift Package Manager", "SwiftPM 依赖仓库缓存,重新解析依赖时再下载", safe,
         {"~/Library/Caches/org.swift.swiftpm"}, Patterns{"$XDG_CACHE_HOME/org.swift.swiftpm"}},
        // CocoaPods puts its cache below ~/Library/Caches on every system.
        {"pm.cocoapods", "CocoaPods", "Pods 下载缓存,pod install 时按需重新下载", safe, {"~/Library/Caches/CocoaPods"},
         std::nullopt},
        {"pm.carthage", "Carthage", "Carthage 编译与下载缓存", safe, {"~/Library/Caches/org.carthage.CarthageKit"},
         std::nullopt},
        {"pm.homebrew", "Homebrew", "已下载的安装包缓存(按包列出),等价于 brew cleanup", safe,
         {"~/Library/Caches/Homebrew/*"}, Patterns{"$XDG_CACHE_HOME/Homebrew/*"}},
        {"pm.npm", "npm", "npm 内容寻址缓存,安装时按需重新下载", safe, {"~/.npm/_cacache"}, std::nullopt},
        {"pm.yarn", "Yarn", "Yarn 离线镜像缓存", safe, {"~/Library/Caches/Yarn", "~/.yarn/berry/cache"},
         Patterns{"$XDG_CACHE_HOME/yarn", "~/.yarn/berry/cache"}},
        // The second place is the store of older pnpm versions.
        {"pm.pnpm", "pnpm store",
         "只统计删除后真正释放的独占部分(与项目硬链接共享的不计);现用版本建议 pnpm store prune", caution,
         {"~/Library/pnpm/store/*", "~/.pnpm-store/*"}, Patterns{"$XDG_DATA_HOME/pnpm/store/*", "~/.pnpm-store/*"},
         true},
        {"pm.bun", "Bun", "Bun 安装缓存", safe, {"~/.bun/install/cache"}, std::nullopt},
        {"pm.pip", "pip", "pip 下载缓存", safe, {"~/Library/Caches/pip"}, Patterns{"$XDG_CACHE_HOME/pip"}},
        // uv also uses ~/.cache on macOS; on Linux that is its only place.
        {"pm.uv", "uv", "uv 的 wheel 与源码缓存", safe, {"~/Library/Caches/uv", "~/.cache/uv"},
         Patterns{"$XDG_CACHE_HOME/uv"}},
        {"pm.cargo", "Cargo (Rust)", "已下载的 crate 与解压源码,构建时重新下载", safe,
         {"~/.cargo/registry/cache", "~/.cargo/registry/src"}, std::nullopt},
        {"pm.go-build", "Go 构建缓存", "go build 增量缓存,等价于 go clean -cache", safe, {"~/Library/Caches/go-build"},
         Patterns{"$XDG_CACHE_HOME/go-build"}},
        {"pm.gradle", "Gradle", "依赖与构建缓存,删除后首次构建会明显变慢", caution, {"~/.gradle/caches/*"},
         std::nullopt},
        {"pm.maven", "Maven", "本地仓库,删除后所有依赖需重新下载", caution, {"~/.m2/repository"}, std::nullopt},
    };
}

std::vector<Row> toolRows() {
    return {
        {"tool.docker", "Docker Desktop 虚拟磁盘", "请用 `docker system prune` 清理镜像/容器,直接删会丢失全部数据",
         reportOnly, {"~/Library/Containers/com.docker.docker/Data/vms"}, Patterns{"~/.docker/desktop/vms"}},
        {"tool.orbstack", "OrbStack 虚拟磁盘",
         "Docker/Linux 虚拟机磁盘镜像,请用 `docker system prune` 或在 OrbStack 里删镜像/容器来瘦身", reportOnly,
         {"~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/*.raw",
          "~/Library/Group Containers/HUAQ24HBR6.dev.orbstack/data/swap.img", "~/.orbstack/data"},
         std::nullopt},
        // The models of a user's own server; a system service keeps its store in the service
        // account's home, which is not this user's to clean.
        {"tool.ollama", "Ollama 模型", "本地大模型权重,按模型列出,点行尾垃圾桶单个删除(ollama rm)", reportOnly,
         {"~/.ollama/models"}, std::nullopt},
    };
}

std::vector<Row> runtimeDownloadRows() {
    return {
        {"tool.playwright", "Playwright 浏览器", "测试用浏览器二进制(按内核版本列出),npx playwright install 可重装",
         safe, {"~/Library/Caches/ms-playwright/*"}, Patterns{"$XDG_CACHE_HOME/ms-playwright/*"}},
        // Puppeteer uses ~/.cache everywhere and ignores XDG_CACHE_HOME.
        {"tool.puppeteer", "Puppeteer 浏览器", "Puppeteer 下载的 Chromium", safe, {"~/.cache/puppeteer/*"},
         std::nullopt},
        {"tool.electron", "Electron", "Electron 预编译包缓存", safe, {"~/Library/Caches/electron"},
         Patterns{"$XDG_CACHE_HOME/electron"}},
        {"rt.chrome-cache", "Chrome 缓存", browserCacheNote, safe, {"~/Library/Caches/Google/Chrome"},
         Patterns{"$XDG_CACHE_HOME/google-chrome"}},
        {"rt.arc-cache", "Arc 缓存", browserCacheNote, safe, {"~/Library/Caches/Arc"}, std::nullopt},
        {"rt.edge-cache", "Edge 缓存", browserCacheNote, safe, {"~/Library/Caches/Microsoft Edge"},
         Patterns{"$XDG_CACHE_HOME/microsoft-edge"}},
        {"rt.firefox-cache", "Firefox 缓存", browserCacheNote, safe, {"~/Library/Caches/Firefox"},
         Patterns{"$XDG_CACHE_HOME/mozilla/firefox"}},
    };
}

std::vector<Row> codeRows() {
    return {
        {"tool.codex-worktrees", "Git Worktrees",
         "从主仓派生的工作副本,按仓分组;删除走 git worktree remove,不动主仓", reportOnly, {}, std::nullopt},
        {"code.claude-sessions", "Claude Code 会话记录",
         "按项目列出的对话历史(resume 用);逐项删除只清会话文件,保留 memory/ 记忆。删后 worktree 扫描会少一路发现种子",
         reportOnly, {}, std::nullopt},
        {"code.codex-sessions", "Codex 会话记录",
         "按月列出的 Codex 对话历史;删除后不能 resume 对应会话,resume 列表可能残留失效条目", caution,
         {"~/.codex/sessions/*/*"}, std::nullopt},
    };
}

std::vector<Row> systemRows() {
    return {
        // Linux has no per-user cache folder beside the temporary one.
        {"sys.tmp-folders", "系统临时文件",
         "/private/var/folders 下当前用户的临时与缓存目录;运行中的 App 可能占用(失败会提示),重启后系统也会自行清理",
         caution, {"$TMPDIR/*", "$DARWIN_CACHE/*"}, Patterns{"$TMPDIR/*"}, false,
         "TMPDIR(未设置时为 /tmp)下当前用户的临时文件与目录;含套接字或管道、正被运行中的进程使用的条目不列出"},
        {"sys.downloads-installers", "下载目录安装包",
         "Downloads 里的 dmg/pkg/xip/iso 安装镜像,装完通常不再需要;建议用「移到废纸篓」", caution,
         {"~/Downloads/*.dmg", "~/Downloads/*.pkg", "~/Downloads/*.xip", "~/Downloads/*.iso"}, std::nullopt},
    };
}
// clang-format on

std::vector<CleanRule> rules(std::span<const Row> rows, Category category, PathTable table) {
    std::vector<CleanRule> result;
    result.reserve(rows.size());
    for (const Row& row : rows) {
        const Patterns& paths = table == PathTable::linuxOS && row.linuxOS ? *row.linuxOS : row.macOS;
        result.push_back(CleanRule{
            .id = std::string(row.id),
            .nameKey = std::string(row.nameKey),
            .noteKey =
                std::string(table == PathTable::linuxOS && !row.linuxNoteKey.empty() ? row.linuxNoteKey : row.noteKey),
            .category = category,
            .paths = paths,
            .safety = row.safety,
            .exclusiveSizeOnly = row.exclusiveSizeOnly,
        });
    }
    return result;
}

struct Catalogue {
    // Indexed by Category, whose order is the catalogue's.
    std::array<std::vector<CleanRule>, allCategories.size()> groups;
    std::vector<CleanRule> all;
};

Catalogue build(PathTable table) {
    const std::array<std::vector<Row>, allCategories.size()> rows{
        xcodeRows(), packageManagerRows(), toolRows(), runtimeDownloadRows(), codeRows(), systemRows()};
    Catalogue catalogue;
    for (std::size_t i = 0; i < allCategories.size(); ++i) {
        catalogue.groups[i] = rules(rows[i], allCategories[i], table);
        catalogue.all.insert(catalogue.all.end(), catalogue.groups[i].begin(), catalogue.groups[i].end());
    }
    return catalogue;
}

const Catalogue& catalogue(PathTable table) {
    if (table == PathTable::macOS) {
        static const Catalogue macOS = build(PathTable::macOS);
        return macOS;
    }
    static const Catalogue linuxOS = build(PathTable::linuxOS);
    return linuxOS;
}

const std::vector<CleanRule>& group(Category category, PathTable table) {
    return catalogue(table).groups[static_cast<std::size_t>(category)];
}

} // namespace

namespace BuiltinRules {

const std::vector<CleanRule>& all(PathTable table) { return catalogue(table).all; }
const std::vector<CleanRule>& xcode(PathTable table) { return group(Category::xcode, table); }
const std::vector<CleanRule>& packageManagers(PathTable table) { return group(Category::packageManager, table); }
const std::vector<CleanRule>& tools(PathTable table) { return group(Category::tool, table); }
const std::vector<CleanRule>& runtimeDownloads(PathTable table) { return group(Category::runtimeDownloads, table); }
const std::vector<CleanRule>& code(PathTable table) { return group(Category::code, table); }
const std::vector<CleanRule>& system(PathTable table) { return group(Category::system, table); }

const CleanRule* find(std::string_view id, PathTable table) {
    for (const CleanRule& rule : all(table)) {
        if (rule.id == id) return &rule;
    }
    return nullptr;
}

} // namespace BuiltinRules

} // namespace lumabroom
