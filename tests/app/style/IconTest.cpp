#include "BrandIcon.h"
#include "RuleIconTile.h"
#include "RuleStyle.h"
#include "Symbols.h"
#include "scan/BuiltinRules.h"

#include <QFile>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <set>

namespace lumabroom {
namespace {

int inkedPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return count;
}

QImage canvas() {
    QImage image(48, 48, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

TEST(Symbols, EveryNameDrawsAnEmbeddedPicture) {
    for (const Symbols::Entry& entry : Symbols::table()) {
        SCOPED_TRACE(std::string(entry.name));
        const auto file = Symbols::file(entry.name);
        ASSERT_TRUE(file.has_value());
        EXPECT_TRUE(QFile::exists(*file));
        const QImage drawn = Symbols::tinted(*file, QSizeF(24, 24), 1, Qt::red);
        ASSERT_EQ(drawn.size(), QSize(24, 24));
        EXPECT_GT(inkedPixels(drawn), 10);
    }
    EXPECT_FALSE(Symbols::file("no.such.symbol"));
    QImage image = canvas();
    QPainter painter(&image);
    EXPECT_FALSE(Symbols::paint(painter, QRectF(0, 0, 24, 24), "no.such.symbol", Qt::red));
    painter.end();
    EXPECT_EQ(inkedPixels(image), 0);
}

TEST(Symbols, EveryRuleStyleHasAPicture) {
    std::set<std::string> missing;
    for (const CleanRule& rule : BuiltinRules::all()) {
        if (!Symbols::file(RuleStyle::of(rule).symbol)) {
            missing.insert(RuleStyle::of(rule).symbol);
        }
    }
    for (const Category category : allCategories) {
        if (!Symbols::file(RuleStyle::of("no.such.rule", category).symbol)) {
            missing.insert(RuleStyle::of("no.such.rule", category).symbol);
        }
    }
    EXPECT_EQ(missing, std::set<std::string>{});
}

TEST(RuleStyle, OwnRowThenCategory) {
    EXPECT_EQ(RuleStyle::of("pm.pnpm", Category::packageManager), (RuleStyle{"shippingbox.fill", NamedColor::yellow}));
    EXPECT_EQ(RuleStyle::of("rt.chrome-cache", Category::runtimeDownloads), (RuleStyle{"globe", NamedColor::green}));
    EXPECT_EQ(RuleStyle::of("tool.unknown", Category::tool),
              (RuleStyle{"wrench.and.screwdriver.fill", NamedColor::purple}));
}

TEST(BrandIcon, EveryAssetIsEmbeddedButTheThreeTheIconSetLacks) {
    std::set<std::string> missing;
    for (const BrandIcon::Asset& asset : BrandIcon::assets()) {
        if (!BrandIcon::image(asset.ruleId, QSizeF(32, 32), 1, Theme::of(true))) {
            missing.insert(std::string(asset.name));
        }
    }
    EXPECT_EQ(missing, (std::set<std::string>{"codex", "edge", "playwright"}));
    EXPECT_EQ(BrandIcon::assets().size(), 25u);
    EXPECT_FALSE(BrandIcon::image("xcode.archives", QSizeF(32, 32), 1, Theme::of(true)));
}

TEST(RuleIconTile, MissingPictureShowsTheFallbackTile) {
    const CleanRule* playwright = BuiltinRules::find("tool.playwright");
    ASSERT_NE(playwright, nullptr);
    QImage tile = canvas();
    QImage fallback = canvas();
    {
        QPainter painter(&tile);
        RuleIconTile::paint(painter, QRectF(0, 0, 48, 48), *playwright, Theme::of(true));
        QPainter expected(&fallback);
        RuleIconTile::paintFallback(expected, QRectF(0, 0, 48, 48), "globe");
    }
    EXPECT_EQ(tile, fallback);
    // The tile is blue whatever the rule's colour, with the symbol in white at its centre.
    EXPECT_EQ(tile.pixelColor(24, 4).blue() > tile.pixelColor(24, 4).red(), true);
    EXPECT_EQ(qAlpha(tile.pixel(0, 0)), 0);

    const CleanRule* npm = BuiltinRules::find("pm.npm");
    ASSERT_NE(npm, nullptr);
    QImage logo = canvas();
    {
        QPainter painter(&logo);
        RuleIconTile::paint(painter, QRectF(0, 0, 48, 48), *npm, Theme::of(true));
    }
    EXPECT_NE(logo, fallback);
}

// The colour of the most opaque pixel.
QColor inkColor(const QImage& premultiplied) {
    const QImage image = premultiplied.convertToFormat(QImage::Format_ARGB32);
    QColor ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!ink.isValid() || qAlpha(image.pixel(x, y)) > ink.alpha()) {
                ink = image.pixelColor(x, y);
            }
        }
    }
    return ink;
}

TEST(BrandIcon, MonochromeLogosTakeTheTextColourOnLightOnly) {
    struct Case {
        const char* rule;
        bool dark;
        QColor expected;
    };
    const Case cases[] = {
        {"tool.ollama", false, Theme::of(false).primary.toRgb()},
        {"tool.ollama", true, QColor(Qt::white)},
        {"pm.npm", false, QColor(0xCB3837)},
        {"pm.npm", true, QColor(0xCB3837)},
        // Bun's black would vanish on dark.
        {"pm.bun", true, Theme::of(true).primary.toRgb()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.rule) + (c.dark ? " dark" : " light"));
        const auto image = BrandIcon::image(c.rule, QSizeF(64, 64), 1, Theme::of(c.dark));
        ASSERT_TRUE(image.has_value());
        QColor ink = inkColor(*image);
        QColor expected = c.expected;
        ink.setAlpha(255);
        expected.setAlpha(255);
        EXPECT_EQ(ink.name(), expected.name());
    }
    EXPECT_TRUE(BrandIcon::isMonochrome("tool.ollama"));
    EXPECT_FALSE(BrandIcon::isMonochrome("pm.npm"));
    EXPECT_FALSE(BrandIcon::isMonochrome("xcode.archives"));
}

} // namespace
} // namespace lumabroom
