#include "scan/EntryLabel.h"

#include "scan/HashCombine.h"
#include "text/Localization.h"

namespace lumabroom {

std::string EntryLabel::text() const {
    if (auto* usage = std::get_if<DockerUsageLabel>(&value)) {
        std::string key = Localization::text(displayKey(usage->kind)) + " " + usage->count + " 个";
        std::string text = Localization::text(key);
        if (usage->reclaimable) text += " · " + Localization::text("可回收 " + *usage->reclaimable);
        return text;
    }
    if (auto* literal = std::get_if<LiteralLabel>(&value)) return literal->text;
    return Localization::text("系统与其他");
}

} // namespace lumabroom

using namespace lumabroom;

std::size_t std::hash<EntryLabel>::operator()(const EntryLabel& l) const noexcept {
    std::size_t seed = 0;
    feed(seed, l.value.index());
    if (auto* usage = std::get_if<DockerUsageLabel>(&l.value)) {
        feedHash(seed, std::string(rawValue(usage->kind)));
        feedHash(seed, usage->count);
        feed(seed, usage->reclaimable ? 1 : 0);
        if (usage->reclaimable) feedHash(seed, *usage->reclaimable);
    } else if (auto* literal = std::get_if<LiteralLabel>(&l.value)) {
        feedHash(seed, literal->text);
    }
    return seed;
}
