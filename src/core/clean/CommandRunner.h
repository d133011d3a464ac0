#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lumabroom::CommandRunner {

// How long a process group that ignored the terminate request at its time limit is given before it
// is killed.
inline constexpr double kKillGraceSeconds = 2.0;

// More standard output than this makes a call fail; every parser here reads far less.
inline constexpr std::size_t kMaxOutputBytes = 8 * 1024 * 1024;

// The first candidate (tilde expanded) that is an executable file; the user's PATH is not consulted.
std::optional<std::string> findBinary(const std::vector<std::string>& candidates);

// Runs `binary` with `arguments` (no shell), standard input and standard error on the null device,
// no controlling terminal, in a process group of its own. Gives the standard output when the child
// exits with status 0 and the output is valid UTF-8 and at most kMaxOutputBytes, else nothing.
// What the child leaves running in its group when it exits is ended soon after, and does not
// change the result. At `timeoutSeconds` the group is asked to terminate, and killed
// kKillGraceSeconds later if still there, so no call outlives its limit by much more than the
// grace, even when a grandchild holds the pipe open.
std::optional<std::string> run(const std::string& binary, const std::vector<std::string>& arguments,
                               double timeoutSeconds);

} // namespace lumabroom::CommandRunner
