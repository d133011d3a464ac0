#include "agents/Git.h"

#include "clean/CommandRunner.h"
#include "host/ToolPaths.h"

#include <mutex>

namespace lumabroom::Git {

std::optional<std::string> binary() {
    static std::mutex mutex;
    static std::optional<std::vector<std::string>> places;
    static std::optional<std::string> found;
    auto current = ToolPaths::candidates(Tool::git);
    std::lock_guard guard(mutex);
    if (!places || *places != current) {
        found = CommandRunner::findBinary(current);
        places = std::move(current);
    }
    return found;
}

std::optional<std::string> run(const std::vector<std::string>& arguments) {
    auto git = binary();
    if (!git) return std::nullopt;
    return CommandRunner::run(*git, arguments, kTimeoutSeconds);
}

} // namespace lumabroom::Git
