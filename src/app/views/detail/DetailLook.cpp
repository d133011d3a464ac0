#include "DetailLook.h"

#include "DesktopServices.h"
#include "RuleIconTile.h"
#include "RuleStyle.h"
#include "SafetyBadge.h"
#include "Theme.h"
#include "text/Localization.h"

namespace lumabroom::DetailLook {

namespace {
// Named colours differ little between the schemes; the tints below are drawn at low opacity.
const Theme& theme() { return Theme::of(true); }
} // namespace

QWidget* ruleIconTile(const CleanRule& rule, QWidget* parent) {
    auto* tile = new RuleIconTile(rule, 44, parent);
    tile->setAccessibleName(QString::fromStdString(rule.name()));
    return tile;
}

QWidget* safetyBadge(SafetyLevel safety, QWidget* parent) {
    auto* badge = new SafetyBadge(safety, parent);
    badge->setAccessibleName(QString::fromStdString(displayName(safety)));
    return badge;
}

QColor ruleColor(const CleanRule& rule) { return theme().named(RuleStyle::of(rule).color); }
QColor accent() { return theme().accentA; }
QColor rowHover() { return QColor(128, 128, 128, 30); }
QColor orange() { return theme().named(NamedColor::orange); }
QColor green() { return theme().named(NamedColor::green); }

void reveal(const std::filesystem::path& path) { DesktopServices::reveal(path); }

void copyToClipboard(const std::string& text) { DesktopServices::copyToClipboard(QString::fromStdString(text)); }

} // namespace lumabroom::DetailLook
