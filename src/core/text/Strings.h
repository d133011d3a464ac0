#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumabroom::Strings {

// The pieces of `text` between separators, empty pieces dropped; they view into `text`.
std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator);

// Well-formed UTF-8 only: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view bytes);
// Each maximal invalid sequence becomes U+FFFD; valid text comes back unchanged.
std::string repairedUtf8(std::string_view bytes);

} // namespace lumabroom::Strings
