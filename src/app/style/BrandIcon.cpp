#include "BrandIcon.h"

#include "Symbols.h"

#include <QFile>
#include <QSvgRenderer>

#include <map>
#include <memory>
#include <string>

namespace lumabroom::BrandIcon {

namespace {

constexpr Asset kAssets[] = {
    {"pm.npm", "npm"},
    {"pm.yarn", "yarn"},
    {"pm.pnpm", "pnpm"},
    {"pm.bun", "bun"},
    {"pm.pip", "pip"},
    {"pm.uv", "uv"},
    {"pm.cargo", "cargo"},
    {"pm.go-build", "go-build"},
    {"pm.gradle", "gradle"},
    {"pm.maven", "maven"},
    {"pm.homebrew", "homebrew"},
    {"pm.cocoapods", "cocoapods"},
    {"pm.swiftpm", "swiftpm"},
    {"tool.docker", "docker"},
    {"tool.electron", "electron"},
    {"tool.playwright", "playwright"},
    {"tool.puppeteer", "puppeteer"},
    {"tool.ollama", "ollama"},
    {"tool.codex-worktrees", "git"},
    {"code.claude-sessions", "claude"},
    {"code.codex-sessions", "codex"},
    {"rt.chrome-cache", "chrome"},
    {"rt.arc-cache", "arc"},
    {"rt.edge-cache", "edge"},
    {"rt.firefox-cache", "firefox"},
};

constexpr std::string_view kMonochrome[] = {"uv", "cargo", "gradle", "maven", "puppeteer", "ollama", "codex", "arc"};

// The icon set's file and brand colour of each asset. Names without a row have no picture.
struct Picture {
    std::string_view asset;
    std::string_view file;
    QRgb color;
};
constexpr Picture kPictures[] = {
    {"npm", "npm", 0xCB3837},           {"yarn", "yarn", 0x2C8EBB},
    {"pnpm", "pnpm", 0xF69220},         {"bun", "bun", 0x000000},
    {"pip", "pypi", 0x3775A9},          {"uv", "uv", 0xDE5FE9},
    {"cargo", "rust", 0x000000},        {"go-build", "go", 0x00ADD8},
    {"gradle", "gradle", 0x02303A},     {"maven", "apachemaven", 0xC71A36},
    {"homebrew", "homebrew", 0xFBB040}, {"cocoapods", "cocoapods", 0xEE3322},
    {"swiftpm", "swift", 0xF05138},     {"docker", "docker", 0x2496ED},
    {"electron", "electron", 0x47848F}, {"puppeteer", "puppeteer", 0x40B5A4},
    {"ollama", "ollama", 0x000000},     {"git", "git", 0xF03C2E},
    {"claude", "claude", 0xD97757},     {"chrome", "googlechrome", 0x4285F4},
    {"arc", "arc", 0xFCBFBD},           {"firefox", "firefoxbrowser", 0xFF7139},
};

const Picture* picture(std::string_view assetName) {
    for (const Picture& p : kPictures) {
        if (p.asset == assetName) {
            return &p;
        }
    }
    return nullptr;
}

std::map<std::string, std::unique_ptr<QSvgRenderer>, std::less<>>& cache() {
    static std::map<std::string, std::unique_ptr<QSvgRenderer>, std::less<>> loaded;
    return loaded;
}

QSvgRenderer* renderer(std::string_view assetName) {
    auto& loaded = cache();
    if (const auto found = loaded.find(assetName); found != loaded.end()) {
        return found->second.get();
    }
    const QString path = file(assetName);
    if (!QFile::exists(path)) {
        return nullptr;
    }
    auto svg = std::make_unique<QSvgRenderer>(path);
    if (!svg->isValid()) {
        return nullptr;
    }
    return loaded.emplace(std::string(assetName), std::move(svg)).first->second.get();
}

} // namespace

std::span<const Asset> assets() { return kAssets; }

std::optional<std::string_view> asset(std::string_view ruleId) {
    for (const Asset& a : kAssets) {
        if (a.ruleId == ruleId) {
            return a.name;
        }
    }
    return std::nullopt;
}

QString file(std::string_view assetName) {
    const Picture* p = picture(assetName);
    const std::string_view name = p ? p->file : assetName;
    return QStringLiteral(":/icons/simple-icons/") + QString::fromUtf8(name.data(), qsizetype(name.size()))
           + QStringLiteral(".svg");
}

bool isMonochrome(std::string_view ruleId) {
    const auto name = asset(ruleId);
    return name && std::find(std::begin(kMonochrome), std::end(kMonochrome), *name) != std::end(kMonochrome);
}

std::optional<QImage> image(std::string_view ruleId, QSizeF size, qreal devicePixelRatio, const Theme& theme) {
    const auto name = asset(ruleId);
    if (!name) {
        return std::nullopt;
    }
    QSvgRenderer* svg = renderer(*name);
    if (!svg) {
        return std::nullopt;
    }
    QColor color = Qt::white;
    if (!isMonochrome(ruleId)) {
        const Picture* p = picture(*name);
        color = p ? QColor(p->color) : theme.primary;
        // A brand colour that would vanish into the background takes the text colour.
        const float lightness = color.lightnessF();
        if (theme.dark ? lightness < 0.15f : lightness > 0.85f) {
            color = theme.primary;
        }
    } else if (!theme.dark) {
        color = theme.primary;
    }
    QImage drawn = Symbols::tinted(*svg, size, devicePixelRatio, color);
    if (drawn.isNull()) {
        return std::nullopt;
    }
    return drawn;
}

} // namespace lumabroom::BrandIcon
