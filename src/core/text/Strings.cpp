#include "text/Strings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumabroom::Strings {

namespace {
// Length of the well-formed sequence at `i`, or 0 with `invalid` set to the length of the maximal
// subpart that has to be replaced (at least 1), as Unicode recommends.
std::size_t sequenceLength(std::string_view s, std::size_t i, std::size_t& invalid) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(s[k]); };
    const unsigned char lead = byte(i);
    if (lead < 0x80) return 1;
    std::size_t trailing = 0;
    unsigned char low = 0x80, high = 0xBF; // allowed range of the first trailing byte
    if (lead >= 0xC2 && lead <= 0xDF) trailing = 1;
    else if (lead == 0xE0) trailing = 2, low = 0xA0;
    else if ((lead >= 0xE1 && lead <= 0xEC) || lead == 0xEE || lead == 0xEF) trailing = 2;
    else if (lead == 0xED) trailing = 2, high = 0x9F;
    else if (lead == 0xF0) trailing = 3, low = 0x90;
    else if (lead >= 0xF1 && lead <= 0xF3) trailing = 3;
    else if (lead == 0xF4) trailing = 3, high = 0x8F;
    else {
        invalid = 1;
        return 0;
    }
    for (std::size_t k = 1; k <= trailing; ++k) {
        const unsigned char lo = k == 1 ? low : 0x80;
        const unsigned char hi = k == 1 ? high : 0xBF;
        if (i + k >= s.size() || byte(i + k) < lo || byte(i + k) > hi) {
            invalid = k;
            return 0;
        }
    }
    return trailing + 1;
}

char32_t decoded(std::string_view sequence) {
    const auto byte = [&](std::size_t k) { return static_cast<unsigned char>(sequence[k]); };
    if (sequence.size() == 1) return byte(0);
    char32_t value = byte(0) & (0x7F >> sequence.size());
    for (std::size_t k = 1; k < sequence.size(); ++k) value = (value << 6) | (byte(k) & 0x3F);
    return value;
}

struct Range {
    char32_t first, last;
};

// Characters a terminal draws two cells wide: East Asian Wide and Fullwidth, and emoji.
constexpr Range kWide[] = {
    {0x1100, 0x115F}, {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},   {0x2E80, 0x303E},
    {0x3041, 0x33FF}, {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},   {0xA960, 0xA97F},
    {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
    {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD},
};
// Characters drawn on the cell before them, or not at all.
constexpr Range kZeroWidth[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F}, {0x200B, 0x200F},
    {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
};

template <std::size_t N>
bool isIn(const Range (&ranges)[N], char32_t c) {
    return std::any_of(std::begin(ranges), std::end(ranges), [c](Range r) { return c >= r.first && c <= r.last; });
}

bool isControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }
} // namespace

std::vector<std::string_view> splitNonEmpty(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        auto end = text.find(separator);
        auto piece = text.substr(0, end);
        if (!piece.empty()) pieces.push_back(piece);
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return pieces;
}

bool isValidUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t invalid = 0;
        const std::size_t n = sequenceLength(bytes, i, invalid);
        if (n == 0) return false;
        i += n;
    }
    return true;
}

std::string repairedUtf8(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t invalid = 0;
        if (const std::size_t n = sequenceLength(bytes, i, invalid)) {
            out.append(bytes.substr(i, n));
            i += n;
        } else {
            out.append("\xEF\xBF\xBD");
            i += invalid;
        }
    }
    return out;
}

std::size_t displayWidth(std::string_view utf8) {
    std::size_t width = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        std::size_t invalid = 0;
        const std::size_t n = sequenceLength(utf8, i, invalid);
        if (n == 0) {
            ++width; // drawn as one replacement character
            i += invalid;
            continue;
        }
        const char32_t c = decoded(utf8.substr(i, n));
        i += n;
        if (isIn(kZeroWidth, c) || isControl(c)) continue;
        width += isIn(kWide, c) ? 2u : 1u;
    }
    return width;
}

std::string quotedForTerminal(std::string_view name) {
    static constexpr char hex[] = "0123456789abcdef";
    std::string body;
    bool needed = false;
    for (std::size_t i = 0; i < name.size();) {
        std::size_t invalid = 0;
        std::size_t n = sequenceLength(name, i, invalid);
        const char32_t c = n ? decoded(name.substr(i, n)) : 0;
        if (n && !isControl(c)) {
            if (c == '\\' || c == '\'') body.push_back('\\');
            body.append(name.substr(i, n));
            i += n;
            continue;
        }
        needed = true;
        static constexpr std::pair<char32_t, char> named[] = {{'\a', 'a'}, {'\b', 'b'}, {'\t', 't'}, {'\n', 'n'},
                                                              {'\v', 'v'}, {'\f', 'f'}, {'\r', 'r'}, {0x1B, 'E'}};
        const auto* known =
            std::find_if(std::begin(named), std::end(named), [c](const auto& p) { return p.first == c; });
        if (n == 1 && known != std::end(named)) {
            body += '\\';
            body += known->second;
        } else {
            // A C1 control, or a byte that is no UTF-8, byte by byte.
            for (char raw : name.substr(i, n ? n : invalid)) {
                const auto byte = static_cast<unsigned char>(raw);
                body += "\\x";
                body += hex[byte >> 4];
                body += hex[byte & 15];
            }
        }
        i += n ? n : invalid;
    }
    if (!needed) return std::string(name);
    return "$'" + body + "'";
}

} // namespace lumabroom::Strings
