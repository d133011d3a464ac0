#include "Appearance.h"
#include "Theme.h"
#include "host/Settings.h"
#include "text/Localization.h"

#include <QPalette>

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

TEST(Appearance, StoredValueFallsBackToDark) {
    struct Case {
        std::optional<std::string> stored;
        AppearanceMode expected;
    };
    const Case cases[] = {
        {std::nullopt, AppearanceMode::dark}, {"system", AppearanceMode::system}, {"dark", AppearanceMode::dark},
        {"light", AppearanceMode::light},     {"Light", AppearanceMode::dark},    {"", AppearanceMode::dark},
        {"auto", AppearanceMode::dark},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.stored.value_or("<absent>"));
        if (c.stored) {
            ASSERT_TRUE(Settings::setString("appearanceMode", *c.stored));
        } else {
            Settings::remove("appearanceMode");
        }
        EXPECT_EQ(Appearance::stored(), c.expected);
    }
}

TEST(Appearance, StoresTheRawValue) {
    for (const AppearanceMode mode : allAppearanceModes) {
        SCOPED_TRACE(std::string(Appearance::rawValue(mode)));
        Appearance::store(mode);
        EXPECT_EQ(Settings::string("appearanceMode"), std::string(Appearance::rawValue(mode)));
        EXPECT_EQ(Appearance::stored(), mode);
    }
    Settings::remove("appearanceMode");
}

TEST(Appearance, ForcedModeWinsThenTheDesktopThenThePalette) {
    const QPalette darkPalette(QColor(30, 30, 30));
    const QPalette lightPalette(QColor(240, 240, 240));
    struct Case {
        const char* name;
        AppearanceMode mode;
        std::optional<bool> desktop;
        const QPalette& palette;
        bool expectDark;
    };
    const Case cases[] = {
        {"dark over a light desktop", AppearanceMode::dark, false, lightPalette, true},
        {"light over a dark desktop", AppearanceMode::light, true, darkPalette, false},
        {"desktop prefers dark", AppearanceMode::system, true, lightPalette, true},
        {"desktop prefers light", AppearanceMode::system, false, darkPalette, false},
        {"no preference, dark palette", AppearanceMode::system, std::nullopt, darkPalette, true},
        {"no preference, light palette", AppearanceMode::system, std::nullopt, lightPalette, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Appearance::isDark(c.mode, c.desktop, c.palette), c.expectDark);
    }
}

TEST(Appearance, NamesInBothLanguages) {
    struct Case {
        AppLanguage language;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {AppLanguage::chinese, {"跟随系统", "深色", "浅色"}},
        {AppLanguage::english, {"Follow System", "Dark", "Light"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(rawValue(c.language)));
        Localization::setLanguageForThisRun(c.language);
        std::vector<std::string> names;
        for (const AppearanceMode mode : allAppearanceModes) {
            names.push_back(Appearance::displayName(mode));
        }
        EXPECT_EQ(names, c.expected);
    }
    Localization::setLanguageForThisRun(AppLanguage::chinese);
}

TEST(AppearanceController, FreshInstallationStartsDarkAndFollowsTheMode) {
    Settings::remove("appearanceMode");
    AppearanceController controller;
    EXPECT_EQ(controller.mode(), AppearanceMode::dark);
    EXPECT_TRUE(controller.isDark());

    std::vector<bool> changes;
    QObject::connect(&controller, &AppearanceController::darkChanged, &controller,
                     [&](bool dark) { changes.push_back(dark); });
    controller.setMode(AppearanceMode::light);
    controller.setMode(AppearanceMode::light);
    controller.setMode(AppearanceMode::dark);
    EXPECT_EQ(changes, (std::vector<bool>{false, true}));
    EXPECT_EQ(Settings::string("appearanceMode"), "dark");
    Settings::remove("appearanceMode");
}

TEST(Theme, WidgetsFollowTheSchemeOfTheirPalette) {
    EXPECT_TRUE(Theme::isDark(Theme::of(true).palette()));
    EXPECT_FALSE(Theme::isDark(Theme::of(false).palette()));
    EXPECT_EQ(Theme::of(true).accentA, QColor(64, 200, 224));
    EXPECT_EQ(Theme::of(false).onAccent, QColor(Qt::white));
}

} // namespace
} // namespace lumabroom
