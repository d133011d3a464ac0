#pragma once

#include "Theme.h"

#include <QImage>
#include <QSizeF>

#include <optional>
#include <span>
#include <string_view>

// The tools' own logos for the rules that have one.
namespace lumabroom::BrandIcon {

struct Asset {
    std::string_view ruleId;
    std::string_view name;
};

std::span<const Asset> assets();
std::optional<std::string_view> asset(std::string_view ruleId);
// The embedded file of an asset name, whether or not it exists.
QString file(std::string_view assetName);

// Logos drawn in one colour: in the text colour on light, in their own light colour on dark.
bool isMonochrome(std::string_view ruleId);

// The rule's logo fitted into `size`, in the colour it takes in `theme`; nothing for a rule without
// an asset or whose file is missing or unreadable. Loaded pictures are kept; main thread only.
std::optional<QImage> image(std::string_view ruleId, QSizeF size, qreal devicePixelRatio, const Theme& theme);

} // namespace lumabroom::BrandIcon
