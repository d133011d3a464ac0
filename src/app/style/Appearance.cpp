#include "Appearance.h"

#include "StyleText.h"
#include "SystemSchemeBackend.h"
#include "Theme.h"
#include "host/Settings.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

#include <functional>

namespace lumabroom {

namespace {
constexpr std::string_view kSettingKey = "appearanceMode";
}

namespace Appearance {

std::string_view rawValue(AppearanceMode mode) {
    switch (mode) {
    case AppearanceMode::system: return "system";
    case AppearanceMode::dark: return "dark";
    case AppearanceMode::light: return "light";
    }
    return "dark";
}

std::string_view displayKey(AppearanceMode mode) {
    switch (mode) {
    case AppearanceMode::system: return "跟随系统";
    case AppearanceMode::dark: return "深色";
    case AppearanceMode::light: return "浅色";
    }
    return "深色";
}

std::string displayName(AppearanceMode mode) { return StyleText::text(displayKey(mode)).toStdString(); }

AppearanceMode fromStored(const std::optional<std::string>& stored) {
    for (const AppearanceMode mode : allAppearanceModes) {
        if (stored && *stored == rawValue(mode)) {
            return mode;
        }
    }
    return AppearanceMode::dark;
}

AppearanceMode stored() { return fromStored(Settings::string(kSettingKey)); }

void store(AppearanceMode mode) { Settings::setString(kSettingKey, rawValue(mode)); }

bool isDark(AppearanceMode mode, std::optional<bool> systemPrefersDark, const QPalette& systemPalette) {
    switch (mode) {
    case AppearanceMode::dark: return true;
    case AppearanceMode::light: return false;
    case AppearanceMode::system: break;
    }
    if (systemPrefersDark) {
        return *systemPrefersDark;
    }
    return Theme::isDark(systemPalette);
}

} // namespace Appearance

SystemScheme::SystemScheme(QObject* parent) : QObject(parent), backend_(SystemSchemeBackend::create(*this)) {}

SystemScheme::~SystemScheme() = default;

void SystemScheme::set(std::optional<bool> prefersDark) {
    if (prefersDark == prefersDark_) {
        return;
    }
    prefersDark_ = prefersDark;
    Q_EMIT changed();
}

namespace {
// Where no desktop states a preference, the system palette does; it changes under us with the
// system's theme, so the controller hears of it.
class PaletteWatch : public QObject {
public:
    PaletteWatch(QObject* parent, std::function<void()> onChange) : QObject(parent), onChange_(std::move(onChange)) {
        if (qApp) {
            qApp->installEventFilter(this);
        }
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
            onChange_();
        }
        return false;
    }

private:
    std::function<void()> onChange_;
};
} // namespace

AppearanceController::AppearanceController(QObject* parent) : QObject(parent), mode_(Appearance::stored()) {
    dark_ = Appearance::isDark(mode_, system_.prefersDark(), QGuiApplication::palette());
    connect(&system_, &SystemScheme::changed, this, [this] { update(); });
    new PaletteWatch(this, [this] { update(); });
}

void AppearanceController::setMode(AppearanceMode mode) {
    Appearance::store(mode);
    if (mode == mode_) {
        return;
    }
    mode_ = mode;
    Q_EMIT modeChanged();
    update();
}

void AppearanceController::update() {
    const bool dark = Appearance::isDark(mode_, system_.prefersDark(), QGuiApplication::palette());
    if (dark == dark_) {
        return;
    }
    dark_ = dark;
    Q_EMIT darkChanged(dark_);
}

} // namespace lumabroom
