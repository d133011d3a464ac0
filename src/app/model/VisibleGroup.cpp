#include "VisibleGroup.h"

#include "AppText.h"
#include "text/Formatting.h"

namespace lumabroom {

namespace {
std::int64_t totalAt(const VisibleGroup& group, std::size_t i) {
    return group.totals.size() == group.results.size() ? group.totals[i] : group.results[i]->totalSize();
}
} // namespace

std::int64_t VisibleGroup::total() const {
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < results.size(); ++i) sum += totalAt(*this, i);
    return sum;
}

std::string VisibleGroup::summary() const {
    std::vector<std::string> pieces;
    const std::size_t shown = std::min<std::size_t>(results.size(), 3);
    for (std::size_t i = 0; i < shown; ++i) {
        const std::int64_t size = totalAt(*this, i);
        if (size > 0) pieces.push_back(results[i]->rule.name() + " " + Formatting::bytes(size));
    }
    const auto kept = static_cast<std::int64_t>(pieces.size());
    if (static_cast<std::int64_t>(results.size()) > kept)
        pieces.push_back(AppText::counted("其余 %n 项", static_cast<std::int64_t>(results.size()) - kept));
    std::string out;
    for (const std::string& piece : pieces) {
        if (!out.empty()) out += " · ";
        out += piece;
    }
    return out;
}

} // namespace lumabroom
