#include "Portal.h"
#include "DesktopServices.h"
#include "FileManager.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

namespace lumabroom {
namespace {

QVariant wrapped(const QVariant& value, int levels) {
    QVariant result = value;
    for (int i = 0; i < levels; ++i) {
        result = QVariant::fromValue(QDBusVariant(result));
    }
    return result;
}

TEST(Portal, ColorSchemeValues) {
    struct Case {
        const char* name;
        QVariant value;
        std::optional<bool> expected;
    };
    const Case cases[] = {
        {"dark", wrapped(uint(1), 0), true},
        {"light", wrapped(uint(2), 0), false},
        {"no preference", wrapped(uint(0), 0), std::nullopt},
        {"unknown value", wrapped(uint(7), 0), std::nullopt},
        {"ReadOne: one variant", wrapped(uint(1), 1), true},
        {"Read: a variant in a variant", wrapped(uint(2), 2), false},
        {"signed", wrapped(int(1), 1), true},
        {"text", wrapped(QStringLiteral("1"), 1), std::nullopt},
        {"empty", QVariant(), std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Portal::prefersDark(c.value), c.expected);
    }
}

TEST(Portal, OnlyTheColorSchemeSettingCounts) {
    EXPECT_TRUE(Portal::isColorScheme("org.freedesktop.appearance", "color-scheme"));
    EXPECT_FALSE(Portal::isColorScheme("org.freedesktop.appearance", "accent-color"));
    EXPECT_FALSE(Portal::isColorScheme("org.gnome.desktop.interface", "color-scheme"));
}

TEST(DesktopServices, ShowItemsNamesTheItemAsAFileUrl) {
    const QDBusMessage call = FileManager::showItems("/home/someone/项目 1/node_modules");
    EXPECT_EQ(call.service(), "org.freedesktop.FileManager1");
    EXPECT_EQ(call.path(), "/org/freedesktop/FileManager1");
    EXPECT_EQ(call.interface(), "org.freedesktop.FileManager1");
    EXPECT_EQ(call.member(), "ShowItems");
    ASSERT_EQ(call.arguments().size(), 2);
    EXPECT_EQ(call.arguments()[0].toStringList(),
              QStringList{"file:///home/someone/%E9%A1%B9%E7%9B%AE%201/node_modules"});
    EXPECT_EQ(call.arguments()[1].toString(), QString());

    EXPECT_EQ(DesktopServices::parentFolder("/home/someone/项目 1/node_modules"),
              QUrl::fromLocalFile("/home/someone/项目 1"));
    EXPECT_EQ(DesktopServices::parentFolder("/"), QUrl::fromLocalFile("/"));
}

} // namespace
} // namespace lumabroom
