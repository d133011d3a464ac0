#pragma once

#include "text/Strings.h"

#include <string>

namespace lumabroom::Columns {

// The text with blanks in front up to `width` terminal cells, so that sizes such as "63 字节",
// whose characters are wide, line up with "1.20 GB".
inline std::string rightAligned(std::string text, std::size_t width) {
    const std::size_t cells = Strings::displayWidth(text);
    if (cells < width) text.insert(0, width - cells, ' ');
    return text;
}

} // namespace lumabroom::Columns
