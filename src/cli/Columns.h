#pragma once

#include <string>

namespace lumabroom::Columns {

// The text with blanks in front up to `width` characters; a character is counted once however many
// bytes it takes, so that sizes such as "63 字节" line up with "1.20 GB".
inline std::string rightAligned(std::string text, std::size_t width) {
    std::size_t characters = 0;
    for (unsigned char c : text) characters += (c & 0xC0) != 0x80;
    if (characters < width) text.insert(0, width - characters, ' ');
    return text;
}

} // namespace lumabroom::Columns
