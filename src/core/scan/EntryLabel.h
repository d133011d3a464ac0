#pragma once

#include "scan/DockerUsageKind.h"

#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace lumabroom {

struct DockerUsageLabel {
    DockerUsageKind kind = DockerUsageKind::images;
    std::string count;
    std::optional<std::string> reclaimable;
    bool operator==(const DockerUsageLabel&) const = default;
};
struct DockerOtherLabel {
    bool operator==(const DockerOtherLabel&) const = default;
};
struct LiteralLabel {
    std::string text;
    bool operator==(const LiteralLabel&) const = default;
};

// Text that replaces the name taken from an entry's path.
struct EntryLabel {
    std::variant<DockerUsageLabel, DockerOtherLabel, LiteralLabel> value;

    std::string text() const;
    bool operator==(const EntryLabel&) const = default;
};

} // namespace lumabroom

template <>
struct std::hash<lumabroom::EntryLabel> {
    std::size_t operator()(const lumabroom::EntryLabel&) const noexcept;
};
