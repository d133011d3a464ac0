#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumabroom::ChildProcess {

struct Outcome {
    std::string standardOutput;
    // The status passed to exit; nothing when the child ended by a signal.
    std::optional<int> exitStatus;
    // The time limit passed before the output closed and the child exited. The output is then
    // whatever had arrived by that time.
    bool reachedTimeLimit = false;
};

// Starts `executable` (argv[0] is the path itself) with the environment and working folder of this
// process, standard input and standard error on the null device, no controlling terminal, leading
// a new session and process group. Reads standard output while the child runs, until it closes and
// the child has exited. At `timeoutSeconds` the group gets SIGTERM, once; if that has not ended the
// call `killGraceSeconds` later, the group gets SIGKILL and reading stops, even if a descendant that
// left the group still holds the pipe. Members of the group that let go of the pipe before the
// leader exits are left to the SIGTERM. Nothing when the child could not be started.
std::optional<Outcome> run(const std::string& executable, const std::vector<std::string>& arguments,
                           double timeoutSeconds, double killGraceSeconds);

} // namespace lumabroom::ChildProcess
