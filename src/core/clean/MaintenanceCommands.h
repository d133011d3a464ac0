#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumabroom {

// A tool's own way of cleaning up after itself, offered for the rule with the same id.
struct MaintenanceCommand {
    std::string id;      // the rule's id
    std::string command; // the whole command line, shown to the user and run by the shell unchanged
    std::string detail;  // what it does, one sentence, in the language current when the registry was built

    bool operator==(const MaintenanceCommand&) const = default;
};

namespace MaintenanceCommands {

inline constexpr double kTimeoutSeconds = 600;

// The four commands by rule id, built on first use (safe from any thread) and fixed from then on.
const std::map<std::string, MaintenanceCommand, std::less<>>& registry();

// The localization keys of the four details, for the check that every key has its translations.
std::vector<std::string_view> detailKeys();

// Nothing when the rule has no command.
std::optional<MaintenanceCommand> command(std::string_view ruleId);

// Runs the command line in the user's login shell ("-l", "-c", the line) for at most
// kTimeoutSeconds; true when it ends with status 0, whatever it printed. A shell that is missing, a
// failing tool and one that runs too long all give false. Blocks; never call it on the GUI thread.
bool run(const MaintenanceCommand& command);

} // namespace MaintenanceCommands
} // namespace lumabroom
