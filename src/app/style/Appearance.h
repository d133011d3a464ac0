#pragma once

#include <QObject>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class QPalette;

namespace lumabroom {

// Whether the window is forced to a colour scheme. Stored under "appearanceMode" as the raw value.
enum class AppearanceMode { system, dark, light };

inline constexpr std::array allAppearanceModes{AppearanceMode::system, AppearanceMode::dark, AppearanceMode::light};

namespace Appearance {

std::string_view rawValue(AppearanceMode);
// "跟随系统", "深色", "浅色": the localization key of the mode's name.
std::string_view displayKey(AppearanceMode);
std::string displayName(AppearanceMode);

// A fresh installation starts dark, whatever the system prefers; so does a value it cannot read.
AppearanceMode fromStored(const std::optional<std::string>& stored);
AppearanceMode stored();
void store(AppearanceMode);

// Whether to draw dark: a forced mode wins; otherwise the system's stated preference, and without
// one the lightness of its palette.
bool isDark(AppearanceMode, std::optional<bool> systemPrefersDark, const QPalette& systemPalette);

} // namespace Appearance

// The system's preferred scheme and its changes, from the desktop where it says one, otherwise from
// the platform palette. Nothing is known until the desktop answers.
class SystemScheme : public QObject {
    Q_OBJECT
public:
    explicit SystemScheme(QObject* parent = nullptr);
    ~SystemScheme() override;

    std::optional<bool> prefersDark() const { return prefersDark_; }

Q_SIGNALS:
    void changed();

private:
    friend struct SystemSchemeBackend;
    void set(std::optional<bool> prefersDark);

    std::optional<bool> prefersDark_;
    std::unique_ptr<QObject> backend_;
};

// The appearance that the window follows: the stored mode and, for `system`, the system's scheme.
// The palette fallback reads the application's palette, so the window sets its scheme's palette
// (`Theme::palette()`) on its own widgets, never on the application.
class AppearanceController : public QObject {
    Q_OBJECT
public:
    explicit AppearanceController(QObject* parent = nullptr);

    AppearanceMode mode() const { return mode_; }
    // Stores the mode; `darkChanged` follows if the scheme drawn changes.
    void setMode(AppearanceMode);
    bool isDark() const { return dark_; }

Q_SIGNALS:
    void modeChanged();
    void darkChanged(bool dark);

private:
    void update();

    AppearanceMode mode_;
    bool dark_ = true;
    SystemScheme system_;
};

} // namespace lumabroom
