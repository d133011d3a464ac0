#include "text/Strings.h"

namespace lumabroom::Strings {

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

} // namespace lumabroom::Strings
