<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>CleanerCore</name>
    <message>
        <extracomment>xcode.derived-data: name</extracomment>
        <source>DerivedData 编译产物</source>
        <translation>DerivedData Build Products</translation>
    </message>
    <message>
        <extracomment>xcode.derived-data: note</extracomment>
        <source>各项目的中间编译产物与索引,重新编译即可再生</source>
        <translation>Intermediate build products and indexes of each project; a rebuild regenerates them</translation>
    </message>
    <message>
        <extracomment>xcode.device-support: name</extracomment>
        <source>设备支持文件 (DeviceSupport)</source>
        <translation>Device Support Files (DeviceSupport)</translation>
    </message>
    <message>
        <extracomment>xcode.device-support: note</extracomment>
        <source>按系统版本缓存的调试符号,连接设备时会自动重新生成</source>
        <translation>Debug symbols cached per OS version; they are regenerated when a device connects</translation>
    </message>
    <message>
        <extracomment>xcode.archives: name</extracomment>
        <source>Archives 打包归档</source>
        <translation>Archives</translation>
    </message>
    <message>
        <extracomment>xcode.archives: note</extracomment>
        <source>包含已发布版本的 dSYM,删了将无法符号化对应版本的崩溃日志</source>
        <translation>Hold the dSYMs of released versions; once deleted, crash logs of those versions can no longer be symbolicated</translation>
    </message>
    <message>
        <extracomment>xcode.simulator-caches: name</extracomment>
        <source>模拟器缓存</source>
        <translation>Simulator Caches</translation>
    </message>
    <message>
        <extracomment>xcode.simulator-caches: note</extracomment>
        <source>模拟器 dyld 缓存,自动重建</source>
        <translation>Simulator dyld cache, rebuilt automatically</translation>
    </message>
    <message>
        <extracomment>xcode.xcode-caches: name</extracomment>
        <source>Xcode 自身缓存</source>
        <translation>Xcode Caches</translation>
    </message>
    <message>
        <extracomment>xcode.xcode-caches: note</extracomment>
        <source>Xcode 的下载与索引缓存</source>
        <translation>Xcode's download and index caches</translation>
    </message>
    <message>
        <extracomment>xcode.previews: name</extracomment>
        <source>SwiftUI 预览缓存</source>
        <translation>SwiftUI Preview Caches</translation>
    </message>
    <message>
        <extracomment>xcode.previews: note</extracomment>
        <source>SwiftUI Canvas 预览用的模拟器数据,按预览设备列出</source>
        <translation>Simulator data of SwiftUI Canvas previews, listed per preview device</translation>
    </message>
    <message>
        <extracomment>xcode.xctest-devices: name</extracomment>
        <source>XCTest 测试设备</source>
        <translation>XCTest Devices</translation>
    </message>
    <message>
        <extracomment>xcode.xctest-devices: note</extracomment>
        <source>跑 UI 测试时克隆出的临时模拟器</source>
        <translation>Temporary simulators cloned for UI test runs</translation>
    </message>
    <message>
        <extracomment>xcode.doc-cache: name</extracomment>
        <source>文档缓存</source>
        <translation>Documentation Cache</translation>
    </message>
    <message>
        <extracomment>xcode.doc-cache: note</extracomment>
        <source>Xcode 文档索引缓存</source>
        <translation>Xcode documentation index cache</translation>
    </message>
    <message>
        <extracomment>xcode.simulator-devices: name</extracomment>
        <source>模拟器设备数据</source>
        <translation>Simulator Device Data</translation>
    </message>
    <message>
        <extracomment>xcode.simulator-devices: note</extracomment>
        <source>按设备列出,行尾垃圾桶单台删除(simctl delete);下方命令一键清理全部失效设备</source>
        <translation>Listed per device; the bin at the end of a row deletes one device (simctl delete); the command below removes all unavailable devices at once</translation>
    </message>
    <message>
        <extracomment>pm.swiftpm: name</extracomment>
        <source>Swift Package Manager</source>
        <translation>Swift Package Manager</translation>
    </message>
    <message>
        <extracomment>pm.swiftpm: note</extracomment>
        <source>SwiftPM 依赖仓库缓存,重新解析依赖时再下载</source>
        <translation>SwiftPM dependency repository cache, downloaded again when dependencies are resolved</translation>
    </message>
    <message>
        <extracomment>pm.cocoapods: name</extracomment>
        <source>CocoaPods</source>
        <translation>CocoaPods</translation>
    </message>
    <message>
        <extracomment>pm.cocoapods: note</extracomment>
        <source>Pods 下载缓存,pod install 时按需重新下载</source>
        <translation>Pods download cache, downloaded again as needed on pod install</translation>
    </message>
    <message>
        <extracomment>pm.carthage: name</extracomment>
        <source>Carthage</source>
        <translation>Carthage</translation>
    </message>
    <message>
        <extracomment>pm.carthage: note</extracomment>
        <source>Carthage 编译与下载缓存</source>
        <translation>Carthage build and download cache</translation>
    </message>
    <message>
        <extracomment>pm.homebrew: name</extracomment>
        <source>Homebrew</source>
        <translation>Homebrew</translation>
    </message>
    <message>
        <extracomment>pm.homebrew: note</extracomment>
        <source>已下载的安装包缓存(按包列出),等价于 brew cleanup</source>
        <translation>Cache of downloaded packages (listed per package); the same as brew cleanup</translation>
    </message>
    <message>
        <extracomment>pm.npm: name</extracomment>
        <source>npm</source>
        <translation>npm</translation>
    </message>
    <message>
        <extracomment>pm.npm: note</extracomment>
        <source>npm 内容寻址缓存,安装时按需重新下载</source>
        <translation>npm content-addressable cache, downloaded again as needed on install</translation>
    </message>
    <message>
        <extracomment>pm.yarn: name</extracomment>
        <source>Yarn</source>
        <translation>Yarn</translation>
    </message>
    <message>
        <extracomment>pm.yarn: note</extracomment>
        <source>Yarn 离线镜像缓存</source>
        <translation>Yarn offline mirror cache</translation>
    </message>
    <message>
        <extracomment>pm.pnpm: name</extracomment>
        <source>pnpm store</source>
        <translation>pnpm store</translation>
    </message>
    <message>
        <extracomment>pm.pnpm: note</extracomment>
        <source>只统计删除后真正释放的独占部分(与项目硬链接共享的不计);现用版本建议 pnpm store prune</source>
        <translation>Counts only the exclusive part that deletion really frees (files hard-linked into projects do not count); for the version in use, pnpm store prune is advised</translation>
    </message>
    <message>
        <extracomment>pm.bun: name</extracomment>
        <source>Bun</source>
        <translation>Bun</translation>
    </message>
    <message>
        <extracomment>pm.bun: note</extracomment>
        <source>Bun 安装缓存</source>
        <translation>Bun install cache</translation>
    </message>
    <message>
        <extracomment>pm.pip: name</extracomment>
        <source>pip</source>
        <translation>pip</translation>
    </message>
    <message>
        <extracomment>pm.pip: note</extracomment>
        <source>pip 下载缓存</source>
        <translation>pip download cache</translation>
    </message>
    <message>
        <extracomment>pm.uv: name</extracomment>
        <source>uv</source>
        <translation>uv</translation>
    </message>
    <message>
        <extracomment>pm.uv: note</extracomment>
        <source>uv 的 wheel 与源码缓存</source>
        <translation>uv's wheel and source cache</translation>
    </message>
    <message>
        <extracomment>pm.cargo: name</extracomment>
        <source>Cargo (Rust)</source>
        <translation>Cargo (Rust)</translation>
    </message>
    <message>
        <extracomment>pm.cargo: note</extracomment>
        <source>已下载的 crate 与解压源码,构建时重新下载</source>
        <translation>Downloaded crates and unpacked sources, downloaded again on the next build</translation>
    </message>
    <message>
        <extracomment>pm.go-build: name</extracomment>
        <source>Go 构建缓存</source>
        <translation>Go Build Cache</translation>
    </message>
    <message>
        <extracomment>pm.go-build: note</extracomment>
        <source>go build 增量缓存,等价于 go clean -cache</source>
        <translation>go build incremental cache; the same as go clean -cache</translation>
    </message>
    <message>
        <extracomment>pm.gradle: name</extracomment>
        <source>Gradle</source>
        <translation>Gradle</translation>
    </message>
    <message>
        <extracomment>pm.gradle: note</extracomment>
        <source>依赖与构建缓存,删除后首次构建会明显变慢</source>
        <translation>Dependency and build caches; the first build after deleting them is noticeably slower</translation>
    </message>
    <message>
        <extracomment>pm.maven: name</extracomment>
        <source>Maven</source>
        <translation>Maven</translation>
    </message>
    <message>
        <extracomment>pm.maven: note</extracomment>
        <source>本地仓库,删除后所有依赖需重新下载</source>
        <translation>Local repository; after deleting it every dependency has to be downloaded again</translation>
    </message>
    <message>
        <extracomment>tool.docker: name</extracomment>
        <source>Docker Desktop 虚拟磁盘</source>
        <translation>Docker Desktop Virtual Disk</translation>
    </message>
    <message>
        <extracomment>tool.docker: note</extracomment>
        <source>请用 `docker system prune` 清理镜像/容器,直接删会丢失全部数据</source>
        <translation>Use `docker system prune` to clean images/containers; deleting the disk directly loses all data</translation>
    </message>
    <message>
        <extracomment>tool.orbstack: name</extracomment>
        <source>OrbStack 虚拟磁盘</source>
        <translation>OrbStack Virtual Disk</translation>
    </message>
    <message>
        <extracomment>tool.orbstack: note</extracomment>
        <source>Docker/Linux 虚拟机磁盘镜像,请用 `docker system prune` 或在 OrbStack 里删镜像/容器来瘦身</source>
        <translation>Disk images of the Docker/Linux machines; slim them with `docker system prune` or by deleting images/containers in OrbStack</translation>
    </message>
    <message>
        <extracomment>tool.ollama: name</extracomment>
        <source>Ollama 模型</source>
        <translation>Ollama Models</translation>
    </message>
    <message>
        <extracomment>tool.ollama: note</extracomment>
        <source>本地大模型权重,按模型列出,点行尾垃圾桶单个删除(ollama rm)</source>
        <translation>Local model weights, listed per model; the bin at the end of a row deletes one (ollama rm)</translation>
    </message>
    <message>
        <extracomment>tool.playwright: name</extracomment>
        <source>Playwright 浏览器</source>
        <translation>Playwright Browsers</translation>
    </message>
    <message>
        <extracomment>tool.playwright: note</extracomment>
        <source>测试用浏览器二进制(按内核版本列出),npx playwright install 可重装</source>
        <translation>Browser binaries for tests (listed per engine version); npx playwright install restores them</translation>
    </message>
    <message>
        <extracomment>tool.puppeteer: name</extracomment>
        <source>Puppeteer 浏览器</source>
        <translation>Puppeteer Browsers</translation>
    </message>
    <message>
        <extracomment>tool.puppeteer: note</extracomment>
        <source>Puppeteer 下载的 Chromium</source>
        <translation>The Chromium that Puppeteer downloaded</translation>
    </message>
    <message>
        <extracomment>tool.electron: name</extracomment>
        <source>Electron</source>
        <translation>Electron</translation>
    </message>
    <message>
        <extracomment>tool.electron: note</extracomment>
        <source>Electron 预编译包缓存</source>
        <translation>Electron prebuilt package cache</translation>
    </message>
    <message>
        <extracomment>rt.chrome-cache: name</extracomment>
        <source>Chrome 缓存</source>
        <translation>Chrome Cache</translation>
    </message>
    <message>
        <extracomment>rt.chrome-cache, rt.arc-cache, rt.edge-cache, rt.firefox-cache: note</extracomment>
        <source>网页与代码缓存,删后自动重建,不含 Cookie/登录态;浏览器开着时个别文件可能占用失败,建议先退出</source>
        <translation>Web and code cache, rebuilt automatically; holds no cookies or logins. Files in use may fail while the browser is open, so quit it first</translation>
    </message>
    <message>
        <extracomment>rt.arc-cache: name</extracomment>
        <source>Arc 缓存</source>
        <translation>Arc Cache</translation>
    </message>
    <message>
        <extracomment>rt.edge-cache: name</extracomment>
        <source>Edge 缓存</source>
        <translation>Edge Cache</translation>
    </message>
    <message>
        <extracomment>rt.firefox-cache: name</extracomment>
        <source>Firefox 缓存</source>
        <translation>Firefox Cache</translation>
    </message>
    <message>
        <extracomment>tool.codex-worktrees: name</extracomment>
        <source>Git Worktrees</source>
        <translation>Git Worktrees</translation>
    </message>
    <message>
        <extracomment>tool.codex-worktrees: note</extracomment>
        <source>从主仓派生的工作副本,按仓分组;删除走 git worktree remove,不动主仓</source>
        <translation>Working copies derived from a main repository, grouped by repository; removal goes through git worktree remove and leaves the main repository alone</translation>
    </message>
    <message>
        <extracomment>code.claude-sessions: name</extracomment>
        <source>Claude Code 会话记录</source>
        <translation>Claude Code Sessions</translation>
    </message>
    <message>
        <extracomment>code.claude-sessions: note</extracomment>
        <source>按项目列出的对话历史(resume 用);逐项删除只清会话文件,保留 memory/ 记忆。删后 worktree 扫描会少一路发现种子</source>
        <translation>Conversation history per project (for resume); deleting an item removes only its session files and keeps memory/. Afterwards the worktree scan has one source of leads fewer</translation>
    </message>
    <message>
        <extracomment>code.codex-sessions: name</extracomment>
        <source>Codex 会话记录</source>
        <translation>Codex Sessions</translation>
    </message>
    <message>
        <extracomment>code.codex-sessions: note</extracomment>
        <source>按月列出的 Codex 对话历史;删除后不能 resume 对应会话,resume 列表可能残留失效条目</source>
        <translation>Codex conversation history per month; deleted sessions can no longer be resumed, and the resume list may keep stale items</translation>
    </message>
    <message>
        <extracomment>sys.tmp-folders: name</extracomment>
        <source>系统临时文件</source>
        <translation>System Temporary Files</translation>
    </message>
    <message>
        <extracomment>sys.tmp-folders: note</extracomment>
        <source>/private/var/folders 下当前用户的临时与缓存目录;运行中的 App 可能占用(失败会提示),重启后系统也会自行清理</source>
        <translation>The current user's temporary and cache folders under /private/var/folders; running apps may hold them (failures are reported), and the system also cleans them at restart</translation>
    </message>
    <message>
        <extracomment>sys.tmp-folders: note on Linux</extracomment>
        <source>TMPDIR(未设置时为 /tmp)下当前用户的临时文件与目录;含套接字或管道、正被运行中的进程使用的条目不列出</source>
        <translation>The current user's temporary files and folders in TMPDIR (/tmp when unset); entries that hold sockets or pipes, or that a running process uses, are not listed</translation>
    </message>
    <message>
        <extracomment>sys.downloads-installers: name</extracomment>
        <source>下载目录安装包</source>
        <translation>Installers in Downloads</translation>
    </message>
    <message>
        <extracomment>sys.downloads-installers: note</extracomment>
        <source>Downloads 里的 dmg/pkg/xip/iso 安装镜像,装完通常不再需要;建议用「移到废纸篓」</source>
        <translation>dmg/pkg/xip/iso installer images in Downloads, usually not needed once installed; Move to Trash is advised</translation>
    </message>
    <message>
        <extracomment>category</extracomment>
        <source>Xcode 与模拟器</source>
        <translation>Xcode &amp; Simulators</translation>
    </message>
    <message>
        <extracomment>category</extracomment>
        <source>包管理器缓存</source>
        <translation>Package Manager Caches</translation>
    </message>
    <message>
        <extracomment>category</extracomment>
        <source>容器与虚拟机</source>
        <translation>Containers &amp; Virtual Machines</translation>
    </message>
    <message>
        <extracomment>category</extracomment>
        <source>浏览器与运行时下载</source>
        <translation>Browsers &amp; Runtime Downloads</translation>
    </message>
    <message>
        <extracomment>category</extracomment>
        <source>系统与下载</source>
        <translation>System &amp; Downloads</translation>
    </message>
    <message>
        <extracomment>safety level</extracomment>
        <source>安全</source>
        <translation>Safe</translation>
    </message>
    <message>
        <extracomment>safety level</extracomment>
        <source>谨慎</source>
        <translation>Caution</translation>
    </message>
    <message>
        <extracomment>safety level</extracomment>
        <source>仅报告</source>
        <translation>Report Only</translation>
    </message>
    <message>
        <extracomment>docker usage kind</extracomment>
        <source>镜像</source>
        <translation>Images</translation>
    </message>
    <message>
        <extracomment>docker usage kind</extracomment>
        <source>容器</source>
        <translation>Containers</translation>
    </message>
    <message>
        <extracomment>docker usage kind</extracomment>
        <source>数据卷</source>
        <translation>Volumes</translation>
    </message>
    <message>
        <extracomment>docker usage kind</extracomment>
        <source>构建缓存</source>
        <translation>Build Cache</translation>
    </message>
    <message>
        <extracomment>docker usage row: the kind's name, then the count as docker gives it</extracomment>
        <source>%1 %2 个</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <extracomment>docker usage row: the reclaimable size as docker gives it</extracomment>
        <source>可回收 %1</source>
        <translation>%1 reclaimable</translation>
    </message>
    <message>
        <extracomment>docker usage row: what the virtual disk holds beyond docker's table</extracomment>
        <source>系统与其他</source>
        <translation>System &amp; Other</translation>
    </message>
    <message>
        <extracomment>the volume when it has no name</extracomment>
        <source>启动磁盘</source>
        <translation>Startup Disk</translation>
    </message>
    <message>
        <extracomment>language setting</extracomment>
        <source>跟随系统</source>
        <translation>Follow System</translation>
    </message>
    <message>
        <extracomment>age: a day or more in the future</extracomment>
        <source>刚刚</source>
        <translation>just now</translation>
    </message>
    <message>
        <extracomment>age</extracomment>
        <source>今天</source>
        <translation>today</translation>
    </message>
    <message>
        <extracomment>age</extracomment>
        <source>昨天</source>
        <translation>yesterday</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan: the volume line after its name</extracomment>
        <source>已用 %1 · 可用 %2 · 共 %3</source>
        <translation>%1 used · %2 free · %3 total</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan: a rule without entries</extracomment>
        <source>(未找到)</source>
        <translation>(nothing found)</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan: entries of a rule beyond those listed</extracomment>
        <source>… 另有 %n 项</source>
        <translation>
            <numerusform>… %n more</numerusform>
            <numerusform>… %n more</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan: the last line; %1 is the total size, %2 the seconds taken</extracomment>
        <source>共 %1,%n 条规则,用时 %2 秒</source>
        <translation>
            <numerusform>Total %1 in %n rule, %2 s</numerusform>
            <numerusform>Total %1 in %n rules, %2 s</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan: the progress line on standard error; %1 rules done of %2, %3 their size</extracomment>
        <source>正在扫描… %1/%2 条规则,%3</source>
        <translation>Scanning… %1 of %2 rules, %3</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --docker: without the daemon's socket</extracomment>
        <source>Docker 守护进程没有运行:找不到它的套接字,什么也没有问。</source>
        <translation>The Docker daemon is not running: no socket found. Nothing was asked.</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --docker: heading of the usage per kind</extracomment>
        <source>Docker 占用</source>
        <translation>Docker usage</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --docker</extracomment>
        <source>(docker 没有给出占用)</source>
        <translation>(docker gave no usage)</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --docker</extracomment>
        <source>(docker 没有给出清单)</source>
        <translation>(docker gave no inventory)</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --docker: heading with the number of images</extracomment>
        <source>镜像 (%n)</source>
        <translation>
            <numerusform>Images (%n)</numerusform>
            <numerusform>Images (%n)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --docker: heading with the number of containers</extracomment>
        <source>容器 (%n)</source>
        <translation>
            <numerusform>Containers (%n)</numerusform>
            <numerusform>Containers (%n)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --docker: heading with the number of volumes</extracomment>
        <source>数据卷 (%n)</source>
        <translation>
            <numerusform>Volumes (%n)</numerusform>
            <numerusform>Volumes (%n)</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --models: %1 is the models folder</extracomment>
        <source>%1 中没有 Ollama 模型。</source>
        <translation>No Ollama models in %1.</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --models: the last line; %1 is the total size</extracomment>
        <source>共 %1,%n 个模型(共用的数据块在每个模型中都计入)</source>
        <translation>
            <numerusform>Total %1 in %n model (shared blobs count in each)</numerusform>
            <numerusform>Total %1 in %n models (shared blobs count in each)</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --sessions: %1 is the agent's name</extracomment>
        <source>没有 %1 的会话文件。</source>
        <translation>No %1 session files.</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --sessions: heading; %1 is the agent's name</extracomment>
        <source>%1 最大的会话</source>
        <translation>Largest %1 sessions</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --sessions: the last line; %1 is the total size</extracomment>
        <source>共 %1,%n 个文件</source>
        <translation>
            <numerusform>Total %1 in %n file</numerusform>
            <numerusform>Total %1 in %n files</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --simulators</extracomment>
        <source>没有找到模拟器设备。</source>
        <translation>No simulator devices found.</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --simulators: a device whose property list gives no name</extracomment>
        <source>(没有名称)</source>
        <translation>(no name)</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees</extracomment>
        <source>代理工作过的仓库没有派生出工作树。</source>
        <translation>No worktrees derived from the repositories the agents worked in.</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --worktrees: first line; %1 is how many are at risk, %2 their total size</extracomment>
        <source>%n 个工作树,%1 个有风险,%2</source>
        <translation>
            <numerusform>%n worktree, %1 at risk, %2</numerusform>
            <numerusform>%n worktrees, %1 at risk, %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --worktrees: worktrees whose size is not known yet</extracomment>
        <source>(还有 %n 个在测量…)</source>
        <translation>
            <numerusform>(measuring %n more…)</numerusform>
            <numerusform>(measuring %n more…)</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: column title</extracomment>
        <source>大小</source>
        <translation>SIZE</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: column title</extracomment>
        <source>工作树</source>
        <translation>WORKTREE</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: column title</extracomment>
        <source>分支</source>
        <translation>BRANCH</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: column title</extracomment>
        <source>状态</source>
        <translation>STATE</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: state of a worktree that loses nothing</extracomment>
        <source>可以放心删除</source>
        <translation>safe to delete</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: state; %1 lists what is lost</extracomment>
        <source>将丢失 %1</source>
        <translation>would lose %1</translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --worktrees: what is lost</extracomment>
        <source>%n 个未提交的文件</source>
        <translation>
            <numerusform>%n uncommitted file</numerusform>
            <numerusform>%n uncommitted files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>lumabroom-scan --worktrees: what is lost</extracomment>
        <source>%n 个只在这里的提交</source>
        <translation>
            <numerusform>%n commit only here</numerusform>
            <numerusform>%n commits only here</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: both things lost</extracomment>
        <source>%1,%2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: after what is lost</extracomment>
        <source>(没有远程仓库:别处没有副本)</source>
        <translation>(no remote: no copy elsewhere)</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: the branch of a detached worktree</extracomment>
        <source>(不在分支上)</source>
        <translation>(detached)</translation>
    </message>
    <message>
        <extracomment>lumabroom-scan --worktrees: after a worktree's path; %1 is its repository</extracomment>
        <source>(属于 %1)</source>
        <translation>(of %1)</translation>
    </message>
    <message numerus="yes">
        <extracomment>sizes below 1 kB</extracomment>
        <source>%n 字节</source>
        <translation>
            <numerusform>%n byte</numerusform>
            <numerusform>%n bytes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>age: 2 to 29 days</extracomment>
        <source>%n 天前</source>
        <translation>
            <numerusform>%n day ago</numerusform>
            <numerusform>%n days ago</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>age: months of 30 days, 1 to 12</extracomment>
        <source>%n 个月前</source>
        <translation>
            <numerusform>%n month ago</numerusform>
            <numerusform>%n months ago</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>age: 365 to 729 days</extracomment>
        <source>1 年多前</source>
        <translation>over a year ago</translation>
    </message>
    <message numerus="yes">
        <extracomment>age: 2 years and more</extracomment>
        <source>%n 年前</source>
        <translation>
            <numerusform>%n year ago</numerusform>
            <numerusform>%n years ago</numerusform>
        </translation>
    </message>
    <message>
        <extracomment>pm.pnpm: maintenance command</extracomment>
        <source>删除 store 中不再被任何项目引用的包(官方推荐,只作用于现用版本)</source>
        <translation>Removes packages in the store that no project refers to any more (officially recommended; acts on the version in use only)</translation>
    </message>
    <message>
        <extracomment>pm.homebrew: maintenance command</extracomment>
        <source>清理所有旧版本安装包与过期下载</source>
        <translation>Cleans all old versions of installed packages and stale downloads</translation>
    </message>
    <message>
        <extracomment>pm.go-build: maintenance command</extracomment>
        <source>官方方式清空 Go 构建缓存</source>
        <translation>Empties the Go build cache the official way</translation>
    </message>
    <message>
        <extracomment>xcode.simulator-devices: maintenance command</extracomment>
        <source>删除已失效/系统版本过时的模拟器设备,现役模拟器不受影响</source>
        <translation>Deletes simulator devices that are no longer valid or whose system version is out of date; simulators in service are not affected</translation>
    </message>
    <message>
        <extracomment>docker inventory: an image</extracomment>
        <source>未被容器使用</source>
        <translation>Not used by any container</translation>
    </message>
    <message>
        <extracomment>docker inventory: a volume</extracomment>
        <source>未被容器挂载</source>
        <translation>Not mounted by any container</translation>
    </message>
    <message>
        <extracomment>docker prune: title</extracomment>
        <source>未使用镜像</source>
        <translation>Unused images</translation>
    </message>
    <message>
        <extracomment>docker prune: title</extracomment>
        <source>已停止容器</source>
        <translation>Stopped containers</translation>
    </message>
    <message>
        <extracomment>docker prune: title</extracomment>
        <source>未使用数据卷</source>
        <translation>Unused volumes</translation>
    </message>
    <message>
        <extracomment>docker prune: detail</extracomment>
        <source>docker builder prune,下次构建时重新生成</source>
        <translation>docker builder prune; regenerated at the next build</translation>
    </message>
    <message>
        <extracomment>docker prune: detail</extracomment>
        <source>删除未被任何容器引用的镜像,需要时重新拉取</source>
        <translation>Deletes images that no container refers to; pull them again when needed</translation>
    </message>
    <message>
        <extracomment>docker prune: detail</extracomment>
        <source>删除所有已退出的容器</source>
        <translation>Deletes all exited containers</translation>
    </message>
    <message>
        <extracomment>docker prune: detail</extracomment>
        <source>删除未被容器挂载的数据卷,卷内数据(如数据库)永久丢失</source>
        <translation>Deletes volumes that no container mounts; their data (such as databases) is lost for good</translation>
    </message>
    <message>
        <extracomment>docker inventory: an image without a name, then its short id</extracomment>
        <source>悬空镜像 %1</source>
        <translation>Dangling image %1</translation>
    </message>
    <message numerus="yes">
        <extracomment>docker inventory: an image</extracomment>
        <source>被 %n 个容器使用</source>
        <translation>
            <numerusform>Used by %n container</numerusform>
            <numerusform>Used by %n containers</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <extracomment>docker inventory: a volume</extracomment>
        <source>被 %n 个容器挂载</source>
        <translation>
            <numerusform>Mounted by %n container</numerusform>
            <numerusform>Mounted by %n containers</numerusform>
        </translation>
    </message>
</context>
</TS>
