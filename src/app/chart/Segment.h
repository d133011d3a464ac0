#pragma once

#include "scan/CleanRule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace lumabroom {

// What a click on a segment means.
struct SegmentKind {
    struct CategoryKind {
        Category category = Category::system;
        bool operator==(const CategoryKind&) const = default;
    };
    struct RuleKind {
        std::string ruleID;
        bool operator==(const RuleKind&) const = default;
    };
    struct EntryKind {
        std::string ruleID;
        std::string entryID; // the entry's path
        bool operator==(const EntryKind&) const = default;
    };
    struct OtherKind {
        bool operator==(const OtherKind&) const = default;
    };

    std::variant<OtherKind, CategoryKind, RuleKind, EntryKind> value;

    static SegmentKind category(Category c) { return {CategoryKind{c}}; }
    static SegmentKind rule(std::string id) { return {RuleKind{std::move(id)}}; }
    static SegmentKind entry(std::string ruleID, std::string entryID) {
        return {EntryKind{std::move(ruleID), std::move(entryID)}};
    }
    static SegmentKind other() { return {OtherKind{}}; }

    bool operator==(const SegmentKind&) const = default;
};

// Radial extent as fractions of the chart radius.
struct Band {
    double inner = 0;
    double outer = 0;
    bool operator==(const Band&) const = default;
};

// One ring segment. It carries its own angles and band, so drawing, hit testing and the morph
// between two lists need no knowledge of the route.
struct Segment {
    // Key of hover; without a "deco:" prefix, key of the morph.
    std::string id;
    SegmentKind kind;
    // Radians, -π/2 at the top, growing clockwise on screen (y points down).
    double start = 0;
    double end = 0;
    Band band;
    // 0 up to 1; nothing is grey. In the colour-blind palette it is the position on the circle.
    std::optional<double> hue;
    int depth = 0; // 0, 1 or 2
    std::string title;
    std::int64_t bytes = 0;
    bool active = false; // something in it is selected for cleaning
    std::optional<std::string> hint;

    bool operator==(const Segment&) const = default;
};

} // namespace lumabroom
