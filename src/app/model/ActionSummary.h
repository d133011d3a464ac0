#pragma once

#include "tools/DockerPruner.h"

#include <cstdint>
#include <string>
#include <variant>

namespace lumabroom {

// What the last finished action did, as the bottom bar says it.
struct ActionSummary {
    struct Cleaned {
        std::int64_t bytes = 0;
        bool toTrash = false;
        std::int64_t failures = 0;
        bool operator==(const Cleaned&) const = default;
    };
    // An undo of a clean to the Trash: what was put back, and how many items stayed in the Trash.
    struct Restored {
        std::int64_t bytes = 0;
        std::int64_t failures = 0;
        bool operator==(const Restored&) const = default;
    };
    struct MaintenanceRan {
        std::string command;
        bool operator==(const MaintenanceRan&) const = default;
    };
    struct MaintenanceFailed {
        std::string command;
        bool operator==(const MaintenanceFailed&) const = default;
    };
    struct SimulatorDeleted {
        std::string name;
        std::int64_t bytes = 0;
        bool operator==(const SimulatorDeleted&) const = default;
    };
    struct SimulatorDeleteFailed {
        std::string name;
        bool operator==(const SimulatorDeleteFailed&) const = default;
    };
    struct OllamaModelDeleted {
        std::string name;
        std::int64_t bytes = 0;
        bool operator==(const OllamaModelDeleted&) const = default;
    };
    struct OllamaModelDeleteFailed {
        std::string name;
        bool operator==(const OllamaModelDeleteFailed&) const = default;
    };
    struct ClaudeSessionsDeleteFailed {
        std::string name;
        bool operator==(const ClaudeSessionsDeleteFailed&) const = default;
    };
    struct WorktreeRemoved {
        std::string name;
        std::int64_t bytes = 0;
        bool operator==(const WorktreeRemoved&) const = default;
    };
    struct WorktreeRemoveFailed {
        std::string name;
        bool operator==(const WorktreeRemoveFailed&) const = default;
    };
    struct DockerItemDeleted {
        std::string name;
        std::int64_t bytes = 0;
        bool operator==(const DockerItemDeleted&) const = default;
    };
    struct DockerItemDeleteFailed {
        std::string name;
        bool operator==(const DockerItemDeleteFailed&) const = default;
    };
    struct DockerPruned {
        DockerPruneTarget target = DockerPruneTarget::buildCache;
        std::string freed; // as docker printed it
        bool operator==(const DockerPruned&) const = default;
    };
    struct DockerPruneFailed {
        DockerPruneTarget target = DockerPruneTarget::buildCache;
        bool operator==(const DockerPruneFailed&) const = default;
    };

    using Case = std::variant<Cleaned, MaintenanceRan, MaintenanceFailed, SimulatorDeleted, SimulatorDeleteFailed,
                              OllamaModelDeleted, OllamaModelDeleteFailed, ClaudeSessionsDeleteFailed, WorktreeRemoved,
                              WorktreeRemoveFailed, DockerItemDeleted, DockerItemDeleteFailed, DockerPruned,
                              DockerPruneFailed, Restored>;
    Case value;

    // The sentence in the current language; sizes through Formatting::bytes.
    std::string text() const;
    bool operator==(const ActionSummary&) const = default;
};

} // namespace lumabroom
