#include "clean/CommandRunner.h"

#include "host/ChildProcess.h"
#include "host/FileSystem.h"
#include "host/Paths.h"
#include "text/Strings.h"

namespace lumabroom::CommandRunner {

std::optional<std::string> findBinary(const std::vector<std::string>& candidates) {
    std::vector<std::string> expanded;
    expanded.reserve(candidates.size());
    for (const auto& candidate : candidates) expanded.push_back(Paths::expandingTilde(candidate));
    for (auto& path : expanded)
        if (FileSystem::isExecutableFile(path)) return std::move(path);
    return std::nullopt;
}

std::optional<std::string> run(const std::string& binary, const std::vector<std::string>& arguments,
                               double timeoutSeconds) {
    auto outcome = ChildProcess::run(
        binary, arguments,
        {.timeoutSeconds = timeoutSeconds, .killGraceSeconds = kKillGraceSeconds, .maxOutputBytes = kMaxOutputBytes});
    // A child stopped at its limit may have printed only part of what it meant to.
    if (!outcome || outcome->reachedTimeLimit || outcome->outputOverflowed || outcome->exitStatus != 0)
        return std::nullopt;
    if (!Strings::isValidUtf8(outcome->standardOutput)) return std::nullopt;
    return std::move(outcome->standardOutput);
}

} // namespace lumabroom::CommandRunner
