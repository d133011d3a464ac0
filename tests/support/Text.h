#pragma once

#include <string>
#include <string_view>

namespace lumabroom::test {

// Whether UTF-8 text holds a Chinese character or a CJK or full-width punctuation mark.
bool containsCjk(std::string_view utf8);

// The lumabroom-scan of this build.
std::string scannerBinary();

} // namespace lumabroom::test
