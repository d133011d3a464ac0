#pragma once

#include <QString>
#include <QVariant>

#include <optional>

// The desktop portal's appearance setting, as it comes over D-Bus.
namespace lumabroom::Portal {

inline constexpr auto kService = "org.freedesktop.portal.Desktop";
inline constexpr auto kPath = "/org/freedesktop/portal/desktop";
inline constexpr auto kInterface = "org.freedesktop.portal.Settings";
inline constexpr auto kNamespace = "org.freedesktop.appearance";
inline constexpr auto kKey = "color-scheme";

// Whether "color-scheme" asks for dark: 1 prefers dark, 2 prefers light, and 0, anything else or a
// value of another type states no preference. Unwraps the variants that D-Bus nests around it
// (`Read` answers with a variant in a variant).
std::optional<bool> prefersDark(const QVariant& colorScheme);

// Whether a `SettingChanged` signal is about the colour scheme.
bool isColorScheme(const QString& settingNamespace, const QString& key);

} // namespace lumabroom::Portal
