#pragma once

#include "scan/Category.h"

#include <string>
#include <variant>

namespace lumabroom {

// What the right-hand panel and the chart show.
struct Route {
    struct Overview {
        bool operator==(const Overview&) const = default;
    };
    struct CategoryRoute {
        Category category = Category::system;
        bool operator==(const CategoryRoute&) const = default;
    };
    struct RuleRoute {
        std::string ruleID;
        bool operator==(const RuleRoute&) const = default;
    };

    std::variant<Overview, CategoryRoute, RuleRoute> value;

    static Route overview() { return {Overview{}}; }
    static Route category(Category c) { return {CategoryRoute{c}}; }
    static Route rule(std::string id) { return {RuleRoute{std::move(id)}}; }

    bool isOverview() const { return std::holds_alternative<Overview>(value); }
    const Category* categoryValue() const {
        const auto* c = std::get_if<CategoryRoute>(&value);
        return c ? &c->category : nullptr;
    }
    const std::string* ruleID() const {
        const auto* r = std::get_if<RuleRoute>(&value);
        return r ? &r->ruleID : nullptr;
    }

    bool operator==(const Route&) const = default;
};

} // namespace lumabroom
