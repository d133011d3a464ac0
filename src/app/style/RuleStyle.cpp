#include "RuleStyle.h"

#include <string_view>
#include <utility>

namespace lumabroom {

namespace {

struct Row {
    std::string_view id;
    std::string_view symbol;
    NamedColor color;
};

using enum NamedColor;
constexpr Row kRows[] = {
    {"xcode.derived-data", "hammer.fill", blue},
    {"xcode.device-support", "iphone", indigo},
    {"xcode.archives", "archivebox.fill", brown},
    {"xcode.simulator-caches", "square.stack.3d.up.fill", cyan},
    {"xcode.xcode-caches", "wrench.and.screwdriver.fill", blue},
    {"xcode.previews", "eye.fill", teal},
    {"xcode.xctest-devices", "checkmark.seal.fill", green},
    {"xcode.doc-cache", "book.fill", gray},
    {"xcode.simulator-devices", "iphone.gen2", gray},
    {"pm.swiftpm", "swift", orange},
    {"pm.cocoapods", "shippingbox.fill", red},
    {"pm.carthage", "shippingbox.fill", indigo},
    {"pm.homebrew", "mug.fill", brown},
    {"pm.npm", "shippingbox.fill", red},
    {"pm.yarn", "shippingbox.fill", blue},
    {"pm.pnpm", "shippingbox.fill", yellow},
    {"pm.bun", "shippingbox.fill", pink},
    {"pm.pip", "shippingbox.fill", blue},
    {"pm.uv", "shippingbox.fill", purple},
    {"pm.cargo", "shippingbox.fill", orange},
    {"pm.go-build", "hammer.fill", cyan},
    {"pm.gradle", "shippingbox.fill", green},
    {"pm.maven", "shippingbox.fill", red},
    {"tool.playwright", "globe", green},
    {"tool.puppeteer", "globe", orange},
    {"tool.electron", "atom", cyan},
    {"tool.docker", "externaldrive.fill", blue},
    {"tool.orbstack", "externaldrive.fill", purple},
    {"tool.ollama", "cpu.fill", indigo},
    {"tool.codex-worktrees", "arrow.triangle.branch", teal},
    {"code.claude-sessions", "text.bubble.fill", orange},
    {"code.codex-sessions", "clock.arrow.circlepath", mint},
    {"sys.tmp-folders", "internaldrive.fill", pink},
    {"sys.downloads-installers", "arrow.down.circle.fill", cyan},
};

std::pair<std::string_view, NamedColor> categoryStyle(Category category) {
    switch (category) {
    case Category::xcode: return {"hammer.fill", blue};
    case Category::packageManager: return {"shippingbox.fill", orange};
    case Category::tool: return {"wrench.and.screwdriver.fill", purple};
    case Category::runtimeDownloads: return {"globe", green};
    case Category::code: return {"arrow.triangle.branch", teal};
    case Category::system: return {"internaldrive.fill", pink};
    }
    return {"internaldrive.fill", pink};
}

} // namespace

RuleStyle RuleStyle::of(std::string_view ruleId, Category category) {
    for (const Row& row : kRows) {
        if (row.id == ruleId) {
            return {std::string(row.symbol), row.color};
        }
    }
    const auto [symbol, color] = categoryStyle(category);
    return {std::string(symbol), color};
}

RuleStyle RuleStyle::of(const CleanRule& rule) { return of(rule.id, rule.category); }

} // namespace lumabroom
