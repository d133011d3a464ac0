#pragma once

#include <string>
#include <string_view>

namespace lumabroom::Localization {

// The display text of a key (a simplified-Chinese source text) in the current language; a key
// without a translation is its own text.
std::string text(std::string_view key);

} // namespace lumabroom::Localization
