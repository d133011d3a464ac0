#include "text/Strings.h"

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

} // namespace lumabroom::Strings
