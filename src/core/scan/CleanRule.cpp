#include "scan/CleanRule.h"

#include "scan/HashCombine.h"
#include "text/Localization.h"

#include <nlohmann/json.hpp>

namespace lumabroom {

std::string CleanRule::name() const { return Localization::text(nameKey); }
std::string CleanRule::note() const { return Localization::text(noteKey); }

std::string encode(const CleanRule& rule) {
    nlohmann::ordered_json j;
    j["id"] = rule.id;
    j["nameKey"] = rule.nameKey;
    j["noteKey"] = rule.noteKey;
    j["category"] = rawValue(rule.category);
    j["paths"] = rule.paths;
    j["safety"] = rawValue(rule.safety);
    j["exclusiveSizeOnly"] = rule.exclusiveSizeOnly;
    return j.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::optional<CleanRule> decodeRule(std::string_view text) {
    auto j = nlohmann::json::parse(text, nullptr, /*allow_exceptions=*/false);
    if (!j.is_object()) return std::nullopt;
    auto string = [&](const char* key) -> const std::string* {
        auto it = j.find(key);
        return it != j.end() && it->is_string() ? it->get_ptr<const std::string*>() : nullptr;
    };
    const std::string* id = string("id");
    const std::string* nameKey = string("nameKey");
    const std::string* noteKey = string("noteKey");
    const std::string* category = string("category");
    const std::string* safety = string("safety");
    auto paths = j.find("paths");
    auto exclusive = j.find("exclusiveSizeOnly");
    if (!id || !nameKey || !noteKey || !category || !safety || paths == j.end() || !paths->is_array()
        || exclusive == j.end() || !exclusive->is_boolean())
        return std::nullopt;
    auto cat = categoryFromRaw(*category);
    auto level = safetyFromRaw(*safety);
    if (!cat || !level) return std::nullopt;
    CleanRule rule{*id, *nameKey, *noteKey, *cat, {}, *level, exclusive->get<bool>()};
    for (const auto& p : *paths) {
        if (!p.is_string()) return std::nullopt;
        rule.paths.push_back(p.get<std::string>());
    }
    return rule;
}

} // namespace lumabroom

using namespace lumabroom;

std::size_t std::hash<CleanRule>::operator()(const CleanRule& r) const noexcept {
    std::size_t seed = 0;
    feedHash(seed, r.id);
    feedHash(seed, r.nameKey);
    feedHash(seed, r.noteKey);
    feedHash(seed, std::string(rawValue(r.category)));
    feed(seed, r.paths.size());
    for (const auto& p : r.paths) feedHash(seed, p);
    feedHash(seed, std::string(rawValue(r.safety)));
    feed(seed, r.exclusiveSizeOnly ? 1 : 0);
    return seed;
}
