#include "support/Text.h"

namespace lumabroom::test {

bool containsCjk(std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t point = length == 1 ? lead : length == 2 ? lead & 0x1F : length == 3 ? lead & 0x0F : lead & 0x07;
        for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k)
            point = (point << 6) | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        i += length;
        if ((point >= 0x2E80 && point <= 0x9FFF) || (point >= 0xF900 && point <= 0xFAFF)
            || (point >= 0xFF00 && point <= 0xFFEF) || (point >= 0x20000 && point <= 0x3FFFF))
            return true;
    }
    return false;
}

std::string scannerBinary() { return LUMABROOM_SCAN_PATH; }

} // namespace lumabroom::test
