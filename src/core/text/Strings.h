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

// The cells a terminal takes to draw UTF-8 text: two for East Asian wide characters and emoji,
// none for combining marks and controls, one for the rest and for each invalid sequence.
std::size_t displayWidth(std::string_view utf8);

// A name as the shell would read it back, when it holds what a terminal would act on (control
// characters, C0 or C1, or bytes that are no UTF-8): "a", a line break and "b" become $'a\nb', as
// `ls` shows them. Anything else comes back unchanged.
std::string quotedForTerminal(std::string_view name);

} // namespace lumabroom::Strings
