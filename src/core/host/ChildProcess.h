#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace lumabroom::ChildProcess {

struct Limits {
    double timeoutSeconds = 0;
    // After the terminate request at the time limit, before the group is killed.
    double killGraceSeconds = 0;
    // After the leader exits: how long what it left behind may keep the output open or run on
    // before the group is asked to terminate, and again before it is killed.
    double groupGraceSeconds = 0.25;
    // More output than this is not kept: the group is killed and the outcome says so.
    std::size_t maxOutputBytes = std::numeric_limits<std::size_t>::max();
};

struct Outcome {
    // What arrived while the leader ran, and until the output closed or the group grace ended.
    std::string standardOutput;
    // The status passed to exit; nothing when the child ended by a signal.
    std::optional<int> exitStatus;
    // The time limit passed before the leader exited. The output is then whatever had arrived.
    bool reachedTimeLimit = false;
    // The child wrote more than maxOutputBytes; standardOutput holds the first of it.
    bool outputOverflowed = false;
};

// Starts `executable` (argv[0] is the path itself) with the environment and working folder of this
// process, standard input and standard error on the null device, no controlling terminal, leading
// a new session and process group. Reads standard output while the child runs.
// At the time limit the group gets SIGTERM, once, and SIGKILL killGraceSeconds later if the leader
// is still there. Once the leader has exited, the output is read for at most the group grace (a
// descendant may hold it open); then whatever is left of the group gets SIGTERM, and SIGKILL one
// grace later. A descendant that left the group is beyond reach. Nothing when the child could not
// be started, or after stopAll().
std::optional<Outcome> run(const std::string& executable, const std::vector<std::string>& arguments,
                           const Limits& limits);

// Kills the group of every child that run() has started and not yet ended, and makes every later
// run() fail without starting anything. For quitting; there is no way back.
void stopAll();

} // namespace lumabroom::ChildProcess
