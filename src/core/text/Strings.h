#pragma once

#include <string_view>
#include <vector>

namespace lumabroom::Strings {

// The pieces of `text` between separators, empty pieces dropped; they view into `text`.
std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator);

} // namespace lumabroom::Strings
